// Every command against a stand-in app: the request it sends, what it prints, its status.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <fstream>

#include "StandInHarness.h"
#include "VeskIPC/Socket.h"

namespace {

ReminderDTO reminder(int64_t number, std::string title, std::string detail, std::optional<std::string> list = {}) {
    ReminderDTO dto;
    dto.number = number;
    dto.id = "x-coredata://" + std::to_string(number);
    dto.title = std::move(title);
    dto.list = std::move(list);
    dto.section = "now";
    dto.status = "due";
    dto.style = "repeat";
    dto.detail = std::move(detail);
    return dto;
}

ParseOutput dentist() {
    ParseOutput output;
    output.title = "call the dentist";
    output.due = "2026-11-18T21:00";
    output.style = "repeat";
    output.repeatIntervalSeconds = 900;
    return output;
}

const std::string dentistSummary =
    "what   call the dentist\nwhen   Wed, Nov 18 at 9:00 PM\nhow    repeat every 15 min until done\n";

PlaceDTO place(std::string name, std::optional<std::string> address, int64_t reminders) {
    return {"p-" + name, name, 52.370216, 4.895168, 150, std::move(address), reminders};
}

DoctorDTO doctorReport(std::string access, std::string notifications) {
    return {std::move(access), std::move(notifications), false, "any-list", std::nullopt, {}, 4, "Desk", "0.2.0",
            std::nullopt, std::nullopt};
}

const std::string deskReport =
    "Reminders access  %s\n"
    "Notifications     %s\n"
    "This Mac          Desk\n"
    "Writes to         any list\n"
    "Default list      Reminders’ default\n"
    "Ignored lists     none\n"
    "Reminders         4 incomplete\n"
    "Sync              off in this build\n"
    "On-device model   unknown\n"
    "App version       0.2.0\n";

std::string report(const std::string& access, const std::string& notifications) {
    std::string text = deskReport;
    text.replace(text.find("%s"), 2, access);
    text.replace(text.find("%s"), 2, notifications);
    return text;
}

struct Exchange {
    std::vector<std::string> arguments;
    Response answer;
    Request request;
    std::string out;
    int status = 0;
};

std::string shown(const std::vector<std::string>& arguments) {
    std::string text = "vesk";
    for (const auto& argument : arguments) text += " [" + argument + "]";
    return text;
}

void expectExchange(const Exchange& exchange) {
    SCOPED_TRACE(shown(exchange.arguments));
    StandInHarness app;
    app.start({StandInHarness::line(exchange.answer)});
    ProcessResult result = app.vesk(exchange.arguments);
    EXPECT_EQ(result.status, exchange.status);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out, exchange.out);
    auto requests = app.requests();
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_EQ(decodeRequest(requests[0]), exchange.request) << requests[0];
}

template <class... Fields>
Response with(Fields... fields) {
    Response response;
    (fields(response), ...);
    return response;
}
auto reminders(std::vector<ReminderDTO> value) { return [=](Response& r) { r.reminders = value; }; }
auto one(ReminderDTO value) { return [=](Response& r) { r.reminder = value; }; }
auto parsed(ParseOutput value) { return [=](Response& r) { r.parse = value; }; }
auto lists(std::vector<ListDTO> value) { return [=](Response& r) { r.lists = value; }; }
auto places(std::vector<PlaceDTO> value) { return [=](Response& r) { r.places = value; }; }
auto settings(SettingsDTO value) { return [=](Response& r) { r.settings = value; }; }
auto doctor(DoctorDTO value) { return [=](Response& r) { r.doctor = value; }; }

Request add(std::string text, bool dryRun = false) { return {Request::Add{std::move(text), dryRun}}; }

