// Where a uci is found.
#include "host/uci_path.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "tests/namespaces.h"
#include "tests/uci_on_path.h"

namespace kobd::test
{
namespace
{
class UciPath : public testing::Test
{
protected:
    void SetUp() override { SKIP_WITHOUT_NAMESPACES(); }
    void TearDown() override { setenv("PATH", path_.c_str(), 1); }

    // PATH after the host platform has looked for a uci. Beside the test program there is none.
    static std::string Provided(const std::string& path)
    {
        setenv("PATH", path.c_str(), 1);
        host::ProvideUci();
        return getenv("PATH");
    }

    const std::string path_ = getenv("PATH");
};
}  // namespace

TEST_F(UciPath, AUciThatIsThereIsNotHidden)
{
    PutScriptOnPath("exit 0\n");
    EXPECT_EQ(Provided("/usr/bin:" + kUciFolder), "/usr/bin:" + kUciFolder);
    EXPECT_EQ(Provided(kUciFolder), kUciFolder);
    EXPECT_EQ(Provided("/usr/bin:/bin"), "/usr/bin:/bin") << "nothing is added where there is none to add";
}
}  // namespace kobd::test
