// The dictionary for C: descriptions, made once when the first one is asked for, and the judgement of a value.
#include <algorithm>
#include <deque>
#include <span>
#include <string>
#include <vector>

#include "client/dictionary/column_value.h"
#include "client/library/connection.h"
#include "client/library/meanings.h"
#include "daemon/base/result.h"
#include "dictionary/catalogue/secrets.h"

namespace kobd::client
{
namespace
{
bool IsObjectNumber(ValueType type)
{
    return type == VT_INT32 || type == VT_UINT32 || type == VT_UINT16 || type == VT_BOOL;
}

bool HasBounds(ValueType type)
{
    return IsObjectNumber(type) || type == VT_STRING || type == VT_TEXT || type == VT_TEXT_2;
}

// A table's description with what it points to.
struct DescribedTable
{
    std::string accepts = {};
    std::deque<kobd_description> columns = {};
    std::vector<const kobd_description*> pointers = {};
    kobd_table_description face = {};
};

// All descriptions. It never moves or changes once it is made, so that pointers into it stay valid.
class Descriptions
{
public:
    Descriptions()
    {
        for (const ObjectEntry& object : kObjectRows) objects_.push_back(Describe(object));
        for (const TableEntry& table : kTableRows) AddTable(table);
        AddMeanings();
    }

    const std::vector<kobd_description>& Objects() const { return objects_; }
    const std::deque<DescribedTable>& Tables() const { return tables_; }

private:
    const char* Keep(std::string text) { return texts_.emplace_back(std::move(text)).c_str(); }

    void AddChoices(const char* limitation, kobd_description* to)
    {
        std::vector<const char*>& choices = choices_.emplace_back();
        std::string text = limitation != nullptr ? limitation : "";
        text.resize(std::min(text.size(), text.find(':')));
        for (size_t start = 0; start <= text.size();)
        {
            const size_t bar = std::min(text.find('|', start), text.size());
            choices.push_back(Keep(text.substr(start, bar - start)));
            start = bar + 1;
        }
        to->choices = choices.data();
        to->choice_count = choices.size();
    }

    kobd_description Describe(const ObjectEntry& object)
    {
        kobd_description one = {};
        const ValueBounds bounds = BoundsOf(object.type, object.limitation);
        one.name = object.name;
        one.type = ColumnTypeName(object.type);
        one.is_number = IsObjectNumber(object.type);
        one.is_flag = object.type == VT_BOOL;
        one.readable = object.access != Access::kWriteOnly;
        one.writable = object.access != Access::kReadOnly;
        one.secret = IsSecretObject(object.name);
        one.is_action = object.access == Access::kAction;
        one.has_range = HasBounds(object.type);
        one.least = std::max<int64_t>(bounds.lower, 0);
        one.most = one.is_flag ? 1 : bounds.upper;
        if (object.type == VT_ENUM) AddChoices(object.limitation, &one);
        if (object.type == VT_STRING) one.forbidden = kForbiddenInString;
        one.access = AccessText(object.access);
        one.check = object.validator;
        one.accepts = Keep(Accepts(object));
        return one;
    }

    kobd_description Describe(const TableEntry& table, const ColumnDef& column)
    {
        kobd_description one = {};
        const FieldForm form = FormOf(column);
        one.name = column.name;
        one.type = ColumnTypeName(column.type);
        one.is_number = IsNumber(column.type);
        one.is_flag = column.type == VT_BOOL;
        one.readable = table.Has(kGet) || table.Has(kNext);
        one.writable = table.Has(kSet) && form.kind != FieldKind::kPointer;
        one.secret = IsSecretColumn(column.name);
        one.has_range = one.is_number || form.kind == FieldKind::kText || form.kind == FieldKind::kUpperText;
        one.least = form.lower;
        one.most = static_cast<int64_t>(std::min<uint64_t>(form.upper, INT64_MAX));
        one.access = one.writable ? AccessText(Access::kReadWrite) : AccessText(Access::kReadOnly);
        one.accepts = Keep(Takes(column));
        one.alias_of = column.alias_of;
        return one;
    }

    void AddTable(const TableEntry& table)
    {
        DescribedTable& one = tables_.emplace_back();
        for (const ColumnDef& column : table.layout.columns)
            one.pointers.push_back(&one.columns.emplace_back(Describe(table, column)));
        one.accepts = RuleOf(table.validator);
        one.face = {.name = table.name,
                    .meaning = nullptr,
                    .column_count = one.pointers.size(),
                    .columns = one.pointers.data(),
                    .can_add = table.Has(kAdd),
                    .can_delete = table.Has(kDel),
                    .can_get = table.Has(kGet),
                    .can_set = table.Has(kSet),
                    .can_add_below = table.Has(kAdd) && table.Has(kSetParentPath),
                    .can_list = table.Has(kNext),
                    .max_rows = static_cast<int>(table.max_rows),
                    .check = *table.validator != 0 ? table.validator : nullptr,
                    .accepts = one.accepts.empty() ? nullptr : one.accepts.c_str(),
                    .same_rows_as = table.list_of == std::string_view(table.name) ? nullptr : table.list_of};
    }

