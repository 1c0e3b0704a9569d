// SPDX-License-Identifier: MIT
// The page, its requests and its events by HTTP, for those who may.

#include "server.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <string_view>
#include <utility>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <microhttpd.h>

#include "input.h"
#include "page.h"

namespace {

using nlohmann::json;
using seconds_clock = std::chrono::steady_clock;

constexpr unsigned int most_connections = 40;
constexpr unsigned int most_from_one_address = 12;
constexpr unsigned int idle_seconds = 10;
constexpr std::size_t memory_of_connection = 8192; // also bounds its headers
constexpr std::ptrdiff_t most_streams = 8;
constexpr std::size_t longest_backlog = 16384;
constexpr int ticks_between_signs_of_life = 15;

/// What the systems of phones and computers ask for to find out whether a network leads anywhere:
/// answered with the way to the page, they show it.
constexpr const char* probes[] = {
    "/generate_204",
    "/gen_204",
    "/mobile/status.php",
    "/hotspot-detect.html",
    "/library/test/success.html",
    "/success.txt",
    "/canonical.html",
    "/connecttest.txt",
    "/ncsi.txt",
    "/redirect",
    "/check_network_status.txt",
    "/connectivity-check.html",
    "/kindle-wifi/wifistub.html",
};

constexpr struct header {
    const char* name;
    const char* value;
} headers_of_all[] = {
    {MHD_HTTP_HEADER_CACHE_CONTROL, "no-store"},
    {"X-Content-Type-Options", "nosniff"},
    {"X-Frame-Options", "DENY"},
    {"Referrer-Policy", "no-referrer"},
    {"Cross-Origin-Resource-Policy", "same-origin"},
    {"Cross-Origin-Opener-Policy", "same-origin"},
    {"Content-Security-Policy", page_policy},
};

struct released {
    void operator()(MHD_Response* response) const { MHD_destroy_response(response); }
};
using response_ptr = std::unique_ptr<MHD_Response, released>;

MHD_Result queue(MHD_Connection* connection, unsigned int status, response_ptr response,
                 const char* type, const char* extra_name = nullptr, const char* extra = nullptr) {
    if (response == nullptr)
        return MHD_NO;
    MHD_add_response_header(response.get(), MHD_HTTP_HEADER_CONTENT_TYPE, type);
    for (const header& header : headers_of_all)
        MHD_add_response_header(response.get(), header.name, header.value);
    if (extra_name != nullptr)
        MHD_add_response_header(response.get(), extra_name, extra);
    return MHD_queue_response(connection, status, response.get());
}

response_ptr copy_of(std::string_view text) {
    return response_ptr(MHD_create_response_from_buffer(text.size(), const_cast<char*>(text.data()),
                                                        MHD_RESPMEM_MUST_COPY));
}

std::string text_of(const json& object) {
    return object.dump(-1, ' ', false, json::error_handler_t::replace);
}

MHD_Result queue_json(MHD_Connection* connection, const reply& reply) {
    const bool wait = reply.body.contains("seconds") && reply.status == 429;
    const std::string seconds = wait ? reply.body["seconds"].dump() : "";
    return queue(connection, reply.status, copy_of(text_of(reply.body) + "\n"), "application/json",
                 wait ? "Retry-After" : nullptr, seconds.c_str());
}

reply refusal(unsigned int status, const char* reason, const char* error) {
    return {status, {{"ok", false}, {"reason", reason}, {"error", error}}};
}

std::string_view header_of(MHD_Connection* connection, const char* name) {
    const char* value = MHD_lookup_connection_value(connection, MHD_HEADER_KIND, name);
    return value != nullptr ? value : "";
}

/// A body under way.
struct exchange {
    std::string body;
    bool too_long = false;

