// Every row layout of the catalogue.
//   A column: name, offset in the row in bytes, type, length in bytes of a text with its zero byte
//   (other fields have the width of their type), name of the column whose bytes it shares, if any.
//   A layout: its columns, and the size of a row in bytes.
#pragma once

#include "dictionary/catalogue/columns/cellular.h"
#include "dictionary/catalogue/columns/devices.h"
#include "dictionary/catalogue/columns/firewall.h"
#include "dictionary/catalogue/columns/mobile.h"
#include "dictionary/catalogue/columns/name_services.h"
#include "dictionary/catalogue/columns/nodes_cellular.h"
#include "dictionary/catalogue/columns/nodes_dhcp.h"
#include "dictionary/catalogue/columns/nodes_diagnostics.h"
#include "dictionary/catalogue/columns/nodes_interfaces.h"
#include "dictionary/catalogue/columns/nodes_upnp.h"
#include "dictionary/catalogue/columns/routing.h"
#include "dictionary/catalogue/columns/system.h"
#include "dictionary/catalogue/columns/wifi.h"
