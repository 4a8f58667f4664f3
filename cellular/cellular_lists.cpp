// The four lists and their functions by name.
#include "cellular/cellular_lists.h"

#include "cellular/mirror.h"
#include "cellular/operations.h"

namespace
{
constinit kobd::CellularList interface_list{kobd::kInterfaceFamily};
constinit kobd::CellularList usim_list{kobd::kUsimFamily};
constinit kobd::CellularList stats_list{kobd::kStatsFamily};
constinit kobd::CellularList accesspoint_list{kobd::kAccesspointFamily};
}  // namespace

#define CELLULAR_LIST(stem, list)                                                                   \
    int stem##Add(int32_t* index) { return kobd::CellularAdd(list, index); }                        \
    int stem##Del(int32_t index) { return kobd::CellularDel(list, index); }                         \
    int stem##Get(int32_t index, void* row) { return kobd::CellularGet(list, index, row); }         \
    int stem##Set(int32_t index, const void* row) { return kobd::CellularSet(list, index, row); }   \
    int stem##Next(int32_t previous, void* row) { return kobd::CellularNext(list, previous, row); } \
    void stem##Init() { kobd::LoadList(list); }                                                     \
    int stem##Save(const char* section, void* row, int mode)                                        \
    {                                                                                               \
        return kobd::SaveEntry(list, section, static_cast<char*>(row), mode);                       \
    }

CELLULAR_LIST(cellularinterfaceList, interface_list)
CELLULAR_LIST(cellularusimList, usim_list)
CELLULAR_LIST(cellularstatsList, stats_list)
CELLULAR_LIST(cellularaccesspointList, accesspoint_list)
