// URL filters: the patterns as the engines of all builds must read them.
#include <gtest/gtest.h>

#include <chrono>

#include "tests/recording_platform.h"
#include "tests/validators/row_verdict.h"
#include "validators/firewall.h"

namespace kobd::test
{
namespace
{
const RowCheck kCheck = {validUrlFilter, "validUrlFilter", "FwUrlFilterTable", {{"URL", "www.example.com"}}};

const std::string kSymbol = "invalid symbol";
const std::string kIp = "cannot input ip";
const std::string kSlash = "------more than 1 slash";

Fields Url(const std::string& url) { return {{"URL", url}}; }
std::string Rest(const std::string& rest) { return "------URL:" + rest; }
}  // namespace

TEST(UrlFilter, WithoutScheme)
{
    ResetRows();
    kCheck.Expect({
        {Url("www.example.com"), kAccept, kSilent, "a host"},
        {Url("example"), kAccept, kSilent, "one label"},
        {Url("x"), kAccept, kSilent, "one character"},
        {Url("example.com/a/b"), kAccept, kSilent, "a path"},
        {Url("example.com/"), kAccept, kSilent, "a slash at the end"},
        {Url("example.com/a?b=c&d_e"), kAccept, kSilent, "a query"},
        {Url("example.com:80/"), kAccept, kSilent, "a port with its slash"},
        {Url("example.com:8080/a/"), kAccept, kSilent, "a port and a path"},
        {Url("?&_=."), kAccept, kSilent, "every allowed sign"},
        {Url("192.168.1.1/"), kAccept, kSilent, "an address with a path is not bare"},
        {Url("192.168.1.1:80/"), kAccept, kSilent, "an address with a port neither"},
        {Url("192.168.1"), kAccept, kSilent, "three parts are no address"},
        {Url("1.2.3.4.5"), kAccept, kSilent, "five parts neither"},
        {Url("1.2.3.1234"), kAccept, kSilent, "a part of four digits neither"},
        {Url("192.168.1.1"), kRefuse, kIp, "a bare address"},
        {Url("999.999.999.999"), kRefuse, kIp, "looks like one"},
        {Url(""), kRefuse, kSymbol, "empty"},
        {Url("my-site.com"), kRefuse, kSymbol, "\\-\\ in the brackets is a range of one backslash, no hyphen"},
        {Url("-"), kRefuse, kSymbol, "a hyphen alone"},
        {Url("example.com//a"), kRefuse, kSymbol, "two slashes"},
        {Url("/a"), kRefuse, kSymbol, "a slash first"},
        {Url("example.com:80"), kRefuse, kSymbol, "a port without its slash"},
        {Url("example.com:65535/"), kRefuse, kSymbol, "a port of five digits"},
        {Url("example.com:/"), kRefuse, kSymbol, "a colon without a port"},
        {Url("example.com:80//"), kRefuse, kSymbol, "a port and two slashes"},
        {Url("a:1/b:2/"), kRefuse, kSymbol, "two ports"},
        {Url("a b"), kRefuse, kSymbol, "a blank"},
        {Url(" www.example.com"), kRefuse, kSymbol, "a blank before"},
        {Url("a\n"), kRefuse, kSymbol, "a line end is a character"},
        {Url("a%20b"), kRefuse, kSymbol, "percent"},
        {Url("a#b"), kRefuse, kSymbol, "number sign"},
        {Url("a;b"), kRefuse, kSymbol, "semicolon"},
        {Url("a[b"), kRefuse, kSymbol, "what lies between Z and the backslash"},
        {Url("a]b"), kRefuse, kSymbol, "what lies behind the backslash"},
        {Url("caf\xC3\xA9.example"), kRefuse, kSymbol, "beyond ASCII"},
        {Url("a\xFF"), kRefuse, kSymbol, "no UTF-8"},
        {Url("a:/b"), kRefuse, kSymbol, "half a scheme"},
        {Url("a\\b"), kRefuse, kSilent, "a backslash, without a line"},
        {Url("\\"), kRefuse, kSilent, "a backslash alone"},
        {Url("http:\\\\a"), kRefuse, kSilent, "backslashes for slashes"},
    });
    kCheck.ExpectNothingBesideFields();
    EXPECT_EQ(validUrlFilter(nullptr), kRefuse);
    EXPECT_TRUE(platform.calls.empty()) << "stored rows are of no interest";
}

TEST(UrlFilter, WithScheme)
{
    ResetRows();
    for (const char* scheme :
         {"http", "news", "nntp", "gopher", "wais", "mailto", "file", "prospero", "https", "ftp", "telnet"})
        kCheck.Expect({{Url(std::string(scheme) + "://a.example"), kAccept, Rest("a.example"), scheme}});
    kCheck.Expect({
        {Url("HTTP://a"), kRefuse, kSilent, "scheme in capitals"},
        {Url("ftps://a"), kRefuse, kSilent, "unknown scheme"},
        {Url("xhttp://a"), kRefuse, kSilent, "more before the scheme"},
        {Url("a/http://b"), kRefuse, kSilent, "scheme in the middle"},
        {Url("://a"), kRefuse, kSilent, "no scheme"},
        {Url("ht\\tp://a"), kRefuse, kSilent, "backslash"},
        {Url("http://"), kRefuse, Rest("") + "|" + kSymbol, "nothing behind"},
        {Url("http://ab/c?d=e"), kAccept, Rest("ab/c?d=e"), "path and query"},
        {Url("http://a/c"), kRefuse, Rest("a/c") + "|" + kSymbol, "one character leaves none before the slash"},
        {Url("https://a:443/"), kAccept, Rest("a:443/"), "port"},
        {Url("http://a//b"), kRefuse, Rest("a//b") + "|" + kSlash, "two slashes"},
        {Url("http:///a"), kRefuse, Rest("/a") + "|" + kSymbol, "one slash too many before the host"},
        {Url("http:////a"), kRefuse, Rest("//a") + "|" + kSlash, "two slashes before the host"},
        {Url("http://a/b///"), kRefuse, Rest("a/b///") + "|" + kSlash, "three slashes"},
        {Url("http://http://a"), kRefuse, Rest("http://a") + "|" + kSlash, "a scheme twice"},
        {Url("http://a-b"), kRefuse, Rest("a-b") + "|" + kSymbol, "a hyphen"},
        {Url("http://a b"), kRefuse, Rest("a b") + "|" + kSymbol, "a blank"},
        {Url("http://%s%n"), kRefuse, Rest("%s%n") + "|" + kSymbol, "value is data, never a format"},
        {Url("http://10.0.0.1"), kRefuse, Rest("10.0.0.1") + "|" + kIp, "an address"},
        {Url("http://10.0.0.1/a"), kRefuse, Rest("10.0.0.1/a") + "|" + kIp, "anything may follow it"},
        {Url("http://10.0.0.1:80/"), kRefuse, Rest("10.0.0.1:80/") + "|" + kIp, "a port too"},
        {Url("http://1234567"), kRefuse, Rest("1234567") + "|" + kIp, "its dots stand for any character"},
        {Url("http://123456"), kAccept, Rest("123456"), "too short for four parts"},
        {Url("http://a10.0.0.1"), kAccept, Rest("a10.0.0.1"), "not at the beginning"},
    });
}

TEST(UrlFilter, LinesInOrder)
{
    ResetRows();
    const std::string pattern = "^[A-Za-z0-9\\.\\-\\?&_=]+(:[0-9]{1,4}/)?([A-Za-z0-9\\.\\-\\?&_=]+/?)*$";
    const std::vector<std::string> expected = {
        "checkRegex: str____^(http|news|nntp|gopher|wais|mailto|file|prospero|https|ftp|telnet)://",
        "checkRegex: s____0",
        "checkRegex: e____6",
        "validUrlFilter: ------URL:10.0.0.1",
        "checkRegex: str____" + pattern,
        "checkRegex: s____0",
        "checkRegex: e____8",
        "checkRegex: str____^([0-9]{1,3}).([0-9]{1,3}).([0-9]{1,3}).([0-9]{1,3}).*$",
        "checkRegex: s____0",
        "checkRegex: e____8",
        "validUrlFilter: cannot input ip",
    };
    EXPECT_EQ(kCheck.Judge(kCheck.Row(1, Url("ftp://10.0.0.1"))).lines, expected);
    const std::vector<std::string> backslash = {"checkRegex: str____\\\\", "checkRegex: s____1", "checkRegex: e____2"};
    EXPECT_EQ(kCheck.Judge(kCheck.Row(1, Url("a\\b"))).lines, backslash);
}

TEST(UrlFilter, LongestUrlsCostLittle)
{
    ResetRows();
    // A repeated group around a repeated class: 2^127 ways to cut a text that fails at its end.
    const std::string repeated(126, 'a');
    std::string slashes;
    while (slashes.size() < 126) slashes += "a/";
    const auto start = std::chrono::steady_clock::now();
    kCheck.Expect({
        {Url(repeated + "a"), kAccept, kSilent, "longest"},
        {Url(repeated + "!"), kRefuse, kSymbol, "fails at the last character"},
        {Url(slashes + "!"), kRefuse, kSymbol, "with slashes"},
        {Url(slashes + "/"), kRefuse, kSymbol, "two slashes at the end"},
        {Url("a:1/" + repeated.substr(4) + "-"), kRefuse, kSymbol, "with a port"},
        {Url("http://" + repeated.substr(7) + "!"), kRefuse, Rest(repeated.substr(7) + "!") + "|" + kSymbol, "scheme"},
    });
    // Far above what it takes even in an emulator, far below any blow-up.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}
}  // namespace kobd::test
