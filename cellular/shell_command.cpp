// Putting shell commands together.
#include "cellular/shell_command.h"

#include <algorithm>
#include <cstring>

namespace kobd
{
ShellCommand& ShellCommand::Add(std::string_view piece)
{
    whole_ = whole_ && piece.size() < sizeof text_ - length_;
    if (!whole_) return *this;
    memcpy(text_ + length_, piece.data(), piece.size());
    length_ += piece.size();
    return *this;
}

ShellCommand& ShellCommand::AddSingleQuoted(std::string_view text)
{
    for (const char& c : text)
    {
        if (c == '\'')
            Add("'\\''");
        else
            Add({&c, 1});
    }
    return *this;
}

ShellCommand& ShellCommand::AddDoubleQuoted(std::string_view text)
{
    constexpr std::string_view kSpecial = "\\\"$`";
    for (const char& c : text)
    {
        if (kSpecial.find(c) != std::string_view::npos) Add("\\");
        Add({&c, 1});
    }
    return *this;
}

bool IsSectionName(std::string_view name)
{
    const auto allowed = [](char c)
    { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    return !name.empty() && std::all_of(name.begin(), name.end(), allowed);
}
}  // namespace kobd
