// vesk against the real vesk-app: every request from the command line to the store and back.
#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <fstream>

#include "AppHarness.h"
#include "Platform/Version.h"
#include "VeskIPC/Socket.h"

namespace {

// One command and all it should print, ids of the store shown as <id>.
struct Step {
    std::vector<std::string> arguments;
    std::string out;
    int status = 0;
    std::string err{};
};

// Ids are random UUIDs; the rest of a JSON answer compares as it stands.
std::string masked(std::string text) {
    for (size_t at = 0; at + 36 <= text.size(); ++at) {
        bool uuid = true;
        for (size_t i = 0; i < 36 && uuid; ++i) {
            const unsigned char c = text[at + i];
            uuid = i == 8 || i == 13 || i == 18 || i == 23 ? c == '-' : std::isxdigit(c) && !std::isupper(c);
        }
        if (uuid) text.replace(at, 36, "<id>");
    }
    return text;
}

// Runs the steps in order against one store, each on what the ones before left.
void run(const AppHarness& app, const std::vector<Step>& steps) {
    for (const auto& step : steps) {
        std::string shown = "vesk";
        for (const auto& argument : step.arguments) shown += " [" + argument + "]";
        SCOPED_TRACE(shown);
        ProcessResult result = app.vesk(step.arguments);
        EXPECT_EQ(masked(result.out), step.out);
        EXPECT_EQ(result.err, step.err);
        EXPECT_EQ(result.status, step.status);
    }
}

void add(const AppHarness& app, const std::vector<std::string>& sentences) {
    for (const auto& sentence : sentences) ASSERT_EQ(app.vesk({sentence}).status, 0) << sentence;
}

// A numbered row of `vesk now` or `vesk later`.
std::string row(int number, const std::string& title, const std::string& when) {
    return std::to_string(number) + "  " + title + "\n   " + when + " \u00b7 repeat until done\n";
}

std::string settings(int repeat) {
    return "repeat          " + std::to_string(repeat) +
           " min   repeat until done, when the words give no interval\n"
           "nag             15 min   “nag me” with no number\n"
           "stagger         10 min   between alerts due together\n"
           "alarm-repeat    9 min   a stopped alarm rings again\n"
           "date-only-hour  9   when a date-only reminder alerts\n"
           "night           22:00-07:00   escalation stops at Time Sensitive\n";
}

std::string report(const std::string& access, const std::string& defaultList, int reminders) {
    return "Reminders access  " + access + "\nNotifications     unavailable\nThis Mac          Desk\n" +
           "Writes to         any list\nDefault list      " + defaultList + "\nIgnored lists     none\n" +
           "Reminders         " + std::to_string(reminders) + " incomplete\nSync              off in this build\n" +
           "On-device model   off\nApp version       " + veskVersion + "\n";
}

// The device's name in the doctor's report, rather than the host's.
void nameDevice(const AppHarness& app) {
    std::filesystem::create_directories(app.home() + "/.config/vesk");
    writeFile(app.home() + "/.config/vesk/config", "device-name = Desk\n");
}

TEST(App, AddReadsTheSentenceAndSaves) {
    AppHarness app;
    run(app,
        {
            {{"call", "the", "dentist", "at", "11"},
             "what   call the dentist\nwhen   Wed, Nov 18 at 11:00 AM\nhow    repeat until done\n\n"
             "Saved as #1 in Reminders.\n"},
            {{"buy milk at 4pm list:Errands"},
             "what   buy milk\nwhen   Wed, Nov 18 at 4:00 PM\nhow    repeat until done\nlist   Errands\n\n"
             "Saved as #2 in Errands.\n"},
            {{"pack the gym bag at 2pm only at the gym"},
             "what   pack the gym bag\nwhen   Wed, Nov 18 at 2:00 PM\nhow    repeat until done\ngate   only at gym\n\n"
             "Saved as #2 in Reminders.\n"},
            {{"call the plumber", "--dry-run"},
             "what   call the plumber\nwhen   next hour\nhow    repeat until done\n\nDry run: nothing saved.\n"},
            {{"at", "9"}, "", 1, "vesk: Vesk found nothing to remind you of in “at 9”.\n"},
            {{"later"},
             row(1, "call the dentist", "Wed, Nov 18 at 11:00 AM") +
                 row(2, "pack the gym bag", "Wed, Nov 18 at 2:00 PM") + row(3, "buy milk", "Wed, Nov 18 at 4:00 PM")},
            {{"lists"}, "Errands\nReminders\n"},
        });
}

// References by number, title and id; a repeating reminder stays after done, with its next
// date; a new app reads from the store what the last one left.
TEST(App, ListDoneSnoozeAndDelete) {
    AppHarness app;
    add(app, {"call mom today at 9am", "call dad at 11", "take vitamins every day at 18", "pay rent tomorrow at 9"});
    run(app, {
                 {{"now"}, row(1, "call mom", "due 1 hour ago")},
                 {{"later"},
                  row(2, "call dad", "Wed, Nov 18 at 11:00 AM") + row(3, "take vitamins", "Wed, Nov 18 at 6:00 PM") +
                      row(4, "pay rent", "Thu, Nov 19 at 9:00 AM")},
             });
    auto listed = decodeResponse(app.vesk({"later", "--json"}).out);
    ASSERT_TRUE(listed && listed->reminders && listed->reminders->size() == 3);
    const std::string rent = listed->reminders->at(2).id;
    run(app,
        {
            {{"done", "1"}, "Done: call mom\n"},
            {{"done", "VITAMINS"}, "Done: take vitamins\n"},
            {{"snooze", "dad", "2h"}, "Snoozed call dad: Wed, Nov 18 at 12:00 PM · repeat until done\n"},
            {{"snooze", "rent", "whenever"},
             "",
             1,
             "vesk: Vesk can't read “whenever” as a time to come back. Try 15m, 2h, tonight, tomorrow or friday at "
             "3pm.\n"},
            {{"delete", rent}, "Deleted: pay rent\n"},
            {{"now"}, "Nothing here.\n"},
            {{"later"},
             row(1, "call dad", "Wed, Nov 18 at 12:00 PM") + row(2, "take vitamins", "Thu, Nov 19 at 6:00 PM")},
        });
    const std::string left = app.vesk({"later", "--json"}).out;
    app.stop();
    EXPECT_EQ(app.vesk({"later", "--json"}).out, left);
}

TEST(App, PlacesListsSettingsAndDoctor) {
    AppHarness app;
    nameDevice(app);
    run(app,
        {
            {{"places"}, "No places yet. Add one with `vesk places add home --at \"your address\"`.\n"},
            {{"places", "add", "home", "--at", "52.37022, 4.89517"}, "Saved home: 52.37022, 4.89517 (100 m)\n"},
            {{"places", "add", "gym", "--at", "52.3, 4.9", "--radius", "80"}, "Saved gym: 52.30000, 4.90000 (80 m)\n"},
            {{"feed the cat when I get home"},
             "what   feed the cat\nhow    repeat until done\nwhere  arrive home\n\nSaved as #1 in Reminders.\n"},
            {{"places"}, "gym  52.30000, 4.90000 (80 m)  0 reminders\nhome  52.37022, 4.89517 (100 m)  1 reminder\n"},
            {{"places", "remove", "gym"}, "Removed gym.\n"},
            {{"places", "remove", "gym"}, "", 2, "vesk: No place is called “gym”. `vesk places` shows them.\n"},
            {{"places"}, "home  52.37022, 4.89517 (100 m)  1 reminder\n"},
            {{"settings"}, settings(60)},
            {{"settings", "set", "repeat", "20"}, settings(20)},
            {{"doctor"}, report("full", "Reminders", 1)},
        });
}

// A file that is no database is reported and never written to.
TEST(App, BrokenStoreIsReportedAndLeftAlone) {
    AppHarness app;
    nameDevice(app);
    const std::string garbage = "\x13\x37 not a database, only bytes\n";
    std::filesystem::create_directories(app.dataDirectory());
    writeFile(app.dataDirectory() + "/vesk.db", garbage);
    const std::string path = VeskSocket::homeDirectory() + "/.local/share/vesk/vesk.db";
    run(app, {
                 {{"doctor"}, report("unavailable", "Reminders’ default", 0), 3},
                 {{"now"}, "", 3, "vesk: Vesk can't use its store " + path + ": file is not a database.\n"},
             });
    app.stop();
    std::ifstream file(app.dataDirectory() + "/vesk.db", std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), garbage);
}

