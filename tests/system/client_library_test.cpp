// The client library against the real daemon: what kobctl does not show of replies, deadlines and watching.
#include "kobd_client.h"

#include <sys/wait.h>

#include <cstring>
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
