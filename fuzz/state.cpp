// Any bytes in the database: in its file, and in the objects, rows and stores that a person or another version has put
// there.
//   byte 0: 0 for lines of values, else the first byte's place in the file, in sixteenths
//   lines: NAME=VALUE an object, TABLE|INDEX|FIELD=VALUE a cell; or the bytes that replace those of the file
#include <sqlite3.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string_view>

#include "daemon/base/messages.h"
#include "dictionary/catalogue/accessors.h"
#include "fuzz/target.h"
#include "host/commit.h"
#include "host/state/database.h"
#include "host/state/folder.h"
#include "host/tables/lists.h"
#include "platform/kob_platform.h"
#include "platform/nvram.h"

using namespace kobd::host;

namespace
{
std::string whole;  // a database with a little in it

std::string Path() { return StateFolder() + "/kobd.db"; }

void Empty()
{
    State()->Close();
    for (const auto& file : std::filesystem::directory_iterator(StateFolder()))
        std::filesystem::remove_all(file.path());
}

void WriteFile(std::string_view bytes)
{
    std::ofstream(Path(), std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string Rows()
{
    std::string all;
    for (const List& list : AllLists())
        for (const Row& row : list.rows.Rows()) all.append(row.block.data(), row.block.size()).append(row.parent_path);
    return all;
}

void Insert(std::string_view line)
{
    const size_t equals = std::min(line.find('='), line.size());
    const std::string_view name = line.substr(0, equals);
    const std::string_view value = equals == line.size() ? "" : line.substr(equals + 1);
    const size_t first = name.find('|');
    const size_t second = first == name.npos ? first : name.find('|', first + 1);
    const State state;
    const auto changes = [&]
    {
        if (second == name.npos)
        {
            state->Run("INSERT OR REPLACE INTO objects VALUES(?, ?)", name, value);
            return;
        }
        const std::string number(name.substr(first + 1, second - first - 1));
        state->Run("INSERT OR REPLACE INTO lists VALUES(?, 1)", name.substr(0, first));
        for (const auto& [field, text] :
             {std::pair<std::string_view, std::string_view>{"", ""}, {name.substr(second + 1), value}})
            state->Run("INSERT OR REPLACE INTO cells VALUES(?, ?, ?, ?)", name.substr(0, first),
                       int64_t{strtoll(number.c_str(), nullptr, 10)}, field, text);
    };
    PROMISE(state->Write(changes), "a database could not be written: %s", state->Why().c_str());
}

// Whatever was loaded is served, can be changed, and is the same after the next start.
void CheckState()
{
    LoadState();
    char port[kobd::kValueBuffer] = "";
    static_cast<void>(WebHttpPortGet(port));
    PROMISE(webHttpPortSet("8765") == 0 && nvram_set("lte_status", "one\ntwo") == 0, "nothing can be set");
    PROMISE(update_config() == 0, "nothing can be committed: %s", WhyNotSaved().c_str());
    const std::string before = Rows();
    LoadState();
    PROMISE(WebHttpPortGet(port) == 0 && std::string_view(port) == "8765", "a committed value is %s", port);
    PROMISE(nv_get("lte_status", port, sizeof port) == 0 && std::string_view(port) == "one\ntwo", "a store has %s",
            port);
    PROMISE(Rows() == before, "rows changed by being loaded again");
}
}  // namespace

void kobd::fuzz::Prepare()
{
    setenv("KOBD_STATE_DIR", "/tmp/kobd_fuzzed_state", 1);
    Empty();
    LoadState();
    webHttpPortSet("8081");
    static_cast<void>(update_config());
    Insert("FwUrlFilterTable|1|URL=a.example.net");
    State()->Run("PRAGMA wal_checkpoint(TRUNCATE)");
    std::ifstream file(Path(), std::ios::binary);
    whole.assign(std::istreambuf_iterator<char>(file), {});
}

std::vector<std::string> kobd::fuzz::Seeds()
{
    using namespace std::string_literals;
    return {
        "\0webHttpPort=8080\nwebLanguage=en\ndevHostName=two\\nlines\\\\"s,
        "\0noSuchObject=1\n[heading]"s,
        "\0FwUrlFilterTable|3|URL=example.com\nFwUrlFilterTable|3|Enable=1\nFwUrlFilterTable|3|=\xFF\x00\x01"s,
        "\0FwIpFilterTable|1|DestIPAddress=10.0.0.1\nFwIpFilterTable|1|@path=Device.\nnoSuchTable|1|x=y"s,
        "\0ledsTable|-1|Enable=1\nusersTable|99999999999|Password=x\nApnConfigTable|0|ApnName=a"s,
        "\1\0\0\0\0"s,
        "\x08zzzzzzzzzzzzzzzz"s,
    };
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0) return -1;
    const std::string_view rest(reinterpret_cast<const char*>(data + 1), size - 1);
    if (data[0] == 0)
    {
        LoadState();  // makes the database
        for (size_t at = 0; at < rest.size();)
        {
            const size_t end = std::min(rest.find('\n', at), rest.size());
            if (end > at) Insert(rest.substr(at, end - at));
            at = end + 1;
        }
    }
    else
    {
        std::string damaged = whole;
        const size_t place = whole.size() * (data[0] % 16) / 16;
        damaged.replace(place, std::min(rest.size(), damaged.size() - place), rest);
        State()->Close();
        WriteFile(damaged);
    }
    CheckState();
    Empty();
    return 0;
}