    exchange() = default;
    exchange(const exchange&) = delete;
    exchange& operator=(const exchange&) = delete;
    ~exchange() { explicit_bzero(body.data(), body.size()); } // may hold a key
};

/// A page that listens to events.
struct stream {
    MHD_Connection* connection;
    std::string unsent;
    bool suspended = false;
    bool closing = false;
};

/// Since when a connection has been at one request.
struct connected_client {
    MHD_socket socket;
    seconds_clock::time_point since;
    bool streams = false;
};

/// @return a socket that listens on the address alone, also before an interface has it; or -1.
int open_socket(const std::string& address, int port) {
    sockaddr_in own{};
    own.sin_family = AF_INET;
    own.sin_port = htons(static_cast<std::uint16_t>(port));
    if (inet_pton(AF_INET, address.c_str(), &own.sin_addr) != 1) {
        errno = EINVAL;
        return -1;
    }
    const int descriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (descriptor < 0)
        return -1;
    const int yes = 1;
    setsockopt(descriptor, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    setsockopt(descriptor, IPPROTO_IP, IP_FREEBIND, &yes, sizeof yes);
    const auto* any = reinterpret_cast<const sockaddr*>(&own);
    if (bind(descriptor, any, sizeof own) == 0 && ::listen(descriptor, 128) == 0)
        return descriptor;
    const int error = errno;
    close(descriptor);
    errno = error;
    return -1;
}

} // namespace

struct server::implementation {
    server_options options;
    handlers answers;
    std::string page_url;
    std::vector<std::string> own_names;
    bool captive = false;
    std::list<stream> streams;
    std::list<connected_client> clients;
    int ticks = 0;
    int turns_due = 0;

    static implementation& of(void* self) { return *static_cast<implementation*>(self); }

    // Who may ask what

    [[nodiscard]] bool is_own(MHD_Connection* connection) const {
        return is_own_host(header_of(connection, MHD_HTTP_HEADER_HOST), own_names, options.port);
    }

    /// @return the refusal of a request that would change something, or status 0.
    [[nodiscard]] reply judge_post(MHD_Connection* connection) const {
        const char* const origin =
            MHD_lookup_connection_value(connection, MHD_HEADER_KIND, "Origin");
        const std::string_view site = header_of(connection, "Sec-Fetch-Site");
        const std::string_view type = header_of(connection, MHD_HTTP_HEADER_CONTENT_TYPE);
        if (!is_own(connection))
            return refusal(421, "host", "this camera does not have that name");
        if ((origin != nullptr && !is_own_origin(origin, own_names, options.port)) ||
            (!site.empty() && site != "same-origin"))
            return refusal(403, "origin", "only the camera's own page may ask for that");
        if (type.substr(0, type.find(';')) != "application/json")
            return refusal(415, "type", "a request is JSON");
        return {0, {}};
    }

    // Answers

    MHD_Result redirect(MHD_Connection* connection) const {
        return queue(connection, MHD_HTTP_FOUND,
                     copy_of("<a href=\"" + page_url + "\">Set up</a>\n"),
                     "text/html; charset=utf-8", MHD_HTTP_HEADER_LOCATION, page_url.c_str());
    }

    MHD_Result get(MHD_Connection* connection, std::string_view url) {
        if (!is_own(connection)) {
            return captive ? redirect(connection)
                           : queue_json(connection, refusal(421, "host", "no camera of that name"));
        }
        if (url == "/") {
            response_ptr page(MHD_create_response_from_buffer(
                page_size, const_cast<char*>(page_text), MHD_RESPMEM_PERSISTENT));
            return queue(connection, MHD_HTTP_OK, std::move(page), "text/html; charset=utf-8");
        }
        if (url == "/api/status")
            return queue_json(connection, {MHD_HTTP_OK, answers.status()});
        if (url == "/api/events")
            return open_stream(connection);
        if (std::find(std::begin(probes), std::end(probes), url) != std::end(probes))
            return redirect(connection);
        return queue_json(connection, refusal(404, "path", "there is nothing of that name"));
    }

    MHD_Result post(MHD_Connection* connection, std::string_view url, const exchange& told) {
        constexpr std::string_view orders[] = {"survey", "join", "wps"};
        constexpr std::string_view folder = "/api/";
        if (told.too_long)
            return queue_json(connection, refusal(413, "too_long", "a request is short"));
        const auto* order = std::end(orders);
        if (url.substr(0, folder.size()) == folder)
            order = std::find(std::begin(orders), std::end(orders), url.substr(folder.size()));
        if (order == std::end(orders))
            return queue_json(connection, refusal(404, "path", "there is nothing of that name"));
        const json body = read_object(told.body);
        if (body.is_null())
            return queue_json(connection, refusal(400, "json", "a request is a JSON object"));
        return queue_json(connection, answers.order(std::string(*order), body));
    }

    // Events

