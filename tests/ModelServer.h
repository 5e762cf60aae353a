#pragma once

#include <atomic>
#include <optional>
#include <string>

#include "LoopbackServer.h"

// A scripted local model server on a loopback port, for the app to ask: /health and
// /v1/models answer as `health` says, /v1/chat/completions as `way` says.
class ModelServer {
public:
    enum class Way { reads, slow, garbage, closes };
    // `reading`: the JSON object the model reads sentences into.
    explicit ModelServer(std::string reading);

    std::string url() const { return server_.origin() + "/v1"; }
    std::atomic<Way> way{Way::reads};
    std::atomic<int> health{200};
    std::atomic<int> readings{0};  // chat requests received

private:
    std::optional<LoopbackServer::Reply> answer(const std::string& request);

    std::string reading_;
    LoopbackServer server_;  // last: it calls `answer` until it is gone
};
