// Which rows of a picture of columns changed.
#pragma once

#include <algorithm>
#include <vector>

namespace Sorel {

/// For each group of columns, how far down and up its changes reach: so that a curve which moves a
/// little has little to paint. Heights are in any unit the owner likes. Threads: GUI thread.
class ChangedRows {
  public:
    /// Nothing has changed in this many columns.
    void begin(int columns) {
        columns_ = columns;
        groups_.assign(static_cast<std::size_t>((columns + kGroup - 1) / kGroup), Rows{});
    }
    /// Between heights `a` and `b`, in columns first..end - 1; what lies beside the picture is cut.
    void add(int first, int end, float a, float b) {
        first = std::max(first, 0);
        end = std::min(end, columns_);
        for (int group = first / kGroup; group * kGroup < end; ++group) {
            Rows& rows = groups_[static_cast<std::size_t>(group)];
            rows.low = std::min({rows.low, a, b});
            rows.high = std::max({rows.high, a, b});
        }
    }
    /// Calls `changed(first, end, low, high)` for each group of columns first..end - 1 with
    /// changes.
    template <class Changed>
    void forEach(Changed changed) const {
        for (std::size_t i = 0; i < groups_.size(); ++i) {
            const int first = static_cast<int>(i) * kGroup;
            if (groups_[i].low <= groups_[i].high)
                changed(first, std::min(first + kGroup, columns_), groups_[i].low, groups_[i].high);
        }
    }
    bool any() const {
        return std::any_of(groups_.begin(), groups_.end(),
                           [](const Rows& rows) { return rows.low <= rows.high; });
    }

  private:
    static constexpr int kGroup = 64; // wide enough that the painting of one outweighs its start
    struct Rows {
        float low = 1e30F;
        float high = -1e30F;
    };

    int columns_ = 0;
    std::vector<Rows> groups_;
};

} // namespace Sorel
