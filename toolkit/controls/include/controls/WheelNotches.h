// Whole notches out of a wheel that also sends parts of them.
#pragma once

#include <cmath>

namespace Sorel {

/// Touch pads and fine wheels send parts of a notch; a value with steps moves by whole ones.
class WheelNotches {
  public:
    /// `distance` in notches. Gives the whole ones; what is left over waits for the next message,
    /// unless that turns the other way.
    double take(double distance) {
        if (distance * rest_ < 0.0) rest_ = 0.0;
        rest_ += distance;
        const double whole = std::trunc(rest_);
        rest_ -= whole;
        return whole;
    }

  private:
    double rest_ = 0.0;
};

} // namespace Sorel
