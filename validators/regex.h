// Regular expressions for the validators: POSIX extended, without case folding, newlines as any
// other character. Patterns say with ^ and $ themselves whether the whole text has to match.
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

    // Whether the pattern occurs in `text`. A pattern that begins with ^ costs time and memory in
    // proportion to the text, whatever it repeats, because no sub-matches are asked for; any other
    // one is tried at every place of the text.
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

// 0 when `text` matches, else 2; prints "match" to standard output on a match, and "nomatch" when
// the pattern does not compile.
int MatchAndPrint(const char* text, const char* pattern);
}  // namespace kobd

extern "C"
{
    // Matches `text` and hands out what the groups of `pattern` matched.
    //   captures: zeroed slots, one more than the pattern has groups (16 at most count); slot 0
    //   receives the whole match, slot i group i. The first unused group ends the walk; an empty
    //   part, or one of more than 511 bytes, leaves its slot as it is.
    // 0 match; 2 no match, no text, no pattern or one that does not compile. Every refusal but a
    // missing argument writes a line that begins with "REGEX_ERROR: ".
    int regexMatchFunction(const char* text, const char* pattern, char (*captures)[kobd::kCaptureBytes]);

    // Looks for `pattern` in `text` and stores where it was found, as byte offsets; on a match it
    // writes three lines: the pattern and both offsets.
    // The engine's result: 0 match, 1 no match (the offsets are then left alone).
    int checkRegex(const char* text, const char* pattern, int* start, int* end);
}