    MHD_Result open_stream(MHD_Connection* connection) {
        const auto is_open = [](const stream& other) { return !other.closing; };
        if (std::count_if(streams.begin(), streams.end(), is_open) >= most_streams)
            end_stream(*std::find_if(streams.begin(), streams.end(), is_open)); // the oldest
        streams.push_back(
            {connection, "retry: 1500\nevent: state\ndata: " + text_of(answers.state()) + "\n\n"});
        auto* const opened = new opened_stream{*this, std::prev(streams.end())};
        response_ptr response(MHD_create_response_from_callback(MHD_SIZE_UNKNOWN, 1024, read_stream,
                                                                opened, close_stream));
        if (response == nullptr) {
            close_stream(opened);
            return MHD_NO;
        }
        mark_streaming(connection);
        return queue(connection, MHD_HTTP_OK, std::move(response), "text/event-stream");
    }

    struct opened_stream {
        implementation& owner;
        std::list<stream>::iterator place;
    };

    static ssize_t read_stream(void* opened, std::uint64_t /*position*/, char* buffer,
                               std::size_t size) {
        stream& from = *static_cast<opened_stream*>(opened)->place;
        if (from.unsent.empty()) {
            if (from.closing)
                return MHD_CONTENT_READER_END_OF_STREAM;
            from.suspended = true;
            MHD_suspend_connection(from.connection);
            return 0;
        }
        const std::size_t count = std::min(size, from.unsent.size());
        from.unsent.copy(buffer, count);
        from.unsent.erase(0, count);
        return static_cast<ssize_t>(count);
    }

    static void close_stream(void* opened) {
        std::unique_ptr<opened_stream> leaving(static_cast<opened_stream*>(opened));
        leaving->owner.streams.erase(leaving->place);
    }

    /// The library takes up in one turn what was resumed and sends in the next, and asks for
    /// neither.
    void wake(stream& sleeping) {
        if (!std::exchange(sleeping.suspended, false))
            return;
        MHD_resume_connection(sleeping.connection);
        turns_due = 2;
    }

    /// The page comes back and is told the state afresh.
    void end_stream(stream& ending) {
        ending.closing = true;
        wake(ending);
    }

    void send_to_all(const std::string& text) {
        for (stream& to : streams) {
            if (to.closing)
                continue;
            if (to.unsent.size() + text.size() > longest_backlog) {
                end_stream(to);
                continue;
            }
            to.unsent += text;
            wake(to);
        }
    }

    // Connections

    static connected_client* client_of(MHD_Connection* connection) {
        const auto* info = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_SOCKET_CONTEXT);
        return info == nullptr ? nullptr : static_cast<connected_client*>(info->socket_context);
    }

    static void mark_streaming(MHD_Connection* connection) {
        if (connected_client* client = client_of(connection))
            client->streams = true;
    }

    static void note_connection(void* self, MHD_Connection* connection, void** context,
                                MHD_ConnectionNotificationCode code) {
        auto& clients = of(self).clients;
        if (code == MHD_CONNECTION_NOTIFY_CLOSED) {
            clients.remove_if([&](const connected_client& c) { return &c == *context; });
            return;
        }
        const auto* info = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CONNECTION_FD);
        clients.push_back({info->connect_fd, seconds_clock::now()});
        *context = &clients.back();
    }

    static void note_completed(void* /*self*/, MHD_Connection* connection, void** context,
                               MHD_RequestTerminationCode /*code*/) {
        delete static_cast<exchange*>(std::exchange(*context, nullptr));
        if (connected_client* client = client_of(connection)) {
            client->since = seconds_clock::now();
            client->streams = false;
        }
    }

    void end_slow_clients() {
        const auto latest = seconds_clock::now() - std::chrono::seconds(options.slow_seconds);
        for (const connected_client& client : clients) {
            if (!client.streams && client.since < latest)
                shutdown(client.socket, SHUT_RDWR);
        }
    }

    // Requests

    /// Nothing is thrown through the library: a connection without memory is closed.
    static MHD_Result handle(void* self, MHD_Connection* connection, const char* url,
                             const char* method, const char* /*version*/, const char* data,
                             std::size_t* size, void** context) {
        try {
            return of(self).take(connection, url, method, data, size, context);
        } catch (const std::exception&) {
            return MHD_NO;
        }
    }

    MHD_Result take(MHD_Connection* connection, const char* url, const char* method,
                    const char* data, std::size_t* size, void** context) {
        const std::string_view asked = method;
        const bool posts = asked == MHD_HTTP_METHOD_POST;
        if (*context == nullptr) {
            *context = new exchange;
            const reply judged = posts ? judge_post(connection) : reply{0, {}};
            return judged.status == 0 ? MHD_YES : queue_json(connection, judged);
        }
        exchange& told = *static_cast<exchange*>(*context);
        if (*size != 0) {
            told.too_long = told.too_long || told.body.size() + *size > longest_body;
            if (posts && !told.too_long)
                told.body.append(data, *size);
            *size = 0;
            return MHD_YES;
        }
        if (posts)
            return post(connection, url, told);
        if (asked == MHD_HTTP_METHOD_GET || asked == MHD_HTTP_METHOD_HEAD)
            return get(connection, url);
        return queue_json(connection, refusal(405, "method", "GET and POST are known"));
    }
};

