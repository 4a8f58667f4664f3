// The rows of the URL filter. Conventions in validators/check.h.
#pragma once

extern "C"
{
    // FwUrlFilterTable: "URL" is a host name with or without a port and a path, and with or without one
    // of the known schemes in front. A bare IPv4 address is refused.
    int validUrlFilter(void* row);
}
