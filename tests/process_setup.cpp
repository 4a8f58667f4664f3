// The entry point of the unit and host test programs.
#include "tests/process_setup.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace kobd::test
{
bool own_namespaces = false;

namespace
{
// Log, switch file and dump files have fixed names in /tmp, queues have fixed keys.
bool EnterOwnNamespaces()
{
    return unshare(CLONE_NEWIPC | CLONE_NEWNS) == 0 &&
           mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("none", "/tmp", "tmpfs", 0, nullptr) == 0;
}
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

bool LooksLike(const std::string& text, const std::string& pattern)
{
    return std::equal(text.begin(), text.end(), pattern.begin(), pattern.end(),
                      [](char c, char p) { return p == '9' ? c >= '0' && c <= '9' : c == p; });
}
}  // namespace kobd::test

int main(int count, char** arguments)
{
    testing::InitGoogleTest(&count, arguments);
    if (!testing::GTEST_FLAG(list_tests))
    {
        kobd::test::own_namespaces = kobd::test::EnterOwnNamespaces();
        if (!kobd::test::own_namespaces) perror("no namespaces of our own here, tests that need them are skipped");
    }
    return RUN_ALL_TESTS();
}
