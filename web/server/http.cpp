#include "web/server/http.h"

#include "web/server/body.h"
#include "web/server/limits.h"

namespace kobd::web
{
namespace
{
// The request that this thread answers.
struct InHand
{
    std::string_view body = {};
    bool wants_events = false;
    bool unreadable = false;
};
thread_local InHand in_hand;

// A request that has arrived as a whole, and the answer to it.
class WholeRequest : public httplib::Stream
{
public:
    WholeRequest(const std::string& request, std::string* answer) : request_(request), answer_(*answer) {}

    bool is_readable() const override { return at_ < request_.size(); }
    bool is_writable() const override { return true; }
    ssize_t read(char* bytes, size_t size) override
    {
        const size_t copied = request_.copy(bytes, size, at_);
        at_ += copied;
        return static_cast<ssize_t>(copied);
    }
    ssize_t write(const char* bytes, size_t size) override
    {
        answer_.append(bytes, size);
        return static_cast<ssize_t>(size);
    }
    void get_remote_ip_and_port(std::string&, int&) const override {}
    void get_local_ip_and_port(std::string&, int&) const override {}
    socket_t socket() const override { return INVALID_SOCKET; }

private:
    const std::string& request_;
    std::string& answer_;
    size_t at_ = 0;
};

void Write(const Problem& problem, httplib::Response* response)
{
    response->status = problem.status;
    if (problem.more.contains("allow")) response->set_header("Allow", problem.more["allow"].get<std::string>());
    if (problem.status == 401) response->set_header("WWW-Authenticate", "Bearer");
    response->set_content(problem.Text(), kProblemType);
}

// The page takes scripts, styles and data from here alone, and no other page may show it in a frame.
void WritePage(const Reply& reply, httplib::Response* response)
{
    response->set_header("Content-Security-Policy",
                         "default-src 'none'; script-src 'self'; style-src 'self'; connect-src 'self'; img-src 'self'; "
                         "base-uri 'none'; form-action 'none'; frame-ancestors 'none'");
    response->set_header("Cross-Origin-Resource-Policy", "same-origin");
    response->set_header("Referrer-Policy", "no-referrer");
    response->set_content(reply.page.data(), reply.page.size(), reply.type);
}

void Write(const Reply& reply, httplib::Response* response)
{
    response->status = reply.status;
    if (!reply.location.empty()) response->set_header("Location", reply.location);
    if (reply.type != nullptr)
        WritePage(reply, response);
    else if (reply.status != 204)
        response->set_content(TextOf(reply.body), "application/json");
}
}  // namespace

Http::Http(const Guard& guard, Services* services) : guard_(guard), services_(*services)
{
    // Before the library would look for a handler, with a regular expression for each, and read the body again.
    set_pre_routing_handler(
        [this](const httplib::Request& request, httplib::Response& response)
        {
            Handle(request, &response);
            return HandlerResponse::Handled;
        });
    set_default_headers({{"Cache-Control", "no-store"}, {"X-Content-Type-Options", "nosniff"}});
    set_keep_alive_timeout(kIdleTime);
    set_keep_alive_max_count(1'000'000);  // only told to the client
    set_error_handler(
        [](const httplib::Request&, httplib::Response& response)
        {
            if (!response.body.empty()) return;  // ours
            in_hand.unreadable = true;
            Write(Problem{response.status, "The request cannot be read as HTTP."}, &response);
        });
}

After Http::Answer(const std::string& request, std::string* answer)
{
    in_hand = {std::string_view(request).substr(request.find("\r\n\r\n") + 4)};
    bool closed = false;
    WholeRequest stream(request, answer);
    const bool whole = process_request(stream, false, closed,
                                       [](httplib::Request& asked)
                                       {
                                           asked.headers.erase("Accept-Encoding");  // it does not leave this machine
                                           asked.ranges.clear();
                                       });
    if (in_hand.wants_events) return After::kListen;
    return closed || !whole || in_hand.unreadable ? After::kClose : After::kKeep;
}

void Http::Handle(const httplib::Request& request, httplib::Response* response)
{
    try
    {
        const Reply reply = ReplyTo(request);
        in_hand.wants_events = reply.listen;
        Write(reply, response);
    }
    catch (const Problem& problem)
    {
        Write(problem, response);
    }
    catch (const std::exception& error)
    {
        Write(Problem{500, error.what()}, response);
    }
}

Reply Http::ReplyTo(const httplib::Request& request)
{
    guard_.CheckSender(request);
    Call call = {services_, request};
    const bool api = request.path.starts_with("/api/");
    if (api) guard_.CheckToken(request, request.path == "/api/events");
    if (request.path.find('\0') != request.path.npos) throw Problem{400, "The path has a zero byte."};
    const Route& route = FindRoute(request.method, request.path, &call.names);
    if (api) CheckQuery(route, request);
    if (route.body != nullptr) call.body = BodyOf(in_hand.body);
    return route.answer(call);
}
}  // namespace kobd::web
