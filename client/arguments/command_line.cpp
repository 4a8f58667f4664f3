// Options and words.
#include "client/arguments/command_line.h"

#include <getopt.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <utility>

#include "client/dictionary/names.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
constexpr double kLongestTimeout = 24.0 * 60 * 60;  // seconds
constexpr int kHighestCount = 1000000;
constexpr int kHighestCode = 255;
constexpr int kHighestSpeed = 1000;

// Seconds with or without a fraction and an "s" behind them, as milliseconds.
Failure ReadSeconds(const std::string& text, double least, const char* takes, int* milliseconds)
{
    char* end = nullptr;
    const double seconds = strtod(text.c_str(), &end);
    const std::string_view rest = end;
    if (text.empty() || (!rest.empty() && rest != "s") || !std::isfinite(seconds) || seconds < least ||
        seconds > kLongestTimeout)
        return {kWrongUse, std::string(takes) + ", not '" + text + "'"};
    *milliseconds = static_cast<int>(seconds * 1000);
    return {};
}

Failure ReadTimeout(const std::string& text, Options* options)
{
    options->timeout_ms = 0;
    return ReadSeconds(text, 0, "--timeout takes seconds", &*options->timeout_ms);
}

Failure ReadPoll(const std::string& text, Options* options)
{
    return ReadSeconds(text, 0.01, "--poll takes a number of seconds from 0.01, such as 0.05", &options->poll_ms);
}

Failure ReadPcap(const std::string& text, Options* options)
{
    options->pcap = text;
    return text.empty() ? Failure{kWrongUse, "--pcap takes the name of a file"} : Failure();
}

Failure ReadNumber(const std::string& text, int highest, const char* takes, int* number)
{
    const auto read = ReadInteger(text, 1, highest);
    if (!read) return {kWrongUse, std::string(takes) + ", not '" + text + "'"};
    *number = static_cast<int>(*read);
    return {};
}

Failure ReadCount(const std::string& text, Options* options)
{
    return ReadNumber(text, kHighestCount, "--count takes a number", &options->count);
}

// "2026-11-25", "2026-11-25 18:30", or how long ago: "90s", "30m", "24h", "7d".
Failure ReadSince(const std::string& text, Options* options)
{
    constexpr std::pair<char, int64_t> kUnits[] = {{'s', 1}, {'m', 60}, {'h', 3600}, {'d', 86400}};  // in seconds
    for (const auto& [unit, seconds] : kUnits)
        if (text.ends_with(unit))
            if (const auto ago = ReadInteger(text.substr(0, text.size() - 1), 0, INT32_MAX))
            {
                options->since_s = time(nullptr) - *ago * seconds;
                return {};
            }
    for (const char* form : {"%Y-%m-%d", "%Y-%m-%d %H:%M", "%Y-%m-%d %H:%M:%S"})
    {
        tm local = {};
        local.tm_isdst = -1;
        const char* end = strptime(text.c_str(), form, &local);
        if (end == nullptr || *end != 0) continue;
        options->since_s = mktime(&local);
        return {};
    }
    return {kWrongUse,
            "--since takes a date, such as 2026-11-25 or '2026-11-25 18:30', or a time ago, such as 30m, 24h "
            "or 7d, not '" +
                text + "'"};
}

Failure ReadTimes(const std::string& text, Options* options)
{
    return ReadNumber(text, kHighestCount, "--times takes a number from 1 to 1000000", &options->times);
}

Failure ReadCode(const std::string& text, Options* options)
{
    return ReadNumber(text, kHighestCode, "--code takes a result code from 1 to 255", &options->code);
}

Failure ReadSpeed(const std::string& text, Options* options)
{
    return ReadNumber(text, kHighestSpeed, "--speed takes a number from 1 to 1000", &options->speed);
}

Failure ReadConfirm(const std::string& text, Options* options)
{
    const std::string number = text.size() > 1 && text.ends_with('s') ? text.substr(0, text.size() - 1) : text;
    const auto seconds = ReadInteger(number, 1, kLongestConfirm);
    if (!seconds) return {kWrongUse, "--confirm takes seconds from 1 to 604800, not '" + text + "'"};
    options->confirm_s = static_cast<int>(*seconds);
    return {};
}

Failure ReadColumns(const std::string& text, Options* options)
{
    bool right = true;
    for (size_t start = 0, end = 0; end != text.size() || start == 0; start = end + 1)
    {
        end = std::min(text.find(',', start), text.size());
        const std::string name = text.substr(start, end - start);
        right = right && !name.empty() && std::ranges::find(options->columns, name) == options->columns.end();
        options->columns.push_back(name);
    }
    if (right) return {};
    return {kWrongUse, "--columns takes different names with a comma between them, not '" + text + "'"};
}

Failure ReadParent(const std::string& text, Options* options)
{
    options->parent = text;
    return text.empty() ? Failure{kWrongUse, "--parent takes the path of an object"} : Failure();
}

// An option sets a flag, or has a value to read.
struct Option
{
    const char* name;
    bool Options::*flag;
    Failure (*read)(const std::string& value, Options* options);
    bool every_command = false;  // takes it
};

