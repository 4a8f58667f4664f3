// Any configuration, read by the shell, to the cellular lists: listings and values as `uci` might
// print them, then operations on the rows that came of it.
//   byte 0: which list, and whether the shell fails; the rest: lines, the first ones the listing up
//   to an empty line, each further one the value of an option
#include <cctype>
#include <cstring>
#include <optional>
#include <string_view>

#include "cellular/cellular_lists.h"
#include "daemon/base/result.h"
#include "dictionary/name_index.h"
#include "dictionary/records.h"
#include "fuzz/recorded.h"
#include "fuzz/target.h"
#include "tables/row_codec.h"
#include "tests/recording_shell.h"

using namespace kobd;
using test::shell;

namespace
{
struct Family
{
    const char* table;
    void (*init)();
};
const Family kFamilies[] = {{"CellularInterfaceTable", cellularinterfaceListInit},
                            {"CellularUSIMTable", cellularusimListInit},
                            {"CellularStatsTable", cellularstatsListInit},
                            {"cellularaccesspointTable", cellularaccesspointListInit}};
constexpr int kWalkMax = 10000;  // far above what one listing holds

// What a shell makes of one command: words outside quotes have no meaning of their own, and inside
// double quotes nothing is run. So that no text of the configuration becomes a command.
void CheckQuoting(std::string_view command)
{
    char quote = 0;
    for (size_t i = 0; i < command.size(); ++i)
    {
        const char c = command[i];
        if (quote == 0 && (c == '\'' || c == '"'))
            quote = c;
        else if (c == quote)
            quote = 0;
        else if (quote != '\'' && c == '\\')
            ++i;
        else if (quote == '"')
            PROMISE(c != '$' && c != '`', "a shell would look into: %s", command.data());
        else if (quote == 0)
            PROMISE(isalnum(static_cast<unsigned char>(c)) != 0 || strchr(" .,_=@[]-|:", c) != nullptr,
                    "a shell would act on %c in: %s", c, command.data());
    }
    PROMISE(quote == 0, "a quote is open in: %s", command.data());
}

// As expr: the text between "." and "=" of the line in double quotes, when it is letters and digits.
std::string SectionName(const std::string& command)
{
    std::string line;
    for (size_t i = strlen("expr \""); i < command.size() && command[i] != '"'; ++i)
        line += command[i] == '\\' ? command[++i] : command[i];
    const size_t start = line.find('.');
    const size_t end = line.find('=');
    const bool named = line.starts_with("tr069_interface.") && end != line.npos && end > start;
    const std::string name = named ? line.substr(start + 1, end - start - 1) : "";
    for (const char c : name)
        if (isalnum(static_cast<unsigned char>(c)) == 0) return "\n";
    return name + "\n";
}

// Answers every command with the listing, or with the values in turn.
void Answer(std::string_view bytes)
{
    const size_t end = bytes.find("\n\n");
    shell.answer = [listing = std::string(bytes.substr(0, end)),
                    values = std::string(end == bytes.npos ? "" : bytes.substr(end + 2)),
                    next = size_t{0}](const std::string& command) mutable -> std::optional<std::string>
    {
        CheckQuoting(command);
        if (command.starts_with("expr ")) return SectionName(command);
        if (command.find(" show ") != command.npos) return listing;
        if (!command.starts_with("uci -q get ")) return std::nullopt;
        if (next >= values.size()) return "";
        const size_t line = values.find('\n', next);
        const std::string value = values.substr(next, line - next);
        next = line == values.npos ? 0 : line + 1;
        return value;
    };
}

void Walk(const TableDef& table)
{
    std::string row(table.row_size, '\0');
    std::string items(2 * kRowItemsMax, '\0');
    int32_t previous = -1;
    int steps = 0;
    for (; steps < kWalkMax && table.ops->next(previous, row.data()) == 0; ++steps)
    {
        const int32_t index = RowIndex(row.data());
        if (index <= previous) break;  // two sections of one index: the caller's to end
        previous = index;
        TlvWriter out(items);
        PROMISE(TableRowToTlv(row.data(), table, out) != 0, "a row of %s cannot be shown", table.name);
        PROMISE(table.ops->get(index, row.data()) == 0, "row %d of %s is there and is not", index, table.name);
    }
    PROMISE(steps < kWalkMax, "%s has no end", table.name);
}
}  // namespace

void kobd::fuzz::Prepare() { NameIndexBuild(); }

std::vector<std::string> kobd::fuzz::Seeds()
{
    const std::string values = "1\n\n1\nUp\nrmnet_data0\n0123456789\nit's\n";
    std::vector<std::string> seeds;
    const char* words[] = {"cellularinterface", "cellularusim", "cellularstats", "cellularaccesspoint"};
    for (size_t family = 0; family < std::size(words); ++family)
        for (const char* section : {"cfg01", "@a[0]", "a-b", ""})
            seeds.push_back(static_cast<char>(family) + std::string("tr069_interface.") + section + "=" +
                            words[family] + "\ntr069_interface.cfg02=" + words[family] + "\n\n" + values);
    seeds.push_back('\4' + seeds[0].substr(1));
    return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0) return -1;
    const Family& family = kFamilies[data[0] % 4];
    const TableDef& table = *NameLookup(family.table).table;
    fuzz::ResetRecorded({});
    shell.fails = (data[0] & 4) != 0;
    Answer({reinterpret_cast<const char*>(data + 1), size - 1});
    family.init();
    Walk(table);

    std::string row(table.row_size, 'x');
    int32_t index = 0;
    if (const int added = table.ops->add(&index); added == 0)
    {
        const int set = table.ops->set(index, row.data());
        PROMISE(set == 0, "the row %d that add told is answered %d", index, set);
        PROMISE(table.ops->get(index, row.data()) == 0 && RowIndex(row.data()) == index, "a row set is not there");
        static_cast<void>(table.ops->del(index));
    }
    else
    {
        PROMISE(added == (shell.fails ? int{kSystemError} : int{kTableFull}), "add answers %d", added);
        if (shell.fails) PROMISE(table.ops->set(1, row.data()) == kSystemError, "a list that is not loaded is set");
    }
    Walk(table);
    return 0;
}
