// The log: what a line looks like, where it is cut, when the file is rotated.
#include "daemon/base/log.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

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
        ResetPlatform();
        RemoveFiles();
    }
    void TearDown() override
    {
        if (own_namespaces) RemoveFiles();
    }
    static void RemoveFiles()
    {
        for (const std::string& name : {std::string(kLogFile), kRotated, std::string(kDebugSwitchFile)})
            if (unlink(name.c_str()) != 0) rmdir(name.c_str());
    }
    static void FillLog(size_t bytes) { std::ofstream(kLogFile) << std::string(bytes, 'o'); }
    OutputCapture output_;
};

bool Exists(const std::string& path) { return access(path.c_str(), F_OK) == 0; }
}  // namespace

TEST_F(Log, LineOnStandardOutputAndInTheFile)
{
    EXPECT_EQ(kobd_log_print("ReqObjGet", 41, "%s is %d", "answer", 42), 0);
    EXPECT_TRUE(LooksLike(output_.Text(), "\n9999/99/99  99:99:99 ReqObjGet[99]: answer is 99")) << output_.Text();
    EXPECT_TRUE(output_.Text().ends_with("[41]: answer is 42"));
    EXPECT_EQ(FileText(kLogFile), output_.Text());
}

TEST_F(Log, PerCentSignsInArgumentsStay)
{
    kobd_log_print("f", 1, "%s", "100% %s %n %d");
    EXPECT_TRUE(FileText(kLogFile).ends_with("f[1]: 100% %s %n %d"));
    EXPECT_TRUE(output_.Text().ends_with("f[1]: 100% %s %n %d"));
}

TEST_F(Log, LineIsCutAt4096Characters)
{
    const std::string prefix = "\n2000/01/01  00:00:00 f[1]: ";
    const std::string long_text(5000, 'x');
    kobd_log_print("f", 1, "%s", std::string(4096 - prefix.size(), 'x').c_str());
    EXPECT_EQ(FileText(kLogFile).size(), 4096u) << "exactly full";
    unlink(kLogFile);
    kobd_log_print("f", 1, "%s", long_text.c_str());
    EXPECT_EQ(FileText(kLogFile).size(), 4096u) << "message cut";
    unlink(kLogFile);
    EXPECT_EQ(kobd_log_print(long_text.c_str(), 1, "%s", "lost"), 0);
    EXPECT_EQ(FileText(kLogFile).size(), 4096u) << "function name alone fills the line";
}

TEST_F(Log, FormattingErrorIsToldOnStandardOutputOnly)
{
    EXPECT_EQ(kobd_log_print("f", 1, "%ls", L"\x4e2d"), -1) << "no such character in the C locale";
    EXPECT_EQ(output_.Text(), "format error\n");
    EXPECT_FALSE(Exists(kLogFile));
}

TEST_F(Log, FileOfExactlyTheLimitIsNotRotated)
{
    FillLog(5242880);
    kobd_log_print("f", 1, "%s", "grows past the limit");
    EXPECT_FALSE(Exists(kRotated));
    const std::string old = FileText(kLogFile);
    EXPECT_GT(old.size(), 5242880u);

    kobd_log_print("f", 2, "%s", "first of the new file");
    EXPECT_TRUE(FileText(kRotated) == old) << "rotated file holds the old log, whole";
    EXPECT_TRUE(LooksLike(FileText(kLogFile), "\n9999/99/99  99:99:99 f[9]: first of the new file"));
}

TEST_F(Log, RotationDiscardsTheOlderRotatedFile)
{
    std::ofstream(kRotated) << "older";
    FillLog(5242881);
    kobd_log_print("f", 1, "%s", "new");
    EXPECT_EQ(FileText(kRotated).size(), 5242881u);
    EXPECT_LT(FileText(kLogFile).size(), 100u);
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
        if (on)
            std::ofstream(kDebugSwitchFile) << "";
        else
            unlink(kDebugSwitchFile);
        unlink(kLogFile);
        EXPECT_EQ(kobd_log_level(), on ? 1 : 0);
        Ask(ReqUpdate, "");
        EXPECT_EQ(FileText(kLogFile).find("ReqUpdate[") != std::string::npos, on);
        EXPECT_EQ(FileText(kLogFile).ends_with("]: MessageSendReply"), on);
    }
}
}  // namespace kobd::test
