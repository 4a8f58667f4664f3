// The parts of a refusal, which a command says in one line.
#include "client/rpcd/errors.h"

#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
// Removes the part at the end of the text, or before a note behind a semicolon: "; the new row 2 was deleted again".
void Drop(std::string* text, const std::string& part)
{
    const size_t start = text->rfind(part);
    if (start == std::string::npos) return;
    const size_t end = start + part.size();
    if (end == text->size() || text->compare(end, 2, "; ") == 0) text->erase(start, part.size());
}
}  // namespace

Json ErrorReply(const Failure& failure, const std::vector<AskedValue>& asked)
{
    const int code = failure.code == kWrongUse ? kInvalidArgument : failure.code;
    Json error = {{"code", code}};
    std::string reason = failure.what;
    for (const AskedValue& one : asked)
    {
        if (!reason.starts_with(one.prefix + ": ")) continue;
        if (!one.name.empty()) error["name"] = one.name;
        if (one.value) error["value"] = *one.value;
        reason.erase(0, one.prefix.size() + 2);
        Drop(&reason, ": " + CodeText(code));  // before what would be right
        if (!one.right.empty()) error["right"] = one.right;
        if (!one.right.empty()) Drop(&reason, "; it takes " + one.right);
        break;
    }
    Drop(&reason, ": " + CodeText(code));
    for (const AskedValue& one : asked)
    {
        if (error.contains("name") || (asked.size() > 1 && !reason.starts_with(one.name + " "))) continue;
        error["name"] = one.name;
        if (one.value) error["value"] = *one.value;
    }
    error["reason"] = reason;
    return {{"error", error}};
}

Json ReplyOf(const Outcome& outcome, const char* name, const std::vector<AskedValue>& asked)
{
    if (outcome.failure)
    {
        Json refused = ErrorReply(outcome.failure, asked);
        if (!outcome.particulars.is_null()) refused["error"].update(outcome.particulars);
        return refused;
    }
    Json reply = {{name, outcome.data}};
    if (!outcome.notes.empty()) reply["notes"] = outcome.notes;
    return reply;
}
}  // namespace kobd::client
