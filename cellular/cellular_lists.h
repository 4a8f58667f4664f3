// The cellular lists of the management agent under the names by which the table catalogue knows
// them, and the accessors of the cellular summary objects.
//
//   Add, Del, Get, Set, Next   the table operations (cellular/operations.h)
//   Init                       loads the list from the configuration again
//   Save                       writes one entry: mode 0 delete, 1 add, 2 modify (cellular/mirror.h);
//                              `row` has the family's row size
#pragma once

#include <cstdint>

extern "C"
{
#define CELLULAR_LIST(stem)                        \
    int stem##Add(int32_t* index);                 \
    int stem##Del(int32_t index);                  \
    int stem##Get(int32_t index, void* row);       \
    int stem##Set(int32_t index, const void* row); \
    int stem##Next(int32_t previous, void* row);   \
    void stem##Init();                             \
    int stem##Save(const char* section, void* row, int mode);

    CELLULAR_LIST(cellularinterfaceList)
    CELLULAR_LIST(cellularusimList)
    CELLULAR_LIST(cellularstatsList)
    CELLULAR_LIST(cellularaccesspointList)
#undef CELLULAR_LIST

    // Read and write the configuration store. They return 0 even when the store fails. The `value` of a get
    // has room for 2048 bytes, as in an object get.
    int cellularRoamingEnableGet(char* value);
    int cellularRoamingEnableSet(const char* value);
    int cellularRoamingStatusGet(char* value);
    int cellularInterfaceNumberGet(char* value);
    int cellularAccessPointNumberGet(char* value);
}
