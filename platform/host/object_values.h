// The running values of all objects of the host platform.
#pragma once

#include <cstddef>

namespace kobd::host
{
// Loads the committed values over the factory's. Called once, before the bus is joined.
void ObjectValuesLoad();

// Writes the values that differ from the factory's. 0, or 14 when the file could not be written.
int ObjectValuesCommit();

// Behind the accessors; `number` is the object's row in the catalogue. 0, or 17 for a value that
// does not fit the buffer of object get.
int ObjectValueGet(size_t number, char* value);
int ObjectValueSet(size_t number, const char* value);

// As ObjectValueSet, for objects that start something: one line goes to the journal as well.
int ObjectAction(size_t number, const char* value);
}  // namespace kobd::host
