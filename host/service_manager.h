// Telling the service manager that started us how far we are.
#pragma once

namespace kobd::host
{
// Sends a line such as "READY=1" to the socket that NOTIFY_SOCKET names, as systemd expects it of a service of
// Type=notify. Without one, or where nobody takes it at once, nothing happens.
void TellServiceManager(const char* state);
}  // namespace kobd::host