TEST(Commands, Add) {
    const Exchange exchanges[] = {
        {{"call the dentist at 9,", "nag", "me", "every", "15", "minutes"},
         with(parsed(dentist()), one(reminder(12, "call the dentist", "", "Work"))),
         add("call the dentist at 9, nag me every 15 minutes"), dentistSummary + "\nSaved as #12 in Work.\n"},
        {{"x", "--dry-run"}, with(parsed(dentist())), add("x", true), dentistSummary + "\nDry run: nothing saved.\n"},
        {{"x"}, with(parsed(dentist())), add("x"), dentistSummary},
        {{"x"}, with(), add("x"), ""},
        {{"x"}, with(one(reminder(3, "x", ""))), add("x"), "\nSaved as #3.\n"},
        {{"add", "now"}, with(), add("now"), ""},
        {{"ADD", "now"}, with(), add("ADD now"), ""},
        {{"--dry-run", "add", "buy", "milk"}, with(), add("add buy milk", true), "\nDry run: nothing saved.\n"},
        {{"now is fine"}, with(), add("now is fine"), ""},
        {{"--", "now"}, with(), add("-- now"), ""},
        {{" padded ", "words "}, with(), add(" padded  words "), ""},
    };
    for (const auto& exchange : exchanges) expectExchange(exchange);
}

TEST(Commands, NowAndLater) {
    const Request now{Request::List{Request::Section::now}};
    const Request later{Request::List{Request::Section::later}};
    const Exchange exchanges[] = {
        {{"now"},
         with(reminders({reminder(9, "call mom", "due 10:00 · every 15 min"), reminder(10, "water plants", "")})),
         now, " 9  call mom\n    due 10:00 · every 15 min\n10  water plants\n    \n"},
        {{"now"}, with(), now, "Nothing here.\n"},
        {{"later"}, with(reminders({})), later, "Nothing here.\n"},
        {{"later", "--json"}, with(reminders({})), later, "{\n  \"reminders\" : [\n\n  ],\n  \"schema\" : 1\n}\n"},
        {{"now", "--json"}, with(), now, "{\n  \"schema\" : 1\n}\n"},
    };
    for (const auto& exchange : exchanges) expectExchange(exchange);
}

TEST(Commands, DoneDeleteSnooze) {
    const Exchange exchanges[] = {
        {{"done", "3"}, with(one(reminder(3, "call mom", "done"))), {Request::Done{"3"}}, "Done: call mom\n"},
        {{"done", "3"}, with(), {Request::Done{"3"}}, "Done: 3\n"},
        {{"delete", "buy milk"}, with(one(reminder(4, "Buy milk", ""))), {Request::Delete{"buy milk"}},
         "Deleted: Buy milk\n"},
        {{"delete", "--json", "7"}, with(), {Request::Delete{"7"}}, "{\n  \"schema\" : 1\n}\n"},
        {{"snooze", "3", "friday", "at", "3pm"}, with(one(reminder(3, "call mom", "until Fri 15:00"))),
         {Request::Snooze{"3", "friday at 3pm"}}, "Snoozed call mom: until Fri 15:00\n"},
        {{"snooze", "3", "1h"}, with(), {Request::Snooze{"3", "1h"}}, ""},
    };
    for (const auto& exchange : exchanges) expectExchange(exchange);
}

TEST(Commands, Lists) {
    const Exchange exchanges[] = {
        {{"lists"}, with(lists({{"a", "Work", false}, {"b", "Old stuff", true}})), {Request::Lists{}},
         "Work\nOld stuff  (ignored)\n"},
        {{"lists"}, with(), {Request::Lists{}}, ""},
    };
    for (const auto& exchange : exchanges) expectExchange(exchange);
}

TEST(Commands, Places) {
    const Request list{Request::Places{}};
    const Exchange exchanges[] = {
        {{"places"}, with(), list, "No places yet. Add one with `vesk places add home --at \"your address\"`.\n"},
        {{"places", "list"}, with(places({})), list,
         "No places yet. Add one with `vesk places add home --at \"your address\"`.\n"},
        {{"places"}, with(places({place("home", "1 Main St", 1), place("gym", std::nullopt, 2)})), list,
         "home  1 Main St (150 m)  1 reminder\ngym  52.37022, 4.89517 (150 m)  2 reminders\n"},
        {{"places", "add", "home", "--at", "1 Main St", "--radius", "150"}, with(places({place("home", "1 Main St", 0)})),
         {Request::AddPlace{"home", "1 Main St", false, 150.0}}, "Saved home: 1 Main St (150 m)\n"},
        {{"places", "add", "office", "--here"}, with(), {Request::AddPlace{"office", std::nullopt, true, std::nullopt}},
         ""},
        {{"places", "add", "x", "--at="}, with(), {Request::AddPlace{"x", "", false, std::nullopt}}, ""},
        {{"places", "remove", "home"}, with(), {Request::RemovePlace{"home"}}, "Removed home.\n"},
        {{"places", "remove", "home"}, with(places({place("Home", "", 0)})), {Request::RemovePlace{"home"}},
         "Removed Home.\n"},
    };
    for (const auto& exchange : exchanges) expectExchange(exchange);
}

