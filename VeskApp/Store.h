#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "Platform/Date.h"
#include "VeskApp/Sqlite.h"
#include "VeskModel/Capture.h"
#include "VeskModel/NagSettings.h"
#include "VeskModel/ReminderMeta.h"

// One reminder as the store keeps it: its title, due date, list and recurrence in columns
// of their own, and the rest in its ReminderMeta.
struct StoredReminder {
    std::string key;  // a random UUID, never reused
    std::string title;
    std::optional<DateComponents> due;
    bool completed = false;
    std::optional<Date> completedAt;
    std::string list;  // the list's id
    std::optional<Recurrence> recurrence;
    ReminderMeta meta{Style::repeatUntilDone(), false, Date{}};

    bool operator==(const StoredReminder&) const = default;
};

struct StoredList {
    std::string id;
    std::string name;
    bool ignored = false;

    bool operator==(const StoredList&) const = default;
};

// This device's own record.
struct DeviceRecord {
    std::string id;
    std::optional<Date> lastActive;
    std::optional<Date> activeSince;

    bool operator==(const DeviceRecord&) const = default;
};

// Whether the user is inside a place, and since when: what the app last made of the position.
struct Presence {
    bool inside = false;
    Date since;

    bool operator==(const Presence&) const = default;
};

// The answer to an address search, kept so that the same search doesn't ask the service again.
struct Geocoded {
    double latitude = 0;
    double longitude = 0;
    std::string address;
    Date at;  // when the service gave it

    bool operator==(const Geocoded&) const = default;
};

// Everything the store holds.
struct StoreData {
    std::map<std::string, StoredReminder> reminders;  // by key
    std::map<std::string, StoredList> lists;          // by id
    std::string defaultList;                          // the id of the list new reminders go to
    std::map<std::string, Place> places;              // by Place::key of the name
    NagSettings settings;
    DeviceRecord device;
    std::optional<Date> deliveredUpTo;         // alerts up to this moment have gone out
    std::map<std::string, Presence> presence;  // by place key, while places are watched
    std::map<std::string, Geocoded> geocoded;  // by the search, trimmed and lower-cased

    bool operator==(const StoreData&) const = default;
};

// The reminders, lists, places, settings and state of the app in one SQLite database, with
// a copy of it all in memory that readers share. Every change is one transaction, committed
// before `change` returns: what it returned is on disk.
class Store {
public:
    static constexpr int64_t schemaVersion = 2;

    // Opens the database, creating it (and its directory) on first use. A store that can't
    // be opened stays unavailable and says why; it never changes a file it can't read.
    // Read-only, it neither creates nor changes anything.
    Store(const std::string& path, Database::Mode mode = Database::Mode::readWrite);
    ~Store();

    const std::string& path() const { return path_; }
    // Why the store can't be used, or absent while it can.
    std::optional<std::string> failure() const;

    // What the store holds now. Throws WireError (permission) while it is unavailable.
    std::shared_ptr<const StoreData> data() const;

    // Applies `change` to a copy of the data and saves what differs in one transaction;
    // returns the data as saved. Changes run one at a time. An exception from `change` is
    // let through and a failed save throws WireError (permission): either way nothing
    // changes, in memory or on disk.
    std::shared_ptr<const StoreData> change(const std::function<void(StoreData&)>& change);

private:
    void open(Database::Mode mode);
    void migrate(int64_t from);
    void writeThrough();
    std::shared_ptr<StoreData> load(int64_t version);
    void save(const StoreData& before, const StoreData& after);

    std::string path_;
    std::unique_ptr<Database> database_;
    mutable std::mutex lock_;  // guards data_ and failure_
    std::mutex writing_;       // one change at a time
    std::shared_ptr<const StoreData> data_;
    std::optional<std::string> failure_;
};
