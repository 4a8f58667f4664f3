// Items of a payload: the forms of their values, and writers that do not fit.
#include <gtest/gtest.h>

#include "tests/requests.h"

namespace kobd::test
{
using namespace std::string_literals;

TEST(Tlv, ValuesAreReadOnlyInTheirForm)
{
    const struct
    {
        std::string value;
        std::optional<std::string> text;
        std::optional<int32_t> number;
        const char* why;
    } kCases[] = {
        {"", std::nullopt, std::nullopt, "no byte, not even the zero byte"},
        {"\0"s, "", std::nullopt, "the empty text"},
        {"abc", std::nullopt, std::nullopt, "no zero byte inside the length"},
        {"ab\0cd\0"s, "ab", std::nullopt, "text ends at its first zero byte"},
        {"\xFF\xFF\xFF\xFF", std::nullopt, -1, "all bits set is minus one"},
        {"\x01\x00\x00"s, "\x01", std::nullopt, "three bytes are no integer"},
        {"\x01\x00\x00\x00\x00"s, "\x01", std::nullopt, "five bytes are no integer"},
    };
    for (const auto& c : kCases)
    {
        const std::vector<char> exact(c.value.begin(), c.value.end());
        const TlvItem item{kTagValue, exact};
        EXPECT_EQ(item.Text(), c.text) << c.why;
        EXPECT_EQ(item.Int(), c.number) << c.why;
    }
}

TEST(Tlv, SoundPayloads)
{
    const struct
    {
        std::string payload;
        bool sound;
        const char* why;
    } kCases[] = {
        {"", true, "nothing wrong with nothing"},
        {Pair("a", "b"), true, "texts"},
        {RawItem(kTagResult, "\0\0\0\0"s) + Name("a"), true, "a reply"},
        {RawItem(kTagResult, "\0\0\0"s), false, "result of three bytes"},
        {RawItem(kTagRowIndex, "1\0"s), false, "index as text"},
        {Name("a") + RawItem(kTagValue, "b"), false, "last text without its zero byte"},
        {Name("a") + "\x02", false, "one byte is no item header"},
        {"\x01\x00\x03\x00"s + "a\0"s, false, "length one past the end"},
    };
    for (const auto& c : kCases) EXPECT_EQ(PayloadIsSound(c.payload), c.sound) << c.why;
}

TEST(Tlv, WriterWritesAllOrNothing)
{
    for (size_t room = 0; room <= 9; ++room)
    {
        std::string bytes(16, '#');
        TlvWriter text({bytes.data(), room});
        EXPECT_EQ(text.Text(kTagObjectName, "abc"), room >= 4 + 3 + 1) << room;
        EXPECT_EQ(bytes, room >= 8 ? Name("abc") + std::string(8, '#') : std::string(16, '#')) << room;

        bytes.assign(16, '#');
        TlvWriter number({bytes.data(), room});
        EXPECT_EQ(number.Int(kTagResult, -1), room >= 8) << room;
        EXPECT_EQ(bytes, room >= 8 ? IntItem(0, -1) + std::string(8, '#') : std::string(16, '#')) << room;
    }
    std::string room(70000, '\0');
    TlvWriter writer(room);
    EXPECT_FALSE(writer.Text(kTagValue, std::string(65535, 'x')))
        << "65536 with its zero byte: no length field holds it";
    EXPECT_TRUE(writer.Text(kTagValue, std::string(65534, 'x')));
}
}  // namespace kobd::test
