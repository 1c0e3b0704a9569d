// SPDX-License-Identifier: MIT
// wlansetup's HTTP server as a hostile client finds it: raw sockets against the program.

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <arpa/inet.h>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/folder_test.h"

namespace {

constexpr int patience_ms = 20000;

/// A TCP connection that says and hears bytes.
class client {
public:
    explicit client(int port, const char* from = "127.0.0.1") : socket_(socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in own = address(from, 0);
        sockaddr_in server = address("127.0.0.1", port);
        (void)bind(socket_, reinterpret_cast<sockaddr*>(&own), sizeof own);
        connected_ = connect(socket_, reinterpret_cast<sockaddr*>(&server), sizeof server) == 0;
    }
    ~client() { close(socket_); }
    client(const client&) = delete;
    client& operator=(const client&) = delete;

    [[nodiscard]] bool connected() const { return connected_; }

    bool say(const std::string& text) const {
        return send(socket_, text.data(), text.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(text.size());
    }

    /// @return what came until the server closed, the text was heard or patience ended.
    std::string hear(const std::string& until = "") {
        std::string heard;
        char bytes[4096];
        pollfd input = {socket_, POLLIN, 0};
        while (poll(&input, 1, patience_ms) == 1) {
            const ssize_t count = read(socket_, bytes, sizeof bytes);
            if (count <= 0) {
                closed_ = true;
                break;
            }
            heard.append(bytes, static_cast<std::size_t>(count));
            if (!until.empty() && heard.find(until) != std::string::npos)
                break;
        }
        return heard;
    }

    [[nodiscard]] bool was_closed() const { return closed_; }

private:
    static sockaddr_in address(const char* text, int port) {
        sockaddr_in result{};
        result.sin_family = AF_INET;
        result.sin_port = htons(static_cast<std::uint16_t>(port));
        inet_pton(AF_INET, text, &result.sin_addr);
        return result;
    }

    int socket_;
    bool connected_ = false;
    bool closed_ = false;
};

class server_test : public folder_test {
protected:
    void start(const std::vector<std::string>& more = {}) {
        write("/air", "4f6666696365\tcorrect horse\t"
                      R"({"name": "Office", "security": "WPA2-PSK AES", "signal_percent": 90})"
                      "\n");
        setenv("STAND_IN", folder.c_str(), 1);
        setenv("WLANCTL", STAND_IN, 1);
        port = free_port();
        std::vector<std::string> arguments = {"wlansetup", "--port", std::to_string(port), "--retry", "0"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        std::vector<char*> argv;
        argv.reserve(arguments.size() + 1);
        for (std::string& argument : arguments)
            argv.push_back(argument.data());
        argv.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, 2, (folder + "/errors").c_str(), O_WRONLY | O_CREAT, 0600);
        ASSERT_EQ(posix_spawn(&program_, WLANSETUP, &actions, nullptr, argv.data(), environ), 0);
        posix_spawn_file_actions_destroy(&actions);
        wait_for("\nwlansetup: serving");
    }

    ~server_test() override {
        if (program_ == 0)
            return;
        kill(program_, SIGTERM);
        int status = -1;
        waitpid(program_, &status, 0);
        EXPECT_EQ(status, 0) << "wlansetup ended by itself: " << read("/errors");
    }

    void wait_for(const std::string& logged) const {
        for (int turn = 0; read("/errors").find(logged) == std::string::npos; ++turn) {
            ASSERT_LT(turn, 2000) << read("/errors");
            usleep(10000);
        }
    }

    void wait_until_idle() const {
        std::string answer;
        for (int turn = 0; answer.find("\"serving\"") == std::string::npos; ++turn) {
            ASSERT_LT(turn, 2000);
            usleep(10000);
            EXPECT_EQ(ask(get("/api/status"), &answer), 200);
        }
    }

    [[nodiscard]] std::string host() const { return "Host: 127.0.0.1:" + std::to_string(port) + "\r\n"; }

    /// @return the status of the answer to one request, 0 when there was none.
    [[nodiscard]] int ask(const std::string& request, std::string* answer = nullptr,
                          const char* from = "127.0.0.1") const {
        client asking(port, from);
        asking.say(request);
        const std::string heard = asking.hear();
        if (answer != nullptr)
            *answer = heard;
        return heard.rfind("HTTP/1.1 ", 0) == 0 ? std::stoi(heard.substr(9)) : 0;
    }

    [[nodiscard]] std::string get(const std::string& path) const {
        return "GET " + path + " HTTP/1.1\r\n" + host() + "Connection: close\r\n\r\n";
    }

    [[nodiscard]] std::string post(const std::string& path, const std::string& headers, const std::string& body) const {
        return "POST " + path + " HTTP/1.1\r\n" + headers +
               "Connection: close\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
    }

