// Regular expressions for the checks: POSIX extended, without case folding; a newline is like any other
// character. Patterns say with ^ and $ themselves whether the whole text has to match. A missing text
// (nullptr) is matched like the empty text.
#pragma once

#include <regex.h>

namespace kobd
{
inline constexpr int kCaptureSlots = 16;   // sub-matches at most, the whole match included
inline constexpr int kCaptureBytes = 512;  // of a slot, zero byte included

// A compiled pattern, freed with its scope. Writes no log line.
class Regex
{
public:
    explicit Regex(const char* pattern);
    ~Regex();
    Regex(const Regex&) = delete;
    Regex& operator=(const Regex&) = delete;

    // False when the engine refuses the pattern, or has no memory for it; then nothing matches.
    bool Compiled() const { return error_ == 0; }

    // Whether the pattern occurs in `text`. No sub-matches are asked for: a pattern that begins with ^
    // then costs time and memory in proportion to the text, whatever it repeats. Any other pattern is
    // tried at every place of the text.
    bool Matches(const char* text) const;

    // The engine's own result, 0 for a match, with `count` sub-matches; the compile error when the
    // pattern could not be compiled.
    int Match(const char* text, regmatch_t* matches, size_t count) const;

    // The engine's text for a result other than 0; `size` bytes at most, zero byte included.
    void ErrorText(int error, char* text, size_t size) const;

private:
    regex_t compiled_;
    int error_;
};

// Whether `text` matches; false for a pattern that does not compile. Writes no log line.
bool RegexMatches(const char* text, const char* pattern);

// As regexMatchFunction, for a caller that needs no captures.
int MatchWithLine(const char* text, const char* pattern);

// 0 when `text` matches, else 2. Prints "match" to standard output on a match, and "nomatch" when the
// pattern does not compile.
int MatchAndPrint(const char* text, const char* pattern);
}  // namespace kobd

extern "C"
{
    // Matches `text` and hands out what the groups of `pattern` matched.
    //   captures: zeroed slots, one more than the pattern has groups, of which 16 are used; slot 0
    //   receives the whole match, slot i the text of group i. The first unused group ends the copying;
    //   an empty part, or one of more than 511 bytes, leaves its slot as it is.
    // 0 match; 2 no match, a missing argument, or a pattern that does not compile. Every refusal but
    // that of a missing argument writes a line that begins with "REGEX_ERROR: ".
    int regexMatchFunction(const char* text, const char* pattern, char (*captures)[kobd::kCaptureBytes]);

    // Looks for `pattern` in `text`. On a match it stores the byte offsets of the match, and writes three
    // lines: the pattern and both offsets.
    // The engine's result: 0 match; 1 no match or a missing argument, and the offsets are left alone.
    int checkRegex(const char* text, const char* pattern, int* start, int* end);
}
