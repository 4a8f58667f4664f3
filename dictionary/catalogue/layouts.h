// Every row layout of the catalogue.
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
