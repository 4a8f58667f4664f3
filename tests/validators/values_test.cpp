// Functions that give values or take several arguments: address arithmetic, bounds, blanks.
#include <gtest/gtest.h>

#include "tests/process_setup.h"
#include "tests/validators/judge.h"
#include "validators/address_arithmetic.h"
#include "validators/cbsd.h"
#include "validators/lan.h"
#include "validators/texts.h"

namespace kobd::test
{
namespace
{
constexpr const char* kMask24 = "255.255.255.0";
constexpr int64_t kNet = 0xC0A80100;  // 192.168.1.0
}  // namespace

TEST(Iptonum, ValuesAndErrors)
{
    const struct
    {
        int64_t value;
        std::vector<const char*> texts;
        const char* why;
    } kCases[] = {
        {kNet + 77, {"192.168.1.77"}, "parts in their places"},
        {0x01020304, {"1.2.3.4", "1.2.3.4 and more", "1.2.3.4.5", " 1. 2.3.4"}, "nothing behind the fourth is read"},
        {0x0A000001, {"010.0.0.1"}, "decimal whatever the zeros"},
        {0xFFFFFFFF, {"255.255.255.255"}, "highest, not negative"},
        {-1, {nullptr}, "no text"},
        {-2, {"256.0.0.0", "0.0.0.256", "0.0.0.99999999999999999999"}, "a number too large"},
        {-2, {"-99999999999999999999.0.0.0", "-4294967296.0.0.0"}, "beyond 32 bits below"},
        {-2, {"", "1.2.3", "1.2.3.", "1.2..4", "a.b.c.d", "1 .2.3.4", "::1"}, "not four numbers"},
    };
    for (const auto& c : kCases)
        for (const char* text : c.texts) EXPECT_EQ(iptonum(text), c.value) << c.why;
    EXPECT_LT(iptonum("-1.0.0.0"), 0) << "a negative part gives no address";
}

TEST(GetSubnet, HeadAndEnd)
{
    EXPECT_EQ(getSubnet("192.168.1.77", kMask24, "head"), kNet);
    EXPECT_EQ(getSubnet("192.168.1.77", kMask24, "end"), kNet + 256) << "192.168.2.0";
    EXPECT_EQ(getSubnet("192.168.1.77", kMask24, nullptr), kNet);
    EXPECT_EQ(getSubnet("192.168.1.77", kMask24, "END"), kNet) << "other case";
    EXPECT_EQ(getSubnet("192.168.1.77", "255.255.255.192", "head"), kNet + 64);
    EXPECT_EQ(getSubnet("192.168.1.77", "255.255.255.192", "end"), kNet + 64 + 256) << "256 whatever the mask";
    EXPECT_EQ(getSubnet("255.255.255.255", "255.255.255.0", "end"), 0x100000000) << "beyond 32 bits";
    for (const char* bad : {"", "1.2.3", "300.1.1.1", static_cast<const char*>(nullptr)})
    {
        EXPECT_EQ(getSubnet(bad, kMask24, "head"), -3);
        EXPECT_EQ(getSubnet("192.168.1.77", bad, "end"), -3);
    }
}

TEST(LanAddress, AgainstItsSegment)
{
    EXPECT_EQ(isLanSegmentAddress("192.168.1.1", kMask24), 0);
    EXPECT_EQ(isLanSegmentAddress("192.168.1.0", kMask24), 2) << "the network address";
    EXPECT_EQ(isLanSegmentAddress("192.168.1.64", "255.255.255.192"), 2) << "the network address of a part";
    EXPECT_EQ(isLanSegmentAddress("192.168.1.65", "255.255.255.192"), 0);
    EXPECT_EQ(isLanSegmentAddress("192.168.1.1", "255.255.255.255"), 2) << "every address is its own network";
    EXPECT_EQ(isLanBroadcastIP("192.168.1.255", kMask24), 0) << "below the network address plus 256";
    EXPECT_EQ(isLanBroadcastIP("192.168.1.255", "255.255.0.0"), 2) << "network address plus 256 is 192.168.1.0";
    EXPECT_EQ(isLanBroadcastIP("192.168.0.255", "255.255.0.0"), 0);
    EXPECT_EQ(isLanSegmentAddress("-1.2.3.4", kMask24), 2) << "far below -3";
    for (const char* bad : {"", "1.2.3", "300.1.1.1", static_cast<const char*>(nullptr)})
    {
        EXPECT_EQ(isLanSegmentAddress(bad, kMask24), 0) << "-1 or -2 is above -3";
        EXPECT_EQ(isLanSegmentAddress("192.168.1.1", bad), 0) << "any address is above -3";
        EXPECT_EQ(isLanBroadcastIP(bad, kMask24), 2);
        EXPECT_EQ(isLanBroadcastIP("192.168.1.1", bad), 2);
    }
}

TEST(SameSegment, ComparesThreeParts)
{
    EXPECT_EQ(inSameSegment("192.168.1.1", "192.168.1.200", "255.255.255.128"), 0) << "not the fourth numbers";
    EXPECT_EQ(inSameSegment("192.168.1.1", "192.168.2.1", "255.255.255.0"), 2);
    EXPECT_EQ(inSameSegment("192.168.1.1", "192.168.2.1", "255.255.0.0"), 0);
    for (const char* other : {"193.168.1.1", "192.169.1.1", "192.168.1", ""})
        EXPECT_EQ(inSameSegment("192.168.1.1", other, "255.255.255.0"), 2) << other;
    EXPECT_EQ(inSameSegment("192.168.1", "192.168.1.1", "255.255.255.0"), 2);
    EXPECT_EQ(inSameSegment("192.168.1.1", "192.168.1.1", "255.255.255"), 2);
}

TEST(FloatAccuracy, PlacesAndBoundsAreTheCallers)
{
    OutputCapture output;
    for (const auto& [text, places, code] : {std::tuple{"1.25", 2, 0},
                                             {"1.255", 2, 2},
                                             {"1", 0, 0},
                                             {"1.", 0, 0},
                                             {"1.0", 0, 2},
                                             {"0.99", 2, 2},
                                             {"", 0, 0},
                                             {"1", -1, 2}})
        EXPECT_EQ(validFloatAccuracy(text, places, 1.0F, 2.0F), code) << text << ", places " << places;
}

TEST(Trim, RemovesBlanksAtBothEnds)
{
    for (const auto& [text, trimmed] :
         {std::pair{"", ""}, {" \t \t", ""}, {" a", "a"}, {"a\t", "a"}, {"\t a b \t", "a b"}, {"\na\n", "\na\n"}})
    {
        std::vector<char> block = ExactText(text);
        Trim(block.data());
        EXPECT_STREQ(block.data(), trimmed);
    }
}
}  // namespace kobd::test
