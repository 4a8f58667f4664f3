// All exported functions, for tests that expand tests/system/exported_names.def.
#pragma once

#include <algorithm>
#include <iterator>
#include <string_view>

#include "daemon/exported_data.h"
#include "platform/kobd_exports.h"
#include "validators/access_rules.h"
#include "validators/address.h"
#include "validators/address_arithmetic.h"
#include "validators/band_lock.h"
#include "validators/bundled_address.h"
#include "validators/cbsd.h"
#include "validators/cell_lock.h"
#include "validators/channel_lock.h"
#include "validators/domain.h"
#include "validators/filters.h"
#include "validators/lan.h"
#include "validators/management.h"
#include "validators/new_parent_control.h"
#include "validators/port.h"
#include "validators/port_forward.h"
#include "validators/radio.h"
#include "validators/regex.h"
#include "validators/rule_name.h"
#include "validators/service.h"
#include "validators/sim.h"
#include "validators/speed_dial.h"
#include "validators/static_route.h"
#include "validators/texts.h"
#include "validators/url.h"
#include "validators/url_filter.h"
#include "validators/wan.h"

namespace kobd::test
{
// Whether the exported function of that name answers 1 for yes and 0 for no.
inline bool IsPredicate(std::string_view name)
{
    constexpr std::string_view kPredicates[] = {
        "validIp",       "validIpInput",     "validProtocol",        "validPortFormat",
        "isBroadcastIP", "isLastByteZeroIP", "validNameRestriction", "includeForbiddenCharacter"};
    return std::find(std::begin(kPredicates), std::end(kPredicates), name) != std::end(kPredicates);
}
}  // namespace kobd::test
