#pragma once

// A loopback HTTP server for the tests of the app's HTTP clients.

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <string>
#include <thread>
#include <vector>

// Takes one connection for each scripted answer, in turn, reads its request and sends the
// answer's bytes. Peers beyond those wait, unanswered, in the queue.
class OneShotServer {
public:
    explicit OneShotServer(std::vector<std::string> answers) {
        listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        bind(listener_, reinterpret_cast<sockaddr*>(&address), sizeof address);
        listen(listener_, 8);
        socklen_t size = sizeof address;
        getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size);
        origin = "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port));
        url = origin + "/v1";
        thread_ = std::thread([this, answers] {
            for (const auto& answer : answers) serve(answer);
        });
    }
    ~OneShotServer() {
        shutdown(listener_, SHUT_RDWR);
        thread_.join();
        close(listener_);
    }

    std::string origin, url;  // http://127.0.0.1:PORT, and the same with /v1
    std::string request;      // every request, one after another

private:
    void serve(const std::string& answer) {
        int peer = accept(listener_, nullptr, nullptr);
        if (peer < 0) return;
        const size_t begin = request.size();
        char buffer[65536];
        for (ssize_t n; (n = read(peer, buffer, sizeof buffer)) > 0;) {
            request.append(buffer, static_cast<size_t>(n));
            size_t end = request.find("\r\n\r\n", begin);
            if (end == std::string::npos) continue;
            size_t length = request.find("Content-Length: ", begin);
            if (length == std::string::npos || length > end ||
                request.size() >= end + 4 + std::stoul(request.substr(length + 16)))
                break;
        }
        send(peer, answer.data(), answer.size(), MSG_NOSIGNAL);
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
