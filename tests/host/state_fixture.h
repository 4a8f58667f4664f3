// What the tests of the state have in common: a list, an object and a store whose values are easy to tell.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include "dictionary/catalogue/accessors.h"
#include "host/state/database.h"
#include "platform/nvram.h"
#include "tests/host/host_state.h"
#include "tests/namespaces.h"
#include "tests/process_setup.h"
#include "tests/state_sql.h"

namespace kobd::test
{
using namespace host;

inline const TableOps& UrlOps() { return *Table("FwUrlFilterTable").ops; }

inline void SetUrl(int32_t index, const std::string& url)
{
    std::vector<char> row(Table("FwUrlFilterTable").row_size);
    std::copy(url.begin(), url.end(), row.begin() + kRowIndexBytes);
    EXPECT_EQ(UrlOps().set(index, row.data()), 0);
}

inline int32_t AddUrl(const std::string& url)
{
    int32_t index = 0;
    EXPECT_EQ(UrlOps().add(&index), 0);
    SetUrl(index, url);
    return index;
}

// "1=a 4=b": indexes and addresses of the filter.
inline std::string Urls()
{
    std::string urls;
    for (const Row& row : FindList("FwUrlFilterTable")->rows.Rows())
        urls += std::to_string(IndexOf(row)) + "=" + (row.block.data() + kRowIndexBytes) + " ";
    return urls;
}

inline std::string HttpPort()
{
    char value[kValueBuffer] = "";
    EXPECT_EQ(WebHttpPortGet(value), 0);
    return value;
}

inline std::string Nvram(const char* key)
{
    char value[4096] = "left over";
    return nv_get(key, value, sizeof value) == 0 ? value : "unknown:" + std::string(value);
}

class StateTest : public HostState
{
protected:
    void SetUp() override
    {
        SKIP_WITHOUT_NAMESPACES();  // else the folder would stay behind
        HostState::SetUp();
    }

    static std::string Sql(const std::string& sql) { return StateSql(StateFolder(), sql); }
    static size_t Asides()
    {
        const std::string aside = Path("kobd.db.damaged-");
        size_t count = 0;
        for (const auto& file : std::filesystem::directory_iterator(StateFolder()))
            count += file.path().string().starts_with(aside) && !file.path().string().ends_with("-wal");
        return count;
    }

    // Writes the log back and closes the database, so that a test can damage the one file.
    static std::string WholeFile()
    {
        Sql("PRAGMA wal_checkpoint(TRUNCATE)");
        State()->Close();
        for (const char* behind : {"-wal", "-shm"}) unlink(Path(std::string("kobd.db") + behind).c_str());
        return FileText(Path("kobd.db"));
    }
    static void Write(const std::string& text) { std::ofstream(Path("kobd.db"), std::ios::binary) << text; }
};
}  // namespace kobd::test
