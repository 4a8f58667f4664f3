// Asking the imitated router about its state.
#include "client/state/daemon_state.h"

#include "client/requests/request.h"
#include "host/state/folder.h"

namespace kobd::client
{
namespace
{
constexpr int kNotSaved = 3;  // exit status
}

bool UseDaemonsState()
{
    static const bool answered = []
    {
        const auto texts = AskHost(KOBD_HOST_STATE);
        if (texts && !texts->empty()) host::UseStateFolder(texts->front());
        return texts && !texts->empty();
    }();
    return answered;
}

void UseStateToShow()
{
    if (!UseDaemonsState()) SayError("no kobd answers; this is the state in " + host::StateFolderName());
}

std::string WhyNotSaved()
{
    const auto texts = AskHost(KOBD_HOST_STATE);
    return texts && texts->size() > 1 ? texts->at(1) : "";
}

void AddNotSaved(const std::string& what, Outcome* outcome)
{
    const std::string why = outcome->failure ? "" : WhyNotSaved();
    if (why.empty()) return;
    outcome->notes.push_back(what + ", but not saved: " + why);
    outcome->status = kNotSaved;
    if (outcome->data.is_object()) outcome->data["saved"] = false;
}
}  // namespace kobd::client
