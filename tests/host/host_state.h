// The host platform's state in a folder that the test program has for itself, and its rows and values as texts.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "dictionary/catalogue/accessors.h"
#include "dictionary/records.h"
#include "dictionary/row_field.h"
#include "host/commit.h"
#include "host/state/database.h"
#include "host/state/folder.h"
#include "host/tables/lists.h"
#include "host/tables/row_cells.h"
#include "platform/kob_platform.h"
#include "platform/nvram.h"
#include "tests/process_setup.h"
#include "tests/state_sql.h"

namespace kobd::test
{
using namespace host;

// Begins with the factory's state and an empty folder.
class HostState : public testing::Test
{
protected:
    void SetUp() override
    {
        UseStateFolder("/tmp/kobd_host_state_" + std::to_string(getpid()));
        LoadState();
    }
    void TearDown() override
    {
        Empty();
        std::filesystem::remove(StateFolder());
    }

    static void Empty()
    {
        State()->Close();
        std::filesystem::remove_all(StateFolder());
        UseStateFolder(StateFolder());
    }
    // As the daemon after a request, and at its next start.
    static void CommitAndLoad()
    {
        EXPECT_EQ(update_config(), 0);
        LoadState();
    }
    static std::string Path(const std::string& name) { return StateFolder() + "/" + name; }
    static std::string Sql(const std::string& sql) { return StateSql(StateFolder(), sql); }
};

using Block = std::vector<char>;
using Texts = std::vector<std::string>;

inline const TableDef& Table(std::string_view name)
{
    for (const TableDef& table : kTables)
        if (table.name == name) return table;
    abort();
}

inline const ColumnDef& Column(std::string_view table, std::string_view name)
{
    const ColumnDef* column = FindColumn(*FindList(table)->layout, name);
    if (column == nullptr) abort();
    return *column;
}

inline std::string Field(std::string_view table, const Block& row, std::string_view column)
{
    char buffer[kFieldTextMax];
    return std::string(FieldText(row.data(), Column(table, column), buffer));
}

// The rows as the table requests see them.
inline std::vector<Block> Rows(std::string_view table)
{
    std::vector<Block> rows;
    Block row(Table(table).row_size);
    for (int32_t previous = -1; Table(table).ops->next(previous, row.data()) == 0; previous = RowIndex(row.data()))
        rows.push_back(row);
    return rows;
}

// One column of all rows.
inline Texts Fields(std::string_view table, std::string_view column)
{
    Texts fields;
    for (const Block& row : Rows(table)) fields.push_back(Field(table, row, column));
    return fields;
}

inline std::map<std::string, std::vector<Block>> EverySingleRow()
{
    std::map<std::string, std::vector<Block>> rows;
    for (const List& list : AllLists()) rows[list.table] = Rows(list.table);
    return rows;
}

inline Block GetRow(std::string_view table, int32_t index)
{
    Block row(Table(table).row_size);
    EXPECT_EQ(Table(table).ops->get(index, row.data()), 0) << table << " " << index;
    return row;
}

inline int SetFields(std::string_view table, int32_t index, const std::map<std::string, std::string>& fields)
{
    Block row = GetRow(table, index);
    for (const auto& [column, text] : fields)
        EXPECT_EQ(TableFieldFromString(row.data(), Column(table, column), text.c_str()), 0) << column << " " << text;
    return Table(table).ops->set(index, row.data());
}

inline int32_t AddUrl(const std::string& url)
{
    int32_t index = 0;
    EXPECT_EQ(Table("FwUrlFilterTable").ops->add(&index), 0);
    EXPECT_EQ(SetFields("FwUrlFilterTable", index, {{"URL", url}}), 0);
    return index;
}
inline int DeleteUrl(int32_t index) { return Table("FwUrlFilterTable").ops->del(index); }
inline Texts Urls() { return Fields("FwUrlFilterTable", "URL"); }

inline std::string Object(std::string_view name)
{
    char value[kValueBuffer] = "";
    for (const ObjDef& object : kObjects)
        if (object.name == name) return object.get(value) == 0 ? value : "no value";
    return "no object";
}

inline std::string Nvram(const std::string& key)
{
    char value[4096] = "left over";
    return nv_get(key.c_str(), value, sizeof value) == 0 ? value : "unknown:" + std::string(value);
}
}  // namespace kobd::test
