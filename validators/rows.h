// Rows as their checks see them: bytes without alignment, the index first, texts that may lack their zero
// byte. And the other rows that are stored in the same table.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <string_view>

#include "dictionary/row_field.h"
#include "validators/row_layouts.h"

namespace kobd
{
// A text field in its row, up to the zero byte; the whole width when there is none. The view is valid as
// long as the row, and shows its changes.
std::string_view FieldView(const void* row, TextField field);

// A copy of a text field, always with a zero byte.
class FieldCopy
{
public:
    FieldCopy(const void* row, TextField field);

    char* Text() { return text_; }
    const char* Text() const { return text_; }
    std::string_view View() const { return text_; }
    bool Empty() const { return text_[0] == 0; }

private:
    char text_[kWidestField + 1];
};

// Puts `text`, shorter than the field is wide, into the field with its zero byte.
void StoreField(void* row, TextField field, std::string_view text);

// Removes the blanks around a text field, in the row.
void TrimField(void* row, TextField field);

// Whether each of the fields has the same text in both rows.
bool SameFields(const void* a, const void* b, std::initializer_list<TextField> fields);

// The next operation of a table, see platform/lists.h.
using RowNext = int (*)(int32_t previous, void* row);

// Walks the rows stored in a table, but not the one whose index is `own`: a row is no duplicate of
// itself. Every read overwrites the row that was read before.
class OtherRows
{
public:
    //   block: the caller's, of the table's row size, zeroed
    OtherRows(RowNext next, int32_t own, void* block) : next_(next), own_(own), block_(block) {}

    // Reads the next row into the block; false at the end.
    bool Read();

    // The verdict once Read has returned false: 0, or 2 when the list did not come to an end and the
    // walk was given up. A row that was not read may collide, so the row is refused.
    int Result() const;

private:
    // Far above the 255 rows of the largest table.
    static constexpr int kMostSteps = 4096;

    RowNext next_;
    int32_t own_;
    void* block_;
    int32_t previous_ = -1;
    int steps_ = 0;
};

// A zeroed block for one row, from the heap; empty when there is no memory.
using RowBlock = std::unique_ptr<char[]>;
RowBlock NewRowBlock(uint32_t size);
}  // namespace kobd
