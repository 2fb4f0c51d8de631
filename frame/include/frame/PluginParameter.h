// One parameter of a plug-in, as hosts, controls and presets see it.
#pragma once

#include "core/Strings.h"

namespace Vardo {

class IPluginParameter;

/// Hears of changes. Listeners hear on the main thread; the one immediate listener of a parameter
/// (its plug-in) hears on the thread that made the change.
class ParameterChangeListener {
  public:
    virtual ~ParameterChangeListener() = default;
    virtual void parameterChanged(IPluginParameter* parameter) = 0;
};

struct ParameterDescription;

/// A value in two scales: plain (its own unit, between min and max) and normalised (0..1, what
/// hosts and controls use). The stored truth is the plain value. Out-of-range values are clamped,
/// never refused, and a NaN counts as 0.
///
/// Threads: values may be read anywhere. `setNormalizedValue(value, kFromHost)` may be called on
/// any thread, the audio thread included: no allocation, no lock. Everything else that changes
/// something belongs to the main thread.
class IPluginParameter {
  public:
    virtual Core::IString& getKey() = 0;
    virtual Core::IString& getName() = 0;
    virtual Core::IString& getUnit() = 0;
    virtual float getNormalizedValue() = 0;
    /// `flags`: see ParameterChangeFlags.
    virtual void setNormalizedValue(double value, int flags) = 0;
    /// The value's text without its unit.
    virtual void getDisplayText(double normalized, Core::IString& text) = 0;
    virtual void setDisplayText(const Core::IString& text) = 0;
    virtual float plainToNormalized(double plain) = 0;
    virtual float normalizedToPlain(double normalized) = 0;
    virtual bool isAutomatable() = 0;
    virtual float getDefaultNormalizedValue() = 0;
    virtual void getText(double normalized, Core::IString& text) = 0;
    virtual ~IPluginParameter() = default;

    virtual void setName(const char* text) = 0;
    virtual const char* getNameText() = 0;
    virtual void setName(const Core::IString& text) = 0;
    virtual void setShortName(const char* text) = 0;
    virtual const char* getShortNameText() = 0;
    virtual void setShortName(const Core::IString& text) = 0;
    virtual void setKey(const char* text) = 0;
    virtual const char* getKeyText() = 0;
    virtual const char* getUnitText() = 0;
    virtual void setUnit(const Core::IString& text) = 0;
    /// Also sets the unit that goes with the kind; see ValueKind.
    virtual void setKind(int kind) = 0;
    virtual int getKind() = 0;
    virtual float getMin() = 0;
    virtual float getMax() = 0;
    virtual void setMin(float plain) = 0;
    virtual void setMax(float plain) = 0;
    /// No duplicates; with `notifyNow` the listener is called at once.
    virtual void addListener(ParameterChangeListener* listener, bool notifyNow) = 0;
    virtual void removeListener(ParameterChangeListener* listener) = 0;
    /// As without From, but `source` is not told.
    virtual void setNormalizedValueFrom(ParameterChangeListener* source, float value) = 0;
    virtual void setNormalizedValue(float value) = 0;
    virtual void setValueFromText(const char* text) = 0;
    virtual void setValueFrom(ParameterChangeListener* source, float plain) = 0;
    virtual void setValue(float plain) = 0;
    virtual void resetToDefault() = 0;
    virtual void setDefault(float plain) = 0;
    virtual float getDefaultNormalized() = 0;
    virtual float getDefaultNormalizedAgain() = 0;
    virtual float getDefault() = 0;
    virtual void setSkew(float skew) = 0;
    virtual float getSkew() = 0;
    /// The value as a whole number; 0.02 is forgiven.
    virtual int getIntValue() = 0;
    virtual bool getBoolValue() = 0;
    /// 0..1 over the range, without the taper.
    virtual float getRelativeValue() = 0;
    virtual float getValue() = 0;
    virtual void setAutomatable(bool automatable) = 0;
    virtual bool getAutomatable() = 0;
    virtual void setFromDescription(const ParameterDescription& row) = 0;
    virtual void* getUserData() = 0;
    /// Appends the value's text to `text`; see FormatFlags.
    virtual void formatValue(float plain, char* text, int flags) = 0;

    /// The number by which the plug-in knows it; -1 for none.
    virtual int getId() = 0;
    /// Position among the parameters a host sees; -1 for one it does not see.
    virtual int getHostIndex() = 0;
    virtual void setHostIndex(int index) = 0;
    /// The listener that is told on whatever thread made the change. Set once, before any other
    /// thread knows the parameter; not owned; null for none.
    virtual void setImmediateListener(ParameterChangeListener* listener) = 0;
    virtual void setNotificationsOn(bool on) = 0;
    /// Main thread: tells the listeners of changes that host threads made since the last call.
    virtual void deliverPending() = 0;
    /// Tells the immediate listener and all listeners, changed or not.
    virtual void notifyAll() = 0;
};

enum FormatFlags : int {
    kWithUnit = 1,
    kShortForm = 4,
};

} // namespace Vardo
