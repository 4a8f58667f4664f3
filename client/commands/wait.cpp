// kobctl wait: returns when the daemon answers, for the scripts that start it.
#include <unistd.h>

#include <algorithm>
#include <chrono>

#include "client/commands/commands.h"
#include "client/requests/request.h"
#include "daemon/base/messages.h"

namespace kobd::client
{
Outcome CommandWait(const Options& options, const Words&)
{
    using Clock = std::chrono::steady_clock;
    constexpr useconds_t kLook = 10000;  // microseconds between looks for a daemon that has not joined the bus yet
    constexpr int kTimeoutMs = 5000;
    const int timeout_ms = options.timeout_ms.value_or(kTimeoutMs);
    const auto end = Clock::now() + std::chrono::milliseconds(timeout_ms);
    for (Options left = options;; usleep(kLook))
    {
        const auto ms = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
        left.timeout_ms = static_cast<int>(std::max<long long>(ms, 0));
        // Answered by the daemon alone, whatever its platform does.
        const Response response = Call(left, KOBD_TABLE_MAX_ROW, {Item(kTagTableName, "FlowTable")});
        if (!response.from_bus) return {{{"answers", true}}, ""};
        if (ms > 0 && response.code != KOBD_TIMEOUT) continue;
        if (response.code != KOBD_TIMEOUT) return FailureOf(response, "wait");
        return FailureWithCode(KOBD_TIMEOUT, "wait: no answer within " + std::to_string(timeout_ms) + " ms");
    }
}
}  // namespace kobd::client
