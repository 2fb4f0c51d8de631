// Texts between our UTF-8 and the UTF-16 of VST 3.
#pragma once

#include "pluginterfaces/vst/vsttypes.h"

#include <string>

namespace Vardo {

/// Cut to 127 units, never inside a character. Null counts as empty; bad bytes become U+FFFD.
void copyText16(Steinberg::Vst::String128 target, const char* utf8) noexcept;
/// At most 127 units are read. Null counts as empty; a lone surrogate becomes U+FFFD.
std::string toUtf8(const Steinberg::Vst::TChar* text);

} // namespace Vardo
