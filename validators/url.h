// URLs of servers. Conventions in validators/check.h.
#pragma once

extern "C"
{
    // A scheme of ftp, ftps, http or https; an IPv4 address or a domain name as host; a port or none;
    // a path or none, which begins with "/". A user is refused.
    int validFtpUrl(const char* text);

    // The same with a scheme of http or https; the host may be an IPv6 address in square brackets too.
    int validHttpUrl(const char* text);
}
