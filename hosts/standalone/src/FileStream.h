// A source that plays for ever: read ahead by a thread of its own, taken by the audio thread.
#pragma once

#include "AudioSource.h"
#include "PieceRing.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace Standalone {

/// At its end the source starts over. What comes out is what the source holds, bit for bit.
class FileStream {
  public:
    /// Reads ahead before it returns. Fails: throws UserError when the source cannot be read.
    explicit FileStream(std::unique_ptr<AudioSource> source);
    /// Ends the reading thread. Nobody may `read` any more.
    ~FileStream();
    FileStream(const FileStream&) = delete;
    FileStream& operator=(const FileStream&) = delete;

    const SourceInfo& info() const { return info_; }

    // ---- Threads: main
    /// Plays on from there, as soon as it is read; limited to the source.
    void seek(std::int64_t frame);
    /// The frame that plays next.
    std::int64_t position() const;
    /// What went wrong while reading, once; empty when nothing did. Playing starts over where it
    /// can, and is silent where it cannot.
    std::string takeProblem();

    // ---- Threads: audio
    struct Run {
        int frames = 0; ///< that were taken
        std::int64_t position = 0;
    };
    /// Takes at most `most` frames that follow each other. Fewer only at the end of a piece and of
    /// the source: ask again. None: nothing is read yet.
    Run read(float* left, float* right, int most) noexcept ORVEL_NONBLOCKING;
    /// Nothing was taken yet since the last seek.
    bool isSeeking() const noexcept ORVEL_NONBLOCKING {
        return playedGeneration_.load(std::memory_order_relaxed) !=
               generation_.load(std::memory_order_relaxed);
    }

  private:
    // 65536 frames: more than a second at 48 kHz, and half a megabyte.
    static constexpr std::size_t kPieces = 64;

    void readAhead();
    std::chrono::milliseconds lookInterval() const;
    bool fillPiece();
    bool startOver();
    void carryOutSeek(std::int64_t frame);
    void report(const std::string& problem);

    const std::unique_ptr<AudioSource> source_;
    const SourceInfo info_;
    PieceRing ring_{kPieces};

    // Of the reading thread.
    std::int64_t next_ = 0; // frame of the source
    std::uint32_t readGeneration_ = 0;
    bool readSinceStart_ = false;
    bool stuck_ = false;
    std::size_t piecesSinceSeek_ = 0;

    // Between main and reading thread, under the mutex.
    mutable std::mutex mutex_;
    std::condition_variable wake_;
    bool stopping_ = false;
    bool seekWanted_ = false;
    std::int64_t seekTarget_ = 0;
    std::string problem_;

    // Pieces of older generations are dropped: they were read before a seek.
    std::atomic<std::uint32_t> generation_{0}; // written by main, read by all

    // Of the audio thread.
    int takenOfPiece_ = 0;
    std::atomic<std::int64_t> playedPosition_{0}; // written by audio, read by main
    std::atomic<std::uint32_t> playedGeneration_{0};

    std::thread thread_; // last: it uses everything above
};

} // namespace Standalone
