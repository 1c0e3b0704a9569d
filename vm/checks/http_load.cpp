// SPDX-License-Identifier: MIT
// Asks an HTTP server many times, and tells how soon its answers begin: http_load ADDRESS PORT
// REQUESTS. Ends with status 1 and says nothing when an answer is missing.

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include "src/base/unique_fd.h"

namespace {

using clock_type = std::chrono::steady_clock;

/// @return the milliseconds until the answer to GET / begins, negative when it is none.
double ask(const sockaddr_in& server) {
    const auto begun = clock_type::now();
    const libwlan::unique_fd connection(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const timeval patience = {20, 0};
    setsockopt(connection.get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    char host[INET_ADDRSTRLEN] = "";
    inet_ntop(AF_INET, &server.sin_addr, host, sizeof host);
    const std::string request =
        std::string("GET / HTTP/1.1\r\nHost: ") + host + "\r\nConnection: close\r\n\r\n";
    if (connect(connection.get(), reinterpret_cast<const sockaddr*>(&server), sizeof server) != 0 ||
        send(connection.get(), request.data(), request.size(), MSG_NOSIGNAL) !=
            static_cast<ssize_t>(request.size()))
        return -1;
    char bytes[4096];
    ssize_t count = recv(connection.get(), bytes, sizeof bytes, 0);
    const std::chrono::duration<double, std::milli> taken = clock_type::now() - begun;
    const bool is_answer = std::string(bytes, static_cast<std::size_t>(std::max<ssize_t>(count, 0)))
                               .rfind("HTTP/1.1 200", 0) == 0;
    while (count > 0)
        count = recv(connection.get(), bytes, sizeof bytes, 0);
    return is_answer && count == 0 ? taken.count() : -1;
}

} // namespace

int main(int argc, char** argv) {
    sockaddr_in server{};
    server.sin_family = AF_INET;
    if (argc != 4 || inet_pton(AF_INET, argv[1], &server.sin_addr) != 1)
        return 2;
    server.sin_port = htons(static_cast<std::uint16_t>(std::atoi(argv[2])));
    std::vector<double> taken;
    for (int left = std::atoi(argv[3]); left > 0; --left) {
        taken.push_back(ask(server));
        if (taken.back() < 0)
            return 1;
    }
    std::sort(taken.begin(), taken.end());
    std::printf("%.0f ms, at most %.0f, of %zu\n", taken[taken.size() / 2], taken.back(),
                taken.size());
}
