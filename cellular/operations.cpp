// The five operations, the same for every family.
#include "cellular/operations.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "cellular/mirror.h"
#include "daemon/base/log.h"
#include "daemon/base/reply.h"
#include "daemon/base/result.h"

namespace kobd
{
namespace
{
// 0; 4 the list cannot be loaded in this request.
[[nodiscard]] int LoadOnce(CellularList& list)
{
    if (list.loaded) return kSuccess;
    return list.failed == RequestNumber() ? int{kSystemError} : LoadList(list);
}

int CopyRow(const CellularList& list, CellularEntry* entry, void* row)
{
    if (entry == nullptr) return kIndexNotFound;
    memcpy(row, entry->Row(), list.family.row_size);
    return 0;
}

void TakeRow(CellularList& list, CellularEntry* entry, int32_t index, const void* row)
{
    memcpy(entry->Row(), row, list.family.row_size);
    SetRowIndex(entry->Row(), index);
    list.highest = std::max(list.highest, index);
}

// The section name as a text of its own, for the row it stands in is about to go.
struct SectionName
{
    SectionName(const CellularFamily& family, CellularEntry* entry)
    {
        SetTextAt(text, TextAt(entry->Row() + SectionNameOffset(family)));
    }
    char text[kCellularText];
};

int Modify(CellularList& list, CellularEntry* entry, int32_t index, const void* row)
{
    const SectionName section(list.family, entry);
    TakeRow(list, entry, index, row);
    const SectionName next(list.family, entry);
    if (strcmp(next.text, section.text) != 0)
        LOG_ALWAYS(list.family.save_name, "row %d is saved as \"%s\" and names \"%s\": later saves go there", index,
                   section.text, next.text);
    return SaveEntry(list, section.text, entry->Row(), kSaveModify);
}

int Create(CellularList& list, int32_t index, const void* row)
{
    CellularEntry* entry = NewEntry(list.family);
    if (entry == nullptr) return kMallocFailed;
    AppendEntry(list, entry);
    TakeRow(list, entry, index, row);
    return SaveEntry(list, "", entry->Row(), kSaveAdd);
}
}  // namespace

int CellularAdd(CellularList& list, int32_t* index)
{
    if (const int code = LoadOnce(list)) return code;
    if (list.count >= kCellularMax) return kTableFull;
    if (list.highest == std::numeric_limits<int32_t>::max()) return kTableFull;  // no index is left
    *index = list.highest + 1;
    return 0;
}

int CellularDel(CellularList& list, int32_t index)
{
    if (const int code = LoadOnce(list)) return code;
    CellularEntry* entry = FindEntry(list, index);
    if (entry == nullptr) return kIndexNotFound;
    const SectionName section(list.family, entry);
    UnlinkEntry(list, entry);
    ReleaseEntry(entry);
    return SaveEntry(list, section.text, nullptr, kSaveDelete);
}

int CellularGet(CellularList& list, int32_t index, void* row)
{
    if (const int code = LoadOnce(list)) return code;
    return CopyRow(list, FindEntry(list, index), row);
}

int CellularSet(CellularList& list, int32_t index, const void* row)
{
    if (const int code = LoadOnce(list)) return code;
    if (index < 0) return kIndexNotFound;
    if (CellularEntry* entry = FindEntry(list, index)) return Modify(list, entry, index, row);
    if (index <= list.highest || list.count >= kCellularMax) return kIndexNotFound;
    return Create(list, index, row);
}

int CellularNext(CellularList& list, int32_t previous, void* row)
{
    if (const int code = LoadOnce(list)) return code;
    CellularEntry* entry = previous == -1 ? &list.head : FindEntry(list, previous);
    return entry == nullptr ? kIndexNotFound : CopyRow(list, EntryAfter(list, entry), row);
}
}  // namespace kobd
