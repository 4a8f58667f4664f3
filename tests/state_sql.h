// The database of a state folder as a person looks at it with sqlite3, while a daemon may be using it.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <string>

namespace kobd::test
{
// Runs the statements. The rows, one a line, with "|" between their texts.
inline std::string StateSql(const std::string& folder, const std::string& sql)
{
    sqlite3* connection = nullptr;
    std::string lines;
    const auto add = [](void* out, int count, char** texts, char**)
    {
        for (int i = 0; i < count; ++i)
            *static_cast<std::string*>(out) += (i == 0 ? "" : "|") + std::string(texts[i] ? texts[i] : "NULL");
        *static_cast<std::string*>(out) += "\n";
        return 0;
    };
    EXPECT_EQ(sqlite3_open((folder + "/kobd.db").c_str(), &connection), SQLITE_OK);
    sqlite3_busy_timeout(connection, 2000);
    EXPECT_EQ(sqlite3_exec(connection, sql.c_str(), add, &lines, nullptr), SQLITE_OK)
        << sql << ": " << sqlite3_errmsg(connection);
    sqlite3_close(connection);
    return lines;
}
}  // namespace kobd::test
