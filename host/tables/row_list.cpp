// One list of rows: a sorted array, searched from where the last search ended.
#include "host/tables/row_list.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace kobd::host
{
int32_t IndexOf(const Row& row)
{
    int32_t index;
    memcpy(&index, row.block.data(), sizeof index);
    return index;
}

int RowList::Add(int32_t* index)
{
    if (rows_.size() >= max_rows_ || last_index_ == INT32_MAX) return kTableFull;
    *index = last_index_ + 1;
    Append(*index);
    return 0;
}

Row* RowList::Append(int32_t index)
{
    if (index <= last_index_) return nullptr;
    Row& row = rows_.emplace_back(Row{std::vector<char>(row_size_)});
    last_index_ = index;
    memcpy(row.block.data(), &index, sizeof index);
    return &row;
}

int RowList::Del(int32_t index)
{
    const size_t position = Position(index);
    if (position == rows_.size()) return kIndexNotFound;
    rows_.erase(rows_.begin() + static_cast<ptrdiff_t>(position));
    return 0;
}

void RowList::Put(Row row)
{
    const auto place = std::lower_bound(rows_.begin(), rows_.end(), IndexOf(row),
                                        [](const Row& one, int32_t index) { return IndexOf(one) < index; });
    rows_.insert(place, std::move(row));
}

Row* RowList::Find(int32_t index)
{
    const size_t position = Position(index);
    return position == rows_.size() ? nullptr : &rows_[position];
}

const Row* RowList::Next(int32_t previous)
{
    if (previous == kBeforeFirst) return rows_.empty() ? nullptr : &rows_.front();
    const size_t position = Position(previous);
    return position + 1 >= rows_.size() ? nullptr : &rows_[position + 1];
}

void RowList::RaiseLastIndex(int32_t last) { last_index_ = std::max(last_index_, last); }

void RowList::Clear()
{
    rows_.clear();
    last_index_ = first_index_ - 1;
}

// Where the row is, or the number of rows.
size_t RowList::Position(int32_t index)
{
    for (size_t near = found_; near < rows_.size() && near <= found_ + 1; ++near)
        if (IndexOf(rows_[near]) == index) return found_ = near;
    const auto found = std::lower_bound(rows_.begin(), rows_.end(), index,
                                        [](const Row& row, int32_t wanted) { return IndexOf(row) < wanted; });
    if (found == rows_.end() || IndexOf(*found) != index) return rows_.size();
    return found_ = static_cast<size_t>(found - rows_.begin());
}
}  // namespace kobd::host
