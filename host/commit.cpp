// One commit of objects, rows and stores: only what changed is written, and what changed becomes durable as
// a whole or not at all.
#include "host/commit.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <new>

#include "daemon/base/messages.h"
#include "host/bus/bus.h"
#include "host/objects/object_values.h"
#include "host/sim/changes_made.h"
#include "host/sim/moving.h"
#include "host/sim/simulator.h"
#include "host/state/folder.h"
#include "host/state/joined_writes.h"
#include "host/state/report.h"
#include "host/state/stores.h"
#include "host/tables/list_state.h"
#include "platform/kob_platform.h"
#include "platform/kobd_exports.h"

namespace kobd::host
{
namespace
{
constexpr int kUpdateFailed = 14;

std::string not_saved;  // why the last commit failed
bool tried = false;     // in this request
int known = 0;          // which opening of the database has what is served, but for the changes
bool unread = false;    // what the database has is not served: it could not be read at the start

// The process whose change it is. What an event makes the daemon note is the daemon's own change.
int Author()
{
    const RequestInHand request = BusRequest();
    return (request.code & 0xFFFF) == kClassEvent ? getpid() : static_cast<int>(request.sender);
}

bool IsChanged() { return ObjectValuesChanged() || ListsChanged() || StoresChanged(); }

enum class What
{
    kAll,
    kStores,  // values and rows that nobody has asked to commit stay as they are
};

// The rows that are served would replace rows that nobody has seen.
bool IsInTheWay(What what) { return unread && what == What::kAll && ListsChanged(); }

// Writes what changed; everything, where the database may be another one than before.
bool TryCommit(Database* database, What what)
{
    if (IsInTheWay(what) && (!database->Open() || !database->MoveAside("replaced, since it could not be read")))
        return false;
    const int author = Author();
    History history(database, author, author == getpid() ? "" : BusProgram());
    const bool written = database->Write(
        [&]
        {
            if (database->Openings() != known)
            {
                ObjectValuesAllChanged();
                ListsAllChanged();
            }
            if (what == What::kAll) ObjectValuesWrite(database, &history);
            if (what == What::kAll) ListsWrite(database, &history);
            StoresWrite(database, &history);
            history.Finish();
        });
    if (written && what == What::kAll) known = database->Openings();
    if (IsInTheWay(what)) unread = false;  // it was moved
    return written;
}

int Commit(What what)
try
{
    tried = true;
    if (const int code = SimAsk(kSimCommit, SimOperation::kCommit))
    {
        not_saved = "the simulator lets the commit fail with " + std::to_string(code);
        return code;
    }
    if (!IsChanged())
    {
        not_saved.clear();
        return 0;
    }
    const State state;
    if (TryCommit(&*state, what) || (state->KeepDamagedAside() && TryCommit(&*state, what)))
    {
        if (what == What::kAll) ObjectValuesWritten();
        if (what == What::kAll) ListsWritten();
        StoresWritten();
        not_saved.clear();
        return 0;
    }
    not_saved = state->Why();
    kobd_log_print("update_config", __LINE__, "cannot write the state in %s: %s", StateFolder().c_str(),
                   not_saved.c_str());
    return kUpdateFailed;
}
catch (const std::bad_alloc&)
{
    return OutOfMemory("update_config", kUpdateFailed);
}

// False when the database cannot be read; nothing of it is served then.
bool LoadFrom(Database* database)
{
    if (!database->Open()) return false;
    known = database->Openings();
    ObjectValuesLoad(database);
    if (!database->Failed()) ListsLoad(database);
    return !database->Failed();
}

void LoadFactory()
{
    ObjectValuesLoad(nullptr);
    ListsLoad(nullptr);
}

// False when memory ran out. Half a state must not be served: the next commit would write it over the whole one.
bool TryLoad()
try
{
    const State state;
    StoresWritten();
    not_saved.clear();
    unread = false;
    if (access(StateFolder().c_str(), W_OK | X_OK) != 0)
        kobd_log_print("LoadState", __LINE__, "cannot write in the state folder %s: %s, changes will not survive",
                       StateFolder().c_str(), strerror(errno));
    if (LoadFrom(&*state) || (state->KeepDamagedAside() && LoadFrom(&*state)))
    {
        state->ReserveLog();
        return true;
    }
    LoadFactory();
    if (state->Error() == ENOMEM) return false;
    unread = true;
    kobd_log_print("LoadState", __LINE__, "cannot read the database in %s (%s), factory values serve",
                   StateFolder().c_str(), state->Why().c_str());
    state->Close();
    return true;
}
catch (const std::bad_alloc&)
{
    OutOfMemory("LoadState", 0);
    return false;
}

// Whether the daemon commits what this request changes.
bool IsCommitted(uint32_t code)
{
    for (const RequestId id : {kReqObjSet, kReqUpdate, kReqTableAdd, kReqTableDel, kReqTableSet, kREQSubTableAdd})
        if (code == MessageCode(id, kClassRequest)) return true;
    return false;
}
}  // namespace

void LoadState()
{
    HistoryNameSelf("kobd");
    State()->UseFiles(JoinedWrites());
    while (!TryLoad()) sleep(1);
    SimClear();
    MovingStart();
}

void BeginRequest()
{
    tried = false;
    const RequestInHand request = BusRequest();
    MovingEvent(request.code);
    if ((request.code & 0xFFFF) == kClassRequest) ChangesBegin(request.sender, request.connection);
    StoresBeginRequest(Author(), IsCommitted(request.code));
}

void EndRequest()
{
    StoresEndRequest();
    if (StoresChanged() && !tried) Commit(What::kStores);  // the request was refused half way
}

std::vector<std::string> NotSaved()
{
    std::vector<std::string> names;
    ObjectValuesChangedNames(&names);
    ListsChangedNames(&names);
    return names;
}

std::string WhyNotSaved() { return IsChanged() ? not_saved : std::string(); }
}  // namespace kobd::host

int update_config() { return kobd::host::Commit(kobd::host::What::kAll); }
