// The values that accessors and checks see while an object set is in hand. requests/objects.txt has the rest.
#include <gtest/gtest.h>

#include "dictionary/name_index.h"
#include "dictionary/snapshot.h"
#include "objects/handlers.h"
#include "platform/kobd_exports.h"
#include "tests/requests.h"

namespace kobd::test
{
TEST(Snapshot, AccessorsSeeTheNewValuesOfTheWholeSet)
{
    NameIndexBuild();
    ResetPlatform();
    platform.values["WebHttpPortGet"] = "80";
    platform.values["webHttpsPortGet"] = "443";
    std::vector<std::string> seen;
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
    EXPECT_EQ(seen, (std::vector<std::string>{"80", "8443", "0", "code 1", "code 16", "80", "8443", "0", "code 1",
                                              "code 16"}))
        << "the last value given for a name counts";
    EXPECT_EQ(platform.Calls("set"), (std::vector<std::string>{"set webHttpsPortSet 1", "set webHttpsPortSet 8443"}))
        << "but every pair is applied with its own";
    char value[2048];
    EXPECT_EQ(SnapshotGet("webHttpsPort", value), 0);
    EXPECT_STREQ(value, "443") << "the accessor's value again";
}

TEST(Snapshot, ReadNeverPassesItsBuffer)
{
    NameIndexBuild();
    ResetPlatform();
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
}  // namespace kobd::test
