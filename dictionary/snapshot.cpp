// Staged values and the view of them that validators have.
#include "dictionary/snapshot.h"

#include <cstring>
#include <new>

#include "daemon/base/result.h"
#include "dictionary/name_index.h"
#include "platform/kobd_exports.h"

namespace kobd
{
namespace
{
StagedValue* first_staged = nullptr;
}

int StageValue(const ObjDef& object, std::string_view value)
{
    char* copy = static_cast<char*>(::operator new(value.size() + 1, std::nothrow));
    if (copy == nullptr) return kMallocFailed;
    memcpy(copy, value.data(), value.size());
    copy[value.size()] = 0;

    StagedValue* staged = object.staged;
    if (staged->text == nullptr)
    {
        staged->next = first_staged;
        first_staged = staged;
    }
    ::operator delete(staged->text);
    staged->text = copy;
    return kSuccess;
}

void StagedValuesFree()
{
    while (first_staged != nullptr)
    {
        StagedValue* staged = first_staged;
        first_staged = staged->next;
        ::operator delete(staged->text);
        *staged = {};
    }
}

int SnapshotRead(const char* name, std::span<char> value)
{
    value[0] = 0;
    const ObjDef* object = NameLookup(name).object;
    if (object == nullptr) return kNotFound;
    char read[kValueBuffer] = {};
    const char* text = object->staged->text;
    if (text == nullptr)
    {
        if (object->get == nullptr) return kMethodUnavailable;
        if (const int code = object->get(read)) return code;
        text = read;
    }
    const size_t bytes = strlen(text) + 1;
    if (bytes > value.size()) return kBufferLimit;
    memcpy(value.data(), text, bytes);
    return kSuccess;
}
}  // namespace kobd

int SnapshotGet(const char* name, char* value)
{
    const kobd::ObjDef* object = name != nullptr ? kobd::NameLookup(name).object : nullptr;
    if (object == nullptr) return kobd::kNotFound;
    if (value == nullptr) return kobd::kInvalidArgument;
    if (object->staged->text != nullptr)
    {
        strcpy(value, object->staged->text);
        return kobd::kSuccess;
    }
    return object->get != nullptr ? object->get(value) : kobd::kMethodUnavailable;
}
