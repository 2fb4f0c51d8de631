// A plug-in and an editor that do next to nothing, and sources whose samples tell their place.
#pragma once

#include "AudioSource.h"
#include "UserError.h"
#include "frame/AnalysisSnapshot.h"
#include "frame/IdleList.h"
#include "frame/PluginBase.h"
#include "frame/PluginEditor.h"
#include "frame/ProcessContext.h"

#include <algorithm>
#include <functional>
#include <string>

#include <sys/eventfd.h>
#include <unistd.h>

namespace Standalone {

/// Frame n holds n + 1 on the left and its negative on the right, so that a lost, doubled or
/// padded sample shows. Exact up to 16 million frames.
class Ramp final : public AudioSource {
  public:
    explicit Ramp(std::int64_t frames, double sampleRate = 1000) {
        info_.path = "ramp";
        info_.sampleRate = sampleRate;
        info_.channels = 2;
        info_.frames = frames;
    }
    const SourceInfo& info() const override { return info_; }
    int read(float* left, float* right, int frames) override {
        const auto count =
            static_cast<int>(std::min<std::int64_t>(frames, info_.frames - position_));
        for (int i = 0; i < count; ++i) {
            if (position_ == damagedAt) throw UserError("damaged");
            left[i] = valueAt(position_++);
            right[i] = -left[i];
        }
        return count;
    }
    void seek(std::int64_t frame) override { position_ = frame; }

    static float valueAt(std::int64_t frame) { return static_cast<float>(frame + 1); }

    std::int64_t damagedAt = -1;

  private:
    SourceInfo info_;
    std::int64_t position_ = 0;
};

/// A window that answers, idles and closes.
class FakeEditor final : public Vardo::IPluginEditor {
  public:
    ~FakeEditor() override { ::close(silence_); }
    void open(void*) override {
        if (!hasDisplay) return;
        isOpen_ = true;
        Vardo::IdleList::instance().add(this);
    }
    int close() override {
        if (isOpen_) Vardo::IdleList::instance().remove(this);
        isOpen_ = false;
        return 1;
    }
    int setKnobMode(int) override { return 0; }
    bool getSize(int*, int*) override { return true; }
    void setSize(int, int) override {}
    bool isOpen() override { return isOpen_; }
    void update(int) override {}
    void parameterChanged() override {}
    bool onWheel(float) override { return false; }
    bool onKeyDown(const Vardo::KeyEvent&) override { return false; }
    bool onKeyUp(const Vardo::KeyEvent&) override { return false; }
    void idle() override {
        if (onIdle) onIdle(*host, idles++);
    }
    void setHost(Vardo::IEditorHost* newHost) override { host = newHost; }
    int eventDescriptor() override { return isOpen_ ? silence_ : -1; }

    bool hasDisplay = true;
    Vardo::IEditorHost* host = nullptr;
    std::function<void(Vardo::IEditorHost&, int count)> onIdle;
    int idles = 0;

  private:
    bool isOpen_ = false;
    int silence_ = eventfd(0, 0); // never has an event
};

/// Passes audio through.
class FakePlugin : public Vardo::IPluginBase {
  public:
    void process(Vardo::IProcessContext& context) override {
        for (int c = 0; c < 2; ++c)
            std::copy_n(context.getInputs()[c], context.getNumSamples(), context.getOutputs()[c]);
    }
    void setParameter(Vardo::IPluginParameter*, double, int) override {}
    int getNumParameters() override { return 0; }
    Vardo::IPluginParameter* getParameter(int) override { return nullptr; }
    void setSampleRate(double newRate) override { rate = newRate; }
    void setBlockSize(int) override {}
    int getChunk(void**) override { return 0; }
    void setChunk(const void*, int) override {}
    void setBypass(bool) override {}
    void reset() override {}
    Vardo::IPluginEditor* getEditor() override { return editor; }

    double rate = 0;
    Vardo::IPluginEditor* editor = nullptr;
};

} // namespace Standalone
