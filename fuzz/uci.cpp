// Any bytes in a configuration of the host platform's uci, changed by any command.
//   a name, a value, each ended by a zero byte; the rest: the file
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string_view>

#include "fuzz/target.h"
#include "host/state/folder.h"
#include "host/uci/configuration.h"
#include "host/uci/files.h"

using namespace kobd::host;

namespace
{
constexpr const char* kConfig = "tr069_cellular";

std::string Folder() { return StateFolder() + "/uci"; }

std::string_view Take(std::string_view* bytes)
{
    const std::string_view text = bytes->substr(0, bytes->find('\0'));
    bytes->remove_prefix(std::min(bytes->size(), text.size() + 1));
    return text;
}

// What was staged is what is loaded, before and after it is committed.
void CheckKept(const Settings& settings)
{
    Settings again;
    PROMISE(StageUci(kConfig, settings) && LoadUci(kConfig, &again) == UciLoad::kLoaded && again == settings,
            "staged settings changed");
    PROMISE(CommitUci(kConfig) && LoadUci(kConfig, &again) == UciLoad::kLoaded && again == settings,
            "committed settings changed");
}
}  // namespace

void kobd::fuzz::Prepare()
{
    setenv("KOBD_STATE_DIR", "/tmp/kobd_fuzzed_uci", 1);
    std::filesystem::create_directories(Folder());
}

std::vector<std::string> kobd::fuzz::Seeds()
{
    using namespace std::string_literals;
    const std::string file = "cfg1=lan\ncfg1.index=1\ncfg1.Enable=1\ncfg2=lan\ncfg2.X.Y=it's\\n\nend\n";
    return {"tr069_cellular.cfg1.Enable\0"s + "0\0"s + file, "tr069_cellular.cfg2\0"s + "\0"s + file,
            "tr069_cellular\0"s + "usim\0"s + file, "a.b.c.d\0"s + "x\0"s + "end\n",
            "tr069_cellular.cfg3.name\0"s + "a'b\0"s + ""};
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::string_view text = Take(&bytes);
    const std::string_view value = Take(&bytes);
    std::ofstream(Folder() + "/" + kConfig, std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));

    Settings settings;
    PROMISE(LoadUci(kConfig, &settings) != UciLoad::kUnusable, "a readable file was not read");
    UciName name;
    if (ParseUciName(text, &name) && !name.section.empty())
    {
        ChangeSetting(&settings, name, value);
        const std::string* found = FindSetting(settings, name);
        PROMISE(value.empty() ? true : found != nullptr && *found == value, "a value that was set is not there");
        CheckKept(settings);
        while (RemoveSetting(&settings, name))
        {
        }
        PROMISE(FindSetting(settings, name) == nullptr, "a removed setting is there");
    }
    if (IsUciType(value)) AddSection(&settings, value);
    static_cast<void>(ShowSettings(settings, kConfig));
    CheckKept(settings);
    for (const auto& file : std::filesystem::directory_iterator(Folder())) std::filesystem::remove(file.path());
    unlink((StateFolder() + "/journal").c_str());
    return 0;
}
