// Reading files whole.
#include "client/arguments/input_file.h"

#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";  // of UTF-8

// Whether the text begins with a byte order mark of UTF-16, or with a letter in two bytes, one of which is 0.
bool IsUtf16(std::string_view text)
{
    return text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF") ||
           (text.size() > 1 && (text[0] == 0) != (text[1] == 0));
}
}  // namespace

Failure ReadInput(const std::string& path, InputFile* file)
{
    file->name = path == "-" ? "standard input" : path;
    FILE* input = path == "-" ? stdin : fopen(path.c_str(), "re");
    if (input == nullptr) return SystemFailure("cannot open " + path);
    Failure failure;
    if (!ReadAll(input, &file->text)) failure = SystemFailure("cannot read " + file->name);
    if (input != stdin) fclose(input);
    if (!failure && IsUtf16(file->text))
        return {kInvalidArgument, file->name + " is a text in UTF-16; kobctl takes UTF-8"};
    if (file->text.starts_with(kByteOrderMark)) file->text.erase(0, kByteOrderMark.size());
    for (size_t end = 0; (end = file->text.find("\r\n", end)) != file->text.npos; ++end) file->text.erase(end, 1);
    return failure;
}

bool ReadAll(FILE* file, std::string* bytes)
{
    char part[16384];
    // A terminal must not be asked again behind its end.
    while (const size_t count = feof(file) == 0 ? fread(part, 1, sizeof part, file) : 0) bytes->append(part, count);
    return ferror(file) == 0;
}

Words LineTexts(const InputFile& file, const LineErrors& errors, size_t most)
{
    Words texts;
    for (const auto& [line, error] : errors)
    {
        if (texts.size() == most) break;
        texts.push_back(file.name + ":" + std::to_string(line) + ": " + error.what);
    }
    if (errors.size() > texts.size()) texts.push_back("and " + std::to_string(errors.size() - texts.size()) + " more");
    return texts;
}
}  // namespace kobd::client
