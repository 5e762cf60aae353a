#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "StandInHarness.h"
#include "VeskIPC/Socket.h"

namespace {

Request add(const std::string& text) { return Request{Request::Add{text, false}}; }

Response titled(const std::string& title) {
    Response response;
    ReminderDTO reminder;
    reminder.id = "id-" + title;
    reminder.title = title;
    response.reminder = reminder;
    return response;
}

std::string outcome(const SocketResult<Response>& result) {
    if (const auto* response = std::get_if<Response>(&result))
        return response->reminder ? response->reminder->title : "<empty response>";
    return std::get<SocketError>(result) == SocketError::noResponse() ? "<no response>" : "<other failure>";
}

bool listensWithin(const std::string& path, std::chrono::milliseconds limit) {
    auto deadline = std::chrono::steady_clock::now() + limit;
    while (!SocketClient::isListening(path)) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

}  // namespace

TEST(StandIn, RawSendReachesTheStandInAtTheDefaultPath) {
    StandInHarness app;
    app.start({StandInHarness::line(titled("milk"))});
    EXPECT_TRUE(std::filesystem::exists(app.home() + "/Library/Group Containers/T4KQ79WB3X.com.kerwold.vesk/vesk.sock"));

    EXPECT_EQ(outcome(SocketClient::send(add("buy milk"), VeskSocket::defaultPath(), 5)), "milk");
    auto requests = app.requests();
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_EQ(decodeRequest(requests[0]), add("buy milk"));
}

TEST(StandIn, AnswersFollowTheScriptAndTheLastLineRepeats) {
    StandInHarness app;
    std::string second = VeskSocket::candidatePaths()[1];
    app.start({StandInHarness::silent, StandInHarness::garbage, StandInHarness::line(titled("a")),
               StandInHarness::line(titled("b"))},
              second);
    EXPECT_FALSE(SocketClient::isListening(VeskSocket::defaultPath()));
    std::vector<std::string> seen;
    for (int i = 0; i < 5; ++i) seen.push_back(outcome(SocketClient::send(add(std::to_string(i)), second, 5)));
    EXPECT_EQ(seen, (std::vector<std::string>{"<no response>", "<no response>", "a", "b", "b"}));
    EXPECT_EQ(app.requests().size(), 5u);
}

TEST(StandIn, RawLinesGoOutUnchanged) {
    StandInHarness app;
    std::string raw = R"({"schema":2,"whatever":[1,2],"reminders":[]})";
    app.start({raw});
    auto connected = SocketClient::connect(VeskSocket::defaultPath());
    ASSERT_TRUE(std::holds_alternative<int>(connected));
    int descriptor = std::get<int>(connected);
    VeskSocket::writeAll(descriptor, *encodeWire(Request{Request::Lists{}}));
    shutdown(descriptor, SHUT_WR);
    EXPECT_EQ(VeskSocket::readAll(descriptor), raw);
    close(descriptor);
}

TEST(StandIn, HomeIsATemporaryDirectoryThatGoesAway) {
    std::string realHome = getpwuid(getuid())->pw_dir;
    std::string marker = realHome + "/vesk-harness-marker";
    ASSERT_FALSE(std::filesystem::exists(marker));
    {
        StandInHarness app;
        std::ofstream(marker) << "x";
        EXPECT_TRUE(std::filesystem::exists(app.home() + "/vesk-harness-marker"));
    }
    EXPECT_FALSE(std::filesystem::exists(marker));
    StandInHarness fresh;
    EXPECT_TRUE(std::filesystem::is_empty(fresh.home()));
}

TEST(StandIn, BackgroundReturnsAtOnceAndTheChildServesUntilStopped) {
    StandInHarness app;
    app.script({StandInHarness::line(titled("from the background"))});
    auto begin = std::chrono::steady_clock::now();
    // runProcess returns only once the streams are closed: the child must let go of them.
    ProcessResult result = runProcess({STANDIN_BINARY, "--background"}, app.environment);
    EXPECT_EQ(result.status, 0);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
    ASSERT_TRUE(listensWithin(VeskSocket::defaultPath(), std::chrono::seconds(5)));
    EXPECT_EQ(outcome(SocketClient::send(add("x"), VeskSocket::defaultPath(), 5)), "from the background");

    app.stop();
    EXPECT_FALSE(SocketClient::isListening(VeskSocket::defaultPath()));
}

TEST(StandIn, LifetimeEndsTheStandIn) {
    StandInHarness app;
    app.environment["STANDIN_LIFETIME"] = "1";
    app.start({});
    std::this_thread::sleep_for(std::chrono::milliseconds(1500));
    EXPECT_FALSE(SocketClient::isListening(VeskSocket::defaultPath()));
}

TEST(StandIn, VeskTalksToARunningStandIn) {
    StandInHarness app;
    app.start({R"({"schema":1,"lists":[]})"});
    ProcessResult result = app.vesk({"lists", "--json"});
    EXPECT_EQ(result.status, 0) << result.err;
    ASSERT_EQ(app.requests().size(), 1u);
    EXPECT_EQ(decodeRequest(app.requests()[0]), Request{Request::Lists{}});
}

TEST(StandIn, VeskLaunchesTheStandInBesideIt) {
    StandInHarness app;
    app.script({R"({"schema":1,"lists":[]})"});
    app.installBesideVesk();
    ProcessResult result = app.vesk({"lists"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(app.requests().size(), 1u);
    EXPECT_TRUE(SocketClient::isListening(VeskSocket::defaultPath()));
}

TEST(StandIn, VeskLaunchesTheStandInFromPath) {
    StandInHarness app;
    app.script({R"({"schema":1,"lists":[]})"});
    app.installOnPath();
    ProcessResult result = app.vesk({"lists"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(app.requests().size(), 1u);
}
