// Pictures by name, decoded once.
#pragma once

#include "draw/BaseObject.h"
#include "draw/Bitmap.h"

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace Sorel {

/// Shared by all editors of the process; holds one reference to each picture.
/// Threads: GUI thread (it opens the one resource archive for a moment).
class CPictureCache {
  public:
    /// Bytes of a stored name, with the ending zero. A longer name is never found again, and its
    /// picture is decoded anew each time.
    static constexpr std::size_t kNameBytes = 128;

    /// `archive` must stay valid as long as the cache is used.
    explicit CPictureCache(std::span<const std::byte> archive)
        : archive_(archive) {}

    /// Null when the archive has no such picture; nothing is remembered of that.
    CBitmap* getBitmap(const char* name);

  private:
    struct Record {
        Counted<CBitmap> picture;
        char name[kNameBytes];
    };

    std::span<const std::byte> archive_;
    std::vector<Record> records_;
};

} // namespace Sorel
