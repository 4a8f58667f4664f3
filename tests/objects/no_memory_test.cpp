// Set requests that run out of memory at any of their allocations: answered 7, nothing changed,
// nothing left over, and the next request is served.
#include <gtest/gtest.h>

#include "tests/failing_memory.h"
#include "tests/recording_platform.h"
#include "tests/tables/table_rows.h"
#include "tests/validators/row_verdict.h"

#include "objects/handlers.h"
#include "tables/handlers.h"

namespace kobd::test
{
namespace
{
constexpr int kMallocFailed = 7;

class NoMemory : public TableRequests
{
protected:
    void TearDown() override { memory_left = -1; }

    // Calls the handler with `left` allocations to go; expects 7 and nothing else.
    static void ExpectRefused(int (*handler)(MessageHeader*), const std::string& payload, int left)
    {
        platform.calls.clear();
        memory_left = left;
        const int result = Ask(handler, payload).result;
        memory_left = -1;
        EXPECT_EQ(result, kMallocFailed) << left;
        EXPECT_TRUE(platform.Calls("set ").empty() && platform.Calls("update_config").empty()) << left;
        EXPECT_TRUE(platform.Calls("notify 2").empty() && platform.Calls("notify 3").empty()) << left;
    }
};
}  // namespace

TEST_F(NoMemory, AnObjectSetIsRefusedWhole)
{
    const std::string pairs = Pair("webHttpPort", "81") + Pair("webLanguage", "en") + Pair("webHttpPort", "82");
    for (const auto handler : {ReqObjSet, ReqObjSetSilent})
    {
        for (const int left : {0, 1, 2}) ExpectRefused(handler, pairs, left);
        for (const ObjDef& object : kObjects) ASSERT_EQ(object.staged->text, nullptr) << object.name;
        EXPECT_EQ(Ask(handler, pairs).result, 0);
    }
}

TEST_F(NoMemory, ATableSetIsRefusedWhole)
{
    for (const int32_t index : {1, 2}) PutRow("ledsTable", index, {});
    const std::string changes = Changes(Row("ledsTable", 1) + Column("Alias", "a") + Row("ledsTable", 2));
    for (const auto handler : {ReqTableSet, ReqTableSetSilent})
    {
        for (const int left : {0, 1}) ExpectRefused(handler, changes, left);
        {
            const NoMemoryForRows none;  // the file's bytes and the echo come from the same heap
            ExpectRefused(handler, changes, -1);
        }
        for (const TableDef& table : kTables) ASSERT_EQ(table.pending->first, nullptr) << table.name;
        EXPECT_EQ(Ask(handler, changes).result, 0);
    }
}
}  // namespace kobd::test
