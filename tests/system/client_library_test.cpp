// The client library against the real daemon: what kobctl does not show of replies, deadlines and watching.
#include "kobd_client.h"

#include <poll.h>
#include <sys/wait.h>

#include <array>
#include <cstring>
#include <functional>
#include <map>
#include <thread>

#include "tests/system/daemon_test.h"

namespace kobd::test
{
namespace
{
class ClientLibrary : public DaemonTest
{
protected:
    void SetUp() override
    {
        DaemonTest::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        ASSERT_EQ(kobd_client_open(&client_), 0);
        ASSERT_EQ(kobd_watch_open(&watch_, KOBD_MODULE_NOTIFY), 0);
    }
    void TearDown() override
    {
        kobd_watch_close(watch_);
        kobd_client_close(client_);
    }

    int GetPort() { return kobd_get(client_, "webHttpPort", value_, sizeof value_); }
    int SetPort(const char* port)
    {
        const char* name = "webHttpPort";
        return kobd_set(client_, &name, &port, 1);
    }

    kobd_client* client_ = nullptr;
    kobd_watch* watch_ = nullptr;
    char value_[KOBD_VALUE_MAX];
};

TEST_F(ClientLibrary, GetsSetsAndTellsWhyNot)
{
    EXPECT_EQ(SetPort("8088"), KOBD_SUCCESS);
    EXPECT_EQ(SetPort("70000"), KOBD_INVALID);
    EXPECT_EQ(GetPort(), KOBD_SUCCESS);
    EXPECT_STREQ(value_, "8088");
    EXPECT_EQ(kobd_get(client_, "webHttpPort", value_, 4), KOBD_BUFFER_LIMIT) << "with its zero byte it has five";
    for (const char* name : {"noSuchObject", "PINNumber", "FlowTable"})  // write-only: left out of the reply
        EXPECT_EQ(kobd_get(client_, name, value_, sizeof value_), KOBD_NOT_FOUND) << name;
    EXPECT_STREQ(kobd_result_text(KOBD_BUFFER_LIMIT), "Message buffer limit");
    EXPECT_STREQ(kobd_result_text(-1), "Unknown result code");
}

std::string Or(const char* text) { return text != nullptr ? text : "-"; }

// All fields of the explanation but its text.
std::string FieldsOf(const kobd_explanation* why)
{
    if (why == nullptr) return "none";
    return std::to_string(why->code) + "|" + Or(why->object) + "|" + Or(why->table) + "|" + std::to_string(why->index) +
           "|" + Or(why->column) + "|" + Or(why->value) + "|" + Or(why->reason) + "|" + Or(why->right);
}

TEST_F(ClientLibrary, ExplainsWhatWasRefused)
{
    const auto set = [this](std::vector<const char*> names, std::vector<const char*> values)
    { return kobd_set(client_, names.data(), values.data(), names.size()); };
    const auto change = [this](std::vector<std::array<const char*, 4>> cells)
    {
        kobd_changes* changes = kobd_changes_new();
        for (const auto& [table, index, column, value] : cells)
            EXPECT_EQ(kobd_changes_add(changes, table, atoi(index), column, value), 0);
        const int code = kobd_changes_set(client_, changes, 0);
        kobd_changes_free(changes);
        return code;
    };
    int32_t index = 0;
    ASSERT_EQ(kobd_row_add(client_, "FwUrlFilterTable", nullptr, &index), 0);
    EXPECT_EQ(kobd_explain(client_), nullptr) << "it was done";
    const std::string url_rule =
        "rows with a host and a path of letters, digits and .?&_=, such as example.com/ads, example.com:80/ or "
        "http://example.com/; no hyphen, no IPv4 address, no doubled slash";
    const struct
    {
        std::function<int()> call;
        std::string fields;
    } cases[] = {
        {[&] {
             return set({"webLanguage", "webHttpPort"}, {"zh", "70000"});
         },
         "2|webHttpPort|-|-1|-|70000|Integer value does not match limitation: 70000 [1:65535] (ParameterCheck)|an "
         "integer from 1 to 65535"},
        {[&] { return set({"webHttpport"}, {"1"}); },
         "1|webHttpport|-|-1|-|1|there is no object webHttpport, did you mean webHttpPort?|-"},
        {[&] { return set({"IMEI"}, {"1"}); }, "10|IMEI|-|-1|-|1|IMEI is read-only|-"},
        {[&] { return kobd_get(client_, "PINNumber", value_, sizeof value_); },
         "1|PINNumber|-|-1|-|-|PINNumber is write-only|-"},
        {[&] { return kobd_row_del(client_, "FwUrlFilterTable", 9); },
         "13|-|FwUrlFilterTable|9|-|-|FwUrlFilterTable has no row 9, it has 1|-"},
        {[&] { return kobd_row_del(client_, "SmsTable", 1); },
         "16|-|SmsTable|-1|-|-|SmsTable has no del operation, it has next|-"},
        {[&] {
             return change({{"DnsClientTable", "1", "Enabled", "1"}});
         },
         "12|-|DnsClientTable|1|Enabled|1|there is no column Enabled, did you mean Enable?|-"},
        {[&] {
             return change({{"DnsClientTable", "1", "Enable", "0"}, {"DnsClientTable", "7", "Enable", "0"}});
         },
         "13|-|DnsClientTable|7|-|-|DnsClientTable has no row 7, it has 1, 2, 3|-"},
        {[&] {
             return change({{"FwUrlFilterTable", "1", "URL", "192.168.1.1"}});
         },
         "2|-|FwUrlFilterTable|1|-|-|cannot input ip (validUrlFilter)|" + url_rule},
        {[&] {
             return change({{"FwUrlFiltertable", "1", "URL", "a"}});
         },
         "1|-|-|-1|-|-|there is no table FwUrlFiltertable, did you mean FwUrlFilterTable?|-"},
    };
    for (const auto& one : cases)
    {
        EXPECT_NE(one.call(), 0) << one.fields;
        EXPECT_EQ(FieldsOf(kobd_explain(client_)), one.fields);
    }
    EXPECT_STREQ(kobd_explain(client_)->text,
                 "there is no table FwUrlFiltertable, did you mean FwUrlFilterTable?: Obj "
                 "or table not found (1)");
    ASSERT_EQ(kobd_get(client_, "webLanguage", value_, sizeof value_), 0);
    EXPECT_STREQ(value_, "en") << "nothing was half-changed";
    daemon_.End(SIGKILL);
    EXPECT_NE(GetPort(), 0);
    EXPECT_EQ(Or(kobd_explain(client_)->reason), "kobd is not running on this bus");
}

TEST_F(ClientLibrary, ReadsAndChangesRowsByName)
{
    std::map<std::string, std::string> read;
    const auto keep = [](void* into, const char* name, const char* value)
    { (*static_cast<std::map<std::string, std::string>*>(into))[name] = value != nullptr ? value : "(none)"; };
    std::vector<const char*> names;
    for (size_t i = 0; const kobd_description* object = kobd_object_at(i); ++i) names.push_back(object->name);
    names.push_back("noSuchObject");
    ASSERT_EQ(kobd_get_many(client_, names.data(), names.size(), keep, &read), 0) << "in many messages";
    EXPECT_EQ(read["IMEI"] + read["noSuchObject"] + read["PINNumber"], "001010123456780(none)(none)");

    const auto keep_row = [](void* into, const char* table, int32_t index, const char* const* columns,
                             const char* const* values, size_t count)
    {
        for (size_t i = 0; i < count; ++i)
            (*static_cast<std::map<std::string, std::string>*>(into))[table + std::to_string(index) + columns[i]] =
                values[i];
    };
    kobd_changes* changes = kobd_changes_new();
    for (const char* index : {"1", "3"})
        ASSERT_EQ(kobd_changes_add(changes, "DnsClientTable", atoi(index), "Alias", (std::string("a") + index).c_str()),
                  0);
    ASSERT_EQ(kobd_changes_set(client_, changes, 0), 0);
    kobd_changes_free(changes);
    ASSERT_EQ(kobd_rows(client_, "DnsClientTable", keep_row, &read), 0);
    EXPECT_EQ(read["DnsClientTable1Alias"] + read["DnsClientTable2Alias"] + read["DnsClientTable3Alias"], "a1dns2a3");
    ASSERT_EQ(kobd_row_get(client_, "DnsClientTable", 3, keep, &read), 0);
    EXPECT_EQ(read["Alias"] + read["DnsServer"], "a32001:db8::53");
    EXPECT_EQ(FilesLike("/tmp/kobd-"), 0u) << "neither a change file nor a dump file is left";
}

bool IsReadable(int descriptor, int milliseconds)
{
    pollfd one = {descriptor, POLLIN, 0};
    return poll(&one, 1, milliseconds) == 1;
}

TEST_F(ClientLibrary, HasDescriptorsToPoll)
{
    uint16_t id = 0;
    const int descriptor = kobd_watch_descriptor(watch_);
    ASSERT_GE(descriptor, 0);
    EXPECT_FALSE(IsReadable(descriptor, 50));
    EXPECT_EQ(kobd_watch_next(watch_, 20, &id), KOBD_TIMEOUT);
    for (int i = 0; i < 100; ++i) ASSERT_EQ(SetPort(i % 2 == 0 ? "8001" : "8002"), 0) << "more than it takes at once";
    int changed = 0;
    for (; changed < 100 && IsReadable(descriptor, 2000); changed += id == 2 ? 1 : 0)
        ASSERT_EQ(kobd_watch_next(watch_, 0, &id), 0);
    EXPECT_EQ(changed, 100);
    ASSERT_EQ(kobd_watch_next(watch_, 2000, &id), 0) << "the last set has ended";
    EXPECT_FALSE(IsReadable(descriptor, 50));

    kobd_tap* tap = nullptr;
    kobd_tapped tapped{};
    ASSERT_EQ(kobd_tap_open(client_, &tap), 0);
    EXPECT_FALSE(IsReadable(kobd_tap_descriptor(tap), 50));
    ASSERT_EQ(GetPort(), 0);
    EXPECT_TRUE(IsReadable(kobd_tap_descriptor(tap), 2000));
    EXPECT_EQ(kobd_tap_next(tap, 0, &tapped), 0);
    EXPECT_EQ(tapped.kind, KOBD_TAP_RECEIVED);
    daemon_.End(SIGKILL);
    while (IsReadable(kobd_tap_descriptor(tap), 2000) && kobd_tap_next(tap, 0, &tapped) == 0) continue;
    EXPECT_EQ(kobd_tap_next(tap, 0, &tapped), KOBD_NOT_RUNNING);
    kobd_tap_close(tap);

    kobd_watch_stop(watch_);
    EXPECT_TRUE(IsReadable(descriptor, 0));
    EXPECT_EQ(kobd_watch_next(watch_, -1, &id), KOBD_NOT_RUNNING);
    EXPECT_TRUE(IsReadable(descriptor, 0)) << "and stays so";
}

// Every object and column, as the library describes it, against what it then says to a value.
TEST(ClientLibraryDictionary, DescribesWhatItAccepts)
{
    for (size_t i = 0; const kobd_description* one = kobd_object_at(i); ++i)
    {
        const kobd_explanation* why = nullptr;
        if (kobd_describe(one->name) != one || one->writable == 0) continue;
        const auto judge = [&](const std::string& value) { return kobd_check(one->name, value.c_str(), &why); };
        if (one->is_number != 0)
        {
            EXPECT_EQ(judge(std::to_string(one->least)) + judge(std::to_string(one->most)), 0) << one->name;
            EXPECT_EQ(judge(std::to_string(one->most + 1)), KOBD_INVALID) << one->name;
            EXPECT_STREQ(why->right, one->accepts);
        }
        std::vector<std::string> wrong;
        if (one->choice_count != 0) wrong.push_back("no such choice");
        if (one->is_number == 0 && one->has_range != 0)
            wrong.push_back(std::string(static_cast<size_t>(one->most) + 1, 'a'));
        if (one->forbidden != nullptr) wrong.push_back("a" + std::string(one->forbidden));
        for (size_t c = 0; c < one->choice_count; ++c) EXPECT_EQ(judge(one->choices[c]), 0) << one->name;
        for (const std::string& value : wrong) EXPECT_EQ(judge(value), KOBD_INVALID) << one->name << "=" << value;
    }
    const kobd_description& rsrp = *kobd_describe("lteRsrp0");
    EXPECT_EQ(Or(rsrp.unit) + std::to_string(rsrp.writable), "dBm0");
    EXPECT_EQ(kobd_describe("PINNumber")->secret, 1);
    EXPECT_EQ(Or(kobd_did_you_mean("webHttpport")) + Or(kobd_did_you_mean("completely different")), "webHttpPort-");
    const kobd_explanation* why = nullptr;
    EXPECT_EQ(kobd_check_column("FwPortFilterTable", "Protocl", "tcp", &why), 12);
    EXPECT_EQ(Or(why->text),
              "FwPortFilterTable: there is no column Protocl, did you mean Protocol?: Element not found (12)");
    size_t unknown = 0;
    for (size_t i = 0; const kobd_description* one = kobd_object_at(i); ++i) unknown += one->meaning == nullptr ? 1 : 0;
    EXPECT_LT(unknown, 100u) << "objects have meanings";
}

TEST_F(ClientLibrary, ReadsRepliesOfSeveralItemsAgain)
{
    kobd_items* items = kobd_items_new();
    for (const char* name : {"webLanguage", "IMEI"})
        ASSERT_EQ(kobd_items_add_text(items, KOBD_TAG_OBJECT_NAME, name), KOBD_SUCCESS);
    ASSERT_EQ(kobd_call(client_, KOBD_GET, items), KOBD_SUCCESS);
    kobd_item item{};
    for (int round = 0; round < 2; ++round)
    {
        std::string texts;
        while (kobd_reply_next(client_, &item) != 0) texts += std::to_string(item.tag) + ":" + item.text + " ";
        EXPECT_EQ(texts, "1:webLanguage 2:en 1:IMEI 2:001010123456780 ");
        kobd_reply_rewind(client_);
    }
    ASSERT_EQ(kobd_items_add_text(items, KOBD_TAG_VALUE, std::string(9000, 'a').c_str()), KOBD_SUCCESS);
    EXPECT_EQ(kobd_call(client_, KOBD_GET, items), KOBD_BUFFER_LIMIT) << "more than one message holds";
    EXPECT_EQ(kobd_answered(client_), 0);
    EXPECT_EQ(kobd_reply_next(client_, &item), 0) << "the reply to another call is gone";
    kobd_items_free(items);
}

TEST(ClientLibraryItems, AreWrittenAndReadAsBytes)
{
    kobd_items* items = kobd_items_new();
    EXPECT_EQ(kobd_items_add_text(items, KOBD_TAG_VALUE, std::string(65535, 'a').c_str()), KOBD_BUFFER_LIMIT);
    EXPECT_EQ(kobd_items_add_number(items, KOBD_TAG_ROW_INDEX, -7), KOBD_SUCCESS);
    EXPECT_EQ(kobd_items_add_text(items, KOBD_TAG_VALUE, std::string(65534, 'a').c_str()), KOBD_SUCCESS);
    size_t size = 0;
    const void* bytes = kobd_items_bytes(items, &size);
    ASSERT_EQ(size, 8u + 4 + 65535) << "what did not fit left nothing behind";

    kobd_item item{};
    kobd_bytes whole = {bytes, size};
    ASSERT_EQ(kobd_bytes_next(&whole, &item), 1);
    EXPECT_EQ(item.tag, KOBD_TAG_ROW_INDEX);
    EXPECT_EQ(item.number, -7);
    EXPECT_EQ(item.text, nullptr) << "no zero byte ends it";
    ASSERT_EQ(kobd_bytes_next(&whole, &item), 1);
    EXPECT_EQ(strlen(item.text), 65534u);
    EXPECT_EQ(kobd_bytes_next(&whole, &item), 0);
    for (const size_t cut : {1u, 3u, 7u})
    {
        kobd_bytes part = {bytes, cut};
        EXPECT_EQ(kobd_bytes_next(&part, &item), -1) << cut;
        EXPECT_EQ(kobd_bytes_next(&part, &item), -1) << "and stays there";
    }
    kobd_items_free(items);
}

TEST_F(ClientLibrary, EndsAtItsDeadline)
{
    kill(daemon_.Process(), SIGSTOP);
    waitpid(daemon_.Process(), nullptr, WUNTRACED);  // stopped, not just told to
    kobd_client_set_timeout(client_, 100);
    const int64_t start = NowMs();
    EXPECT_EQ(GetPort(), KOBD_TIMEOUT);
    EXPECT_LT(NowMs() - start, 2000);
}

TEST_F(ClientLibrary, WatchesUntilStoppedWhateverAChildCloses)
{
    const pid_t child = fork();
    if (child == 0)
    {
        kobd_watch_close(watch_);
        kobd_client_close(client_);
        _exit(0);
    }
    ASSERT_EQ(waitpid(child, nullptr, 0), child);
    kobd_watch* second = nullptr;
    EXPECT_EQ(kobd_watch_open(&second, KOBD_MODULE_NOTIFY), KOBD_INITIALIZE_FAILED) << "one program has a module";
    uint16_t id = 0;
    EXPECT_EQ(kobd_watch_next(watch_, 20, &id), KOBD_TIMEOUT);

    ASSERT_EQ(SetPort("8089"), KOBD_SUCCESS);
    kobd_item item{};
    ASSERT_EQ(kobd_watch_next(watch_, 2000, &id), KOBD_SUCCESS);
    EXPECT_EQ(id, 2);
    ASSERT_EQ(kobd_watch_item(watch_, &item), 1);
    EXPECT_STREQ(item.text, "webHttpPort");
    ASSERT_EQ(kobd_watch_next(watch_, 2000, &id), KOBD_SUCCESS);
    EXPECT_EQ(id, 4);
    EXPECT_EQ(kobd_watch_item(watch_, &item), 0);

    std::thread stopper(
        [this]
        {
            usleep(50000);
            kobd_watch_stop(watch_);
        });
    EXPECT_EQ(kobd_watch_next(watch_, -1, &id), KOBD_NOT_RUNNING);
    stopper.join();
}
}  // namespace
}  // namespace kobd::test
