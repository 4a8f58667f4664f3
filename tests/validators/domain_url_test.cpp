// Domain names and URLs.
#include <gtest/gtest.h>

#include "tests/validators/codes.h"
#include "validators/address.h"

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
}  // namespace

TEST(ValidDomain, TakesAndRefuses)
{
    const std::vector<CodeCase> cases = {
        {"example.com", kTakes, "two labels"},
        {"www.example.com", kTakes, "three labels"},
        {"a.b.c.d.e.org", kTakes, "many"},
        {"a.bc", kTakes, "shortest"},
        {"1.example.net", kTakes, "digits anywhere but at the end"},
        {"my-host.example.museum", kTakes, "dashes, and a last label of six"},
        {"EXAMPLE.COM", kTakes, "capitals"},
        {"a-.example.com", kTakes, "a dash at the end of a label"},
        {Xs(63) + ".com", kTakes, "a label of 63"},
        {Xs(63) + "." + Xs(63) + ".com", kTakes, "two labels of 63"},
        {Xs(64) + ".com", kRefuses, "a label of 64"},
        {"a." + Xs(64) + ".com", kRefuses, "a label of 64 within"},
        {Labels(510) + "com", kTakes, "1023 characters fill the working copy"},
        {Labels(511) + "com", kRefuses, "longer than the working copy"},
        {"", kRefuses, "empty"},
        {"localhost", kRefuses, "one label"},
        {"example.c", kRefuses, "a last label of one letter"},
        {"example.toolong", kRefuses, "a last label of seven letters"},
        {"example.c0m", kRefuses, "a digit in the last label"},
        {"host1", kRefuses, "a digit, and one label"},
        {"10.0.0.1", kRefuses, "an address"},
        {"example.com.", kRefuses, "a dot behind"},
        {".example.com", kRefuses, "a dot in front"},
        {"example..com", kRefuses, "an empty label"},
        {"-a.example.com", kRefuses, "a dash in front of a label"},
        {"exa_mple.com", kRefuses, "an underscore"},
        {"exa mple.com", kRefuses, "a blank"},
        {"example.com ", kRefuses, "a blank behind"},
        {"example.com\n", kRefuses, "a line end"},
        {"http://example.com", kRefuses, "a scheme"},
        {"example.com/a", kRefuses, "a path"},
        {"example.com:80", kRefuses, "a port"},
        {"b\xC3\xBC"
         "cher.example.com",
         kRefuses, "beyond ASCII"},
        {".", kRefuses, "a dot alone"},
        {"....", kRefuses, "dots alone"},
    };
    ExpectCodes(CHECK(validDomain), cases);
}

TEST(CheckDomain, TakesAndRefuses)
{
    const std::vector<CodeCase> cases = {
        {"example.com", kTakes, "a name"},
        {"http://example.com", kTakes, "a scheme"},
        {"https://www.example.com", kTakes, "https"},
        {"ftp://example.com", kTakes, "ftp"},
        {"rtsp://example.com", kTakes, "rtsp"},
        {"mms://example.com", kTakes, "mms"},
        {"://example.com", kTakes, "the scheme may be empty"},
        {"user_1!~*'()-x.example.com", kTakes, "characters of a user part"},
        {"a..com", kTakes, "any character may stand for a dot"},
        {"xcom", kTakes, "for this one as well"},
        {"abc", kTakes, "three letters: any character and two"},
        {"1.2.example.org", kTakes, "digits anywhere but at the end"},
        {Xs(500) + ".com", kTakes, "no limit to a label here"},
        {"ab", kRefuses, "two letters"},
        {"", kRefuses, "empty"},
        {"ho/st.example.com", kTakes, "any one character for a dot"},
        {"gopher://example.com", kRefuses, "another scheme, for dots stand between names"},
        {"10.1.2.3", kRefuses, "an address"},
        {"10.1.2.0", kRefuses, "an address"},
        {"example.c0m", kRefuses, "a digit in the last label"},
        {"localhost8", kRefuses, "a digit, no dot"},
        {"example.com/", kRefuses, "a slash behind"},
        {"example.com:80", kRefuses, "a port"},
        {"example.com ", kRefuses, "a blank behind"},
        {Labels(510) + "com", kTakes, "fills the working copy"},
        {Labels(511) + "com", kRefuses, "longer than the working copy"},
    };
    ExpectCodes(CHECK(checkDomain), cases);
}

