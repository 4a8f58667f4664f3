// Show through its handler.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>

#include "objects/handlers.h"
#include "tests/tables/table_rows.h"

namespace kobd::test
{
namespace
{
using Show = TableRequests;

std::string AllNames()
{
    std::string names;
    for (const ObjDef& object : kObjects) (names += object.name) += '\n';
    for (const TableDef& table : kTables) (names += table.name) += '\n';
    return names;
}

// The name that the next dump file is given first.
std::string NextDumpFile(unsigned seed)
{
    srand(seed);
    const std::string name = "/tmp/kobd-" + std::to_string(rand() % 10000000);
    srand(seed);
    return name;
}

// What show answers: the name of its file.
std::string Shown()
{
    const Answer answer = Ask(ReqShow, "");
    EXPECT_EQ(answer.result, 0);
    return answer.texts.size() == 1 ? answer.texts[0] : "";
}
}  // namespace

TEST_F(Show, ListsEveryNameInCatalogueOrder)
{
    const std::string file = Shown();
    EXPECT_TRUE(file.size() <= 17 && LooksLike(file, "/tmp/kobd-" + std::string(file.size() - 10, '9'))) << file;
    EXPECT_TRUE(FileText(file).starts_with("webLanguage\nwebHttpEnable\n"));
    EXPECT_TRUE(FileText(file) == AllNames());
    struct stat status;
    ASSERT_EQ(stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);

    const std::string again = NextDumpFile(9);
    std::ofstream(again) << std::string(200000, 'o');
    EXPECT_EQ(Shown(), again);
    EXPECT_TRUE(FileText(again) == AllNames()) << "the file of an earlier show is replaced whole";
    unlink(file.c_str());
    unlink(again.c_str());
}

TEST_F(Show, NeverWritesThroughALink)
{
    std::ofstream("/tmp/victim") << "mine";
    for (const auto make_link : {symlink, link})
    {
        const std::string laid = NextDumpFile(7);
        ASSERT_EQ(make_link("/tmp/victim", laid.c_str()), 0);
        const std::string file = Shown();
        EXPECT_NE(file, laid) << "a fresh number is drawn";
        EXPECT_EQ(FileText("/tmp/victim"), "mine");
        unlink(file.c_str());
        unlink(laid.c_str());
    }
}
}  // namespace kobd::test
