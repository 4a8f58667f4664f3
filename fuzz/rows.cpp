// Any row to the row validators and the row codec.
//   byte 0: which table; then the bytes of the row, what is missing zero; behind it stored rows of
//   the same list
#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>

#include "daemon/base/tlv.h"
#include "dictionary/name_index.h"
#include "dictionary/records.h"
#include "fuzz/recorded.h"
#include "fuzz/target.h"
#include "tables/row_codec.h"
#include "tests/recording_platform.h"

using namespace kobd;

namespace
{
constexpr size_t kStoredMax = 3;

// The next row of the input. Texts held outside a row are the platform's: no pointer of ours.
std::string TakeRow(const TableDef& table, int32_t index, std::string_view* bytes)
{
    std::string row(bytes->substr(0, table.row_size));
    bytes->remove_prefix(row.size());
    row.resize(table.row_size);
    memcpy(row.data(), &index, sizeof index);
    for (const ColumnDef& column : std::span(table.columns, table.column_count))
        if (column.type == VT_STRING_PTR) memset(row.data() + column.offset, 0, FieldWidth(column));
    return row;
}

// Every row can be shown, and what is shown is whole.
void Encode(const TableDef& table, const char* row)
{
    static char room[2 * kRowItemsMax];
    TlvWriter out(room);
    const size_t size = TableRowToTlv(row, table, out);
    PROMISE(size != 0 && PayloadIsSound({room, size}), "a row of %s became broken items", table.name);
}

const char* const kTexts[] = {"192.168.0.20", "80", "a.example", "00:1a:2b:3c:4d:5e", "1-5", "TCP", "10.0.0.0/8"};
}  // namespace

void kobd::fuzz::Prepare() { NameIndexBuild(); }

std::vector<std::string> kobd::fuzz::Seeds()
{
    std::vector<std::string> seeds;
    for (size_t number = 0; number < kTables.size(); ++number)
        for (size_t text = 0; text < std::size(kTexts); ++text)
        {
            const TableDef& table = kTables[number];
            if (table.ops->validate == nullptr) continue;
            std::string row(table.row_size, '\0');
            for (const ColumnDef& column : std::span(table.columns, table.column_count))
                static_cast<void>(TableFieldFromString(row.data(), column, kTexts[text++ % std::size(kTexts)]));
            seeds.push_back(static_cast<char>(number) + row);
            seeds.push_back(static_cast<char>(number) + row + row);
        }
    return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0) return -1;
    const TableDef& table = kTables[data[0] % kTables.size()];
    std::string_view bytes(reinterpret_cast<const char*>(data + 1), size - 1);
    fuzz::ResetRecorded({});
    const std::string row = TakeRow(table, 1, &bytes);
    for (int32_t index = 2; !bytes.empty() && index < int32_t{2 + kStoredMax}; ++index)
        test::platform.rows[table.name][index] = TakeRow(table, index, &bytes);

    // At an odd address and ended by the block, so that nothing beside the row goes unseen.
    const std::unique_ptr<char[]> block(new char[1 + row.size()]);
    char* judged = block.get() + 1;
    memcpy(judged, row.data(), row.size());
    Encode(table, judged);
    if (table.ops->validate == nullptr) return 0;
    const int code = table.ops->validate(judged);
    PROMISE(code == 0 || code == 2, "%s: code %d", table.name, code);
    PROMISE(memcmp(judged, row.data(), sizeof(int32_t)) == 0, "%s: another index", table.name);
    PROMISE(test::platform.Calls("set ").empty(), "%s: a check set a row", table.name);
    Encode(table, judged);
    return 0;
}
