// Runs the case files tests/requests/*.txt: what the handlers answer, what they call in which order, and what
// they leave behind. A file is one story over the recording platform; each line judges from its state anew.
//
//   on ReqObjSet ReqObjSetSilent       The handlers that the lines below go to.
//   given KEY=TEXT FUNCTION!CODE       What the platform answers from here on, by getter or key of its store,
//                                      and what fails. "flag" is the one of the Ethernet WAN; with "blocks" and
//                                      "arrays" only so much memory can still be had.
//   put ledsTable 3 Name=power         A row that the list has from here on, of index 3.
//   answer ITEMS                       A request that is served, or an event.
//   refuse 2 ITEMS | ITEMS             Requests that are answered with this result alone, and change nothing.
//       > ITEMS                        Behind the result in the reply; else nothing.
//       : "a call" "a call"            The calls of the platform, all in their order, without the reply. Without
//                                      ":" those of an answer are not looked at, and a refusal only reads.
//       + ledsTable.3.Name=wan         What rows hold afterwards, or the flag; a refusal changes nothing else.
//       ! "function: message"          The lines of the log, whole; without "!" they are not looked at.
//       @ KEY=TEXT @ KEY=TEXT          As given, for this line alone; judged once with each.
//
// Items are words: name=, value=, table=, column= and path= texts, and row=TABLE,INDEX; index=3 and count=3
// integers; 9=TEXT a text of any tag, 9!BYTES a value as it is; raw=BYTES no item at all; stored=TABLE,INDEX what
// a row that the list has becomes. Any other NAME=VALUE is an object or a column with its value. The items of a
// table set are those of its change file, unless the word "payload" stands before them.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/sysinfo.h>

#include <cerrno>
#include <filesystem>
#include <span>

#include "daemon/handler_table.h"
#include "dictionary/name_index.h"
#include "events/handlers.h"
#include "tests/case_lines.h"
#include "tests/failing_memory.h"
#include "tests/tables/table_rows.h"
#include "tests/validators/judge.h"

namespace kobd::test
{
namespace
{
const std::string kFiles = "tests/requests/";  // in the folder of the sources

const MsgHandler& Handler(const std::string& name)
{
    for (const MsgHandler& handler : kHandlers)
        if (handler.name == name) return handler;
    ADD_FAILURE() << "no handler " << name;
    return kHandlers[0];
}

std::pair<std::string, int32_t> RowName(const std::string& word)
{
    const size_t comma = word.find(',');
    return {word.substr(0, comma), std::stoi(word.substr(comma + 1))};
}

// The items that one word stands for.
std::string Item(const std::string& word, bool objects)
{
    static const std::map<std::string, uint16_t> kTexts = {
        {"name", 1}, {"value", 2}, {"table", 3}, {"column", 5}, {"path", 6}};
    const auto& [key, text] = Split(word);
    if (const size_t sign = word.find('!'); sign <= 3)
        return RawItem(static_cast<uint16_t>(std::stoi(word)), word.substr(sign + 1));
    if (isdigit(key[0]) != 0) return TextItem(static_cast<uint16_t>(std::stoi(key)), text);
    if (kTexts.contains(key)) return TextItem(kTexts.at(key), text);
    if (key == "index") return IntItem(4, std::stoi(text));
    if (key == "count") return IntItem(2, std::stoi(text));
    if (key == "raw") return text;
    if (key != "row" && key != "stored") return objects ? Pair(key, text) : Column(key, text);
    const auto [table, index] = RowName(text);
    return key == "row" ? Row(table, index) : ItemsOf(Table(table), platform.rows[table][index]);
}

std::string Items(std::span<const std::string> words, bool objects)
{
    std::string items;
    for (const std::string& word : words) items += Item(word, objects);
    return items;
}

class Requests : public testing::TestWithParam<std::string>
{
protected:
    void Run(const CaseLine& line)
    {
        Words words;
        for (const CaseToken& token : line.tokens)
            if (token.sign == 0) words.push_back(token.text);
        if (line.command == "on") return void(handlers_ = words);
        if (line.command == "given") return void(given_.insert(given_.end(), words.begin(), words.end()));
        if (line.command == "put")
        {
            Fields fields;
            for (size_t i = 2; i < words.size(); ++i) fields.push_back(Split(words[i]));
            return PutRow(words[0], std::stoi(words[1]), fields);
        }
        ASSERT_TRUE(line.command == "answer" || line.command == "refuse") << line.command;
        parts_ = {{'|', {{}}}};
        char sign = '|';
        for (const CaseToken& token : line.tokens)
            if (token.sign != 0)
                parts_[sign = token.sign].emplace_back();
            else
                parts_[sign].back().push_back(token.text);
        result_ = 0;
        if (line.command == "refuse")
        {
            Words& first = parts_['|'][0];
            result_ = std::stoi(first[0]);
            first.erase(first.begin());
        }
        if (!parts_.contains('@')) parts_['@'].emplace_back();
        for (const Words& state : parts_['@'])
            for (const Words& items : parts_['|'])
                for (const std::string& handler : handlers_) Ask(Handler(handler), items, state);
    }

private:
    static void Give(const std::string& word)
    {
        const auto& [key, text] = Split(word);
        if (const size_t sign = key.find('!'); sign != key.npos)
            platform.failures[key.substr(0, sign)] = std::stoi(key.substr(sign + 1));
        else if (key == "flag")
            g_ethWanConnected = std::stoi(text);
        else
            (key == "main_status" ? platform.nvram : platform.values)[key] = text;
    }

