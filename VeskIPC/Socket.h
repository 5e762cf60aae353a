#pragma once

#include <sys/socket.h>
#include <sys/un.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
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
// The length handed to bind and connect with an address.
socklen_t addressLength();
// Ignores SIGPIPE, and sets per-read and per-write timeouts of whole seconds.
void configure(int descriptor, double timeout);
// Reads until the end of the stream, a timeout or an error; returns what came.
std::string readAll(int descriptor);
// Writes all of `bytes` to a socket; false on any failure (never raises SIGPIPE).
bool writeAll(int descriptor, const std::string& bytes);

}  // namespace VeskSocket

// The command line's end.
namespace SocketClient {

SocketResult<int> connect(const std::string& path);
bool isListening(const std::string& path);
SocketResult<Response> send(const Request& request, const std::string& path, double timeout);

}  // namespace SocketClient

// The app's end: one accept thread, one background task per request. The accept thread
// and the tasks share the server's state, so the object may be destroyed at any time;
// exchanges under way finish on their own.
class SocketServer {
public:
    // Answers a request. May run on several threads at once. A thrown WireError becomes
    // the response's error; any other exception closes the connection without an answer.
    using Handler = std::function<Response(const Request&)>;
    // The bytes of a whole request to the bytes of its answer; none closes the connection
    // without an answer. For peers that need to send what no Response encodes to.
    using RawHandler = std::function<std::optional<std::string>(std::string_view request)>;

    SocketServer(std::string path, Handler handler);
    SocketServer(std::string path, RawHandler handler);
    ~SocketServer();
    SocketServer(const SocketServer&) = delete;
    SocketServer& operator=(const SocketServer&) = delete;

    std::optional<SocketError> start();
    void stop();

    const std::string& path() const;

    struct State;

private:
    std::shared_ptr<State> state_;
};
