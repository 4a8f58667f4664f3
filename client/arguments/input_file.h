// Files that a person wrote and a command reads: batches and exports.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "client/output/failure.h"

namespace kobd::client
{
struct InputFile
{
    std::string name;  // for error lines
    std::string text;
};

// Reads the file whole; "-" is standard input.
Failure ReadInput(const std::string& path, InputFile* file);

// Appends what is left to read of the open file. False with errno when it cannot be read.
[[nodiscard]] bool ReadAll(int file, std::string* bytes);

// The lines of the text, without their line ends; valid as long as the text.
std::vector<std::string_view> LinesOf(std::string_view text);

// Something wrong with a line of such a file.
struct LineError
{
    size_t line;
    std::string what;
};

// "FILE:LINE: WHAT" for each error, by line.
std::vector<std::string> LineTexts(const InputFile& file, std::vector<LineError> errors);

// "1 line", "2 lines".
std::string Counted(size_t count, const char* word);
}  // namespace kobd::client
