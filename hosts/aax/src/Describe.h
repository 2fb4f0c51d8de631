// Tells a host, before any instance exists, what this module contains.
#pragma once

#include "AAX.h"

class AAX_ICollection;

/// The SDK's glue calls it once, on the host's main thread. Gives an AAX_Result.
AAX_Result GetEffectDescriptions(AAX_ICollection* collection);
