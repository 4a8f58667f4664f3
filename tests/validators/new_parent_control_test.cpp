// Parental control by weekly spans, and the texts of such spans.
#include <gtest/gtest.h>

#include "tests/recording_platform.h"
#include "tests/validators/row_verdict.h"
#include "validators/time_rules.h"

namespace kobd::test
{
namespace
{
const RowCheck kCheck = {validNewParentControl,
                         "validNewParentControl",
                         "FwNewParentControlTable",
                         {{"Enable", "1"}, {"Name", "children"}, {"Host", "00:11:22:33:44:55"}, {"Time", "160823"}}};

// `count` spans, joined.
std::string Spans(int count, const std::string& span = "120823")
{
    std::string text = span;
    for (int i = 1; i < count; ++i) text += "," + span;
    return text;
}

struct TextCase
{
    std::string text;
    int code;
    const char* why;
};
}  // namespace

TEST(TimeSpan, DaysAndHours)
{
    const TextCase kCases[] = {
        {"160823", kAccept, "Monday to Saturday"},
        {"160822", kAccept, "an hour less"},
        {"000000", kAccept, "all zero"},
        {"060023", kAccept, "the week"},
        {"660023", kAccept, "one day"},
        {"330808", kAccept, "one day, one hour"},
        {"330807", kRefuse, "the hours of one day fall"},
        {"340807", kAccept, "hours may fall over several days"},
        {"500023", kAccept, "a last day of 0 takes any first day"},
        {"602300", kAccept, "hours may fall to a last day of 0"},
        {"002300", kRefuse, "but not within day 0"},
        {"520023", kRefuse, "days fall"},
        {"650023", kRefuse, "days fall by one"},
        {"710023", kRefuse, "first day above 6"},
        {"170023", kRefuse, "last day above 6"},
        {"120024", kRefuse, "end hour above 23"},
        {"122400", kRefuse, "start hour above 23"},
        {"129900", kRefuse, "start hour far above"},
        {"1600240", kRefuse, "seven characters"},
        {"16082", kRefuse, "five characters"},
        {"", kRefuse, "empty"},
        {"16082a", kRefuse, "a letter"},
        {"1608-3", kRefuse, "a sign"},
        {" 60823", kRefuse, "a blank"},
        {"16:823", kRefuse, "the character behind 9"},
        {"16/823", kRefuse, "the character before 0"},
    };
    for (const TextCase& c : kCases)
    {
        EXPECT_EQ(validTimeSingle(c.text.c_str()), c.code) << c.text << ": " << c.why;
        EXPECT_EQ(validTimeStr(c.text.c_str()), c.code) << c.text << " as a time value: " << c.why;
    }
    EXPECT_EQ(validTimeSingle(nullptr), kRefuse);
    EXPECT_EQ(validTimeStr(nullptr), kRefuse);
}

TEST(TimeValue, Spans)
{
    const TextCase kCases[] = {
        {"120823,340918", kAccept, "two"},
        {Spans(84), kAccept, "587 characters"},
        {Spans(85), kRefuse, "594 characters"},
        {"12082334", kRefuse, "length 8"},
        {"120823,", kRefuse, "length 7, a separator behind"},
        {",120823", kRefuse, "length 7, a separator before"},
        {"120823;340918", kRefuse, "another separator"},
        {"1208230340918", kRefuse, "no separator"},
        {"12082,3340918", kRefuse, "separator too early"},
        {"120823,34091,", kRefuse, "short last one"},
        {"120823,,40918", kRefuse, "an empty part"},
        {"120823,520023", kRefuse, "the second is judged too"},
        {Spans(83) + ",520023", kRefuse, "and the last"},
        {std::string(6, ','), kRefuse, "separators alone"},
        {std::string(587, ','), kRefuse, "as many as there may be characters"},
        {std::string(587, '1'), kRefuse, "digits alone"},
    };
    for (const TextCase& c : kCases) EXPECT_EQ(validTimeStr(c.text.c_str()), c.code) << c.why;
}

TEST(NewParentControl, Fields)
{
    ResetRows();
    kCheck.Expect({
        {{{"Enable", "0"}}, kAccept, kSilent, "off"},
        {{{"Enable", "2"}}, kRefuse, kSilent, "neither on nor off"},
        {{{"Enable", "01"}}, kRefuse, kSilent, "two digits"},
        {{{"Enable", "true"}}, kRefuse, kSilent, "a word"},
        {{{"Enable", ""}}, kRefuse, kSilent, "empty"},
        {{{"Name", ""}}, kRefuse, kSilent, "empty name"},
        {{{"Name", std::string(32, 'n')}}, kAccept, kSilent, "longest name"},
        {{{"Name", std::string(33, 'n')}}, kRefuse, kSilent, "one more"},
        {{{"Name", "a=b"}}, kRefuse, kSilent, "refused character"},
        {{{"Name", "a b"}}, kRefuse, kSilent, "a blank"},
        {{{"Host", ""}}, kRefuse, kSilent, "empty host"},
        {{{"Host", "192.168.1.20"}}, kRefuse, kSilent, "an address"},
        {{{"Host", "FF:FF:FF:FF:FF:FF"}}, kRefuse, kSilent, "broadcast"},
        {{{"Host", "aa-bb-cc-dd-ee-ff"}}, kAccept, kSilent, "hyphens"},
        {{{"Time", ""}}, kRefuse, kSilent, "empty time"},
        {{{"Time", Spans(84)}}, kAccept, kSilent, "longest time"},
        {{{"Time", Spans(85)}}, kRefuse, kSilent, "one span more"},
        {{{"Time", "160824"}}, kRefuse, kSilent, "hour 24"},
    });
    kCheck.ExpectNothingBesideFields();
}

TEST(NewParentControl, Duplicates)
{
    ResetRows();
    kCheck.ExpectWalk("");
    kCheck.Store({kCheck.Row(5)});
    kCheck.Expect({
        {{}, kRefuse, kSilent, "every column equal"},
        {{{"Enable", "0"}}, kAccept, kSilent, "off"},
        {{{"Name", "parents"}}, kAccept, kSilent, "another name"},
        {{{"Host", "00:11:22:33:44:56"}}, kAccept, kSilent, "another host"},
        {{{"Time", "160822"}}, kAccept, kSilent, "another time"},
    });
    // All bytes behind the index are compared, also the ones that no column covers.
    for (const size_t byte : {size_t{4}, size_t{280}, size_t{911}})
    {
        std::string other = kCheck.Row(5);
        other[byte] = static_cast<char>(other[byte] ^ 1);
        kCheck.Store({other});
        EXPECT_EQ(kCheck.Judge(kCheck.Row(1)).code, kAccept) << byte;
    }
}
}  // namespace kobd::test