TEST(ValidFtpUrl, TakesAndRefuses)
{
    const std::vector<CodeCase> cases = {
        {"ftp://192.0.2.1", kTakes, "address"},
        {"ftps://192.0.2.1/", kTakes, "a slash behind"},
        {"http://192.0.2.1:8080/fw", kTakes, "port and path"},
        {"https://192.0.2.1/a/b/c.bin", kTakes, "a longer path"},
        {"ftp://223.255.255.255", kTakes, "largest parts"},
        {"ftp://example.com", kTakes, "name"},
        {"ftp://ftp.example.com:21/fw/", kTakes, "name, port, path and slash"},
        {"ftp://example.com/fw?x=1&y=#z,%20", kTakes, "every character of a path"},
        {"ftp://example.com:99999", kTakes, "five digits of a port, whatever they say"},
        {"ftpftp://example.com", kTakes, "a scheme may be said twice"},
        {"ftp://127.0.0.1", kRefuses, "loopback"},
        {"ftp://127.0.0.1.com", kTakes, "a name that begins like an address"},
        {"ftp://010.1.1.1", kRefuses, "leading zero"},
        {"ftp://0.1.1.1", kRefuses, "first part 0"},
        {"ftp://255.255.255.255", kRefuses, "limited broadcast"},
        {"ftp://256.1.1.1", kRefuses, "a part too large"},
        {"ftp://1.2.3", kRefuses, "three parts"},
        {"ftp://example.com:", kRefuses, "a colon without a port"},
        {"ftp://example.com:123456", kRefuses, "six digits of a port"},
        {"ftp://192.0.2.1:port", kRefuses, "no number"},
        {"ftp://example.com//a", kRefuses, "an empty folder in front"},
        {"ftp://example.com/a//b", kRefuses, "an empty folder within"},
        {"ftp://example.com/a b", kRefuses, "a blank in the path"},
        {"ftp://example.com/a\"b", kRefuses, "a quote in the path"},
        {"ftp://example.com/a\n", kRefuses, "a line end"},
        {"ftp://user@example.com", kRefuses, "a user"},
        {"ftp://localhost", kRefuses, "one label"},
        {"ftp://[::1]", kRefuses, "IPv6 is for http"},
        {"ftp:/example.com", kRefuses, "one slash"},
        {"ftp//example.com", kRefuses, "no colon"},
        {"FTP://example.com", kRefuses, "capitals in the scheme"},
        {"sftp://example.com", kRefuses, "another scheme"},
        {" ftp://example.com", kRefuses, "a blank in front"},
        {"example.com", kRefuses, "no scheme"},
        {"ftp://", kRefuses, "no host"},
        {"", kRefuses, "empty"},
        {"ftp://a.bc/" + Xs(1012), kTakes, "fills the working copy"},
        {"ftp://a.bc/" + Xs(1013), kRefuses, "longer than the working copy"},
    };
    ExpectCodes(CHECK(validFtpUrl), cases);
}

TEST(ValidHttpUrl, TakesAndRefuses)
{
    const std::vector<CodeCase> cases = {
        {"http://192.0.2.1", kTakes, "address"},
        {"https://192.0.2.1:7547/acs", kTakes, "port and path"},
        {"http://acs.example.com/", kTakes, "name"},
        {"https://acs.example.com:7547/a/b?c=d", kTakes, "name, port and path"},
        {"http://[2001:db8::1]", kTakes, "IPv6"},
        {"http://[::1]:7547/acs", kTakes, "IPv6, port and path"},
        {"http://[1:2:3:4:5:6:7:8]/", kTakes, "eight groups"},
        {"http://[::]", kTakes, "zeros alone"},
        {"http://[1:2:3:4:5:6:7:8:9]", kRefuses, "nine groups"},
        {"http://[12345::]", kRefuses, "five digits: the form lets them pass, the address not"},
        {"http://[]", kRefuses, "nothing between brackets"},
        {"http://[:]", kRefuses, "a colon"},
        {"http://[::ffff:192.0.2.1]", kRefuses, "an IPv4 address within"},
        {"http://[fe80::1%25eth0]", kRefuses, "a zone"},
        {"http://[::1", kRefuses, "not closed"},
        {"http://::1", kRefuses, "no brackets"},
        {"http://[::1]x", kRefuses, "a letter behind the brackets"},
        {"http://[::1]:", kRefuses, "a colon without a port"},
        {"ftp://example.com", kRefuses, "ftp"},
        {"http://127.0.0.1/", kRefuses, "loopback"},
        {"http://0.0.0.0", kRefuses, "no address"},
        {"http://1.2.3.4:80:80", kRefuses, "two ports"},
        {"http://1.2.3.04/", kRefuses, "leading zero"},
        {"http:///acs", kRefuses, "no host"},
        {"https://", kRefuses, "no host"},
        {"", kRefuses, "empty"},
        {"http://a.bc/" + Xs(1011), kTakes, "fills the working copy"},
        {"http://a.bc/" + Xs(1012), kRefuses, "longer than the working copy"},
    };
    ExpectCodes(CHECK(validHttpUrl), cases);
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
