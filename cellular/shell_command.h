// The text of one shell command, put together from fixed pieces and texts from outside. A text from
// outside always stands between quotes, escaped so that the shell passes it on unchanged and runs no part
// of it.
#pragma once

#include <cstddef>
#include <string_view>

namespace kobd
{
inline constexpr size_t kCommandBytes = 4096;  // with the zero byte

class ShellCommand
{
public:
    explicit ShellCommand(std::string_view start) { Add(start); }

    // A fixed piece, or a name that IsSectionName accepts.
    ShellCommand& Add(std::string_view piece);

    // A text between single quotes, which the pieces before and after it contain: ' becomes '\''.
    ShellCommand& AddSingleQuoted(std::string_view text);

    // A text between double quotes, as above: \ " $ ` get a backslash.
    ShellCommand& AddDoubleQuoted(std::string_view text);

    // The command, or nullptr when it is longer than the buffer: a cut command is never run.
    const char* Text() const { return whole_ ? text_ : nullptr; }

private:
    char text_[kCommandBytes] = {};
    size_t length_ = 0;
    bool whole_ = true;
};

// Whether a name may stand in a command without quotes: it has letters and digits only, at least one.
bool IsSectionName(std::string_view name);
}  // namespace kobd
