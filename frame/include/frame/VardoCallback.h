// What a plug-in may ask of its host.
#pragma once

namespace Vardo {

/// Names of the host interfaces, as `VardoCallback::getInterfaceKind` numbers them.
enum class InterfaceKind : int {
    none = 0,
    vst2 = 1,
    vst3 = 2,
    rtas = 3,
    audioUnit = 4,
    aax = 5,
    standalone = 6,
};

/// The name of an interface kind: "-", "VST2", "VST3", "RTAS", "AU", "AAX", "Vardo"; an empty text
/// for any other number.
const char* interfaceName(int kind);

/// A host that answers nothing. Each adapter derives from it and overrides what its host can do.
/// Threads: main thread, except where an adapter says more.
class VardoCallback {
  public:
    virtual ~VardoCallback() = default;

    virtual void hostIdle() {}
    virtual int reserved() { return 0; }
    /// Each fills `text`, which has room for 64 characters and a zero, and gives 1 when it did.
    virtual int getHostVendorString(char* /*text*/) { return 0; }
    virtual int getHostProductString(char* /*text*/) { return 0; }
    virtual int getHostVersion() { return -1; }
    /// Parameter texts or the program list changed.
    virtual int updateDisplay() { return 0; }
    /// The number of channels or the latency changed.
    virtual int ioChanged() { return 0; }
    virtual int setNumInputPairs(int /*pairs*/) { return 0; }
    virtual int setNumOutputPairs(int /*pairs*/) { return 0; }
    virtual int setLatency(int /*samples*/) { return 0; }
    /// Brackets of one user gesture on a parameter, by host index. A negative index is not passed
    /// on to the host.
    virtual int beginEdit(int /*parameterIndex*/) { return 0; }
    virtual int endEdit(int /*parameterIndex*/) { return 0; }
    /// Tells the host of a new normalised value; a negative index is ignored.
    virtual void automate(int /*parameterIndex*/, float /*value*/) {}
    /// The host's tempo of the moment in beats per minute.
    virtual float getTempo() { return 10.0F; }
    virtual int getInterfaceKind() { return static_cast<int>(InterfaceKind::none); }
    /// Asks the host to read all parameters again: the plug-in changed some by itself.
    virtual void refreshParameters() {}
};

} // namespace Vardo
