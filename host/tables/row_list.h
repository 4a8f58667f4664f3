// One list of rows, each a block of bytes with a stable index. Rows lie in the order of their
// indexes, which is the order in which they were added.
//
// An index is never given again, not even after its row was deleted: a client that still holds the
// index of a deleted row must meet "not found", not somebody else's new row.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kobd::host
{
inline constexpr int kIndexNotFound = 13;
inline constexpr int kTableFull = 15;
inline constexpr int32_t kBeforeFirst = -1;  // previous index of the first call of next

struct Row
{
    std::vector<char> block;       // row size bytes, the index in the first four
    std::string parent_path = {};  // of layouts that have no column for it
};

int32_t IndexOf(const Row& row);

class RowList
{
public:
    // row_size in bytes; max_rows is what Add respects; first_index, 0 or above, goes to the first row.
    RowList(size_t row_size, size_t max_rows, int32_t first_index = 1)
        : row_size_(row_size), max_rows_(max_rows), first_index_(first_index), last_index_(first_index - 1)
    {
    }

    // Appends a row of zeros. 0 and its index; 15 when the list is full or out of indexes.
    int Add(int32_t* index);

    // Appends a row of zeros under an index above all given so far, whatever the maximum. nullptr
    // when the index was given before or lies before the first.
    Row* Append(int32_t index);

    // 0; 13 no such row.
    int Del(int32_t index);

    // Puts a row back that was deleted, under its index.
    void Put(Row row);

    // The row, or nullptr; valid until rows are added or deleted.
    Row* Find(int32_t index);

    // The row behind `previous`, the first for kBeforeFirst; nullptr when there is none or `previous`
    // is no row. Following next from row to row costs the same at every row.
    const Row* Next(int32_t previous);

    const std::vector<Row>& Rows() const { return rows_; }
    size_t RowSize() const { return row_size_; }

    // The highest index given so far, the one before the first for none. Raised to `last`, never lowered.
    int32_t LastIndex() const { return last_index_; }

    // The index that Add gives; the highest one, which is given, when there is none left.
    int32_t NextIndex() const { return last_index_ == INT32_MAX ? INT32_MAX : last_index_ + 1; }
    void RaiseLastIndex(int32_t last);

    // Empties the list and forgets which indexes were given.
    void Clear();

private:
    size_t Position(int32_t index);

    size_t row_size_;
    size_t max_rows_;
    int32_t first_index_;
    std::vector<Row> rows_;
    int32_t last_index_;
    size_t found_ = 0;  // where the last search ended: the next one of a walk is there or one further
};
}  // namespace kobd::host
