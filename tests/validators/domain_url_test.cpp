// Domain names and URLs.
#include <gtest/gtest.h>

#include "tests/validators/judge.h"
#include "validators/domain.h"
#include "validators/url.h"

namespace kobd::test
{
namespace
{
std::string Xs(size_t count) { return std::string(count, 'x'); }

// `count` labels and a dot behind each.
std::string Labels(size_t count)
{
    std::string labels;
    while (count-- > 0) labels += "a.";
    return labels;
}

const std::vector<TextsByCode> kDomain = {
    {kTakes, "labels", {"example.com", "www.example.com", "a.b.c.d.e.org", "a.bc", "EXAMPLE.COM"}},
    {kTakes, "digits and dashes but at the end", {"1.example.net", "my-host.example.museum", "a-.example.com"}},
    {kTakes, "labels of 63", {Xs(63) + ".com", Xs(63) + "." + Xs(63) + ".com"}},
    {kRefuses, "a label of 64", {Xs(64) + ".com", "a." + Xs(64) + ".com"}},
    {kTakes, "1023 characters fill the working copy", {Labels(510) + "com"}},
    {kRefuses, "longer than the working copy", {Labels(511) + "com"}},
    {kRefuses, "one label", {"", "localhost", "host1"}},
    {kRefuses, "last label not of 2 to 6 letters", {"example.c", "example.toolong", "example.c0m", "10.0.0.1"}},
    {kRefuses, "an empty label", {"example.com.", ".example.com", "example..com", ".", "...."}},
    {kRefuses, "a dash in front of a label", {"-a.example.com"}},
    {kRefuses,
     "other characters",
     {"exa_mple.com", "exa mple.com", "example.com ", "example.com\n", "b\xC3\xBC-cher.example.com"}},
    {kRefuses, "more than a name", {"http://example.com", "example.com/a", "example.com:80"}},
};

const std::vector<TextsByCode> kLooseDomain = {
    {kTakes, "a name", {"example.com", "1.2.example.org", Xs(500) + ".com"}},
    {kTakes,
     "a scheme",
     {"http://example.com", "https://www.example.com", "ftp://example.com", "rtsp://example.com", "mms://example.com"}},
    {kTakes, "the scheme may be empty", {"://example.com"}},
    {kTakes, "characters of a user part", {"user_1!~*'()-x.example.com"}},
    {kTakes, "any character may stand for a dot", {"a..com", "xcom", "abc", "ho/st.example.com"}},
    {kRefuses, "two letters and none", {"ab", ""}},
    {kRefuses, "another scheme, for dots stand between names", {"gopher://example.com"}},
    {kRefuses, "an address, a digit in the last label", {"10.1.2.3", "10.1.2.0", "example.c0m", "localhost8"}},
    {kRefuses, "more behind", {"example.com/", "example.com:80", "example.com "}},
    {kTakes, "fills the working copy", {Labels(510) + "com"}},
    {kRefuses, "longer than the working copy", {Labels(511) + "com"}},
};

const std::vector<TextsByCode> kFtpUrl = {
    {kTakes, "address", {"ftp://192.0.2.1", "ftps://192.0.2.1/", "ftp://223.255.255.255"}},
    {kTakes, "name", {"ftp://example.com", "ftp://127.0.0.1.com"}},
    {kTakes,
     "port and path",
     {"http://192.0.2.1:8080/fw", "https://192.0.2.1/a/b/c.bin", "ftp://ftp.example.com:21/fw/"}},
    {kTakes, "every character of a path", {"ftp://example.com/fw?x=1&y=#z,%20"}},
    {kTakes, "five digits of a port, whatever they say", {"ftp://example.com:99999"}},
    {kTakes, "a scheme may be said twice", {"ftpftp://example.com"}},
    {kRefuses,
     "no host's address",
     {"ftp://127.0.0.1", "ftp://010.1.1.1", "ftp://0.1.1.1", "ftp://255.255.255.255", "ftp://256.1.1.1",
      "ftp://1.2.3"}},
    {kRefuses, "no port", {"ftp://example.com:", "ftp://example.com:123456", "ftp://192.0.2.1:port"}},
    {kRefuses, "an empty folder", {"ftp://example.com//a", "ftp://example.com/a//b"}},
    {kRefuses, "no character of a path", {"ftp://example.com/a b", "ftp://example.com/a\"b", "ftp://example.com/a\n"}},
    {kRefuses, "a user", {"ftp://user@example.com"}},
    {kRefuses, "one label, IPv6 and no host", {"ftp://localhost", "ftp://[::1]", "ftp://"}},
    {kRefuses,
     "no scheme",
     {"ftp:/example.com", "ftp//example.com", "FTP://example.com", "sftp://example.com", " ftp://example.com",
      "example.com", ""}},
    {kTakes, "fills the working copy", {"ftp://a.bc/" + Xs(1012)}},
    {kRefuses, "longer than the working copy", {"ftp://a.bc/" + Xs(1013)}},
};

const std::vector<TextsByCode> kHttpUrl = {
    {kTakes, "address", {"http://192.0.2.1", "https://192.0.2.1:7547/acs"}},
    {kTakes, "name", {"http://acs.example.com/", "https://acs.example.com:7547/a/b?c=d"}},
    {kTakes, "IPv6", {"http://[2001:db8::1]", "http://[::1]:7547/acs", "http://[1:2:3:4:5:6:7:8]/", "http://[::]"}},
    {kRefuses,
     "no IPv6 address, though the form lets some pass",
     {"http://[1:2:3:4:5:6:7:8:9]", "http://[12345::]", "http://[]", "http://[:]"}},
    {kRefuses, "an IPv4 address or a zone within", {"http://[::ffff:192.0.2.1]", "http://[fe80::1%25eth0]"}},
    {kRefuses, "brackets", {"http://[::1", "http://::1", "http://[::1]x", "http://[::1]:"}},
    {kRefuses, "ftp", {"ftp://example.com"}},
    {kRefuses, "no host's address", {"http://127.0.0.1/", "http://0.0.0.0", "http://1.2.3.04/"}},
    {kRefuses, "two ports", {"http://1.2.3.4:80:80"}},
    {kRefuses, "no host", {"http:///acs", "https://", ""}},
    {kTakes, "fills the working copy", {"http://a.bc/" + Xs(1011)}},
    {kRefuses, "longer than the working copy", {"http://a.bc/" + Xs(1012)}},
};
}  // namespace

TEST(DomainsAndUrls, TakeAndRefuse)
{
    ExpectCodes(CHECK(validDomain), kDomain);
    ExpectCodes(CHECK(checkDomain), kLooseDomain);
    ExpectCodes(CHECK(validFtpUrl), kFtpUrl);
    ExpectCodes(CHECK(validHttpUrl), kHttpUrl);
}

TEST(DomainsAndUrls, SayWhatTheyFound)
{
    const std::vector<LogCase> cases = {
        {CHECK(validDomain), "www.example.com", "0|last p string:example|last p string:com|last p string:(null)match"},
        {CHECK(validDomain), "example..c0m", "2|last p string:c0m|last p string:(null)"},
        {CHECK(validDomain), "a.b.", "2|last p string:b|last p string:(null)"},
        {CHECK(validDomain), "....", "2"},
        {CHECK(validDomain), "nodot", "2"},
        {CHECK(checkDomain), "http://a.com", "0|last p string:com|last p string:(null)match"},
        {CHECK(validFtpUrl), "ftp://192.0.2.1:21/x",
         "0|validIpv4: validstart\n|validIpv4: [192.0.2.1] is valid IPv4\n"},
        {CHECK(validFtpUrl), "ftp://127.0.0.1", "2|validIpv4: validstart\n|validIpv4: [127.0.0.1] is invalid IPv4\n"},
        {CHECK(validFtpUrl), "ftp://example.com", "0"},
        {CHECK(validHttpUrl), "http://192.0.2.1:80",
         "0|validIpv4: validstart\n|validIpv4: [192.0.2.1] is valid IPv4\n|match\n"},
        {CHECK(validHttpUrl), "http://127.0.0.1/x",
         "2|validIpv4: validstart\n|validIpv4: [127.0.0.1] is invalid IPv4\n|error\n"},
        {CHECK(validHttpUrl), "http://example.com", "0|match\n"},
        {CHECK(validHttpUrl), "http://[::1]/x", "0|validIpv6: [::1] is valid IPv6\n"},
        {CHECK(validHttpUrl), "http://[12345::]", "2|validIpv6: [12345::] is invalid IPv6\n"},
        {CHECK(validHttpUrl), "x", "2"},
    };
    ExpectLogs(cases);
}
}  // namespace kobd::test
