// The border that no exception crosses on its way to the host.
#pragma once

#include "AAX.h"
#include "AAX_Errors.h"

namespace Vardo::Aax {

/// Runs `operation`, which gives an AAX_Result. Whatever it throws becomes an error for the host.
template <typename Operation>
AAX_Result guarded(Operation&& operation) noexcept {
    try {
        return operation();
    } catch (...) {
        return AAX_ERROR_UNKNOWN_EXCEPTION;
    }
}

/// The first error of a row of calls; the calls after it are made all the same.
class FirstError {
  public:
    void operator<<(AAX_Result result) noexcept {
        if (first_ == AAX_SUCCESS) first_ = result;
    }
    AAX_Result result() const noexcept { return first_; }

  private:
    AAX_Result first_ = AAX_SUCCESS;
};

} // namespace Vardo::Aax
