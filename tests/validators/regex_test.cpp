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
using Slots = char[kCaptureSlots][kCaptureBytes];

// Called through Judge, which gives it the text alone.
const char* pattern = nullptr;
Slots slots;
int start = 0;
int end = 0;

int regexMatchFunction_(const char* text)
{
    memset(slots, 0, sizeof slots);
    return regexMatchFunction(text, pattern, slots);
}

int checkRegex_(const char* text)
{
    start = end = -7;
    return checkRegex(text, pattern, &start, &end);
}

const Check kMatch = {"regexMatchFunction", regexMatchFunction_};
const Check kCheck = {"checkRegex", checkRegex_};
}  // namespace

TEST(RegexMatchFunction, HandsOutTheGroups)
{
    pattern = "^([0-9]+)-([a-z]*)-(x)?(.*)$";
    EXPECT_EQ(Judge(kMatch, "12-ab-xyz"), "0");
    EXPECT_STREQ(slots[0], "12-ab-xyz");
    EXPECT_STREQ(slots[1], "12");
    EXPECT_STREQ(slots[2], "ab");
    EXPECT_STREQ(slots[3], "x");
    EXPECT_STREQ(slots[4], "yz");
    EXPECT_STREQ(slots[5], "") << "no fifth group";

    EXPECT_EQ(Judge(kMatch, "1--xz"), "0");
    EXPECT_STREQ(slots[2], "") << "an empty group";
    EXPECT_STREQ(slots[3], "x") << "the walk goes on after an empty group";

    EXPECT_EQ(Judge(kMatch, "1-a-yz"), "0");
    EXPECT_STREQ(slots[3], "");
    EXPECT_STREQ(slots[4], "") << "the first unused group ends the walk";
}

TEST(RegexMatchFunction, LongGroupsStayOut)
{
    pattern = "^(a*)(b)$";
    EXPECT_EQ(Judge(kMatch, std::string(510, 'a') + "b"), "0");
    EXPECT_EQ(std::string(slots[0]).size(), 511u) << "as long as a slot takes";
    EXPECT_EQ(std::string(slots[1]).size(), 510u);
    EXPECT_EQ(Judge(kMatch, std::string(512, 'a') + "b"), "0");
    EXPECT_STREQ(slots[0], "") << "513 characters";
    EXPECT_STREQ(slots[1], "") << "512 characters";
    EXPECT_STREQ(slots[2], "b") << "the walk goes on";
}

TEST(RegexMatchFunction, SixteenSlotsAtMost)
{
    pattern = "(a)(b)(c)(d)(e)(f)(g)(h)(i)(j)(k)(l)(m)(n)(o)(p)(q)";
    EXPECT_EQ(Judge(kMatch, "abcdefghijklmnopq"), "0");
    EXPECT_STREQ(slots[15], "o") << "the sixteenth slot, and none behind it";
}

TEST(RegexMatchFunction, SaysWhyNot)
{
    pattern = "^a$";
    EXPECT_EQ(Judge(kMatch, "b"), "2|REGEX_ERROR: regex no match\n");
    EXPECT_EQ(Judge(kMatch, "A"), "2|REGEX_ERROR: regex no match\n") << "case counts";
    EXPECT_EQ(Judge(kMatch, "a\n"), "2|REGEX_ERROR: regex no match\n") << "a line end is a character";
    pattern = "a(b";
    EXPECT_TRUE(Judge(kMatch, "a").starts_with("2|REGEX_ERROR: ")) << "and the engine's own text";
    EXPECT_FALSE(Judge(kMatch, "a").ends_with("no match\n"));
    pattern = nullptr;
    EXPECT_EQ(Judge(kMatch, "a"), "2") << "no pattern";
    OutputCapture output;
    EXPECT_EQ(regexMatchFunction(nullptr, "a", slots), 2) << "no text";
    EXPECT_EQ(output.Text(), "");
}

TEST(CheckRegex, TellsWhere)
{
    pattern = "(b+)c";
    EXPECT_EQ(Judge(kCheck, "abbbc"), "0|str____(b+)c|s____1|e____5");
    EXPECT_EQ(start, 1);
    EXPECT_EQ(end, 5);
    EXPECT_EQ(Judge(kCheck, "abbb"), "1") << "no match writes nothing";
    EXPECT_EQ(start, -7);
    pattern = "x*";
    EXPECT_EQ(Judge(kCheck, "aaa"), "0|str____x*|s____0|e____0") << "an empty match";
    pattern = "^(http|https)://";
    EXPECT_EQ(Judge(kCheck, "https://a"), "0|str____^(http|https)://|s____0|e____8");
    pattern = "[";
    const std::string broken = Judge(kCheck, "a");
    EXPECT_NE(broken.substr(0, 1), "0");
    EXPECT_EQ(broken.size(), 1u) << "a pattern that does not compile writes nothing either";
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
        {"^[\\?]$", "\\", true, "a backslash in brackets stands for itself"},
        {"^[\\-z]$", "a", true, "and may begin a range"},
        {"^[a-c-]+$", "b-", true, "a dash at the end stands for itself"},
        {"^\\[x\\]$", "[x]", true, "escaped brackets"},
        {"^\\[(a{0,2}:{0,1}){1,3}\\]$", "[]", true, "a repeated group may match nothing"},
        {"^(a{0,2}:{0,1}){1,3}$", "aaaaaa", true, "three times two"},
        {"^(a{0,2}:{0,1}){1,3}$", "aaaaaaa", false, "one too many"},
        {"^((a*)*b)*$", "aaabab", true, "nested stars"},
        {"^((/?)|(/x+)+/?)$", "", true, "an alternative that may be empty"},
        {"^((/?)|(/x+)+/?)$", "/xx/x/", true, "and the other one"},
        {"^a{0,62}$", "", true, "no repeat at all"},
        {"^.$", "\n", true, "a dot takes a line end"},
        {"^.$", "\xFF", true, "a dot takes any byte"},
        {"^a$", "a\nb", false, "only the end of the text is an end"},
        {"^[a-z]$", "B", false, "ranges are of bytes"},
        {"^a|b$", "xb", true, "an anchor belongs to its alternative"},
    };
    for (const auto& c : kCases)
    {
        const Regex regex(c.pattern);
        ASSERT_TRUE(regex.Compiled()) << c.pattern;
        EXPECT_EQ(regex.Matches(c.text), c.match) << c.pattern << " on " << c.text << ": " << c.why;
    }
    EXPECT_FALSE(RegexMatches("a", "(")) << "what does not compile matches nothing";
}

TEST(MatchAndPrint, PrintsOneWordOrNone)
{
    OutputCapture output;
    EXPECT_EQ(MatchAndPrint("a", "^a$"), 0);
    EXPECT_EQ(output.Text(), "match");
    EXPECT_EQ(MatchAndPrint("b", "^a$"), 2);
    EXPECT_EQ(output.Text(), "match");
    EXPECT_EQ(MatchAndPrint("b", "("), 2);
    EXPECT_EQ(output.Text(), "matchnomatch");
}
}  // namespace kobd::test
