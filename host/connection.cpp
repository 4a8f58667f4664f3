// The connection services of the host platform: there is nothing to start or stop on a host, so
// each writes a journal line of what a router would have done. Events really go to their module.
#include "platform/connection.h"

#include <cstring>
#include <string>

#include "daemon/base/messages.h"
#include "host/state/folder.h"
#include "platform/kobd_exports.h"
#include "platform/message.h"
#include "platform/nvram.h"

using kobd::host::Journal;

namespace
{
constexpr int kInvalidArgument = 2;
constexpr int kSendFailed = 5;

int Called(const char* service, int argument)
{
    Journal(service, std::to_string(argument));
    return 0;
}
}  // namespace

ConfigWanInterfaces g_stConfigWANIF = {{"rmnet_data0", "rmnet_data1", "rmnet_data2", "rmnet_data3"}, 4};

int setDualwanNetSelectMode_lte(const char* mode)
{
    Journal("setDualwanNetSelectMode_lte", mode);
    return nvram_set("dualwan_net_select_mode", mode);
}

int ChangeConnectTime_net(int cellular) { return Called("ChangeConnectTime_net", cellular); }
int updateDdns(int reason) { return Called("updateDdns", reason); }
int ftpUpgrade(int reason) { return Called("ftpUpgrade", reason); }
int ntpUpdate(int reason) { return Called("ntpUpdate", reason); }

int killFtpUpgradeDaemon()
{
    Journal("killFtpUpgradeDaemon");
    return 0;
}

int voipD2Vapp(int event) { return Called("voipD2Vapp", event); }
int volteD2Vapp(int event) { return Called("volteD2Vapp", event); }

int KobdEvtSend(uint32_t module, uint16_t id, const void* data, int length)
{
    if (length < 0 || static_cast<size_t>(length) > kobd::kPayloadMax) return kInvalidArgument;
    alignas(MessageHeader) char bytes[kobd::kMessageMax];
    auto* message = reinterpret_cast<MessageHeader*>(bytes);
    *message = {};
    message->destination = module;
    message->message_class = kobd::kClassEvent;
    message->id = id;
    message->length = static_cast<uint16_t>(length);
    if (length > 0) memcpy(message + 1, data, static_cast<size_t>(length));
    const int code = MessageSend(message);
    if (code == kSendFailed)
        kobd_log_print("KobdEvtSend", __LINE__, "event %d dropped, the queue of module 0x%08X is full", id, module);
    return code;
}

int getWanInterfaceCurrentTr069_net(char* name, size_t size) { return nvram_cpy("wan_interface_tr069", name, size); }
int getWanInterfaceCurrentVOIP_net(char* name, size_t size) { return nvram_cpy("wan_interface_voip", name, size); }
int getCurrWanInterfaceSNMP_net(char* name, size_t size) { return nvram_cpy("wan_interface_snmp", name, size); }