TEST(Commands, Settings) {
    const SettingsDTO values{30, 15, 10, 9, 9, "off"};
    const std::string table =
        "repeat          30 min   repeat until done, when the words give no interval\n"
        "nag             15 min   “nag me” with no number\n"
        "stagger         10 min   between alerts due together\n"
        "alarm-repeat    9 min   a stopped alarm rings again\n"
        "date-only-hour  9   when a date-only reminder alerts\n"
        "night           off   escalation stops at Time Sensitive\n";
    const Exchange exchanges[] = {
        {{"settings"}, with(settings(values)), {Request::Settings{}}, table},
        {{"settings", "show"}, with(), {Request::Settings{}}, ""},
        {{"settings", "set", "repeat", "30"}, with(settings(values)), {Request::SetSetting{"repeat", "30"}}, table},
        {{"settings", "set", "Night", " off "}, with(), {Request::SetSetting{"Night", " off "}}, ""},
    };
    for (const auto& exchange : exchanges) expectExchange(exchange);
}

TEST(Commands, Doctor) {
    const Request request{Request::Doctor{}};
    const Exchange exchanges[] = {
        {{"doctor"}, with(doctor(doctorReport("full", "allowed"))), request, report("full", "allowed")},
        {{"doctor"}, with(doctor(doctorReport("full", "unknown"))), request, report("full", "unknown")},
        {{"doctor"}, with(doctor(doctorReport("writeOnly", "allowed"))), request, report("writeOnly", "allowed"), 3},
        {{"doctor"}, with(doctor(doctorReport("full", "denied"))), request, report("full", "denied"), 3},
        {{"doctor"}, with(), request, ""},
        {{"doctor", "--json"}, with(), request, ""},
    };
    for (const auto& exchange : exchanges) expectExchange(exchange);

    StandInHarness app;
    app.start({StandInHarness::line(with(doctor(doctorReport("none", "allowed"))))});
    ProcessResult result = app.vesk({"doctor", "--json"});
    EXPECT_EQ(result.status, 3);
    EXPECT_TRUE(result.out.starts_with("{\n  \"doctor\" : {\n")) << result.out;
    EXPECT_EQ(result.err, "");
}

TEST(Commands, AppErrorsEndWithTheirCodesStatus) {
    const std::pair<WireError::Code, int> codes[] = {{WireError::Code::invalid, 1},
                                                     {WireError::Code::notFound, 2},
                                                     {WireError::Code::permission, 3},
                                                     {WireError::Code::partial, 4},
                                                     {WireError::Code::unreachable, 5}};
    for (const auto& [code, status] : codes) {
        WireError error{code, "No reminder matches “milk”."};
        // Data beside an error is never shown.
        Response answer = with(one(reminder(1, "milk", "")));
        answer.error = error;
        StandInHarness app;
        app.start({StandInHarness::line(answer)});

        ProcessResult words = app.vesk({"done", "milk"});
        EXPECT_EQ(words.status, status);
        EXPECT_EQ(words.out, "");
        EXPECT_EQ(words.err, "vesk: No reminder matches “milk”.\n");

        ProcessResult json = app.vesk({"done", "milk", "--json"});
        EXPECT_EQ(json.status, status);
        EXPECT_EQ(json.err, "");
        EXPECT_EQ(json.out, std::string("{\n  \"error\" : {\n    \"code\" : \"") + WireError::rawValue(code) +
                                "\",\n    \"message\" : \"No reminder matches “milk”.\"\n  },\n  \"schema\" : 1\n}\n");
        EXPECT_EQ(app.requests().size(), 2u);
    }
}

