// Options and words.
#include "client/arguments/command_line.h"

#include <cmath>
#include <cstddef>
#include <cstdlib>

#include "client/dictionary/nearest.h"

namespace kobd::client
{
namespace
{
constexpr double kLongestTimeout = 24.0 * 60 * 60;  // seconds
constexpr long kHighestCount = 1000000;
constexpr long kLongestConfirm = 7L * 24 * 60 * 60;  // seconds

bool ReadSeconds(const std::string& text, int* milliseconds)
{
    char* end = nullptr;
    const double seconds = strtod(text.c_str(), &end);
    if (text.empty() || *end != 0 || !std::isfinite(seconds) || seconds < 0 || seconds > kLongestTimeout) return false;
    *milliseconds = static_cast<int>(seconds * 1000);
    return true;
}

bool ReadNumber(const std::string& text, long highest, int* number)
{
    char* end = nullptr;
    const long read = strtol(text.c_str(), &end, 10);
    if (text.empty() || *end != 0 || read < 1 || read > highest) return false;
    *number = static_cast<int>(read);
    return true;
}

// Reads the option and the word that follows it. The error, or the empty text.
std::string ReadValue(const std::string& option, const std::string& value, Options* options)
{
    if (option == "--parent" && value.empty()) return "--parent takes the path of an object";
    if (option == "--parent") options->parent = value;
    if (option == "--timeout" && !ReadSeconds(value, &options->timeout_ms))
        return "--timeout takes seconds, not '" + value + "'";
    if (option == "--count" && !ReadNumber(value, kHighestCount, &options->count))
        return "--count takes a number, not '" + value + "'";
    if (option == "--confirm" && !ReadNumber(value, kLongestConfirm, &options->confirm_s))
        return "--confirm takes seconds from 1 to 604800, not '" + value + "'";
    return "";
}

// The switch that the option turns on, or nullptr.
bool* SwitchOf(const std::string& option, Options* options)
{
    if (option == "--json") return &options->json;
    if (option == "--silent") return &options->silent;
    if (option == "--follow") return &options->follow;
    if (option == "--resume") return &options->resume;
    if (option == "--help") return &options->help;
    if (option == "--version") return &options->version;
    return nullptr;
}

bool TakesValue(const std::string& option)
{
    return option == "--parent" || option == "--timeout" || option == "--count" || option == "--confirm";
}

bool IsForEveryCommand(const std::string& option)
{
    return option == "--json" || option == "--timeout" || option == "--help";
}

std::string Unknown(const std::string& option)
{
    constexpr const char* kOptions[] = {"--json",   "--timeout", "--silent", "--confirm", "--parent",
                                        "--follow", "--count",   "--resume", "--help",    "--version"};
    return "unknown option " + option + DidYouMean(NearestOf(option, kOptions));
}
}  // namespace

std::string ReadCommandLine(const Words& arguments, Options* options, Words* words, Words* given)
{
    for (size_t i = 0; i < arguments.size(); ++i)
    {
        std::string word = arguments[i] == "-h" ? "--help" : arguments[i];
        if (word == "--")
        {
            words->insert(words->end(), arguments.begin() + static_cast<ptrdiff_t>(i) + 1, arguments.end());
            return "";
        }
        if (!word.starts_with("--"))
        {
            words->push_back(word);
            continue;
        }
        const size_t equals = word.find('=');
        const bool joined = equals != std::string::npos && TakesValue(word.substr(0, equals));
        const std::string value = joined ? word.substr(equals + 1) : i + 1 < arguments.size() ? arguments[i + 1] : "";
        if (joined) word.resize(equals);
        bool* turned_on = SwitchOf(word, options);
        if (turned_on == nullptr && !TakesValue(word)) return Unknown(word);
        if (!IsForEveryCommand(word)) given->push_back(word);
        if (turned_on != nullptr)
            *turned_on = true;
        else if (const std::string error = ReadValue(word, value, options); !error.empty())
            return error;
        else if (!joined)
            ++i;
    }
    return "";
}

std::string SplitLine(std::string_view line, Words* words)
{
    char quote = 0;
    bool in_word = false;
    for (size_t i = 0; i < line.size(); ++i)
    {
        const char c = line[i];
        const bool blank = quote == 0 && (c == ' ' || c == '\t' || c == '\r');
        if (quote == 0 && !in_word && c == '#') return "";
        if (!blank && !in_word) words->emplace_back();
        in_word = !blank;
        if (blank) continue;
        if (c == '\\' && quote != '\'')
        {
            if (++i == line.size()) return "a backslash ends the line";
            words->back() += line[i];
        }
        else if (c == quote)
            quote = 0;
        else if (quote == 0 && (c == '\'' || c == '"'))
            quote = c;
        else
            words->back() += c;
    }
    return quote == 0 ? "" : std::string("a ") + quote + " is not closed";
}
}  // namespace kobd::client
