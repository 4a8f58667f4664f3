// Object set through its handlers: what is called in which order, and that a refused request
// changes nothing.
#include <gtest/gtest.h>

#include "dictionary/name_index.h"
#include "objects/handlers.h"
#include "platform/kobd_exports.h"
#include "tests/process_setup.h"
#include "tests/requests.h"

namespace kobd::test
{
using namespace std::string_literals;
using Lines = std::vector<std::string>;

namespace
{
std::string Snapshot(const char* name)
{
    char value[2048] = "untouched";
    const int code = SnapshotGet(name, value);
    return code == 0 ? value : "code " + std::to_string(code);
}

class ObjectSet : public testing::Test
{
protected:
    void SetUp() override
    {
        NameIndexBuild();
        ResetPlatform();
        platform.values["WebHttpPortGet"] = "80";
    }
    OutputCapture output_;
};
}  // namespace

TEST_F(ObjectSet, AppliesAnnouncesCommitsAnswers)
{
    const std::string payload = Pair("webHttpPort", "8080") + Pair("webLanguage", "EN");
    EXPECT_EQ(Ask(ReqObjSet, payload).payload, 8u);
    EXPECT_EQ(platform.calls, (Lines{"set webHttpPortSet 8080", "notify 2 webHttpPort", "set systemLanguageSet EN",
                                     "notify 2 webLanguage", "update_config", "notify 4", "reply 0"}));
    ResetPlatform();
    EXPECT_EQ(Ask(ReqObjSetSilent, payload).payload, 8u);
    EXPECT_EQ(platform.calls, (Lines{"set webHttpPortSet 8080", "set systemLanguageSet EN", "reply 0"}));
}

// Nothing reads back what they were given.
TEST_F(ObjectSet, ActionsReachTheirOwnSetter)
{
    Ask(ReqObjSetSilent, Pair("lteEnterpin", "1234") + Pair("lteModifypin", "1234,5678") +
                             Pair("lteEnterpuk", "12345678,1234") + Pair("systemSyslogLocalPull", "messages"));
    EXPECT_EQ(platform.Calls("set"), (Lines{"set setEnterpin_lte 1234", "set setModifypin_lte 1234,5678",
                                            "set setEnterpuk_lte 12345678,1234", "set syslogLocalPullSet messages"}));
}

TEST_F(ObjectSet, RefusedRequestChangesNothing)
{
    const std::string good = Pair("webHttpPort", "8080");
    const struct
    {
        int result;
        const char* why;
        std::vector<std::string> payloads;
    } kCases[] = {
        {2, "no item, a lone item header", {"", "\x01\x00\x00\x00"s}},
        {2, "a name without a value", {Name("webHttpPort"), good + Name("webHttpsPort")}},
        {2, "value before name", {TextItem(2, "8080") + Name("webHttpPort")}},
        {2, "a value where a name belongs", {good + TextItem(2, "81")}},
        {2, "a name where a value belongs", {good + Name("webHttpsPort") + Name("webHttpsPort")}},
        {2, "a table's tag", {TextItem(3, "webHttpPort") + TextItem(2, "1")}},
        {1, "no such name", {good + Pair("noSuch", "1"), good + Pair("webhttpport", "1"), good + Pair("", "1")}},
        {2, "a table", {good + Pair("FlowTable", "1")}},
        {10, "read-only", {good + Pair("IMEI", "1")}},
        {2, "outside its limitation", {good + Pair("webHttpsPort", "65536")}},
        {2, "also when a later pair gives a good value", {Pair("webHttpPort", "x") + good}},
        {2, "value without its zero byte", {good + Name("webHttpsPort") + RawItem(2, "81"), good + RawItem(2, "")}},
        {2, "name without its zero byte", {good + RawItem(1, "webHttpsPort") + TextItem(2, "81")}},
        {2, "a byte too many", {good + "\x01"s}},
        {2, "length past the end", {good + Name("webHttpsPort") + "\x02\x00\xFF\xFF"s + "81\0"s}},
    };
    for (const auto& c : kCases)
        for (const std::string& payload : c.payloads)
        {
            ResetPlatform();
            EXPECT_EQ(Ask(ReqObjSet, payload).returned, c.result) << c.why;
            EXPECT_EQ(platform.calls, (Lines{"notify 4", "reply " + std::to_string(c.result)})) << c.why;
            ResetPlatform();
            EXPECT_EQ(Ask(ReqObjSetSilent, payload).returned, c.result) << c.why;
            EXPECT_EQ(platform.calls, Lines{"reply " + std::to_string(c.result)}) << c.why;
            platform.values["WebHttpPortGet"] = "80";
            EXPECT_EQ(Snapshot("webHttpPort"), "80") << "nothing stays staged: " << c.why;
        }
}

TEST_F(ObjectSet, FailingAccessorEndsTheRequest)
{
    platform.failures["systemLanguageSet"] = 23;
    const std::string payload = Pair("webHttpPort", "8080") + Pair("webLanguage", "en") + Pair("webHttpsPort", "1");
    EXPECT_EQ(Ask(ReqObjSet, payload).returned, 23);
    EXPECT_EQ(platform.calls, (Lines{"set webHttpPortSet 8080", "notify 2 webHttpPort", "set systemLanguageSet en",
                                     "notify 4", "reply 23"}))
        << "earlier pairs stay, later ones are not applied, nothing is committed";
}

TEST_F(ObjectSet, FailingCommitAndNotificationsDoNotChangeTheAnswer)
{
    platform.failures["update_config"] = 14;
    platform.failures["MessageSend"] = 3;
    EXPECT_EQ(Ask(ReqObjSet, Pair("webHttpPort", "8080")).result, 0);
}

TEST_F(ObjectSet, AccessorsSeeTheNewValuesOfTheWholeRequest)
{
    platform.values["WebHttpPortGet"] = "80";
    platform.values["webHttpsPortGet"] = "443";
    Lines seen;
    platform.during_set = [&]
    {
        for (const char* name : {"webHttpPort", "webHttpsPort", "systemReboot", "FlowTable", "noSuch", "smsRecord"})
            seen.push_back(Snapshot(name));
    };
    Ask(ReqObjSet, Pair("webHttpsPort", "1") + Pair("webHttpsPort", "8443"));
    const Lines once = {"80", "8443", "0", "code 1", "code 1", "code 16"};
    ASSERT_EQ(seen.size(), 2 * once.size());
    EXPECT_EQ(Lines(seen.begin(), seen.begin() + 6), once) << "the last value given for a name counts";
    EXPECT_EQ(Lines(seen.begin() + 6, seen.end()), once);
    EXPECT_EQ(platform.Calls("set"), (Lines{"set webHttpsPortSet 1", "set webHttpsPortSet 8443"}))
        << "but every pair is applied with its own";
    EXPECT_EQ(Snapshot("webHttpsPort"), "443") << "the accessor's value again";
}

TEST_F(ObjectSet, SnapshotPassesTheAccessorsCodeOn)
{
    platform.failures["WebHttpPortGet"] = 17;
    EXPECT_EQ(Snapshot("webHttpPort"), "code 17");
}

TEST_F(ObjectSet, MessageFullOfPairs)
{
    std::string payload;
    size_t pairs = 0;
    for (const std::string pair = Pair("webHttpPort", "8080"); payload.size() + pair.size() <= kPayloadMax; ++pairs)
        payload += pair;
    EXPECT_EQ(Ask(ReqObjSet, payload).result, 0);
    EXPECT_EQ(platform.Calls("notify 2").size(), pairs);
}
}  // namespace kobd::test
