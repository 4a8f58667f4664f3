// Texts made to be expensive: no check may spend much on any text that fits a message.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <random>

#include "dictionary/name_index.h"
#include "dictionary/records.h"
#include "platform/message.h"
#include "tests/namespaces.h"
#include "tests/process_setup.h"
#include "tests/validators/judge.h"
#include "validators/address.h"
#include "validators/address_arithmetic.h"
#include "validators/band_lock.h"
#include "validators/domain.h"
#include "validators/lan.h"
#include "validators/management.h"
#include "validators/port.h"
#include "validators/radio.h"
#include "validators/regex.h"
#include "validators/service.h"
#include "validators/texts.h"

namespace kobd::test
{
namespace
{
#if defined(__SANITIZE_ADDRESS__) || !defined(__GLIBC__)
constexpr bool kAsInTheDaemon = false;  // sanitized, or emulated for the router
#else
constexpr bool kAsInTheDaemon = true;
#endif
constexpr double kMsMax = kAsInTheDaemon ? 50 : 1000;  // processor time of one call
constexpr long kMemoryMax = 4 * 1024;                  // KiB more than before

double ProcessorMs()
{
    timespec now;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

// A field of this process's memory use, in KiB.
long Memory(const std::string& field)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(field + ":")) return std::stol(line.substr(field.size() + 1));
    return -1;
}

void ForgetPeakMemory() { std::ofstream("/proc/self/clear_refs") << "5"; }

std::string Repeat(const std::string& part, size_t length)
{
    std::string text;
    while (text.size() < length) text += part;
    text.resize(length);
    return text;
}

std::string Random(const std::string& alphabet, size_t length, unsigned seed)
{
    std::mt19937 next(seed);
    std::string text;
    while (text.size() < length) text += alphabet[next() % alphabet.size()];
    return text;
}

// Nearly a match for one pattern or another, over and over: as long as the working copies take, and
// as long as a message takes.
std::vector<std::string> HostileTexts()
{
    std::vector<std::string> texts;
    for (const size_t length : {size_t{255}, size_t{1023}, kPayloadMax - 64})
    {
        for (const char* part :
             {"a",  "1",    "!",  ".",  ":",  "/",  "-", ";",  " ",    "0",  "a.", "a-", "a!", "ab.cd-",
              "1.", "http", "a:", "::", "a;", "1;", "A", "%s", "\xFF", "\n", "(",  "[",  "a1"})
        {
            const std::string text = Repeat(part, length);
            texts.push_back(text);
            for (const char* scheme : {"http://", "http://[", "http://a.bc/", "http://1.2.3.4/"})
                texts.push_back((scheme + text).substr(0, length));
            texts.push_back(text.substr(0, length - 4) + ".com");
            texts.push_back(text.substr(0, length - 1) + ";");
        }
        // Every mixture keeps another set of repeats alive.
        for (const char* alphabet : {"aA-", "aaaaaA-", "a-", "a.A-", "aaaaaaaaaaaaaaaaaaaa.-", "a/", "a:"})
        {
            texts.push_back(Random(alphabet, length, 1));
            texts.push_back(("http://[" + texts.back()).substr(0, length));
        }
    }
    return texts;
}

int Regex16(const char* text)
{
    static char slots[kCaptureSlots][kCaptureBytes];
    return regexMatchFunction(text, "^(([0-9a-z]+)([0-9]*)([a-z]?)[.:;]?)*$", slots);
}

int RegexPlace(const char* text)
{
    int place[2];
    return checkRegex(text, "^[a-z\\.&_=]+(:[0-9]{1,4}/)?([a-z\\.&_=]+/?)*$", &place[0], &place[1]);
}

int Bands(const char* text) { return validBandLock(text, text) + validBandLock(text, "1 2 3"); }

// The checks of all objects, each once, and what no object names.
std::vector<Check> AllChecks()
{
    std::vector<Check> checks = {
        CHECK(validIpv6),       CHECK(validIp),       CHECK(validIpInput), CHECK(validDomain),
        CHECK(checkDomain),     CHECK(validMac),      CHECK(validIpRange), CHECK(validPortRange),
        CHECK(validPortFormat), CHECK(validProtocol), CHECK(validDmzIp),   CHECK(validDdnsServiceProvider),
        CHECK(isBroadcastIP),   CHECK(Regex16),       CHECK(RegexPlace),   CHECK(Bands)};
    for (const ObjDef& object : kObjects)
    {
        const auto same = [&](const Check& check) { return check.function == object.check.validator; };
        if (object.check.validator != nullptr && std::none_of(checks.begin(), checks.end(), same))
            checks.push_back({object.name, object.check.validator});
    }
    return checks;
}
}  // namespace

TEST(HostileTexts, CostLittle)
{
    SKIP_WITHOUT_NAMESPACES();
    NameIndexBuild();
    const std::vector<std::string> texts = HostileTexts();
    for (const Check& check : AllChecks())
    {
        const long before = Memory("VmRSS");
        ForgetPeakMemory();
        double slowest = 0;
        size_t slowest_text = 0;
        {
            OutputCapture output;
            for (size_t i = 0; i < texts.size(); ++i)
            {
                const double start = ProcessorMs();
                check.function(texts[i].c_str());
                const double spent = ProcessorMs() - start;
                if (spent > slowest) slowest_text = i, slowest = spent;
            }
        }
        const long memory = Memory("VmHWM") - before;
        RecordProperty(check.name, std::to_string(slowest) + " ms, " + std::to_string(memory) + " KiB");
        EXPECT_LT(slowest, kMsMax) << check.name << " on " << texts[slowest_text].substr(0, 60);
        EXPECT_LT(kAsInTheDaemon ? memory : 0, kMemoryMax) << check.name;
    }
}
}  // namespace kobd::test
