// Test double: where the song is.
#pragma once

#include "AAX.h"

class AAX_ITransport {
  public:
    AAX_Result GetCurrentTempo(double* value) const {
        *value = tempo;
        return result;
    }
    AAX_Result IsTransportPlaying(bool* value) const {
        *value = playing;
        return result;
    }
    AAX_Result GetCurrentNativeSampleLocation(std::int64_t* value) const {
        *value = location;
        return result;
    }

    double tempo = 120;
    bool playing = true;
    std::int64_t location = 0;
    AAX_Result result = 0;
};
