// Files that a person wrote and a command reads: batches and exports.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kobd::client
{
struct InputFile
{
    std::string name;  // for error lines
    std::string text;
};

// Reads the file whole, "-" is standard input. The error, or the empty text.
[[nodiscard]] std::string ReadInput(const std::string& path, InputFile* file);

// The lines of the text, without their line ends; valid as long as the text.
std::vector<std::string_view> LinesOf(std::string_view text);
}  // namespace kobd::client
