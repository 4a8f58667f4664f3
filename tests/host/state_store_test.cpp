// The state file: what was saved is loaded, whatever is not whole is not believed.
#include "host/state/state_store.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tests/process_setup.h"

namespace kobd::test
{
using namespace host;

namespace
{
class StateStore : public testing::Test
{
protected:
    void SetUp() override
    {
        char folder[] = "/tmp/kobd_state_XXXXXX";
        ASSERT_NE(mkdtemp(folder), nullptr);
        folder_ = folder;
        path_ = folder_ + "/objects";
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    void Write(const std::string& text) { std::ofstream(path_, std::ios::binary) << text; }
    LoadResult Load() { return LoadSettings(path_, &settings_); }
    size_t Files() const { return FilesLike(folder_ + "/"); }

    std::string folder_;
    std::string path_;
    Settings settings_;
};
}  // namespace

TEST_F(StateStore, WhatWasSavedIsLoaded)
{
    const Settings all = {
        {"empty", ""},
        {"newline", "two\nlines\n"},
        {"cr", "a\r\nb\r"},
        {"backslash", "\\n \\\\ \\"},
        {"equals", "a=b=c"},
        {"hash", "# no comment"},
        {"end", "end"},
        {"blanks", "  a  "},
        {"long", std::string(20000, 'x')},
        {"utf8", "\xE4\xB8\xAD\xFF\x01"},
    };
    ASSERT_TRUE(SaveSettings(path_, all));
    EXPECT_EQ(Load(), LoadResult::kLoaded);
    EXPECT_EQ(settings_, all);
    EXPECT_EQ(Files(), 1u) << "no temporary file stays";
    struct stat status
    {
    };
    ASSERT_EQ(stat(path_.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u) << "it holds passwords";

    ASSERT_TRUE(SaveSettings(path_, {}));
    EXPECT_EQ(Load(), LoadResult::kLoaded);
    EXPECT_EQ(settings_, Settings()) << "the file is replaced, not added to";
}

TEST_F(StateStore, FileCutAnywhereIsDamaged)
{
    ASSERT_TRUE(SaveSettings(path_, {{"webHttpPort", "8080"}, {"text", "a\nb\\"}, {"end", "end"}}));
    const std::string whole = FileText(path_);
    for (size_t cut = 0; cut < whole.size(); ++cut)
    {
        Write(whole.substr(0, cut));
        settings_ = {{"left", "over"}};
        EXPECT_EQ(Load(), LoadResult::kDamaged) << "cut at " << cut;
        EXPECT_TRUE(settings_.empty()) << "nothing of it is believed: " << cut;
    }
}

TEST_F(StateStore, WhatIsNoStateFile)
{
    const struct
    {
        LoadResult result;
        const char* why;
        std::vector<std::string> texts;
    } kCases[] = {
        {LoadResult::kLoaded, "written by hand", {"a=1\nend\n", "\n# comment\n\na=1\nend\n", "[a]\nb=1\nend\n"}},
        {LoadResult::kDamaged, "a line without = or a name", {"a=1\nno setting\nend\n", "=1\nend\n"}},
        {LoadResult::kDamaged, "no heading", {"[a]=1\nend\n", "[a\nend\n", "[]\nend\n"}},
        {LoadResult::kDamaged, "an escape nobody writes", {"a=\\x\nend\n", "a=\\\nend\n"}},
        {LoadResult::kDamaged, "zeros, as after a power cut", {std::string(4096, '\0')}},
    };
    for (const auto& c : kCases)
        for (const std::string& text : c.texts)
        {
            Write(text);
            EXPECT_EQ(Load(), c.result) << c.why << ": " << text;
            EXPECT_EQ(settings_.empty(), c.result != LoadResult::kLoaded) << c.why << ": " << text;
        }
}

TEST_F(StateStore, MissingAndUnreadable)
{
    EXPECT_EQ(Load(), LoadResult::kMissing);
    ASSERT_EQ(mkdir(path_.c_str(), 0700), 0);
    EXPECT_EQ(Load(), LoadResult::kUnreadable) << "a folder in its place";
    EXPECT_FALSE(SaveSettings(path_, {{"a", "1"}})) << "cannot be replaced";
    EXPECT_EQ(Files(), 1u) << "the temporary file is gone";
}

TEST_F(StateStore, FailedSaveKeepsTheOldFile)
{
    ASSERT_TRUE(SaveSettings(path_, {{"a", "old"}}));
    ASSERT_EQ(mkdir((path_ + ".new").c_str(), 0700), 0);  // the temporary file cannot be made
    EXPECT_FALSE(SaveSettings(path_, {{"a", "new"}}));
    EXPECT_EQ(Load(), LoadResult::kLoaded);
    EXPECT_EQ(settings_, (Settings{{"a", "old"}}));
}

TEST_F(StateStore, ANoteOfAnEarlierCommitMovesNothingOfALaterOne)
{
    ASSERT_TRUE(SaveSettings(folder_ + "/commit", {{"objects", ""}, {"tables", ""}}));
    ASSERT_TRUE(SaveTogether(folder_, {{"objects", {{"a", "1"}}}}));
    std::ofstream(path_ + ".new") << "a=";  // a save that was killed
    EXPECT_TRUE(FinishSave(folder_));
    EXPECT_EQ(Load(), LoadResult::kLoaded);
    EXPECT_EQ(settings_, (Settings{{"a", "1"}}));
}

TEST_F(StateStore, DamagedFileIsKeptAside)
{
    Write("damaged");
    const std::string aside = KeepAside(path_);
    EXPECT_TRUE(aside.starts_with(path_ + ".damaged-")) << aside;
    EXPECT_EQ(FileText(aside), "damaged");
    EXPECT_EQ(Load(), LoadResult::kMissing);
    EXPECT_EQ(KeepAside(path_), "") << "nothing left to keep";
}

TEST_F(StateStore, SecondDamagedFileOfASecondDoesNotReplaceTheFirst)
{
    Write("first");
    const std::string first = KeepAside(path_);
    Write("second");
    const std::string second = KeepAside(path_);
    EXPECT_NE(first, second);
    EXPECT_EQ(FileText(first), "first");
}

TEST(StateJournal, IsMovedAsideWhenItIsLargeAndBothStayBounded)
{
    setenv("KOBD_STATE_DIR", ("/tmp/kobd_host_state_" + std::to_string(getpid())).c_str(), 0);
    const std::string journal = StateFolder() + "/journal";
    const std::string line(100000, 'x');
    for (int number = 0; number < 35; ++number) Journal(std::to_string(number) + line);
    const auto kept = std::filesystem::file_size(journal) + std::filesystem::file_size(journal + ".1");
    EXPECT_GT(kept, 1u << 20) << "what happened last is there";
    EXPECT_LT(kept, (2u << 20) + line.size());
    EXPECT_EQ(FileText(journal).substr(0, 2), "33") << "a line is whole in one of the two";
    std::filesystem::remove_all(StateFolder());
    std::filesystem::create_directory(StateFolder());
}
}  // namespace kobd::test
