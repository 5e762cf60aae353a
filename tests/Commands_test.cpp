// Every command against a stand-in app: the request it sends, what it prints, its status.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <fstream>

#include "StandInHarness.h"
#include "VeskIPC/Socket.h"

// Responses are written with designated initializers; the fields left out keep their defaults.
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"

namespace {

ReminderDTO reminder(int64_t number, std::string title, std::string detail = "", std::optional<std::string> list = {}) {
    return {.number = number, .title = std::move(title), .list = std::move(list), .detail = std::move(detail)};
}

PlaceDTO place(std::string name, std::optional<std::string> address, int64_t reminders) {
    return {"p-" + name, name, 52.370216, 4.895168, 150, std::move(address), reminders};
}

Response doctor(std::string access, std::string notifications) {
    return {.doctor = DoctorDTO{std::move(access), std::move(notifications), false, "any-list", std::nullopt, {}, 4,
                                "Desk", "0.2.0", std::nullopt, std::nullopt}};
}

std::string report(const std::string& access, const std::string& notifications) {
    return "Reminders access  " + access + "\nNotifications     " + notifications +
           "\nThis Mac          Desk\nWrites to         any list\nDefault list      Reminders’ default\n"
           "Ignored lists     none\nReminders         4 incomplete\nSync              off in this build\n"
           "On-device model   unknown\nApp version       0.2.0\n";
}

std::string jsonError(const std::string& code, const std::string& message) {
    return "{\n  \"error\" : {\n    \"code\" : \"" + code + "\",\n    \"message\" : \"" + message +
           "\"\n  },\n  \"schema\" : 1\n}\n";
}

std::string shown(const std::vector<std::string>& arguments) {
    std::string text = "vesk";
    for (const auto& argument : arguments) text += " [" + argument + "]";
    return text;
}

Request add(std::string text, bool dryRun = false) { return {Request::Add{std::move(text), dryRun}}; }

TEST(Commands, RequestAndPrintedAnswer) {
    ParseOutput dentist;
    dentist.title = "call the dentist";
    dentist.due = "2026-11-18T21:00";
    dentist.style = "repeat";
    dentist.repeatIntervalSeconds = 900;
    const std::string summary =
        "what   call the dentist\nwhen   Wed, Nov 18 at 9:00 PM\nhow    repeat every 15 min until done\n";
    const std::string noPlaces = "No places yet. Add one with `vesk places add home --at \"your address\"`.\n";
    const Request now{Request::List{Request::Section::now}};
    const SettingsDTO values{30, 15, 10, 9, 9, "off"};
    const std::string table =
        "repeat          30 min   repeat until done, when the words give no interval\n"
        "nag             15 min   “nag me” with no number\n"
        "stagger         10 min   between alerts due together\n"
        "alarm-repeat    9 min   a stopped alarm rings again\n"
        "date-only-hour  9   when a date-only reminder alerts\n"
        "night           off   escalation stops at Time Sensitive\n";
    struct {
        std::vector<std::string> arguments;
        Response answer;
        Request request;
        std::string out;
        int status = 0;
    } const cases[] = {
        {{"call the dentist at 9,", "nag", "me", "every", "15", "minutes"},
         {.reminder = reminder(12, "call the dentist", "", "Work"), .parse = dentist},
         add("call the dentist at 9, nag me every 15 minutes"), summary + "\nSaved as #12 in Work.\n"},
        {{"x", "--dry-run"}, {.parse = dentist}, add("x", true), summary + "\nDry run: nothing saved.\n"},
        {{"x"}, {}, add("x"), ""},
        {{"x"}, {.reminder = reminder(3, "x")}, add("x"), "\nSaved as #3.\n"},
        {{"add", "now"}, {}, add("now"), ""},
        {{"ADD", "now"}, {}, add("ADD now"), ""},
        {{"--dry-run", "add", "buy", "milk"}, {}, add("add buy milk", true), "\nDry run: nothing saved.\n"},
        {{"now is fine"}, {}, add("now is fine"), ""},
        {{"--", "now"}, {}, add("-- now"), ""},
        {{"now"},
         {.reminders = std::vector{reminder(9, "call mom", "due 10:00 · every 15 min"), reminder(10, "water plants")}},
         now, " 9  call mom\n    due 10:00 · every 15 min\n10  water plants\n    \n"},
        {{"now"}, {}, now, "Nothing here.\n"},
        {{"now", "--json"}, {}, now, "{\n  \"schema\" : 1\n}\n"},
        {{"later", "--json"}, {.reminders = std::vector<ReminderDTO>{}}, {Request::List{Request::Section::later}},
         "{\n  \"reminders\" : [\n\n  ],\n  \"schema\" : 1\n}\n"},
        {{"done", "3"}, {.reminder = reminder(3, "call mom", "done")}, {Request::Done{"3"}}, "Done: call mom\n"},
        {{"done", "3"}, {}, {Request::Done{"3"}}, "Done: 3\n"},
        {{"delete", "buy milk"}, {.reminder = reminder(4, "Buy milk")}, {Request::Delete{"buy milk"}},
         "Deleted: Buy milk\n"},
        {{"snooze", "3", "friday", "at", "3pm"}, {.reminder = reminder(3, "call mom", "until Fri 15:00")},
         {Request::Snooze{"3", "friday at 3pm"}}, "Snoozed call mom: until Fri 15:00\n"},
        {{"lists"}, {.lists = std::vector<ListDTO>{{"a", "Work", false}, {"b", "Old stuff", true}}}, {Request::Lists{}},
         "Work\nOld stuff  (ignored)\n"},
        {{"places", "list"}, {.places = std::vector<PlaceDTO>{}}, {Request::Places{}}, noPlaces},
        {{"places"}, {}, {Request::Places{}}, noPlaces},
        {{"places"}, {.places = std::vector{place("home", "1 Main St", 1), place("gym", std::nullopt, 2)}},
         {Request::Places{}}, "home  1 Main St (150 m)  1 reminder\ngym  52.37022, 4.89517 (150 m)  2 reminders\n"},
        {{"places", "add", "home", "--at", "1 Main St", "--radius", "150"},
         {.places = std::vector{place("home", "1 Main St", 0)}},
         {Request::AddPlace{"home", "1 Main St", false, 150.0}}, "Saved home: 1 Main St (150 m)\n"},
        {{"places", "add", "office", "--here"}, {}, {Request::AddPlace{"office", std::nullopt, true, std::nullopt}},
         ""},
        {{"places", "remove", "home"}, {}, {Request::RemovePlace{"home"}}, "Removed home.\n"},
        {{"places", "remove", "home"}, {.places = std::vector{place("Home", "", 0)}}, {Request::RemovePlace{"home"}},
         "Removed Home.\n"},
        {{"settings"}, {.settings = values}, {Request::Settings{}}, table},
        {{"settings", "set", "repeat", "30"}, {.settings = values}, {Request::SetSetting{"repeat", "30"}}, table},
        {{"settings", "set", "Night", " off "}, {}, {Request::SetSetting{"Night", " off "}}, ""},
        {{"doctor"}, doctor("full", "unknown"), {Request::Doctor{}}, report("full", "unknown")},
        {{"doctor"}, doctor("writeOnly", "allowed"), {Request::Doctor{}}, report("writeOnly", "allowed"), 3},
        {{"doctor"}, doctor("full", "denied"), {Request::Doctor{}}, report("full", "denied"), 3},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(shown(c.arguments));
        StandInHarness app;
        app.start({StandInHarness::line(c.answer)});
        ProcessResult result = app.vesk(c.arguments);
        EXPECT_EQ(result.status, c.status);
        EXPECT_EQ(result.err, "");
        EXPECT_EQ(result.out, c.out);
        auto requests = app.requests();
        ASSERT_EQ(requests.size(), 1u);
        EXPECT_EQ(decodeRequest(requests[0]), c.request) << requests[0];
    }

    StandInHarness app;
    app.start({StandInHarness::line(doctor("none", "allowed"))});
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
        std::string line;
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
        SCOPED_TRACE(c.line);
        StandInHarness app;
        app.start({c.line});
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
    app.start({StandInHarness::line({.lists = std::vector<ListDTO>{{"a", "Work", false}}})},
              VeskSocket::candidatePaths()[1]);
    ProcessResult result = app.vesk({"lists"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "Work\n");
    EXPECT_FALSE(std::filesystem::exists(VeskSocket::defaultPath()));
}

TEST(Commands, LaunchesVeskAppBesideItOrOnPath) {
    for (bool beside : {true, false}) {
        SCOPED_TRACE(beside ? "beside" : "on PATH");
        StandInHarness app;
        app.script({StandInHarness::line({.reminder = reminder(5, "call mom")})});
        beside ? app.installBesideVesk() : app.installOnPath();
        auto begin = std::chrono::steady_clock::now();
        ProcessResult result = app.vesk({"done", "5"});
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_EQ(result.out, "Done: call mom\n");
        ASSERT_EQ(app.requests().size(), 1u);
        EXPECT_EQ(decodeRequest(app.requests()[0]), (Request{Request::Done{"5"}}));
        EXPECT_TRUE(SocketClient::isListening(VeskSocket::defaultPath()));
    }
}

// Nobody listens and the launch does nothing: after the wait the request goes out once more
// and fails, so each run takes the whole 15 seconds.
TEST(Commands, UnreachableAfterAFailedLaunch) {
    StandInHarness app;
    std::string bin = app.home() + "/failing-bin", log = app.home() + "/launches";
    std::filesystem::create_directory(bin);
    std::ofstream(bin + "/vesk-app") << "#!/bin/sh\necho \"$@\" >> '" << log << "'\necho noise >&2\nexit 1\n";
    chmod((bin + "/vesk-app").c_str(), 0755);
    app.environment["PATH"] = bin + ":" + app.environment.at("PATH");
    const std::string message = "Couldn't reach the Vesk app. Is it installed on this Mac?";

    ProcessResult words = app.vesk({"now"});
    EXPECT_EQ(words.status, 5);
    EXPECT_EQ(words.out, "");
    EXPECT_EQ(words.err, "vesk: " + message + "\n");
    std::ifstream launches(log);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(launches), {}), "--background\n");

    ProcessResult json = app.vesk({"lists", "--json"});
    EXPECT_EQ(json.status, 5);
    EXPECT_EQ(json.err, "");
    EXPECT_EQ(json.out, jsonError("unreachable", message));
}

TEST(Commands, RefusalsSendNothing) {
    StandInHarness app;
    app.start({});
    for (const auto& arguments : std::vector<std::vector<std::string>>{
             {"--json", "now"}, {"Now"}, {" "}, {"places", "add", "home"}, {"snooze", "3"}})
        EXPECT_NE(app.vesk(arguments).status, 0) << shown(arguments);
    EXPECT_TRUE(app.requests().empty());
}

}  // namespace
