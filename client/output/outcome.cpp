// Printing outcomes.
#include "client/output/outcome.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include "client/output/terminal.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
constexpr std::string_view kReplaced = "\xEF\xBF\xBD";  // U+FFFD

volatile sig_atomic_t interrupted = 0;

// The text with U+FFFD in the place of each byte that is no UTF-8. The JSON library would put one for several bytes.
std::string Utf8(std::string_view text)
{
    std::string out;
    while (!text.empty())
    {
        const size_t length = CharacterLength(text);
        out += length == 0 ? kReplaced : text.substr(0, length);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return out;
}

// Makes UTF-8 of all texts in the data; names are UTF-8 already.
void MakeUtf8(Json* data)
{
    if (data->is_string()) *data = Utf8(data->get_ref<const std::string&>());
    if (data->is_structured())
        for (Json& part : *data) MakeUtf8(&part);
}

// The same JSON with "\u202e" in the place of each character that may steer the terminal.
std::string JsonOnTerminal(std::string_view line)
{
    std::string out;
    for (size_t at = 0, length = 0; at < line.size(); at += length)
    {
        length = std::max<size_t>(1, CharacterLength(line.substr(at)));
        const std::string_view character = line.substr(at, length);
        if (character == "\n" || !IsControl(character))
        {
            out += character;
            continue;
        }
        unsigned code = static_cast<unsigned char>(character[0]) & (length == 1 ? 0x7F : length == 2 ? 0x1F : 0x0F);
        for (const char byte : character.substr(1)) code = code << 6 | (static_cast<unsigned char>(byte) & 0x3F);
        char escape[8];
        snprintf(escape, sizeof escape, "\\u%04x", code);
        out += escape;
    }
    return out;
}

void PrintData(const Json& data)
{
    if (data.is_null()) return;
    const std::string line = isatty(STDOUT_FILENO) != 0 ? JsonOnTerminal(JsonLine(data)) : JsonLine(data);
    fwrite(line.data(), 1, line.size(), stdout);
}

void PrintFailure(const Options& options, const Outcome& outcome, const std::string& command)
{
    const Failure& failure = outcome.failure;
    const bool wrong_use = failure.code == kWrongUse;
    const std::string help = "; see kobctl help" + (command.empty() ? "" : " " + command);
    const std::string what = failure.what + (wrong_use ? help : "");
    Json data = {{"error", what}, {"code", wrong_use ? kInvalidArgument : failure.code}};
    if (!outcome.particulars.is_null()) data.update(outcome.particulars);
    if (options.json) PrintData(data);
    SayError(what);
}
}  // namespace

std::string JsonLine(Json data)
{
    MakeUtf8(&data);
    std::string line = data.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
    for (size_t at = line.find(kReplaced); at != std::string::npos; at = line.find(kReplaced, at))
        line.replace(at, kReplaced.size(), "\\ufffd");
    return line;
}

Json NumberJson(const std::string& text)
{
    Json number = Json::parse(text, nullptr, false);
    return number.is_number_integer() && number.dump() == text ? number : Json(text);
}

Json ValueJson(const kobd_description* of, const std::string& value)
{
    if (of == nullptr || of->is_number == 0) return value;
    if (of->is_flag != 0 && (value == "0" || value == "1")) return value == "1";
    const size_t sign = value.starts_with('-') ? 1 : 0;
    const size_t zeros = std::min(value.find_first_not_of('0', sign), value.size()) - sign;
    const bool all = sign + zeros == value.size();  // the last zero is the number
    return NumberJson(zeros == 0 ? value : value.substr(0, sign) + value.substr(sign + zeros - (all ? 1 : 0)));
}

Json TimeJson(int64_t microseconds)
{
    constexpr int64_t kSecond = 1'000'000;
    if (microseconds % kSecond == 0) return microseconds / kSecond;
    return static_cast<double>(microseconds) / static_cast<double>(kSecond);
}

Json ValuesJson(const Assignments& pairs)
{
    Json values = Json::object();
    for (const auto& [name, value] : pairs) values[name] = ValueJson(kobd_describe(name.c_str()), value);
    return values;
}

Json MistakesJson(const LineErrors& errors)
{
    Json mistakes;
    for (const auto& [line, error] : errors)
    {
        Json& one = mistakes["mistakes"].emplace_back(Json{{"line", line}});
        if (!error.name.empty()) one["name"] = error.name;
        if (error.value) one["value"] = *error.value;
        const std::string item = error.value ? error.name + "=" + *error.value + ": " : "";
        const size_t at = item.empty() ? std::string::npos : error.what.find(item);
        one["reason"] = at == std::string::npos ? error.what : error.what.substr(at + item.size());
    }
    return mistakes;
}

int Print(const Options& options, const Outcome& outcome, const std::string& command)
{
    const bool missing = !outcome.failure && outcome.status == 0 && !outcome.notes.empty();
    if (options.json && !(missing && outcome.data.empty())) PrintData(outcome.data);
    if (options.json && missing) PrintData({{"error", Joined(outcome.notes, "; ")}, {"code", kNotFound}});
    if (!options.json) fwrite(outcome.text.data(), 1, outcome.text.size(), stdout);
    for (const std::string& note : outcome.notes) SayError(note);
    if (outcome.failure) PrintFailure(options, outcome, command);
    if (outcome.failure) return outcome.failure.code == kWrongUse ? 2 : 1;
    return outcome.status != 0 ? outcome.status : outcome.notes.empty() ? 0 : 1;
}

void SayError(const std::string& what)
{
    fprintf(stderr, "kobctl: %s\n", (isatty(STDERR_FILENO) != 0 ? Escaped(what) : WithoutLineEnds(what)).c_str());
}

bool FlushOutput()
{
    errno = 0;
    if (fflush(stdout) == 0 && ferror(stdout) == 0) return true;
    const std::string why = errno != 0 ? ": " + std::string(strerror(errno)) : "";  // not known of an earlier write
    if (errno != EPIPE) SayError("the output was not written whole" + why);
    clearerr(stdout);  // a batch says it once
    return false;
}

bool OutputClosed()
{
    pollfd output = {STDOUT_FILENO, 0, 0};
    return poll(&output, 1, 0) > 0 && (output.revents & POLLERR) != 0;
}

void CatchInterrupts()
{
    signal(SIGINT, [](int) { interrupted = 1; });
    signal(SIGTERM, [](int) { interrupted = 1; });
}

bool Interrupted() { return interrupted != 0; }
}  // namespace kobd::client
