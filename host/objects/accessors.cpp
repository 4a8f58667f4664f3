// Every object accessor of the host platform, made from the object rows: each reads or keeps the
// running value of its row. An accessor that serves several objects is defined at the first row
// that names it; later rows mark it SHARED. OWN ones are the daemon's.
#include <cstddef>

#include "dictionary/catalogue/accessors.h"
#include "host/objects/object_values.h"

using namespace kobd::host;

namespace
{
constexpr size_t kFirst = __COUNTER__ + 1;
}

#define DEFINE_GET(number, getter) \
    int getter(char* value) { return ObjectValueGet(number, value); }
#define DEFINE_SET(number, setter) \
    int setter(const char* value) { return ObjectValueSet(number, value); }
#define DEFINE_ACTION(number, setter) \
    int setter(const char* value) { return ObjectAction(number, value); }
#define DEFINE_NOTHING(...)

// SHARED(f) and OWN(f) make two arguments of one, which shifts DEFINE_NOTHING to the third place.
#define SHARED(accessor) accessor, shared
#define OWN(accessor) accessor, own
#define THIRD(first, second, third, ...) third
#define PICK(define, ...) THIRD(__VA_ARGS__, DEFINE_NOTHING, define, unused)
#define GET(number, ...) PICK(DEFINE_GET, __VA_ARGS__)(number, __VA_ARGS__)
#define SET(number, ...) PICK(DEFINE_SET, __VA_ARGS__)(number, __VA_ARGS__)
#define ACT(number, ...) PICK(DEFINE_ACTION, __VA_ARGS__)(number, __VA_ARGS__)

// Every row takes two numbers of the counter, so that half the count is the row's number.
#define NUMBER ((__COUNTER__ - kFirst) / 2)
#define NO_ACCESSOR static_assert(NUMBER < 0xFFFF);
#define OBJECT(name, type, getter, setter, ...) GET(NUMBER, getter) SET(NUMBER, setter)
#define RO(name, type, getter, ...) GET(NUMBER, getter) NO_ACCESSOR
#define WO(name, type, setter, ...) NO_ACCESSOR ACT(NUMBER, setter)
#define ACTION(name, type, setter, ...) NO_ACCESSOR ACT(NUMBER, setter)
#include "dictionary/catalogue/objects.def"
