// A get over HTTP against the same get over the client library, by turns:  bench_web ADDRESS
// ADDRESS is the line that kobd-web has printed; a daemon runs.
#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "client/library/kobd_client.h"

namespace
{
constexpr int kCalls = 5000;

// Microseconds that half of the calls take at most.
double Median(std::vector<double> times)
{
    std::ranges::nth_element(times, times.begin() + kCalls / 2);
    return times[kCalls / 2];
}

double Time(const std::function<void()>& call)
{
    const auto begin = std::chrono::steady_clock::now();
    call();
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - begin).count();
}

[[noreturn]] void Give(const char* what)
{
    perror(what);
    exit(1);
}

int Connected(int port)
{
    const int client = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int on = 1;
    setsockopt(client, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    if (connect(client, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) Give("connect");
    return client;
}
}  // namespace

int main(int count, char** words)
{
    const std::string address = count == 2 ? words[1] : "";
    const size_t port = std::string("http://127.0.0.1:").size();
    const size_t token = address.find("token=");
    if (token == address.npos) return fputs("usage: bench_web ADDRESS\n", stderr), 2;
    kobd_client* client = nullptr;
    if (kobd_client_open(&client) != 0) Give("kobd_client_open");
    const int http = Connected(atoi(address.c_str() + port));
    const std::string request =
        "GET /api/objects/webHttpPort?describe=0 HTTP/1.1\r\nHost: " + address.substr(7, address.find('/', 7) - 7) +
        "\r\nAuthorization: Bearer " + address.substr(token + 6) + "\r\n\r\n";
    char answer[4096];
    std::vector<double> over_bus;
    std::vector<double> over_http;
    for (int i = 0; i < kCalls; ++i)
    {
        over_bus.push_back(Time(
            [&]
            {
                if (kobd_get(client, "webHttpPort", answer, sizeof answer) != 0) Give("kobd_get");
            }));
        over_http.push_back(Time(
            [&]
            {
                if (send(http, request.data(), request.size(), 0) < 0) Give("send");
                if (recv(http, answer, sizeof answer, 0) < 15 || std::string(answer + 9, 3) != "200") Give("answer");
            }));
    }
    printf("bus %.1f us, http %.1f us, ratio %.1f\n", Median(over_bus), Median(over_http),
           Median(over_http) / Median(over_bus));
    kobd_client_close(client);
    close(http);
    return 0;
}
