// The contract between a plug-in and the adapters that carry it into hosts.
#pragma once

#include "core/RealTime.h"
#include "frame/EventList.h"

namespace Vardo {

class IAnalysisReadout;
class IPluginEditor;
class IPluginParameter;
class IProcessContext;

/// Where a change of a parameter comes from, as bits of `flags`.
enum ParameterChangeFlags : int {
    kFromUser = 0,
    /// A host's thread set it, maybe the audio thread: the plug-in is told at once, and dials,
    /// views and the host's display in the next idle.
    kFromHost = 2,
    /// The editor itself set it and needs not be told.
    kFromEditor = 4,
};

/// A plug-in as every adapter drives it: create, `setSampleRate`, `setBlockSize` (in this order),
/// then `process` for each block. Both set-up calls may come again at any time.
///
/// Threads: `process` on the host's audio thread, `setParameter` on any, the rest on the host's
/// main thread. A host that mixes this up gets wrong pictures for a moment, never a crash. Fails:
/// nothing here reports a failure but a null pointer; std::bad_alloc may leave the set-up calls.
class IPluginBase {
  public:
    virtual ~IPluginBase() = default;

    virtual void process(IProcessContext& context) ORVEL_NONBLOCKING = 0;
    /// `value` is plain, in the parameter's own unit. `flags`: see ParameterChangeFlags.
    virtual void setParameter(IPluginParameter* parameter, double value, int flags) = 0;
    virtual int getNumParameters() = 0;
    /// Null when out of range.
    virtual IPluginParameter* getParameter(int index) = 0;
    /// Hz.
    virtual void setSampleRate(double rate) = 0;
    /// Largest number of samples in a later block.
    virtual void setBlockSize(int samples) = 0;
    /// The whole state as one block of bytes. Gives its size; the memory stays the plug-in's and
    /// good until the next call.
    virtual int getChunk(void** data) = 0;
    virtual void setChunk(const void* data, int size) = 0;
    virtual void onHostSuspend() {}
    virtual void onHostResume() {}
    virtual void setBypass(bool bypassed) = 0;
    /// Clears all measuring state.
    virtual void reset() = 0;
    /// May be null.
    virtual IPluginEditor* getEditor() = 0;
    /// Samples.
    virtual int getLatency() { return 0; }
    /// Samples.
    virtual int getTailSize() { return 0; }
    virtual void processEvents(const EventList& /*events*/) {}
    /// `text` has room for 64 characters and a zero.
    virtual bool getInputPinName(int /*index*/, char* /*text*/) { return false; }
    virtual bool getOutputPinName(int /*index*/, char* /*text*/) { return false; }

    /// Delivers what other threads left for the main thread: listeners of parameters a host set,
    /// and the host itself where the plug-in changed a value. Cheap when there is nothing.
    virtual void onIdle() {}
    /// The results of an analyser; null where the plug-in measures nothing.
    virtual IAnalysisReadout* getAnalysis() { return nullptr; }
};

} // namespace Vardo
