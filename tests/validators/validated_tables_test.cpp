// Row checks where they run: before a table set writes anything.
#include "tables/handlers.h"
#include "tests/recording_platform.h"
#include "tests/tables/table_rows.h"

namespace kobd::test
{
namespace
{
using ValidatedTables = TableRequests;

int Set(const std::string& changes) { return Ask(ReqTableSet, Changes(changes)).result; }

std::string Items(const char* table, int32_t index, const Fields& fields)
{
    std::string items = Row(table, index);
    for (const auto& [name, value] : fields) items += Column(name, value);
    return items;
}

const Fields kForward = {{"Protocol", "tcp"}, {"DestIPAddress", "192.168.1.20"}, {"DestPort", "80"}};
}  // namespace

TEST_F(ValidatedTables, WhatTheCheckLeavesIsStored)
{
    PutRow("FwPortForwardTable", 1, {});
    Fields forward = kForward;
    forward.insert(forward.end(), {{"MinPort", "100"}, {"MaxPort", "110"}});
    EXPECT_EQ(Set(Items("PortRedirectTable", 1, forward)), 0);
    EXPECT_EQ(Field("FwPortForwardTable", 1, "SrcPort"), "100-110");

    PutRow("FwAccessRestrictionTable", 4, {});
    const Fields access = {{"Name", " kids "},
                           {"Host", " 00:11:22:33:44:aa\t"},
                           {"Weekdays", "  Sat,Sun"},
                           {"TimeStart", "\t8:30"},
                           {"TimeStop", "20:00 "}};
    EXPECT_EQ(Set(Items("FwAccessRestrictionTable", 4, access)), 0);
    EXPECT_EQ(Field("FwAccessRestrictionTable", 4, "Name"), "kids");
    EXPECT_EQ(Field("FwAccessRestrictionTable", 4, "Host"), "00:11:22:33:44:AA");
    EXPECT_EQ(Field("FwAccessRestrictionTable", 4, "Weekdays"), "Sat,Sun");
    EXPECT_EQ(Field("FwAccessRestrictionTable", 4, "TimeStart"), "8:30");
    EXPECT_EQ(Field("FwAccessRestrictionTable", 4, "TimeStop"), "20:00");
}

TEST_F(ValidatedTables, RowsOfOneRequestAreComparedWithTheStoredOnesOnly)
{
    Fields stored = kForward;
    stored.emplace_back("SrcPort", "80");
    PutRow("FwPortForwardTable", 1, stored);
    PutRow("FwPortForwardTable", 2, {});
    PutRow("FwPortForwardTable", 3, {});
    const auto rule = [](int32_t index, const char* port)
    {
        Fields fields = kForward;
        fields.emplace_back("SrcPort", port);
        return Items("FwPortForwardTable", index, fields);
    };
    EXPECT_EQ(Set(rule(2, "90") + rule(3, "80")), 2) << "the second row claims a stored port";
    EXPECT_EQ(Field("FwPortForwardTable", 2, "SrcPort"), "") << "so the first is not written either";
    EXPECT_EQ(Set(rule(2, "90") + rule(3, "90")), 0) << "each is judged before the other is stored";
    EXPECT_EQ(Set(rule(2, "90")), 2) << "after that they collide";
    EXPECT_EQ(Set(rule(1, "80")), 0) << "a stored rule with unchanged values";
}
}  // namespace kobd::test
