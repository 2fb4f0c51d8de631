// A source that plays for ever.
#include "FileStream.h"

#include "StandardError.h"
#include "UserError.h"

#include <algorithm>
#include <utility>

namespace Standalone {

namespace {
// The audio thread wakes nobody.
constexpr auto kLookSoon = std::chrono::milliseconds(10);
constexpr int kLooksPerRing = 6;
} // namespace

FileStream::FileStream(std::unique_ptr<AudioSource> source)
    : source_(std::move(source))
    , info_(source_->info()) {
    while (fillPiece()) {
    }
    if (ring_.front() == nullptr) throw UserError(takeProblem());
    thread_ = std::thread([this] { readAhead(); });
}

FileStream::~FileStream() {
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    wake_.notify_one();
    thread_.join();
}

// ---- main thread

void FileStream::seek(std::int64_t frame) {
    frame = std::max<std::int64_t>(frame, 0);
    if (info_.frames > 0) frame = std::min(frame, info_.frames - 1);
    {
        const std::lock_guard lock(mutex_);
        seekTarget_ = frame;
        seekWanted_ = true;
        generation_.fetch_add(1, std::memory_order_release);
    }
    wake_.notify_one();
}

std::int64_t FileStream::position() const {
    // Until something of the new place was played, that place counts: seeks add up.
    const std::uint32_t played = playedGeneration_.load(std::memory_order_acquire);
    const std::lock_guard lock(mutex_);
    return played == generation_.load(std::memory_order_relaxed)
               ? playedPosition_.load(std::memory_order_relaxed)
               : seekTarget_;
}

std::string FileStream::takeProblem() {
    const std::lock_guard lock(mutex_);
    return std::exchange(problem_, {});
}

// ---- audio thread

FileStream::Run FileStream::read(float* left, float* right, int most) noexcept {
    for (;;) {
        const Piece* piece = ring_.front();
        if (piece == nullptr) return {};
        // Asked after the piece was seen: it is never newer than this.
        if (piece->generation != generation_.load(std::memory_order_acquire)) {
            ring_.pop();
            takenOfPiece_ = 0;
            continue;
        }
        const Run run{std::min(most, piece->frames - takenOfPiece_),
                      piece->position + takenOfPiece_};
        std::copy_n(piece->left.data() + takenOfPiece_, run.frames, left);
        std::copy_n(piece->right.data() + takenOfPiece_, run.frames, right);
        takenOfPiece_ += run.frames;
        playedPosition_.store(run.position + run.frames, std::memory_order_relaxed);
        playedGeneration_.store(piece->generation, std::memory_order_release);
        if (takenOfPiece_ == piece->frames) {
            ring_.pop();
            takenOfPiece_ = 0;
        }
        return run;
    }
}

// ---- reading thread

void FileStream::readAhead() {
    std::unique_lock lock(mutex_);
    while (!stopping_) {
        if (std::exchange(seekWanted_, false)) {
            const std::int64_t target = seekTarget_;
            readGeneration_ = generation_.load(std::memory_order_relaxed);
            piecesSinceSeek_ = 0;
            lock.unlock();
            carryOutSeek(target);
            lock.lock();
            continue;
        }
        lock.unlock();
        {
            const QuietLibraries quiet; // once for all pieces
            while (fillPiece()) {
            }
        }
        lock.lock();
        wake_.wait_for(lock, lookInterval(), [this] { return stopping_ || seekWanted_; });
    }
}

/// After a seek the ring is full of what nobody wants, until the audio thread has dropped it.
std::chrono::milliseconds FileStream::lookInterval() const {
    if (piecesSinceSeek_ < kPieces) return kLookSoon;
    const double seconds = double{kPieces * Piece::kMostFrames} / info_.sampleRate;
    return std::chrono::milliseconds(static_cast<int>(1000.0 * seconds / kLooksPerRing));
}

bool FileStream::fillPiece() {
    Piece* piece = stuck_ ? nullptr : ring_.free();
    if (piece == nullptr) return false;
    int got = 0;
    try {
        got = source_->read(piece->left.data(), piece->right.data(), Piece::kMostFrames);
    } catch (const std::exception& error) {
        report(error.what());
    }
    piece->frames = got;
    piece->position = next_;
    piece->generation = readGeneration_;
    if (got > 0) {
        ring_.push();
        ++piecesSinceSeek_;
        next_ += got;
        readSinceStart_ = true;
    }
    return got == Piece::kMostFrames || startOver();
}

// A source that gives nothing even from its start is not asked for ever.
bool FileStream::startOver() {
    stuck_ = !std::exchange(readSinceStart_, false);
    if (stuck_)
        report("'" + info_.path + "' holds no sound that can be played");
    else
        carryOutSeek(0);
    return !stuck_;
}

void FileStream::carryOutSeek(std::int64_t frame) {
    try {
        source_->seek(frame);
        next_ = frame;
        readSinceStart_ = readSinceStart_ || frame > 0;
        stuck_ = false;
    } catch (const std::exception& error) {
        report(error.what());
        stuck_ = true;
    }
}

void FileStream::report(const std::string& problem) {
    const std::lock_guard lock(mutex_);
    if (problem_.empty()) problem_ = problem;
}

} // namespace Standalone
