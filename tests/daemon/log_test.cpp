// The log: what a line looks like, where it is cut, when the file is rotated.
#include "daemon/base/log.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "objects/handlers.h"
#include "tests/namespaces.h"
#include "tests/process_setup.h"
#include "tests/requests.h"

namespace kobd::test
{
namespace
{
const std::string kRotated = std::string(kLogFile) + ".1";

class Log : public testing::Test
{
protected:
    void SetUp() override
    {
        SKIP_WITHOUT_NAMESPACES();
        TearDown();
    }
    void TearDown() override
    {
        if (!own_namespaces) return;
        for (const std::string& name : {std::string(kLogFile), kRotated, std::string(kDebugSwitchFile)})
            std::filesystem::remove(name);
    }
    OutputCapture output_;
};
}  // namespace

TEST_F(Log, LineOnStandardOutputAndInTheFile)
{
    EXPECT_EQ(kobd_log_print("ReqObjGet", 41, "%s is %d", "100% %s %n %d", 42), 0);
    const std::string line = output_.Text();
    const std::string text = "ReqObjGet[41]: 100% %s %n %d is 42";
    EXPECT_TRUE(line.ends_with(text)) << line;
    EXPECT_TRUE(LooksLike(line.substr(0, line.size() - text.size()), "\n9999/99/99  99:99:99 ")) << line;
    EXPECT_EQ(FileText(kLogFile), line);
    for (const char* format : {"%ls", static_cast<const char*>(nullptr)})
        EXPECT_EQ(kobd_log_print("f", 1, format, L"\x4e2d"), -1) << "no such character in the C locale, no format";
    EXPECT_EQ(output_.Text(), line + "format error\nformat error\n");
    EXPECT_EQ(FileText(kLogFile), line) << "a formatting error is told on standard output only";
}

TEST_F(Log, LineIsCutAt4096Characters)
{
    const size_t prefix = std::string("\n2000/01/01  00:00:00 f[1]: ").size();
    const std::string long_text(5000, 'x');
    const std::pair<std::string, std::string> kCases[] = {
        {"f", std::string(4096 - prefix, 'x')},  // exactly full
        {"f", long_text},                        // message cut
        {long_text, "lost"},                     // function name alone fills the line
    };
    for (const auto& [function, message] : kCases)
    {
        EXPECT_EQ(kobd_log_print(function.c_str(), 1, "%s", message.c_str()), 0);
        EXPECT_EQ(FileText(kLogFile).size(), 4096u);
        unlink(kLogFile);
    }
}

TEST_F(Log, FileAboveTheLimitIsRotated)
{
    std::ofstream(kRotated) << "older";
    std::ofstream(kLogFile) << std::string(5242880, 'o');
    kobd_log_print("f", 1, "%s", "a file of exactly the limit grows past it");
    EXPECT_EQ(FileText(kRotated), "older");
    const std::string old = FileText(kLogFile);
    EXPECT_GT(old.size(), 5242880u);

    kobd_log_print("f", 2, "%s", "first of the new file");
    EXPECT_TRUE(FileText(kRotated) == old) << "rotated file holds the old log, whole";
    EXPECT_TRUE(LooksLike(FileText(kLogFile), "\n9999/99/99  99:99:99 f[9]: first of the new file"));
}

TEST_F(Log, FileThatCannotBeOpenedLosesOnlyTheFilesLine)
{
    ASSERT_EQ(mkdir(kLogFile, 0700), 0);
    EXPECT_EQ(kobd_log_print("f", 1, "%s", "printed"), 0);
    EXPECT_TRUE(output_.Text().ends_with("printed"));
}

TEST_F(Log, SwitchFileTurnsDebugLinesOnAndOff)
{
    for (const bool on : {false, true, false})
    {
        on ? std::ofstream(kDebugSwitchFile).close() : static_cast<void>(unlink(kDebugSwitchFile));
        unlink(kLogFile);
        EXPECT_EQ(kobd_log_level(), on ? 1 : 0);
        Ask(ReqUpdate, "");
        EXPECT_EQ(FileText(kLogFile).find("ReqUpdate[") != std::string::npos, on);
        EXPECT_EQ(FileText(kLogFile).ends_with("]: MessageSendReply"), on);
    }
}
}  // namespace kobd::test
