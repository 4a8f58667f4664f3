// The client library against the real daemon: replies, codes, deadlines and watching.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>

#include "kobd_client.h"
#include "tests/namespaces.h"
#include "tests/system/daemon_process.h"

extern "C" int SetAndReadInC(const char* port, char* value, size_t size);

namespace kobd::test
{
namespace
{
class ClientLibrary : public testing::Test
{
protected:
    void SetUp() override
    {
        SKIP_WITHOUT_NAMESPACES();
        ASSERT_EQ(system("rm -rf /tmp/state /tmp/kobd*"), 0);
        ASSERT_TRUE(daemon_.Start());
        ASSERT_EQ(kobd_client_open(&client_), 0);
    }
    void TearDown() override { kobd_client_close(client_); }

    DaemonProcess daemon_{"/tmp/state"};
    kobd_client* client_ = nullptr;
};

TEST_F(ClientLibrary, GetsSetsAndTellsWhyNot)
{
    char value[KOBD_VALUE_MAX];
    EXPECT_EQ(SetAndReadInC("8088", value, sizeof value), KOBD_SUCCESS);
    EXPECT_STREQ(value, "8088");
    EXPECT_EQ(SetAndReadInC("70000", value, sizeof value), KOBD_INVALID);

    char small[4];
    const struct
    {
        const char* name;
        char* value;
        size_t size;
        int code;
    } cases[] = {
        {"webHttpPort", small, sizeof small, KOBD_BUFFER_LIMIT},  // 8088 and its zero byte are five
        {"noSuchObject", value, sizeof value, KOBD_NOT_FOUND},
        {"PINNumber", value, sizeof value, KOBD_NOT_FOUND},  // write-only: left out of the reply
        {"FlowTable", value, sizeof value, KOBD_NOT_FOUND},
    };
    for (const auto& one : cases) EXPECT_EQ(kobd_get(client_, one.name, one.value, one.size), one.code) << one.name;
    EXPECT_STREQ(kobd_result_text(KOBD_BUFFER_LIMIT), "Message buffer limit");
    EXPECT_STREQ(kobd_result_text(-1), "Unknown result code");
}

TEST_F(ClientLibrary, DecodesRepliesOfSeveralItems)
{
    kobd_items* items = kobd_items_new();
    ASSERT_NE(items, nullptr);
    for (const char* name : {"webLanguage", "IMEI"})
        ASSERT_EQ(kobd_items_add_text(items, KOBD_TAG_OBJECT_NAME, name), KOBD_SUCCESS);
    ASSERT_EQ(kobd_call(client_, KOBD_GET, items), KOBD_SUCCESS);
    for (int round = 0; round < 2; ++round)
    {
        std::string texts;
        for (kobd_item item; kobd_reply_next(client_, &item) != 0;)
            texts += std::to_string(item.tag) + ":" + item.text + " ";
        EXPECT_EQ(texts, "1:webLanguage 2:en 1:IMEI 2:001010123456780 ") << "a rewound reply reads the same";
        kobd_reply_rewind(client_);
    }
    ASSERT_EQ(kobd_items_add_text(items, KOBD_TAG_VALUE, std::string(9000, 'a').c_str()), KOBD_SUCCESS);
    EXPECT_EQ(kobd_call(client_, KOBD_GET, items), KOBD_BUFFER_LIMIT) << "more than one message holds";
    EXPECT_EQ(kobd_answered(client_), 0);
    kobd_item item{};
    EXPECT_EQ(kobd_reply_next(client_, &item), 0) << "the reply to another call is gone";
    kobd_items_free(items);
}

TEST(ClientLibraryItems, AreWrittenAndReadAsBytes)
{
    kobd_items* items = kobd_items_new();
    ASSERT_NE(items, nullptr);
    EXPECT_EQ(kobd_items_add_text(items, KOBD_TAG_VALUE, std::string(65535, 'a').c_str()), KOBD_BUFFER_LIMIT);
    size_t size = 1;
    kobd_items_bytes(items, &size);
    EXPECT_EQ(size, 0u) << "what does not fit leaves nothing behind";
    EXPECT_EQ(kobd_items_add_number(items, KOBD_TAG_ROW_INDEX, -7), KOBD_SUCCESS);
    EXPECT_EQ(kobd_items_add_text(items, KOBD_TAG_VALUE, std::string(65534, 'a').c_str()), KOBD_SUCCESS);
    const void* bytes = kobd_items_bytes(items, &size);
    ASSERT_EQ(size, 8u + 4 + 65535);

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

TEST_F(ClientLibrary, EndsAtItsDeadlineAndSaysWhenNobodyServes)
{
    kill(daemon_.Process(), SIGSTOP);
    waitpid(daemon_.Process(), nullptr, WUNTRACED);  // stopped, not just told to
    kobd_client_set_timeout(client_, 100);
    char value[KOBD_VALUE_MAX];
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(kobd_get(client_, "webHttpPort", value, sizeof value), KOBD_TIMEOUT);
    EXPECT_EQ(kobd_answered(client_), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
    kill(daemon_.Process(), SIGCONT);
    kobd_client_set_timeout(client_, 5000);
    EXPECT_EQ(kobd_get(client_, "webHttpPort", value, sizeof value), KOBD_SUCCESS) << "the late reply is not taken";
    daemon_.End(SIGTERM);
    EXPECT_EQ(kobd_get(client_, "webHttpPort", value, sizeof value), KOBD_NOT_RUNNING);
}

TEST_F(ClientLibrary, AChildThatClosesTakesNothingFromItsParent)
{
    kobd_watch* watch = nullptr;
    ASSERT_EQ(kobd_watch_open(&watch, KOBD_MODULE_NOTIFY), KOBD_SUCCESS);
    const pid_t child = fork();
    if (child == 0)
    {
        kobd_watch_close(watch);
        kobd_client_close(client_);
        _exit(0);
    }
    ASSERT_EQ(waitpid(child, nullptr, 0), child);
    char value[KOBD_VALUE_MAX];
    uint16_t id = 0;
    EXPECT_EQ(kobd_get(client_, "webHttpPort", value, sizeof value), KOBD_SUCCESS);
    EXPECT_EQ(SetAndReadInC("8090", value, sizeof value), KOBD_SUCCESS);
    EXPECT_EQ(kobd_watch_next(watch, 2000, &id), KOBD_SUCCESS);
    kobd_watch_close(watch);
}

TEST_F(ClientLibrary, WatchesUntilStopped)
{
    kobd_watch* watch = nullptr;
    ASSERT_EQ(kobd_watch_open(&watch, KOBD_MODULE_NOTIFY), KOBD_SUCCESS);
    kobd_watch* second = nullptr;
    EXPECT_EQ(kobd_watch_open(&second, KOBD_MODULE_NOTIFY), KOBD_INITIALIZE_FAILED) << "one program has a module";
    uint16_t id = 0;
    EXPECT_EQ(kobd_watch_next(watch, 20, &id), KOBD_TIMEOUT);

    char value[KOBD_VALUE_MAX];
    ASSERT_EQ(SetAndReadInC("8089", value, sizeof value), KOBD_SUCCESS);
    kobd_item item{};
    ASSERT_EQ(kobd_watch_next(watch, 2000, &id), KOBD_SUCCESS);
    EXPECT_EQ(id, 2);
    ASSERT_EQ(kobd_watch_item(watch, &item), 1);
    EXPECT_STREQ(item.text, "webHttpPort");
    ASSERT_EQ(kobd_watch_next(watch, 2000, &id), KOBD_SUCCESS);
    EXPECT_EQ(id, 4);
    EXPECT_EQ(kobd_watch_item(watch, &item), 0);

    std::thread stopper(
        [watch]
        {
            usleep(50000);
            kobd_watch_stop(watch);
        });
    EXPECT_EQ(kobd_watch_next(watch, -1, &id), KOBD_NOT_RUNNING);
    stopper.join();
    kobd_watch_close(watch);
}
}  // namespace
}  // namespace kobd::test
