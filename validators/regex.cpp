// Compiles, matches and frees; the two exported forms that log what they found.
#include "validators/regex.h"

#include <cstdio>
#include <cstring>

#include "validators/check.h"

namespace kobd
{
Regex::Regex(const char* pattern) : error_(regcomp(&compiled_, pattern, REG_EXTENDED)) {}

Regex::~Regex()
{
    if (Compiled()) regfree(&compiled_);
}

bool Regex::Matches(const char* text) const { return Match(text, nullptr, 0) == 0; }

int Regex::Match(const char* text, regmatch_t* matches, size_t count) const
{
    return Compiled() ? regexec(&compiled_, OrEmpty(text), count, matches, 0) : error_;
}

void Regex::ErrorText(int error, char* text, size_t size) const
{
    // Without a compiled pattern the engine's state must not be looked at.
    regerror(error, Compiled() ? &compiled_ : nullptr, text, size);
}

bool RegexMatches(const char* text, const char* pattern) { return Regex(pattern).Matches(text); }

namespace
{
void Print(const char* word)
{
    fputs(word, stdout);
    fflush(stdout);  // log lines reach standard output unbuffered, and in order
}

constexpr size_t kErrorTextMax = 512;  // bytes, zero byte included

void CopyCaptures(const char* text, const regmatch_t* matches, char (*captures)[kCaptureBytes])
{
    for (int i = 0; i < kCaptureSlots && matches[i].rm_so >= 0; ++i)
    {
        const auto length = static_cast<size_t>(matches[i].rm_eo - matches[i].rm_so);
        if (length < kCaptureBytes) memcpy(captures[i], text + matches[i].rm_so, length);
    }
}
}  // namespace

int MatchWithLine(const char* text, const char* pattern)
{
    char captures[kCaptureSlots][kCaptureBytes] = {};
    return regexMatchFunction(text, pattern, captures);
}

int MatchAndPrint(const char* text, const char* pattern)
{
    const Regex regex(pattern);
    if (!regex.Compiled()) Print("nomatch");
    if (!regex.Matches(text)) return kInvalidArgument;
    Print("match");
    return kSuccess;
}
}  // namespace kobd

int regexMatchFunction(const char* text, const char* pattern, char (*captures)[kobd::kCaptureBytes])
{
    constexpr const char* kFunction = "regexMatchFunction";
    if (text == nullptr || pattern == nullptr || captures == nullptr) return kobd::kInvalidArgument;
    const kobd::Regex regex(pattern);
    // Asking for sub-matches makes an engine keep its way through the text, so a text that does not
    // match, however long, is refused before that.
    int error = regex.Match(text, nullptr, 0);
    regmatch_t matches[kobd::kCaptureSlots];
    if (error == 0) error = regex.Match(text, matches, kobd::kCaptureSlots);
    if (error == 0)
    {
        kobd::CopyCaptures(text, matches, captures);
        return kobd::kSuccess;
    }
    if (regex.Compiled() && error == REG_NOMATCH) return kobd::Refuse(kFunction, "REGEX_ERROR: regex no match\n");
    char reason[kobd::kErrorTextMax];
    regex.ErrorText(error, reason, sizeof reason);
    LOG_ALWAYS(kFunction, "REGEX_ERROR: %s\n", reason);
    return kobd::kInvalidArgument;
}

int checkRegex(const char* text, const char* pattern, int* start, int* end)
{
    constexpr const char* kFunction = "checkRegex";
    if (text == nullptr || pattern == nullptr || start == nullptr || end == nullptr) return REG_NOMATCH;
    regmatch_t whole;  // where groups matched is of no interest to any caller
    const int result = kobd::Regex(pattern).Match(text, &whole, 1);
    if (result != 0) return result;
    *start = static_cast<int>(whole.rm_so);
    *end = static_cast<int>(whole.rm_eo);
    LOG_ALWAYS(kFunction, "str____%s", pattern);
    LOG_ALWAYS(kFunction, "s____%d", *start);
    LOG_ALWAYS(kFunction, "e____%d", *end);
    return kobd::kSuccess;
}
