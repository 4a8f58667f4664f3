// Writing an entry of a cellular list to the configuration.
#include <cstdio>
#include <cstdlib>

#include "cellular/mirror.h"
#include "cellular/shell_command.h"
#include "daemon/base/log.h"
#include "platform/shell.h"

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

// Results are not looked at: what uci could not store shows when it is read again.
void RunShell(const ShellCommand& command)
{
    if (system(command.Text()) != 0) return;
}

void SetOption(const char* config, std::string_view section, const char* option, std::string_view value)
{
    RunShell(ShellCommand("uci set ")
                 .Add(config)
                 .Add(".")
                 .Add(section)
                 .Add(".")
                 .Add(option)
                 .Add("='")
                 .AddSingleQuoted(value)
                 .Add("'"));
}

void Commit() { RunShell(ShellCommand("uci commit ").Add(kEntryConfig)); }

bool MayWrite(const CellularFamily& family, std::string_view section)
{
    if (IsSectionName(section)) return true;
    LOG_ALWAYS(family.save_name, "no configuration section \"%.*s\", nothing is written",
               static_cast<int>(section.size()), section.data());
    return false;
}

int DeleteSection(CellularList& list, std::string_view section)
{
    if (MayWrite(list.family, section)) RunShell(ShellCommand("uci delete ").Add(kEntryConfig).Add(".").Add(section));
    Commit();
    LoadList(list);
    return 0;
}

void MakeSection(const CellularFamily& family, char* name)
{
    char output[kCellularText];
    shell_cmd_return_str(ShellCommand("uci add ").Add(kEntryConfig).Add(" ").Add(family.word).Text(), output,
                         sizeof output);
    SetTextAt(name, output);
}

int WriteOptions(const CellularFamily& family, std::string_view section, const char* row)
{
    if (!MayWrite(family, section)) return 0;
    SetOption(kValueConfig, section, "name", family.word);
    for (const CellularField& field : family.fields)
        SetOption(kValueConfig, section, field.name, TextAt(row + field.offset));
    char index[kNumberBytes];
    snprintf(index, sizeof index, "%d", RowIndexOf(row));
    SetOption(family.index_config, section, "index", index);
    Commit();
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
