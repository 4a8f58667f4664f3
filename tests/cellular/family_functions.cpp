// Rows of the cellular families, by the catalogue's columns.
#include "tests/cellular/family_functions.h"

#include <cstring>

namespace kobd::test
{
namespace
{
constexpr size_t kSlot = 256;

std::string TextIn(const std::string& bytes, size_t offset)
{
    return {bytes.data() + offset, strnlen(bytes.data() + offset, kSlot)};
}

void Put(std::string* bytes, size_t offset, const std::string& text)
{
    bytes->replace(offset, kSlot, kSlot, '\0');
    bytes->replace(offset, text.size(), text);
}
}  // namespace

int32_t TestRow::Index() const
{
    int32_t index = 0;
    memcpy(&index, bytes_.data(), sizeof index);
    return index;
}

std::string TestRow::Text(size_t column) const { return TextIn(bytes_, layout_.columns[column].offset); }
std::string TestRow::SectionName() const { return TextIn(bytes_, bytes_.size() - kSlot); }
void TestRow::SetText(size_t column, const std::string& text) { Put(&bytes_, layout_.columns[column].offset, text); }
void TestRow::SetSectionName(const std::string& text) { Put(&bytes_, bytes_.size() - kSlot, text); }
}  // namespace kobd::test
