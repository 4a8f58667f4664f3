// Each message is read and checked whole before anything is changed.
#include "host/sim_messages.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "daemon/base/messages.h"
#include "daemon/base/result.h"
#include "dictionary/catalogue/by_name.h"
#include "host/objects/sources.h"
#include "host/sim/moving.h"
#include "host/sim/simulator.h"
#include "host/tables/lists.h"
#include "platform/connection.h"

namespace kobd::host
{
namespace
{
struct Item
{
    uint16_t tag;
    std::optional<std::string> text;
    std::optional<int32_t> number;
};

// The items of a message, taken one after the other.
class Items
{
public:
    explicit Items(const MessageHeader* request)
    {
        TlvReader reader({reinterpret_cast<const char*>(request + 1), request->length});
        while (const auto item = reader.Next())
        {
            items_.push_back({item->tag, std::nullopt, item->Int()});
            if (const auto text = item->Text()) items_.back().text = std::string(*text);
        }
        whole_ = !reader.Broken();
    }

    bool Whole() const { return whole_; }
    bool AtEnd() const { return next_ == items_.size(); }

    // The text or number of the next item where that has this tag, else nothing, and the item stays.
    std::optional<std::string> Text(uint16_t tag) { return Take(tag, &Item::text); }
    std::optional<int32_t> Number(uint16_t tag) { return Take(tag, &Item::number); }

private:
    template <class Value>
    Value Take(uint16_t tag, Value Item::*value)
    {
        if (AtEnd() || items_[next_].tag != tag || !(items_[next_].*value)) return {};
        return items_[next_++].*value;
    }

