// The bytes that carry parameter values: a header and one record per parameter.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Vardo {

struct ParameterRecord {
    std::string key;
    float value; // plain
    float min;
    float max;
};

/// The key as a record holds it: cut to 51 characters.
std::string_view storedKey(const char* key);

/// Empty on failure.
std::vector<std::byte> writeParameterBlob(std::string_view name,
                                          std::span<const ParameterRecord> records,
                                          bool compressed);

/// The records of the first whole blob of that name in `data`, without those whose value is not
/// finite or whose key has no end. Nothing when there is none or its body is damaged.
std::optional<std::vector<ParameterRecord>> readParameterBlob(std::string_view name,
                                                              std::span<const std::byte> data);

} // namespace Vardo
