// Changes of rows that are made together, or taken back when the router fails half way.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "web/api/bus.h"

namespace kobd::web
{
class RowChanges
{
public:
    RowChanges();

    // `columns` is an object of columns and values. Throws a Problem for what is none.
    void Add(const std::string& table, int32_t index, const Json& columns);

    // Throws a Problem when they are refused or fail; it says which rows were set back, and which could not be. A row
    // that cannot be read is refused before anything is set: the daemon would write the columns that it could not read
    // as empty ones.
    void Store();

    size_t Rows() const { return rows_.size(); }

private:
    using Address = std::pair<std::string, int32_t>;
    struct Free
    {
        void operator()(kobd_changes* changes) const { kobd_changes_free(changes); }
    };

    void TakeBack(const std::map<Address, Values>& before, Problem* problem) const;

    std::unique_ptr<kobd_changes, Free> changes_;
    std::map<Address, Values> rows_ = {};  // with their new values
};

// Reads the columns of a row. Returns as kobd_row_get does; `row` is empty unless that is 0.
int ReadRow(const std::string& table, int32_t index, Values* row);
}  // namespace kobd::web
