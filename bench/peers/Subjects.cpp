// How each analyser is fed, started and seen working.
#include "Subjects.h"

#include "analysis/CorrelationBlock.h"
#include "analysis/GoniometerStream.h"
#include "analysis/OrvelScope.h"
#include "frame/ProcessContext.h"

#include <algorithm>
#include <cstdio>

namespace Peers {

std::string text(const char* format, double value) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, format, value);
    return buffer;
}

namespace {

template <typename Count>
double perSecond(Count count) {
    return static_cast<double>(count) / kProofSeconds;
}

class Ours final : public Subject {
  public:
    Ours(int page, const Values& values) {
        scope_.setThreadedProcessing(false);
        scope_.setSampleRate(kRate);
        scope_.setBlockSize(kBlock);
        scope_.setActivePage(page);
        scope_.setScopeColumns(845); // as wide as the window draws it
        for (const auto& [id, value] : values)
            scope_.parameter(id).setValue(value);
    }

    void block(const float* left, const float* right) override {
        std::copy_n(left, kBlock, in_[0]);
        std::copy_n(right, kBlock, in_[1]);
        float* inputs[] = {in_[0], in_[1]};
        float* outputs[] = {out_[0], out_[1]};
        Vardo::CProcessContext context(inputs, 2, outputs, 2, nullptr, kBlock);
        scope_.process(context);
    }

    bool startWork() override {
        scope_.display().setWatched(true);
        for (auto& view : scope_.display().spectra)
            view.setVisible(true);
        scope_.readSpectrum(spectrum_);
        scope_.readAnalysis(analysis_);
        firstFrame_ = spectrum_.frames;
        firstSlice_ = analysis_.slices;
        firstGeneration_ = scope_.display().levelsGeneration;
        return true;
    }

    void observe() override {
        scope_.readScope(table_);
        double picture = 0; // another one when a column changes
        for (std::size_t i = 0; i < table_[0].size(); ++i)
            picture += static_cast<double>(i + 1) * static_cast<double>(table_[0][i].highest);
        if (picture != picture_) ++pictures_;
        picture_ = picture;
    }

    std::string proof() override {
        scope_.readSpectrum(spectrum_);
        scope_.readAnalysis(analysis_);
        const unsigned shown = scope_.display().levelsGeneration - firstGeneration_;
        if (analysis_.slices == firstSlice_ || shown == 0) return {};
        std::string result =
            text("levels %.0f times/s", perSecond(analysis_.slices - firstSlice_)) +
            text(", handed over %.0f times/s", perSecond(shown));
        if (spectrum_.frames > firstFrame_)
            result += text(", %.1f spectra/s", perSecond(spectrum_.frames - firstFrame_));
        if (pictures_ > 1) result += text(", picture changes %.0f times/s", perSecond(pictures_));
        if (scope_.activePage() == 2)
            result += text(", correlation %.2f", double{scope_.display().correlation});
        return result;
    }

  private:
    Orvel::COrvelScope scope_{nullptr};
    float in_[2][kBlock]{};
    float out_[2][kBlock]{};
    Vardo::SpectrumSnapshot spectrum_;
    Vardo::AnalysisSnapshot analysis_;
    Vardo::ScopeTable table_;
    std::int64_t firstFrame_ = 0;
    std::int64_t firstSlice_ = 0;
    unsigned firstGeneration_ = 0;
    double picture_ = 0;
    int pictures_ = 0;
};

class OurCorrelation final : public Subject {
  public:
    explicit OurCorrelation(bool withPoints)
        : withPoints_(withPoints) {
        correlation_.setSampleRate(kRate);
    }

    void block(const float* left, const float* right) override {
        // In slices of a millisecond, as the analysis cuts them.
        for (int at = 0; at < kBlock; at += kSlice) {
            const int count = std::min(kSlice, kBlock - at);
            correlation_.feed(left + at, right + at, count);
            if (withPoints_) points_->push(left + at, right + at, count);
        }
    }

    void observe() override {
        if (correlation_.correlation() != last_) ++changes_;
        last_ = correlation_.correlation();
    }

    std::string proof() override {
        if (changes_ < 2) return {};
        return text("correlation moves %.1f times/s", perSecond(changes_)) +
               text(" (%.3g)", double{last_});
    }

  private:
    static constexpr int kSlice = kRate / 1000;

    bool withPoints_;
    Orvel::CorrelationBlock correlation_;
    std::unique_ptr<Orvel::GoniometerStream> points_ = std::make_unique<Orvel::GoniometerStream>();
    float last_ = 0;
    int changes_ = 0;
};

/// How the x42 goniometer's memory begins (20221119): its window sets `isOpen` and reads the ring.
/// With another layout the watched port stays still, and there is no figure.
struct SharedRing {
    float* channels[2];
    std::size_t read;
    std::size_t write;
    std::size_t length;
};
struct SharedHead {
    SharedRing* ring;
    bool isOpen;
    bool overrun;
};

class Theirs final : public Subject {
  public:
    Theirs(Lv2World& world, const Peer& peer)
        : peer_(peer)
        , host_(world, peer.uri, kRate, kBlock) {
        for (const auto& [symbol, channel] : peer_.inputs)
            host_.routeInput(symbol, channel);
        for (const auto* values : {&peer_.controls, &peer_.idleControls})
            for (const auto& [symbol, value] : *values)
                host_.setControl(symbol, value);
    }

    void block(const float* left, const float* right) override {
        host_.run(left, right);
        if (shared_ != nullptr) shared_->ring->read = shared_->ring->write;
    }

    bool startWork() override {
        for (const auto& [symbol, value] : peer_.controls)
            host_.setControl(symbol, value);
        switch (peer_.window) {
        case Window::none:
            break;
        case Window::objectMessage:
            host_.sendObject(peer_.windowType);
            break;
        case Window::namedMessage:
            host_.sendObject(peer_.windowType, peer_.uri + "/ui_connect");
            break;
        case Window::sharedMemory:
            shared_ = static_cast<SharedHead*>(host_.handle());
            shared_->isOpen = true;
            break;
        }
        return peer_.window != Window::none || !peer_.idleControls.empty();
    }

    void observe() override {
        bytes_ += host_.eventBytes();
        if (peer_.watched.empty()) return;
        const float value = host_.control(peer_.watched);
        if (value != last_) ++changes_;
        last_ = value;
    }

    std::string proof() override {
        const bool watches = !peer_.watched.empty();
        if (watches ? changes_ < 2 : bytes_ < 1000) return {};
        std::string result;
        if (watches)
            result = "port " + peer_.watched + text(" moves %.1f times/s", perSecond(changes_)) +
                     text(" (%.3g)", double{last_});
        if (bytes_ > 0)
            result +=
                (watches ? ", " : "") + text("%.0f kB/s to its window", perSecond(bytes_) / 1e3);
        return result;
    }

  private:
    Peer peer_;
    Lv2Host host_;
    SharedHead* shared_ = nullptr;
    std::size_t bytes_ = 0;
    int changes_ = 0;
    float last_ = 0;
};

} // namespace

std::unique_ptr<Subject> makeOurs(int page, const Values& values) {
    return std::make_unique<Ours>(page, values);
}

std::unique_ptr<Subject> makeOurCorrelation(bool withPoints) {
    return std::make_unique<OurCorrelation>(withPoints);
}

std::unique_ptr<Subject> makeTheirs(Lv2World& world, const Peer& peer) {
    return std::make_unique<Theirs>(world, peer);
}

} // namespace Peers
