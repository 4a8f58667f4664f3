// Proposed values against type, limitation and validator, with the line each refusal leaves.
#include "dictionary/value_check.h"

#include <gtest/gtest.h>

#include <string>

#include "dictionary/name_index.h"
#include "tests/process_setup.h"
#include "tests/requests.h"

namespace kobd::test
{
namespace
{
const std::string kIntDigits = "]: Integer value is empty or does not only includ digits: ";
const std::string kUintDigits = "]: Integer value is empty or does not only include digits: ";
const std::string kRange = "]: Integer value does not match limitation: ";
const std::string kLength = "]: String value length does not match limitation: ";
const std::string kIllegal = "]: String value contain illegal character!";
const std::string kChoice = "]: Enum is incorrect: ";
const std::string kPasses = "";
const std::string kSilent = "silent";  // refused without a line

std::string Xs(size_t count) { return std::string(count, 'x'); }

struct ValueCase
{
    ValueType type;
    const char* limitation;
    std::string value;
    std::string line;  // end of the log line of a refusal
    const char* why;
};

const ValueCase kCases[] = {
    {VT_INT32, "1:65535", "1", kPasses, "lower bound is inclusive"},
    {VT_INT32, "1:65535", "65535", kPasses, "upper bound is inclusive"},
    {VT_INT32, "1:65535", "00080", kPasses, "leading zeros are digits"},
    {VT_INT32, "1:65535", "0", kRange + "0 [1:65535]", "one below"},
    {VT_INT32, "1:65535", "65536", kRange + "65536 [1:65535]", "one above"},
    {VT_INT32, "1:65535", "-1", kIntDigits + "-1", "a sign is no digit"},
    {VT_INT32, "1:65535", "+80", kIntDigits + "+80", "a plus neither"},
    {VT_INT32, "1:65535", "", kIntDigits, "empty"},
    {VT_INT32, "1:65535", "12a", kIntDigits + "12a", "a letter at the end"},
    {VT_INT32, "1:65535", " 12", kIntDigits + " 12", "a blank before"},
    {VT_INT32, "1:65535", "12\n", kIntDigits + "12\n", "a newline after"},
    {VT_INT32, "1:65535", "1.5", kIntDigits + "1.5", "no whole number"},
    {VT_INT32, "1:65535", "%s%n", kIntDigits + "%s%n", "value is data, never a format"},
    {VT_INT32, "10:", "10", kPasses, "no upper bound: lower one"},
    {VT_INT32, "10:", "2147483647", kPasses, "no upper bound: the type's"},
    {VT_INT32, "10:", "9", kRange + "9 [10:2147483647]", "no upper bound: below"},
    {VT_INT32, ":100", "100", kPasses, "no lower bound"},
    {VT_INT32, ":100", "101", kRange + "101 [-2147483648:100]", "no lower bound: above"},
    {VT_INT32, "5", "5", kPasses, "no colon: a lower bound"},
    {VT_INT32, "5", "4", kRange + "4 [5:2147483647]", "no colon: below"},
    {VT_INT32, ":", "0", kPasses, "both bounds empty"},
    {VT_INT32, "", "0", kPasses, "empty limitation"},
    {VT_INT32, "0|1", "7", kPasses, "choices read as range: lower 0, no upper"},
    {VT_INT32, "-5:5", "5", kPasses, "negative lower bound"},
    {VT_INT32, " 3:+4", "4", kPasses, "blanks and signs before a bound"},
    {VT_INT32, " 3:+4", "2", kRange + "2 [3:4]", "blanks and signs before a bound, below"},
    {VT_INT32, "1:5:9", "6", kRange + "6 [1:5]", "a bound ends at its first non-digit"},
    {VT_INT32, "9:1", "5", kRange + "5 [9:1]", "turned bounds admit nothing"},
    {VT_INT32, nullptr, "2147483647", kPasses, "largest"},
    {VT_INT32, nullptr, "2147483648", kRange + "2147483647 [-2147483648:2147483647]", "beyond 32 bits"},
    {VT_INT32, nullptr, "4294967297", kRange + "2147483647 [-2147483648:2147483647]", "would wrap to 1"},
    {VT_INT32, "1:65535", "18446744073709551617", kRange + "2147483647 [1:65535]", "beyond 64 bits, would wrap to 1"},
    {VT_INT32, nullptr, std::string(400, '0') + "1", kPasses, "many zeros are still 1"},
    {VT_INT16, nullptr, "32767", kPasses, "largest of 16 bits"},
    {VT_INT16, nullptr, "32768", kRange + "32768 [-32768:32767]", "one above 16 bits"},
    {VT_INT8, nullptr, "127", kPasses, "largest of 8 bits"},
    {VT_INT8, nullptr, "128", kRange + "128 [-128:127]", "one above 8 bits"},
    {VT_INT8, "0:300", "300", kPasses, "the limitation stands in place of the type's bounds"},
    {VT_UINT32, nullptr, "0", kPasses, "smallest"},
    {VT_UINT32, nullptr, "4294967295", kPasses, "largest of 32 bits"},
    {VT_UINT32, nullptr, "4294967296", kRange + "-1 [0:-1]", "beyond 32 bits"},
    {VT_UINT32, "1:10", "4294967297", kRange + "-1 [1:10]", "would wrap to 1"},
    {VT_UINT32, "1:10", "", kUintDigits, "empty"},
    {VT_UINT32, "1:10", "0x5", kUintDigits + "0x5", "no hexadecimal"},
    {VT_UINT32, "1:3000000000", "3000000000", kPasses, "bounds are unsigned too"},
    {VT_UINT16, nullptr, "65535", kPasses, "largest of 16 bits"},
    {VT_UINT16, nullptr, "65536", kRange + "65536 [0:65535]", "one above"},
    {VT_UINT8, nullptr, "255", kPasses, "largest of 8 bits"},
    {VT_UINT8, nullptr, "256", kRange + "256 [0:255]", "one above"},
    {VT_UINT8, nullptr, "-1", kUintDigits + "-1", "never negative"},
    {VT_BOOL, nullptr, "0", kPasses, "off"},
    {VT_BOOL, "5:9", "1", kPasses, "limitation of a flag is ignored"},
    {VT_BOOL, nullptr, "", kSilent, "empty"},
    {VT_BOOL, nullptr, "01", kSilent, "two digits"},
    {VT_BOOL, nullptr, "2", kSilent, "neither"},
    {VT_BOOL, nullptr, "true", kSilent, "a word"},
    {VT_STRING, nullptr, "", kPasses, "empty text"},
    {VT_STRING, nullptr, Xs(512), kPasses, "longest"},
    {VT_STRING, nullptr, Xs(513), kLength + "513 [0:512]", "one above"},
    {VT_STRING, "string[1:128]", "", kPasses, "such a lower bound reads as 0"},
    {VT_STRING, "string[1:128]", Xs(129), kLength + "129 [0:128]", "upper bound holds"},
    {VT_STRING, "1:32", "", kLength + "0 [1:32]", "too short"},
    {VT_STRING, "1:1024", Xs(1024), kPasses, "the limitation may pass the default"},
    {VT_STRING, "Home|Roaming", "Elsewhere", kPasses, "words are no choices for a text"},
    {VT_STRING, nullptr, "a`b", kIllegal, "backquote"},
    {VT_STRING, nullptr, "$HOME", kIllegal, "dollar"},
    {VT_STRING, nullptr, "(", kIllegal, "opening bracket"},
    {VT_STRING, nullptr, "x)", kIllegal, "closing bracket"},
    {VT_STRING, nullptr, "a|b", kIllegal, "bar"},
    {VT_STRING, nullptr, "a&b", kIllegal, "ampersand"},
    {VT_STRING, nullptr, "a;b'\"<>\\\xC3\xA9", kPasses, "no other character is forbidden"},
    {VT_STRING, "1:3", "a&bc", kLength + "4 [1:3]", "length is judged first"},
    {VT_TEXT, nullptr, Xs(1024), kPasses, "longest"},
    {VT_TEXT, nullptr, Xs(1025), kLength + "1025 [0:1024]", "one above"},
    {VT_TEXT, nullptr, "`$()|&", kPasses, "a text may hold all of them"},
    {VT_TEXT_2, "2:3", "a", kLength + "1 [2:3]", "too short"},
    {VT_STRING_2, "1:2", Xs(3000), kPasses, "no test"},
    {VT_STRING_4, "1:2", "", kPasses, "no test"},
    {VT_ENUM, "en|zh|pt", "EN", kPasses, "case does not matter"},
    {VT_ENUM, "en|zh|pt", "pt", kPasses, "last choice"},
    {VT_ENUM, "en|zh|pt", "e", kChoice + "e", "a beginning"},
    {VT_ENUM, "en|zh|pt", "eng", kChoice + "eng", "a continuation"},
    {VT_ENUM, "en|zh|pt", "en|zh", kChoice + "en|zh", "two choices"},
    {VT_ENUM, "en|zh|pt", "", kChoice, "empty"},
    {VT_ENUM, "a|b:c|d", "b", kPasses, "choices end at the colon"},
    {VT_ENUM, "a|b:c|d", "d", kChoice + "d", "nothing after the colon is a choice"},
    {VT_ENUM, nullptr, "x", kChoice + "x", "no limitation, no choice"},
    {VT_UINT64, nullptr, "1", kSilent, "no test for this type, refused"},
    {VT_STRING_PTR, nullptr, "a", kSilent, "no test, refused"},
    {VT_STRING_UPPER, nullptr, "A", kSilent, "no test, refused"},
    {VT_IPV4, nullptr, "1.2.3.4", kSilent, "no test, refused"},
    {VT_STRING_3, nullptr, "a", kSilent, "no test, refused"},
    {VT_MAC, nullptr, "00:11:22:33:44:55", kSilent, "no test, refused"},
    {static_cast<ValueType>(22), nullptr, "1", kSilent, "beyond the types"},
};

int validator_calls = 0;
int Says42(const char*)
{
    ++validator_calls;
    return 42;
}
}  // namespace

TEST(ParameterCheck, TypesAndLimitations)
{
    for (const ValueCase& c : kCases)
    {
        OutputCapture output;
        const CheckDescriptor check = {c.type, c.limitation, nullptr};
        const int code = ParameterCheck(c.value.c_str(), &check);
        const std::string line = output.Text();
        EXPECT_EQ(code, c.line == kPasses ? 0 : 2) << c.why << ": " << c.value;
        const bool logged = line.find(" ParameterCheck[") != line.npos && line.ends_with(c.line);
        EXPECT_TRUE(c.line == kPasses || c.line == kSilent ? line.empty() : logged) << c.why << ": " << line;
    }
}

TEST(ParameterCheck, ValidatorJudgesWhatTheTypeAccepts)
{
    OutputCapture output;
    const CheckDescriptor check = {VT_INT32, "1:2", Says42};
    validator_calls = 0;
    EXPECT_EQ(ParameterCheck("3", &check), 2) << "the type's refusal";
    EXPECT_EQ(validator_calls, 0) << "never sees a value of the wrong type";
    EXPECT_EQ(ParameterCheck("2", &check), 42) << "its code is passed through";
    EXPECT_EQ(ParameterCheck("anything", nullptr), 0) << "nothing to check against";
}

TEST(ObjsParameterCheck, StopsAtTheFirstRefusal)
{
    NameIndexBuild();
    OutputCapture output;
    EXPECT_EQ(ObjsParameterCheck(Pair("webHttpPort", "1") + Pair("webHttpsPort", "0") + Pair("webHttpEnable", "7")), 2);
    const std::string lines = output.Text();
    EXPECT_NE(lines.find("ObjsParameterCheck["), lines.npos);
    EXPECT_TRUE(lines.ends_with("]: webHttpsPort(0) verify error")) << lines;
    EXPECT_EQ(ObjsParameterCheck({}), 0) << "nothing to refuse";
}

extern "C" int includeForbiddenCharacter(const char* text, const char* set, int count);

TEST(IncludeForbiddenCharacter, CountBoundsTheSet)
{
    EXPECT_EQ(includeForbiddenCharacter("a&b", "`&", 2), 1);
    EXPECT_EQ(includeForbiddenCharacter("a&b", "`&", 1), 0) << "the second of the set does not count";
    EXPECT_EQ(includeForbiddenCharacter("a&b", "&", 0), 0);
    EXPECT_EQ(includeForbiddenCharacter("a&b", "&", -1), 0);
    EXPECT_EQ(includeForbiddenCharacter("", "&", 1), 0);
}
}  // namespace kobd::test
