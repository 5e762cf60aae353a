#include "VeskIPC/Socket.h"

#include <unistd.h>

#include <cerrno>
#include <utility>

#include "Platform/Heap.h"

namespace SocketClient {

SocketResult<int> connect(const std::string& path) {
    int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0) return SocketError::system(errno);
    auto address = VeskSocket::address(path);
    if (!address) {
        close(descriptor);
        return SocketError::pathTooLong();
    }
    if (::connect(descriptor, reinterpret_cast<const sockaddr*>(&*address), VeskSocket::addressLength()) != 0) {
        close(descriptor);
        return SocketError::unreachable();
    }
    return descriptor;
}

bool isListening(const std::string& path) {
    auto connected = connect(path);
    if (const int* descriptor = std::get_if<int>(&connected)) {
        close(*descriptor);
        return true;
    }
    return false;
}

SocketResult<Response> send(const Request& request, const std::string& path, double timeout) {
    auto connected = connect(path);
    if (const SocketError* error = std::get_if<SocketError>(&connected)) return *error;
    int descriptor = std::get<int>(connected);
    VeskSocket::configure(descriptor, timeout);

    auto bytes = encodeWire(request);
    if (!bytes || !VeskSocket::writeAll(descriptor, *bytes)) {
        close(descriptor);
        return SocketError::unreachable();
    }
    shutdown(descriptor, SHUT_WR);
    std::string answer = VeskSocket::readAll(descriptor);
    close(descriptor);

    // Decoding takes several times the answer's size: the document, then the records.
    Heap::prepare(answer.size() * 3);
    auto response = answer.empty() ? std::nullopt : decodeResponse(answer);
    if (!response) return SocketError::noResponse();
    return std::move(*response);
}

}  // namespace SocketClient
