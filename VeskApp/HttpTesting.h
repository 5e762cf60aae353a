#pragma once

// Loopback HTTP servers for the tests of the app's HTTP clients.

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <optional>
#include <string>
#include <thread>
#include <vector>

// A server on a loopback port that takes one request and gives it one scripted answer:
// the bytes to send (none: it closes at once), or it stays silent until it is destroyed.
// With several answers, it takes one connection for each, in turn.
class OneShotServer {
public:
    explicit OneShotServer(std::optional<std::string> answer, bool silent = false)
        : OneShotServer(std::vector<std::optional<std::string>>{answer}, silent) {}
    explicit OneShotServer(std::vector<std::optional<std::string>> answers, bool silent = false) {
        listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        bind(listener_, reinterpret_cast<sockaddr*>(&address), sizeof address);
        listen(listener_, 1);
        socklen_t size = sizeof address;
        getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size);
        origin = "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port));
        url = origin + "/v1";
        thread_ = std::thread([this, answers, silent] {
            for (const auto& answer : answers) serve(answer, silent);
        });
    }
    ~OneShotServer() {
        shutdown(listener_, SHUT_RDWR);
        thread_.join();
        close(listener_);
    }

    std::string origin;   // http://127.0.0.1:PORT
    std::string url;      // the origin and /v1
    std::string request;  // every request, one after another

private:
    void serve(const std::optional<std::string>& answer, bool silent) {
        int peer = accept(listener_, nullptr, nullptr);
        if (peer < 0) return;
        const size_t begin = request.size();
        char buffer[65536];
        for (;;) {
            ssize_t n = read(peer, buffer, sizeof buffer);
            if (n <= 0) break;
            request.append(buffer, static_cast<size_t>(n));
            size_t end = request.find("\r\n\r\n", begin);
            if (end == std::string::npos) continue;
            size_t length = request.find("Content-Length: ", begin);
            if (length == std::string::npos || length > end ||
                request.size() >= end + 4 + std::stoul(request.substr(length + 16)))
                break;
        }
        if (silent) {
            while (read(peer, buffer, sizeof buffer) > 0) {
            }
        } else if (answer) {
            [[maybe_unused]] ssize_t sent = write(peer, answer->data(), answer->size());
        }
        close(peer);
    }

    int listener_;
    std::thread thread_;
};

// An HTTP answer with `status` and a JSON `body`.
inline std::string http(int status, const std::string& body) {
    return "HTTP/1.1 " + std::to_string(status) +
           " X\r\nContent-Type: application/json\r\nContent-Length: " + std::to_string(body.size()) +
           "\r\nConnection: close\r\n\r\n" + body;
}
