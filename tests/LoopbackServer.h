#pragma once

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

// An HTTP server on a loopback port, for the app to ask: each connection is served on a
// thread of its own, with the answer `answer` gives for the whole request.
class LoopbackServer {
public:
    struct Reply {
        int status = 200;
        std::string body;
    };
    // The reply to a request; none hangs up without one.
    using Answer = std::function<std::optional<Reply>(const std::string& request)>;

    explicit LoopbackServer(Answer answer);
    ~LoopbackServer();
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    std::string origin() const;  // http://127.0.0.1:PORT

private:
    void serve(int peer);

    Answer answer_;
    int listener_ = -1;
    int port_ = 0;
    std::thread acceptor_;
    std::mutex lock_;  // guards peers_
    std::vector<std::thread> peers_;
};
