// Messages that have their row in the handler table and are not served yet: each logs that and
// sends no reply, so that nobody takes silence for success.
#pragma once

#include "platform/message.h"

// The formatter changes its mind about this list at every run.
// clang-format off
#define KOBD_UNSERVED(ROW) \
    ROW(EvtApnChange) \
    ROW(EvtApnIPChange) \
    ROW(EvtNetworkUp) \
    ROW(EvtNetworkDown) \
    ROW(EvtPCscfIPChange) \
    ROW(EvtEthernetUp) \
    ROW(EvtEthernetDown) \
    ROW(EvtEthernetIPAdd) \
    ROW(EvtEthernetIPDel)
// clang-format on

namespace kobd
{
#define DECLARE(name) int name(MessageHeader* message);
KOBD_UNSERVED(DECLARE)
#undef DECLARE
}  // namespace kobd
