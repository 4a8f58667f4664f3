// kobctl complete WORD...: what may stand in the place of the last word, for the completion scripts of the shells. A
// line each, with what it means behind a tab; ":files" asks the shell for names of files. What a command takes there is
// read from its row in commands.def: NAME, TABLE, INDEX, COLUMN=VALUE and so on.
#include <cstring>

#include "client/commands/commands.h"
#include "client/dictionary/names.h"
#include "client/requests/network_event.h"
#include "client/rows/table_rows.h"
#include "client/rpcd/methods.h"
#include "client/sim/scenario.h"
#include "client/sim/step.h"
#include "client/state/daemon_state.h"
#include "host/state/stores.h"

namespace kobd::client
{
namespace
{
constexpr int kPatienceMs = 500;  // for the daemon, when somebody waits for a name

// The words that the line has so far, without its options.
struct Place
{
    const Command* command = nullptr;
    Words words = {};  // behind the command's name, without the one to complete
    std::string word;  // to complete
};

class Candidates
{
public:
    explicit Candidates(const std::string& word) : word_(word) {}

    void Add(const std::string& name, const std::string& meaning = "")
    {
        if (name.starts_with(word_)) text_ += name + (meaning.empty() ? "" : "\t" + meaning) + "\n";
    }

    void AddFiles() { text_ += ":files\n"; }

