// Exported data objects, zero at start.
#include "daemon/exported_data.h"

#ifdef __arm__
static_assert(sizeof(pthread_mutex_t) == 24, "code loaded on the router expects 24 bytes");
static_assert(sizeof(void*) == 4, "the router's processor has 32-bit addresses");
#endif

pthread_mutex_t wifi_flag_mutex;
alignas(8) char apn_modify[140];
alignas(8) char aa[372];
alignas(8) char apn_list[2800];
alignas(8) char message_buffer[5196];
