// Factory rows, and the database's over them.
#include "host/tables/list_state.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <map>
#include <set>

#include "dictionary/catalogue/secrets.h"
#include "host/tables/lists.h"
#include "host/tables/row_cells.h"
#include "platform/kobd_exports.h"

namespace kobd::host
{
namespace
{
constexpr const char* kFunction = "ListsLoad";

struct FactoryRow
{
    const char* table;
    std::initializer_list<const char*> lines;  // column=value
};

#define ROW(table, ...) {table, {__VA_ARGS__}},
const FactoryRow kFactoryRows[] = {
#include "host/factory/factory_rows.def"
};
#undef ROW

void LoadFactoryRow(const FactoryRow& factory, const List& list, RowList* rows)
{
    Row* row = rows->Append(rows->LastIndex() + 1);
    for (const char* line : factory.lines)
    {
        const char* equals = strchr(line, '=');
        if (equals == nullptr || ReadCellInto(*list.layout, {line, equals}, equals + 1, row) != ReadCell::kRead)
            kobd_log_print(kFunction, __LINE__, "factory row of %s: cannot hold %s", factory.table, line);
    }
}

RowList FactoryRows(const List& list)
{
    RowList rows = list.rows;
    rows.Clear();
    for (const FactoryRow& factory : kFactoryRows)
        if (list.table == std::string_view(factory.table)) LoadFactoryRow(factory, list, &rows);
    return rows;
}

void LoadFactoryRows()
{
    for (List& list : AllLists())
    {
        list.rows.Clear();
        list.own = false;
        list.changed.clear();
        list.simulated = {};
        list.moved = {};
    }
    List* list = nullptr;
    for (const FactoryRow& factory : kFactoryRows)
    {
        if (list == nullptr || strcmp(list->table, factory.table) != 0) list = FindList(factory.table);
        if (list != nullptr) LoadFactoryRow(factory, *list, &list->rows);
    }
}

// Reads the lists that the database has, each with its cells in the order of row and field.
class Reader
{
public:
    explicit Reader(Database* database) : database_(database) {}

    void Read()
    {
        for (Query query = database_->Ask("SELECT name, last FROM lists"); query.Next();)
        {
            list_ = Take(std::string(query.Text(0)));
            if (list_ == nullptr) continue;
            ReadRows();
            list_->rows.RaiseLastIndex(static_cast<int32_t>(query.Number(1)));
        }
    }

private:
    // The list is the database's from here on; nullptr when this build keeps none of that name.
    static List* Take(const std::string& name)
    {
        List* list = FindList(name);
        if (list == nullptr || !list->kept)
        {
            kobd_log_print(kFunction, __LINE__, "no rows are kept for %s here, they stay in the database",
                           name.c_str());
            return nullptr;
        }
        list->rows.Clear();
        list->own = true;
        return list;
    }

    void ReadRows()
    {
        for (Query query = database_->Ask(
                 "SELECT number, field, value FROM cells WHERE list = ? ORDER BY number, field", list_->table);
             query.Next();)
        {
            const bool begins = query.Text(1) == kOtherBytes;
            if (begins) BeginRow(query.Number(0), query.Text(2));
            if (!begins && row_ != nullptr && query.Number(0) == IndexOf(*row_))
                ReadField(query.Text(1), query.Text(2));
        }
        EndRow();
    }

    void BeginRow(int64_t number, std::string_view other_bytes)
    {
        EndRow();
        other_bytes_ = other_bytes;
        row_ = number < INT32_MAX ? list_->rows.Append(static_cast<int32_t>(number)) : nullptr;
        if (row_ == nullptr)
            kobd_log_print(kFunction, __LINE__, "%s: row %lld cannot be", list_->table, static_cast<long long>(number));
    }

    void ReadField(std::string_view field, std::string_view value)
    {
        value_ = value;
        const ReadCell read = ReadCellInto(*list_->layout, field, value_, row_);
        if (read == ReadCell::kRead) return;
        const auto [told, is_new] = told_.emplace(list_, field);
        if (is_new)  // once, not for every row
            kobd_log_print(
                kFunction, __LINE__, "%s row %d: %s %s, it stays in the database", list_->table, IndexOf(*row_),
                read == ReadCell::kUnknown ? "there is no column" : "cannot hold the text of", told->second.c_str());
    }

    void EndRow()
    {
        if (row_ != nullptr && !AddOtherBytes(other_bytes_, row_))
            kobd_log_print(kFunction, __LINE__, "%s row %d: has more bytes than a row here", list_->table,
                           IndexOf(*row_));
        row_ = nullptr;
    }

