// Regular expressions as the exported functions hand them out, the same on every C library.
#include "validators/regex.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "tests/process_setup.h"
#include "tests/validators/judge.h"

namespace kobd::test
{
namespace
{
// Called through Judge, which gives it the text alone.
const char* pattern = nullptr;
char slots[kCaptureSlots][kCaptureBytes];
int start = 0;
int end = 0;

const Check kMatch = {"regexMatchFunction", [](const char* text)
                      {
                          memset(slots, 0, sizeof slots);
                          return regexMatchFunction(text, pattern, slots);
                      }};
const Check kCheck = {"checkRegex", [](const char* text) { return checkRegex(text, pattern, &start, &end); }};

// The texts of the first slots, each behind a "|".
std::string Slots(int count)
{
    std::string texts;
    for (int i = 0; i < count; ++i) texts += "|" + std::string(slots[i]);
    return texts;
}
}  // namespace

TEST(RegexMatchFunction, HandsOutTheGroups)
{
    pattern = "^([0-9]+)-([a-z]*)-(x)?(.*)$";
    EXPECT_EQ(Judge(kMatch, "12-ab-xyz"), "0");
    EXPECT_EQ(Slots(6), "|12-ab-xyz|12|ab|x|yz|");
    EXPECT_EQ(Judge(kMatch, "1--xz"), "0");
    EXPECT_EQ(Slots(5), "|1--xz|1||x|z") << "the copying goes on behind an empty group";
    EXPECT_EQ(Judge(kMatch, "1-a-yz"), "0");
    EXPECT_EQ(Slots(5), "|1-a-yz|1|a||") << "and ends at the first unused one";

    pattern = "^(a*)(b)$";
    EXPECT_EQ(Judge(kMatch, std::string(510, 'a') + "b"), "0");
    EXPECT_EQ(Slots(2), "|" + std::string(510, 'a') + "b|" + std::string(510, 'a')) << "as long as a slot takes";
    EXPECT_EQ(Judge(kMatch, std::string(512, 'a') + "b"), "0");
    EXPECT_EQ(Slots(3), "|||b") << "longer parts stay out";

    pattern = "(a)(b)(c)(d)(e)(f)(g)(h)(i)(j)(k)(l)(m)(n)(o)(p)(q)";
    EXPECT_EQ(Judge(kMatch, "abcdefghijklmnopq"), "0");
    EXPECT_STREQ(slots[15], "o") << "the sixteenth slot is the last";
}

TEST(RegexMatchFunction, SaysWhyNot)
{
    pattern = "^a$";
    for (const char* text : {"b", "A", "a\n"}) EXPECT_EQ(Judge(kMatch, text), "2|REGEX_ERROR: regex no match\n");
    pattern = "a(b";
    const std::string broken = Judge(kMatch, "a");
    EXPECT_TRUE(broken.starts_with("2|REGEX_ERROR: ") && !broken.ends_with("no match\n")) << broken;
    pattern = nullptr;
    EXPECT_EQ(Judge(kMatch, "a"), "2") << "a missing argument writes nothing";
}

TEST(CheckRegex, TellsWhere)
{
    pattern = "(b+)c";
    EXPECT_EQ(Judge(kCheck, "abbbc"), "0|str____(b+)c|s____1|e____5");
    EXPECT_EQ(std::pair(start, end), std::pair(1, 5));
    EXPECT_EQ(Judge(kCheck, "abbb"), "1") << "no match writes nothing";
    EXPECT_EQ(start, 1) << "and leaves the offsets alone";
    pattern = "x*";
    EXPECT_EQ(Judge(kCheck, "aaa"), "0|str____x*|s____0|e____0") << "an empty match";
    pattern = "[";
    const std::string broken = Judge(kCheck, "a");
    EXPECT_TRUE(broken != "0" && broken.size() == 1) << "a pattern that does not compile writes nothing either";
}

// Where engines differ, patterns mean what POSIX says they mean.
TEST(Regex, MeansTheSameOnEveryCLibrary)
{
    const struct
    {
        const char* pattern;
        const char* text;
        bool match;
        const char* why;
    } kCases[] = {
        {"^[a\\.]+$", "a\\.", true, "a backslash in brackets stands for itself"},
        {"^[\\-z]$", "a", true, "and may begin a range"},
        {"^[a-c-]+$", "b-", true, "a dash at the end stands for itself"},
        {"^\\[(a{0,2}:{0,1}){1,3}\\]$", "[]", true, "a repeated group may match nothing"},
        {"^(a{0,2}:{0,1}){1,3}$", "aaaaaa", true, "three times two"},
        {"^(a{0,2}:{0,1}){1,3}$", "aaaaaaa", false, "one too many"},
        {"^((a*)*b)*$", "aaabab", true, "nested stars"},
        {"^((/?)|(/x+)+/?)$", "/xx/x/", true, "an alternative that may be empty, and the other one"},
        {"^.$", "\n", true, "a dot takes a line end"},
        {"^.$", "\xFF", true, "a dot takes any byte"},
        {"^a$", "a\nb", false, "only the end of the text is an end"},
        {"^[a-z]$", "B", false, "ranges are of bytes"},
        {"(", "a", false, "what does not compile matches nothing"},
    };
    for (const auto& c : kCases) EXPECT_EQ(RegexMatches(c.text, c.pattern), c.match) << c.pattern << ": " << c.why;
}

TEST(MatchAndPrint, PrintsOneWordOrNone)
{
    OutputCapture output;
    EXPECT_EQ(MatchAndPrint("a", "^a$"), 0);
    EXPECT_EQ(MatchAndPrint("b", "^a$"), 2);
    EXPECT_EQ(MatchAndPrint("b", "("), 2);
    EXPECT_EQ(output.Text(), "matchnomatch") << "no word for a text that does not match";
}
}  // namespace kobd::test
