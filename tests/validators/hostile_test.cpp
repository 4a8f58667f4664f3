// Texts made to be expensive: no check may spend much on any text that fits a message.
#include <gtest/gtest.h>

#include <ctime>
#include <fstream>
#include <random>

#include "dictionary/name_index.h"
#include "platform/message.h"
#include "tests/namespaces.h"
#include "tests/process_setup.h"
#include "tests/recording_platform.h"
#include "tests/validators/exported_functions.h"

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

double ProcessorMs() { return 1e3 * static_cast<double>(clock()) / CLOCKS_PER_SEC; }

// A field of this process's memory use, in KiB.
long Memory(const std::string& field)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(field + ":")) return std::stol(line.substr(field.size() + 1));
    return -1;
}

// Nearly a match for one pattern or another, over and over: as long as the working copies take, and
// as long as a message takes. Every mixture keeps another set of repeats alive.
Words HostileTexts()
{
    std::mt19937 random(1);
    Words texts;
    for (const size_t length : {size_t{255}, size_t{1023}, kPayloadMax - 64})
        for (const std::string alphabet : {"a",  "1",  ".",  ":",  "/", "-", ";",      " ",  "a.",    "a-", "1.",
                                           "a:", "1;", "a!", "aA", "a", "0", "aaaaA-", "a/", "a.A-!", "(",  "\xFF"})
        {
            std::string mixed;
            while (mixed.size() < length) mixed += alphabet[random() % alphabet.size()];
            texts.push_back(mixed);
            for (const char* scheme : {"http://", "http://[", "http://a.bc/"})
                texts.push_back((scheme + mixed).substr(0, length));
            for (const char* end : {".com", ";"}) texts.push_back(mixed.replace(length - strlen(end), length, end));
        }
    return texts;
}
}  // namespace

TEST(HostileTexts, CostLittle)
{
    SKIP_WITHOUT_NAMESPACES();
    NameIndexBuild();
    const Words texts = HostileTexts();
    for (const auto& [name, function] : ExportedFunctions())
    {
        if (function.check == nullptr) continue;
        const OutputCapture output;
        ResetPlatform();
        const long before = Memory("VmRSS");
        std::ofstream("/proc/self/clear_refs") << "5";  // forgets the peak
        for (const std::string& text : texts)
        {
            const double start = ProcessorMs();
            function.check(text.c_str());
            EXPECT_LT(ProcessorMs() - start, kMsMax) << name << " on " << text.size() << " of " << text.substr(0, 60);
        }
        EXPECT_LT(kAsInTheDaemon ? Memory("VmHWM") - before : 0, kMemoryMax) << name;
    }
}
}  // namespace kobd::test
