// Parental control by weekly spans, and the texts of such spans.
#include <gtest/gtest.h>

#include "tests/recording_platform.h"
#include "tests/validators/judge.h"
#include "tests/validators/row_verdict.h"
#include "validators/new_parent_control.h"

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

// Calls the check with every text of every kind.
void ExpectTimes(int (*check)(const char*), const std::vector<TextsByCode>& kinds)
{
    for (const TextsByCode& kind : kinds)
        for (const std::string& text : kind.texts)
            EXPECT_EQ(check(text.c_str()), kind.code) << text << ": " << kind.why;
    EXPECT_EQ(check(nullptr), kRefuse);
}
}  // namespace

TEST(TimeSpan, DaysAndHours)
{
    const std::vector<TextsByCode> spans = {
        {kAccept, "days rise, hours too", {"160823", "160822", "000000", "060023"}},
        {kAccept, "one day, one hour", {"660023", "330808"}},
        {kRefuse, "the hours of one day fall, of day 0 too", {"330807", "002300"}},
        {kAccept, "hours may fall over several days", {"340807", "602300"}},
        {kAccept, "a last day of 0 takes any first day", {"500023"}},
        {kRefuse, "days fall", {"520023", "650023"}},
        {kRefuse, "day above 6", {"710023", "170023"}},
        {kRefuse, "hour above 23", {"120024", "122400", "129900"}},
        {kRefuse, "another length", {"1600240", "16082", ""}},
        {kRefuse, "no digit; what lies beside the digits in ASCII", {"16082a", "1608-3", " 60823", "16:823", "16/823"}},
    };
    ExpectTimes(validTimeSingle, spans);
    ExpectTimes(validTimeStr, spans);
}

TEST(TimeValue, Spans)
{
    ExpectTimes(validTimeStr, {
                                  {kAccept, "two", {"120823,340918"}},
                                  {kAccept, "587 characters", {Spans(84)}},
                                  {kRefuse, "594 characters", {Spans(85)}},
                                  {kRefuse, "lengths 7 and 8", {"120823,", ",120823", "12082334"}},
                                  {kRefuse, "another separator or none", {"120823;340918", "1208230340918"}},
                                  {kRefuse, "a span too short", {"12082,3340918", "120823,34091,", "120823,,40918"}},
                                  {kRefuse, "every span is judged", {"120823,520023", Spans(83) + ",520023"}},
                                  {kRefuse, "separators alone", {std::string(6, ','), std::string(587, ',')}},
                                  {kRefuse, "digits alone", {std::string(587, '1')}},
                              });
}

TEST(NewParentControl, Fields)
{
    ResetRows();
    kCheck.ExpectEach({
        {"Enable", kAccept, kSilent, "off", {"0"}},
        {"Enable", kRefuse, kSilent, "neither on nor off", {"2", "01", "true", ""}},
        {"Name", kAccept, kSilent, "longest", {std::string(32, 'n')}},
        {"Name", kRefuse, kSilent, "empty, too long, refused characters", {"", std::string(33, 'n'), "a=b", "a b"}},
        {"Host", kRefuse, kSilent, "no MAC address", {"", "192.168.1.20", "FF:FF:FF:FF:FF:FF"}},
        {"Host", kAccept, kSilent, "hyphens", {"aa-bb-cc-dd-ee-ff"}},
        {"Time", kAccept, kSilent, "longest", {Spans(84)}},
        {"Time", kRefuse, kSilent, "empty, one span more, hour 24", {"", Spans(85), "160824"}},
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
