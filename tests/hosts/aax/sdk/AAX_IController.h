// Test double: the host of one effect.
#pragma once

#include "AAX.h"

class AAX_IController {
  public:
    AAX_Result GetSampleRate(AAX_CSampleRate* rate) const {
        *rate = sampleRate;
        return 0;
    }
    AAX_Result SetSignalLatency(std::int32_t samples) {
        latency = samples;
        return 0;
    }
    AAX_Result GetHostName(AAX_IString* name) const {
        name->Set(hostName.c_str());
        return 0;
    }

    float sampleRate = 48000;
    int latency = -1;
    std::string hostName = "Fake Host 1.0";
};
