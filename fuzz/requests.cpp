// Any payload to any handler.
//   byte 0: which handler; the rest: the payload
#include <string_view>

#include "daemon/handler_table.h"
#include "dictionary/name_index.h"
#include "fuzz/recorded.h"
#include "fuzz/target.h"
#include "tests/items.h"

using namespace kobd;
using namespace kobd::test;

namespace
{
constexpr size_t kRows = kHandlers.size() - 1;  // without the one that ends the table

std::string Input(std::string_view handler, const std::string& payload)
{
    size_t row = 0;
    while (row < kRows && kHandlers[row].name != handler) ++row;
    return static_cast<char>(row) + payload;
}
}  // namespace

void kobd::fuzz::Prepare() { NameIndexBuild(); }

std::vector<std::string> kobd::fuzz::Seeds()
{
    std::vector<std::string> seeds = {
        Input("ReqObjGet", Name("webHttpPort") + Name("IMEI") + Name("networkLanSettingIp")),
        Input("ReqTableGet", Row("FwMacFilterTable", 1) + Row("DnsClientTable", 2)),
        Input("ReqTableDel", Row("FwUrlFilterTable", 1)),
        Input("REQSubTableAdd", TextItem(kTagTableName, "ledsTable") + TextItem(kTagParentPath, "Device.LEDs.LED.1.")),
        Input("ReqTableSet", TextItem(kTagValue, "/tmp/changes")),
        Input("ReqTableSetSilent", TextItem(kTagValue, "/dev/null")),
        Input("ReqUpdate", ""),
        Input("ReqShow", ""),
        Input("ReqTableDump", TextItem(kTagTableName, "ledsTable") + TextItem(kTagTableName, "FwIpFilterTable")),
    };
    for (const char* set : {"ReqObjSet", "ReqObjSetSilent"})
        for (const std::string& pairs :
             {Pair("webHttpPort", "8080"), Pair("lteLockpin", "1234") + Pair("webLanguage", "en"),
              Pair("networkLanSettingIp", "192.168.0.1") + Pair("networkLanSettingMask", "255.255.255.0"),
              Pair("networkLanSettingStart", "192.168.0.10") + Pair("networkLanSettingEnd", "192.168.0.20")})
            seeds.push_back(Input(set, pairs));
    for (const char* handler : {"ReqTableMaxRow", "ReqTableElementCount", "ReqTableAdd"})
        seeds.push_back(Input(handler, TextItem(kTagTableName, "FwUrlFilterTable")));
    for (const MsgHandler& row : kHandlers)
        if (row.name != nullptr && std::string_view(row.name).starts_with("Evt"))
            for (const char* payload : {"1", "4", ""}) seeds.push_back(Input(row.name, payload + std::string(1, '\0')));
    return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0 || size - 1 > kPayloadMax) return -1;
    const std::string_view payload(reinterpret_cast<const char*>(data + 1), size - 1);
    fuzz::ResetRecorded(payload);
    fuzz::CallAndCheck(kHandlers[data[0] % kRows], payload);
    return 0;
}
