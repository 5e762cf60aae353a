#pragma once

#include <sys/socket.h>
#include <sys/un.h>

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "VeskIPC/Wire.h"

// A transport failure.
struct SocketError {
    enum class Case { system, unreachable, noResponse, pathTooLong, inUse };
    Case kind = Case::unreachable;
    int code = 0;  // errno, for system

    bool operator==(const SocketError&) const = default;

    static SocketError system(int code) { return {Case::system, code}; }
    static SocketError unreachable() { return {Case::unreachable, 0}; }
    static SocketError noResponse() { return {Case::noResponse, 0}; }
    static SocketError pathTooLong() { return {Case::pathTooLong, 0}; }
    static SocketError inUse() { return {Case::inUse, 0}; }
};

// A value or a SocketError.
template <class T>
using SocketResult = std::variant<T, SocketError>;

// Paths and operations both ends of the socket share.
namespace VeskSocket {

inline constexpr const char* appGroup = "T4KQ79WB3X.com.kerwold.vesk";

// The home directory of the real user id's password entry (never HOME first).
std::string homeDirectory();
std::string defaultPath();
std::vector<std::string> candidatePaths();

// AF_UNIX address of `path`: at most 103 bytes; absent (pathTooLong) otherwise.
std::optional<sockaddr_un> address(const std::string& path);
// Ignores SIGPIPE, and sets per-read and per-write timeouts of whole seconds.
void configure(int descriptor, double timeout);
std::string readAll(int descriptor);
bool writeAll(int descriptor, const std::string& bytes);

}  // namespace VeskSocket

// The command line's end.
namespace SocketClient {

SocketResult<int> connect(const std::string& path);
bool isListening(const std::string& path);
SocketResult<Response> send(const Request& request, const std::string& path, double timeout);

}  // namespace SocketClient

// The app's end: one accept thread, one background task per request.
class SocketServer {
public:
    using Handler = std::function<Response(const Request&)>;

    SocketServer(std::string path, Handler handler);
    ~SocketServer();
    SocketServer(const SocketServer&) = delete;
    SocketServer& operator=(const SocketServer&) = delete;

    std::optional<SocketError> start();
    void stop();

    const std::string& path() const { return path_; }

private:
    std::string path_;
    Handler handler_;
    std::mutex lock_;
    int listener_ = -1;
};
