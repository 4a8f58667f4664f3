// URL filters: the patterns as the engines of all builds must read them.
#include <gtest/gtest.h>

#include <chrono>

#include "tests/recording_platform.h"
#include "tests/validators/row_verdict.h"
#include "validators/url_filter.h"

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
    kCheck.ExpectEach({
        {"URL", kAccept, kSilent, "a host", {"www.example.com", "example", "x", "?&_=."}},
        {"URL", kAccept, kSilent, "a path", {"example.com/a/b", "example.com/", "example.com/a?b=c&d_e"}},
        {"URL", kAccept, kSilent, "a port with its slash", {"example.com:80/", "example.com:8080/a/"}},
        {"URL", kAccept, kSilent, "an address with more is not bare", {"192.168.1.1/", "192.168.1.1:80/"}},
        {"URL", kAccept, kSilent, "no address", {"192.168.1", "1.2.3.4.5", "1.2.3.1234"}},
        {"URL", kRefuse, kIp, "a bare address, or what looks like one", {"192.168.1.1", "999.999.999.999"}},
        {"URL", kRefuse, kSymbol, "empty", {""}},
        {"URL", kRefuse, kSymbol, "\\-\\ in the brackets is a range of one backslash, no hyphen", {"my-site.com", "-"}},
        {"URL", kRefuse, kSymbol, "two slashes, a slash first", {"example.com//a", "example.com:80//", "/a"}},
        {"URL", kRefuse, kSymbol, "no port with its slash", {"example.com:80", "example.com:65535/", "example.com:/"}},
        {"URL", kRefuse, kSymbol, "two ports, half a scheme", {"a:1/b:2/", "a:/b"}},
        {"URL", kRefuse, kSymbol, "a blank, a line end", {"a b", " www.example.com", "a\n"}},
        {"URL", kRefuse, kSymbol, "other signs", {"a%20b", "a#b", "a;b"}},
        {"URL", kRefuse, kSymbol, "what lies beside the backslash in ASCII", {"a[b", "a]b"}},
        {"URL", kRefuse, kSymbol, "beyond ASCII", {"caf\xC3\xA9.example", "a\xFF"}},
        {"URL", kRefuse, kSilent, "a backslash, without a line", {"a\\b", "\\", "http:\\\\a"}},
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
    kCheck.ExpectEach({
        {"URL", kRefuse, kSilent, "no scheme of the list", {"HTTP://a", "ftps://a", "xhttp://a", "://a", "ht\\tp://a"}},
        {"URL", kRefuse, kSilent, "scheme in the middle", {"a/http://b"}},
    });
    kCheck.Expect({
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
