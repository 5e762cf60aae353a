#pragma once

// What the clients of load_bench saw acknowledged, and the check of it against the store.
#include <algorithm>
#include <chrono>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "VeskApp/Store.h"

namespace LoadCheck {

using Clock = std::chrono::steady_clock;

// A reminder one client added, and what happened to it after, all acknowledged by the app.
struct Added {
    enum class Fate { open, completed, deleted, unknown };  // unknown: a later request of it failed
    std::string key;
    std::string title;
    Fate fate = Fate::open;
    std::optional<Date> snoozedFrom, snoozedTo;  // the window in which its last snooze must end
};

struct SettingChange {
    NagSettings::Field field;
    int64_t value = 0;
    Clock::time_point sent, acknowledged;
};

inline bool snoozeHolds(const StoredReminder& stored, const Added& added) {
    if (!added.snoozedFrom) return true;
    if (!stored.meta.snooze) return false;
    // The app reads the same clock a moment later; a millisecond covers the rounding.
    const double until = stored.meta.snooze->until.seconds;
    return until >= added.snoozedFrom->seconds - 1e-3 && until <= added.snoozedTo->seconds + 1e-3;
}

// Failures of one client's added reminders against the store; their keys go into `known`.
inline void checkAdded(const std::vector<Added>& added, const StoreData& saved, std::set<std::string>& known,
                       std::vector<std::string>& failures) {
    using Fate = Added::Fate;
    for (const Added& reminder : added) {
        known.insert(reminder.key);
        auto found = saved.reminders.find(reminder.key);
        const StoredReminder* stored = found == saved.reminders.end() ? nullptr : &found->second;
        const std::string name = "\u201c" + reminder.title + "\u201d (" + reminder.key + ")";
        if (reminder.fate == Fate::deleted && stored) failures.push_back(name + " was deleted but is in the store");
        if (reminder.fate == Fate::deleted || reminder.fate == Fate::unknown) continue;
        if (!stored) {
            failures.push_back(name + " was added but is not in the store");
        } else if (reminder.fate == Fate::completed && !stored->completed) {
            failures.push_back(name + " was completed but is open");
        } else if (reminder.fate == Fate::open && stored->completed) {
            failures.push_back(name + " is completed, which no one asked for");
        } else if (stored->title != reminder.title) {
            failures.push_back(name + " is stored as \u201c" + stored->title + "\u201d");
        } else if (reminder.fate == Fate::open && !snoozeHolds(*stored, reminder)) {
            failures.push_back(name + " lost its snooze");
        }
    }
}

// A setting ends with the value of a change that none of the others surely followed: one
// sent after it was acknowledged came later; changes that overlapped may come in any order.
inline void checkSettings(const std::vector<SettingChange>& changes, const NagSettings& initial,
                          const NagSettings& saved, std::vector<std::string>& failures) {
    for (NagSettings::Field field : NagSettings::allFields()) {
        Clock::time_point lastSent;
        for (const SettingChange& change : changes)
            if (change.field == field) lastSent = std::max(lastSent, change.sent);
        std::set<int64_t> possible;
        for (const SettingChange& change : changes)
            if (change.field == field && change.acknowledged >= lastSent) possible.insert(change.value);
        if (possible.empty()) possible.insert(initial.get(field));
        if (!possible.count(saved.get(field)))
            failures.push_back(std::string("setting ") + NagSettings::rawValue(field) + " is " +
                               std::to_string(saved.get(field)) + ", which no last change set");
    }
}

// The initial reminders as they were, and nothing else beside those in `known`.
inline void checkOthers(const StoreData& initial, const StoreData& saved, const std::set<std::string>& known,
                        std::vector<std::string>& failures) {
    for (const auto& [key, reminder] : initial.reminders) {
        auto found = saved.reminders.find(key);
        if (found == saved.reminders.end())
            failures.push_back("initial reminder " + key + " is gone");
        else if (found->second.completed != reminder.completed)
            failures.push_back("initial reminder " + key + " changed state");
    }
    for (const auto& [key, reminder] : saved.reminders)
        if (!initial.reminders.count(key) && !known.count(key))
            failures.push_back("\u201c" + reminder.title + "\u201d (" + key + ") is in the store, but no one added it");
}

}  // namespace LoadCheck
