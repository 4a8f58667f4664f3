// The host platform's state in a folder that the test program has for itself.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <span>
#include <string>

#include "dictionary/records.h"
#include "dictionary/row_field.h"
#include "host/commit.h"
#include "host/state/folder.h"
#include "host/tables/lists.h"

namespace kobd::test
{
// Begins with the factory's state and an empty folder.
class HostState : public testing::Test
{
protected:
    void SetUp() override
    {
        setenv("KOBD_STATE_DIR", ("/tmp/kobd_host_state_" + std::to_string(getpid())).c_str(), 0);
        Clear();
        host::LoadState();
    }
    void TearDown() override { Clear(); }

    static void Clear()
    {
        for (const auto& file : std::filesystem::directory_iterator(host::StateFolder()))
            std::filesystem::remove_all(file.path());
    }
    static std::string Path(const std::string& name) { return host::StateFolder() + "/" + name; }
    static bool Exists(const std::string& name) { return std::filesystem::exists(Path(name)); }
};

inline const TableDef& Table(std::string_view name)
{
    for (const TableDef& table : kTables)
        if (table.name == name) return table;
    abort();
}
// The text of the row's column of this name.
inline std::string ColumnText(std::span<const ColumnDef> columns, const char* row, std::string_view name)
{
    static char buffer[kFieldTextMax];
    for (const ColumnDef& column : columns)
        if (column.name == name) return std::string(FieldText(row, column, buffer));
    ADD_FAILURE() << "no column " << name;
    return {};
}
}  // namespace kobd::test
