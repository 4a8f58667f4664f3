// Names to records, and the dictionary's life on the bus.
#include "dictionary/name_index.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "daemon/handler_table.h"
#include "daemon/lifecycle.h"
#include "tests/process_setup.h"
#include "tests/requests.h"

namespace kobd::test
{
TEST(NameLookup, EveryNameFindsItsFirstRecord)
{
    NameIndexBuild();
    std::set<std::string_view> seen;
    for (const ObjDef& object : kObjects)
        EXPECT_EQ(NameLookup(object.name).object == &object, seen.insert(object.name).second) << object.name;
    EXPECT_EQ(seen.size(), kObjects.size() - 3) << "three names stand twice";
    for (const TableDef& table : kTables)
    {
        EXPECT_EQ(NameLookup(table.name).table, &table) << table.name;
        EXPECT_EQ(NameLookup(table.name).object, nullptr) << "one record a name: " << table.name;
    }
    for (const std::string& name :
         std::initializer_list<std::string>{"", " ", "webhttpport", "WEBHTTPPORT", "webHttpPor", "webHttpPort ",
                                            " webHttpPort", "flowtable", std::string(8000, 'w')})
    {
        EXPECT_EQ(NameLookup(name).object, nullptr) << name;
        EXPECT_EQ(NameLookup(name).table, nullptr) << name;
    }
}

TEST(Dictionary, LivesFromJoiningToLeavingTheBus)
{
    ResetPlatform();
    EXPECT_EQ(DictionaryInit(kHandlers.data()), 0);
    EXPECT_NE(NameLookup("webHttpPort").object, nullptr);
    EXPECT_EQ(DictionaryExit(), 0);
    EXPECT_EQ(NameLookup("webHttpPort").object, nullptr);
    EXPECT_EQ(platform.calls, (std::vector<std::string>{"register", "join 5a510001", "leave"}));
}
}  // namespace kobd::test
