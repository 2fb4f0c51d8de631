// The effect side of VST 2.4: one object behind an AEffect, with an operation for each opcode.
#pragma once

#include "AEffEditor.h"
#include "Text.h"
#include "Vst2Abi.h"
#include "core/RealTime.h"
#include "core/Relaxed.h"

#include <memory>

namespace vst2 {

/// Owns the AEffect that the host holds and turns the host's calls into virtual operations. A
/// derived effect overrides what it can do; what it leaves answers as an effect without it.
///
/// No exception reaches the host, whatever an operation throws: the call then gives 0. Operations
/// never see a null text, list or record, and indices may be any number.
/// Threads: audio calls and `setParameter` on any thread, the rest on the host's main thread.
class AudioEffectX {
  public:
    AudioEffectX(HostCallback host, std::int32_t numPrograms, std::int32_t numParams);
    virtual ~AudioEffectX();
    AudioEffectX(const AudioEffectX&) = delete;
    AudioEffectX& operator=(const AudioEffectX&) = delete;

    AEffect* getAeffect() noexcept { return &effect_; }

    virtual void open() {}
    virtual void close() {}
    virtual void suspend() {}
    virtual void resume() {}
    /// Hz. `setBlockSize`: the most frames that a later block has.
    virtual void setSampleRate(float rate) { sampleRate_ = rate; }
    virtual void setBlockSize(std::int32_t frames) { blockSize_ = frames; }

    virtual void
    processReplacing(float** inputs, float** outputs, std::int32_t frames) ORVEL_NONBLOCKING = 0;
    /// As `processReplacing`, but adds to what the outputs hold.
    virtual void
    processAccumulating(float** inputs, float** outputs, std::int32_t frames) ORVEL_NONBLOCKING = 0;
    virtual bool processEvents(const VstEvents& /*events*/) ORVEL_NONBLOCKING { return false; }
    virtual void setParameter(std::int32_t index, float value) = 0;
    virtual float getParameter(std::int32_t index) = 0;

    virtual std::int32_t getProgram() { return program_; }
    virtual void setProgram(std::int32_t program) { program_ = program; }
    virtual void setProgramName(const char* /*name*/) {}
    virtual void getProgramName(char* name) { *name = 0; }
    virtual bool getProgramNameIndexed(std::int32_t /*index*/, char* /*name*/) { return false; }

    // Texts of up to kParameterTextRoom bytes.
    virtual void getParameterLabel(std::int32_t index, char* label) = 0;
    virtual void getParameterDisplay(std::int32_t index, char* text) = 0;
    virtual void getParameterName(std::int32_t index, char* text) = 0;
    virtual bool canParameterBeAutomated(std::int32_t /*index*/) { return true; }
    /// A null text asks whether texts are understood at all.
    virtual bool string2parameter(std::int32_t /*index*/, const char* /*text*/) { return false; }
    virtual bool getParameterProperties(std::int32_t /*index*/, VstParameterProperties& /*p*/) {
        return false;
    }

    /// Gives the size; `*data` stays the effect's.
    virtual std::intptr_t getChunk(void** data, bool isPreset) = 0;
    virtual std::intptr_t setChunk(const void* data, std::intptr_t size, bool isPreset) = 0;

    virtual bool getInputProperties(std::int32_t /*index*/, VstPinProperties& /*p*/) {
        return false;
    }
    virtual bool getOutputProperties(std::int32_t /*index*/, VstPinProperties& /*p*/) {
        return false;
    }
    /// Either may be null: the host says nothing of that side.
    virtual bool setSpeakerArrangement(const VstSpeakerArrangement* /*input*/,
                                       const VstSpeakerArrangement* /*output*/) {
        return false;
    }
    virtual bool setBypass(bool /*bypassed*/) { return false; }

    // Texts of up to kNameTextRoom bytes.
    virtual bool getEffectName(char* name) = 0;
    virtual bool getVendorString(char* text) = 0;
    virtual bool getProductString(char* text) = 0;
    virtual std::int32_t getVendorVersion() = 0;
    virtual std::int32_t getNextShellPlugin(char* name) {
        *name = 0;
        return 0;
    }
    virtual std::intptr_t
    vendorSpecific(std::int32_t /*index*/, std::intptr_t /*value*/, void* /*ptr*/, float /*opt*/) {
        return 0;
    }
    /// 1 yes, 0 not known, -1 no.
    virtual std::int32_t canDo(const char* /*text*/) { return 0; }
    /// Samples; hosts read 0 as "not known" and 1 as "no tail".
    virtual std::int32_t getGetTailSize() { return 0; }
    virtual std::int32_t getPlugCategory() {
        return isSynth() ? kPlugCategSynth : kPlugCategUnknown;
    }
    virtual std::int32_t getCurrentMidiProgram() { return -1; }
    virtual std::int32_t getNumMidiInputChannels() { return 0; }
    virtual std::int32_t getNumMidiOutputChannels() { return 0; }
    /// The host's main thread has time: an editor is open, or the host answered `needIdle`.
    virtual void idle() {}