    const std::string& Text() const { return text_; }

private:
    const std::string& word_;
    std::string text_ = {};
};

// Whether the command can do something with the object.
bool Takes(std::string_view command, const ObjectEntry& object)
{
    if (command == "set" || command == "check") return object.access != Access::kReadOnly;
    if (command == "reset") return object.access == Access::kReadWrite;
    if (command == "get") return object.access != Access::kWriteOnly;
    return command != "sim set" || !CheckSimValue(object.name, "");
}

void AddObjects(const Place& place, const std::string& end, Candidates* found)
{
    const kobd_description* object = nullptr;
    for (size_t i = 0; (object = kobd_object_at(i)) != nullptr; ++i)
        if (Takes(place.command->name, kObjectRows[i]))
            found->Add(object->name + end, object->meaning != nullptr ? object->meaning : "");
}

void AddTables(Candidates* found)
{
    for (const TableEntry& table : kTableRows) found->Add(table.name);
}

// The values behind "NAME=" that the dictionary can count: the choices of an object, or 0 and 1.
void AddValues(const kobd_description& of, Candidates* found)
{
    const std::string before = std::string(of.name) + "=";
    for (size_t i = 0; i < of.choice_count; ++i) found->Add(before + of.choices[i]);
    if (of.is_flag != 0)
        for (const char* flag : {"0", "1"}) found->Add(before + flag);
}

void AddAssignments(const Place& place, Candidates* found)
{
    const size_t equals = place.word.find('=');
    if (equals == place.word.npos) return AddObjects(place, "=", found);
    const kobd_description* object = kobd_describe(place.word.substr(0, equals).c_str());
    if (object != nullptr) AddValues(*object, found);
}

// The table that the words name last.
const TableEntry* LastTable(const Words& words)
{
    for (auto word = words.rbegin(); word != words.rend(); ++word)
        if (const TableEntry* table = FindTable(*word)) return table;
    return nullptr;
}

void AddColumns(const Place& place, Candidates* found)
{
    const TableEntry* table = LastTable(place.words);
    if (table == nullptr) return;
    const kobd_table_description& described = *kobd_describe_table(table->name);
    const bool value = place.word.find('=') != place.word.npos;
    for (size_t i = 0; i < described.column_count; ++i)
    {
        const kobd_description& column = *described.columns[i];
        if (!value) found->Add(std::string(column.name) + "=", column.meaning != nullptr ? column.meaning : "");
        if (place.word.starts_with(std::string(column.name) + "=")) AddValues(column, found);
    }
}

void AddIndexes(const Options& options, const Place& place, Candidates* found)
{
    const TableEntry* table = LastTable(place.words);
    if (table == nullptr) return;
    Options hasty = options;
    hasty.timeout_ms = kPatienceMs;
    TableRows rows;
    if (DumpRows(hasty, "", {table}, &rows)) return;  // nobody can read an error here
    for (const Row& row : rows[table->name]) found->Add(std::to_string(row.index));
}

void AddKeys(const Place& place, const std::string& end, Candidates* found)
{
    UseStateToShow();
    const std::string store = std::string(place.command->name).substr(0, strcspn(place.command->name, " "));
    for (const std::string& key : host::StoreKeys(store.c_str())) found->Add(key + end);
}

void AddFiles(const Place& place, Candidates* found)
{
    if (place.command->name == std::string_view("sim run"))
        for (const ShippedScenario& one : ShippedScenarios()) found->Add(one.name, one.summary);
    found->AddFiles();
}

void AddNames(const Place& place, Candidates* found)
{
    const std::string_view command = place.command->name;
    if (command == "event")
    {
        for (const std::string& name : EventNames()) found->Add(name);
        return;
    }
    AddObjects(place, "", found);
    if (command == "describe") AddTables(found);
}

// The form of the word at this place: "TABLE" of "TABLE [COLUMN=VALUE...]". The last form is that of all words behind
// it.
std::string WordForm(const Place& place)
{
    Words forms;
    std::string text = place.command->words;
    std::erase_if(text, [](char c) { return c == '[' || c == ']' || c == '.'; });
    if (SplitLine(text, &forms) || forms.empty()) return "";
    return forms[std::min(place.words.size(), forms.size() - 1)];
}

// Columns with a comma between them, of the table that the line names. `before` is what the word has before them.
void AddColumnList(const Place& place, const std::string& before, Candidates* found)
{
    const std::string given = place.word.substr(before.size());
    const std::string listed = given.substr(0, given.rfind(',') + 1);
    for (const std::string& word : place.words)
    {
        const TableEntry* table = FindTable(word);
        if (table == nullptr) continue;
        for (const ColumnDef& column : table->layout.columns)
            if (("," + listed).find("," + std::string(column.name) + ",") == std::string::npos)
                found->Add(before + listed + column.name);
        return;
    }
}

// Behind a value of "table set" stands another column or another table, behind a table one of its rows.
void AddRowChange(const Options& options, const Place& place, Candidates* found)
{
    if (place.words.empty()) return AddTables(found);
    if (FindTable(place.words.back()) != nullptr) return AddIndexes(options, place, found);
    AddColumns(place, found);
    if (place.words.size() > 2) AddTables(found);
}

// An object with its value, or the change of a row as for "table set".
void AddChecked(const Options& options, const Place& place, Candidates* found)
{
    const bool rows = !place.words.empty() && FindTable(place.words[0]) != nullptr;
    if (rows) return AddRowChange(options, place, found);
    if (place.words.empty()) AddTables(found);
    AddAssignments(place, found);
}

// Behind the table and the operation of "sim row".
void AddSimRow(const Options& options, const Place& place, Candidates* found)
{
    const bool add = place.words[1] == "add";
    if (!add && place.words.size() == 2) return AddIndexes(options, place, found);
    if (add || place.words[1] == "set") AddColumns(place, found);
}

void AddPlace(const Options& options, const Place& place, Candidates* found)
{
    if (place.command->name == std::string_view("table set")) return AddRowChange(options, place, found);
    if (place.command->name == std::string_view("check")) return AddChecked(options, place, found);
    const bool behind_operation = place.words.size() > 1 && place.command->name == std::string_view("sim row");
    if (behind_operation) return AddSimRow(options, place, found);
    const std::string form = WordForm(place);
    if (form == "NAME=VALUE") AddAssignments(place, found);
    if (form == "COLUMN=VALUE") AddColumns(place, found);
    if (form == "NAME" || form == "PATTERN" || form == "NAME|TABLE") AddNames(place, found);
    if (form == "TABLE" || form == "PATTERN" || form == "NAME|TABLE") AddTables(found);
    if (form == "INDEX") AddIndexes(options, place, found);
    if (form == "KEY") AddKeys(place, "", found);
    if (form == "KEY=VALUE") AddKeys(place, "=", found);
    if (form == "FILE") AddFiles(place, found);
    if (form == "OPERATION" && place.words.size() == 1)
        for (const std::string& operation : SimOperations(place.words[0])) found->Add(operation);
    if (place.command->name == std::string_view("sim fail") && place.words.empty()) found->Add("commit");
    if (form == "add|set|del")
        for (const char* operation : {"add", "set", "del"}) found->Add(operation);
    if (form == "list|call")
        for (const char* word : {"list", "call"}) found->Add(word);
    if (form == "METHOD" && place.words.size() == 1 && place.words[0] == "call")
        for (const Method& method : Methods()) found->Add(method.name);
}

// The commands, or the second words of those that begin with `first`.
void AddCommands(const std::string& first, Candidates* found)
{
    const std::string before = first.empty() ? "" : first + " ";
    for (const Command& command : Commands())
    {
        const std::string name = command.name;
        const bool hidden = *command.group == 0 && name != "help";
        if (hidden || !name.starts_with(before) || name.find(' ', before.size()) != name.npos) continue;
        found->Add(name.substr(before.size()), command.summary);
    }
}

void AddOptions(const Command* command, Candidates* found)
{
    Words own;
    if (command != nullptr) (void)SplitLine(command->options, &own);
    for (const std::string& option : own) found->Add(option);
    const bool is_schema = command != nullptr && command->name == std::string_view("schema");
    for (const std::string& option : OptionsOfEveryCommand())
        if (!is_schema || option != "--json") found->Add(option);
}

// Takes the command's one or two words from the front of the words.
const Command* TakeCommand(Words* words)
{
    if (words->empty()) return nullptr;
    const Command* command = FindNamed(Commands(), words->front());
    if (command != nullptr && command->run == nullptr && words->size() > 1)
    {
        command = FindNamed(Commands(), words->front() + " " + (*words)[1]);
        words->erase(words->begin());
    }
    words->erase(words->begin());
    return command;
}
}  // namespace

Outcome CommandComplete(const Options& options, const Words& line)
{
    Place place;
    if (!line.empty()) place.word = line.back();
    Candidates found(place.word);
    bool value = false;  // whether the word in hand is the value of an option
    std::string option;
    for (size_t i = 0; i + 1 < line.size(); ++i)
    {
        const bool is_option = !value && line[i].starts_with("--");
        if (!is_option && !value) place.words.push_back(line[i]);
        value = is_option && OptionTakesValue(line[i]);
        option = value ? line[i] : "";
    }
    const std::string first = place.words.empty() ? "" : place.words[0];
    const bool alone = place.words.size() <= 1;
    place.command = TakeCommand(&place.words);
    static const std::string kColumns = "--columns=";
    if (option == "--pcap") found.AddFiles();
    if (option + "=" == kColumns) AddColumnList(place, "", &found);
    if (!value && place.word.starts_with(kColumns)) AddColumnList(place, kColumns, &found);
    if (value) return {{}, found.Text()};
    if (place.word.starts_with("-"))
        AddOptions(place.command, &found);
    else if (first.empty() || (first == "help" && alone))
        AddCommands("", &found);
    else if (place.command != nullptr && place.command->run == nullptr)
        AddCommands(first, &found);
    else if (place.command != nullptr)
        AddPlace(options, place, &found);
    return {{}, found.Text()};
}
}  // namespace kobd::client
