// Reading files whole.
#include "client/arguments/input_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "client/requests/dump_file.h"

namespace kobd::client
{
std::string ReadInput(const std::string& path, InputFile* file)
{
    file->name = path == "-" ? "standard input" : path;
    const int descriptor = path == "-" ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return "cannot open " + path + ": " + strerror(errno);
    const bool whole = ReadAll(descriptor, &file->text);
    const int error = errno;
    if (descriptor != STDIN_FILENO) close(descriptor);
    return whole ? "" : "cannot read " + file->name + ": " + strerror(error);
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
}  // namespace kobd::client
