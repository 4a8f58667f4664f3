// The list operations through which validators read stored rows; the catalogue names them too.
#pragma once

#include <cstdint>

extern "C"
{
    // Each fills `row`, a block of its table's row size, with the stored row that follows the one
    // with index `previous` (-1: with the first) and returns 0; non-zero when there is none. The
    // block is the caller's.
    int securityMacFilterLsitNext(int32_t previous, void* row);
    int securityPortFilterLsitNext(int32_t previous, void* row);
    int securityIpFilterListNext(int32_t previous, void* row);
    int nextSecPortForwardList(int32_t previous, void* row);
    int securityNewParentControlListNext(int32_t previous, void* row);
    int nextBundledAddrList_net(int32_t previous, void* row);
    int speedDialListNext(int32_t previous, void* row);
    int nextStaticRouterList_net(int32_t previous, void* row);

    // Fills `row`, a block of ApnConfigTable's row size, with the APN profile `index` and returns 0;
    // non-zero when there is none.
    int getApnInstance(int32_t index, void* row);
}
