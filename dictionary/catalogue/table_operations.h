// Declares every list operation and row validator that the table rows name.
#pragma once

#include <cstdint>

extern "C"
{
#define ADD(function) int function(int32_t* index);
#define DEL(function) int function(int32_t index);
#define GET(function) int function(int32_t index, void* row);
#define SET(function) int function(int32_t index, const void* row);
#define PATH(function) int function(int32_t index, const char* parent_path);
#define NEXT(function) int function(int32_t previous, void* row);
#define VALIDATE(function) int function(void* row);
#define SHARED(function) function
#define TABLE(name, layout, max_rows, ...) __VA_ARGS__
#define OWN_LIST(name, layout, max_rows, ...) __VA_ARGS__
#define SAME_LIST(...)
#include "dictionary/catalogue/tables.def"
#undef SHARED
}
