#include "VeskApp/LocalModel.h"

#include <chrono>
#include <thread>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Platform/Json.h"
#include "VeskApp/HttpTesting.h"

namespace {

using namespace std::chrono_literals;

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
    OneShotServer server({http(200, chat(content))});
    // The fields in the order of the content's keys.
    EXPECT_EQ(ask(server.url),
              (ModelReading{"Lunch with Sam", {}, "12:30", {}, {}, "weekly", 2, {2, 4}, {}, "Gym", 5, {}}));
    EXPECT_EQ(server.request.rfind("POST /v1/chat/completions HTTP/1.1\r\n", 0), 0u) << server.request;
    for (const char* part : {"lunch with sam", "Wednesday 2026-11-18, 10:00", "Europe/Amsterdam", "home, work, gym",
                             R"("type":"json_schema")", R"("strict":true)", R"("model":"qwen")"})
        EXPECT_NE(server.request.find(part), std::string::npos) << part;
}

TEST(LocalModel, AnythingButAReadingFails) {
    // Not JSON, no choice, a reading that is no JSON, one without a title.
    for (const std::string& answer : {std::string("<html>"), std::string(R"({"choices":[]})"),
                                      chat("Sure! Here is the reading"), chat(R"({"dueTime":"9:00"})")})
        EXPECT_THROW(LocalModel::reading(answer), std::runtime_error) << answer;
    OneShotServer failing({http(500, chat(R"({"title":"x"})"))});
    EXPECT_THROW(ask(failing.url), std::runtime_error);
    EXPECT_THROW(ask("http://127.0.0.1:1/v1"), std::runtime_error);
}

TEST(LocalModel, ASilentServerIsLeftAtTheTimeOutOrWhenStopped) {
    OneShotServer silent({});
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_THROW(ask(silent.url, 0.2), std::runtime_error);
    std::stop_source stop;
    std::jthread stopper([&] {
        std::this_thread::sleep_for(100ms);
        stop.request_stop();
    });
    EXPECT_THROW(LocalModel(silent.url, "", 60).read("x", now, amsterdam, {}, stop.get_token()), std::runtime_error);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 5s);
}

TEST(LocalModel, StatusFromAQuickLookAtTheServer) {
    OneShotServer llama({http(200, R"({"status":"ok"})")});
    EXPECT_EQ(LocalModel(llama.url, "qwen", 8).status(), "ready (qwen)");
    EXPECT_EQ(llama.request.rfind("GET /health HTTP/1.1\r\n", 0), 0u);
    OneShotServer loading({http(503, R"({"error":{"code":503,"message":"Loading model"}})")});
    EXPECT_EQ(LocalModel(loading.url, "qwen", 8).status(), "loading");
    // No /health: the API's model list answers, and names the model.
    OneShotServer ollama({http(404, "404 page not found"), http(200, R"({"data":[{"id":"llama3.2"}]})")});
    LocalModel model(ollama.url, "", 8);
    EXPECT_EQ(model.status(), "ready (llama3.2)");
    EXPECT_NE(ollama.request.find("GET /v1/models HTTP/1.1\r\n"), std::string::npos);
    EXPECT_EQ(model.status(), "ready (llama3.2)");  // kept, not asked again
    EXPECT_EQ(LocalModel("http://127.0.0.1:1/v1", "qwen", 8).status(), "unreachable (http://127.0.0.1:1/v1)");
}

}  // namespace
