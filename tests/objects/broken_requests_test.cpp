// Every cut and many random changes of valid requests are answered, change nothing when refused,
// and touch no byte outside the message (the sanitizers watch its exactly sized block).
#include <gtest/gtest.h>

#include <random>

#include "dictionary/name_index.h"
#include "objects/handlers.h"
#include "platform/kobd_exports.h"
#include "tests/process_setup.h"
#include "tests/requests.h"

namespace kobd::test
{
namespace
{
constexpr unsigned kSeed = 20240611;
constexpr int kMutations = 2000;

const std::string kGet = Name("webLanguage") + Name("IMEI") + Name("smsRecord") + Name("FlowTable");
const std::string kSet = Pair("webHttpPort", "8080") + Pair("webLanguage", "en") + Pair("webHttpEnable", "1");

struct Handler
{
    int (*function)(MessageHeader*);
    const std::string& valid;
    bool sets;
};
const Handler kHandlersUnderTest[] = {{ReqObjGet, kGet, false}, {ReqObjSet, kSet, true}, {ReqObjSetSilent, kSet, true}};

void ExpectAnsweredWhole(const Handler& handler, const std::string& payload, const std::string& what)
{
    OutputCapture output;
    ResetPlatform();
    platform.values["WebHttpPortGet"] = "80";
    const Answer answer = Ask(handler.function, payload);
    EXPECT_EQ(platform.Calls("reply").size(), 1u) << what;
    EXPECT_TRUE(answer.result == 0 || answer.result == 1 || answer.result == 2 || answer.result == 10)
        << answer.result << what;
    EXPECT_TRUE(answer.result == 0 || answer.payload == 8u) << what;
    if (!handler.sets) return;
    EXPECT_EQ(platform.Calls("set ").empty(), answer.result != 0) << what;
    char value[2048];
    EXPECT_EQ(SnapshotGet("webHttpPort", value), 0);
    EXPECT_STREQ(value, "80") << "staged value left behind: " << what;
}
}  // namespace

TEST(BrokenRequests, EveryCut)
{
    NameIndexBuild();
    for (const Handler& handler : kHandlersUnderTest)
        for (size_t cut = 0; cut < handler.valid.size(); ++cut)
            ExpectAnsweredWhole(handler, handler.valid.substr(0, cut), "cut at " + std::to_string(cut));
}

TEST(BrokenRequests, RandomChanges)
{
    NameIndexBuild();
    std::mt19937 random(kSeed);
    for (const Handler& handler : kHandlersUnderTest)
        for (int number = 0; number < kMutations; ++number)
            ExpectAnsweredWhole(handler, Mutated(handler.valid, random), "change " + std::to_string(number));
}
}  // namespace kobd::test