    void Ask(const MsgHandler& handler, std::span<const std::string> words, const Words& state)
    {
        const std::string name = handler.name;
        SCOPED_TRACE(name + (words.empty() ? "" : " " + words.back().substr(0, 80)));
        const bool objects = name.starts_with("ReqObj");
        const bool payload_given = !words.empty() && words[0] == "payload";
        std::string payload = Items(payload_given ? words.subspan(1) : words, objects);
        if (name.starts_with("ReqTableSet") && !payload_given) payload = Changes(payload);

        const RecordingPlatform before = platform;
        g_ethWanConnected = 0;
        int blocks = -1, arrays = -1;
        for (const Words& some : {given_, state})
            for (const std::string& word : some)
                if (word.starts_with("blocks="))
                    blocks = std::stoi(Split(word).second);
                else if (word.starts_with("arrays="))
                    arrays = std::stoi(Split(word).second);
                else
                    Give(word);
        const int flag = g_ethWanConnected;
        ExactMessage message(payload);
        message.Header()->id = static_cast<uint16_t>(handler.code >> 16);
        message.Header()->message_class = static_cast<uint16_t>(handler.code);
        OutputCapture output;
        {
            const MemoryLeft left(blocks, arrays);
            EXPECT_EQ(handler.handler(message.Header()), result_);
        }
        const Words lines = LogLines(output.Text());
        if (message.Header()->message_class == kClassRequest)
            ExpectReply(Items(parts_['>'].empty() ? Words() : parts_['>'][0], objects));
        ExpectCalls(name);
        ExpectLeft(before, flag);
        EXPECT_EQ(lines, parts_.contains('!') ? parts_['!'][0] : lines);
        platform = before;
    }

    // One reply, the last call, which is taken out of the calls.
    void ExpectReply(const std::string& items)
    {
        ASSERT_EQ(platform.Calls("reply").size(), 1u);
        EXPECT_TRUE(platform.calls.back().starts_with("reply"));
        EXPECT_EQ(platform.reply.substr(sizeof(MessageHeader)), IntItem(0, result_) + items);
        platform.calls.pop_back();
    }

    void ExpectCalls(const std::string& handler)
    {
        // The uptime that an event stores.
        struct sysinfo system = {};
        sysinfo(&system);
        for (std::string& call : platform.calls)
            for (const long uptime : {system.uptime - 1, system.uptime})
                if (call == "nvram connected_time " + std::to_string(uptime)) call = "nvram connected_time UPTIME";
        const Lines refused = handler == "ReqObjSet" ? Lines{"notify 4"} : Lines();
        const bool exact = parts_.contains(':') || result_ == 0;
        const Lines calls = exact ? platform.calls : CallsButReads();
        EXPECT_EQ(calls, parts_.contains(':') ? parts_[':'][0] : result_ != 0 ? refused : calls);
    }

    void ExpectLeft(const RecordingPlatform& before, int flag)
    {
        EXPECT_TRUE(NothingLeft());
        EXPECT_EQ(FilesLike("/tmp/kobd-"), 0u);
        for (const std::string& word : parts_['+'].empty() ? Words() : parts_['+'][0])
        {
            const auto& [key, text] = Split(word);
            const size_t dot = key.find('.');
            const size_t second = std::min(key.find('.', dot + 1), key.size() - 1);
            if (key == "flag")
                flag = std::stoi(text);
            else
                EXPECT_EQ(Field(key.substr(0, dot), std::stoi(key.substr(dot + 1)), key.substr(second + 1)), text)
                    << key;
        }
        EXPECT_EQ(g_ethWanConnected, flag);
        EXPECT_TRUE(result_ == 0 || !parts_['+'].empty() || platform.rows == before.rows) << "a row is changed";
    }

    Words handlers_;
    Words given_;
    std::map<char, std::vector<Words>> parts_;  // of the line in hand, by the sign before them
    int result_ = 0;
};
}  // namespace

TEST_P(Requests, AreServedAsTheFileSays)
{
    SKIP_WITHOUT_NAMESPACES();
    NameIndexBuild();
    ResetPlatform();
    ASSERT_TRUE(mkfifo("/tmp/pipe", 0600) == 0 || errno == EEXIST);
    std::filesystem::create_directory("/tmp/folder");
    const std::string path = kFiles + GetParam() + ".txt";
    for (const CaseLine& line : ReadCases(SourceFolder() + path))
    {
        const testing::ScopedTrace trace(path.c_str(), line.number, line.why);
        Run(line);
    }
    g_ethWanConnected = 0;
}

INSTANTIATE_TEST_SUITE_P(Files, Requests, testing::ValuesIn(CaseFiles(kFiles)), [](const auto& f) { return f.param; });
}  // namespace kobd::test
