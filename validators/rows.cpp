// Reading rows whose bytes nobody has looked at yet.
#include "validators/rows.h"

#include <algorithm>
#include <new>

#include "validators/check.h"
#include "validators/texts.h"

namespace kobd
{
std::string_view FieldView(const void* row, TextField field)
{
    const char* text = static_cast<const char*>(row) + field.offset;
    return {text, strnlen(text, field.width)};
}

FieldCopy::FieldCopy(const void* row, TextField field)
{
    const std::string_view text = FieldView(row, field);
    memcpy(text_, text.data(), text.size());
    text_[text.size()] = 0;
}

void StoreField(void* row, TextField field, std::string_view text)
{
    char* place = static_cast<char*>(row) + field.offset;
    memmove(place, text.data(), text.size());
    place[text.size()] = 0;
}

void TrimField(void* row, TextField field)
{
    FieldCopy text(row, field);
    Trim(text.Text());
    if (text.View() != FieldView(row, field)) StoreField(row, field, text.View());
}

bool SameFields(const void* a, const void* b, std::initializer_list<TextField> fields)
{
    return std::all_of(fields.begin(), fields.end(),
                       [&](TextField field) { return FieldView(a, field) == FieldView(b, field); });
}

bool OtherRows::Read()
{
    while (steps_++ < kMostSteps)
    {
        if (next_(previous_, block_) != 0) return false;
        previous_ = RowIndex(block_);
        if (previous_ != own_) return true;
    }
    LOG_ALWAYS("OtherRows", "the stored rows have no end, given up after %d\n", kMostSteps);
    return false;
}

int OtherRows::Result() const { return steps_ > kMostSteps ? kInvalidArgument : kSuccess; }

RowBlock NewRowBlock(uint32_t size) { return RowBlock(new (std::nothrow) char[size]()); }
}  // namespace kobd
