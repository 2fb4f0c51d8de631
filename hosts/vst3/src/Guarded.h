// Keeps exceptions on this side of the interface.
#pragma once

#include "pluginterfaces/base/funknown.h"

#include <new>

namespace Vardo {

/// The result of `body`; kOutOfMemory or kInternalError where it throws.
template <class Body>
Steinberg::tresult guarded(Body&& body) noexcept {
    try {
        return body();
    } catch (const std::bad_alloc&) {
        return Steinberg::kOutOfMemory;
    } catch (...) {
        return Steinberg::kInternalError;
    }
}

} // namespace Vardo
