// A store that the router's processes share: short texts by key in one readable file of the state
// folder. Every get reads the file, so that a set of another process is seen at once; every set
// replaces the file under a lock and is durable when it returns.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "host/state/state_store.h"

namespace kobd::host
{
inline constexpr size_t kStoreKeyMax = 128;     // characters
inline constexpr size_t kStoreValueMax = 2047;  // characters: what an object get can hand out

struct FactoryValue
{
    std::string_view key;
    std::string_view value;
};

class SharedStore
{
public:
    // file: name within the state folder, which holds what differs from `factory`; the lock is the
    // file "<file>.lock" beside it, never replaced. Both arguments must outlive the store.
    constexpr SharedStore(const char* file, std::span<const FactoryValue> factory) : file_(file), factory_(factory) {}

    // Copies the value of `key` into `value`, cut to `size` - 1 characters. 0, or -1 and the empty
    // text: errno ENOENT for an unknown key, ENOMEM when memory ran out. A file that is damaged is kept aside and
    // reported, one that cannot be read is reported; factory values then serve.
    int Get(const char* key, char* value, size_t size) const;

    // 0, or -1 when nothing was changed: a key that is no name or a text that is too long, a lock
    // that another process keeps for two seconds, a file that cannot be read or written, no memory (reported).
    int Set(const char* key, const char* value) const;

private:
    std::string Path() const;
    // False when the key has that value already: then nothing needs writing.
    bool Change(Settings* settings, std::string_view key, std::string_view value) const;
    std::string_view Factory(std::string_view key) const;

    const char* file_;
    std::span<const FactoryValue> factory_;
};
}  // namespace kobd::host
