// Loading a cellular list from the configuration.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "cellular/commands.h"
#include "cellular/mirror.h"
#include "cellular/shell_command.h"
#include "daemon/base/log.h"
#include "daemon/base/reply.h"
#include "platform/text.h"

namespace kobd
{
namespace
{
constexpr size_t kOutputBytes = 4096;  // of a runner's output, with the zero byte
constexpr size_t kIndexBytes = 9 + 1;  // digits of an index in the configuration
constexpr const char* kIndexOption = ".index";

// The sections of the family, one to a line, and one more line end.
[[nodiscard]] bool ReadListing(const CellularFamily& family, char (&listing)[kOutputBytes + 1])
{
    const ShellCommand command = ShellCommand("uci -X show ").Add(kEntryConfig).Add(" | grep ").Add(family.word);
    if (!ReadCommand(family.load_name, "uci show", command, Part::kAll, listing, kOutputBytes)) return false;
    const size_t length = strlen(listing);
    // Anonymous sections fit some ninety times. A line cut in the middle names no section.
    if (length == kOutputBytes - 1)
        LOG_ALWAYS(family.load_name, "more sections than fit %zu bytes, the last ones are not loaded", length);
    memcpy(listing + length, "\n", 2);
    return true;
}

// Takes the section name out of the first line of the listing. Only that line is handed over: the
// whole listing does not fit a command together with the rest. Empty when there is no such name.
[[nodiscard]] bool ReadSectionName(const CellularFamily& family, const char* listing, char* name)
{
    const std::string_view line(listing, strcspn(listing, "\n"));
    const ShellCommand command = ShellCommand("expr \"")
                                     .AddDoubleQuoted(line)
                                     .Add("\" : \"")
                                     .Add(kEntryConfig)
                                     .Add(".\\([0-9a-zA-Z]*\\)=")
                                     .Add(family.word)
                                     .Add("\"");
    if (command.Text() == nullptr) return true;  // no section has a line that long
    if (!ReadCommand(family.load_name, "expr", command, Part::kFirstLine, name, kCellularText)) return false;
    if (!IsSectionName(name)) *name = 0;
    return true;
}

// Reads a field's value, whole: it may have lines of its own. uci ends what it prints by one line
// end that is not the value's.
[[nodiscard]] bool ReadField(const CellularFamily& family, const CellularField& field, std::string_view section,
                             char* slot)
{
    const ShellCommand command =
        ShellCommand("uci -q get ").Add(kValueConfig).Add(".").Add(section).Add(".").Add(field.name);
    char output[kOutputBytes];
    if (!ReadCommand(family.load_name, "uci get", command, Part::kAll, output, sizeof output)) return false;
    std::string_view value = output;
    if (value.ends_with('\n')) value.remove_suffix(1);
    SetTextAt(slot, value);
    return true;
}

// Compared without sign: a negative number in the configuration counts as a very large index.
void RaiseHighest(CellularList& list, int32_t index)
{
    if (static_cast<uint32_t>(index) > static_cast<uint32_t>(list.highest)) list.highest = index;
}

// Reads the entry's index; one that has none gets the next free one.
[[nodiscard]] bool ReadIndex(CellularList& list, std::string_view section, char* row)
{
    const ShellCommand command = ShellCommand("uci -q get ").Add(kEntryConfig).Add(".").Add(section).Add(kIndexOption);
    char text[kIndexBytes];
    if (!ReadCommand(list.family.load_name, "uci get", command, Part::kFirstLine, text, sizeof text)) return false;
    const int32_t next = static_cast<int32_t>(static_cast<uint32_t>(list.highest) + 1);
    const int32_t index = *text != 0 ? atoi(text) : next;
    if (*text != 0)
        RaiseHighest(list, index);
    else
        list.highest = index;
    SetRowIndex(row, index);
    return true;
}

enum class Step
{
    kLoaded,
    kEnd,     // there is no further entry
    kFailed,  // a command had no answer
};

// Reads what belongs to the section that the listing's first line names into the entry's row.
Step ReadEntry(CellularList& list, const char* listing, CellularEntry* entry)
{
    const CellularFamily& family = list.family;
    char* row = entry->Row();
    char* section = row + SectionNameOffset(family);
    if (!ReadSectionName(family, listing, section)) return Step::kFailed;
    if (*section == 0) return Step::kEnd;
    for (const CellularField& field : family.fields)
        if (!ReadField(family, field, section, row + field.offset)) return Step::kFailed;
    return ReadIndex(list, section, row) ? Step::kLoaded : Step::kFailed;
}

Step LoadEntry(CellularList& list, const char* listing)
{
    CellularEntry* entry = NewEntry(list.family);
    if (entry == nullptr)
    {
        LOG_ALWAYS(list.family.load_name, "can not malloc buffer");
        return Step::kEnd;
    }
    const Step step = ReadEntry(list, listing, entry);
    if (step == Step::kLoaded)
        AppendEntry(list, entry);
    else
        ReleaseEntry(entry);
    return step;
}

// The entries of the configuration in the order of the listing. False when a command had no answer.
[[nodiscard]] bool LoadEntries(CellularList& list)
{
    char listing[kOutputBytes + 1];
    char line[kOutputBytes];
    if (!ReadListing(list.family, listing)) return false;
    Step step = Step::kLoaded;
    for (const char* rest = listing; *rest != 0 && step == Step::kLoaded;
         rest = split_str_by_sep(rest, "\n", line, sizeof line))
        step = LoadEntry(list, rest);
    return step != Step::kFailed;
}
}  // namespace

int LoadList(CellularList& list)
{
    cellularListFree(&list);
    list.loaded = LoadEntries(list);
    if (list.loaded) return kSuccess;
    cellularListFree(&list);
    list.failed = RequestNumber();
    LOG_ALWAYS(list.family.load_name, "the list could not be loaded and is not used in this request");
    return kSystemError;
}
}  // namespace kobd
