#pragma once

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

// An HTTP server on a loopback port, for the app to ask: each connection is served on a
// thread of its own, with status 200 and the JSON body `answer` gives for the whole request.
class LoopbackServer {
public:
    using Answer = std::function<std::string(const std::string& request)>;

    explicit LoopbackServer(Answer answer) : answer_(std::move(answer)) {
        listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        bind(listener_, reinterpret_cast<sockaddr*>(&address), sizeof address);
        listen(listener_, 16);
        socklen_t size = sizeof address;
        getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size);
        port_ = ntohs(address.sin_port);
        acceptor_ = std::thread([this] {
            for (int peer; (peer = accept(listener_, nullptr, nullptr)) >= 0;) {
                std::lock_guard guard(lock_);
                peers_.emplace_back([this, peer] { serve(peer); });
            }
        });
    }
    ~LoopbackServer() {
        shutdown(listener_, SHUT_RDWR);
        acceptor_.join();
        for (auto& peer : peers_) peer.join();
        close(listener_);
    }
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    std::string origin() const { return "http://127.0.0.1:" + std::to_string(port_); }

private:
    // Reads the head, and the body as long as its Content-Length says.
    void serve(int peer) {
        std::string request;
        char buffer[65536];
        for (ssize_t n; (n = read(peer, buffer, sizeof buffer)) > 0;) {
            request.append(buffer, static_cast<size_t>(n));
            size_t end = request.find("\r\n\r\n");
            if (end == std::string::npos) continue;
            size_t length = request.find("Content-Length: ");
            if (length == std::string::npos || length > end ||
                request.size() >= end + 4 + std::stoul(request.substr(length + 16)))
                break;
        }
        const std::string body = answer_(request);
        const std::string reply =
            "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: " + std::to_string(body.size()) +
            "\r\nConnection: close\r\n\r\n" + body;
        [[maybe_unused]] ssize_t sent = write(peer, reply.data(), reply.size());
        close(peer);
    }

    Answer answer_;
    int listener_ = -1;
    int port_ = 0;
    std::thread acceptor_;
    std::mutex lock_;  // guards peers_
    std::vector<std::thread> peers_;
};
