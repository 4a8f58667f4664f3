// The stores that the router's processes share: short texts by key in the database, and the factory's where it has
// none. platform/nvram.h and platform/config.h are what others call.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "host/state/history.h"

namespace kobd::host
{
inline constexpr size_t kStoreKeyMax = 128;     // characters
inline constexpr size_t kStoreValueMax = 2047;  // characters: what an object get can hand out

// Around a request of the process `asked`. When the request is `committed`, what it sets waits for that commit and is
// durable together with its objects and rows. At any other time each set is a transaction of its own.
void StoresBeginRequest(int asked, bool committed);
void StoresEndRequest();

// Whether something waits; writes it in the transaction of a commit; and that it was written.
bool StoresChanged();
void StoresWrite(Database* database, History* history);
void StoresWritten();

// The factory's value of an nvram key; nullptr data for a key that it does not have.
std::string_view NvramFactory(std::string_view key);

// Reads the value, of the factory where nobody has set one. False for an unknown key. `why` says why the database could
// not be read; the value is the factory's then. It is empty when all is well.
bool StoreRead(const char* store, std::string_view key, std::string* value, std::string* why);

// The keys that have a value, in the order of the alphabet; the factory's alone where the database cannot be read.
std::vector<std::string> StoreKeys(const char* store);

// As nvram_set and kob_set_config for the process that `asked`. The empty text, or why it was not set.
std::string StoreSet(const char* store, std::string_view key, std::string_view value, int asked);

// Takes the value away, so that the factory's is there again or none. As StoreSet.
std::string StoreUnset(const char* store, std::string_view key, int asked);
}  // namespace kobd::host
