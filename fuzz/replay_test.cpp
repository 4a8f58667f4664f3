// Replays the seeds of one target, a few thousand variations of them and every input that once
// broke it, in every build; no fuzzer is needed for that.
#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "fuzz/mutated.h"
#include "fuzz/target.h"
#include "tests/namespaces.h"
#include "tests/process_setup.h"

namespace kobd::fuzz
{
namespace
{
constexpr int kVariations = 20;  // of each seed
constexpr size_t kInputMax = 65536;

// The input in a block of exactly its size, so that the sanitizers see every byte read beside it.
void RunInput(const std::string& input)
{
    const std::vector<uint8_t> exact(input.begin(), input.end());
    LLVMFuzzerTestOneInput(exact.data(), exact.size());
}

std::vector<std::string> Regressions()
{
    std::vector<std::string> inputs;
    const std::filesystem::path folder = test::SourceFolder() + kRegressions;
    if (std::filesystem::exists(folder))
        for (const auto& file : std::filesystem::directory_iterator(folder))
            inputs.push_back(test::FileText(file.path()));
    return inputs;
}
}  // namespace

TEST(Replay, NoInputBreaksAPromise)
{
    SKIP_WITHOUT_NAMESPACES();
    const test::OutputCapture output;
    Prepare();
    std::mt19937 random(1);
    std::vector<std::string> inputs = Seeds();
    ASSERT_FALSE(inputs.empty());
    const std::vector<std::string> regressions = Regressions();
    inputs.insert(inputs.end(), regressions.begin(), regressions.end());
    for (const std::string& input : inputs)
    {
        RunInput(input);
        for (int variation = 0; variation < kVariations && !input.empty(); ++variation)
            RunInput(Mutated(input, random).substr(0, kInputMax));
    }
    RunInput("");
}
}  // namespace kobd::fuzz