// Nothing runs until the first command; then one app serves and a second one refuses.
TEST(App, LaunchedOnDemandAndAlone) {
    AppHarness app;
    EXPECT_FALSE(SocketClient::isListening(VeskSocket::defaultPath()));
    run(app, {{{"lists"}, "Reminders\n"}});
    EXPECT_TRUE(SocketClient::isListening(VeskSocket::defaultPath()));

    ProcessResult second = app.app({});
    EXPECT_EQ(second.status, 1);
    EXPECT_EQ(second.out, "");
    EXPECT_EQ(second.err, "vesk-app: another vesk-app already runs for this user\n");
    run(app, {{{"lists"}, "Reminders\n"}});
}

TEST(App, PlanReadsTheStoreWithOrWithoutTheDaemon) {
    const std::string json = R"([
  {
    "alarmID" : "<id>",
    "fireDate" : "2026-11-18T10:00:00Z",
    "id" : "<id>#0",
    "key" : "<id>",
    "level" : "notification",
    "ordinal" : 0,
    "title" : "call dad"
  }
]
)";
    for (bool running : {true, false}) {
        SCOPED_TRACE(running ? "daemon running" : "daemon stopped");
        AppHarness app;
        EXPECT_EQ(app.app({"plan"}).out, "Nothing planned in the next 24 hours.\n");
        EXPECT_FALSE(std::filesystem::exists(app.dataDirectory() + "/vesk.db"));
        add(app, {"call dad at 11 just once"});
        if (!running) app.stop();

        ProcessResult text = app.app({"plan"});
        EXPECT_EQ(text.status, 0) << text.err;
        EXPECT_EQ(text.out, "Wed, Nov 18 at 11:00 AM   notification   call dad\n");
        ProcessResult listed = app.app({"plan", "--json"});
        EXPECT_EQ(listed.status, 0) << listed.err;
        EXPECT_EQ(masked(listed.out), json);
        EXPECT_EQ(SocketClient::isListening(VeskSocket::defaultPath()), running);
    }
    AppHarness app;
    ProcessResult refused = app.app({"plan", "--hours", "0"});
    EXPECT_EQ(refused.status, 64);
    EXPECT_EQ(refused.out, "");
    EXPECT_TRUE(refused.err.starts_with("Error: --hours takes a whole number from 1 to 8784.\n")) << refused.err;
}

}  // namespace
