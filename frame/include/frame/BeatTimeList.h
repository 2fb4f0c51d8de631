// Musical lengths by name.
#pragma once

#include "core/Strings.h"

#include <vector>

namespace Vardo {

enum BeatTimeKinds : int {
    kStraight = 2,
    kTriplet = 4,
    kDotted = 8,
};

struct BeatTime {
    Core::CStringBufferd<32> label;      ///< "1/4", "2 Bars", "1/8T"
    Core::CStringBufferd<32> shortLabel; ///< "1/4", "2/1", "1/8T"
    double bars = 0;                     ///< 1.0 is a bar of four beats
    int kind = kStraight;
};

/// A list of beat lengths, sorted by length.
class BeatTimeList {
  public:
    /// `bars` is a list of lengths in bars that ends with 0; `kinds` is a sum of BeatTimeKinds:
    /// which forms of each length to add.
    BeatTimeList(const float* bars, int kinds);

    int size() const { return static_cast<int>(entries_.size()); }
    /// The index is limited to the list.
    const BeatTime& at(int index) const;
    /// Index of the entry with that label or short label, -1 when there is none.
    int find(const char* label) const;
    /// Milliseconds at `tempo` beats per minute. An index outside the list counts as one bar.
    double getBeatLength(int index, double tempo) const;

    /// The nine straight lengths from 1/32 to 8 bars.
    static const BeatTimeList& straight();

  private:
    std::vector<BeatTime> entries_;
};

} // namespace Vardo
