// The files of page/ and the plotting library, as the build puts them into the program.
#pragma once

#include <span>
#include <string_view>

namespace kobd::web
{
struct PageFile
{
    std::string_view name;
    std::string_view content;
};
extern const std::span<const PageFile> kPageFiles;
}  // namespace kobd::web
