// The platform as unit tests see it: every function that the daemon calls writes one line into an
// ordered list, and a test chooses values and failures by the accessor's name.
//
//   "get WebHttpPortGet"   "set webHttpPortSet 8080"   "update_config"
//   "notify 2 webHttpPort" "reply 0"                   "register" "join 5a510001" "leave"
//   "send 5a510009 771 2"  "nvram eth_status 1"        "read main_status"  "updateDdns 3"
//   "nv_get apn1_enable"
//   "add ledsListAdd -1"   "get ledsListGet 3"         "path ledsListSetPPath 3 Device.LEDs."
//
// The list operations of the platform keep rows; the lists that the daemon keeps itself are not
// recorded.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace kobd::test
{
struct RecordingPlatform
{
    std::vector<std::string> calls;
    std::map<std::string, std::string> values;  // what a getter gives; the empty text otherwise
    std::map<std::string, std::string> nvram;   // both stores by key; a set writes "nvram KEY VALUE"
    std::map<std::string, std::string> config;  // or "config KEY VALUE"
    std::map<std::string, int> failures;        // result of an accessor or platform function; of a list
                                                // operation also by function and index: "ledsListSet 3"
    // Rows by index, by the first table that names the list's operation. As a list would: add makes
    // the row behind the last index (from 1 on) full of zeros, an unknown index is answered 13.
    std::map<std::string, std::map<int32_t, std::string>> rows;
    std::function<void()> during_set;  // runs inside every set accessor
    std::string reply;                 // bytes of the last reply, header included
    std::vector<std::string> sent;     // bytes of every message sent, header included

    // Lines that begin with `prefix`.
    std::vector<std::string> Calls(const std::string& prefix) const;
};

// The one platform of the process; a test begins with ResetPlatform.
extern RecordingPlatform platform;
void ResetPlatform();
}  // namespace kobd::test
