// Rows and tables: the row or operation that is missing, or what the check of a row said in the log.
#include <algorithm>

#include "client/library/explain.h"
#include "daemon/base/messages.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
std::string TextOf(const NameAndValue& pair) { return pair.name + "=" + pair.value; }

std::string TextsOf(const ChangedRows& rows)
{
    Words texts;
    for (const RowWithValues& row : rows) texts.push_back(row.index == kNoIndex ? row.table : row.Text());
    return Joined(texts);
}

void NoteIndex(void* context, const char*, int32_t index, const char* const*, const char* const*, size_t)
{
    static_cast<std::vector<int32_t>*>(context)->push_back(index);
}

// Nothing where all rows are there.
std::optional<Explained> OfMissingRow(kobd_client* client, const ChangedRows& rows)
{
    for (const RowWithValues& row : rows)
    {
        std::vector<int32_t> present;
        if (kobd_rows(client, row.table.c_str(), NoteIndex, &present) != kSuccess) break;
        if (std::ranges::find(present, row.index) != present.end()) continue;
        Explained why = Simple(NoRow(row.table, row.index, present));
        why.table = row.table;
        why.index = row.index;
        return why;
    }
    return std::nullopt;
}

Explained OfMissingOperation(Operation operation, const ChangedRows& rows)
{
    for (const RowWithValues& row : rows)
        for (const Operation needed : {operation == kSetParentPath ? kAdd : operation, operation})
            if (const TableEntry* table = FindTable(row.table); table != nullptr && !table->Has(needed))
            {
                const bool listed = needed == kGet && table->Has(kNext);
                Explained why = Simple(NoOperation(*table, needed) +
                                       (listed ? "; kobctl table dump " + row.table + " shows its rows" : ""));
                why.table = row.table;
                return why;
            }
    return Simple(TextsOf(rows));
}

Operation OperationOf(uint16_t id)
{
    switch (id)
    {
        case kReqTableAdd: return kAdd;
        case kREQSubTableAdd: return kSetParentPath;
        case kReqTableDel: return kDel;
        case kReqTableGet: return kGet;
        case kReqTableDump: return kNext;
        default: return kSet;
    }
}

std::string ChangeText(const RowWithValues& row)
{
    std::string text = row.Text();
    for (const NameAndValue& one : row.values) text += " " + TextOf(one);
    return text;
}

bool IsCheckOf(const RowWithValues& row, const std::string& check)
{
    const TableEntry* table = FindTable(row.table);
    return table != nullptr && check == table->validator;
}

// The last line that a check of these rows wrote; nullptr when none did.
const LogLine* CheckLine(const ChangedRows& rows, const std::vector<LogLine>& log)
{
    const auto found = std::find_if(
        log.rbegin(), log.rend(),
        [&](const LogLine& line)
        { return std::ranges::any_of(rows, [&](const RowWithValues& row) { return IsCheckOf(row, line.function); }); });
    return found == log.rend() ? nullptr : &*found;
}

// The rows as the daemon writes them: tables in the dictionary's order, each row once. Without those of the lists that
// the daemon keeps itself, which the router does not count.
ChangedRows InOrderOfWriting(const ChangedRows& changes)
{
    ChangedRows rows;
    for (const TableEntry& table : kTableRows)
        for (const RowWithValues& row : changes)
            if (!table.daemon_list && row.table == table.name &&
                std::ranges::none_of(
                    rows, [&](const RowWithValues& one) { return one.table == row.table && one.index == row.index; }))
                rows.push_back(row);
    return rows;
}

// Whether the row is one of the list that this table has.
bool IsOf(const RowWithValues& row, const std::string& list)
{
    const TableEntry* table = FindTable(row.table);
    return table != nullptr && table->list_of == list;
}

// What the imitated router tells of rows that no check refused; nothing where it tells nothing.
std::optional<Explained> OfFailure(kobd_client* client, const ChangedRows& changes)
{
    const auto told = AskWhatFailed(client);
    if (!told) return std::nullopt;
    const ChangedRows rows = InOrderOfWriting(changes);
    Words texts;
    for (const RowWithValues& row : rows) texts.push_back(row.Text());
    const size_t failed = told->changed;
    if (failed >= rows.size() || rows[failed].index != told->index || !IsOf(rows[failed], told->name))
        return std::nullopt;
    Explained why = Simple("the router could not set " + texts[failed]);
    why.table = rows[failed].table;
    why.index = rows[failed].index;
    if (rows.size() > 1) why.text = HowFar(texts, failed) + why.text;
    return why;
}

// The check of a row writes its reason to the log. Any of the check's rows may be the wrong one.
Explained OfCheck(const ChangedRows& changes, const std::vector<LogLine>& log)
{
    const LogLine* said = CheckLine(changes, log);
    std::vector<RowWithValues> rows = changes;
    if (said != nullptr) std::erase_if(rows, [&](const RowWithValues& row) { return !IsCheckOf(row, said->function); });
    Words texts;
    for (const RowWithValues& row : rows) texts.push_back(ChangeText(row));
    Explained why = {.text = (rows.size() > 1 ? "one of these rows: " : "") + Joined(texts)};
    const TableEntry* table = FindTable(rows.front().table);
    const std::string check = said != nullptr ? said->function : table != nullptr ? table->validator : "";
    why.reason = said != nullptr ? said->message + " (" + check + ")" : "the daemon refuses " + why.text;
    if (said != nullptr) why.text += ": " + why.reason;
    if (const std::string right = RuleOf(check); !right.empty() && (said != nullptr || changes.size() == 1))
    {
        why.right = right;
        why.text += "; it takes " + right;
    }
    if (rows.size() != 1) return why;
    why.table = rows[0].table;
    why.index = rows[0].index;
    return why;
}
}  // namespace

Explained OfRows(kobd_client* client, int code, uint16_t id, const ChangedRows& rows)
{
    const RowWithValues& first = rows.front();
    Explained why = Simple(TextsOf(rows));
    const TableEntry* table = FindTable(first.table);
    if (code == kIndexNotFound)
        if (const auto missing = OfMissingRow(client, rows)) return *missing;
    if (code == kMethodUnavailable) return OfMissingOperation(OperationOf(id), rows);
    if (code == kNotFound && table == nullptr) why = Simple(NoSuchName("table", first.table));
    if (code == kTableFull && table != nullptr)
        why = Simple(first.table + " holds " + std::to_string(table->max_rows) + " rows, its maximum");
    if (code == kBufferLimit)
        why = Simple(TextsOf(rows) + " does not fit one reply, kobctl table dump " + first.table + " shows it");
    if (rows.size() != 1) return why;
    why.table = first.table;
    why.index = first.index;
    return why;
}

Explained OfChanges(kobd_client* client, int code, const ChangedRows& changes)
{
    const std::vector<LogLine> log = client->log.Lines();
    const bool all_can_be_set = std::ranges::all_of(changes,
                                                    [](const RowWithValues& row)
                                                    {
                                                        const TableEntry* table = FindTable(row.table);
                                                        return table != nullptr && table->Has(kSet);
                                                    });
    if (!all_can_be_set) return OfRows(client, code, kReqTableSet, changes);
    // The router tells of the last request alone, so it is asked before the rows are read.
    const auto failed = CheckLine(changes, log) == nullptr ? OfFailure(client, changes) : std::nullopt;
    const auto missing = code == kIndexNotFound ? OfMissingRow(client, changes) : std::nullopt;
    return missing ? *missing : failed ? *failed : OfCheck(changes, log);
}
}  // namespace kobd::client
