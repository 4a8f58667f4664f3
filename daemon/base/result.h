// Result codes of requests and their texts.
#pragma once

#include <array>
#include <cstddef>

namespace kobd
{
enum Result : int
{
    kSuccess = 0,
    kNotFound = 1,
    kInvalidArgument = 2,
    kNotRunning = 3,
    kSystemError = 4,
    kSendFailed = 5,
    kMallocFailed = 7,
    kReplyTimeout = 8,
    kInitializeFailed = 9,
    kReadonly = 10,
    kBufferLimit = 11,
    kElementNotFound = 12,
    kIndexNotFound = 13,
    kUpdateFailed = 14,
    kTableFull = 15,
    kMethodUnavailable = 16,
};

inline constexpr std::array<const char*, 31> kResultTexts = {
    "Success",
    "Obj or table not found",
    "Invalid argument",
    "Message not running",
    "System error",
    "Message send failed",
    "Message Alloc failed",
    "Malloc failed",
    "Message wait reply timeout",
    "Message initialize failed",
    "Readonly",
    "Message buffer limit",
    "Element not found",
    "Table index not found",
    "Update failed",
    "Table is full",
    "Method unavailable",
    "Invoke failed",
    "Config not Expect",
    "Page not found",
    "User is not exists",
    "Old password is not match",
    "Wrong firmware, Please select again!",
    "This firmware is old and restricted to upgrade, Please select a new firmware to upgrade!",
    "This firmware is not customized FW,Please select again!",
    "Invalid configuration file, please select the correct configuration file!",
    "Firmware version too low!",
    "Firmware check error!",
    "WPS running",
    "TR069 has been disabled, please enable tr069 function first!",
    "No value",
};

// The text of a code; codes outside the table, which platform accessors may return, have one too.
constexpr const char* ResultText(int code)
{
    return code >= 0 && code < static_cast<int>(kResultTexts.size()) ? kResultTexts[static_cast<std::size_t>(code)]
                                                                     : "Unknown result code";
}
}  // namespace kobd
