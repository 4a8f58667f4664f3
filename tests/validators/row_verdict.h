// Rows for the row validators, and what a validator made of one.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tests/tables/table_rows.h"

namespace kobd::test
{
struct RowVerdict
{
    int code = -1;
    std::string row;                 // as the validator left it
    std::vector<std::string> lines;  // "function: message"
    std::vector<std::string> own;    // the messages of the validator itself
};

// Calls the validator with the row in a block of exactly its size at an odd address, so that the
// sanitizers see every byte read beside it and every access that needs alignment.
RowVerdict JudgeRow(int (*validator)(void*), const char* name, const std::string& row);

struct RowCheck
{
    int (*validator)(void*);
    const char* name;   // of the validator
    const char* table;  // whose layout the row has and whose list holds the stored rows
    Fields good;        // an acceptable row

    std::string Row(int32_t index, const Fields& changes = {}) const;
    // The row with every byte of a text field set to `c`, the zero byte too.
    std::string Unended(std::string_view column, char c) const;

    RowVerdict Judge(const std::string& row) const { return JudgeRow(validator, name, row); }

    // Each column with no zero byte inside its width: nothing beside it is read (which the
    // sanitizers see at the end of the row) or written.
    void ExpectNothingBesideFields() const;

    // A list without an end is given up and the row refused; the row itself is left out of the
    // comparison; without memory `no_memory` is written (nullptr: the walk needs none).
    void ExpectWalk(const char* no_memory) const;
};

// A fresh recording platform and a dictionary that finds its names.
void ResetRows();

// While one lives, blocks for rows cannot be had from the heap.
class NoMemoryForRows
{
public:
    NoMemoryForRows();
    ~NoMemoryForRows();
    NoMemoryForRows(const NoMemoryForRows&) = delete;
    NoMemoryForRows& operator=(const NoMemoryForRows&) = delete;
};
}  // namespace kobd::test
