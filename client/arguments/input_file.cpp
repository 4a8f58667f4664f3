// Reading files whole.
#include "client/arguments/input_file.h"

namespace kobd::client
{
namespace
{
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";  // of UTF-8
}

Failure ReadInput(const std::string& path, InputFile* file)
{
    file->name = path == "-" ? "standard input" : path;
    FILE* input = path == "-" ? stdin : fopen(path.c_str(), "re");
    if (input == nullptr) return SystemFailure("cannot open " + path);
    Failure failure;
    if (!ReadAll(input, &file->text)) failure = SystemFailure("cannot read " + file->name);
    if (input != stdin) fclose(input);
    if (file->text.starts_with(kByteOrderMark)) file->text.erase(0, kByteOrderMark.size());
    for (size_t end = 0; (end = file->text.find("\r\n", end)) != file->text.npos; ++end) file->text.erase(end, 1);
    return failure;
}

bool ReadAll(FILE* file, std::string* bytes)
{
    char part[16384];
    while (const size_t count = fread(part, 1, sizeof part, file)) bytes->append(part, count);
    return ferror(file) == 0;
}

Words LineTexts(const InputFile& file, const LineErrors& errors, size_t most)
{
    Words texts;
    for (const auto& [line, what] : errors)
    {
        if (texts.size() == most) break;
        texts.push_back(file.name + ":" + std::to_string(line) + ": " + what);
    }
    if (errors.size() > texts.size()) texts.push_back("and " + std::to_string(errors.size() - texts.size()) + " more");
    return texts;
}
}  // namespace kobd::client
