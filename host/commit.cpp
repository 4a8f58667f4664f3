// One commit of objects and rows: only what changed is written, and what changed becomes durable as
// a whole or not at all.
#include "host/commit.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <vector>

#include "host/objects/object_values.h"
#include "host/state/load_report.h"
#include "host/state/report.h"
#include "host/state/state_store.h"
#include "host/tables/list_state.h"
#include "platform/kob_platform.h"
#include "platform/kobd_exports.h"

namespace kobd::host
{
namespace
{
constexpr int kUpdateFailed = 14;
constexpr const char* kObjectsFile = "objects";
constexpr const char* kTablesFile = "tables";

bool KeepUnreadableOf(const std::vector<StateFile>& files)
{
    return std::all_of(files.begin(), files.end(),
                       [](const StateFile& file) { return KeepUnreadable(StateFolder() + "/" + file.name); });
}

int Commit()
try
{
    std::vector<StateFile> files;
    const bool objects = ObjectValuesChanged();
    const bool tables = ListsChanged();
    if (objects) files.push_back({kObjectsFile, ObjectValuesState()});
    if (tables) files.push_back({kTablesFile, ListsState()});
    if (!KeepUnreadableOf(files) || !SaveTogether(StateFolder(), files))
    {
        kobd_log_print("update_config", __LINE__, "cannot write the state in %s: %s", StateFolder().c_str(),
                       strerror(errno));
        return kUpdateFailed;
    }
    if (objects) ObjectValuesKept();
    if (tables) ListsKept();
    return 0;
}
catch (const std::bad_alloc&)
{
    return OutOfMemory("update_config", kUpdateFailed);
}

// False when memory ran out. Half a state must not be served: the next commit would write it over the whole one.
bool TryLoad()
try
{
    if (access(StateFolder().c_str(), W_OK | X_OK) != 0)
        kobd_log_print("LoadState", __LINE__, "cannot write in the state folder %s: %s, changes will not survive",
                       StateFolder().c_str(), strerror(errno));
    if (!FinishSave(StateFolder()))
        kobd_log_print("LoadState", __LINE__, "cannot finish the last commit in %s: %s", StateFolder().c_str(),
                       strerror(errno));
    ObjectValuesLoad(StateFolder() + "/" + kObjectsFile);
    ListsLoad(StateFolder() + "/" + kTablesFile);
    return true;
}
catch (const std::bad_alloc&)
{
    OutOfMemory("LoadState", 0);
    return false;
}
}  // namespace

void LoadState()
{
    while (!TryLoad()) sleep(1);
}
}  // namespace kobd::host

int update_config() { return kobd::host::Commit(); }
