// Proposed values against type, limitation and validator, with the line each refusal leaves.
#include "dictionary/value_check.h"

#include <gtest/gtest.h>

#include <string>

#include "dictionary/name_index.h"
#include "dictionary/value_rule.h"
#include "tests/process_setup.h"
#include "tests/requests.h"

namespace kobd::test
{
namespace
{
// The lines of refusals, which end with the value.
const std::string kIntDigits = "]: Integer value is empty or does not only includ digits: ";
const std::string kUintDigits = "]: Integer value is empty or does not only include digits: ";
const std::string kChoice = "]: Enum is incorrect: ";
// Those that say more.
const std::string kRange = "]: Integer value does not match limitation: ";
const std::string kLength = "]: String value length does not match limitation: ";
const std::string kIllegal = "]: String value contain illegal character!";
const std::string kPasses = "";
const std::string kSilent = "silent";  // refused without a line

std::string Xs(size_t count) { return std::string(count, 'x'); }

struct ValueCase
{
    ValueType type;
    const char* limitation;
    std::string line;  // end of the log line of a refusal
    const char* why;
    std::vector<std::string> values;
};

const ValueCase kValueCases[] = {
    {VT_INT32, "1:65535", kPasses, "bounds are inclusive, leading zeros are digits", {"1", "65535", "00080"}},
    {VT_INT32, "1:65535", kRange + "0 [1:65535]", "one below", {"0"}},
    {VT_INT32, "1:65535", kRange + "65536 [1:65535]", "one above", {"65536"}},
    {VT_INT32, "1:65535", kIntDigits, "no digits", {"", "-1", "+80", "12a", " 12", "12\n", "1.5"}},
    {VT_INT32, "1:65535", kIntDigits, "value is data, never a format", {"%s%n"}},
    {VT_INT32, "10:", kRange + "9 [10:2147483647]", "no upper bound: the type's", {"9"}},
    {VT_INT32, ":100", kRange + "101 [-2147483648:100]", "no lower bound: the type's", {"101"}},
    {VT_INT32, "5", kRange + "4 [5:2147483647]", "no colon: a lower bound", {"4"}},
    {VT_INT32, ":", kPasses, "both bounds empty", {"0"}},
    {VT_INT32, "", kPasses, "empty limitation", {"0"}},
    {VT_INT32, "0|1", kPasses, "choices read as range: lower 0, no upper", {"7"}},
    {VT_INT32, "-5:5", kPasses, "negative lower bound", {"5"}},
    {VT_INT32, " 3:+4", kRange + "2 [3:4]", "blanks and signs before a bound", {"2"}},
    {VT_INT32, "1:5:9", kRange + "6 [1:5]", "a bound ends at its first non-digit", {"6"}},
    {VT_INT32, "9:1", kRange + "5 [9:1]", "turned bounds admit nothing", {"5"}},
    {VT_INT32, nullptr, kPasses, "largest, many zeros", {"2147483647", std::string(400, '0') + "1"}},
    {VT_INT32, nullptr, kRange + "2147483647 [-2147483648:2147483647]", "beyond 32 bits", {"2147483648", "4294967297"}},
    {VT_INT32, "1:65535", kRange + "2147483647 [1:65535]", "beyond 64 bits, would wrap to 1", {"18446744073709551617"}},
    {VT_INT16, nullptr, kPasses, "largest of 16 bits", {"32767"}},
    {VT_INT16, nullptr, kRange + "32768 [-32768:32767]", "one above 16 bits", {"32768"}},
    {VT_INT8, nullptr, kPasses, "largest of 8 bits", {"127"}},
    {VT_INT8, nullptr, kRange + "128 [-128:127]", "one above 8 bits", {"128"}},
    {VT_INT8, "0:300", kPasses, "the limitation stands in place of the type's bounds", {"300"}},
    {VT_UINT32, nullptr, kPasses, "smallest and largest of 32 bits", {"0", "4294967295"}},
    {VT_UINT32, nullptr, kRange + "-1 [0:-1]", "beyond 32 bits", {"4294967296"}},
    {VT_UINT32, "1:10", kRange + "-1 [1:10]", "would wrap to 1", {"4294967297"}},
    {VT_UINT32, "1:10", kUintDigits, "empty, hexadecimal", {"", "0x5"}},
    {VT_UINT32, "1:3000000000", kPasses, "bounds are unsigned too", {"3000000000"}},
    {VT_UINT16, nullptr, kPasses, "largest of 16 bits", {"65535"}},
    {VT_UINT16, nullptr, kRange + "65536 [0:65535]", "one above", {"65536"}},
    {VT_UINT8, nullptr, kPasses, "largest of 8 bits", {"255"}},
    {VT_UINT8, nullptr, kRange + "256 [0:255]", "one above", {"256"}},
    {VT_UINT8, nullptr, kUintDigits, "never negative", {"-1"}},
    {VT_BOOL, "5:9", kPasses, "limitation of a flag is ignored", {"0", "1"}},
    {VT_BOOL, nullptr, kSilent, "neither", {"", "01", "2", "true"}},
    {VT_STRING, nullptr, kPasses, "empty, longest", {"", Xs(512)}},
    {VT_STRING, nullptr, kLength + "513 [0:512]", "one above", {Xs(513)}},
    {VT_STRING, "string[1:128]", kPasses, "such a lower bound reads as 0", {""}},
    {VT_STRING, "string[1:128]", kLength + "129 [0:128]", "upper bound holds", {Xs(129)}},
    {VT_STRING, "1:32", kLength + "0 [1:32]", "too short", {""}},
    {VT_STRING, "1:1024", kPasses, "the limitation may pass the default", {Xs(1024)}},
    {VT_STRING, "Home|Roaming", kPasses, "words are no choices for a text", {"Elsewhere"}},
    {VT_STRING, nullptr, kIllegal, "the six", {"a`b", "$HOME", "(", "x)", "a|b", "a&b"}},
    {VT_STRING, nullptr, kPasses, "no other character is forbidden", {"a;b'\"<>\\\xC3\xA9"}},
    {VT_STRING, "1:3", kLength + "4 [1:3]", "length is judged first", {"a&bc"}},
    {VT_TEXT, nullptr, kPasses, "longest, all of the six", {Xs(1024), "`$()|&"}},
    {VT_TEXT, nullptr, kLength + "1025 [0:1024]", "one above", {Xs(1025)}},
    {VT_TEXT_2, "2:3", kLength + "1 [2:3]", "too short", {"a"}},
    {VT_STRING_2, "1:2", kPasses, "no test", {Xs(3000)}},
    {VT_STRING_4, "1:2", kPasses, "no test", {""}},
    {VT_ENUM, "en|zh|pt", kPasses, "in either case, the last too", {"EN", "pt"}},
    {VT_ENUM, "en|zh|pt", kChoice, "no choice", {"e", "eng", "en|zh", ""}},
    {VT_ENUM, "a|b:c|d", kPasses, "choices end at the colon", {"b"}},
    {VT_ENUM, "a|b:c|d", kChoice, "nothing after the colon is a choice", {"d"}},
    {VT_ENUM, nullptr, kChoice, "no limitation, no choice", {"x"}},
};

// Whether the log is what a refusal with this line writes.
bool Tells(const std::string& log, const std::string& line, const std::string& value)
{
    if (line == kPasses || line == kSilent) return log.empty();
    const bool named = line == kIntDigits || line == kUintDigits || line == kChoice;
    return log.find(" ParameterCheck[") != log.npos && log.ends_with(line + (named ? value : ""));
}

int Says42(const char*) { return 42; }
}  // namespace

TEST(ParameterCheck, TypesAndLimitations)
{
    for (const ValueCase& c : kValueCases)
        for (const std::string& value : c.values)
        {
            OutputCapture output;
            const CheckDescriptor check = {c.type, c.limitation, nullptr};
            EXPECT_EQ(ParameterCheck(value.c_str(), &check), c.line == kPasses ? 0 : 2) << c.why << ": " << value;
            EXPECT_TRUE(Tells(output.Text(), c.line, value)) << c.why << ": " << output.Text();
        }
}

TEST(ParameterCheck, TypesWithoutATestAreRefusedWithoutALine)
{
    OutputCapture output;
    for (const ValueType type :
         {VT_UINT64, VT_STRING_PTR, VT_STRING_UPPER, VT_IPV4, VT_STRING_3, VT_MAC, static_cast<ValueType>(22)})
    {
        const CheckDescriptor check = {type, nullptr, nullptr};
        for (const char* value : {"1", "A", "1.2.3.4", "00:11:22:33:44:55"})
            EXPECT_EQ(ParameterCheck(value, &check), 2);
    }
    EXPECT_EQ(output.Text(), "");
}

TEST(ParameterCheck, ValidatorJudgesWhatTheTypeAccepts)
{
    OutputCapture output;
    const CheckDescriptor check = {VT_INT32, "1:2", Says42};
    EXPECT_EQ(ParameterCheck("3", &check), 2) << "the type's refusal: it never sees a value of the wrong type";
    EXPECT_EQ(ParameterCheck("2", &check), 42) << "its code is passed through";
    EXPECT_EQ(ParameterCheck("anything", nullptr), 0) << "nothing to check against";
}

TEST(ObjsParameterCheck, StopsAtTheFirstRefusal)
{
    NameIndexBuild();
    OutputCapture output;
    EXPECT_EQ(ObjsParameterCheck(Pair("webHttpPort", "1") + Pair("webHttpsPort", "0") + Pair("webHttpEnable", "7")), 2);
    EXPECT_TRUE(output.Text().ends_with("]: webHttpsPort(0) verify error")) << output.Text();
    EXPECT_EQ(ObjsParameterCheck({}), 0) << "nothing to refuse";
}

TEST(JudgeColumn, NamesTheRuleThatATextBreaks)
{
    const struct
    {
        ValueType type;
        ValueFault fault;
        const char* why;
        std::vector<std::string> texts;
    } kColumns[] = {
        {VT_INT8, ValueFault::kNone, "signed, and unsigned as it is shown", {"-128", "255", "-0", "007"}},
        {VT_INT8, ValueFault::kRange, "beyond either", {"-129", "256", "99999999999999999999"}},
        {VT_ENUM, ValueFault::kNone, "32 bits", {"-2147483648", "2147483647"}},
        {VT_ENUM, ValueFault::kRange, "one beyond", {"-2147483649", "2147483648"}},
        {VT_BOOL, ValueFault::kRange, "a flag", {"2", "-1"}},
        {VT_UINT32, ValueFault::kRange, "no negative ones", {"-1", "4294967296"}},
        {VT_UINT32, ValueFault::kNoDigits, "decimal alone", {"", "-", "+1", " 1", "1 ", "0x10", "1.5", "--1"}},
        {VT_UINT64, ValueFault::kNone, "hexadecimal, too", {"18446744073709551615", "0xFFFFFFFFFFFFFFFF", "010"}},
        {VT_UINT64, ValueFault::kNoDigits, "no digit of its base", {"0x", "08", "x10"}},
        {VT_UINT64, ValueFault::kRange, "beyond 64 bits", {"18446744073709551616", "0x10000000000000000", "-1"}},
        {VT_STRING_2, ValueFault::kNone, "its zero byte fits", {"", "1234567"}},
        {VT_STRING_UPPER, ValueFault::kLength, "one too long", {"12345678"}},
        {VT_IPV4, ValueFault::kNone, "dotted", {"192.168.1.2"}},
        {VT_IPV4_2, ValueFault::kNoAddress, "not dotted, or too large", {"", "1.2.3", "1.2.3.256", "1.2.3.4 "}},
        {VT_MAC, ValueFault::kNone, "either separator", {"00:1a:2B:3c:4d:5e", "00-1A-2B-3C-4D-5E"}},
        {VT_MAC,
         ValueFault::kNoAddress,
         "cut, longer, other digits",
         {"", "00:1A:2B:3C:4D:5", "00:1A:2B:3C:4D:5E:", "00:1A:2B:3C:4D:5G", "00 1A 2B 3C 4D 5E"}},
        {VT_STRING_PTR, ValueFault::kNoValue, "the list keeps it", {"", "x"}},
        {VT_TEXT, ValueFault::kNoValue, "no field", {"x"}},
    };
    for (const auto& c : kColumns)
        for (const std::string& text : c.texts)
            EXPECT_EQ(JudgeColumn(text.c_str(), {"C", 4, c.type, 8}), c.fault) << c.why << ": '" << text << "'";
}
}  // namespace kobd::test
