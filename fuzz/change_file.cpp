// Any change file to the table set requests.
//   byte 0: bit 0 the silent request, bit 1 with the debug switch on; the rest: the file
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <string_view>

#include "daemon/base/log.h"
#include "daemon/base/result.h"
#include "dictionary/name_index.h"
#include "dictionary/records.h"
#include "fuzz/recorded.h"
#include "fuzz/target.h"
#include "tests/items.h"
#include "tests/recording_platform.h"

using namespace kobd;
using namespace kobd::test;

namespace
{
void Switch(bool on)
{
    static bool is_on = false;
    if (on != is_on)
        on ? static_cast<void>(close(creat(kDebugSwitchFile, 0600))) : static_cast<void>(unlink(kDebugSwitchFile));
    is_on = on;
}
}  // namespace

void kobd::fuzz::Prepare() { NameIndexBuild(); }

std::vector<std::string> kobd::fuzz::Seeds()
{
    const std::string filter = Row("FwIpFilterTable", 1) + Column("DestIPAddress", "10.0.0.1");
    std::vector<std::string> seeds;
    for (const char mode : {'\0', '\1', '\2'})
        for (const std::string& file :
             {filter, filter + Column("IP_LIST", "black") + Row("FwIpFilterTable", 2) + Column("DestIPAddress", "x"),
              Row("ledsTable", 1) + Column("RelativeXPosition", "4294967295"), Row("ledsTable", 7), std::string()})
            seeds.push_back(mode + file);
    for (const TableDef& table : kTables)
        for (uint32_t i = 0; i < table.column_count; i += 5)
            seeds.push_back('\1' + Row(table.name, 1) + Column(table.columns[i].name, "192.168.0.1"));
    return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0) return -1;
    const std::string_view bytes(reinterpret_cast<const char*>(data + 1), size - 1);
    static const int file = memfd_create("changes", MFD_CLOEXEC);
    PROMISE(
        ftruncate(file, 0) == 0 && pwrite(file, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()),
        "the change file could not be written");
    Switch((data[0] & 2) != 0);
    fuzz::ResetRecorded(bytes);
    const std::string path = "/proc/self/fd/" + std::to_string(file);
    const int result = fuzz::CallAndCheck(fuzz::Handler((data[0] & 1) != 0 ? "ReqTableSetSilent" : "ReqTableSet"),
                                          TextItem(kTagValue, path));
    PROMISE(result != kSystemError, "a file that can be read was not");
    for (const std::string& message : platform.sent)
        PROMISE(PayloadIsSound(std::string_view(message).substr(sizeof(MessageHeader))), "a broken notification");
    return 0;
}
