// The objects that the radio, SIM, CBSD and management checks are bound to, through a set request:
// an accepted value reaches its setter as it was sent, a refused one leaves everything as it was.
#include <gtest/gtest.h>

#include <string>

#include "dictionary/name_index.h"
#include "objects/handlers.h"
#include "platform/connection.h"
#include "tests/process_setup.h"
#include "tests/requests.h"

namespace kobd::test
{
namespace
{
const struct
{
    const char* object;
    const char* setter;
    std::string good;
    std::string bad;  // of the right type, so that only the check can refuse it
} kBound[] = {
    {"ltePrefermode", "setPrefermode_lte", "5G", "5g"},
    {"lteEventNotifyComd", "setEventNotifyComd_lte", "/etc/notify", "notify"},
    {"lteLockpin", "setLockpin_lte", "1,1234", "1234"},
    {"lteEnterpin", "setEnterpin_lte", "1234", "123"},
    {"lteModifypin", "setModifypin_lte", "1234,5678", "1234"},
    {"lteEnterpuk", "setEnterpuk_lte", "12345678,1234", "1234,12345678"},
    {"lteLockband", "setLockBand_lte", "3;7;", "78;"},
    {"lteLockband5g", "setLockBand_5g", "78;", "3;"},
    {"lteLockearfcn", "setLockearfcn_lte", "1300;636000;", "1300"},
    {"lteLockpci", "setLockpci_lte", "1300,503;3000,0;", "1300,504;"},
    {"ltePlmnlock", "setPlmnlock_lte", "46000", "46000;"},
    {"lteSimlock", "setSimlock_lte", "46000;460001", "46000;46000"},
    {"lteTacLockList", "setTacLockList_lte", "1;65535;", "65536;"},
    {"lteTacLockTimes", "setTacLockTimes_lte", "8", "9"},
    {"lteTxpowerLimit", "setTxpowerLimit_lte", "1,23", "1,24"},
    {"tr069BindApnIndex", "tr069BindApnIndexSet", "1", "2"},
    {"systemIperfSettingBandwidth", "diagnosisIperfSettingsBandwidthSet", "10M", "10G"},
    {"systemSyslogLocalPull", "syslogLocalPullSet", "messages", "a;b"},
    {"systemFwUpgrade", "systemFwUpgradeSet", "fw.bin", "fw.bin;x"},
    {"voipDigitmap", "voipDigitmapSet", "xx", ""},
    {"volteDigitMap", "volteDigitMapSet", "xx|x", std::string(1025, 'x')},
    {"cbsdInstallationLatitude", "setInstallationLatitude_cbsd", "-89.1234567", "90.5"},
    {"cbsdInstallationLongitude", "setInstallationLongitude_cbsd", "179.9999999", "-180.5"},
    {"cbsdInstallationHeight", "setInstallationHeight_cbsd", "10000", "10001"},
    {"cbsdInstallationHorizontalAccuracy", "setInstallationHorizontalAccuracy_cbsd", "50", "51"},
    {"cbsdInstallationVerticalAccuracy", "setInstallationVerticalAccuracy_cbsd", "3", "4"},
    {"cbsdInstallationAntennaAzimuth", "setInstallationAntennaAzimuth_cbsd", "359", "360"},
    {"cbsdInstallationAntennaDowntilt", "setInstallationAntennaDowntilt_cbsd", "90", "91"},
    {"cbsdInstallationAntennaGain", "setInstallationAntennaGain_cbsd", "128", "129"},
    {"cbsdInstallationEirpCapability", "setInstallationEirpCapability_cbsd", "47", "48"},
    {"cbsdInstallationAntennaBeamwidth", "setInstallationAntennaBeamwidth_cbsd", "360", "361"},
};

void ResetRouter()
{
    ResetPlatform();
    platform.nvram = {{"suppband", "1 3 7"}, {"suppband5g", "78"}};
    g_stConfigWANIF.count = 1;
}
}  // namespace

TEST(RadioObjects, AcceptedValuesReachTheirSetterRefusedOnesDoNot)
{
    NameIndexBuild();
    for (const auto& c : kBound)
    {
        OutputCapture output;
        ResetRouter();
        EXPECT_EQ(Ask(ReqObjSet, Pair(c.object, c.good)).result, 0) << c.object;
        EXPECT_EQ(platform.Calls("set "), std::vector<std::string>{"set " + std::string(c.setter) + " " + c.good});

        ResetRouter();
        EXPECT_EQ(Ask(ReqObjSet, Pair("webHttpPort", "8080") + Pair(c.object, c.bad)).result, 2) << c.object;
        EXPECT_TRUE(platform.Calls("set ").empty()) << c.object;
        EXPECT_TRUE(platform.Calls("update_config").empty()) << c.object;
        EXPECT_NE(output.Text().find(std::string(c.object) + "(" + c.bad + ") verify error"), std::string::npos)
            << c.object << " is named in the log";
    }
}
}  // namespace kobd::test
