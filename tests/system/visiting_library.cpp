// A library in the place of one of the platform's: loaded into the daemon before the host platform,
// it takes over update_config and reports from there what it can reach in the daemon by name.
#include <dlfcn.h>
#include <link.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

namespace
{
constexpr const char* kReport = "/tmp/visit";

const char* const kExported[] = {
#define EXPORTED(name) #name,
#include "tests/system/exported_names.def"
#undef EXPORTED
};

template <typename Record>
Record At(const std::string& bytes, size_t offset)
{
    Record record = {};
    memcpy(&record, bytes.data() + offset, sizeof record);
    return record;
}

// Bytes of a data object that the daemon exports, as its file says.
unsigned long SizeOf(const std::string& name)
{
    std::ifstream file("/proc/self/exe", std::ios::binary | std::ios::ate);
    std::string bytes(static_cast<size_t>(file.tellg()), '\0');
    file.seekg(0).read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    const auto header = At<ElfW(Ehdr)>(bytes, 0);
    const auto section = [&](size_t number)
    { return At<ElfW(Shdr)>(bytes, header.e_shoff + number * sizeof(ElfW(Shdr))); };
    for (size_t number = 0; number < header.e_shnum; ++number)
    {
        const auto table = section(number);
        if (table.sh_type != SHT_DYNSYM) continue;
        for (size_t offset = 0; offset < table.sh_size; offset += sizeof(ElfW(Sym)))
        {
            const auto symbol = At<ElfW(Sym)>(bytes, table.sh_offset + offset);
            if (bytes.data() + section(table.sh_link).sh_offset + symbol.st_name == name) return symbol.st_size;
        }
    }
    return 0;
}

template <typename Function>
Function* Exported(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_DEFAULT, name));
}
}  // namespace

extern "C" int update_config()
{
    FILE* report = fopen(kReport, "w");
    if (report == nullptr) return 14;
    for (const char* name : kExported)
        if (dlsym(RTLD_DEFAULT, name) == nullptr) fprintf(report, "missing %s\n", name);
    for (const char* name : {"wifi_flag_mutex", "apn_modify", "aa", "apn_list", "message_buffer"})
        fprintf(report, "%s %lu\n", name, SizeOf(name));

    char value[2048] = "";
    if (auto* snapshot = Exported<int(const char*, char*)>("SnapshotGet"))
        fprintf(report, "SnapshotGet %d %s\n", snapshot("webHttpPort", value), value);
    if (auto* valid = Exported<int(const char*)>("validIpv4"))
        fprintf(report, "validIpv4 %d %d\n", valid("192.0.2.1"), valid("192.0.2"));
    if (auto* print = Exported<int(const char*, int, const char*, ...)>("kobd_log_print"))
        print("visitor", 7, "called from %s", "a library");
    if (auto* send = Exported<int(...)>("kobd_send_message")) fprintf(report, "kobd_send_message %d\n", send(1, 2));
    fclose(report);

    auto* next = reinterpret_cast<int (*)()>(dlsym(RTLD_NEXT, "update_config"));
    return next == nullptr ? 14 : next();
}
