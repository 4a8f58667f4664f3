// The running values of all objects of the host platform.
#pragma once

#include <cstddef>
#include <string>

#include "host/state/state_store.h"

namespace kobd::host
{
// Loads the committed values of the file at `path` over the factory's.
void ObjectValuesLoad(const std::string& path);

// Whether values changed since the last ObjectValuesKept, what the file shall hold (the values that
// differ from the factory's), and that it does.
bool ObjectValuesChanged();
Settings ObjectValuesState();
void ObjectValuesKept();

// Behind the accessors; `number` is the object's row in the catalogue. 0, or 17 for a value that
// does not fit the buffer of object get, and when memory runs out; nothing has changed then.
int ObjectValueGet(size_t number, char* value);
int ObjectValueSet(size_t number, const char* value);

// As ObjectValueSet, for objects that start something: one line goes to the journal as well.
int ObjectAction(size_t number, const char* value);
}  // namespace kobd::host
