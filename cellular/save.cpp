// Writing an entry of a cellular list to the configuration.
#include <cstdio>

#include "cellular/commands.h"
#include "cellular/mirror.h"
#include "cellular/shell_command.h"
#include "daemon/base/log.h"

namespace kobd
{
namespace
{
constexpr int kUnknownMode = 1;
constexpr size_t kNumberBytes = sizeof "-2147483648";

// The longest command is the one that sets a field of 255 quotes, each of which is written as
// four characters, under a section name of 255.
constexpr size_t kQuotedQuote = sizeof "'\\''" - 1;
constexpr size_t kLongestFieldName = sizeof "X_QUELMOR_Network_Cellular.Modulo.HardwareVersion" - 1;
static_assert(sizeof "uci set tr069_cellular..=''" + kLongestFieldName + (1 + kQuotedQuote) * (kCellularText - 1) <
                  kCommandBytes,
              "every command of a save fits");

// A save in hand: whose log lines it writes, and the section that it writes to.
struct Save
{
    const CellularFamily& family;
    std::string_view section;

    void SetOption(const char* config, const char* option, std::string_view value) const
    {
        RunCommand(family.save_name, "uci set",
                   ShellCommand("uci set ")
                       .Add(config)
                       .Add(".")
                       .Add(section)
                       .Add(".")
                       .Add(option)
                       .Add("='")
                       .AddSingleQuoted(value)
                       .Add("'"));
    }

    void Delete() const
    {
        RunCommand(family.save_name, "uci delete", ShellCommand("uci delete ").Add(kEntryConfig).Add(".").Add(section));
    }

    void Commit() const { RunCommand(family.save_name, "uci commit", ShellCommand("uci commit ").Add(kEntryConfig)); }
};

bool MayWrite(const CellularFamily& family, std::string_view section)
{
    if (IsSectionName(section)) return true;
    LOG_ALWAYS(family.save_name, "no configuration section \"%.*s\", nothing is written",
               static_cast<int>(section.size()), section.data());
    return false;
}

// A delete has been done when the list cannot be loaded again; that is logged, and the next request tries.
int DeleteSection(CellularList& list, std::string_view section)
{
    const Save save{list.family, section};
    if (MayWrite(list.family, section)) save.Delete();
    save.Commit();
    LoadList(list);
    return 0;
}

void MakeSection(const CellularFamily& family, char* name)
{
    char output[kCellularText];
    const ShellCommand command = ShellCommand("uci add ").Add(kEntryConfig).Add(" ").Add(family.word);
    const bool made = ReadCommand(family.save_name, "uci add", command, Part::kFirstLine, output, sizeof output);
    SetTextAt(name, made ? output : "");
}

int WriteOptions(const CellularFamily& family, std::string_view section, const char* row)
{
    if (!MayWrite(family, section)) return 0;
    const Save save{family, section};
    save.SetOption(kValueConfig, "name", family.word);
    for (const CellularField& field : family.fields)
        save.SetOption(kValueConfig, field.name, TextAt(row + field.offset));
    char index[kNumberBytes];
    snprintf(index, sizeof index, "%d", RowIndexOf(row));
    save.SetOption(family.index_config, "index", index);
    save.Commit();
    return 0;
}
}  // namespace

int SaveEntry(CellularList& list, const char* section, char* row, int mode)
{
    if (mode == kSaveDelete) return DeleteSection(list, section);
    if (mode == kSaveModify) return WriteOptions(list.family, section, row);
    if (mode != kSaveAdd) return kUnknownMode;
    char* made = row + SectionNameOffset(list.family);
    MakeSection(list.family, made);
    return WriteOptions(list.family, TextAt(made), row);
}
}  // namespace kobd
