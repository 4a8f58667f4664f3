// A value that each object takes and one that it refuses: by object or check, else by type.
#pragma once

#include <string>
#include <string_view>

#include "client/dictionary/dictionary.h"

namespace kobd::test
{
struct SampleValues
{
    std::string good;
    std::string bad;        // empty: the type refuses nothing that fits a message
    bool of_check = false;  // chosen for the object's own check
};

// By object; by check where many objects have it. An object that the catalogue binds to no check or to
// another's must not be given that one's values.
inline const struct
{
    std::string_view name;
    SampleValues values;
} kCheckedValues[] = {
    {"NTPZone", {"GMT+05:45", "GMT-05:45"}},
    {"cbsdInstallationAntennaAzimuth", {"359", "360"}},
    {"cbsdInstallationAntennaBeamwidth", {"360", "361"}},
    {"cbsdInstallationAntennaDowntilt", {"90", "-10"}},
    {"cbsdInstallationAntennaGain", {"128", "129"}},
    {"cbsdInstallationEirpCapability", {"47", "48"}},
    {"cbsdInstallationHeight", {"10000", "10001"}},
    {"cbsdInstallationHorizontalAccuracy", {"50", "51"}},
    {"cbsdInstallationLatitude", {"-89.1234567", "90.5"}},
    {"cbsdInstallationLongitude", {"-180", "1.23456789"}},
    {"cbsdInstallationVerticalAccuracy", {"3", "4"}},
    {"lteDefaultGateway", {"2", "3"}},
    {"lteEnterpin", {"1234", "123"}},
    {"lteEnterpuk", {"12345678,1234", "1234,12345678"}},
    {"lteEventNotifyComd", {"/etc/notify", "notify"}},
    {"lteLockband", {"3;7;", "3;4;"}},
    {"lteLockband5g", {"28;78;", "7;"}},
    {"lteLockearfcn", {"1300;636000;", "60000;"}},
    {"lteLockpci", {"1300,503;", "1300,504;"}},
    {"lteLockpin", {"1,1234", "2,1234"}},
    {"lteModifypin", {"1234,5678", "1234"}},
    {"ltePlmnlock", {"46000", "4600"}},
    {"ltePrefermode", {"5G", "5g"}},
    {"lteSimlock", {"46000;46001", "46000;46000"}},
    {"lteTacLockList", {"1;65535;", "65536;"}},
    {"lteTacLockTimes", {"8", "9"}},
    {"lteTxpowerLimit", {"1,23", "1,24"}},
    {"networkLanSettingEnd", {"192.168.1.190", "192.168.2.190"}},
    {"networkLanSettingExternIp", {"192.168.3.1", "192.168.1.2"}},
    {"networkLanSettingIp", {"192.168.1.2", "192.168.1.0"}},
    {"networkLanSettingStart", {"192.168.1.110", "192.168.2.110"}},
    {"networkVpnSettingServer", {"vpn.example.com", "10.1.2.0"}},
    {"networkWanSettingsGateway", {"192.168.1.254", "192.168.1.1"}},
    {"systemConfigfileFlash", {"/tmp/kobd.log", "/tmp/no such file"}},
    {"systemFwUpgrade", {"fw.bin", "fw;bin"}},
    {"systemGpsAltitude", {"-3.5", "high"}},
    {"systemGpsLatitude", {"52.5", "90.5"}},
    {"systemGpsLongitude", {"179.5", "180.5"}},
    {"systemIperfSettingBandwidth", {"10M", "10G"}},
    {"systemSyslogLocalPull", {"fw.bin", "fw;bin"}},
    {"tr069BindApnIndex", {"1", "4"}},
    {"upgradeFtpPassword", {"secret", ""}},
    {"upgradeFtpUsername", {"user", ""}},
    {"voipDigitmap", {"[2-8]xxx", ""}},
    {"volteDigitMap", {"[2-8]xxx", ""}},
    {"watchdogServerurl", {"2001:db8::1", "2001:db8"}},
    {"validAddressExzerobc", {"10.1.2.3", "10.1.2.0"}},
    {"validFtpUrl", {"ftp://ftp.example.com/fw", "ftp://127.0.0.1/fw"}},
    {"validHttpUrl", {"http://[2001:db8::1]:7547/acs", "http://[2001:db8:::1]/"}},
    {"validIpv4", {"192.0.2.7", "192.0.2.07"}},
    {"validLanMask", {"255.255.255.0", "255.255.0.0"}},
    {"validMask", {"255.255.0.0", "255.0.255.0"}},
    {"validSnmpTrapServer", {"trap.example.com", "trap"}},
    {"validWifiPassword", {"secret12", "two words"}},
};

// On a router with factory settings whose objects before it in the catalogue have their good values
// already.
inline SampleValues SamplesFor(const client::ObjectEntry& object)
{
    for (const auto& checked : kCheckedValues)
        if (checked.name == object.name || (object.validator != nullptr && checked.name == object.validator))
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
