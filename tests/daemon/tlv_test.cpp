// Items of a payload: bounds at every cut, writers that do not fit.
#include <gtest/gtest.h>

#include <array>

#include "tests/requests.h"

namespace kobd::test
{
using namespace std::string_literals;

TEST(Tlv, EveryCutGivesTheWholeItemsAndNoByteMore)
{
    const std::string items[] = {Name("abc"), RawItem(kTagRowIndex, "\x01\x00\x00\x00"s), TextItem(kTagValue, "")};
    std::string payload;
    std::vector<size_t> ends = {0};
    for (const std::string& item : items) ends.push_back((payload += item).size());
    for (size_t cut = 0; cut <= payload.size(); ++cut)
    {
        ExactMessage message(payload.substr(0, cut));
        TlvReader reader({reinterpret_cast<const char*>(message.Header() + 1), cut});
        size_t whole = 0;
        while (whole + 1 < ends.size() && ends[whole + 1] <= cut) ++whole;
        size_t seen = 0;
        while (reader.Next()) ++seen;
        EXPECT_EQ(seen, whole) << "cut at " << cut;
        EXPECT_EQ(reader.Broken(), ends[whole] != cut) << "cut at " << cut;
        EXPECT_EQ(reader.AtEnd(), ends[whole] == cut) << "cut at " << cut;
        EXPECT_FALSE(reader.Next()) << "a broken payload stays broken";
    }
}

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
        const std::unique_ptr<char[]> block(new char[c.value.size()]);
        memcpy(block.get(), c.value.data(), c.value.size());
        const TlvItem item{kTagValue, {block.get(), c.value.size()}};
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
        {"\x01\x00\xFF\xFF"s + "a\0"s, false, "length far past the end"},
        {"\x01\x00\x03\x00"s + "a\0"s, false, "length one past the end"},
    };
    for (const auto& c : kCases) EXPECT_EQ(PayloadIsSound(c.payload), c.sound) << c.why;
}

TEST(Tlv, WriterWritesAllOrNothing)
{
    for (size_t room = 0; room <= 9; ++room)
    {
        std::array<char, 16> bytes;
        bytes.fill('#');
        TlvWriter text({bytes.data(), room});
        const bool text_fits = room >= 4 + 3 + 1;
        EXPECT_EQ(text.Text(kTagObjectName, "abc"), text_fits) << room;
        EXPECT_EQ(text.Size(), text_fits ? 8u : 0u) << room;
        EXPECT_EQ(bytes[text.Size()], '#') << room;
        EXPECT_EQ(bytes[0] == '#', !text_fits) << room;

        bytes.fill('#');
        TlvWriter number({bytes.data(), room});
        EXPECT_EQ(number.Int(kTagResult, -1), room >= 8) << room;
        EXPECT_EQ(bytes[number.Size()], '#') << room;
    }
}

TEST(Tlv, TextLongerThanALengthFieldIsRefused)
{
    std::vector<char> room(70000);
    TlvWriter writer(room);
    EXPECT_FALSE(writer.Text(kTagValue, std::string(65535, 'x'))) << "65536 with its zero byte";
    EXPECT_TRUE(writer.Text(kTagValue, std::string(65534, 'x')));
}
}  // namespace kobd::test
