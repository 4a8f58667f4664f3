// Ends a program whose test does not come back.
#include <gtest/gtest.h>
#include <unistd.h>

namespace
{
#if defined(__SANITIZE_ADDRESS__) || !defined(__GLIBC__)
constexpr unsigned kSeconds = 120;  // sanitized, or emulated for the router
#else
constexpr unsigned kSeconds = 20;
#endif

class Deadline : public testing::EmptyTestEventListener
{
    void OnTestStart(const testing::TestInfo&) override { alarm(kSeconds); }
    void OnTestEnd(const testing::TestInfo&) override { alarm(0); }
};

[[maybe_unused]] const bool listens = (testing::UnitTest::GetInstance()->listeners().Append(new Deadline), true);
}  // namespace
