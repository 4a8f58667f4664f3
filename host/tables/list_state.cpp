// Factory rows, and the state file over them.
#include "host/tables/list_state.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <initializer_list>
#include <optional>

#include "host/state/load_report.h"
#include "host/tables/lists.h"
#include "host/tables/row_text.h"
#include "platform/kobd_exports.h"

namespace kobd::host
{
namespace
{
constexpr const char* kFunction = "ListsLoad";
constexpr const char* kLastName = "@last";

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

Settings unknown_tables;  // headings and lines of another build's tables, kept as they are

void LoadFactoryRows()
{
    unknown_tables.clear();
    for (List& list : AllLists())
    {
        list.rows.Clear();
        list.own = list.changed = false;
    }
    for (const FactoryRow& factory : kFactoryRows)
    {
        List* list = FindList(factory.table);
        Row* row = list == nullptr ? nullptr : list->rows.Append(list->rows.LastIndex() + 1);
        for (const std::string line : factory.lines)
        {
            const size_t equals = line.find('=');
            if (row == nullptr || !ReadRowLine(*list->layout, line.substr(0, equals), line.substr(equals + 1), row) ||
                !row->unknown.empty())
                kobd_log_print(kFunction, __LINE__, "factory row of %s: cannot hold %s", factory.table, line.c_str());
        }
    }
}

// "[TABLE]" or "[TABLE INDEX]".
struct Heading
{
    std::string table;
    std::optional<int32_t> index = {};  // none: the table itself
    bool valid = false;
};

Heading ReadHeading(std::string_view text)
{
    text = text.substr(1, text.size() - 2);
    const size_t blank = text.find(' ');
    Heading heading = {std::string(text.substr(0, blank)), {}, true};
    if (blank == std::string_view::npos) return heading;
    const char* end = text.data() + text.size();
    const auto read = std::from_chars(text.data() + blank + 1, end, heading.index.emplace());
    heading.valid = read.ec == std::errc() && read.ptr == end;
    return heading;
}

// Reads the lines of a state file in their order; stops at the first that cannot be.
class Reader
{
public:
    bool Read(const Settings& lines)
    {
        if (!std::all_of(lines.begin(), lines.end(), [this](const auto& line) { return ReadLine(line); })) return false;
        for (const auto& [list, last] : last_) list->rows.RaiseLastIndex(last);
        return true;
    }

    // The line that was read last, without its value, which may be a password.
    const std::string& Where() const { return where_; }

private:
    bool ReadLine(const std::pair<std::string, std::string>& line)
    {
        if (IsHeading(line.first)) return Begin(line);
        where_ = heading_ + " " + line.first;
        if (heading_.empty()) return false;
        if (list_ == nullptr)
            unknown_tables.push_back(line);
        else if (row_ == nullptr)
            return ReadTableLine(line);
        else
            return ReadField(line);
        return true;
    }

    bool Begin(const std::pair<std::string, std::string>& line)
    {
        where_ = heading_ = line.first;
        const Heading heading = ReadHeading(line.first);
        if (!heading.valid) return false;
        list_ = FindList(heading.table);
        if (list_ != nullptr && !list_->kept) list_ = nullptr;
        if (list_ == nullptr) return KeepUnknown(line);
        if (!list_->own) list_->rows.Clear();
        list_->own = true;
        // A row whose index is not above all before was written by a hand that lost count.
        row_ = heading.index ? list_->rows.Append(*heading.index) : nullptr;
        return !heading.index || row_ != nullptr;
    }

    bool KeepUnknown(const std::pair<std::string, std::string>& line)
    {
        kobd_log_print(kFunction, __LINE__, "no rows are kept for %s here, its lines stay in the file",
                       line.first.c_str());
        unknown_tables.push_back(line);
        return true;
    }

    // The highest index stands before the rows, whose own indexes must still be above all before.
    bool ReadTableLine(const std::pair<std::string, std::string>& line)
    {
        const char* end = line.second.data() + line.second.size();
        int32_t last = 0;
        const auto read = std::from_chars(line.second.data(), end, last);
        if (line.first != kLastName || read.ec != std::errc() || read.ptr != end || last < kBeforeFirst) return false;
        last_.emplace_back(list_, last);
        return true;
    }

    bool ReadField(const std::pair<std::string, std::string>& line)
    {
        const size_t before = row_->unknown.size();
        if (!ReadRowLine(*list_->layout, line.first, line.second, row_)) return false;
        if (row_->unknown.size() != before)
            kobd_log_print(kFunction, __LINE__, "%s has no column %s here, its line stays in the file",
                           heading_.c_str(), line.first.c_str());
        return true;
    }

    std::string heading_;
    std::string where_;
    List* list_ = nullptr;
    Row* row_ = nullptr;
    std::vector<std::pair<List*, int32_t>> last_;
};
}  // namespace

void ListsLoad(const std::string& path)
{
    LoadFactoryRows();
    Settings lines;
    LoadResult result = LoadSettings(WhatCounts(path), &lines);
    Reader reader;
    if (result == LoadResult::kLoaded && !reader.Read(lines))
    {
        kobd_log_print(kFunction, __LINE__, "%s: cannot be: %s", path.c_str(), reader.Where().c_str());
        result = LoadResult::kDamaged;
        LoadFactoryRows();
    }
    ReportLoad(kFunction, path, result);
}

bool ListsChanged()
{
    return std::any_of(AllLists().begin(), AllLists().end(),
                       [](const List& list) { return list.kept && list.changed; });
}

Settings ListsState()
{
    Settings lines;
    for (const List& list : AllLists())
    {
        if (!list.kept || !(list.own || list.changed)) continue;
        const std::string table = list.table;
        lines.emplace_back("[" + table + "]", "");
        lines.emplace_back(kLastName, std::to_string(list.rows.LastIndex()));
        for (const Row& row : list.rows.Rows())
        {
            lines.emplace_back("[" + table + " " + std::to_string(IndexOf(row)) + "]", "");
            AppendRowLines(*list.layout, row, &lines);
        }
    }
    lines.insert(lines.end(), unknown_tables.begin(), unknown_tables.end());
    return lines;
}

void ListsKept()
{
    for (List& list : AllLists())
    {
        list.own = list.own || (list.kept && list.changed);
        list.changed = false;
    }
}
}  // namespace kobd::host
