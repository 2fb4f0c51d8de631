// The three entries of the state that hosts and presets keep for the plug-in.
#pragma once

#include <cstddef>
#include <vector>

namespace Vardo {

/// Keys in a Core::CDataStore, in its default section, in the order in which they are written.
namespace StateKeys {
inline constexpr const char* kParameters = "PP_DATA";                     // CPropertyManager blob
inline constexpr const char* kProjectorFrequency = "PROJECTOR_FREQUENCY"; // float32, Hz
inline constexpr const char* kActivePage = "EDITOR_ACTIVE_PAGE";          // int32, 0..3
} // namespace StateKeys

/// A copy of a state chunk with another active page: how a host program opens a page, with the
/// chunk interface alone. Empty when `chunk` is none.
std::vector<std::byte> withActivePage(const void* chunk, int size, int page);

} // namespace Vardo
