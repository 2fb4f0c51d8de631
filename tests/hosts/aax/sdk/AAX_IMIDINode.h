// Test double: events, and the way to the transport.
#pragma once

#include "AAX_ITransport.h"

class AAX_IMIDINode {
  public:
    AAX_CMidiStream* GetNodeBuffer() { return stream; }
    AAX_ITransport* GetTransport() { return transport; }

    AAX_CMidiStream* stream = nullptr;
    AAX_ITransport* transport = nullptr;
};
