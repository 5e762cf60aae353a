// The stand-in app and its harness, on their own.
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "StandInHarness.h"
#include "VeskIPC/Socket.h"

// Responses are written with designated initializers; the fields left out keep their defaults.
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"

namespace {

Request add(const std::string& text) { return Request{Request::Add{text, false}}; }

Response titled(const std::string& title) { return {.reminder = ReminderDTO{.id = "id-" + title, .title = title}}; }

std::string outcome(const SocketResult<Response>& result) {
    if (const auto* response = std::get_if<Response>(&result))
        return response->reminder ? response->reminder->title : "<empty response>";
    return std::get<SocketError>(result) == SocketError::noResponse() ? "<no response>" : "<app failure>";
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
    std::string marker = std::string(getpwuid(getuid())->pw_dir) + "/vesk-harness-marker";
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
    EXPECT_EQ(runProcess({STANDIN_BINARY, "--background"}, app.environment).status, 0);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
    for (int i = 0; i < 500 && !SocketClient::isListening(VeskSocket::defaultPath()); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_EQ(outcome(SocketClient::send(add("x"), VeskSocket::defaultPath(), 5)), "from the background");
    app.stop();
    EXPECT_FALSE(SocketClient::isListening(VeskSocket::defaultPath()));
}

}  // namespace
