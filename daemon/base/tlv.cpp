// Reader and writer of payload items.
#include "daemon/base/tlv.h"

#include <cstring>

namespace kobd
{
namespace
{
uint16_t LoadU16(const char* bytes)
{
    uint16_t value;
    memcpy(&value, bytes, sizeof value);
    return value;
}

void StoreItemHeader(char* place, uint16_t tag, uint16_t length)
{
    memcpy(place, &tag, sizeof tag);
    memcpy(place + sizeof tag, &length, sizeof length);
}
}  // namespace

std::optional<std::string_view> TlvItem::Text() const
{
    const void* end = value.empty() ? nullptr : memchr(value.data(), 0, value.size());
    if (end == nullptr) return std::nullopt;
    return std::string_view(value.data(), static_cast<size_t>(static_cast<const char*>(end) - value.data()));
}

std::optional<int32_t> TlvItem::Int() const
{
    int32_t number;
    if (value.size() != sizeof number) return std::nullopt;
    memcpy(&number, value.data(), sizeof number);
    return number;
}

std::optional<TlvItem> TlvReader::Next()
{
    if (left_.empty()) return std::nullopt;
    if (left_.size() < kItemHeader)
    {
        broken_ = true;
        return std::nullopt;
    }
    const uint16_t tag = LoadU16(left_.data());
    const size_t length = LoadU16(left_.data() + sizeof tag);
    if (length > left_.size() - kItemHeader)
    {
        broken_ = true;
        return std::nullopt;
    }
    const TlvItem item{tag, left_.subspan(kItemHeader, length)};
    left_ = left_.subspan(kItemHeader + length);
    return item;
}

bool PayloadIsSound(std::span<const char> payload)
{
    TlvReader reader(payload);
    while (const auto item = reader.Next())
    {
        const bool integer = item->tag == kTagResult || item->tag == kTagRowIndex;
        if (integer ? !item->Int() : !item->Text()) return false;
    }
    return !reader.Broken();
}

bool TlvWriter::Text(uint16_t tag, std::string_view text)
{
    const size_t length = text.size() + 1;
    if (length > UINT16_MAX || kItemHeader + length > room_.size() - used_) return false;
    char* place = room_.data() + used_;
    used_ += kItemHeader + length;
    StoreItemHeader(place, tag, static_cast<uint16_t>(length));
    place[kItemHeader + text.size()] = 0;
    if (!text.empty()) memcpy(place + kItemHeader, text.data(), text.size());  // an empty view may point nowhere
    return true;
}

bool TlvWriter::Int(uint16_t tag, int32_t value)
{
    if (kIntItem > room_.size() - used_) return false;
    StoreItemHeader(room_.data() + used_, tag, sizeof value);
    memcpy(room_.data() + used_ + kItemHeader, &value, sizeof value);
    used_ += kIntItem;
    return true;
}
}  // namespace kobd
