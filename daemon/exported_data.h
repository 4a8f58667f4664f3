// Data that the daemon exports by name for code loaded into the process. Nothing here reads or
// writes it; names and sizes are what such code was built against.
#pragma once

#include <pthread.h>

extern "C"
{
    extern pthread_mutex_t wifi_flag_mutex;
    extern char apn_modify[140];
    extern char aa[372];
    extern char apn_list[2800];
    extern char message_buffer[5196];
}
