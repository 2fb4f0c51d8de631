// Test double: off and on.
#pragma once

template <typename T>
class AAX_CBinaryTaperDelegate {
  public:
    double toNormalized(double value) const { return value; }
};