TEST(Commands, NoValidAnswerIsAPartialWriteAndIsNeverResent) {
    const std::string message =
        "Vesk didn't answer. The request may have been applied; check with `vesk now` before retrying.";
    for (const char* line : {StandInHarness::garbage, StandInHarness::silent, "{\"reminders\":[]}"}) {
        SCOPED_TRACE(line);
        StandInHarness app;
        app.start({line});
        ProcessResult words = app.vesk({"call", "mom"});
        EXPECT_EQ(words.status, 4);
        EXPECT_EQ(words.out, "");
        EXPECT_EQ(words.err, "vesk: " + message + "\n");
        EXPECT_EQ(app.requests().size(), 1u);

        ProcessResult json = app.vesk({"now", "--json"});
        EXPECT_EQ(json.status, 4);
        EXPECT_EQ(json.err, "");
        EXPECT_EQ(json.out, "{\n  \"error\" : {\n    \"code\" : \"partial\",\n    \"message\" : \"" + message +
                                "\"\n  },\n  \"schema\" : 1\n}\n");
    }
}

TEST(Commands, SecondCandidateIsUsedWhenTheFirstIsSilent) {
    StandInHarness app;
    app.start({StandInHarness::line(with(lists({{"a", "Work", false}})))}, VeskSocket::candidatePaths()[1]);
    ProcessResult result = app.vesk({"lists"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "Work\n");
    EXPECT_FALSE(std::filesystem::exists(VeskSocket::defaultPath()));
}

TEST(Commands, LaunchesVeskAppBesideItOrOnPath) {
    for (bool beside : {true, false}) {
        SCOPED_TRACE(beside ? "beside" : "on PATH");
        StandInHarness app;
        app.script({StandInHarness::line(with(one(reminder(5, "call mom", ""))))});
        if (beside) {
            app.installBesideVesk();
        } else {
            app.installOnPath();
        }
        auto begin = std::chrono::steady_clock::now();
        ProcessResult result = app.vesk({"done", "5"});
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_EQ(result.out, "Done: call mom\n");
        ASSERT_EQ(app.requests().size(), 1u);
        EXPECT_EQ(decodeRequest(app.requests()[0]), (Request{Request::Done{"5"}}));
    }
}

// Nobody listens and the launch does nothing: after the wait the request goes out once more
// and fails, so these take the whole 15 seconds each.
TEST(Commands, UnreachableAfterAFailedLaunch) {
    StandInHarness app;
    std::string bin = app.home() + "/failing-bin";
    std::filesystem::create_directory(bin);
    std::string log = app.home() + "/launches";
    std::ofstream(bin + "/vesk-app") << "#!/bin/sh\necho \"$@\" >> '" << log << "'\necho noise >&2\nexit 1\n";
    chmod((bin + "/vesk-app").c_str(), 0755);
    app.environment["PATH"] = bin + ":" + app.environment.at("PATH");

    ProcessResult words = app.vesk({"now"});
    EXPECT_EQ(words.status, 5);
    EXPECT_EQ(words.out, "");
    EXPECT_EQ(words.err, "vesk: Couldn't reach the Vesk app. Is it installed on this Mac?\n");
    std::ifstream launches(log);
    std::string launched((std::istreambuf_iterator<char>(launches)), std::istreambuf_iterator<char>());
    EXPECT_EQ(launched, "--background\n");
}

TEST(Commands, UnreachableWithoutAnyAppInJson) {
    StandInHarness app;
    ProcessResult json = app.vesk({"lists", "--json"});
    EXPECT_EQ(json.status, 5);
    EXPECT_EQ(json.err, "");
    EXPECT_EQ(json.out,
              "{\n  \"error\" : {\n    \"code\" : \"unreachable\",\n    \"message\" : \"Couldn't reach the Vesk app. "
              "Is it installed on this Mac?\"\n  },\n  \"schema\" : 1\n}\n");
}

TEST(Commands, RefusalsSendNothing) {
    StandInHarness app;
    app.start({});
    for (const auto& arguments : std::vector<std::vector<std::string>>{
             {"--json", "now"}, {"Now"}, {" "}, {"places", "add", "home"}, {"snooze", "3"}}) {
        ProcessResult result = app.vesk(arguments);
        EXPECT_NE(result.status, 0) << shown(arguments);
    }
    EXPECT_TRUE(app.requests().empty());
}

}  // namespace
