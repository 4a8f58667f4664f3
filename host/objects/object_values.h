// The running values of all objects of the host platform.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "host/state/history.h"

namespace kobd::host
{
// Gives every object the factory's value, then those that the database has, where it is one. Names that this build does
// not know are reported, and stay in the database.
void ObjectValuesLoad(Database* database);

// Whether values changed since the last ObjectValuesWritten; writes them in the transaction of a commit; and that they
// were written.
bool ObjectValuesChanged();
void ObjectValuesWrite(Database* database, History* history);
void ObjectValuesWritten();

// Adds the names of the objects that changed since then.
void ObjectValuesChangedNames(std::vector<std::string>* names);

// To be called when the database is another one: the next commit writes every value that differs from the factory's.
void ObjectValuesAllChanged();

// The factory's value of an object, by its number; of one that shows rows the empty text.
std::string ObjectFactoryValue(size_t number);

// Behind the accessors; `number` is the object's row in the catalogue. 0, or 17 for a value that
// does not fit the buffer of object get, and when memory runs out; nothing has changed then.
int ObjectValueGet(size_t number, char* value);
int ObjectValueSet(size_t number, const char* value);

// As ObjectValueSet, for objects that start something: one line goes to the journal as well.
int ObjectAction(size_t number, const char* value);
}  // namespace kobd::host
