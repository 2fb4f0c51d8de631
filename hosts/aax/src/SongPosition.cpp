// Which of the host's words on time are taken.
#include "SongPosition.h"

#include "AAX_Errors.h"
#include "AAX_ITransport.h"
#include "hosting/Limits.h"

#include <algorithm>
#include <cstdint>

namespace Vardo::Aax {

SongPosition SongPosition::read(const AAX_ITransport* host) {
    SongPosition position;
    if (host == nullptr) return position;

    double tempo = 0;
    if (host->GetCurrentTempo(&tempo) == AAX_SUCCESS && isTempo(tempo)) position.tempo = tempo;
    bool playing = false;
    if (host->IsTransportPlaying(&playing) == AAX_SUCCESS) position.playing = playing;
    std::int64_t location = 0; // negative in a pre-roll
    if (host->GetCurrentNativeSampleLocation(&location) == AAX_SUCCESS)
        position.samples = static_cast<double>(std::max<std::int64_t>(location, 0));
    return position;
}

} // namespace Vardo::Aax
