// A router has a uci on its PATH; elsewhere our own serves. It stands beside the daemon in a build
// folder, and in a folder of its own where it was installed, so that it never hides another.
#include "host/uci_path.h"

#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <new>
#include <string>
#include <string_view>

#include "host/state/report.h"

namespace kobd::host
{
namespace
{
constexpr std::string_view kUsualPath = "/usr/sbin:/usr/bin:/sbin:/bin";  // of a process without PATH

bool HasUci(const std::string& folder) { return access((folder + "/uci").c_str(), X_OK) == 0; }

bool OnPath(std::string_view path)
{
    while (true)
    {
        const size_t colon = path.find(':');
        if (HasUci(std::string(path.substr(0, colon)))) return true;
        if (colon == std::string_view::npos) return false;
        path.remove_prefix(colon + 1);
    }
}

// The folder of the running program, empty when it cannot be told.
std::string ProgramFolder()
{
    char program[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", program, sizeof program);
    const std::string path(program, length > 0 ? static_cast<size_t>(length) : 0);
    return path.substr(0, path.rfind('/') == std::string::npos ? 0 : path.rfind('/'));
}
}  // namespace

void ProvideUci()
try
{
    const char* inherited = getenv("PATH");
    const std::string path = inherited != nullptr ? inherited : std::string(kUsualPath);
    if (OnPath(path)) return;
    const std::string beside = ProgramFolder();
    if (beside.empty()) return;
    for (const std::string& folder : {beside, beside + "/" KOBD_UCI_FOLDER})
    {
        if (!HasUci(folder)) continue;
        setenv("PATH", (path + ":" + folder).c_str(), 1);
        return;
    }
}
catch (const std::bad_alloc&)
{
    OutOfMemory("ProvideUci", 0);
}
}  // namespace kobd::host
