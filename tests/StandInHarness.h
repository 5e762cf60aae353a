#pragma once

#include <memory>
#include <mutex>

#include "AppHarness.h"

// End-to-end tests of vesk against a stand-in for the app: a server in the test itself that
// gives every request the same answer, and keeps the requests. No vesk-app stands beside vesk.
// An answer is the bytes of a response (`line`), sent back as they stand, or `silent` (close
// without an answer) or `garbage` (bytes that are no response).
class StandInHarness : public AppHarness {
public:
    StandInHarness() : AppHarness(false) {}

    static constexpr const char* silent = "SILENT";
    static constexpr const char* garbage = "GARBAGE";
    static std::string line(const Response& response) { return encodeWire(response).value(); }

    // Serves on `path` (the default socket path when empty), answering every request with `answer`.
    void start(const std::string& answer, const std::string& path = "") {
        server_ = std::make_unique<SocketServer>(
            path.empty() ? VeskSocket::defaultPath() : path,
            SocketServer::RawHandler(
                [served = served_, answer](std::string_view request) -> std::optional<std::string> {
                    std::lock_guard guard(served->lock);
                    served->requests.emplace_back(request);
                    if (answer == silent) return std::nullopt;
                    if (answer == garbage) return "this is not a response\n";
                    return answer;
                }));
        if (server_->start()) throw std::runtime_error("stand-in harness: cannot listen on " + server_->path());
    }
    // The requests it received, raw, in order.
    std::vector<std::string> requests() const {
        std::lock_guard guard(served_->lock);
        return served_->requests;
    }

private:
    // Shared with the server's tasks, which may outlive the harness by an exchange.
    struct Served {
        std::mutex lock;
        std::vector<std::string> requests;
    };
    std::shared_ptr<Served> served_ = std::make_shared<Served>();
    std::unique_ptr<SocketServer> server_;
};