server::server(server_options options, handlers answers)
    : impl_(std::make_unique<implementation>()) {
    impl_->options = std::move(options);
    impl_->answers = std::move(answers);
}

server::~server() {
    stop();
}

std::string server::listen(const std::string& address, bool captive) {
    stop();
    const int port = impl_->options.port;
    const int descriptor = open_socket(address, port);
    if (descriptor < 0)
        return address + ":" + std::to_string(port) + ": " + std::strerror(errno);
    const std::string at = port == 80 ? "" : ":" + std::to_string(port);
    impl_->page_url = "http://" + address + at + "/";
    impl_->own_names = impl_->options.names;
    impl_->own_names.push_back(address);
    impl_->captive = captive;
    daemon_ = MHD_start_daemon(
        MHD_USE_EPOLL | MHD_ALLOW_SUSPEND_RESUME, 0, nullptr, nullptr, implementation::handle,
        impl_.get(), MHD_OPTION_LISTEN_SOCKET, descriptor, MHD_OPTION_CONNECTION_LIMIT,
        most_connections, MHD_OPTION_PER_IP_CONNECTION_LIMIT, most_from_one_address,
        MHD_OPTION_CONNECTION_TIMEOUT, idle_seconds, MHD_OPTION_CONNECTION_MEMORY_LIMIT,
        memory_of_connection, MHD_OPTION_STRICT_FOR_CLIENT, 1, MHD_OPTION_NOTIFY_COMPLETED,
        implementation::note_completed, impl_.get(), MHD_OPTION_NOTIFY_CONNECTION,
        implementation::note_connection, impl_.get(), MHD_OPTION_END);
    if (daemon_ != nullptr)
        return "";
    close(descriptor);
    return address + ": the HTTP library does not start";
}

void server::stop() {
    if (daemon_ == nullptr)
        return;
    for (stream& open : impl_->streams)
        impl_->end_stream(open);
    MHD_run(daemon_); // takes up what was resumed,
    MHD_run(daemon_); // and sends what was published last
    MHD_stop_daemon(std::exchange(daemon_, nullptr));
}

int server::descriptor() const {
    const auto* info =
        daemon_ == nullptr ? nullptr : MHD_get_daemon_info(daemon_, MHD_DAEMON_INFO_EPOLL_FD);
    return info == nullptr ? -1 : info->epoll_fd;
}

int server::timeout() const {
    MHD_UNSIGNED_LONG_LONG milliseconds = 0;
    if (daemon_ != nullptr && impl_->turns_due > 0)
        return 0;
    if (daemon_ == nullptr || MHD_get_timeout(daemon_, &milliseconds) != MHD_YES)
        return -1;
    return static_cast<int>(std::min<MHD_UNSIGNED_LONG_LONG>(milliseconds, 60000));
}

void server::run() {
    impl_->turns_due = std::max(impl_->turns_due - 1, 0);
    if (daemon_ != nullptr)
        MHD_run(daemon_);
}

void server::publish(const std::string& name, const json& data) {
    impl_->send_to_all((name.empty() ? "" : "event: " + name + "\n") + "data: " + text_of(data) +
                       "\n\n");
}

bool server::is_watched() const {
    return !impl_->streams.empty();
}

void server::tick() {
    impl_->end_slow_clients();
    if (++impl_->ticks % ticks_between_signs_of_life == 0)
        impl_->send_to_all(":\n\n");
}
