#include "GeocoderServer.h"

#include <chrono>
#include <thread>

GeocoderServer::GeocoderServer(double latitude, double longitude, std::string address)
    : found_(R"([{"place_id":1,"lat":")" + std::to_string(latitude) + R"(","lon":")" + std::to_string(longitude) +
             R"(","display_name":")" + address + R"("}])"),
      server_([this](const std::string& request) { return answer(request); }) {}

std::vector<std::string> GeocoderServer::requests() const {
    std::lock_guard guard(lock_);
    return requests_;
}

std::string GeocoderServer::userAgent() const {
    std::lock_guard guard(lock_);
    return userAgent_;
}

std::optional<LoopbackServer::Reply> GeocoderServer::answer(const std::string& request) {
    {
        std::lock_guard guard(lock_);
        requests_.push_back(request.substr(0, request.find("\r\n")));
        const std::string header = "\r\nUser-Agent: ";
        if (size_t at = request.find(header); at != std::string::npos)
            userAgent_ = request.substr(at + header.size(), request.find("\r\n", at + 2) - at - header.size());
    }
    if (!request.starts_with("GET /search?")) return LoopbackServer::Reply{404, "[]"};
    switch (way.load()) {
        case Way::finds: return LoopbackServer::Reply{200, found_};
        case Way::findsNothing: return LoopbackServer::Reply{200, "[]"};
        case Way::garbage: return LoopbackServer::Reply{200, "<html>Service busy</html>"};
        case Way::slow:
            std::this_thread::sleep_for(std::chrono::seconds(slowSeconds.load()));
            return LoopbackServer::Reply{200, found_};
    }
    return std::nullopt;
}
