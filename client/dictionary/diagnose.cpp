// Why a value would be refused.
#include "client/dictionary/diagnose.h"

#include "client/dictionary/dictionary.h"
#include "client/dictionary/nearest.h"
#include "client/dictionary/tables.h"
#include "dictionary/value_rule.h"

namespace kobd::client
{
std::string WhatIsWrong(const std::string& name, const std::string& value)
{
    const ObjectEntry* object = FindObject(name);
    if (object == nullptr && FindTable(name) != nullptr) return name + " is a table, not an object";
    if (object == nullptr) return "there is no object " + name + DidYouMean(Nearest(name));
    if (object->access == Access::kReadOnly) return name + " is read-only";
    if (JudgeValue(value.c_str(), object->type, object->limitation).fault != ValueFault::kNone)
        return name + "=" + value + ": it takes " + Accepts(*object);
    return "";
}
}  // namespace kobd::client
