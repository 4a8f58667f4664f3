// Update and show through their handlers.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>

#include "dictionary/name_index.h"
#include "objects/handlers.h"
#include "tests/namespaces.h"
#include "tests/process_setup.h"
#include "tests/requests.h"

namespace kobd::test
{
namespace
{
std::string AllNames()
{
    std::string names;
    for (const ObjDef& object : kObjects) (names += object.name) += '\n';
    for (const TableDef& table : kTables) (names += table.name) += '\n';
    return names;
}

std::string NextDumpFile(unsigned seed)
{
    srand(seed);
    const std::string name = "/tmp/kobd-" + std::to_string(rand() % 10000000);
    srand(seed);
    return name;
}

// Lowers a limit of the process while it lives.
class Limit
{
public:
    Limit(decltype(RLIMIT_FSIZE) resource, rlim_t limit) : resource_(resource)
    {
        getrlimit(resource, &before_);
        const rlimit lowered = {limit, before_.rlim_max};
        setrlimit(resource, &lowered);
    }
    ~Limit() { setrlimit(resource_, &before_); }

private:
    decltype(RLIMIT_FSIZE) resource_;
    rlimit before_{};
};
}  // namespace

TEST(Update, AlwaysSucceeds)
{
    for (const char* payload : {"", "\x01", "any payload whatever"})
        for (const int code : {0, 14})
        {
            ResetPlatform();
            platform.failures["update_config"] = code;
            EXPECT_EQ(Ask(ReqUpdate, payload).payload, 8u);
            EXPECT_EQ(platform.calls, (std::vector<std::string>{"update_config", "reply 0"})) << payload;
        }
}

TEST(Show, ListsEveryNameInCatalogueOrder)
{
    ResetPlatform();
    const Answer answer = Ask(ReqShow, "");
    ASSERT_EQ(answer.result, 0);
    ASSERT_EQ(answer.texts.size(), 1u);
    const std::string file = answer.texts[0];
    EXPECT_TRUE(file.size() <= 17 && LooksLike(file, "/tmp/kobd-" + std::string(file.size() - 10, '9'))) << file;
    const std::string text = FileText(file);
    EXPECT_TRUE(text.starts_with("webLanguage\nwebHttpEnable\n"));
    EXPECT_TRUE(text == AllNames());
    struct stat status
    {
    };
    ASSERT_EQ(stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
    unlink(file.c_str());
}

TEST(Show, NeverWritesThroughALink)
{
    SKIP_WITHOUT_NAMESPACES();
    ResetPlatform();
    std::ofstream("/tmp/victim") << "mine";
    for (const bool hard : {false, true})
    {
        const std::string laid = NextDumpFile(7);
        ASSERT_EQ(hard ? link("/tmp/victim", laid.c_str()) : symlink("/tmp/victim", laid.c_str()), 0);
        const Answer answer = Ask(ReqShow, "");
        EXPECT_EQ(answer.result, 0) << "a fresh number is drawn";
        ASSERT_EQ(answer.texts.size(), 1u);
        EXPECT_NE(answer.texts[0], laid);
        EXPECT_EQ(FileText("/tmp/victim"), "mine");
        unlink(answer.texts[0].c_str());
        unlink(laid.c_str());
    }
}

TEST(Show, FileOfAnEarlierShowIsReplacedWhole)
{
    SKIP_WITHOUT_NAMESPACES();
    ResetPlatform();
    const std::string file = NextDumpFile(9);
    std::ofstream(file) << std::string(200000, 'o');
    EXPECT_EQ(Ask(ReqShow, "").texts, std::vector<std::string>{file});
    EXPECT_TRUE(FileText(file) == AllNames());
    unlink(file.c_str());
}

TEST(Show, FileThatCannotBeMadeOrFilledIsNotLeftBehind)
{
    SKIP_WITHOUT_NAMESPACES();
    ResetPlatform();
    signal(SIGXFSZ, SIG_IGN);
    {
        const Limit size(RLIMIT_FSIZE, 5000);
        const Answer answer = Ask(ReqShow, "");
        EXPECT_EQ(answer.result, 4) << "the disk is full half-way";
        EXPECT_EQ(answer.payload, 8u) << "the file's name is not given";
    }
    {
        const Limit files(RLIMIT_NOFILE, 0);
        EXPECT_EQ(Ask(ReqShow, "").result, 4) << "no file can be opened";
    }
    EXPECT_EQ(FilesLike("/tmp/kobd-"), 0u);
}
}  // namespace kobd::test
