// The platform's hooks on the host: most have nothing to prepare there; they write a journal line,
// so that a test or a person sees that the daemon called them and in which order.
#include <malloc.h>

#include "host/bus/bus.h"
#include "host/commit.h"
#include "host/control.h"
#include "host/service_manager.h"
#include "host/state/database.h"
#include "host/state/folder.h"
#include "host/uci_path.h"
#include "platform/kob_platform.h"

using namespace kobd::host;

namespace
{
// From here on a request is answered.
void LoadAndSayReady()
{
    LoadState();
    TellServiceManager("READY=1");
}

// glibc gives each thread its own heap and enlarges it by one page at a time. The daemon gains nothing from several
// heaps, because only one of its threads serves requests.
void ShareMemoryOfThreads()
{
#ifdef M_ARENA_MAX
    mallopt(M_ARENA_MAX, 1);
#endif
}
}  // namespace

void LogModuleUpdate()
{
    ShareMemoryOfThreads();  // there is one thread yet
    Journal("LogModuleUpdate");
}

void checkFirstBootFlag()
{
    Journal("checkFirstBootFlag");
    // The state is loaded later: another daemon may still be writing it.
    BusCall({.prepare = LoadAndSayReady, .begin = BeginRequest, .end = EndRequest, .control = AnswerControl});
}

void checkUpgradeFlag()
{
    Journal("checkUpgradeFlag");
    ProvideUci();  // there is one thread yet
}

void kobd_lib_init()
{
    Journal("kobd_lib_init");
    if (!BusIsUsed()) LoadAndSayReady();  // a bus library of the router's does not know of BusCall
}

void initUssdEventSvr() { Journal("initUssdEventSvr"); }
void updateArplistTimerInit() { Journal("updateArplistTimerInit"); }
void pemixAlg_init() { Journal("pemixAlg_init"); }

void kobd_lib_exit()
{
    TellServiceManager("STOPPING=1");
    EndState();
    Journal("kobd_lib_exit");
}
