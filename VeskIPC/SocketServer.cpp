#include "VeskIPC/Socket.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <system_error>
#include <thread>

struct SocketServer::State {
    std::string path;
    RawHandler handler;
    std::mutex lock;  // guards listener
    int listener = -1;
    std::mutex exchanging;  // guards exchanges
    std::condition_variable slotFree;
    int exchanges = 0;  // connections being read or answered
};

namespace {

constexpr double serverTimeout = 10;
constexpr int backlog = 16;
// Beyond this many exchanges at once, further peers wait in the queue of the listener.
constexpr int exchangeLimit = 256;
constexpr const char* unreadableRequest = "Vesk couldn't read that request. Are the CLI and app the same version?";

SocketServer::RawHandler answering(SocketServer::Handler handler) {
    return [handler = std::move(handler)](std::string_view bytes) -> std::optional<std::string> {
        Response response;
        if (auto request = decodeRequest(bytes)) {
            try {
                response = handler(*request);
            } catch (const WireError& error) {
                response = Response{};
                response.error = error;
            }
        } else {
            response.error = WireError{WireError::Code::invalid, unreadableRequest};
        }
        return encodeWire(response);
    };
}

bool isSameUser(int connection) {
    ucred peer{};
    socklen_t size = sizeof peer;
    if (getsockopt(connection, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0 || size != sizeof peer) return false;
    return peer.uid == getuid();
}

// Reads one request to the end of its stream, answers it and closes the connection, which
// ends the answer. On a task of its own: a peer that sends nothing, or half a request and
// then nothing, holds up no one but itself until its reads time out.
void exchange(const std::shared_ptr<SocketServer::State>& state, int connection) {
    std::string request = VeskSocket::readAll(connection);
    std::optional<std::string> bytes;
    if (!request.empty()) {
        try {
            bytes = state->handler(request);
        } catch (...) {
            // A handler that fails leaves the peer without an answer.
        }
    }
    if (bytes) VeskSocket::writeAll(connection, *bytes);
    close(connection);
}

void startTask(std::shared_ptr<SocketServer::State> state, int connection) {
    {
        std::lock_guard guard(state->exchanging);
        ++state->exchanges;
    }
    auto done = [](SocketServer::State& state) {
        std::lock_guard guard(state.exchanging);
        --state.exchanges;
        state.slotFree.notify_one();
    };
    try {
        std::thread([state, connection, done] {
            exchange(state, connection);
            done(*state);
        }).detach();
    } catch (const std::system_error&) {
        close(connection);
        done(*state);
    }
}

// Accepts peers one at a time until `stop` shuts the listener down; then closes it. Each
// exchange runs on a task of its own, so a slow peer keeps no other waiting.
void acceptLoop(std::shared_ptr<SocketServer::State> state, int listener) {
    for (;;) {
        {
            std::unique_lock guard(state->exchanging);
            state->slotFree.wait(guard, [&] { return state->exchanges < exchangeLimit; });
        }
        int connection = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection < 0) {
            if (errno == EINTR || errno == ECONNABORTED) continue;
            if (errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM) {
                // Out of resources for now: answers under way will free some.
                std::this_thread::sleep_for(std::chrono::milliseconds(50));
                continue;
            }
            break;
        }
        if (!isSameUser(connection)) {
            close(connection);
            continue;
        }
        VeskSocket::configure(connection, serverTimeout);
        startTask(state, connection);
    }
    close(listener);
}

}  // namespace

SocketServer::SocketServer(std::string path, Handler handler)
    : SocketServer(std::move(path), answering(std::move(handler))) {}

SocketServer::SocketServer(std::string path, RawHandler handler) : state_(std::make_shared<State>()) {
    state_->path = std::move(path);
    state_->handler = std::move(handler);
}

SocketServer::~SocketServer() { stop(); }

const std::string& SocketServer::path() const { return state_->path; }

std::optional<SocketError> SocketServer::start() {
    const std::string& path = state_->path;
    auto probe = SocketClient::connect(path);
    if (const int* live = std::get_if<int>(&probe)) {
        close(*live);
        return SocketError::inUse();
    }

    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ignored);
    unlink(path.c_str());

    int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (listener < 0) return SocketError::system(errno);
    auto address = VeskSocket::address(path);
    if (!address) {
        close(listener);
        return SocketError::pathTooLong();
    }
    if (bind(listener, reinterpret_cast<const sockaddr*>(&*address), VeskSocket::addressLength()) != 0 ||
        chmod(path.c_str(), 0600) != 0 || listen(listener, backlog) != 0) {
        int code = errno;
        close(listener);
        return SocketError::system(code);
    }

    {
        std::lock_guard guard(state_->lock);
        state_->listener = listener;
    }
    try {
        std::thread(acceptLoop, state_, listener).detach();
    } catch (const std::system_error& error) {
        {
            std::lock_guard guard(state_->lock);
            state_->listener = -1;
        }
        close(listener);
        unlink(path.c_str());
        return SocketError::system(error.code().value());
    }
    return std::nullopt;
}

void SocketServer::stop() {
    int listener;
    {
        std::lock_guard guard(state_->lock);
        listener = state_->listener;
        state_->listener = -1;
    }
    if (listener < 0) return;
    // Shutting the listener down wakes the blocked accept, and the accept thread closes
    // the descriptor itself: closing it here could hand its number to a new descriptor
    // under the thread's feet.
    shutdown(listener, SHUT_RDWR);
    unlink(state_->path.c_str());
}
