// The platform's hooks on the host: most have nothing to prepare there; they write a journal line,
// so that a test or a person sees that the daemon called them and in which order.
#include "host/bus/bus.h"
#include "host/commit.h"
#include "host/service_manager.h"
#include "host/state/state_store.h"
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
}  // namespace

void LogModuleUpdate() { Journal("LogModuleUpdate"); }

void checkFirstBootFlag()
{
    Journal("checkFirstBootFlag");
    BusBeforeServing(LoadAndSayReady);  // not yet: another daemon may be writing the state
}

void checkUpgradeFlag()
{
    Journal("checkUpgradeFlag");
    ProvideUci();  // there is one thread yet
}

void kobd_lib_init()
{
    Journal("kobd_lib_init");
    if (!BusIsUsed()) LoadAndSayReady();  // a bus library of the router's does not know of BusBeforeServing
}

void initUssdEventSvr() { Journal("initUssdEventSvr"); }
void updateArplistTimerInit() { Journal("updateArplistTimerInit"); }
void pemixAlg_init() { Journal("pemixAlg_init"); }

void kobd_lib_exit()
{
    TellServiceManager("STOPPING=1");
    Journal("kobd_lib_exit");
}
