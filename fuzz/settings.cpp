// Any bytes in the state files: objects, tables, the shared stores and the note of a commit.
//   byte 0: which file; the rest: what it holds
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string_view>

#include "fuzz/target.h"
#include "host/objects/object_values.h"
#include "host/state/shared_store.h"
#include "host/state/state_save.h"
#include "host/state/state_store.h"
#include "host/tables/list_state.h"

using namespace kobd::host;

namespace
{
constexpr const char* kFiles[] = {"objects", "tables", "nvram", "commit"};

std::string Path(const std::string& name) { return StateFolder() + "/" + name; }

void Write(const std::string& path, std::string_view bytes)
{
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// What was read can be written, and reads the same.
void CheckSettings(const std::string& path)
{
    Settings read;
    Settings again;
    if (LoadSettings(path, &read) != LoadResult::kLoaded) return;
    PROMISE(SaveSettings(Path("copy"), read) && LoadSettings(Path("copy"), &again) == LoadResult::kLoaded,
            "what was loaded could not be saved");
    PROMISE(again == read, "settings changed by being saved");
}

// The state that the platform makes of a file is kept whole by being saved and loaded again.
void CheckState(const std::string& path, void (*load)(const std::string& path), Settings (*state)())
{
    load(path);
    const Settings before = state();
    if (before.empty()) return;  // the factory's
    PROMISE(SaveSettings(path, before), "the state could not be saved");
    load(path);
    PROMISE(state() == before, "the state of %s changed by being saved", path.c_str());
}

// Whatever a note says, the next start ends it, and the one after finds nothing to do.
void CheckNote()
{
    Write(Path("objects"), "webHttpPort=1\nend\n");
    Write(Path("objects.new"), "webHttpPort=2\nend\n");
    PROMISE(FinishSave(StateFolder()), "a commit could not be finished");
    PROMISE(access(Path("commit").c_str(), F_OK) != 0, "the note of a finished commit is there");
    Settings objects;
    PROMISE(LoadSettings(Path("objects"), &objects) == LoadResult::kLoaded, "the objects are neither old nor new");
}

void CheckStore()
{
    static constexpr FactoryValue kFactory[] = {{"eth_status", "0"}};
    const SharedStore store("nvram", kFactory);
    char value[64];
    static_cast<void>(store.Get("eth_status", value, sizeof value));
    PROMISE(store.Set("lte_status", "one\ntwo") == 0, "a store could not be set");
    PROMISE(store.Get("lte_status", value, sizeof value) == 0 && std::string_view(value) == "one\ntwo",
            "a store gives %s", value);
}

void Empty()
{
    for (const auto& file : std::filesystem::directory_iterator(StateFolder()))
        std::filesystem::remove_all(file.path());
}
}  // namespace

void kobd::fuzz::Prepare()
{
    setenv("KOBD_STATE_DIR", "/tmp/kobd_fuzzed_state", 1);
    Empty();
}

std::vector<std::string> kobd::fuzz::Seeds()
{
    using namespace std::string_literals;
    return {
        "\0"s + "# comment\nwebHttpPort=8080\nwebLanguage=en\ndescription=two\\nlines\\\\\nend\n",
        "\0"s + "noSuchObject=1\n[heading]\nend\n",
        "\1"s + "[FwUrlFilterTable]\n@last=7\n[FwUrlFilterTable 3]\nURL=example.com\nEnable=1\nend\n",
        "\1"s +
            "[FwIpFilterTable]\n@last=2\n[FwIpFilterTable 1]\nDestIPAddress=10.0.0.1\n@8=00ff10\n@path=Device.\nend\n",
        "\1"s + "[noSuchTable 1]\nx=y\n[ledsTable]\nend\n",
        "\2"s + "eth_status=1\nlte_status=0\nend\n",
        "\3"s + "objects=\ntables=\nend\n",
        "\3"s + "../objects=\nend\n",
    };
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0) return -1;
    const std::string path = Path(kFiles[data[0] % std::size(kFiles)]);
    Write(path, {reinterpret_cast<const char*>(data + 1), size - 1});
    CheckSettings(path);
    switch (data[0] % std::size(kFiles))
    {
        case 0: CheckState(path, ObjectValuesLoad, ObjectValuesState); break;
        case 1: CheckState(path, ListsLoad, ListsState); break;
        case 2: CheckStore(); break;
        default: CheckNote(); break;
    }
    Empty();
    return 0;
}
