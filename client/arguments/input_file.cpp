// Reading files whole.
#include "client/arguments/input_file.h"

namespace kobd::client
{
Failure ReadInput(const std::string& path, InputFile* file)
{
    file->name = path == "-" ? "standard input" : path;
    FILE* input = path == "-" ? stdin : fopen(path.c_str(), "re");
    if (input == nullptr) return SystemFailure("cannot open " + path);
    Failure failure;
    if (!ReadAll(input, &file->text)) failure = SystemFailure("cannot read " + file->name);
    if (input != stdin) fclose(input);
    return failure;
}

bool ReadAll(FILE* file, std::string* bytes)
{
    char part[16384];
    while (const size_t count = fread(part, 1, sizeof part, file)) bytes->append(part, count);
    return ferror(file) == 0;
}

Words LineTexts(const InputFile& file, const LineErrors& errors)
{
    Words texts;
    for (const auto& [line, what] : errors) texts.push_back(file.name + ":" + std::to_string(line) + ": " + what);
    return texts;
}
}  // namespace kobd::client
