// Addresses, prefixes and masks as text, and MAC addresses. Conventions in validators/check.h.
#pragma once

extern "C"
{
    // A dotted IPv4 address: four decimal numbers without leading zeros, the first 1 to 255 but not
    // 127, the others 0 to 255. "255.255.255.255" is refused.
    int validIpv4(const char* text);

    // An IPv6 address in any of the forms of RFC 4291, section 2.2, without a zone.
    int validIpv6(const char* text);

    // Predicate: an IPv4 address of the classes A to C that is neither a loopback address nor the
    // lowest or the highest of its class (1.0.0.0, 126.255.255.255, 128.0.0.0 ...). There have to be
    // four numbers; they may be octal or hexadecimal.
    int validIp(const char* text);

    // Predicate: the empty text, an address that validIp takes, or such an address with "/" and a
    // prefix of 0 to 32 behind it. The numbers are decimal.
    int validIpInput(const char* text);

    // A mask that validIpv4 takes as an address, all ones before all zeros. An IPv6 address is refused.
    int validMask(const char* text);

    // Six pairs of hexadecimal digits with ":" between them, or with "-", but not with both. The
    // broadcast address is refused.
    int validMac(const char* text);

    // An address that validIpv4 or validIpv6 takes, "/" and a prefix of 1 to 32 in digits.
    int validIpRange(const char* text);

    // An address that validIpv4 takes and whose last number is not 0.
    int validAddressExzerobc(const char* text);
}
