#pragma once

// The real vesk-app for the benches: generated reminders in its store, and the app started
// and stopped in the private home the bench runs in.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "VeskApp/Store.h"
#include "VeskIPC/Socket.h"
#include "VeskNag/PlanTesting.h"

namespace RunningApp {

inline constexpr size_t reminderCount = 1000;
inline const char* const environment[] = {"TZ=Europe/Amsterdam", "LANG=en_US.UTF-8",
                                          "PATH=/usr/local/bin:/usr/bin:/bin"};

// What the app holds: generated reminders around `now`, as the store keeps them.
enum class Holding {
    aUsersReminders,  // dated over the next eight weeks and the three days past: some fifty due now
    halfOverdue,      // dated over a month either side: some five hundred due now
    nothingSoon,      // all on the next day, nothing snoozed or triggered: no alert within the hour
};

inline void fill(StoreData& data, Date now, Holding holding) {
    std::optional<DateComponents> nextDay;
    if (holding == Holding::nothingSoon) nextDay = PlanTesting::amsterdam().components(now.addingTimeInterval(86400 + 7200));
    auto items = PlanTesting::mixedItems(reminderCount, now, 7, nextDay, holding == Holding::halfOverdue ? 30 : 3);
    const bool quiet = holding == Holding::nothingSoon;
    for (const NagItem& item : items) {
        StoredReminder reminder;
        reminder.key = item.key;
        reminder.title = item.title;
        reminder.due = item.due;
        reminder.completed = item.isCompleted;
        reminder.list = data.defaultList;
        reminder.recurrence = item.recurrence;
        reminder.meta = ReminderMeta(item.style, false, item.firstSeen);
        reminder.meta.gate = item.gate;
        reminder.meta.deviceGate = item.deviceGate;
        reminder.meta.hideDaysBefore = item.hideDaysBefore;
        if (!quiet) {
            reminder.meta.trigger = item.trigger;
            reminder.meta.triggeredAt = item.triggeredAt;
            if (item.snoozedUntil) reminder.meta.snooze = Snooze{*item.snoozedUntil, item.due, item.due};
        }
        data.reminders[reminder.key] = reminder;
    }
}

inline std::string databaseIn(const std::string& home) { return home + "/.local/share/vesk/vesk.db"; }

inline std::vector<char*> environmentBlock() {
    std::vector<char*> env;
    for (const char* e : environment) env.push_back(const_cast<char*>(e));
    env.push_back(nullptr);
    return env;
}

// Starts the app and waits up to five seconds for its socket.
inline pid_t start() {
    pid_t pid = fork();
    if (pid == 0) {
        auto env = environmentBlock();
        freopen("/dev/null", "w", stderr);
        char* args[] = {const_cast<char*>(VESK_APP_BINARY), nullptr};
        execve(args[0], args, env.data());
        _exit(127);
    }
    for (int i = 0; i < 500 && !SocketClient::isListening(VeskSocket::defaultPath()); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return pid;
}

// Asks the app to end and waits for it; its wait status.
inline int stop(pid_t pid) {
    kill(pid, SIGTERM);
    int status = 0;
    waitpid(pid, &status, 0);
    return status;
}

}  // namespace RunningApp
