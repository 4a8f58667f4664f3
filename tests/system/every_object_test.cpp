// Every object of the dictionary through the real daemon: read, and where it can be written, given
// a value it takes and one it refuses.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "client/dictionary.h"
#include "daemon/tlv.h"
#include "tests/namespaces.h"
#include "tests/system/daemon_process.h"

namespace kobd::test
{
namespace
{
using client::Access;
using client::ObjectEntry;

struct Pair
{
    std::string good;
    std::string bad;  // empty: the type refuses nothing that fits a message
};

// Values for objects with a check, on a router with factory settings whose objects before it in the
// catalogue have their good values already.
const struct
{
    const char* check;
    Pair values;
} kCheckedValues[] = {
    {"ValidVerifyPin", {"1234,5678", "1234"}},
    {"valid5gBandLock", {"28;78;", "7;"}},
    {"validAddressExzerobc", {"10.1.2.3", "10.1.2.0"}},
    {"validCbsdAzimuth", {"359", "360"}},
    {"validCbsdDowntilt", {"90", "-10"}},
    {"validCbsdEirp", {"47", "48"}},
    {"validCbsdGain", {"128", "129"}},
    {"validCbsdHeight", {"10000", "10001"}},
    {"validCbsdHorAccuracy", {"50", "51"}},
    {"validCbsdLatitude", {"-89.1234567", "90.5"}},
    {"validCbsdLongitude", {"-180", "1.23456789"}},
    {"validCbsdVerAccuracy", {"3", "4"}},
    {"validCommonStr", {"fw.bin", "fw;bin"}},
    {"validConfigFile", {"/tmp/kobd.log", "/tmp/no such file"}},
    {"validDefaultGateway", {"2", "3"}},
    {"validDhcpEnd", {"192.168.1.190", "192.168.2.190"}},
    {"validDhcpStart", {"192.168.1.110", "192.168.2.110"}},
    {"validDigitMap", {"[2-8]xxx", ""}},
    {"validEarfcnlock", {"1300;636000;", "60000;"}},
    {"validEnterPin", {"1234", "123"}},
    {"validEnterPuk", {"12345678,1234", "1234,12345678"}},
    {"validEventNotifyComd", {"/etc/notify", "notify"}},
    {"validExternIp", {"192.168.3.1", "192.168.1.2"}},
    {"validFtpPwd", {"secret", ""}},
    {"validFtpUrl", {"ftp://ftp.example.com/fw", "ftp://127.0.0.1/fw"}},
    {"validFtpUsr", {"user", ""}},
    {"validGpsAltitude", {"-3.5", "high"}},
    {"validGpsLatitude", {"52.5", "90.5"}},
    {"validGpsLongitude", {"179.5", "180.5"}},
    {"validHttpUrl", {"http://[2001:db8::1]:7547/acs", "http://[2001:db8:::1]/"}},
    {"validIperfUdpBandWidth", {"10M", "10G"}},
    {"validIpv4", {"192.0.2.7", "192.0.2.07"}},
    {"validLanIp", {"192.168.1.2", "192.168.1.0"}},
    {"validLanMask", {"255.255.255.0", "255.255.0.0"}},
    {"validLockPin", {"1,1234", "2,1234"}},
    {"validLtePlmnlock", {"46000", "4600"}},
    {"validLteSimlock", {"46000;46001", "46000;46000"}},
    {"validLteTxpowerLimit", {"1,23", "1,24"}},
    {"validMask", {"255.255.0.0", "255.0.255.0"}},
    {"validPcilock", {"1300,503;", "1300,504;"}},
    {"validRadioPreferMode", {"5G", "5g"}},
    {"validSnmpTrapServer", {"trap.example.com", "trap"}},
    {"validSystemTimezone", {"GMT+05:45", "GMT-05:45"}},
    {"validTacLockList", {"1;65535;", "65536;"}},
    {"validTacLockTimes", {"8", "9"}},
    {"validTr069BindApnIndex", {"1", "4"}},
    {"validVpnserver", {"vpn.example.com", "10.1.2.0"}},
    {"validWanGateway", {"192.168.1.254", "192.168.1.1"}},
    {"validWatchdogPingServer", {"2001:db8::1", "2001:db8"}},
    {"validWifiPassword", {"secret12", "two words"}},
    {"valid_cbsd_beamwidth", {"360", "361"}},
    {"validlteBandLock", {"3;7;", "3;4;"}},
};

const Pair* CheckedValues(const ObjectEntry& object)
{
    for (const auto& checked : kCheckedValues)
        if (object.validator != nullptr && strcmp(checked.check, object.validator) == 0) return &checked.values;
    return nullptr;
}

Pair ValuesFor(const ObjectEntry& object)
{
    if (const Pair* checked = CheckedValues(object)) return *checked;
    const std::string limitation = object.limitation != nullptr ? object.limitation : "";
    const size_t colon = limitation.find(':');
    switch (object.type)
    {
        case VT_INT32:
        case VT_UINT32:
        case VT_UINT16: return {colon == std::string::npos ? "7" : limitation.substr(0, colon), "-1"};
        case VT_BOOL: return {"1", "2"};
        case VT_ENUM: return {limitation.substr(0, limitation.find('|')), "no such choice"};
        case VT_STRING: return {std::string(colon == std::string::npos ? 3 : 8, 'a'), "a;$(b)"};
        case VT_TEXT:
        case VT_TEXT_2: return {"some text", std::string(1025, 'a')};
        default: return {"anything", ""};
    }
}

std::string Read(const char* name)
{
    const Answer answer = Request(kGet, {{kTagObjectName, name}});
    return answer.result == 0 && answer.texts.size() == 2 && answer.texts[0] == name ? answer.texts[1] : "(nothing)";
}

int Write(const char* name, const std::string& value)
{
    return Request(kSetSilent, {{kTagObjectName, name}, {kTagValue, value}}).result;
}

void CheckWritable(const ObjectEntry& object)
{
    const bool readable = object.access == Access::kReadWrite;
    const Pair values = ValuesFor(object);
    const std::string before = readable ? Read(object.name) : "";
    if (!values.bad.empty() || CheckedValues(object) != nullptr)
    {
        EXPECT_EQ(Write(object.name, values.bad), 2) << object.name;
    }
    if (readable)
    {
        EXPECT_EQ(Read(object.name), before) << object.name << " kept its value when refused";
    }
    EXPECT_TRUE(object.validator == nullptr || CheckedValues(object) != nullptr)
        << "the check of " << object.name << " has no values here";
    EXPECT_EQ(Write(object.name, values.good), 0) << object.name << "=" << values.good;
    // The two 5G locks are read through the LTE lock's accessor.
    if (readable && strcmp(object.name, "lteLockband5g") != 0)
    {
        EXPECT_EQ(Read(object.name), values.good) << object.name;
    }
}

TEST(EveryObject, IsReadAndWritableOnesTakeGoodAndRefuseBadValues)
{
    SKIP_WITHOUT_NAMESPACES();
    ASSERT_EQ(system("rm -rf /tmp/state /tmp/kobd*"), 0);
    DaemonProcess daemon("/tmp/state");
    ASSERT_TRUE(daemon.Start());
    for (const ObjectEntry& object : client::Objects())
    {
        const std::string value = Read(object.name);
        if (object.access == Access::kWriteOnly)
        {
            EXPECT_EQ(value, "(nothing)") << object.name;
        }
        else
            EXPECT_NE(value, "(nothing)") << object.name;
        if (object.access == Access::kAction)
        {
            EXPECT_EQ(value, "0") << object.name;
        }
        if (object.access == Access::kReadOnly)
        {
            EXPECT_EQ(Write(object.name, "1"), client::FindObject(object.name)->access == Access::kReadOnly ? 10 : 0);
        }
        else if (client::FindObject(object.name) == &object)
            CheckWritable(object);
    }
}
}  // namespace
}  // namespace kobd::test
