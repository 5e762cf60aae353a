// vesk add against the real app configured with a local model server, scripted in the test.
// How the app fares with a model server that is absent or answers badly is checked in
// VeskApp/LocalModel_test.cpp.
#include <atomic>
#include <chrono>
#include <filesystem>
#include <thread>

#include <gtest/gtest.h>

#include "AppHarness.h"
#include "LoopbackServer.h"

namespace {

bool readByModel(const ProcessResult& result) { return result.out.find("\"readByModel\" : true") != std::string::npos; }

TEST(Model, ReadsWhatTheGrammarLeftAndNeverHoldsTheAppUp) {
    const std::string unread = "lunch with sam around noonish";
    // The model's chat answer: a reading of `unread` into the reading's JSON object.
    const std::string chat =
        R"({"choices":[{"message":{"content":"{\"title\":\"Lunch with Sam\",\"dueDate\":null,\"dueTime\":\"12:30\",)"
        R"(\"style\":null,\"repeatMinutes\":null,\"recurrence\":null,\"recurrenceInterval\":null,\"weekdays\":[],)"
        R"(\"arriveAt\":null,\"leaveFrom\":null,\"delayMinutes\":null,\"onlyAt\":null}"}}]})";
    std::atomic<int> readings{0};
    std::atomic<bool> slow{false};  // answers after 3 s, past the app's time-out
    LoopbackServer server([&](const std::string& request) -> std::string {
        if (request.starts_with("GET /health")) return R"({"status":"ok"})";
        if (request.starts_with("GET /v1/models")) return R"({"data":[{"id":"fake"}]})";
        ++readings;
        if (slow) std::this_thread::sleep_for(std::chrono::seconds(3));
        return chat;
    });
    AppHarness app;
    std::filesystem::create_directories(app.home() + "/.config/vesk");
    writeFile(app.home() + "/.config/vesk/config", "model-url = " + server.origin() + "/v1\nmodel-timeout = 1\n");
    app.start();

    ProcessResult added = app.vesk({"add", unread});
    EXPECT_EQ(added.status, 0) << added.err;
    EXPECT_NE(added.out.find("Lunch with Sam"), std::string::npos) << added.out;
    EXPECT_NE(added.out.find("12:30"), std::string::npos) << added.out;
    EXPECT_NE(added.out.find("the on-device model read what the grammar couldn't"), std::string::npos) << added.out;
    EXPECT_EQ(readings, 1);

    // A sentence the grammar reads whole is never sent.
    EXPECT_FALSE(readByModel(app.vesk({"add", "--dry-run", "--json", "call mum at 9"})));
    EXPECT_EQ(readings, 1);

    // A model that is late leaves the grammar's reading.
    slow = true;
    ProcessResult late = app.vesk({"add", "--dry-run", "--json", unread});
    EXPECT_EQ(late.status, 0) << late.err;
    EXPECT_FALSE(readByModel(late)) << late.out;
    EXPECT_NE(late.out.find("\"title\" : \"lunch with sam around noonish\""), std::string::npos) << late.out;
    ProcessResult doctor = app.vesk({"doctor"});
    EXPECT_NE(doctor.out.find("model   ready (fake)"), std::string::npos) << doctor.out;
}

}  // namespace
