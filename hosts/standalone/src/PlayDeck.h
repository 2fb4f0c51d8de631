// What plays, and what keeps its time: the file, the demonstration signal or the input, and the
// sound card or the silent clock.
#pragma once

#include "AudioClock.h"
#include "AudioSource.h"
#include "PlayEngine.h"

#include <memory>
#include <string>

namespace Vardo {
class IPluginBase;
}

namespace Standalone {

class FileStream;
class RateConverter;

/// Threads: main.
class PlayDeck {
  public:
    /// `plugin` outlives this. `silent`: no sound card is asked.
    PlayDeck(Vardo::IPluginBase& plugin, double tempo, bool silent);
    ~PlayDeck();
    PlayDeck(const PlayDeck&) = delete;
    PlayDeck& operator=(const PlayDeck&) = delete;

    /// Plays this from its start on, in place of what played; measuring starts over.
    /// Fails: throws UserError, and what played plays on.
    void load(std::unique_ptr<AudioSource> source);
    /// Listens to the default input. False when there is none.
    bool listen();
    bool isListening() const { return stream_ == nullptr; }

    void togglePlaying() { engine_.setPlaying(!engine_.isPlaying()); }
    bool isPlaying() const { return engine_.isPlaying(); }
    /// Back over the start stays there; on over the end starts over.
    void seekBy(double seconds);
    void toStart();
    /// Seconds from the start of the file; 0 while listening.
    double position() const;

    /// To be called now and then: tells of files that cannot be read on, and goes on in silence
    /// when the sound card is gone.
    void watch();

    /// "song.wav (48000 Hz, 3:05) on JACK, system".
    std::string description() const;
    int numDropOuts() const { return engine_.numDropOuts(); }

  private:
    void startClock(double sampleRate);

    Vardo::IPluginBase& plugin_;
    bool silent_;
    PlayEngine engine_;
    std::unique_ptr<FileStream> stream_; ///< null while listening
    double sampleRate_ = 0;
    std::unique_ptr<RateConverter> converter_; ///< where the card has another rate; else null
    std::unique_ptr<AudioClock> clock_;        // last: it calls the others
};

} // namespace Standalone
