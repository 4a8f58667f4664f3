// Object get through its handler.
#include <gtest/gtest.h>

#include "dictionary/name_index.h"
#include "objects/handlers.h"
#include "tests/process_setup.h"
#include "tests/requests.h"

namespace kobd::test
{
using namespace std::string_literals;
using Lines = std::vector<std::string>;

namespace
{
class ObjectGet : public testing::Test
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

TEST_F(ObjectGet, RepliesByRequest)
{
    platform.failures["webHttpsPortGet"] = 17;
    const Lines both = {"webLanguage", "en", "IMEI", "352099001761481"};
    const Lines turned = {"IMEI", "352099001761481", "webLanguage", "en"};
    const Lines twice = {"webLanguage", "en", "webLanguage", "en"};
    const Lines port = {"webHttpPort", "80"};
    const struct
    {
        std::string payload;
        int result;
        const char* why;
        Lines texts = {};
        std::string line = "";  // in the log
    } kCases[] = {
        {Name("webLanguage") + Name("IMEI"), 0, "in request order", both},
        {Name("IMEI") + Name("webLanguage"), 0, "the other order", turned},
        {Name("webLanguage") + Name("webLanguage"), 0, "the same name twice", twice},
        {TextItem(9, "webHttpPort"), 0, "the tag of a name is not looked at", port},
        {Name("noSuch"), 0, "unknown name", {}, "noSuch-KOB_NOT_FOUND"},
        {Name(""), 0, "empty name", {}, "-KOB_NOT_FOUND"},
        {Name("FlowTable"), 0, "a table is no object", {}, "FlowTable-KOB_NOT_FOUND"},
        {Name("smsRecord"), 0, "write-only", {}, "smsRecord-KOB_METHOD_UNAVAILABLE"},
        {Name("webHttpsPort"), 0, "its accessor fails", {}, "webHttpsPort-KOB_GET_ERROR"},
        {Name("noSuch") + Name("webHttpsPort") + Name("webHttpPort"), 0, "the others are given all the same", port,
         "webHttpsPort-KOB_GET_ERROR"},
        {Name("systemReboot"), 0, "an action reads as 0", {"systemReboot", "0"}},
        {Name("webHttpEnable"), 0, "accessor that writes nothing: the empty text", {"webHttpEnable", ""}},
        {Name("100%s%n"), 0, "a name is data, never a format", {}, "100%s%n-KOB_NOT_FOUND"},
        {"", 2, "no item"},
        {"\x01\x00\x00\x00"s, 2, "a lone item header"},
        {RawItem(1, "webHttpPort"), 2, "no zero byte ends the name"},
        {Name("webHttpPort") + "\x01\x00"s, 2, "half an item header at the end"},
        {Name("webHttpPort") + "\x01\x00\x09\x00IMEI\0"s, 2, "length past the end"},
    };
    for (const auto& c : kCases)
    {
        const size_t before = output_.Text().size();
        const Answer answer = Ask(ReqObjGet, c.payload);
        const std::string lines = output_.Text().substr(before);
        EXPECT_EQ(answer.result, c.result) << c.why;
        EXPECT_EQ(answer.returned, c.result) << c.why;
        EXPECT_EQ(answer.texts, c.texts) << c.why;
        EXPECT_TRUE(c.result == 0 || answer.payload == 8u) << c.why;
        const bool logged = lines.ends_with("]: " + c.line) && lines.find(" ReqObjGet[") != lines.npos;
        EXPECT_TRUE(c.line.empty() ? lines.empty() : logged) << c.why << lines;
    }
}

TEST_F(ObjectGet, ValueOfOneAccessorIsNotSeenByTheNext)
{
    platform.values["webHttpEnableget"] = "left over";
    const Answer answer = Ask(ReqObjGet, Name("webHttpEnable") + Name("webHttpsEnable"));
    EXPECT_EQ(answer.texts, (std::vector<std::string>{"webHttpEnable", "left over", "webHttpsEnable", ""}));
}

TEST_F(ObjectGet, ReplyFillsTheMessageToTheLastByte)
{
    // Four pairs of a name item of 4 + 11 + 1 bytes and a value item of 4 + 2014 + 1 bytes, and the
    // result item of 8, make 8148 bytes: 8192 with the header.
    const std::string four = Name("webHttpPort") + Name("webHttpPort") + Name("webHttpPort") + Name("webHttpPort");
    platform.values["WebHttpPortGet"] = std::string(2014, '8');
    const Answer fits = Ask(ReqObjGet, four);
    EXPECT_EQ(fits.result, 0);
    EXPECT_EQ(fits.payload, kPayloadMax);
    EXPECT_EQ(fits.texts.size(), 8u);

    platform.values["WebHttpPortGet"] = std::string(2015, '8');
    const Answer over = Ask(ReqObjGet, four);
    EXPECT_EQ(over.result, 11) << "four bytes too many";
    EXPECT_EQ(over.payload, 8u) << "the result alone";

    platform.values["WebHttpPortGet"] = std::string(2014, '8');
    EXPECT_EQ(Ask(ReqObjGet, four + Name("IMEI")).result, 11) << "no room for one name more";
    EXPECT_EQ(Ask(ReqObjGet, four + Name("noSuch")).result, 0) << "nothing more to push";
    EXPECT_EQ(Ask(ReqObjGet, Name("IMEI")).result, 0) << "the next request is served as ever";
}

TEST_F(ObjectGet, LongestValueOfTheBufferIsWhole)
{
    platform.values["IMEIGet"] = std::string(2047, 'v');
    EXPECT_EQ(Ask(ReqObjGet, Name("IMEI")).texts, (std::vector<std::string>{"IMEI", std::string(2047, 'v')}));
}
}  // namespace kobd::test
