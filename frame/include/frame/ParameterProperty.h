// The parameter class: a value, its text, its limits and who listens to it.
#pragma once

#include "core/Relaxed.h"
#include "core/Strings.h"
#include "frame/ParameterDescription.h"
#include "frame/PluginParameter.h"

#include <vector>

namespace Vardo {

/// Room that `formatValue` may use behind what its buffer holds, with the ending zero.
inline constexpr std::size_t kMaxValueText = 64;

/// Writes a value at `text`, which has room for kMaxValueText bytes; kWithUnit is passed on.
using TextFunction = void (*)(float plain, char* text, int flags);
using TextFunctionWithData = void (*)(float plain, char* text, int flags, void* userData);
/// Reads what the text function writes. False when the text is something else; `plain` is then
/// read as a number.
using ParseFunction = bool (*)(const char* text, float& plain, void* userData);

/// Formats values for one parameter; the object form of a text function.
class IValueText {
  public:
    virtual void formatValue(float plain, char* text) = 0;

  protected:
    ~IValueText() = default;
};

class ParameterProperty : public IPluginParameter {
  public:
    ParameterProperty() = default;
    ParameterProperty(const ParameterProperty&) = delete;
    ParameterProperty& operator=(const ParameterProperty&) = delete;

    // How the value is written and read; set up once, by the plug-in.
    void setTextFunction(TextFunction format, ParseFunction parse);
    void setTextFunction(TextFunctionWithData format, ParseFunction parse, void* userData);
    void setTextObject(IValueText* object) { textObject_ = object; }
    void setUserData(void* data) { userData_ = data; }

    Core::IString& getKey() override { return key_; }
    Core::IString& getName() override { return name_; }
    Core::IString& getUnit() override { return unit_; }
    float getNormalizedValue() override;
    void setNormalizedValue(double value, int flags) override;
    void getDisplayText(double normalized, Core::IString& text) override;
    void setDisplayText(const Core::IString& text) override;
    float plainToNormalized(double plain) override;
    float normalizedToPlain(double normalized) override;
    bool isAutomatable() override { return automatable_; }
    float getDefaultNormalizedValue() override { return plainToNormalized(double{default_}); }
    void getText(double normalized, Core::IString& text) override;
    ~ParameterProperty() override = default;

    void setName(const char* text) override { name_.assign(text); }
    const char* getNameText() override { return name_.c_str(); }
    void setName(const Core::IString& text) override { name_ = text; }
    void setShortName(const char* text) override { shortName_.assign(text); }
    const char* getShortNameText() override { return shortName_.c_str(); }
    void setShortName(const Core::IString& text) override { shortName_ = text; }
    void setKey(const char* text) override { key_.assign(text); }
    const char* getKeyText() override { return key_.c_str(); }
    const char* getUnitText() override { return unit_.c_str(); }
    void setUnit(const Core::IString& text) override { unit_ = text; }
    void setKind(int kind) override;
    int getKind() override { return kind_; }
    float getMin() override { return min_; }
    float getMax() override { return max_; }
    void setMin(float plain) override;
    void setMax(float plain) override;
    void addListener(ParameterChangeListener* listener, bool notifyNow) override;
    void removeListener(ParameterChangeListener* listener) override;
    void setNormalizedValueFrom(ParameterChangeListener* source, float value) override;
    void setNormalizedValue(float value) override;
    void setValueFromText(const char* text) override;
    void setValueFrom(ParameterChangeListener* source, float plain) override;
    void setValue(float plain) override { setValueFrom(nullptr, plain); }
    void resetToDefault() override { setValue(default_); }
    void setDefault(float plain) override { default_ = clamp(plain); }
    float getDefaultNormalized() override { return getDefaultNormalizedValue(); }
    float getDefaultNormalizedAgain() override { return getDefaultNormalizedValue(); }
    float getDefault() override { return default_; }
    void setSkew(float skew) override;
    float getSkew() override { return skew_; }
    int getIntValue() override;
    bool getBoolValue() override { return value_ >= 0.5F; }
    float getRelativeValue() override;
    float getValue() override { return value_; }
    void setAutomatable(bool automatable) override { automatable_ = automatable; }
    bool getAutomatable() override { return automatable_; }
    void setFromDescription(const ParameterDescription& row) override;
    void* getUserData() override { return userData_; }
    void formatValue(float plain, char* text, int flags) override;

    int getId() override { return id_; }
    int getHostIndex() override { return hostIndex_; }
    void setHostIndex(int index) override { hostIndex_ = index; }
    void setImmediateListener(ParameterChangeListener* listener) override {
        immediateListener_ = listener;
    }
    void setNotificationsOn(bool on) override { notificationsOn_ = on; }
    void deliverPending() override;
    void notifyAll() override { notify(nullptr); }

  private:
    float clamp(float plain) const;
    void clampToLimits();
    void notify(ParameterChangeListener* except);
    void notifyListeners(ParameterChangeListener* except);

    int hostIndex_ = -1;
    int id_ = -1;
    TextFunction textFunction_ = nullptr;
    TextFunctionWithData textFunctionWithData_ = nullptr;
    ParseFunction parseFunction_ = nullptr;
    IValueText* textObject_ = nullptr;
    Core::CStringBufferd<64> key_;
    Core::CStringBufferd<128> name_;
    Core::CStringBufferd<64> shortName_;
    Core::CStringBufferd<64> unit_{"%"};
    int kind_ = kPercentOfRange;
    float min_ = 0;
    float max_ = 1;
    float default_ = 0;
    Core::Relaxed<float> value_{0.0F}; // written by any thread, read by any
    float skew_ = 0;
    std::vector<ParameterChangeListener*> listeners_; // main thread only
    int notifying_ = 0;                               // depth of walks over listeners_
    ParameterChangeListener* immediateListener_ = nullptr;
    Core::Relaxed<bool> pending_{false}; // a host thread changed the value; listeners wait
    bool automatable_ = true;
    void* userData_ = nullptr;
    Core::Relaxed<bool> notificationsOn_{true};
};

} // namespace Vardo
