// Commands against a stand-in for the app: the request each sends, what it makes of answers
// the real app never gives, and how it finds, launches or misses the app.
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>

#include "StandInHarness.h"
#include "VeskIPC/Socket.h"

// Responses are written with designated initializers; the fields left out keep their defaults.
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"

namespace {

ReminderDTO reminder(int64_t number, std::string title, std::string detail = "") {
    return {.number = number, .title = std::move(title), .detail = std::move(detail)};
}

Response doctor(std::string access) {
    return {.doctor = DoctorDTO{std::move(access), "allowed", false, "any-list", std::nullopt, {}, 4, "Desk", "0.2.0"}};
}

std::string jsonError(const std::string& code, const std::string& message) {
    return "{\n  \"error\" : {\n    \"code\" : \"" + code + "\",\n    \"message\" : \"" + message +
           "\"\n  },\n  \"schema\" : 1\n}\n";
}

Request add(std::string text, bool dryRun = false) { return {Request::Add{std::move(text), dryRun}}; }

TEST(Commands, RequestAndPrintedAnswer) {
    struct {
        std::vector<std::string> arguments;
        Response answer;
        Request request;
        std::string out;
        int status = 0;
    } const cases[] = {
        // Which words are a sentence to save and which a command.
        {{"add", "now"}, {}, add("now"), ""},
        {{"ADD", "now"}, {}, add("ADD now"), ""},
        {{"now is fine"}, {}, add("now is fine"), ""},
        {{"--", "now"}, {}, add("-- now"), ""},
        {{"--dry-run", "add", "buy", "milk"}, {}, add("add buy milk", true), "\nDry run: nothing saved.\n"},
        // A reminder in no list; answers without the reminder or place fall back to the words typed.
        {{"x"}, {.reminder = reminder(3, "x")}, add("x"), "\nSaved as #3.\n"},
        {{"done", "3"}, {}, {Request::Done{"3"}}, "Done: 3\n"},
        {{"places", "remove", "home"}, {}, {Request::RemovePlace{"home"}}, "Removed home.\n"},
        {{"snooze", "3", "friday", "at", "3pm"},
         {.reminder = reminder(3, "call mom", "until Fri 15:00")},
         {Request::Snooze{"3", "friday at 3pm"}},
         "Snoozed call mom: until Fri 15:00\n"},
        {{"lists"},
         {.lists = std::vector<ListDTO>{{"a", "Work", false}, {"b", "Old stuff", true}}},
         {Request::Lists{}},
         "Work\nOld stuff  (ignored)\n"},
        {{"places", "list"},
         {},
         {Request::Places{}},
         "No places yet. Add one with `vesk places add home --at \"your address\"`.\n"},
        {{"places", "add", "office", "--here"},
         {},
         {Request::AddPlace{"office", std::nullopt, true, std::nullopt}},
         ""},
        {{"settings", "set", "Night", " off "}, {}, {Request::SetSetting{"Night", " off "}}, ""},
        // An unhealthy report ends with status 3.
        {{"doctor"},
         doctor("writeOnly"),
         {Request::Doctor{}},
         "Reminders access  writeOnly\nNotifications     allowed\nThis Mac          Desk\nWrites to         any list\n"
         "Default list      Reminders’ default\nIgnored lists     none\nReminders         4 incomplete\n"
         "Sync              off in this build\nOn-device model   unknown\nApp version       0.2.0\n",
         3},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.arguments));
        StandInHarness app;
        app.start(StandInHarness::line(c.answer));
        ProcessResult result = app.vesk(c.arguments);
        EXPECT_EQ(result.status, c.status);
        EXPECT_EQ(result.err, "");
        EXPECT_EQ(result.out, c.out);
        auto requests = app.requests();
        ASSERT_EQ(requests.size(), 1u);
        EXPECT_EQ(decodeRequest(requests[0]), c.request) << requests[0];
    }

    StandInHarness app;
    app.start(StandInHarness::line(doctor("none")));
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
        {R"({"reminders":[]})", 4, "partial", noAnswer},
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

// What vesk, the app and the test see as home is a temporary directory of the harness's.
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

}  // namespace
