// What plays, and what keeps its time.
#include "PlayDeck.h"

#include "FileStream.h"
#include "RateConverter.h"
#include "ReportText.h"
#include "SilentClock.h"
#include "SoundCard.h"
#include "StandardError.h"
#include "frame/PluginBase.h"

#include <cmath>

namespace Standalone {
namespace {

std::string minutesAndSeconds(double seconds) {
    const auto whole = static_cast<long long>(seconds);
    const std::string rest = std::to_string(whole % 60);
    return std::to_string(whole / 60) + (rest.size() < 2 ? ":0" : ":") + rest;
}

} // namespace

PlayDeck::PlayDeck(Vardo::IPluginBase& plugin, double tempo, bool silent)
    : plugin_(plugin)
    , silent_(silent)
    , engine_(plugin, tempo) {}

PlayDeck::~PlayDeck() = default;

void PlayDeck::load(std::unique_ptr<AudioSource> source) {
    auto stream = std::make_unique<FileStream>(std::move(source));
    clock_.reset();
    engine_.setStream(stream.get());
    stream_ = std::move(stream);
    engine_.setPlaying(true);
    plugin_.reset();
    startClock(stream_->info().sampleRate);
}

bool PlayDeck::listen() {
    clock_.reset();
    engine_.setStream(nullptr);
    stream_.reset();
    std::string problem;
    if (!silent_) clock_ = SoundCard::listen(engine_, problem);
    return clock_ != nullptr;
}

void PlayDeck::startClock(double sampleRate) {
    sampleRate_ = sampleRate;
    std::string problem;
    if (!silent_) clock_ = SoundCard::play(engine_, sampleRate, problem);
    if (!clock_ && !problem.empty()) {
        // There is a card, but not for this rate: then at the rate it likes best.
        converter_ = std::make_unique<RateConverter>(engine_, sampleRate);
        clock_ = SoundCard::play(*converter_, SoundCard::kItsOwnRate, problem);
        if (!clock_) tell("the sound card does not play this (" + problem + ")");
    }
    if (!clock_) clock_ = std::make_unique<SilentClock>(engine_, sampleRate);
}

void PlayDeck::seekBy(double seconds) {
    if (!stream_) return;
    const double rate = stream_->info().sampleRate;
    const std::int64_t target = stream_->position() + std::llround(seconds * rate);
    const std::int64_t length = stream_->info().frames;
    stream_->seek(length > 0 && target >= length ? 0 : target);
}

void PlayDeck::toStart() {
    if (stream_) stream_->seek(0);
}

double PlayDeck::position() const {
    return stream_ ? static_cast<double>(stream_->position()) / stream_->info().sampleRate : 0;
}

void PlayDeck::watch() {
    if (stream_)
        if (const std::string problem = stream_->takeProblem(); !problem.empty()) tell(problem);
    if (!clock_ || clock_->isAlive()) return;
    const std::string name = clock_->name();
    clock_.reset();
    if (stream_) {
        clock_ = std::make_unique<SilentClock>(engine_, sampleRate_);
        tell("the sound card is gone (" + name + "); playing goes on in silence");
    } else {
        tell("the input is gone (" + name + "); drop a recording on the window to play it");
    }
}

std::string PlayDeck::description() const {
    if (!stream_) return "the default input on " + (clock_ ? clock_->name() : "nothing");
    const SourceInfo& info = stream_->info();
    const double seconds = static_cast<double>(info.frames) / info.sampleRate;
    return info.path + " (" + shortNumber(info.sampleRate) + " Hz" +
           (info.frames > 0 ? ", " + minutesAndSeconds(seconds) : "") + ") on " + clock_->name();
}

} // namespace Standalone