  protected:
    /// Null takes the editor away; the old one is deleted.
    void setEditor(std::unique_ptr<AEffEditor> editor);
    AEffEditor* getEditor() const noexcept { return editor_.get(); }

    // What the AEffect says about this effect.
    void setUniqueID(std::int32_t id) noexcept { effect_.uniqueID = id; }
    void setNumInputs(std::int32_t channels) noexcept { effect_.numInputs = channels; }
    void setNumOutputs(std::int32_t channels) noexcept { effect_.numOutputs = channels; }
    void setNumParams(std::int32_t count) noexcept { effect_.numParams = count; }
    void setNumPrograms(std::int32_t count) noexcept { effect_.numPrograms = count; }
    void setInitialDelay(std::int32_t samples) noexcept { effect_.initialDelay = samples; }
    void isSynth(bool on) noexcept { setFlag(effFlagsIsSynth, on); }
    bool isSynth() const noexcept { return (effect_.flags & effFlagsIsSynth) != 0; }
    void programsAreChunks(bool on) noexcept { setFlag(effFlagsProgramChunks, on); }
    void canDoubleReplacing(bool on) noexcept { setFlag(effFlagsCanDoubleReplacing, on); }

    float getSampleRate() const noexcept { return sampleRate_; }
    std::int32_t getBlockSize() const noexcept { return blockSize_; }

    // Questions to the host. Texts have room for kNameTextRoom bytes.
    std::int32_t getCurrentUniqueId();
    std::int32_t canHostDo(const char* text);
    bool getHostVendorString(char* text);
    bool getHostProductString(char* text);
    std::int32_t getHostVendorVersion();
    /// The host's record, good until it makes the next one on this thread; null when it has none.
    /// `filter`: the TimeInfoFlags of interest.
    const VstTimeInfo* getTimeInfo(std::int32_t filter);

    // Requests to the host.
    void masterIdle();
    /// Asks for `idle` calls while no editor is open; hosts are free to have none to give.
    void needIdle();
    void wantEvents(std::int32_t filter);
    bool updateDisplay();
    bool ioChanged();
    bool beginEdit(std::int32_t index);
    bool endEdit(std::int32_t index);
    /// Tells the host only; the value itself is not touched.
    void tellAutomation(std::int32_t index, float value);

  private:
    std::intptr_t
    dispatch(std::int32_t opcode, std::int32_t index, std::intptr_t value, void* ptr, float opt);
    std::intptr_t dispatchText(std::int32_t opcode, std::int32_t index, char* text);
    std::intptr_t dispatchEditor(
        std::int32_t opcode, std::int32_t index, std::intptr_t value, void* ptr, float opt);
    std::intptr_t askHost(std::int32_t opcode,
                          std::int32_t index = 0,
                          std::intptr_t value = 0,
                          void* ptr = nullptr,
                          float opt = 0);
    bool askHostForText(std::int32_t opcode, char* text);
    void setFlag(EffectFlags flag, bool on) noexcept;

    static AudioEffectX* from(AEffect* effect) noexcept;
    static std::intptr_t dispatcherProc(AEffect* effect,
                                        std::int32_t opcode,
                                        std::int32_t index,
                                        std::intptr_t value,
                                        void* ptr,
                                        float opt) noexcept;
    static void
    processProc(AEffect* effect, float** inputs, float** outputs, std::int32_t frames) noexcept;
    static void processReplacingProc(AEffect* effect,
                                     float** inputs,
                                     float** outputs,
                                     std::int32_t frames) noexcept;
    static void setParameterProc(AEffect* effect, std::int32_t index, float value) noexcept;
    static float getParameterProc(AEffect* effect, std::int32_t index) noexcept;

    HostCallback host_;
    AEffect effect_{};
    std::unique_ptr<AEffEditor> editor_;
    Core::Relaxed<float> sampleRate_{44100.0F};
    Core::Relaxed<std::int32_t> blockSize_{1024};
    Core::Relaxed<std::int32_t> program_{0};
};

} // namespace vst2
