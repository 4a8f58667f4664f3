// What the log says when a state file could not be loaded.
#include "platform/host/load_report.h"

#include <cerrno>
#include <cstring>

#include "platform/kobd_exports.h"

namespace kobd::host
{
void ReportLoad(const char* function, const std::string& path, LoadResult result)
{
    if (result == LoadResult::kUnreadable)
        kobd_log_print(function, __LINE__, "cannot read %s (%s), factory values serve", path.c_str(), strerror(errno));
    if (result != LoadResult::kDamaged) return;
    const std::string aside = KeepAside(path);
    kobd_log_print(function, __LINE__, "%s is damaged, kept as %s, factory values serve", path.c_str(),
                   aside.empty() ? "it is" : aside.c_str());
}
}  // namespace kobd::host
