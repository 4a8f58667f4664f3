// Addresses, masks, domain names, URLs, ports and the arithmetic on addresses. The rows of the
// catalogue name some of these checks, the other validators and the platform libraries call the
// rest.
//
// Conventions of all validators:
//   - An object validator is given the value as the client sent it and leaves it unchanged. 0
//     accepts, 2 refuses. Predicates, which no object names, answer the other way round: 1 valid, 0
//     not. A missing text (nullptr) is refused.
//   - Lines are written whatever the debug switch says, under the validator's own name.
//   - No state is kept between calls. One call at a time.
//   - Text longer than a validator's working copy is refused; everything acceptable is far shorter.
#pragma once

#include <cstdint>

extern "C"
{
    // A dotted IPv4 text: four decimal parts without leading zeros, 1 to 255 (not 127), then three
    // of 0 to 255. "255.255.255.255" is none.
    int validIpv4(const char* text);

    // An IPv6 text in any of the forms of RFC 4291, section 2.2; no zone.
    int validIpv6(const char* text);

    // Predicate: an IPv4 address of the classes A to C, apart from 127.x.x.x and the outermost
    // addresses of each class (1.0.0.0, 126.255.255.255, 128.0.0.0 ...). Parts may be octal or
    // hexadecimal, but there have to be four.
    int validIp(const char* text);

    // Predicate: nothing, an address that validIp takes, or such an address, "/" and a prefix of
    // 0 to 32. Decimal only.
    int validIpInput(const char* text);

    // A domain name of at least two labels of 1 to 63 letters, digits and "-"; the last has 2 to 6
    // letters.
    int validDomain(const char* text);

    // As validDomain, but more is allowed in front: a scheme, and any of the characters of a URL's
    // user part.
    int checkDomain(const char* text);

    // A mask in dotted IPv4 form that validIpv4 takes, its ones without a gap from the top. An IPv6
    // text is no mask.
    int validMask(const char* text);

    // Six pairs of hexadecimal digits, separated by ":" or by "-", not mixed; any but the broadcast
    // address.
    int validMac(const char* text);

    // A URL of scheme ftp, ftps, http or https with an IPv4 address or a domain name for a host,
    // a port or none, and a path or none; a path begins with "/". No user.
    int validFtpUrl(const char* text);

    // A URL of scheme http or https; the host may be an IPv6 text in square brackets too.
    int validHttpUrl(const char* text);

    // An address that validIpv4 or validIpv6 takes, "/" and a prefix of 1 to 32 in digits.
    int validIpRange(const char* text);

    // One port, 1 to 65535, without a leading zero.
    int validPortRange(const char* text);

    // Predicate: one port, or two joined by "-" of which the second is the greater; 1 to 65535.
    int validPortFormat(const char* text);

    // Predicate: all, tcp, udp, tcpudp or icmp.
    int validProtocol(const char* text);

    // An address that validIpv4 takes and whose last part is not 0.
    int validAddressExzerobc(const char* text);

    // A key that does not begin with "0x" and holds no space; the length is left to the limitation.
    int validWifiPassword(const char* text);

    // The value of a dotted address, a * 2^24 + b * 2^16 + c * 2^8 + d; what follows the fourth
    // number is not looked at. -1 without a text (nullptr); -2 when a part is 256 or more, is
    // missing, or does not fit 32 bits.
    int64_t iptonum(const char* text);

    // The network address of `address` under `mask` ("head"), or the network address plus 256
    // ("end", which is not the broadcast address). Any other word, or nullptr, is "head". -3 when
    // either text has no value.
    int64_t getSubnet(const char* address, const char* mask, const char* which);

    // 1 when the last part is 255, or 0; else 0, also for a text without four parts.
    int isBroadcastIP(const char* text);
    int isLastByteZeroIP(const char* text);

    // 0 when the address lies above its network address, else 2. Errors of iptonum and getSubnet are
    // compared as the negative numbers that they are: an address or a mask without four numbers
    // answers 0.
    int isLanSegmentAddress(const char* address, const char* mask);

    // 0 when the address lies below its network address plus 256, 2 when not or when either has no
    // value. With a mask of 24 bits or more that holds for the broadcast address too.
    int isLanBroadcastIP(const char* address, const char* mask);

    // Removes blanks and tabs at both ends, in place.
    void Trim(char* text);
}

namespace kobd
{
// The check that the LTE and 5G band locks share: nothing, or up to 16 bands of `supported`, each
// ended by ";" and named once ("3;7;20;").
//   supported: band numbers separated by blanks, 255 characters at most, of which 64 bands count
// 0 or 2. Writes "invalid\n" as validBandLock when the end is not ";" or nothing stands before it.
int validBandLock(const char* value, const char* supported);
}  // namespace kobd
