// Reading files whole.
#include "client/arguments/input_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace kobd::client
{
Failure ReadInput(const std::string& path, InputFile* file)
{
    file->name = path == "-" ? "standard input" : path;
    const int descriptor = path == "-" ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return SystemFailure("cannot open " + path);
    Failure failure;
    if (!ReadAll(descriptor, &file->text)) failure = SystemFailure("cannot read " + file->name);
    if (descriptor != STDIN_FILENO) close(descriptor);
    return failure;
}

bool ReadAll(int file, std::string* bytes)
{
    char part[16384];
    for (;;)
    {
        const ssize_t count = read(file, part, sizeof part);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return count == 0;
        bytes->append(part, static_cast<size_t>(count));
    }
}

std::vector<std::string_view> LinesOf(std::string_view text)
{
    std::vector<std::string_view> lines;
    while (!text.empty())
    {
        const size_t end = text.find('\n');
        lines.push_back(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return lines;
}

std::vector<std::string> LineTexts(const InputFile& file, std::vector<LineError> errors)
{
    std::stable_sort(errors.begin(), errors.end(), [](const auto& a, const auto& b) { return a.line < b.line; });
    std::vector<std::string> texts;
    for (const auto& [line, what] : errors) texts.push_back(file.name + ":" + std::to_string(line) + ": " + what);
    return texts;
}

std::string Counted(size_t count, const char* word)
{
    return std::to_string(count) + " " + word + (count == 1 ? "" : "s");
}
}  // namespace kobd::client
