#include "ModelServer.h"

#include <chrono>
#include <thread>

namespace {

// The JSON text of `text` as a string.
std::string quoted(const std::string& text) {
    std::string out = "\"";
    for (char c : text) {
        if (c == '"' || c == '\\') out += '\\';
        out += c;
    }
    return out + "\"";
}

}  // namespace

ModelServer::ModelServer(std::string reading)
    : reading_(std::move(reading)), server_([this](const std::string& request) { return answer(request); }) {}

std::optional<LoopbackServer::Reply> ModelServer::answer(const std::string& request) {
    if (request.starts_with("GET /health"))
        return LoopbackServer::Reply{health, health == 200 ? R"({"status":"ok"})" : R"({"error":{"code":503}})"};
    if (request.starts_with("GET /v1/models")) return LoopbackServer::Reply{health, R"({"data":[{"id":"fake"}]})"};
    if (!request.starts_with("POST /v1/chat/completions")) return LoopbackServer::Reply{404, "{}"};
    ++readings;
    const LoopbackServer::Reply read{200, R"({"choices":[{"message":{"content":)" + quoted(reading_) + "}}]}"};
    switch (way.load()) {
        case Way::reads: return read;
        case Way::slow: std::this_thread::sleep_for(std::chrono::seconds(3)); return read;
        case Way::garbage: return LoopbackServer::Reply{200, "Sure! Lunch with Sam at 12:30."};
        case Way::closes: return std::nullopt;
    }
    return std::nullopt;
}
