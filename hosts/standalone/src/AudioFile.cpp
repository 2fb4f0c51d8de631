// A recording on disk. libsndfile gives integers scaled to -1..1 and floats as they are.
#include "AudioFile.h"

#include "StandardError.h"
#include "UserError.h"

#include <sndfile.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <unistd.h>

namespace Standalone {
namespace {

constexpr const char* kWhatToGive = "give a WAV, FLAC, OGG or MP3 recording";

// What the system knows about a file, in plainer words than a decoder's "System error".
void refuseHopelessFile(const std::string& path) {
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (status.type() == fs::file_type::not_found)
        throw UserError("there is no file '" + path + "'; check the path and its spelling");
    if (error)
        throw UserError("cannot look at '" + path + "' (" + error.message() +
                        "); check the path and its permissions");
    if (fs::is_directory(status))
        throw UserError("'" + path + "' is a folder; name one recording in it");
    if (!fs::is_regular_file(status))
        throw UserError("'" + path + "' is a device or a pipe; " + kWhatToGive + " on disk");
    if (fs::file_size(path, error) == 0 && !error)
        throw UserError("'" + path + "' is empty; " + kWhatToGive);
    if (access(path.c_str(), R_OK) != 0)
        throw UserError("may not read '" + path + "' (" + std::strerror(errno) +
                        "); check its permissions");
}

const char* reasonOf(int error) {
    switch (error) {
    case SF_ERR_MALFORMED_FILE:
        return "it is damaged";
    case SF_ERR_UNSUPPORTED_ENCODING:
        return "its encoding is not known here";
    default:
        return "it is damaged or of another kind";
    }
}

} // namespace

struct AudioFile::Decoder {
    explicit Decoder(SNDFILE* opened)
        : file(opened) {}
    ~Decoder() { sf_close(file); }
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;

    SNDFILE* file;
};

AudioFile::~AudioFile() = default;

AudioFile::AudioFile(const std::string& path) {
    refuseHopelessFile(path);

    SF_INFO format{};
    SNDFILE* file = [&] {
        const QuietLibraries quiet; // some decoders write notes of their own
        return sf_open(path.c_str(), SFM_READ, &format);
    }();
    if (file == nullptr)
        throw UserError("cannot read '" + path + "' as audio, " + reasonOf(sf_error(nullptr)) +
                        "; " + kWhatToGive);
    decoder_ = std::make_unique<Decoder>(file);
    // Taken for audio by its name alone: rate and encoding would be guesses.
    if ((format.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_RAW)
        throw UserError("'" + path + "' has no header that tells its sample rate; " + kWhatToGive);
    if (format.samplerate < 1 || format.channels < 1)
        throw UserError("'" + path + "' names no sample rate or no channels; " + kWhatToGive);
    if (format.frames == 0) throw UserError("'" + path + "' holds no sound; " + kWhatToGive);

    info_.path = path;
    info_.sampleRate = format.samplerate;
    info_.channels = format.channels;
    // Streams that cannot say how long they are announce an absurd length.
    info_.frames = format.frames < SF_COUNT_MAX ? std::max<sf_count_t>(format.frames, 0) : 0;
    framesPerPiece_ = std::max(1, 32768 / info_.channels);
    piece_.resize(static_cast<std::size_t>(framesPerPiece_) *
                  static_cast<std::size_t>(info_.channels));
}

int AudioFile::read(float* left, float* right, int frames) {
    const auto stride = static_cast<std::size_t>(info_.channels);
    const std::size_t second = info_.channels > 1 ? 1 : 0;
    const QuietLibraries quiet;
    int done = 0;
    while (done < frames) {
        const int wanted = std::min(frames - done, framesPerPiece_);
        const auto got = static_cast<int>(sf_readf_float(decoder_->file, piece_.data(), wanted));
        if (sf_error(decoder_->file) != SF_ERR_NO_ERROR)
            throw UserError("'" + info_.path + "' is damaged and cannot be read to its end (" +
                            sf_strerror(decoder_->file) + "); repair it or export it again");
        for (int i = 0; i < got; ++i) {
            const std::size_t frame = static_cast<std::size_t>(i) * stride;
            left[done + i] = piece_[frame];
            right[done + i] = piece_[frame + second];
        }
        done += got;
        if (got < wanted) break;
    }
    return done;
}

void AudioFile::seek(std::int64_t frame) {
    const QuietLibraries quiet;
    if (sf_seek(decoder_->file, frame, SEEK_SET) < 0)
        throw UserError("cannot go to another place in '" + info_.path +
                        "'; its format only plays on");
}

} // namespace Standalone
