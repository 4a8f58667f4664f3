// The four families with their functions, for tests that hold for each.
#pragma once

#include <ostream>
#include <string>

#include "cellular/cellular_lists.h"
#include "dictionary/catalogue/columns/cellular.h"

namespace kobd::test
{
struct FamilyFunctions
{
    const char* word;
    const RowLayout* layout;
    const char* index_config;
    int (*add)(int32_t*);
    int (*del)(int32_t);
    int (*get)(int32_t, void*);
    int (*set)(int32_t, const void*);
    int (*next)(int32_t, void*);
    void (*init)();
    int (*save)(const char*, void*, int);
};

#define FUNCTIONS(stem) stem##Add, stem##Del, stem##Get, stem##Set, stem##Next, stem##Init, stem##Save
inline const FamilyFunctions kFamilies[] = {
    {"cellularinterface", &kCellularInterface, "tr069_cellular", FUNCTIONS(cellularinterfaceList)},
    {"cellularusim", &kCellularUSIM, "tr069_interface", FUNCTIONS(cellularusimList)},
    {"cellularstats", &kCellularStats, "tr069_interface", FUNCTIONS(cellularstatsList)},
    {"cellularaccesspoint", &kCellularaccesspoint, "tr069_interface", FUNCTIONS(cellularaccesspointList)},
};
#undef FUNCTIONS

inline void PrintTo(const FamilyFunctions& family, std::ostream* out) { *out << family.word; }

// A row of exactly its size on the heap, so that the sanitizers see every byte read beside it.
class TestRow
{
public:
    explicit TestRow(const FamilyFunctions& family) : layout_(*family.layout), bytes_(layout_.row_size, '\0') {}

    void* Bytes() { return bytes_.data(); }
    int32_t Index() const;
    std::string Text(size_t column) const;  // columns as the catalogue counts them; 0 is pIndex
    std::string SectionName() const;
    void SetText(size_t column, const std::string& text);
    void SetSectionName(const std::string& text);

private:
    const RowLayout& layout_;
    std::string bytes_;
};
}  // namespace kobd::test
