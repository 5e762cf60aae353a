// Desktop notifications as the user sees them: vesk-app on a private session bus, where
// vesk-notifyd plays the desktop's notification server and records every Notify.
#include <gtest/gtest.h>
#include <time.h>

#include <algorithm>
#include <map>
#include <set>
#include <sstream>
#include <thread>

#include "AppHarness.h"
#include "PrivateBus.h"

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace {

// One Notify as vesk-notifyd records it: its fields, in the order of `field`.
using Shown = std::vector<std::string>;
namespace field {
enum { id, replaces, app, summary, body, actions, urgency, sound, expire, count };
}

const Shown* find(const std::vector<Shown>& all, const std::string& summary) {
    auto found = std::find_if(all.begin(), all.end(), [&](const Shown& s) { return s[field::summary] == summary; });
    return found == all.end() ? nullptr : &*found;
}

// The CPU time, user and system, that process `pid` has used, in seconds.
double cpuSeconds(pid_t pid) {
    clockid_t clock;
    timespec used{};
    if (clock_getcpuclockid(pid, &clock) != 0 || clock_gettime(clock, &used) != 0) return -1;
    return double(used.tv_sec) + double(used.tv_nsec) / 1e9;
}

}  // namespace

class Notifications : public testing::Test {
protected:
    Notifications() {
        app.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.address();
        bus.startServer();
        app.moment = "2026-11-18 09:59:57";
    }
    ~Notifications() override { app.stop(); }  // while its bus is still there

    // Starts the app and remembers when: its clock reads app.moment then.
    void start() {
        started_ = Clock::now();
        app.start();
    }
    void sleepUntil(Clock::duration sinceStart) const { std::this_thread::sleep_until(started_ + sinceStart); }

    void vesk(const std::vector<std::string>& arguments) {
        ProcessResult result = app.vesk(arguments);
        EXPECT_EQ(result.status, 0) << arguments[0] << ": " << result.err;
    }
    // Reminders of the same minute alert together.
    void add(const std::vector<std::string>& sentences) {
        vesk({"settings", "set", "stagger", "0"});
        for (const auto& sentence : sentences) vesk({sentence});
    }

    // Adds reminders at 9:50 to an app that is then stopped until 9:59:57. Started again, it
    // owes what came due meanwhile at once, and what comes due at 10:00 three seconds later.
    void addThenRestartBefore10(const std::vector<std::string>& sentences) {
        app.moment = "2026-11-18 09:50:00";
        start();
        add(sentences);
        app.stop();
        app.moment = "2026-11-18 09:59:57";
        start();
    }

    std::vector<Shown> shown() const {
        std::vector<Shown> all;
        for (const auto& line : readLines(log_)) {
            std::istringstream in(line);
            all.emplace_back();
            for (std::string value; std::getline(in, value, '\t');) all.back().push_back(value);
            all.back().resize(field::count);
        }
        return all;
    }
    // What was shown once `count` notifications are, or after 6 seconds regardless.
    std::vector<Shown> awaitShown(size_t count) const {
        eventually([&] { return shown().size() >= count; }, 6s);
        return shown();
    }

    AppHarness app;
    const std::string log_ = app.base() + "/shown";
    PrivateBus bus{app.base(), log_};

private:
    Clock::time_point started_;
};

// The first alert reaches a server that the bus starts only then, as many desktops do; the
// next run's clock passes 10:00 again, and the store knows the alerts went out.
TEST_F(Notifications, ArriveOnceAtTheirTimeAsTheirLevelWants) {
    const std::vector<Shown> expected = {
        {"", "0", "Vesk", "call the dentist", "due now · repeat every 1 min until done",
         "done,Done,snooze,Snooze till tomorrow", "1", "", "-1"},
        {"", "0", "Vesk", "pay rent", "due now · alarm", "done,Done,snooze,Snooze till tomorrow", "2",
         "alarm-clock-elapsed", "0"},
    };
    bus.endServer();
    start();
    add({"call the dentist at 10, nag me every minute", "pay rent at 10, alarm"});
    const std::vector<pid_t> pids = processesOf(app.appPath());
    ASSERT_EQ(pids.size(), 1u);
    const double cpuBefore = cpuSeconds(pids[0]);

    sleepUntil(2500ms);
    EXPECT_EQ(shown().size(), 0u) << "shown before 10:00";
    std::vector<Shown> all = awaitShown(expected.size());
    // Idle until 10:00, the app sleeps: a loop that spins would have burnt seconds by now.
    EXPECT_LT(cpuSeconds(pids[0]) - cpuBefore, 0.3);
    ASSERT_EQ(all.size(), expected.size());
    for (Shown want : expected) {
        const Shown* got = find(all, want[field::summary]);
        ASSERT_TRUE(got) << want[field::summary];
        want[field::id] = (*got)[field::id];
        EXPECT_EQ(*got, want);
    }
    app.stop();
    app.moment = "2026-11-18 09:59:59";
    start();
    sleepUntil(2500ms);
    EXPECT_EQ(shown().size(), expected.size());
}