constexpr Option kOptions[] = {
    {"json", &Options::json, nullptr, true},
    {"timeout", nullptr, ReadTimeout, true},
    {"help", &Options::help, nullptr, true},
    {"version", &Options::version, nullptr},
    {"silent", &Options::silent, nullptr},
    {"confirm", nullptr, ReadConfirm},
    {"resume", &Options::resume, nullptr},
    {"parent", nullptr, ReadParent},
    {"columns", nullptr, ReadColumns},
    {"follow", &Options::follow, nullptr},
    {"count", nullptr, ReadCount},
    {"since", nullptr, ReadSince},
    {"secrets", &Options::secrets, nullptr},
    {"pcap", nullptr, ReadPcap},
    {"poll", nullptr, ReadPoll},
    {"case", &Options::exact_case, nullptr},
    {"long", &Options::long_lines, nullptr},
    {"json-schema", &Options::json_schema, nullptr},
    {"openapi", &Options::openapi, nullptr},
    {"yang", &Options::yang, nullptr},
    {"announce", &Options::announce, nullptr},
    {"all", &Options::all, nullptr},
    {"diff", &Options::diff, nullptr},
    {"dry-run", &Options::dry_run, nullptr},
    {"code", nullptr, ReadCode},
    {"times", nullptr, ReadTimes},
    {"speed", nullptr, ReadSpeed},
};

Failure UnknownOption(const std::string& word)
{
    Words names;
    for (const Option& one : kOptions) names.push_back("--" + std::string(one.name));
    return {kWrongUse, "unknown option " + word + DidYouMean(word, names)};
}

// Reads the option at `optind` and moves behind it. getopt_long takes "--sil" for "--silent", which we refuse.
Failure ReadOption(const std::vector<char*>& arguments, CommandLine* line)
{
    const std::string word = arguments[static_cast<size_t>(optind)];
    const std::string name = word.substr(2, word.find('=') - 2);
    const Option* known = FindNamed(kOptions, name);
    if (known == nullptr) return UnknownOption(word);
    const option taken[] = {{known->name, known->read != nullptr ? required_argument : no_argument, nullptr, 'o'}, {}};
    const int letter = getopt_long(static_cast<int>(arguments.size()) - 1, arguments.data(), "+:", taken, nullptr);
    if (letter == '?') return {kWrongUse, "--" + name + " takes no value"};
    if (!known->every_command) line->own_options.push_back("--" + name);
    if (known->read != nullptr) return known->read(letter == ':' ? "" : optarg, &line->options);
    line->options.*known->flag = true;
    return {};
}
}  // namespace

Failure ReadCommandLine(const Words& arguments, CommandLine* line)
{
    Words copies = arguments;
    std::vector<char*> pointers = {nullptr};  // where the program's name stands
    for (std::string& copy : copies) pointers.push_back(copy.data());
    pointers.push_back(nullptr);
    opterr = 0;
    for (optind = 1; optind <= static_cast<int>(arguments.size());)
    {
        const std::string& word = arguments[static_cast<size_t>(optind) - 1];
        if (word == "--")
        {
            line->words.insert(line->words.end(), arguments.begin() + optind, arguments.end());
            return {};
        }
        if (word == "-h") line->options.help = true;
        if (word.size() > 1 && word[0] == '-' && isalpha(static_cast<unsigned char>(word[1])) != 0 && word != "-h")
            return UnknownOption(word);
        if (word.starts_with("--"))
        {
            if (Failure failure = ReadOption(pointers, line)) return failure;
            continue;
        }
        if (word != "-h") line->words.push_back(word);
        ++optind;
    }
    return {};
}

Words OptionsOfEveryCommand()
{
    Words options;
    for (const Option& one : kOptions)
        if (one.every_command) options.push_back("--" + std::string(one.name));
    return options;
}

bool OptionTakesValue(const std::string& option)
{
    const Option* known = option.starts_with("--") ? FindNamed(kOptions, option.substr(2)) : nullptr;
    return known != nullptr && known->read != nullptr;
}

Failure SplitLine(std::string_view line, Words* words)
{
    char quote = 0;
    bool in_word = false;
    for (size_t i = 0; i < line.size(); ++i)
    {
        const char c = line[i];
        const bool blank = quote == 0 && (c == ' ' || c == '\t' || c == '\r');
        if (quote == 0 && !in_word && c == '#') return {};
        if (!blank && !in_word) words->emplace_back();
        in_word = !blank;
        if (blank) continue;
        if (c == '\\' && quote != '\'')
        {
            if (++i == line.size()) return {kInvalidArgument, "a backslash ends the line"};
            words->back() += line[i];
        }
        else if (c == quote)
            quote = 0;
        else if (quote == 0 && (c == '\'' || c == '"'))
            quote = c;
        else
            words->back() += c;
    }
    if (quote == 0) return {};
    return {kInvalidArgument, "the quote " + std::string(1, quote) + " is not closed"};
}
}  // namespace kobd::client
