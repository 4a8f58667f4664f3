// Access restriction and parental control, and the names of such rules.
#include <gtest/gtest.h>

#include "tests/process_setup.h"
#include "tests/recording_platform.h"
#include "tests/validators/row_verdict.h"
#include "validators/access_rules.h"
#include "validators/rule_name.h"

namespace kobd::test
{
namespace
{
const RowCheck kAccess = {validAccessRestriction,
                          "validAccessRestriction",
                          "FwAccessRestrictionTable",
                          {{"Name", "children"},
                           {"Host", "192.168.1.20"},
                           {"Weekdays", "Mon"},
                           {"TimeStart", "8:30"},
                           {"TimeStop", "20:00"}}};
const RowCheck kParent = {validParentControl, "validParentControl", "FwParentControlTable", kAccess.good};

const std::string kDevice = "Device parameter error";
const std::string kNameTooLong = "Name can contain a maximum of 32 characters";

Fields Days(const std::string& days) { return {{"Weekdays", days}}; }
Fields Times(const std::string& start, const std::string& stop) { return {{"TimeStart", start}, {"TimeStop", stop}}; }
std::string Period(const std::string& start, const std::string& stop) { return "START:" + start + "    STOP:" + stop; }

// What both write for the one day and the times of a good row; the restriction traces its days.
const std::string kMonday = "partnum:1 |Mon |status:0 |";
const std::string kGood = kMonday + Period("8:30", "20:00");

// A case for both checks: the parental control writes the same without the traces.
std::string WithoutTraces(std::string own)
{
    for (const std::string trace : {"partnum:", "status:"})
        for (size_t at = own.find(trace); at != own.npos; at = own.find(trace))
        {
            const size_t end = own.find('|', at);
            own.erase(at, end == own.npos ? end : end - at + 1);
        }
    if (own.ends_with('|')) own.pop_back();
    return own;
}

void ExpectBoth(const std::vector<RowCase>& cases)
{
    kAccess.Expect(cases);
    std::vector<RowCase> untraced = cases;
    for (RowCase& c : untraced) c.own = WithoutTraces(c.own);
    kParent.Expect(untraced);
}
}  // namespace

TEST(AccessRules, Hosts)
{
    ResetRows();
    ExpectBoth({
        {{}, kAccept, kGood, "an address"},
        {{{"Host", "00:11:22:33:44:55"}}, kAccept, kGood, "a MAC address"},
        {{{"Host", "00-11-22-33-44-55"}}, kAccept, kGood, "a MAC address with hyphens"},
        {{{"Host", ""}}, kRefuse, kSilent, "empty"},
    });
    for (const RowCheck* check : {&kAccess, &kParent})
        check->ExpectEach({
            {"Host", kRefuse, kDevice, "no host's address", {"FF:FF:FF:FF:FF:FF", "0.0.0.0", "224.0.0.1"}},
            {"Host", kRefuse, kDevice, "no address", {"192.168.1", "host.example", std::string(127, '1')}},
        });
    EXPECT_EQ(validAccessRestriction(nullptr), kRefuse);
    EXPECT_EQ(validParentControl(nullptr), kRefuse);
    kAccess.ExpectNothingBesideFields();
    kParent.ExpectNothingBesideFields();
    EXPECT_TRUE(platform.calls.empty()) << "stored rows are of no interest";
}

TEST(AccessRules, Weekdays)
{
    ResetRows();
    const std::string times = "|" + Period("8:30", "20:00");
    const std::string week =
        "Mon |status:0 |Tue |status:0 |Wed |status:0 |Thu |status:0 |Fri |status:0 |Sat |status:0 |Sun |status:0 ";
    ExpectBoth({
        {Days("Mon,Tue,Wed,Thu,Fri,Sat,Sun"), kAccept, "partnum:7 |" + week + times, "the week"},
        {Days("Sun,Mon"), kAccept, "partnum:2 |Sun |status:0 |Mon |status:0 " + times, "in any order"},
        {Days("Mon,"), kAccept, kGood, "nothing behind the last separator"},
        {Days("Mon,Tue,Mon"), kRefuse, "partnum:3 |Mon |status:0 |Tue |status:0 |Mon |status:0 ", "a day twice"},
        {Days("Mon,Tue,Wed,Thu,Fri,Sat,Sun,Mon"), kRefuse, "partnum:8 ", "eight parts"},
        {Days("mon"), kRefuse, "partnum:1 |mon |status:1 ", "small letter"},
        {Days("Monday"), kRefuse, "partnum:1 |Monday |status:1 ", "a continuation"},
        {Days("Mo"), kRefuse, "partnum:1 |Mo |status:1 ", "a beginning"},
        {Days("Mon,,Tue"), kRefuse, "partnum:3 |Mon |status:0 | |status:1 ", "an empty part"},
        {Days(",Mon"), kRefuse, "partnum:2 | |status:1 ", "an empty part first"},
        {Days(","), kRefuse, "partnum:1 | |status:1 ", "a separator alone"},
        {Days("Mon;Tue"), kRefuse, "partnum:1 |Mon;Tue |status:1 ", "another separator"},
        {Days("Mon, Tue"), kRefuse, "partnum:2 |Mon |status:0 | Tue |status:1 ", "a blank inside"},
        {Days("Mon\n"), kRefuse, "partnum:1 |Mon\n |status:1 ", "a line end"},
        {Days("Mon|Tue"), kRefuse, "partnum:1 |Mon|Tue |status:1 ", "the bar of the pattern"},
        {Days(std::string(40, 'M')), kRefuse, "partnum:1 |" + std::string(31, 'M') + " |status:1 ", "cut to 31"},
        {Days(""), kRefuse, kSilent, "empty"},
    });
}

TEST(AccessRules, Times)
{
    ResetRows();
    using Spans = std::vector<std::pair<const char*, const char*>>;
    const struct
    {
        int code;
        const char* more;
        const char* why;
        Spans spans;  // start and stop
    } kCases[] = {
        {kAccept, "", "parts are numbers", {{"8:5", "9:0"}, {"9:00", "10:00"}, {"0008:30", "000020:000000"}}},
        {kAccept,
         "",
         "the same minute, one, the whole day",
         {{"08:30", "08:30"}, {"08:30", "08:31"}, {"0:0", "23:59"}}},
        {kAccept, "", "minutes fall where the hour rises", {{"8:59", "9:00"}}},
        {kAccept, "", "nothing behind the last separator", {{"8:30:", "9:00:"}}},
        {kRefuse, "", "falling", {{"22:00", "06:00"}, {"8:31", "8:30"}, {"9:00", "8:59"}}},
        {kRefuse, "", "hour 24", {{"24:00", "24:00"}, {"8:00", "24:00"}}},
        {kRefuse, "", "minute 60", {{"8:60", "9:00"}, {"8:00", "9:60"}}},
        {kRefuse, "", "would wrap to 8", {{"4294967304:00", "9:00"}, {"18446744073709551624:00", "9:00"}}},
        {kRefuse, "", "a minute that would wrap to 0", {{"8:00", "9:4294967296"}}},
        {kRefuse,
         "",
         "a sign, a letter, a blank",
         {{"-8:00", "9:00"}, {"8:+0", "9:00"}, {"8:a", "9:00"}, {"8: 0", "9:00"}}},
        {kRefuse, "", "no hour", {{":30", "9:00"}, {"8:00", ":59"}}},
        {kRefuse, "|separator error", "two separators, seconds", {{"8::30", "9:00"}, {"8:00:00", "9:00"}}},
        {kRefuse, "|separator error", "no minute", {{"8:", "9:00"}, {":", "9:00"}}},
        {kRefuse, "|separator error", "no separator", {{"8", "9:00"}, {"8:00", "9"}, {"8.00", "9.00"}}},
    };
    for (const auto& c : kCases)
        for (const auto& [start, stop] : c.spans)
            ExpectBoth({{Times(start, stop), c.code, kMonday + Period(start, stop) + c.more, c.why}});
    ExpectBoth({
        {Times("", "9:00"), kRefuse, kSilent, "no start"},
        {Times("8:00", ""), kRefuse, kSilent, "no end"},
    });
}

TEST(AccessRules, BlanksAreTrimmedInTheRow)
{
    ResetRows();
    const Fields blanks = {{"Name", " kids\t"},    {"Host", "\t 192.168.1.20  "}, {"Weekdays", " Mon "},
                           {"TimeStart", " 8:30"}, {"TimeStop", "20:00\t\t"},     {"Enable", " 1 "}};
    for (const RowCheck* check : {&kAccess, &kParent})
    {
        for (const char* host : {"\t 192.168.1.20  ", "  NOBODY "})
        {
            Fields changes = blanks;
            changes.emplace_back("Host", host);
            const RowVerdict verdict = check->Judge(check->Row(1, changes));
            const bool good = std::string_view(host).find("NOBODY") == std::string_view::npos;
            EXPECT_EQ(verdict.code, good ? kAccept : kRefuse) << check->name;
            const auto text = [&](const char* column) { return check->Text(verdict.row, column); };
            EXPECT_EQ(text("Name"), "kids") << check->name;
            EXPECT_EQ(text("Host"), good ? "192.168.1.20" : "NOBODY") << check->name << ": refused rows stay trimmed";
            EXPECT_EQ(text("Weekdays"), "Mon") << check->name;
            EXPECT_EQ(text("TimeStart"), "8:30") << check->name;
            EXPECT_EQ(text("TimeStop"), "20:00") << check->name;
            EXPECT_EQ(text("Enable"), " 1 ") << check->name << ": not one of the five";
        }
        const RowVerdict blank = check->Judge(check->Row(1, {{"Weekdays", " \t "}}));
        EXPECT_EQ(blank.code, kRefuse) << check->name << ": blanks alone are an empty field";
        EXPECT_EQ(check->Text(blank.row, "Weekdays"), "") << check->name;

        // A field full of blanks without a zero byte, which a trimmed text always gets.
        const RowVerdict unended = check->Judge(check->Unended("Host", ' '));
        EXPECT_EQ(check->Text(unended.row, "Host"), "") << check->name;
        EXPECT_EQ(unended.code, kRefuse) << check->name;
    }
}

TEST(AccessRules, Names)
{
    ResetRows();
    kAccess.Expect({
        {{{"Name", std::string(32, 'n')}}, kAccept, kGood, "longest"},
        {{{"Name", std::string(33, 'n')}}, kRefuse, kNameTooLong, "one more"},
        {{{"Name", std::string(33, '=')}}, kRefuse, kNameTooLong, "the length is judged first"},
        {{{"Name", "a=b"}}, kRefuse, kSilent, "refused character"},
        {{{"Name", "a b"}}, kRefuse, kSilent, "a blank inside"},
        {{{"Name", ""}}, kRefuse, kSilent, "required"},
        {{{"Name", "x="}, {"Host", "x"}}, kRefuse, kSilent, "the name is judged before the device"},
    });
    const std::string own = WithoutTraces(kGood);
    kParent.Expect({
        {{{"Name", ""}}, kAccept, own, "not required"},
        {{{"Name", std::string(127, '=')}}, kAccept, own, "not checked"},
    });
}

TEST(RuleName, Characters)
{
    for (int c = 1; c < 256; ++c)
    {
        const std::string name = std::string("a") + static_cast<char>(c);
        const bool printable = c > 32 && c < 127;
        const bool refused = std::string("\\`%'=\"+").find(static_cast<char>(c)) != std::string::npos;
        OutputCapture output;
        EXPECT_EQ(validNameRestriction(name.c_str()), printable && !refused ? 1 : 0) << c;
        const std::string line = output.Text();
        const char* end =
            refused ? "]: ---name is not in a-z or A-Z or 0-9---" : "]: ---name is in a-z or A-Z or 0-9---";
        EXPECT_TRUE(printable ? line.ends_with(end) : line.empty()) << c << line;
    }
    OutputCapture output;
    EXPECT_EQ(validNameRestriction(nullptr), 0) << "missing";
    EXPECT_EQ(validNameRestriction(""), 0) << "empty";
    EXPECT_EQ(validNameRestriction("= "), 0) << "a blank behind a refused character";
    EXPECT_EQ(validNameRestriction(std::string(129, 'n').c_str()), 0) << "longer than a name can be";
    EXPECT_EQ(output.Text(), "") << "without a line";
    EXPECT_EQ(validNameRestriction(std::string(128, 'n').c_str()), 1) << "longest";
}
}  // namespace kobd::test
