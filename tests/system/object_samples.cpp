// Samples by check, else by type.
#include "tests/system/object_samples.h"

#include <cstring>

namespace kobd::test
{
namespace
{
const struct
{
    const char* check;
    SampleValues values;
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
}  // namespace

SampleValues SamplesFor(const client::ObjectEntry& object)
{
    for (const auto& checked : kCheckedValues)
        if (object.validator != nullptr && strcmp(checked.check, object.validator) == 0)
            return {checked.values.good, checked.values.bad, true};
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
}  // namespace kobd::test
