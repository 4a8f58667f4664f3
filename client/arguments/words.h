// Words of a command line, and what single words say.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kobd::client
{
using Words = std::vector<std::string>;

// The words with the separator between them.
std::string Joined(const Words& words, const char* separator = ", ");

// An integer in decimal digits, after a minus sign where `lowest` is negative; nothing outside of the range.
std::optional<int64_t> ReadInteger(const std::string& text, int64_t lowest, int64_t highest);
}  // namespace kobd::client
