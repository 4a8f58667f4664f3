// Value checking: the value rule, with its log lines, then the object's own check.
#include "dictionary/value_check.h"

#include <cstring>

#include "daemon/base/log.h"
#include "daemon/base/result.h"
#include "daemon/base/tlv.h"
#include "dictionary/name_index.h"
#include "dictionary/value_rule.h"
#include "platform/text.h"

namespace kobd
{
namespace
{
constexpr const char* kFunction = "ParameterCheck";

bool IsUnsigned(ValueType type) { return type == VT_UINT32 || type == VT_UINT16 || type == VT_UINT8; }

// The lines are the system's own: "includ" stands in the one for signed numbers alone, and large
// unsigned numbers are printed as negative ones.
void LogFault(const char* value, ValueType type, const ValueVerdict& verdict)
{
    const auto found = static_cast<int>(verdict.found);
    const auto lower = static_cast<int>(verdict.bounds.lower);
    const auto upper = static_cast<int>(verdict.bounds.upper);
    switch (verdict.fault)
    {
        case ValueFault::kNoDigits:
            LOG_ALWAYS(kFunction, "Integer value is empty or does not only %s digits: %s",
                       IsUnsigned(type) ? "include" : "includ", value);
            return;
        case ValueFault::kRange:
            LOG_ALWAYS(kFunction, "Integer value does not match limitation: %d [%d:%d]", found, lower, upper);
            return;
        case ValueFault::kLength:
            LOG_ALWAYS(kFunction, "String value length does not match limitation: %d [%d:%d]", found, lower, upper);
            return;
        case ValueFault::kForbidden: LOG_ALWAYS(kFunction, "String value contain illegal character!"); return;
        case ValueFault::kNoChoice: LOG_ALWAYS(kFunction, "Enum is incorrect: %s", value); return;
        default: return;
    }
}
}  // namespace

int ParameterCheck(const char* value, const CheckDescriptor* check)
{
    if (check == nullptr) return kSuccess;
    const ValueVerdict verdict = JudgeValue(value, check->type, check->limitation);
    if (verdict.fault != ValueFault::kNone)
    {
        LogFault(value, check->type, verdict);
        return kInvalidArgument;
    }
    return check->validator != nullptr ? check->validator(value) : kSuccess;
}

int ObjsParameterCheck(std::span<const char> payload)
{
    TlvReader reader(payload);
    while (const auto name_item = reader.Next())
    {
        const auto value_item = reader.Next();
        const auto name = name_item->Text();
        if (!name || !value_item) return kInvalidArgument;
        const ObjDef* object = NameLookup(*name).object;
        if (object == nullptr) return kNotFound;
        const char* value = value_item->value.data();
        if (const int code = ParameterCheck(value, &object->check))
        {
            LOG_ALWAYS("ObjsParameterCheck", "%s(%s) verify error", object->name, value);
            return code;
        }
    }
    return kSuccess;
}
}  // namespace kobd

int includeForbiddenCharacter(const char* text, const char* set, int count)
{
    if (text == nullptr || set == nullptr) return 0;
    for (int i = 0; i < count; ++i)
        if (set[i] != 0 && strchr(text, set[i]) != nullptr) return 1;
    return 0;
}
