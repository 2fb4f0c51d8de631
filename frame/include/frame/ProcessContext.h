// One block of audio with the transport that goes with it.
#pragma once

#include "core/RealTime.h"

namespace Vardo {

/// What a plug-in sees of one process call. Pointers are good for that call only.
/// Threads: audio thread.
class IProcessContext {
  public:
    virtual float** getOutputs() = 0;
    virtual float** getInputs() = 0;
    /// Two channels, or null.
    virtual float** getSidechain() = 0;
    virtual bool hasSidechain() = 0;
    virtual int getNumInputPairs() = 0;
    virtual int getNumOutputPairs() = 0;
    virtual int getNumSamples() = 0;
    /// Beats (quarter notes) per minute.
    virtual float getTempo() = 0;
    virtual bool isPlaying() = 0;
    /// Of the block's first sample, from the start of the song.
    virtual double getSamplePosition() = 0;
    /// The same in quarter notes.
    virtual double getPpqPosition() = 0;

  protected:
    ~IProcessContext() = default;
};

/// The context an adapter builds on its stack for each process call. Holds pointers only.
/// Until the adapter fills in the transport it says: running at 100 beats per minute, position 0.
class CProcessContext final : public IProcessContext {
  public:
    CProcessContext(float** inputs,
                    int inputChannels,
                    float** outputs,
                    int outputChannels,
                    float** sidechain,
                    int sampleCount) noexcept
        : inputs_(inputs)
        , outputs_(outputs)
        , sidechain_(sidechain)
        , inputPairs_(inputChannels / 2)
        , outputPairs_(outputChannels / 2)
        , sampleCount_(sampleCount) {}

    void setTempo(float beatsPerMinute) noexcept { tempo_ = beatsPerMinute; }
    void setPlaying(bool playing) noexcept { playing_ = playing; }
    void setSamplePosition(double samples) noexcept { samplePosition_ = samples; }
    void setPpqPosition(double quarterNotes) noexcept { ppqPosition_ = quarterNotes; }

    float** getOutputs() override { return outputs_; }
    float** getInputs() override { return inputs_; }
    float** getSidechain() override { return sidechain_; }
    bool hasSidechain() override { return sidechain_ != nullptr; }
    int getNumInputPairs() override { return inputPairs_; }
    int getNumOutputPairs() override { return outputPairs_; }
    int getNumSamples() override { return sampleCount_; }
    float getTempo() override { return tempo_; }
    bool isPlaying() override { return playing_; }
    double getSamplePosition() override { return samplePosition_; }
    double getPpqPosition() override { return ppqPosition_; }

  private:
    float** inputs_;
    float** outputs_;
    float** sidechain_;
    int inputPairs_;
    int outputPairs_;
    int sampleCount_;
    float tempo_ = 100.0F;
    bool playing_ = true;
    double samplePosition_ = 0;
    double ppqPosition_ = 0;
};

} // namespace Vardo
