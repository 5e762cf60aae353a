// Commands against a stand-in for the app: the request each sends, what it makes of answers
// the real app never gives, and how it finds, launches or misses the app.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

#include "StandInHarness.h"
#include "VeskIPC/Socket.h"

// Responses are written with designated initializers; the fields left out keep their defaults.
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"

namespace {

ReminderDTO reminder(int64_t number, std::string title) { return {.number = number, .title = std::move(title)}; }

std::string jsonError(const std::string& code, const std::string& message) {
    return "{\n  \"error\" : {\n    \"code\" : \"" + code + "\",\n    \"message\" : \"" + message +
           "\"\n  },\n  \"schema\" : 1\n}\n";
}

TEST(Commands, RequestAndPrintedAnswer) {
    struct {
        std::vector<std::string> arguments;
        Response answer;
        Request request;
        std::string out;
    } const cases[] = {
        // A reminder in no list; answers without the reminder or place fall back to the words typed.
        {{"x"}, {.reminder = reminder(3, "x")}, {Request::Add{"x", false}}, "\nSaved as #3.\n"},
        {{"done", "3"}, {}, {Request::Done{"3"}}, "Done: 3\n"},
        {{"places", "remove", "home"}, {}, {Request::RemovePlace{"home"}}, "Removed home.\n"},
        {{"lists"},
         {.lists = std::vector<ListDTO>{{"a", "Work", false}, {"b", "Old stuff", true}}},
         {Request::Lists{}},
         "Work\nOld stuff  (ignored)\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.arguments));
        StandInHarness app;
        app.start(StandInHarness::line(c.answer));
        ProcessResult result = app.vesk(c.arguments);
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.err, "");
        EXPECT_EQ(result.out, c.out);
        auto requests = app.requests();
        ASSERT_EQ(requests.size(), 1u);
        EXPECT_EQ(decodeRequest(requests[0]), c.request) << requests[0];
    }

    StandInHarness app;
    // An unhealthy report ends with status 3, in JSON too.
    app.start(
        StandInHarness::line({.doctor = DoctorDTO{"none", "allowed", false, "any-list", {}, {}, 4, "Desk", "0.2"}}));
    ProcessResult json = app.vesk({"doctor", "--json"});
    EXPECT_EQ(json.status, 3);
    EXPECT_TRUE(json.out.starts_with("{\n  \"doctor\" : {\n")) << json.out;
}

// Each error code of the app, and answers that are none: the status, the message in words
// and in JSON, and the request never sent twice.
TEST(Commands, FailedAnswers) {
    const std::string missing = "No reminder matches “milk”.";
    const std::string noAnswer =
        "Vesk didn't answer. The request may have been applied; check with `vesk now` before retrying.";
    auto failing = [&](WireError::Code code) {
        // Data beside an error is never shown.
        return StandInHarness::line({.reminder = reminder(1, "milk"), .error = WireError{code, missing}});
    };
    const struct {
        std::string answer;
        int status;
        std::string code, message;
    } cases[] = {
        {failing(WireError::Code::invalid), 1, "invalid", missing},
        {failing(WireError::Code::notFound), 2, "not-found", missing},
        {failing(WireError::Code::permission), 3, "permission", missing},
        {failing(WireError::Code::partial), 4, "partial", missing},
        {failing(WireError::Code::unreachable), 5, "unreachable", missing},
        {StandInHarness::garbage, 4, "partial", noAnswer},
        {StandInHarness::silent, 4, "partial", noAnswer},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.answer);
        StandInHarness app;
        app.start(c.answer);
        ProcessResult words = app.vesk({"done", "milk"});
        EXPECT_EQ(words.status, c.status);
        EXPECT_EQ(words.out, "");
        EXPECT_EQ(words.err, "vesk: " + c.message + "\n");
        ProcessResult json = app.vesk({"done", "milk", "--json"});
        EXPECT_EQ(json.status, c.status);
        EXPECT_EQ(json.err, "");
        EXPECT_EQ(json.out, jsonError(c.code, c.message));
        EXPECT_EQ(app.requests().size(), 2u);
    }
}

TEST(Commands, SecondCandidateIsUsedWhenTheFirstIsSilent) {
    StandInHarness app;
    app.start(StandInHarness::line({.lists = std::vector<ListDTO>{{"a", "Work", false}}}),
              VeskSocket::candidatePaths()[1]);
    ProcessResult result = app.vesk({"lists"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "Work\n");
    EXPECT_FALSE(std::filesystem::exists(VeskSocket::defaultPath()));
}

// A folder with `program` as vesk-app, first on vesk's PATH.
void putOnPath(StandInHarness& app, const std::string& program) {
    std::filesystem::create_directory(app.base() + "/path");
    copyExecutable(program, app.base() + "/path/vesk-app");
    app.environment["PATH"] = app.base() + "/path:" + app.environment.at("PATH");
}

// vesk launches the app it finds on PATH when none stands beside it (App.LaunchedOnDemandAndAlone).
TEST(Commands, LaunchesVeskAppOnPath) {
    StandInHarness app;
    putOnPath(app, VESK_APP_BINARY);
    auto begin = std::chrono::steady_clock::now();
    ProcessResult result = app.vesk({"lists"});
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "Reminders\n");
    EXPECT_TRUE(SocketClient::isListening(VeskSocket::defaultPath()));
    endProcessesOf(app.base() + "/path/vesk-app", SIGTERM);
}

// Nobody listens and the launch does nothing: after the wait the request goes out once more
// and fails, so the run takes the whole 15 seconds.
TEST(Commands, UnreachableAfterAFailedLaunch) {
    StandInHarness app;
    const std::string script = app.base() + "/failing", log = app.base() + "/launches";
    writeFile(script, "#!/bin/sh\necho \"$@\" >> '" + log + "'\necho noise >&2\nexit 1\n");
    std::filesystem::permissions(script, std::filesystem::perms::owner_all);
    putOnPath(app, script);

    ProcessResult result = app.vesk({"now"});
    EXPECT_EQ(result.status, 5);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "vesk: Couldn't reach the Vesk app. Is it installed on this Mac?\n");
    EXPECT_EQ(readLines(log), std::vector<std::string>{"--background"});
}

}  // namespace
