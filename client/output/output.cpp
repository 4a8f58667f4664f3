// JSON strings, name patterns and error lines.
#include "client/output/output.h"

#include <fnmatch.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "client/library/kobd_client.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
// Whether the character may steer the terminal: a control, in one byte or in two, or no character.
bool IsControl(std::string_view character)
{
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(character[i]); };
    if (CharacterLength(character) == 0 || byte(0) < 0x20 || byte(0) == 0x7F) return true;
    return byte(0) == 0xC2 && byte(1) < 0xA0;
}

bool OnTerminal() { return isatty(STDOUT_FILENO) != 0; }

bool WantsColours()
{
    const char* refused = getenv("NO_COLOR");
    const char* terminal = getenv("TERM");
    return OnTerminal() && (refused == nullptr || *refused == 0) && terminal != nullptr &&
           strcmp(terminal, "dumb") != 0;
}
}  // namespace

size_t CharacterLength(std::string_view text)
{
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
    const size_t length = byte(0) < 0x80 ? 1 : byte(0) < 0xC2 ? 0 : byte(0) < 0xE0 ? 2 : byte(0) < 0xF0 ? 3 : 4;
    if (length == 0 || length > text.size() || byte(0) > 0xF4) return 0;
    for (size_t i = 1; i < length; ++i)
        if ((byte(i) & 0xC0) != 0x80) return 0;
    return length;
}

std::string Escaped(std::string_view text)
{
    std::string out;
    while (!text.empty())
    {
        const size_t length = std::max<size_t>(1, CharacterLength(text));
        const std::string_view character = text.substr(0, length);
        const bool control = IsControl(character);
        for (const char byte : character)
        {
            char escape[8];
            snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned>(static_cast<unsigned char>(byte)));
            out += control ? std::string(escape) : std::string(1, byte);
        }
        text.remove_prefix(length);
    }
    return out;
}

std::string Shown(std::string_view text) { return OnTerminal() ? Escaped(text) : std::string(text); }

std::string Coloured(Colour colour, const std::string& word)
{
    if (!WantsColours()) return word;
    return "\033[" + std::to_string(static_cast<int>(colour)) + "m" + word + "\033[0m";
}

bool OutputClosed()
{
    pollfd output = {STDOUT_FILENO, 0, 0};
    return poll(&output, 1, 0) > 0 && (output.revents & POLLERR) != 0;
}

bool FlushOutput()
{
    errno = 0;
    if (fflush(stdout) == 0 && ferror(stdout) == 0) return true;
    const std::string why = errno != 0 ? ": " + std::string(strerror(errno)) : "";  // not known of an earlier write
    if (errno != EPIPE) SayError("not all was written" + why);
    clearerr(stdout);  // a batch says it once
    return false;
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

std::string CodeText(int code) { return std::string(ResultText(code)) + " (" + std::to_string(code) + ")"; }

void SayError(const std::string& what)
{
    fprintf(stderr, "kobctl: %s\n", (isatty(STDERR_FILENO) != 0 ? Escaped(what) : what).c_str());
}

int Fail(const Options& options, int code, const std::string& what)
{
    if (options.json) printf("{\"error\":%s,\"code\":%d}\n", JsonString(what).c_str(), code);
    SayError(what);
    return 1;
}

int WrongUse(const Options& options, const std::string& what, const std::string& command)
{
    Fail(options, kInvalidArgument, what + "; see kobctl help" + (command.empty() ? "" : " " + command));
    return 2;
}

std::string WhyNoAnswer(const Options& options, int code)
{
    if (code == kReplyTimeout) return "no answer within " + std::to_string(options.timeout_ms) + " ms";
    if (code == kInitializeFailed) return "the system has no message queue for the answer, see kobctl doctor";
    kobd_module daemon = {};
    if (code == kNotRunning && kobd_module_look(KOBD_MODULE_DAEMON, &daemon) == EACCES)
        return "kobd runs as another user: be that user or root";
    return code == kNotRunning ? "kobd is not running on this bus" : "kobd was not reached";
}

int FailRequest(const Options& options, int code, bool from_bus, const std::string& what)
{
    return Fail(options, code, what + ": " + (from_bus ? WhyNoAnswer(options, code) + ": " : "") + CodeText(code));
}

int FailChange(const Options& options, int code, bool from_bus, const std::string& what)
{
    if (!from_bus || code != kReplyTimeout) return FailRequest(options, code, from_bus, what);
    return Fail(options, code,
                what + ": " + WhyNoAnswer(options, code) + ", see whether it was done: " + CodeText(code));
}
}  // namespace kobd::client
