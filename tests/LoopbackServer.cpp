#include "LoopbackServer.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

LoopbackServer::LoopbackServer(Answer answer) : answer_(std::move(answer)) {
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
        for (;;) {
            int peer = accept(listener_, nullptr, nullptr);
            if (peer < 0) return;
            std::lock_guard guard(lock_);
            peers_.emplace_back([this, peer] { serve(peer); });
        }
    });
}

LoopbackServer::~LoopbackServer() {
    shutdown(listener_, SHUT_RDWR);
    acceptor_.join();
    std::lock_guard guard(lock_);
    for (auto& peer : peers_) peer.join();
    close(listener_);
}

std::string LoopbackServer::origin() const { return "http://127.0.0.1:" + std::to_string(port_); }

void LoopbackServer::serve(int peer) {
    std::string request;
    char buffer[65536];
    for (;;) {
        ssize_t n = read(peer, buffer, sizeof buffer);
        if (n <= 0) break;
        request.append(buffer, static_cast<size_t>(n));
        size_t end = request.find("\r\n\r\n");
        if (end == std::string::npos) continue;
        size_t length = request.find("Content-Length: ");
        if (length == std::string::npos || length > end ||
            request.size() >= end + 4 + std::stoul(request.substr(length + 16)))
            break;
    }
    if (auto reply = answer_(request)) {
        const std::string text =
            "HTTP/1.1 " + std::to_string(reply->status) +
            " X\r\nContent-Type: application/json\r\nContent-Length: " + std::to_string(reply->body.size()) +
            "\r\nConnection: close\r\n\r\n" + reply->body;
        [[maybe_unused]] ssize_t sent = write(peer, text.data(), text.size());
    }
    close(peer);
}
