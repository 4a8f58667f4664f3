// What the log says when a state file could not be loaded.
#include "host/state/load_report.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

#include "platform/kobd_exports.h"

namespace kobd::host
{
namespace
{
std::vector<std::string> unreadable;  // paths, not yet replaced
}

void ReportLoad(const char* function, const std::string& path, LoadResult result)
{
    const int error = errno;
    const std::string file = WhatCounts(path);
    std::erase(unreadable, path);
    if (result == LoadResult::kUnreadable)
    {
        kobd_log_print(function, __LINE__, "cannot read %s (%s), factory values serve", file.c_str(), strerror(error));
        unreadable.push_back(path);
    }
    if (result != LoadResult::kDamaged) return;
    const std::string aside = KeepAside(file);
    kobd_log_print(function, __LINE__, "%s is damaged, kept as %s, factory values serve", file.c_str(),
                   aside.empty() ? "it is" : aside.c_str());
}

bool KeepUnreadable(const std::string& path)
{
    if (std::find(unreadable.begin(), unreadable.end(), path) == unreadable.end()) return true;
    const std::string file = WhatCounts(path);
    const std::string aside = KeepCopy(file);
    if (aside.empty() && errno != ENOENT) return false;
    std::erase(unreadable, path);
    if (!aside.empty())
        kobd_log_print("KeepUnreadable", __LINE__, "%s could not be read, kept as %s before it is replaced",
                       file.c_str(), aside.c_str());
    return true;
}
}  // namespace kobd::host