TEST_F(Notifications, MissedAlertsGoOutOnceAndTheNextReplacesThem) {
    addThenRestartBefore10(
        {"call the dentist at 9:51, nag me every minute", "water the plants at 9:52, nag me every 2 minutes"});
    sleepUntil(2s);
    const std::vector<Shown> owed = shown();
    ASSERT_EQ(owed.size(), 2u) << "one alert of each reminder, however many it missed";
    std::vector<Shown> all = awaitShown(4);
    ASSERT_EQ(all.size(), 4u);
    for (const Shown& next : {all[2], all[3]}) {
        const Shown* before = find(owed, next[field::summary]);
        ASSERT_TRUE(before) << testing::PrintToString(next);
        EXPECT_EQ((*before)[field::replaces], "0");
        EXPECT_EQ(next[field::replaces], (*before)[field::id]);
        EXPECT_EQ(next[field::id], (*before)[field::id]);
    }
}

TEST_F(Notifications, ActionsChangeTheStoreAndEndTheNagging) {
    addThenRestartBefore10({"call the dentist at 9:51, nag me every minute",
                            "water the plants at 9:51, nag me every minute",
                            "stretch at 9:51 every day, nag me every minute"});
    const std::map<std::string, std::string> clicks = {
        {"call the dentist", "done"}, {"water the plants", "snooze"}, {"stretch", "done"}};
    std::vector<Shown> all = awaitShown(clicks.size());
    ASSERT_EQ(all.size(), clicks.size());
    for (const Shown& one : all) EXPECT_EQ(bus.invoke(std::stoul(one[field::id]), clicks.at(one[field::summary])), "");

    // Done ends the first; Snooze puts the second off until tomorrow morning; Done moves
    // the daily one on to tomorrow.
    const std::string later =
        "1  water the plants\n   Thu, Nov 19 at 9:00 AM · repeat every 1 min until done\n"
        "2  stretch\n   Thu, Nov 19 at 9:51 AM · repeat every 1 min until done\n";
    EXPECT_TRUE(eventually([&] { return app.vesk({"later"}).out == later; }, 3s)) << app.vesk({"later"}).out;
    EXPECT_EQ(app.vesk({"now"}).out, "Nothing here.\n");
    sleepUntil(4s);
    EXPECT_EQ(shown().size(), clicks.size()) << "shown again at 10:00";
}

// Done or put off in the terminal, a reminder's notification leaves the desktop; the rest stay.
TEST_F(Notifications, WhatIsDealtWithElsewhereLeavesTheDesktop) {
    addThenRestartBefore10({"call the dentist at 9:51, nag me every minute",
                            "water the plants at 9:51, nag me every minute", "stretch at 9:51, nag me every minute"});
    std::map<std::string, std::string> ids;
    for (const Shown& one : awaitShown(3)) ids[one[field::summary]] = one[field::id];
    vesk({"done", "dentist"});
    vesk({"snooze", "plants", "2h"});
    EXPECT_TRUE(eventually([&] { return readLines(log_ + ".closed").size() >= 2; }, 3s));
    const std::vector<std::string> closed = readLines(log_ + ".closed");
    EXPECT_EQ(std::multiset<std::string>(closed.begin(), closed.end()),
              (std::multiset<std::string>{ids["call the dentist"], ids["water the plants"]}));
}
