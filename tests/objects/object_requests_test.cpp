// Object get and set through their handlers: what is called in which order, and what is answered.
#include <gtest/gtest.h>

#include "dictionary/name_index.h"
#include "dictionary/snapshot.h"
#include "objects/handlers.h"
#include "platform/kobd_exports.h"
#include "tests/process_setup.h"
#include "tests/requests.h"

namespace kobd::test
{
using Lines = std::vector<std::string>;

namespace
{
class ObjectRequests : public testing::Test
{
protected:
    void SetUp() override
    {
        NameIndexBuild();
        ResetPlatform();
        platform.values = {{"systemLanguageGet", "en"}, {"IMEIGet", "352099001761481"}, {"WebHttpPortGet", "80"}};
    }
    OutputCapture output_;
};
}  // namespace

TEST_F(ObjectRequests, GetRepliesByRequest)
{
    platform.failures["webHttpsPortGet"] = 17;
    const Lines both = {"webLanguage", "en", "IMEI", "352099001761481"};
    const struct
    {
        std::string payload;
        const char* why;
        Lines texts = {};
        std::string line = "";  // in the log
    } kCases[] = {
        {Name("webLanguage") + Name("IMEI"), "in request order", both},
        {Name("IMEI") + Name("webLanguage"), "the other order", {"IMEI", "352099001761481", "webLanguage", "en"}},
        {Name("webHttpPort") + TextItem(9, "webHttpPort"),
         "twice; tags are not looked at",
         {"webHttpPort", "80", "webHttpPort", "80"}},
        {Name(""), "empty name", {}, "-KOB_NOT_FOUND"},
        {Name("FlowTable"), "a table is no object", {}, "FlowTable-KOB_NOT_FOUND"},
        {Name("smsRecord"), "write-only", {}, "smsRecord-KOB_METHOD_UNAVAILABLE"},
        {Name("noSuch") + Name("webHttpsPort") + Name("webHttpPort"),
         "the others are given all the same",
         {"webHttpPort", "80"},
         "webHttpsPort-KOB_GET_ERROR"},
        {Name("systemReboot"), "an action reads as 0", {"systemReboot", "0"}},
        {Name("IMEI") + Name("webHttpEnable"),
         "accessor that writes nothing: nothing of the value before shows",
         {"IMEI", "352099001761481", "webHttpEnable", ""}},
        {Name("100%s%n"), "a name is data, never a format", {}, "100%s%n-KOB_NOT_FOUND"},
    };
    for (const auto& c : kCases)
    {
        const size_t before = output_.Text().size();
        const Answer answer = Ask(ReqObjGet, c.payload);
        const std::string lines = output_.Text().substr(before);
        EXPECT_EQ(answer.returned, 0) << c.why;
        EXPECT_EQ(answer.texts, c.texts) << c.why;
        const bool logged = lines.ends_with("]: " + c.line) && lines.find(" ReqObjGet[") != lines.npos;
        EXPECT_TRUE(c.line.empty() ? lines.empty() : logged) << c.why << lines;
    }
}

TEST_F(ObjectRequests, GetFillsTheMessageToTheLastByte)
{
    // Four pairs of a name item of 4 + 11 + 1 bytes and a value item of 4 + 2014 + 1 bytes, and the
    // result item of 8, make 8148 bytes: 8192 with the header.
    const std::string four = Name("webHttpPort") + Name("webHttpPort") + Name("webHttpPort") + Name("webHttpPort");
    const struct
    {
        size_t value;  // bytes
        std::string payload;
        int result;
        size_t size;
        const char* why;
    } kCases[] = {
        {2014, four, 0, kPayloadMax, "fits"},
        {2014, four + Name("noSuch"), 0, kPayloadMax, "nothing more to push"},
        {2014, four + Name("IMEI"), 11, 8, "no room for one name more: the result alone"},
        {2015, four, 11, 8, "four bytes too many"},
        {2047, Name("webHttpPort"), 0, 8 + 16 + 4 + 2048, "longest value of the buffer; served as ever"},
    };
    for (const auto& c : kCases)
    {
        platform.values["WebHttpPortGet"] = std::string(c.value, '8');
        const Answer answer = Ask(ReqObjGet, c.payload);
        EXPECT_EQ(answer.result, c.result) << c.why;
        EXPECT_EQ(answer.payload, c.size) << c.why;
    }
}

TEST_F(ObjectRequests, SetAppliesAnnouncesCommitsAnswers)
{
    platform.failures = {{"update_config", 14}, {"MessageSend", 3}};  // they do not change the answer
    const std::string payload = Pair("webHttpPort", "8080") + Pair("webLanguage", "EN");
    EXPECT_EQ(Ask(ReqObjSet, payload).payload, 8u);
    EXPECT_EQ(platform.calls, (Lines{"set webHttpPortSet 8080", "notify 2 webHttpPort", "set systemLanguageSet EN",
                                     "notify 2 webLanguage", "update_config", "notify 4", "reply 0"}));
    platform.calls.clear();
    EXPECT_EQ(Ask(ReqObjSetSilent, payload).payload, 8u);
    EXPECT_EQ(platform.calls, (Lines{"set webHttpPortSet 8080", "set systemLanguageSet EN", "reply 0"}));
}

// Nothing reads back what they were given.
TEST_F(ObjectRequests, ActionsReachTheirOwnSetter)
{
    Ask(ReqObjSetSilent, Pair("lteEnterpin", "1234") + Pair("lteModifypin", "1234,5678") +
                             Pair("lteEnterpuk", "12345678,1234") + Pair("systemSyslogLocalPull", "messages"));
    EXPECT_EQ(platform.Calls("set"), (Lines{"set setEnterpin_lte 1234", "set setModifypin_lte 1234,5678",
                                            "set setEnterpuk_lte 12345678,1234", "set syslogLocalPullSet messages"}));
}

TEST_F(ObjectRequests, FailingAccessorEndsTheSet)
{
    platform.failures["systemLanguageSet"] = 23;
    const std::string payload = Pair("webHttpPort", "8080") + Pair("webLanguage", "en") + Pair("webHttpsPort", "1");
    EXPECT_EQ(Ask(ReqObjSet, payload).returned, 23);
    EXPECT_EQ(platform.calls, (Lines{"set webHttpPortSet 8080", "notify 2 webHttpPort", "set systemLanguageSet en",
                                     "notify 4", "reply 23"}))
        << "earlier pairs stay, later ones are not applied, nothing is committed";
}

TEST_F(ObjectRequests, AccessorsSeeTheNewValuesOfTheWholeSet)
{
    platform.values["webHttpsPortGet"] = "443";
    Lines seen;
    platform.during_set = [&]
    {
        for (const char* name : {"webHttpPort", "webHttpsPort", "systemReboot", "FlowTable", "smsRecord"})
        {
            char value[2048] = "";
            const int code = SnapshotGet(name, value);
            seen.push_back(code == 0 ? value : "code " + std::to_string(code));
        }
    };
    Ask(ReqObjSet, Pair("webHttpsPort", "1") + Pair("webHttpsPort", "8443"));
    EXPECT_EQ(seen, (Lines{"80", "8443", "0", "code 1", "code 16", "80", "8443", "0", "code 1", "code 16"}))
        << "the last value given for a name counts";
    EXPECT_EQ(platform.Calls("set"), (Lines{"set webHttpsPortSet 1", "set webHttpsPortSet 8443"}))
        << "but every pair is applied with its own";
    char value[2048];
    EXPECT_EQ(SnapshotGet("webHttpsPort", value), 0);
    EXPECT_STREQ(value, "443") << "the accessor's value again";
}

TEST_F(ObjectRequests, ValuesOfOneSetAreJudgedTogether)
{
    platform.values = {{"getLanSetIp_net", "192.168.1.1"}, {"getLanSetMask_net", "255.255.255.0"}};
    const std::string ip = Pair("networkLanSettingIp", "192.168.1.64");
    const std::string mask = Pair("networkLanSettingMask", "255.255.255.192");
    EXPECT_EQ(Ask(ReqObjSet, ip).result, 0);
    for (const std::string& payload : {ip + mask, mask + ip})
        EXPECT_EQ(Ask(ReqObjSet, payload).result, 2) << "a network address under the new mask, in either order";
}

TEST_F(ObjectRequests, SnapshotReadNeverPassesItsBuffer)
{
    const struct
    {
        const char* name;
        std::string value;
        int code;
        const char* why;
    } kCases[] = {
        {"webHttpPort", "fifteen letters", 0, "fills the buffer"},
        {"webHttpPort", "sixteen letters!", 11, "no part of a value stands for the value"},
        {"noSuch", "", 1, "unknown"},
        {"smsRecord", "", 16, "write-only"},
        {"webHttpsPort", "", 17, "the accessor's code"},
    };
    platform.failures["webHttpsPortGet"] = 17;
    for (const auto& c : kCases)
    {
        char value[16];
        platform.values["WebHttpPortGet"] = c.value;
        EXPECT_EQ(SnapshotRead(c.name, value), c.code) << c.why;
        EXPECT_EQ(value, c.code == 0 ? c.value : "") << c.why;
    }
}

TEST_F(ObjectRequests, MessageFullOfPairs)
{
    std::string payload;
    size_t pairs = 0;
    for (const std::string pair = Pair("webHttpPort", "8080"); payload.size() + pair.size() <= kPayloadMax; ++pairs)
        payload += pair;
    EXPECT_EQ(Ask(ReqObjSet, payload).result, 0);
    EXPECT_EQ(platform.Calls("notify 2").size(), pairs);
}
}  // namespace kobd::test
