// Declares every accessor and validator that the object rows name.
#pragma once

#include "validators/address.h"
#include "validators/band_lock.h"
#include "validators/cbsd.h"
#include "validators/cell_lock.h"
#include "validators/channel_lock.h"
#include "validators/lan.h"
#include "validators/management.h"
#include "validators/radio.h"
#include "validators/service.h"
#include "validators/sim.h"
#include "validators/url.h"
#include "validators/wan.h"

extern "C"
{
    // The get accessor of action objects: their reading has no meaning and is always "0".
    int zeroValueGet(char* value);

#define SHARED(accessor) accessor
#define OWN(accessor) accessor
#define DECLARE_GET(getter) int getter(char* value);
#define DECLARE_SET(setter) int setter(const char* value);
#define OBJECT(name, type, getter, setter, ...) DECLARE_GET(getter) DECLARE_SET(setter)
#define RO(name, type, getter, ...) DECLARE_GET(getter)
#define WO(name, type, setter, ...) DECLARE_SET(setter)
#define ACTION(name, type, setter, ...) DECLARE_SET(setter)
#include "dictionary/catalogue/objects.def"
#undef OBJECT
#undef RO
#undef WO
#undef ACTION
#undef DECLARE_GET
#undef DECLARE_SET
#undef SHARED
#undef OWN
}