    int port = 0;

private:
    static int free_port() {
        const int listening = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in any{};
        any.sin_family = AF_INET;
        any.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof any;
        (void)bind(listening, reinterpret_cast<sockaddr*>(&any), length);
        getsockname(listening, reinterpret_cast<sockaddr*>(&any), &length);
        close(listening);
        return ntohs(any.sin_port);
    }

    pid_t program_ = 0;
};

constexpr char json_type[] = "Content-Type: application/json\r\n";

TEST_F(server_test, answers_its_own_page_only) {
    start();
    const std::string own = "Origin: http://127.0.0.1:" + std::to_string(port) + "\r\n";
    const struct {
        const char* name;
        std::string headers;
        int status;
    } rows[] = {
        {"the page", host() + own + json_type, 202},
        {"a program", host() + json_type, 202},
        {"a page elsewhere", host() + json_type + "Origin: http://evil.example\r\n", 403},
        {"a page without an origin", host() + json_type + "Origin: null\r\n", 403},
        {"another port of the camera", host() + json_type + "Origin: http://127.0.0.1\r\n", 403},
        {"a form elsewhere", host() + "Content-Type: text/plain\r\n", 415},
        {"a form", host() + "Content-Type: application/x-www-form-urlencoded\r\n", 415},
        {"cross-site by the browser's word", host() + json_type + "Sec-Fetch-Site: cross-site\r\n", 403},
        {"a rebound name", std::string("Host: evil.example\r\n") + json_type, 421},
        {"a rebound name with its origin",
         std::string("Host: evil.example\r\nOrigin: http://evil.example\r\n") + json_type, 421},
        {"no host", json_type, 400},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ask(post("/api/survey", row.headers, "{}")), row.status) << row.name;
        wait_until_idle();
    }
    std::string answer;
    EXPECT_EQ(ask("GET /api/status HTTP/1.1\r\nHost: evil.example\r\nConnection: close\r\n\r\n", &answer), 302);
    EXPECT_EQ(answer.find("Office"), std::string::npos) << "a rebound name reads the list";
}

TEST_F(server_test, shows_phones_the_way) {
    start();
    const std::string location = "Location: http://127.0.0.1:" + std::to_string(port) + "/\r\n";
    for (const char* probe : {"/generate_204", "/hotspot-detect.html", "/connecttest.txt", "/ncsi.txt", "/", "/any"}) {
        std::string answer;
        EXPECT_EQ(ask(std::string("GET ") + probe + " HTTP/1.1\r\nHost: captive.example\r\nConnection: close\r\n\r\n",
                      &answer),
                  302)
            << probe;
        EXPECT_NE(answer.find(location), std::string::npos) << answer;
    }
    EXPECT_EQ(ask(get("/generate_204")), 302) << "by the camera's own name";
    EXPECT_EQ(ask(get("/any")), 404);
}

TEST_F(server_test, lets_the_page_run_nothing_but_itself) {
    start();
    std::string answer;
    EXPECT_EQ(ask(get("/"), &answer), 200);
    EXPECT_NE(answer.find("Content-Security-Policy: default-src 'none'; script-src 'sha256-"), std::string::npos);
    EXPECT_EQ(answer.find("unsafe-"), std::string::npos);
    EXPECT_NE(answer.find("frame-ancestors 'none'"), std::string::npos);
    EXPECT_NE(answer.find("X-Content-Type-Options: nosniff"), std::string::npos);
}

TEST_F(server_test, refuses_what_is_too_long_or_none) {
    start();
    const std::string long_body = "{\"name\": \"" + std::string(4000, 'x') + "\"}";
    const std::string chunked = "POST /api/join HTTP/1.1\r\n" + host() + json_type +
                                "Connection: close\r\nTransfer-Encoding: chunked\r\n\r\n1000\r\n" +
                                std::string(4096, ' ') + "\r\n0\r\n\r\n";
    EXPECT_EQ(ask(post("/api/join", host() + json_type, long_body)), 413);
    EXPECT_EQ(ask(chunked), 413);
    EXPECT_EQ(ask(post("/api/join", host() + json_type, "{\"name\": ")), 400);
    EXPECT_EQ(ask(post("/api/nothing", host() + json_type, "{}")), 404);
    EXPECT_EQ(ask("DELETE / HTTP/1.1\r\n" + host() + "Connection: close\r\n\r\n"), 405);
    EXPECT_EQ(ask("GET / HTTP/1.1\r\n" + host() + "X: " + std::string(20000, 'x') + "\r\n\r\n"), 431);
    for (const std::string& garbage : {std::string(30000, '\0'), std::string(30000, 'x'), std::string("\r\n\r\n\r\n"),
                                       std::string("GET\r\n\r\n"), std::string("\x16\x03\x01\x02\x00\x01", 6)}) {
        client rude(port);
        rude.say(garbage);
    }
    EXPECT_EQ(ask(get("/")), 200);
}

TEST_F(server_test, ends_slow_clients) {
    start({"--slow", "1"});
    client silent(port);
    client halting(port);
    client with_body(port);
    halting.say("GET / HT");
    with_body.say("POST /api/join HTTP/1.1\r\n" + host() + json_type + "Content-Length: 10\r\n\r\n{");
    for (client* slow : {&silent, &halting, &with_body}) {
        slow->hear();
        EXPECT_TRUE(slow->was_closed());
    }
    client listening(port); // listens to events, and is no slow one
    listening.say(get("/api/events"));
    listening.hear("event: state");
    EXPECT_EQ(ask(get("/")), 200);
    usleep(2500000);
    EXPECT_EQ(ask(post("/api/survey", host() + json_type, "{}")), 202);
    EXPECT_NE(listening.hear("\"surveying\"").find("\"surveying\""), std::string::npos);
}

TEST_F(server_test, serves_others_while_one_floods) {
    start();
    std::vector<std::unique_ptr<client>> flood;
    for (int count = 0; count < 500; ++count) {
        flood.push_back(std::make_unique<client>(port, "127.0.0.2"));
        flood.back()->say(count % 2 == 0 ? "GET / HTTP/1.1\r\n" : get("/api/events"));
    }
    EXPECT_EQ(ask(get("/api/status")), 200);
    flood.clear();
    int turn = 0;
    while (ask(get("/api/status"), nullptr, "127.0.0.2") != 200) // also the one that stops
        ASSERT_LT(++turn, 2000);
}

TEST_F(server_test, lets_streams_fall_behind) {
    start();
    std::vector<std::unique_ptr<client>> deaf;
    for (int count = 0; count < 11; ++count) {
        deaf.push_back(std::make_unique<client>(port));
        deaf.back()->say(get("/api/events"));
    }
    client hearing(port, "127.0.0.3");
    hearing.say(get("/api/events"));
    hearing.hear("event: state");
    for (int count = 0; count < 30; ++count) {
        EXPECT_EQ(ask(post("/api/survey", host() + json_type, "{}"), nullptr, "127.0.0.3"), 202);
        EXPECT_NE(hearing.hear("\"serving\"").find("serving"), std::string::npos);
    }
}

TEST_F(server_test, waits_after_a_wrong_code) {
    start({"--code", "4711"});
    const auto with = [this](const char* code) {
        return post("/api/survey", host() + json_type, std::string("{\"code\": \"") + code + "\"}");
    };
    std::string answer;
    EXPECT_EQ(ask(post("/api/survey", host() + json_type, "{}")), 403);
    EXPECT_EQ(ask(with("4711"), &answer), 429) << "the right one, too soon";
    EXPECT_NE(answer.find("Retry-After: "), std::string::npos);
    int status = 429;
    for (int turn = 0; status == 429 && turn < 300; ++turn) {
        usleep(100000);
        status = ask(with("4711"));
    }
    EXPECT_EQ(status, 202);
    EXPECT_EQ(ask(get("/api/status"), &answer), 200);
    EXPECT_EQ(answer.find("4711"), std::string::npos);
}

TEST_F(server_test, tells_nobody_a_key) {
    start();
    client listening(port);
    listening.say(get("/api/events"));
    std::string told = listening.hear("event: state");
    EXPECT_EQ(ask(post("/api/join", host() + json_type, R"({"name": "Office", "key": "correct horse"})")), 202);
    told += listening.hear("\"leaving\"");
    std::string answer;
    EXPECT_EQ(ask(get("/api/status"), &answer), 200);
    for (const std::string& text : {told, answer, read("/log"), read("/errors")})
        EXPECT_EQ(text.find("correct horse"), std::string::npos) << text;
    EXPECT_EQ(read("/stored"), "4f6666696365 correct horse\n");
}

TEST_F(server_test, runs_the_dns_server_beside_the_access_point) {
    start({"--shown", "0", "--dns", "echo $$ >" + folder + "/dns; exec sleep 600"});
    while (read("/dns").empty())
        usleep(1000);
    const int dns = std::stoi(read("/dns"));
    EXPECT_EQ(kill(dns, 0), 0);
    EXPECT_EQ(ask(post("/api/join", host() + json_type, R"({"name": "Office", "key": "correct horse"})")), 202);
    wait_for("connected");
    EXPECT_EQ(kill(dns, 0), -1);
}

TEST_F(server_test, lives_with_a_wlanctl_that_never_answers) {
    start();
    write("/silent", "");
    EXPECT_EQ(ask(post("/api/survey", host() + json_type, "{}")), 202);
    EXPECT_EQ(ask(get("/api/status")), 200);
    EXPECT_EQ(ask(post("/api/join", host() + json_type, R"({"name": "Office", "key": "correct horse"})")), 202)
        << "what the page asks for ends a survey";
    EXPECT_EQ(ask(get("/api/status")), 200);
}

} // namespace
