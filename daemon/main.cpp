// The daemon's entry point: "kobd [-F]"; F keeps it in the foreground.
#include <unistd.h>

#include "daemon/exported_data.h"
#include "daemon/lifecycle.h"
#include "daemon/signals.h"
#include "platform/kob_platform.h"

int main(int count, char** arguments)
{
    kobd::SeedRandom();
    bool daemonise = true;
    for (int option; (option = getopt(count, arguments, "F")) != -1;)
    {
        daemonise = false;
        if (option != 'F') return 0;
    }
    kobd::OpenStandardStreams();
    if (daemonise) kobd::Daemonise();
    kobd::RaiseMessageLimits();
    LogModuleUpdate();
    kobd::KobdSignalSetup();
    kobd::KobdInit();
    pthread_mutex_init(&wifi_flag_mutex, nullptr);
    kobd::WaitForExit();
    kobd::KobdExit();
    pthread_mutex_destroy(&wifi_flag_mutex);
    return 0;
}
