#include "analysis/ChunkCapture.h"

#include <algorithm>
#include <utility>

namespace Orvel {

namespace {
constexpr int kStereo = 2;
} // namespace

ChunkCapture::ChunkCapture(int chunkLength)
    : chunkLength_(chunkLength)
    , remaining_(chunkLength)
    , buffers_{{chunkLength, kStereo}, {chunkLength, kStereo}} {
    pointRecords();
}

void ChunkCapture::resize(int chunkLength) {
    Vardo::CNChannelBuffer first(chunkLength, kStereo);
    Vardo::CNChannelBuffer second(chunkLength, kStereo);
    buffers_[0].swap(first);
    buffers_[1].swap(second);
    chunkLength_ = chunkLength;
    remaining_ = chunkLength;
    pointRecords();
}

void ChunkCapture::pointRecords() {
    write_->channels = buffers_[0].channels();
    read_->channels = buffers_[1].channels();
    read_->sampleCount = 0;
}

int ChunkCapture::add(const float* left,
                      const float* right,
                      int offset,
                      int count,
                      const BlockTransport& transport) noexcept {
    const int filled = chunkLength_ - remaining_;
    const int taken = std::min(remaining_, count - offset);

    // The position of the chunk's first sample. When playback starts in the middle of a chunk, it
    // is the position that sample would have had, so that those after it are right.
    if (filled == 0 || transport.playing != playing_)
        firstPosition_ = transport.position + (offset - filled) * transport.quartersPerSample;
    playing_ = transport.playing;

    std::copy_n(left + offset, taken, write_->channels[0] + filled);
    std::copy_n(right + offset, taken, write_->channels[1] + filled);
    remaining_ -= taken;
    return taken;
}

void ChunkCapture::finish(const BlockTransport& transport, bool resetFirst) noexcept {
    write_->sampleCount = chunkLength_;
    write_->playing = transport.playing;
    write_->tempo = transport.tempo;
    write_->position = firstPosition_;
    write_->resetFirst = resetFirst;
}

void ChunkCapture::exchange() noexcept {
    std::swap(write_, read_);
    remaining_ = chunkLength_;
}

} // namespace Orvel
