// kobctl monitor [PATTERN...]: every request with who asked it, its answer, and how long that took.
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "client/commands/commands.h"
#include "client/output/terminal.h"
#include "client/traffic/capture_file.h"
#include "client/traffic/change_rows.h"
#include "client/traffic/listener.h"
#include "client/traffic/message_text.h"
#include "daemon/base/messages.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
// A request, or an event that came in, until its answer is there.
struct Asked
{
    Json json = {};
    std::string text = {};
    bool is_table_set = false;
    bool wanted = true;  // a pattern matches it
};

std::string MicrosecondsText(uint64_t nanoseconds)
{
    char text[32];
    snprintf(text, sizeof text, "%.1f us", static_cast<double>(nanoseconds) / 1000);
    return text;
}

std::string Program(const kobd_tapped& message)
{
    const std::string name = *message.program != 0 ? Escaped(message.program) : "?";
    return message.process == 0 ? "kobd" : name + " (" + std::to_string(message.process) + ")";
}

// Time, program and name: how the line of a message begins.
Asked Beginning(const kobd_tapped& message, const MessageContent& content)
{
    Asked asked;
    asked.json = {{"time", TimeJson(message.time_us)}, {"process", message.process},
                  {"program", message.program},        {"module", ModuleName(message.module)},
                  {"message", MessageName(message)},   {"items", content.json}};
    const bool sent = message.kind == KOBD_TAP_SENT;
    asked.text = TimeText(message.time_us, true) + "  " + Program(message) + "  " +
                 (sent ? "to " + ModuleName(message.module) + ": " : "") + MessageName(message) +
                 (content.text.empty() ? "" : " " + content.text) + (content.whole ? "" : " (cut)");
    return asked;
}

void AddAnswer(const kobd_tapped& message, const MessageContent& content, Asked* asked)
{
    const int result = ResultOf(message);
    asked->json["code"] = result;
    asked->json["answer"] = content.json;
    asked->json["took_us"] = static_cast<double>(message.took_ns) / 1000;
    asked->text += " -> " +
                   (result != 0            ? std::string(kobd_result_text(result)) + " (" + std::to_string(result) + ")"
                    : content.text.empty() ? "done"
                                           : content.text) +
                   "  " + MicrosecondsText(message.took_ns);
}

void AddItems(const MessageContent& content, Asked* asked)
{
    for (const Json& item : content.json) asked->json["items"].push_back(item);
    asked->text += " " + content.text;
}

// A table set with the rows that its change file has, or else with none yet: its announcements name them.
Asked AskedTableSet(const Options& options, const kobd_tapped& message, const MessageContent& content,
                    const Words& patterns)
{
    Asked asked = Beginning(message, content);
    asked.is_table_set = true;
    asked.wanted = IsAskedFor(options, patterns, message);
    const std::optional<std::string> bytes = ReadChangeFile(message);
    if (!bytes) return asked;
    kobd_tapped rows = message;
    rows.payload = {bytes->data(), bytes->size()};
    asked.is_table_set = false;
    asked.wanted = IsAskedFor(options, patterns, rows);
    AddItems(ContentOf(rows, options.secrets), &asked);
    return asked;
}

class Monitor
{
public:
    Monitor(const Options& options, const Words& patterns) : options_(options), patterns_(patterns) {}

    void Show(const kobd_tapped& message)
    {
        const MessageContent content = ContentOf(message, options_.secrets);
        if (message.kind == KOBD_TAP_ANSWERED)
        {
            if (asked_) AddAnswer(message, content, &*asked_);
            return Flush();
        }
        if (message.kind == KOBD_TAP_RECEIVED) Flush();  // the one before it wanted no answer
        if (IsTableSet(message)) return (void)(asked_ = AskedTableSet(options_, message, content, patterns_));
        if (!IsAskedFor(options_, patterns_, message)) return;
        Asked asked = Beginning(message, content);
        if (asked_ && asked_->is_table_set && message.id == kEventTableChanged)
        {
            asked_->wanted = true;
            AddItems(content, &*asked_);
        }
        if (message.kind == KOBD_TAP_RECEIVED && message.message_class == kClassRequest)
            asked_ = std::move(asked);
        else if (asked_)
            sent_.push_back(std::move(asked));
        else
            Print(std::move(asked));
    }

    // Prints the request that waits for its answer, and what was sent because of it.
    void Flush()
    {
        if (asked_ && asked_->wanted) Print(std::move(*asked_));
        for (Asked& sent : sent_) Print(std::move(sent));
        asked_.reset();
        sent_.clear();
    }

    int Printed() const { return printed_; }
    bool IsDone() const { return options_.count != 0 && printed_ >= options_.count; }

private:
    void Print(Asked asked)
    {
        if (IsDone()) return;
        (void)client::Print(options_, {std::move(asked.json), asked.text + "\n"});
        fflush(stdout);
        ++printed_;
    }

    const Options& options_;
    const Words& patterns_;
    std::optional<Asked> asked_ = {};
    std::vector<Asked> sent_ = {};  // behind it
    int printed_ = 0;
};
}  // namespace

Outcome CommandMonitor(const Options& options, const Words& patterns)
{
    if (Failure failure = CheckPatterns(options, patterns)) return failure;
    StopAfter(options.timeout_ms);
    CaptureFile capture;
    if (!options.pcap.empty() && !capture.Open(options.pcap))
        return Failure{kSystemError, "cannot write " + options.pcap + ": " + strerror(errno)};
    Listener listener;
    Failure failure = listener.Open(true);
    Monitor monitor(options, patterns);
    std::optional<kobd_tapped> message;
    while (!failure && !Stopped() && !monitor.IsDone())
    {
        failure = listener.Next(&message);
        if (!message) continue;
        if (!options.pcap.empty() && !capture.Add(*message, options.secrets))
            failure = {kSystemError, "cannot write " + options.pcap + ": " + strerror(errno)};
        monitor.Show(*message);
    }
    monitor.Flush();
    if (!capture.Close() && !failure) failure = {kSystemError, "cannot write " + options.pcap + ": " + strerror(errno)};
    return failure ? failure : TooFew(options, "monitor", monitor.Printed());
}
}  // namespace kobd::client
