#include "ModelServer.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>

namespace {

void send(int peer, int status, const std::string& body) {
    const std::string text = "HTTP/1.1 " + std::to_string(status) + " X\r\nContent-Type: application/json\r\n" +
                             "Content-Length: " + std::to_string(body.size()) + "\r\nConnection: close\r\n\r\n" + body;
    [[maybe_unused]] ssize_t sent = write(peer, text.data(), text.size());
}

// The JSON text of `text` as a string.
std::string quoted(const std::string& text) {
    std::string out = "\"";
    for (char c : text) {
        if (c == '"' || c == '\\') out += '\\';
        out += c;
    }
    return out + "\"";
}

}  // namespace

ModelServer::ModelServer(std::string reading) : reading_(std::move(reading)) {
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

ModelServer::~ModelServer() {
    shutdown(listener_, SHUT_RDWR);
    acceptor_.join();
    std::lock_guard guard(lock_);
    for (auto& peer : peers_) peer.join();
    close(listener_);
}

std::string ModelServer::url() const { return "http://127.0.0.1:" + std::to_string(port_) + "/v1"; }

void ModelServer::serve(int peer) {
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
    if (request.starts_with("GET /health")) {
        send(peer, health, health == 200 ? R"({"status":"ok"})" : R"({"error":{"code":503}})");
    } else if (request.starts_with("GET /v1/models")) {
        send(peer, health, R"({"data":[{"id":"fake"}]})");
    } else if (request.starts_with("POST /v1/chat/completions")) {
        ++readings;
        switch (way.load()) {
        case Way::reads: send(peer, 200, R"({"choices":[{"message":{"content":)" + quoted(reading_) + "}}]}"); break;
        case Way::slow:
            std::this_thread::sleep_for(std::chrono::seconds(3));
            send(peer, 200, R"({"choices":[{"message":{"content":)" + quoted(reading_) + "}}]}");
            break;
        case Way::garbage: send(peer, 200, "Sure! Lunch with Sam at 12:30."); break;
        case Way::closes: break;
        }
    } else {
        send(peer, 404, "{}");
    }
    close(peer);
}
