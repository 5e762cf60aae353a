#include "VeskApp/LocalModel.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Platform/Json.h"

namespace {

using namespace std::chrono_literals;

// A server on a loopback port that takes one request and gives it one scripted answer:
// the bytes to send (none: it closes at once), or it stays silent until it is destroyed.
// With several answers, it takes one connection for each, in turn.
class OneShotServer {
public:
    explicit OneShotServer(std::optional<std::string> answer, bool silent = false)
        : OneShotServer(std::vector<std::optional<std::string>>{answer}, silent) {}
    explicit OneShotServer(std::vector<std::optional<std::string>> answers, bool silent = false) {
        listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        bind(listener_, reinterpret_cast<sockaddr*>(&address), sizeof address);
        listen(listener_, 1);
        socklen_t size = sizeof address;
        getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size);
        url = "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/v1";
        thread_ = std::thread([this, answers, silent] {
            for (const auto& answer : answers) serve(answer, silent);
        });
    }
    ~OneShotServer() {
        shutdown(listener_, SHUT_RDWR);
        thread_.join();
        close(listener_);
    }

    std::string url;
    std::string request;  // every request, one after another

private:
    void serve(const std::optional<std::string>& answer, bool silent) {
        int peer = accept(listener_, nullptr, nullptr);
        if (peer < 0) return;
        const size_t begin = request.size();
        char buffer[65536];
        for (;;) {
            ssize_t n = read(peer, buffer, sizeof buffer);
            if (n <= 0) break;
            request.append(buffer, static_cast<size_t>(n));
            size_t end = request.find("\r\n\r\n", begin);
            if (end == std::string::npos) continue;
            size_t length = request.find("Content-Length: ", begin);
            if (length == std::string::npos || length > end ||
                request.size() >= end + 4 + std::stoul(request.substr(length + 16)))
                break;
        }
        if (silent) {
            while (read(peer, buffer, sizeof buffer) > 0) {
            }
        } else if (answer) {
            [[maybe_unused]] ssize_t sent = write(peer, answer->data(), answer->size());
        }
        close(peer);
    }

    int listener_;
    std::thread thread_;
};

std::string http(int status, const std::string& body) {
    return "HTTP/1.1 " + std::to_string(status) +
           " X\r\nContent-Type: application/json\r\nContent-Length: " + std::to_string(body.size()) +
           "\r\nConnection: close\r\n\r\n" + body;
}

// A chat answer whose message is `content`.
std::string chat(const std::string& content) {
    return JsonText::compact(Json{{"choices", Json::array({{{"message", {{"content", content}}}}})}}).value();
}

const Calendar amsterdam("Europe/Amsterdam", "en_US");
const Date now = *amsterdam.date({2026, 11, 18, 10, 0});

ModelReading ask(const std::string& url, double timeout = 5) {
    return LocalModel(url, "qwen", timeout).read("lunch with sam", now, amsterdam, {"gym"}, {});
}

TEST(LocalModel, AsksInTheSchemaAndReadsTheAnswer) {
    const std::string content =
        R"({"title":"Lunch with Sam","dueDate":null,"dueTime":"12:30","style":null,"repeatMinutes":null,)"
        R"("recurrence":"weekly","recurrenceInterval":2,"weekdays":[2,4],"arriveAt":null,"leaveFrom":"Gym",)"
        R"("delayMinutes":5,"onlyAt":null})";
    OneShotServer server(http(200, chat(content)));
    ModelReading expected;
    expected.title = "Lunch with Sam";
    expected.dueTime = "12:30";
    expected.recurrence = "weekly";
    expected.recurrenceInterval = 2;
    expected.weekdays = {2, 4};
    expected.leaveFrom = "Gym";
    expected.delayMinutes = 5;
    EXPECT_EQ(ask(server.url), expected);
    EXPECT_EQ(server.request.rfind("POST /v1/chat/completions HTTP/1.1\r\n", 0), 0u) << server.request;
    for (const char* part : {"lunch with sam", "Wednesday 2026-11-18, 10:00", "Europe/Amsterdam", "home, work, gym",
                             R"("type":"json_schema")", R"("strict":true)", R"("model":"qwen")"})
        EXPECT_NE(server.request.find(part), std::string::npos) << part;
}

TEST(LocalModel, AnythingButAReadingFails) {
    const std::pair<std::string, std::string> answers[] = {
        {"server error", http(500, chat(R"({"title":"x"})"))},
        {"no JSON", http(200, "<html>")},
        {"no choices", http(200, R"({"choices":[]})")},
        {"content no JSON", http(200, chat("Sure! Here is the reading"))},
        {"no title", http(200, chat(R"({"dueTime":"9:00"})"))},
        {"a number as text", http(200, chat(R"({"title":"x","repeatMinutes":"15"})"))},
        {"a fraction", http(200, chat(R"({"title":"x","weekdays":[2.5]})"))},
        {"an array", http(200, chat(R"([{"title":"x"}])"))},
        {"half an answer", http(200, chat(R"({"title":"x"})")).substr(0, 80)},
    };
    for (const auto& [why, answer] : answers) {
        OneShotServer server(answer);
        EXPECT_THROW(ask(server.url), std::runtime_error) << why;
    }
    {
        OneShotServer closes(std::nullopt);
        EXPECT_THROW(ask(closes.url), std::runtime_error);
    }
    EXPECT_THROW(ask("http://127.0.0.1:1/v1"), std::runtime_error);
}

TEST(LocalModel, ASilentServerIsLeftAtTheTimeOutOrWhenStopped) {
    {
        OneShotServer silent(std::nullopt, true);
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_THROW(ask(silent.url, 0.2), std::runtime_error);
        EXPECT_LT(std::chrono::steady_clock::now() - begin, 5s);
    }
    OneShotServer silent(std::nullopt, true);
    std::stop_source stop;
    std::thread stopper([&] {
        std::this_thread::sleep_for(100ms);
        stop.request_stop();
    });
    EXPECT_THROW(LocalModel(silent.url, "", 60).read("x", now, amsterdam, {}, stop.get_token()), std::runtime_error);
    stopper.join();
}

TEST(LocalModel, StatusFromAQuickLookAtTheServer) {
    {
        OneShotServer llama(http(200, R"({"status":"ok"})"));
        EXPECT_EQ(LocalModel(llama.url, "qwen", 8).status(), "ready (qwen)");
        EXPECT_EQ(llama.request.rfind("GET /health HTTP/1.1\r\n", 0), 0u);
    }
    {
        OneShotServer loading(http(503, R"({"error":{"code":503,"message":"Loading model"}})"));
        EXPECT_EQ(LocalModel(loading.url, "qwen", 8).status(), "loading");
    }
    {
        // No /health: the API's model list answers, and names the model.
        OneShotServer ollama({http(404, "404 page not found"), http(200, R"({"data":[{"id":"llama3.2"}]})")});
        LocalModel model(ollama.url, "", 8);
        EXPECT_EQ(model.status(), "ready (llama3.2)");
        EXPECT_NE(ollama.request.find("GET /v1/models HTTP/1.1\r\n"), std::string::npos);
        EXPECT_EQ(model.status(), "ready (llama3.2)");  // kept, not asked again
    }
    EXPECT_EQ(LocalModel("http://127.0.0.1:1/v1", "qwen", 8).status(), "unreachable (http://127.0.0.1:1/v1)");
}

}  // namespace
