// Files that a person wrote and a command reads: batches and exports.
#pragma once

#include <cstdint>
#include <cstdio>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "client/arguments/words.h"

namespace kobd::client
{
struct InputFile
{
    std::string name;  // for error lines
    std::string text;
};

// Reads the file whole; "-" is standard input. A byte order mark goes, and a line may end with "\r\n".
// Fails for a text in UTF-16.
Failure ReadInput(const std::string& path, InputFile* file);

// Appends what is left to read of the open file. False with errno when it cannot be read.
[[nodiscard]] bool ReadAll(FILE* file, std::string* bytes);

// What is wrong with a line. It begins with "NAME=VALUE: " where a value is wrong, perhaps behind the name of its
// table.
struct LineError
{
    LineError(std::string text, std::string of = "", std::optional<std::string> wrong = {})
        : what(std::move(text)), name(std::move(of)), value(std::move(wrong))
    {
    }

    std::string what;
    std::string name = {};                  // of the object, table or column; empty: not known
    std::optional<std::string> value = {};  // nothing: not known
};

// The same of such a file, by the numbers of its lines from 1.
using LineErrors = std::multimap<size_t, LineError>;

// "FILE:LINE: WHAT" for each error, and how many there are beyond `most`.
Words LineTexts(const InputFile& file, const LineErrors& errors, size_t most = SIZE_MAX);
}  // namespace kobd::client
