#include "tree/ViewAttributes.h"

namespace Sorel {

void CViewAttributes::set(std::uint32_t identifier, std::span<const std::byte> bytes) {
    auto last = nodes_.before_begin();
    for (auto node = nodes_.begin(); node != nodes_.end(); last = node++) {
        if (node->identifier != identifier) continue;
        node->bytes.assign(bytes.begin(), bytes.end());
        return;
    }
    nodes_.insert_after(last, Node{identifier, {bytes.begin(), bytes.end()}});
}

std::span<const std::byte> CViewAttributes::get(std::uint32_t identifier) const {
    for (const Node& node : nodes_)
        if (node.identifier == identifier) return node.bytes;
    return {};
}

void CViewAttributes::remove(std::uint32_t identifier) {
    nodes_.remove_if([identifier](const Node& node) { return node.identifier == identifier; });
}

} // namespace Sorel