    static void Give(const Meaning& meaning, kobd_description* to)
    {
        to->meaning = meaning.text;
        to->unit = *meaning.unit != 0 ? meaning.unit : nullptr;
    }

    void AddMeanings()
    {
        const auto add_every = [this](const Meaning& one)
        {
            if (one.number != kEveryTable) return;
            for (DescribedTable& table : tables_) AddColumnMeaning(one, &table);
        };
        ForEachMeaning(kObjectMeanings, [this](const Meaning& one) { Give(one, &objects_[one.number]); });
        ForEachMeaning(kTableMeanings, [this](const Meaning& one) { tables_[one.number].face.meaning = one.text; });
        ForEachMeaning(kColumnMeanings,
                       [this](const Meaning& one)
                       {
                           if (one.number != kEveryTable) AddColumnMeaning(one, &tables_[one.number]);
                       });
        for (size_t i = 0; i < tables_.size(); ++i) TakeMeanings(kTableRows[i], &tables_[i]);
        ForEachMeaning(kColumnMeanings, add_every);
    }

    static void AddColumnMeaning(const Meaning& meaning, DescribedTable* table)
    {
        for (kobd_description& column : table->columns)
            if (column.meaning == nullptr && std::string_view(column.name) == meaning.column) Give(meaning, &column);
    }

    // The columns of another table's rows, and those that are other names, mean what the others mean.
    void TakeMeanings(const TableEntry& entry, DescribedTable* table)
    {
        for (const std::string_view from : {std::string_view(entry.list_of), std::string_view(entry.name)})
            for (const DescribedTable& owner : tables_)
                if (owner.face.name == from)
                    for (kobd_description& column : table->columns) TakeMeaning(owner, &column);
    }

    static void TakeMeaning(const DescribedTable& owner, kobd_description* column)
    {
        for (const kobd_description& one : owner.columns)
        {
            const std::string_view name = one.name;
            const bool same = name == column->name || (column->alias_of != nullptr && name == column->alias_of);
            if (column->meaning != nullptr || !same) continue;
            column->meaning = one.meaning;
            column->unit = one.unit;
        }
    }

    std::deque<std::string> texts_;
    std::deque<std::vector<const char*>> choices_;
    std::vector<kobd_description> objects_;
    std::deque<DescribedTable> tables_;
};

// Never destroyed: another thread may read it while the program ends.
const Descriptions& All()
{
    static const Descriptions* all = new Descriptions;
    return *all;
}

const DescribedTable* FindDescribed(std::string_view name)
{
    for (const DescribedTable& table : All().Tables())
        if (name == table.face.name) return &table;
    return nullptr;
}

// Keeps the explanation for this thread. 0 when there is no fault.
int Tell(const Fault& fault, Explained explained, const kobd_explanation** why)
{
    static thread_local Explained kept;
    if (why != nullptr) *why = nullptr;
    if (!fault) return kSuccess;
    kept = std::move(explained);
    kept.code = fault.code;
    kept.reason = fault.reason;
    if (!fault.right.empty()) kept.right = fault.right;
    kept.text += ": " + CodeText(fault.code);
    if (why != nullptr) *why = kept.Face();
    return fault.code;
}
}  // namespace
}  // namespace kobd::client

using namespace kobd::client;

const kobd_description* kobd_describe(const char* name) { return FindNamed(All().Objects(), name); }

const kobd_table_description* kobd_describe_table(const char* name)
{
    const DescribedTable* table = FindDescribed(name);
    return table != nullptr ? &table->face : nullptr;
}

const kobd_description* kobd_describe_column(const char* table, const char* column)
{
    const DescribedTable* found = FindDescribed(table);
    return found != nullptr ? FindNamed(found->columns, column) : nullptr;
}

const kobd_description* kobd_object_at(size_t position)
{
    const auto& objects = All().Objects();
    return position < objects.size() ? &objects[position] : nullptr;
}

const kobd_table_description* kobd_table_at(size_t position)
{
    const auto& tables = All().Tables();
    return position < tables.size() ? &tables[position].face : nullptr;
}

const char* kobd_did_you_mean(const char* name)
{
    const std::string nearest(NearestName(name, KnownNames()));
    if (const kobd_description* object = kobd_describe(nearest.c_str())) return object->name;
    const kobd_table_description* table = kobd_describe_table(nearest.c_str());
    return table != nullptr ? table->name : nullptr;
}

int kobd_check(const char* name, const char* value, const kobd_explanation** why)
{
    const Fault fault = JudgeObject(name, value);
    return Tell(fault, {.object = name, .value = value, .text = fault.Text(name, value)}, why);
}

int kobd_check_column(const char* table, const char* column, const char* value, const kobd_explanation** why)
{
    const TableEntry* found = FindTable(table);
    const Fault fault =
        found != nullptr ? JudgeCell(*found, column, value) : Fault{kobd::kNotFound, NoSuchName("table", table)};
    const std::string text = (found != nullptr ? std::string(table) + ": " : "") + fault.Text(column, value);
    return Tell(fault, {.table = table, .column = column, .value = value, .text = text}, why);
}
