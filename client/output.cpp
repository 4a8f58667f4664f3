// JSON strings, name patterns and error lines.
#include "client/output.h"

#include <fnmatch.h>

#include <cstdio>

#include "daemon/result.h"

namespace kobd::client
{
size_t CharacterLength(std::string_view text)
{
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
    const size_t length = byte(0) < 0x80 ? 1 : byte(0) < 0xC2 ? 0 : byte(0) < 0xE0 ? 2 : byte(0) < 0xF0 ? 3 : 4;
    if (length == 0 || length > text.size() || byte(0) > 0xF4) return 0;
    for (size_t i = 1; i < length; ++i)
        if ((byte(i) & 0xC0) != 0x80) return 0;
    return length;
}

std::string JsonString(std::string_view text)
{
    std::string out = "\"";
    while (!text.empty())
    {
        const size_t length = CharacterLength(text);
        const char first = text.front();
        if (length == 0)
            out += "\\ufffd";
        else if (first == '"' || first == '\\')
            out += {'\\', first};
        else if (static_cast<unsigned char>(first) < 0x20)
        {
            char code[8];
            snprintf(code, sizeof code, "\\u%04x", static_cast<unsigned>(first));
            out += code;
        }
        else
            out += text.substr(0, length);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return out + "\"";
}

bool MatchesName(const std::string& pattern, const std::string& name)
{
    if (pattern.find_first_of("*?[") == std::string::npos) return name.find(pattern) != std::string::npos;
    return fnmatch(pattern.c_str(), name.c_str(), 0) == 0;
}

int Fail(const Options& options, int code, const std::string& what)
{
    if (options.json) printf("{\"error\":%s,\"code\":%d}\n", JsonString(what).c_str(), code);
    fprintf(stderr, "kobctl: %s\n", what.c_str());
    return 1;
}

int FailRequest(const Options& options, int code, bool from_bus, const std::string& what)
{
    const std::string text = std::string(ResultText(code)) + " (" + std::to_string(code) + ")";
    if (from_bus && code == kNotRunning) return Fail(options, code, "kobd is not running on this bus: " + text);
    if (from_bus && code == kReplyTimeout)
        return Fail(options, code, what + ": no answer within " + std::to_string(options.timeout_ms) + " ms: " + text);
    return Fail(options, code, what + ": " + text);
}
}  // namespace kobd::client
