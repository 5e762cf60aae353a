#pragma once

#include <atomic>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

// A scripted local model server on a loopback port, for the app to ask: /health and
// /v1/models answer as `health` says, /v1/chat/completions as `way` says.
class ModelServer {
public:
    enum class Way { reads, slow, garbage, closes };
    // `reading`: the JSON object the model reads sentences into.
    explicit ModelServer(std::string reading);
    ~ModelServer();
    ModelServer(const ModelServer&) = delete;
    ModelServer& operator=(const ModelServer&) = delete;

    std::string url() const;  // http://127.0.0.1:PORT/v1
    std::atomic<Way> way{Way::reads};
    std::atomic<int> health{200};
    std::atomic<int> readings{0};  // chat requests received

private:
    void serve(int peer);

    std::string reading_;
    int listener_ = -1;
    int port_ = 0;
    std::thread acceptor_;
    std::mutex lock_;  // guards peers_
    std::vector<std::thread> peers_;
};
