// Texts into buffers that a host lends.
#pragma once

#include <cstddef>

namespace Vardo {

/// Copies what fits into `room` bytes, always with an ending zero, and never cuts a UTF-8
/// character in two. Null pointers are an empty text, or nothing to do.
void copyText(char* target, const char* source, std::size_t room) noexcept;

} // namespace Vardo
