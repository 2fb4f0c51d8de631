// Small blocks of bytes that callers hang onto a view.
#pragma once

#include <cstddef>
#include <cstdint>
#include <forward_list>
#include <span>
#include <vector>

namespace Sorel {

/// Each block has an identifier of its caller's choice; a view has few, so they are searched.
class CViewAttributes {
  public:
    /// Stores a copy; a block with this identifier is overwritten.
    void set(std::uint32_t identifier, std::span<const std::byte> bytes);
    /// Empty when there is none.
    std::span<const std::byte> get(std::uint32_t identifier) const;
    void remove(std::uint32_t identifier);

  private:
    struct Node {
        std::uint32_t identifier;
        std::vector<std::byte> bytes;
    };
    std::forward_list<Node> nodes_;
};

} // namespace Sorel
