#include "StandInHarness.h"

#include <filesystem>
#include <mutex>
#include <stdexcept>

// Shared with the server's tasks, which may outlive the harness by an exchange.
struct StandInHarness::Served {
    std::mutex lock;
    std::vector<std::string> requests;
};

StandInHarness::StandInHarness() : served_(std::make_shared<Served>()) {
    std::filesystem::create_directory(private_.base() + "/bin");
    copyExecutable(VESK_BINARY, vesk_);
}

StandInHarness::~StandInHarness() {
    if (server_) server_->stop();
}

void StandInHarness::start(const std::string& answer, const std::string& path) {
    server_ = std::make_unique<SocketServer>(
        path.empty() ? VeskSocket::defaultPath() : path,
        SocketServer::RawHandler([served = served_, answer](std::string_view request) -> std::optional<std::string> {
            std::lock_guard guard(served->lock);
            served->requests.emplace_back(request);
            if (answer == silent) return std::nullopt;
            if (answer == garbage) return "this is not a response\n";
            return answer;
        }));
    if (server_->start()) throw std::runtime_error("stand-in harness: cannot listen on " + server_->path());
}

std::vector<std::string> StandInHarness::requests() const {
    std::lock_guard guard(served_->lock);
    return served_->requests;
}
