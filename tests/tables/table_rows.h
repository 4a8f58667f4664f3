// Rows in the recording platform and change files for tests of the table requests.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "dictionary/records.h"
#include "tests/namespaces.h"
#include "tests/process_setup.h"
#include "tests/requests.h"

namespace kobd::test
{
using Lines = std::vector<std::string>;
using Fields = std::vector<std::pair<std::string, std::string>>;  // column name, text

const TableDef& Table(std::string_view name);

// The bytes of a row, fields that are not given zero; and the text of a field in such bytes.
std::string RowBytes(const TableDef& table, int32_t index, const Fields& fields);
std::string FieldOf(const std::string& row, const ColumnDef& column);

// Puts a row into the recording platform, fields that are not given zero.
void PutRow(std::string_view table, int32_t index, const Fields& fields);

// The text of a field of a row there; "no row" or "no column" otherwise.
std::string Field(std::string_view table, int32_t index, std::string_view column);

// The items that answer for a row: name, index, columns in order.
std::string ItemsOf(const TableDef& table, const std::string& row);

// Writes the bytes to a file and names it as a set request does.
inline constexpr char kChangeFile[] = "/tmp/changes";
std::string Changes(std::string_view bytes);

// Calls of the platform apart from reads.
Lines CallsButReads();

// Whether no row of any table is pending, and no value of any object staged.
bool NothingLeft();

class TableRequests : public testing::Test
{
protected:
    void SetUp() override;
    OutputCapture output_;
};
}  // namespace kobd::test
