// Test double: a straight line between two values.
#pragma once

template <typename T>
class AAX_CLinearTaperDelegate {
  public:
    AAX_CLinearTaperDelegate(T min, T max)
        : min_(static_cast<double>(min))
        , max_(static_cast<double>(max)) {}
    double toNormalized(double value) const { return (value - min_) / (max_ - min_); }

  private:
    double min_;
    double max_;
};
