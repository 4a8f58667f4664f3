// Files that a person wrote and a command reads: batches and exports.
#pragma once

#include <cstdio>
#include <map>
#include <string>

#include "client/arguments/words.h"

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
[[nodiscard]] bool ReadAll(FILE* file, std::string* bytes);

// What is wrong with lines of such a file, by their numbers from 1.
using LineErrors = std::multimap<size_t, std::string>;

// "FILE:LINE: WHAT" for each error.
Words LineTexts(const InputFile& file, const LineErrors& errors);
}  // namespace kobd::client
