// Options and words.
#include "client/arguments/command_line.h"

#include <getopt.h>

#include <cmath>
#include <cstdlib>
#include <span>

#include "client/dictionary/names.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
constexpr double kLongestTimeout = 24.0 * 60 * 60;  // seconds
constexpr int kHighestCount = 1000000;
constexpr int kLongestConfirm = 7 * 24 * 60 * 60;  // seconds

constexpr option kOptions[] = {
    {"json", no_argument, nullptr, 'j'},
    {"timeout", required_argument, nullptr, 't'},
    {"silent", no_argument, nullptr, 's'},
    {"confirm", required_argument, nullptr, 'c'},
    {"parent", required_argument, nullptr, 'p'},
    {"follow", no_argument, nullptr, 'f'},
    {"count", required_argument, nullptr, 'n'},
    {"resume", no_argument, nullptr, 'r'},
    {"help", no_argument, nullptr, 'h'},
    {"version", no_argument, nullptr, 'v'},
    {nullptr, 0, nullptr, 0},
};
constexpr auto kKnown = std::span(kOptions).first(std::size(kOptions) - 1);
constexpr std::string_view kForEveryCommand = "jth";

Failure ReadSeconds(const std::string& text, std::optional<int>* milliseconds)
{
    char* end = nullptr;
    const double seconds = strtod(text.c_str(), &end);
    if (text.empty() || *end != 0 || !std::isfinite(seconds) || seconds < 0 || seconds > kLongestTimeout)
        return {kWrongUse, "--timeout takes seconds, not '" + text + "'"};
    *milliseconds = static_cast<int>(seconds * 1000);
    return {};
}

Failure ReadNumber(const std::string& text, int highest, const char* takes, int* number)
{
    const auto read = ReadInteger(text, 1, highest);
    if (!read) return {kWrongUse, std::string(takes) + ", not '" + text + "'"};
    *number = static_cast<int>(*read);
    return {};
}

Failure Apply(char letter, const std::string& value, Options* options)
{
    switch (letter)
    {
        case 'j': options->json = true; break;
        case 's': options->silent = true; break;
        case 'f': options->follow = true; break;
        case 'r': options->resume = true; break;
        case 'h': options->help = true; break;
        case 'v': options->version = true; break;
        case 't': return ReadSeconds(value, &options->timeout_ms);
        case 'n': return ReadNumber(value, kHighestCount, "--count takes a number", &options->count);
        case 'c':
            return ReadNumber(value, kLongestConfirm, "--confirm takes seconds from 1 to 604800", &options->confirm_s);
        default:
            options->parent = value;
            if (value.empty()) return {kWrongUse, "--parent takes the path of an object"};
    }
    return {};
}

// Reads the option at `optind` and moves behind it. getopt_long takes "--sil" for "--silent", which we do not.
Failure ReadOption(const std::vector<char*>& arguments, CommandLine* line)
{
    const std::string word = arguments[static_cast<size_t>(optind)];
    const std::string name = word.substr(2, word.find('=') - 2);
    const option* known = FindNamed(kKnown, name);
    const int letter = getopt_long(static_cast<int>(arguments.size()) - 1, arguments.data(), "+:", kOptions, nullptr);
    if (known == nullptr || letter == '?')
    {
        Words names;
        for (const option& one : kKnown) names.push_back("--" + std::string(one.name));
        return {kWrongUse, "unknown option " + word + DidYouMean(word, names)};
    }
    if (kForEveryCommand.find(static_cast<char>(known->val)) == std::string_view::npos)
        line->own_options.push_back("--" + name);
    return Apply(static_cast<char>(known->val), letter == ':' || optarg == nullptr ? "" : optarg, &line->options);
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
    return {kInvalidArgument, std::string("the quote ") + quote + " is not closed"};
}
}  // namespace kobd::client