    std::vector<Item> items_ = {};
    size_t next_ = 0;
    bool whole_ = false;
};

struct NewValue
{
    size_t object;  // that keeps the value
    std::string name;
    std::string value;
};

int ReadValues(Items* items, std::vector<NewValue>* values)
{
    while (!items->AtEnd())
    {
        const auto name = items->Text(kTagObjectName);
        const auto value = items->Text(kTagValue);
        if (!name || !value || value->size() >= kValueBuffer) return kInvalidArgument;
        const size_t object = NumberOf(*name);
        if (object == kNoObject) return kNotFound;
        const size_t getter = AccessorOf(object, &ObjectAccessors::getter);
        if (getter == kNoObject) return kMethodUnavailable;
        values->push_back({Sources()[getter].home, *name, *value});
    }
    return values->empty() ? kInvalidArgument : kSuccess;
}

void Announce(uint16_t event, const std::string& object)
{
    char bytes[kNotifyPayloadMax];
    TlvWriter items(bytes);
    if (!object.empty() && !items.Text(kTagObjectName, object)) return;
    static_cast<void>(KobdEvtSend(kModuleNotify, event, bytes, static_cast<int>(items.Size())));
}

int SetValues(Items* items, bool announce)
{
    std::vector<NewValue> values;
    if (const int code = ReadValues(items, &values)) return code;
    for (const NewValue& value : values) SimSetValue(value.object, value.name, value.value);
    if (!announce) return kSuccess;
    for (const NewValue& value : values) Announce(kEventObjectChanged, value.name);
    Announce(kEventSetFinished, "");
    return kSuccess;
}

// The list of a table that the next item names. The daemon keeps some itself.
int TakeList(Items* items, List** list)
{
    const auto name = items->Text(kTagTableName);
    if (!name) return kInvalidArgument;
    const size_t table = NumberIn(kTableNames, *name);
    if (table == kNoNumber) return kNotFound;
    *list = ListOfTable(table);
    return *list == nullptr ? kMethodUnavailable : kSuccess;
}

int ChangeRow(uint16_t id, Items* items, TlvWriter* answer)
{
    List* list = nullptr;
    if (const int code = TakeList(items, &list)) return code;
    int32_t index = 0;
    if (id != kHostSimRowAdd)
    {
        const auto given = items->Number(kTagRowIndex);
        if (!given) return kInvalidArgument;
        index = *given;
    }
    ColumnTexts columns;
    while (!items->AtEnd())
    {
        const auto name = items->Text(kTagColumnName);
        const auto value = items->Text(kTagValue);
        if (!name || !value) return kInvalidArgument;
        columns.emplace_back(*name, *value);
    }
    if (id == kHostSimRowDel) return columns.empty() ? SimulateDel(list, index) : kInvalidArgument;
    if (id == kHostSimRowSet) return columns.empty() ? kInvalidArgument : SimulateSet(list, index, columns);
    const int code = SimulateAdd(list, columns, &index);
    return code == kSuccess && !answer->Int(kTagRowIndex, index) ? kBufferLimit : code;
}

constexpr Operation kBits[] = {kGet, kSet, kAdd, kDel, kNext};  // in the order of SimOperation

// What is to fail or to be slow, and what the client calls it.
struct Target
{
    SimTarget target = kSimCommit;
    std::string name = {};
};

int ObjectTargets(const std::string& name, SimOperation operation, std::vector<Target>* targets)
{
    const size_t object = NumberOf(name);
    if (object == kNoObject) return kNotFound;
    for (const auto& [wanted, accessor] : {std::pair{SimOperation::kGet, &ObjectAccessors::getter},
                                           std::pair{SimOperation::kSet, &ObjectAccessors::setter}})
    {
        if (operation != wanted && operation != SimOperation::kAny) continue;
        const size_t number = AccessorOf(object, accessor);
        if (number != kNoObject && (targets->empty() || targets->back().target.number != number))
            targets->push_back({{SimKind::kObject, number}, name});
    }
    return targets->empty() ? kMethodUnavailable : kSuccess;
}

int TableTargets(const std::string& name, SimOperation operation, std::vector<Target>* targets)
{
    const size_t table = NumberIn(kTableNames, name);
    if (table == kNoNumber) return kNotFound;
    const List* list = ListOfTable(table);
    if (list == nullptr || operation == SimOperation::kCommit) return kMethodUnavailable;
    if (operation != SimOperation::kAny && !kTableRows[table].Has(kBits[static_cast<size_t>(operation)]))
        return kMethodUnavailable;
    targets->push_back({{SimKind::kTable, list->number}, name});
    return kSuccess;
}

int FindTargets(SimOperation operation, const std::optional<std::string>& object,
                const std::optional<std::string>& table, std::vector<Target>* targets)
{
    if (object) return ObjectTargets(*object, operation, targets);
    if (table) return TableTargets(*table, operation, targets);
    if (operation != SimOperation::kCommit) return kInvalidArgument;
    targets->push_back({});
    return kSuccess;
}

int MakeTrouble(bool slow, Items* items)
{
    const auto object = items->Text(kTagObjectName);
    const auto table = object ? std::nullopt : items->Text(kTagTableName);
    SimOperation operation = SimOperation::kAny;
    if (!slow)
    {
        const auto named = items->Text(kTagValue);
        operation = named ? SimOperationOf(*named) : SimOperation::kAny;
        if (operation == SimOperation::kAny) return kInvalidArgument;
    }
    const auto amount = items->Number(kTagValue);
    const auto times = items->Number(kTagValue);
    if (!amount || !times || *times < 0 || *amount == 0 || !items->AtEnd()) return kInvalidArgument;
    if (slow && (*amount < 0 || *amount > kSimSlowMost)) return kInvalidArgument;
    std::vector<Target> targets;
    if (const int code = FindTargets(operation, object, table, &targets)) return code;
    for (const Target& target : targets)
    {
        if (slow)
            SimSlow(target.target, target.name, *amount, *times);
        else
            SimFail(target.target, target.name, operation, *amount, *times);
    }
    return kSuccess;
}

// As many lines as fit; the client asks for those behind them.
int ShowLines(Items* items, TlvWriter* answer)
{
    const auto left_out = items->Number(kTagValue);
    if (!left_out || *left_out < 0 || !items->AtEnd()) return kInvalidArgument;
    std::vector<SimLine> lines = SimLines();
    std::ranges::move(SimulatedRowLines(), std::back_inserter(lines));
    for (const auto& [network, state] : Networks()) lines.push_back({kTagValue, network, "network", state});
    for (size_t i = static_cast<size_t>(*left_out); i < lines.size(); ++i)
    {
        const size_t before = answer->Size();
        const SimLine& line = lines[i];
        if (answer->Text(line.tag, line.name) && answer->Text(kTagValue, line.what) &&
            answer->Text(kTagValue, line.how))
            continue;
        answer->Truncate(before);
        break;
    }
    return kSuccess;
}
}  // namespace

int AnswerSimulator(const MessageHeader* request, TlvWriter* answer)
{
    Items items(request);
    if (!items.Whole()) return kInvalidArgument;
    switch (request->id)
    {
        case kHostSimSet: return SetValues(&items, false);
        case kHostSimSetAnnounced: return SetValues(&items, true);
        case kHostSimRowAdd:
        case kHostSimRowSet:
        case kHostSimRowDel: return ChangeRow(request->id, &items, answer);
        case kHostSimFail: return MakeTrouble(false, &items);
        case kHostSimSlow: return MakeTrouble(true, &items);
        case kHostSimList: return ShowLines(&items, answer);
        case kHostSimClear:
            SimClear();
            EndSimulatedRows();
            return kSuccess;
        default: return kNotFound;
    }
}
}  // namespace kobd::host
