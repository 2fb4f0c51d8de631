// What is being dragged over a window.
#pragma once

#include "draw/BaseObject.h"

#include <string>
#include <vector>

namespace Sorel {

/// The entries of a drag, copied from the platform's data.
class CDragContainer : public CBaseObject {
  public:
    enum class Kind : std::uint8_t { kFilePath, kText, kBinary };
    struct Entry {
        Kind kind;
        /// A path or text is UTF-8. Links to files are given as the file they mean.
        std::string bytes;
    };

    explicit CDragContainer(std::vector<Entry> entries = {})
        : entries_(std::move(entries)) {}

    int count() const { return static_cast<int>(entries_.size()); }
    /// Null past the end.
    const Entry* entry(int index) const {
        return index >= 0 && index < count() ? &entries_[static_cast<std::size_t>(index)] : nullptr;
    }

  private:
    std::vector<Entry> entries_;
};

} // namespace Sorel
