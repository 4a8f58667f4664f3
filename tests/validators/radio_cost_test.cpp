// What the radio, SIM, CBSD and management checks may cost, whatever is sent.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <ctime>
#include <string>
#include <vector>

#include "platform/connection.h"
#include "tests/process_setup.h"
#include "tests/recording_platform.h"
#include "tests/validators/judge.h"
#include "validators/cbsd.h"
#include "validators/management.h"
#include "validators/radio.h"
#include "validators/sim.h"

namespace kobd::test
{
namespace
{
constexpr size_t kLong = 8191;        // bytes, the most that a message could bring
constexpr double kSecondsMax = 0.05;  // of processor time, so that a busy machine does not matter
constexpr long kKilobytesMax = 4096;

const Check kChecks[] = {
    CHECK(validRadioPreferMode),   CHECK(validPreMode),         CHECK(validErrValid),
    CHECK(validEventNotifyComd),   CHECK(validlteBandLock),     CHECK(valid5gBandLock),
    CHECK(validEarfcnlock),        CHECK(validPcilock),         CHECK(validTacLockList),
    CHECK(validTacLockTimes),      CHECK(validLteTxpowerLimit), CHECK(validLockPin),
    CHECK(validEnterPin),          CHECK(ValidVerifyPin),       CHECK(validEnterPuk),
    CHECK(validLtePlmnlock),       CHECK(validLteSimlock),      CHECK(validTr069BindApnIndex),
    CHECK(validIperfUdpBandWidth), CHECK(validCommonStr),       CHECK(validDigitMap),
    CHECK(validCbsdLatitude),      CHECK(validCbsdHeight),
};

// Long texts that begin as accepted ones do.
std::vector<std::string> LongTexts()
{
    std::vector<std::string> texts;
    for (const std::string part :
         {"1", "0", "1;", "3;", "1300;", "1300,1;", "46000;", ";", ",", "1,", ".", "-", "/", "\n"})
    {
        std::string text;
        while (text.size() < kLong) text += part;
        text.resize(kLong);
        texts.push_back(text);
        for (const char end : {';', 'M'})
        {
            text.back() = end;
            texts.push_back(text);
        }
        texts.push_back("-0." + text.substr(3));
    }
    return texts;
}

double ProcessorSeconds()
{
    timespec now = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

long PeakKilobytes()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}
}  // namespace

TEST(RadioCost, LongTextsAreJudgedQuickly)
{
    ResetPlatform();
    platform.nvram = {{"suppband", "1 3 7 20"}, {"suppband5g", "78"}};
    g_stConfigWANIF.count = 4;
    for (const std::string& text : LongTexts())
    {
        const std::vector<char> exact = ExactText(text);
        for (const Check& check : kChecks)
        {
            OutputCapture output;
            [[maybe_unused]] const long memory = PeakKilobytes();
            const double start = ProcessorSeconds();
            check.function(exact.data());
            EXPECT_LT(ProcessorSeconds() - start, kSecondsMax) << check.name << ": " << text.substr(0, 8);
#ifndef __SANITIZE_ADDRESS__  // which keeps what was freed
            EXPECT_LT(PeakKilobytes() - memory, kKilobytesMax) << check.name << ": " << text.substr(0, 8);
#endif
        }
    }
}
}  // namespace kobd::test
