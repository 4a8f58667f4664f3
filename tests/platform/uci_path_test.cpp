// Where a uci is found, and what the cellular lists make of a machine without one.
#include "platform/host/uci_path.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "tests/cellular/family_functions.h"
#include "tests/namespaces.h"
#include "tests/process_setup.h"
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

TEST_F(UciPath, WithoutAnyTheListsLiveInMemory)
{
    Provided("/usr/bin:/bin");
    for (const FamilyFunctions& family : kFamilies)
    {
        SCOPED_TRACE(family.word);
        const OutputCapture output;
        TestRow row(family);
        row.SetText(1, "kept");
        family.init();
        EXPECT_EQ(family.next(-1, row.Bytes()), 13);
        EXPECT_EQ(family.set(1, row.Bytes()), 0);
        EXPECT_EQ(family.get(1, row.Bytes()), 0);
        EXPECT_EQ(row.Text(1), "kept");
        EXPECT_NE(output.Text().find("nothing is written"), std::string::npos);
        EXPECT_EQ(family.del(1), 0);
    }
}
}  // namespace kobd::test
