#pragma once

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

    explicit LoopbackServer(Answer answer);
    ~LoopbackServer();
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    std::string origin() const { return "http://127.0.0.1:" + std::to_string(port_); }

private:
    void serve(int peer);

    Answer answer_;
    int listener_ = -1;
    int port_ = 0;
    std::thread acceptor_;
    std::mutex lock_;  // guards peers_
    std::vector<std::thread> peers_;
};
