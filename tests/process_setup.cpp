// The entry point of the unit and host test programs.
#include "tests/process_setup.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/namespaces.h"

namespace kobd::test
{
namespace
{
#if defined(__arm__)  // emulated
constexpr unsigned kSlower = 10;
#elif defined(__SANITIZE_ADDRESS__)
constexpr unsigned kSlower = 5;
#else
constexpr unsigned kSlower = 1;
#endif

// Ends the program when a test hangs.
class Deadline : public testing::EmptyTestEventListener
{
    void OnTestStart(const testing::TestInfo&) override { alarm(20 * kSlower); }
    void OnTestEnd(const testing::TestInfo&) override { alarm(0); }
};
}  // namespace

OutputCapture::OutputCapture() : file_(memfd_create("output", MFD_CLOEXEC)), before_(dup(STDOUT_FILENO))
{
    fflush(stdout);
    if (file_ < 0 || dup2(file_, STDOUT_FILENO) < 0) abort();
}

OutputCapture::~OutputCapture()
{
    fflush(stdout);
    dup2(before_, STDOUT_FILENO);
    close(before_);
    // What GoogleTest said about a failure was captured too.
    if (testing::Test::HasFailure()) fputs(Text().c_str(), stdout);
    close(file_);
}

std::string OutputCapture::Text() const
{
    std::string text(static_cast<size_t>(lseek(file_, 0, SEEK_END)), '\0');
    const ssize_t got = pread(file_, text.data(), text.size(), 0);
    return got < 0 ? std::string() : text.substr(0, static_cast<size_t>(got));
}

std::string FileText(const std::string& path)
{
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

size_t FilesLike(const std::string& path)
{
    size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(path).parent_path()))
        count += entry.path().string().starts_with(path);
    return count;
}

bool LooksLike(const std::string& text, const std::string& pattern)
{
    return std::equal(text.begin(), text.end(), pattern.begin(), pattern.end(),
                      [](char c, char p) { return p == '9' ? c >= '0' && c <= '9' : c == p; });
}
}  // namespace kobd::test

int main(int count, char** arguments)
{
    testing::InitGoogleTest(&count, arguments);
    testing::UnitTest::GetInstance()->listeners().Append(new kobd::test::Deadline);
    for (const int number : {SIGHUP, SIGINT})
        signal(number, SIG_DFL);   // nohup and shells in the background ignore them
    setenv("KOBD_STILL", "1", 0);  // values are compared; a test about those that move takes it away
    if (!testing::GTEST_FLAG(list_tests)) kobd::test::EnterOwnNamespaces();
    return RUN_ALL_TESTS();
}
