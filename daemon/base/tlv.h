// Reader and writer of the items of a payload: bounds-checked, on bytes at any alignment.
// Every handler and the client go through these two; nobody does arithmetic on items.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "daemon/base/messages.h"

namespace kobd
{
struct TlvItem
{
    uint16_t tag = 0;
    std::span<const char> value;  // within the payload

    // The value as text without its zero byte; nothing when no zero byte ends it. A zero byte
    // before the end ends the text there, as a receiver that uses it in place would see it.
    std::optional<std::string_view> Text() const;

    // The value as an integer; nothing when its length is not 4.
    std::optional<int32_t> Int() const;
};

class TlvReader
{
public:
    explicit TlvReader(std::span<const char> payload) : left_(payload) {}

    // The next item; nothing at the end and at an item that runs past the payload (then Broken).
    std::optional<TlvItem> Next();

    bool AtEnd() const { return left_.empty(); }
    bool Broken() const { return broken_; }

private:
    std::span<const char> left_;
    bool broken_ = false;
};

// True when every item of the payload lies inside it and, where its tag says text, is a text, or
// where its tag says integer, an integer.
bool PayloadIsSound(std::span<const char> payload);

class TlvWriter
{
public:
    explicit TlvWriter(std::span<char> room) : room_(room) {}

    // Append an item. False, and nothing written, when it does not fit.
    [[nodiscard]] bool Text(uint16_t tag, std::string_view text);
    [[nodiscard]] bool Int(uint16_t tag, int32_t value);

    size_t Size() const { return used_; }
    void Truncate(size_t size) { used_ = size; }

private:
    std::span<char> room_;
    size_t used_ = 0;
};
}  // namespace kobd