    Database* database_;
    List* list_ = nullptr;  // whose rows are being read
    Row* row_ = nullptr;    // whose cells are being read
    std::string other_bytes_;
    std::string value_;  // of the cell that is being read: its memory serves all of them
    std::set<std::pair<const List*, std::string>> told_ = {};  // columns that could not be read
};

// Writes the rows of one list.
class Writer
{
public:
    // history: nullptr for rows that are no change
    Writer(const List& list, Database* database, History* history) : list_(list), database_(database), history_(history)
    {
    }

    // Makes the cells of this row what `row` says; nullptr: there is none.
    void Write(int32_t index, const Row* row)
    {
        std::map<std::string, std::string, std::less<>> old;
        for (Query query = database_->Ask("SELECT field, value FROM cells WHERE list = ? AND number = ?", list_.table,
                                          int64_t{index});
             query.Next();)
            old.emplace(query.Text(0), query.Text(1));
        Cells now;
        if (row != nullptr) now = CellsOf(*list_.layout, *row);
        for (const auto& [field, value] : now)
        {
            const auto found = old.find(field);
            const bool is_new = found == old.end();
            if (is_new || found->second != value)
            {
                database_->Run("INSERT OR REPLACE INTO cells VALUES(?, ?, ?, ?)", list_.table, int64_t{index}, field,
                               value);
                Note(index, field, is_new ? nullptr : &found->second, &value);
            }
            if (!is_new) old.erase(found);
        }
        for (const auto& [field, value] : old) Remove(index, field, value, row != nullptr);
    }

private:
    // A field of another version's columns stays as long as its row does.
    void Remove(int32_t index, const std::string& field, const std::string& value, bool row_stays)
    {
        Row none = {std::vector<char>(list_.rows.RowSize())};
        if (row_stays && ReadCellInto(*list_.layout, field, value, &none) == ReadCell::kUnknown) return;
        database_->Run("DELETE FROM cells WHERE list = ? AND number = ? AND field = ?", list_.table, int64_t{index},
                       field);
        Note(index, field, &value, nullptr);
    }

    void Note(int32_t index, const std::string& field, const std::string* old, const std::string* now)
    {
        const bool other_bytes = field == kOtherBytes;
        if (history_ == nullptr || (other_bytes && old != nullptr && now != nullptr)) return;
        Change change = {.kind = "row", .name = list_.table, .number = index, .field = field};
        if (old != nullptr) change.old = other_bytes ? std::string_view() : std::string_view(*old);
        if (now != nullptr) change.now = other_bytes ? std::string_view() : std::string_view(*now);
        change.secret = IsSecretColumn(field);
        history_->Add(change);
    }

    const List& list_;
    Database* database_;
    History* history_;
};

// A list that was the factory's so far gets its rows into the database first, so that what changed can be told.
void WriteFactoryRows(const List& list, Database* database)
{
    const RowList rows = FactoryRows(list);
    database->Run("DELETE FROM cells WHERE list = ?", list.table);
    for (const Row& row : rows.Rows()) Writer(list, database, nullptr).Write(IndexOf(row), &row);
}

void WriteList(List& list, Database* database, History* history)
{
    if (!list.own) WriteFactoryRows(list, database);
    for (const int32_t index : list.changed) Writer(list, database, history).Write(index, RealRow(list, index));
    database->Run("INSERT OR REPLACE INTO lists VALUES(?, ?)", list.table, int64_t{RealLastIndex(list)});
}
}  // namespace

void ListsLoad(Database* database)
{
    LoadFactoryRows();
    if (database != nullptr) Reader(database).Read();
}

bool ListsChanged()
{
    return std::ranges::any_of(AllLists(), [](const List& list) { return list.kept && !list.changed.empty(); });
}

void ListsChangedNames(std::vector<std::string>* names)
{
    for (const List& list : AllLists())
        if (list.kept && !list.changed.empty()) names->emplace_back(list.table);
}

void ListsWrite(Database* database, History* history)
{
    for (List& list : AllLists())
        if (list.kept && !list.changed.empty()) WriteList(list, database, history);
}

void ListsWritten()
{
    for (List& list : AllLists())
    {
        if (list.changed.empty()) continue;
        list.own = list.own || list.kept;
        list.changed.clear();
    }
}

void ListsAllChanged()
{
    for (List& list : AllLists())
    {
        if (!list.own) continue;
        list.own = false;
        const RowList factory = FactoryRows(list);
        for (const Row& row : factory.Rows()) list.changed.insert(IndexOf(row));
        for (const Row& row : list.rows.Rows()) list.changed.insert(IndexOf(row));
        for (const auto& [index, row] : list.simulated.rows) list.changed.insert(index);
    }
}
}  // namespace kobd::host
