// Running values: factory values by object, changed ones over them.
#include "host/objects/object_values.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include "dictionary/catalogue/secrets.h"
#include "host/objects/sources.h"
#include "host/sim/changes_made.h"
#include "host/sim/moving.h"
#include "host/sim/simulator.h"
#include "host/state/folder.h"
#include "host/state/report.h"
#include "host/state/stores.h"
#include "host/tables/lists.h"
#include "platform/kobd_exports.h"
#include "platform/nvram.h"

namespace kobd::host
{
namespace
{
constexpr size_t kValueBuffer = 2048;  // bytes that object get offers
constexpr int kInvokeFailed = 17;

// An object whose value may differ from what the database has.
struct ChangedObject
{
    size_t number;
    std::optional<std::string> saved;  // its value there, where that is known
};

struct Values
{
    std::vector<std::string> running;    // by object
    std::vector<ChangedObject> changed;  // ascending
    bool are_saved = false;  // the other values are what the database has: they were read from it, and it is the same
};
Values values;

const char* FactoryText(const Source& source) { return source.kind == SourceKind::Value ? source.text : ""; }

// Remembers that this object has changed, so that a commit looks at these objects alone.
void Touch(size_t number)
{
    const auto place = std::ranges::lower_bound(values.changed, number, {}, &ChangedObject::number);
    if (place != values.changed.end() && place->number == number) return;
    const auto saved = values.are_saved ? std::optional(values.running[number]) : std::nullopt;
    values.changed.insert(place, {number, saved});
}

std::string SavedValue(size_t number, const std::string& name, Database* database)
{
    Query query = database->Ask("SELECT value FROM objects WHERE name = ?", name);
    return std::string(query.Next() ? query.Text(0) : FactoryText(Sources()[number]));
}

void WriteValue(const ChangedObject& changed, Database* database, History* history)
{
    const size_t number = changed.number;
    const std::string name = StateName(number);
    const std::string_view factory = FactoryText(Sources()[number]);
    const std::string& now = values.running[number];
    const std::string old = changed.saved ? *changed.saved : SavedValue(number, name, database);
    if (now == old) return;
    if (now == factory)
        database->Run("DELETE FROM objects WHERE name = ?", name);
    else
        database->Run("INSERT OR REPLACE INTO objects VALUES(?, ?)", name, now);
    history->Add({.kind = "object",
                  .name = name,
                  .old = std::string_view(old),
                  .now = std::string_view(now),
                  .secret = IsSecretObject(Sources()[number].object)});
}

// What the source tells of its table, read from the rows themselves so that they cannot disagree.
std::string ListText(const Source& source)
{
    const List* list = FindList(source.text);
    if (list == nullptr) return {};
    const auto& rows = list->rows.Rows();
    if (source.kind == SourceKind::RowCount) return std::to_string(rows.size());
    std::string text;
    for (const Row& row : rows) text += (text.empty() ? "" : ",") + std::to_string(IndexOf(row));
    return text;
}

int GiveText(const std::string& text, char* value)
{
    if (text.size() >= kValueBuffer) return kInvokeFailed;
    memcpy(value, text.c_str(), text.size() + 1);
    return 0;
}

// The object's own value: what was set, or is shown of nvram and rows.
int GiveOwn(const Source& source, char* value)
{
    switch (source.kind)
    {
        case SourceKind::Nvram:
            return nv_get(source.text, value, kValueBuffer) != 0 && errno == ENOMEM ? kInvokeFailed : 0;
        case SourceKind::RowCount:
        case SourceKind::RowIndexes: return GiveText(ListText(source), value);
        case SourceKind::Value:
        case SourceKind::SameAs: break;
    }
    return GiveText(values.running[source.home], value);
}

// Whether the simulator has anything to say about the object.
bool IsMarked(size_t number) { return (sim_marks.object[number] | sim_marks.object[Sources()[number].home]) != 0; }

// What the simulator lets the object show, or lets it fail with.
int GiveSimulated(size_t number, char* value)
{
    if (const int code = SimAsk({SimKind::kObject, number}, SimOperation::kGet)) return code;
    const Source& source = Sources()[number];
    if (const std::string* text = SimValue(source.home)) return GiveText(*text, value);
    if (const int code = GiveOwn(source, value)) return code;
    return GiveText(MovedText(source.home, value), value);
}

int Keep(const Source& source, const char* value)
{
    if (source.kind == SourceKind::Nvram) return nvram_set(source.text, value) == 0 ? 0 : kInvokeFailed;
    std::string& text = values.running[source.home];
    if (strlen(value) >= kValueBuffer) return kInvokeFailed;  // it could never be read again
    if (text == value) return 0;
    Touch(source.home);  // first: both may run out of memory, and a value that is not touched would not be kept
    text = value;
    return 0;
}

// Sets the object. `note`: that it starts something goes to the journal.
int Set(size_t number, const char* value, bool note)
{
    const bool marked = IsMarked(number);
    if (marked)
        if (const int code = SimAsk({SimKind::kObject, number}, SimOperation::kSet)) return code;
    const Source& source = Sources()[number];
    if (note) Journal(source.object, value);
    const int code = Keep(source, value);
    if (code != 0 || !marked) return code;
    SimValueIsSet(source.home);
    MovingIsSet(source.home, value);
    return 0;
}
}  // namespace

void ObjectValuesLoad(Database* database)
{
    values = {};
    values.running.reserve(Sources().size());
    for (const Source& source : Sources()) values.running.emplace_back(FactoryText(source));
    if (database == nullptr) return;
    values.are_saved = true;
    std::vector<std::string> unknown;
    for (Query query = database->Ask("SELECT name, value FROM objects"); query.Next();)
    {
        if (const size_t number = NumberOf(query.Text(0)); number != kNoObject)
            values.running[number] = query.Text(1);
        else
            unknown.emplace_back(query.Text(0));
    }
    if (!unknown.empty())
        kobd_log_print("ObjectValuesLoad", __LINE__, "%zu objects are not known here, %s for one; their values stay",
                       unknown.size(), unknown.front().c_str());
}

bool ObjectValuesChanged() { return !values.changed.empty(); }

void ObjectValuesChangedNames(std::vector<std::string>* names)
{
    for (const ChangedObject& object : values.changed) names->push_back(StateName(object.number));
}

void ObjectValuesWrite(Database* database, History* history)
{
    for (const ChangedObject& object : values.changed) WriteValue(object, database, history);
}

void ObjectValuesWritten() { values.changed.clear(); }

void ObjectValuesAllChanged()
{
    values.are_saved = false;
    for (ChangedObject& object : values.changed) object.saved.reset();
    for (size_t number = 0; number < values.running.size(); ++number)
        if (values.running[number] != FactoryText(Sources()[number])) Touch(number);
}

std::string ObjectFactoryValue(size_t number)
{
    const Source& source = Sources()[number];
    return std::string(source.kind == SourceKind::Nvram ? NvramFactory(source.text)
                                                        : FactoryText(Sources()[source.home]));
}

int ObjectValueGet(size_t number, char* value)
try
{
    return IsMarked(number) ? GiveSimulated(number, value) : GiveOwn(Sources()[number], value);
}
catch (const std::bad_alloc&)
{
    return OutOfMemory("ObjectValueGet", kInvokeFailed);
}

int ObjectValueSet(size_t number, const char* value)
try
{
    return NoteChange({SimKind::kObject, number}, 0, Set(number, value, false));
}
catch (const std::bad_alloc&)
{
    return OutOfMemory("ObjectValueSet", kInvokeFailed);
}

int ObjectAction(size_t number, const char* value)
try
{
    return NoteChange({SimKind::kObject, number}, 0, Set(number, value, true));
}
catch (const std::bad_alloc&)
{
    return OutOfMemory("ObjectAction", kInvokeFailed);
}
}  // namespace kobd::host
