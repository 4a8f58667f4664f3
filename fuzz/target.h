// What a fuzz target consists of. Each source file of this folder that is named after a target
// defines both functions below and LLVMFuzzerTestOneInput; they are built three times: with
// libFuzzer, with the program that writes the seeds, and with the test that replays seeds and
// regression inputs in every preset.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace kobd::fuzz
{
// Once, before the first input; in namespaces of this program's own.
void Prepare();

// Inputs made from real messages, files and rows: where the search begins.
std::vector<std::string> Seeds();

// The folder of the inputs that once broke the target, below that of the sources.
extern const char* const kRegressions;
}  // namespace kobd::fuzz

// A promise that no input may break. The line names it and the input is kept by the fuzzer.
#define PROMISE(holds, ...)                                                \
    do                                                                     \
    {                                                                      \
        if (!(holds)) kobd::fuzz::Broken(__FILE__, __LINE__, __VA_ARGS__); \
    } while (false)

namespace kobd::fuzz
{
[[noreturn]] void Broken(const char* file, int line, const char* format, ...) __attribute__((format(printf, 3, 4)));
}  // namespace kobd::fuzz
