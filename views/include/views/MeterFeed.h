// What a level meter reads from the engine, once per picture.
#pragma once

#include "views/HistogramColumn.h"

#include <array>

namespace Orvel {
class COrvelScope;
}

namespace Sorel {

/// One channel at one moment, linear amplitude unless the name says Db.
struct MeterLevels {
    float bar = 0;  ///< peak, falling fast
    float hold = 0; ///< peak, held
    float rms = 0;
    float dynamicRangeDb = -96;
    int overs = 0;
};

/// Takes the largest levels since the last picture of one or two neighbouring channels. Two feeds
/// may not read the same channel: each would take the other's peaks.
/// Threads: GUI thread.
class MeterFeed {
  public:
    /// The analyser may be null: nothing ever comes.
    MeterFeed(Orvel::COrvelScope* analyser, int firstChannel, int numChannels);

    /// True when something was measured since the last call. A meter that nobody can see passes
    /// `visible` false: what happened meanwhile is not shown when it comes back.
    bool poll(bool visible);
    /// The overs so far may be old ones: of the time before the meter came into sight.
    bool areOversOld() const { return pictures_ > 0 && pictures_ <= kOldPictures; }
    /// `i` counts from the first channel.
    const MeterLevels& levels(int i) const { return levels_[static_cast<std::size_t>(i)]; }
    void readHistogram(int i, HistogramColumn::Counts& counts, int& highest) const;

    /// Asks the engine to count overs from 0. A slice that is being measured right now still brings
    /// the old count; it is left out.
    void resetOvers();

  private:
    /// The one that was left from earlier, that of the slice under way when the meter came into
    /// sight, and the first with everything that was counted meanwhile.
    static constexpr int kOldPictures = 3;

    void take();
    std::size_t channel(int i) const {
        return static_cast<std::size_t>(firstChannel_) + static_cast<std::size_t>(i);
    }

    Orvel::COrvelScope* analyser_;
    int firstChannel_;
    int numChannels_;
    int pictures_ = 0; // since the meter is in sight, up to one more than kOldPictures
    unsigned seen_ = 0;
    bool resetting_ = false;
    unsigned resetAt_ = 0;
    std::array<MeterLevels, 2> levels_{};
};

} // namespace Sorel
