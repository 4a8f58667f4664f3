// Loading a cellular list from the configuration.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "cellular/mirror.h"
#include "cellular/shell_command.h"
#include "daemon/base/log.h"
#include "platform/shell.h"
#include "platform/text.h"

namespace kobd
{
namespace
{
constexpr size_t kOutputBytes = 4096;  // of a runner's output, with the zero byte
constexpr size_t kIndexBytes = 9 + 1;  // digits of an index in the configuration
constexpr const char* kIndexOption = ".index";

// The sections of the family, one to a line, and one more line end.
void ReadListing(const CellularFamily& family, char (&listing)[kOutputBytes + 1])
{
    const ShellCommand command = ShellCommand("uci -X show ").Add(kEntryConfig).Add(" | grep ").Add(family.word);
    shell_cmd_return_file_all(command.Text(), listing, kOutputBytes);
    const size_t length = strlen(listing);
    // Anonymous sections fit some ninety times. A line cut in the middle names no section.
    if (length == kOutputBytes - 1)
        LOG_ALWAYS(family.load_name, "more sections than fit %zu bytes, the last ones are not loaded", length);
    memcpy(listing + length, "\n", 2);
}

// Takes the section name out of the first line of the listing. Only that line is handed over: the
// whole listing does not fit a command together with the rest. Empty when there is no such name.
void ReadSectionName(const CellularFamily& family, const char* listing, char* name)
{
    const std::string_view line(listing, strcspn(listing, "\n"));
    const ShellCommand command = ShellCommand("expr \"")
                                     .AddDoubleQuoted(line)
                                     .Add("\" : \"")
                                     .Add(kEntryConfig)
                                     .Add(".\\([0-9a-zA-Z]*\\)=")
                                     .Add(family.word)
                                     .Add("\"");
    if (command.Text() == nullptr) return;  // no section has a line that long
    shell_cmd_return_str(command.Text(), name, kCellularText);
    if (!IsSectionName(name)) *name = 0;
}

// Reads a field's value, whole: it may have lines of its own. uci ends what it prints by one line
// end that is not the value's.
void ReadField(const CellularField& field, std::string_view section, char* slot)
{
    const ShellCommand command =
        ShellCommand("uci -q get ").Add(kValueConfig).Add(".").Add(section).Add(".").Add(field.name);
    char output[kOutputBytes];
    shell_cmd_return_file_all(command.Text(), output, sizeof output);
    std::string_view value = output;
    if (value.ends_with('\n')) value.remove_suffix(1);
    SetTextAt(slot, value);
}

// Compared without sign: a negative number in the configuration counts as a very large index.
void RaiseHighest(CellularList& list, int32_t index)
{
    if (static_cast<uint32_t>(index) > static_cast<uint32_t>(list.highest)) list.highest = index;
}

// Reads the entry's index; one that has none gets the next free one.
void ReadIndex(CellularList& list, std::string_view section, char* row)
{
    const ShellCommand command = ShellCommand("uci -q get ").Add(kEntryConfig).Add(".").Add(section).Add(kIndexOption);
    char text[kIndexBytes];
    shell_cmd_return_str(command.Text(), text, sizeof text);
    const int32_t next = static_cast<int32_t>(static_cast<uint32_t>(list.highest) + 1);
    const int32_t index = *text != 0 ? atoi(text) : next;
    if (*text != 0)
        RaiseHighest(list, index);
    else
        list.highest = index;
    SetRowIndex(row, index);
}

// Loads the entry of the listing's first line. False when the load ends here.
bool LoadEntry(CellularList& list, const char* listing)
{
    const CellularFamily& family = list.family;
    CellularEntry* entry = NewEntry(family);
    if (entry == nullptr)
    {
        LOG_ALWAYS(family.load_name, "can not malloc buffer");
        return false;
    }
    char* section = entry->Row() + SectionNameOffset(family);
    ReadSectionName(family, listing, section);
    if (*section == 0)
    {
        ReleaseEntry(entry);
        return false;
    }
    for (const CellularField& field : family.fields) ReadField(field, section, entry->Row() + field.offset);
    ReadIndex(list, section, entry->Row());
    AppendEntry(list, entry);
    return true;
}
}  // namespace

void LoadList(CellularList& list)
{
    list.loaded = true;
    cellularListFree(&list);
    char listing[kOutputBytes + 1];
    char line[kOutputBytes];
    ReadListing(list.family, listing);
    const char* rest = listing;
    while (*rest != 0 && LoadEntry(list, rest)) rest = split_str_by_sep(rest, "\n", line, sizeof line);
}
}  // namespace kobd
