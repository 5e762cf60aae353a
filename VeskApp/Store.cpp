#include "VeskApp/Store.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <iostream>

#include <nlohmann/json.hpp>

#include "Platform/Json.h"
#include "Platform/JsonDocument.h"
#include "Platform/Uuid.h"
#include "VeskIPC/Wire.h"

namespace {

const char* const schema = R"(
CREATE TABLE lists (id TEXT PRIMARY KEY, name TEXT NOT NULL, ignored INTEGER NOT NULL DEFAULT 0);
CREATE TABLE reminders (
    key TEXT PRIMARY KEY,
    title TEXT NOT NULL,
    due TEXT,
    completed INTEGER NOT NULL DEFAULT 0,
    completedAt REAL,
    list TEXT NOT NULL REFERENCES lists(id),
    recurrence TEXT,
    meta TEXT NOT NULL);
CREATE TABLE places (key TEXT PRIMARY KEY, place TEXT NOT NULL);
CREATE TABLE facts (name TEXT PRIMARY KEY, value TEXT NOT NULL);
)";

// What each version adds to the one before: migrations[v - 1] takes a store from v to v + 1.
const char* const migrations[] = {
    R"(
CREATE TABLE presence (key TEXT PRIMARY KEY, inside INTEGER NOT NULL, since REAL NOT NULL);
CREATE TABLE geocoded (
    search TEXT PRIMARY KEY,
    latitude REAL NOT NULL,
    longitude REAL NOT NULL,
    address TEXT NOT NULL,
    at REAL NOT NULL);
)",
};
static_assert(std::size(migrations) == Store::schemaVersion - 1);

std::string compact(const Json& json) {
    auto text = JsonText::compact(json);
    if (!text) throw WireError{WireError::Code::invalid, "Vesk can't save a value that isn't a finite number."};
    return *text;
}

// Decodes one stored JSON text with `decode`; absent when the text doesn't hold one.
template <class Decode>
auto decoded(const std::string& text, Decode decode) -> std::optional<decltype(decode(std::declval<JsonDecoder>()))> {
    auto document = JsonDocument::parse(text);
    if (!document) return std::nullopt;
    try {
        return decode(JsonDecoder(*document));
    } catch (const DecodeError&) {
        return std::nullopt;
    }
}

Json deviceJson(const DeviceRecord& device) {
    Json json = {{"id", device.id}};
    if (device.lastActive) json["lastActive"] = device.lastActive->seconds;
    if (device.activeSince) json["activeSince"] = device.activeSince->seconds;
    return json;
}

DeviceRecord deviceFromJson(const JsonDecoder& json) {
    DeviceRecord device{json["id"].string(), {}, {}};
    if (auto value = json.optional("lastActive")) device.lastActive = Date{value->number()};
    if (auto value = json.optional("activeSince")) device.activeSince = Date{value->number()};
    return device;
}

void skipped(const std::string& what) { std::cerr << "vesk-app: skipped a stored " << what << " it can't read\n"; }

// A database that is newer than this program, or not a database at all, is left alone.
std::string unusable(const std::string& path, const std::string& reason) {
    return "Vesk can't use its store " + path + ": " + reason;
}

}  // namespace

Store::Store(const std::string& path, Database::Mode mode) : path_(path) {
    try {
        open(mode);
    } catch (const SqliteError& error) {
        database_.reset();
        failure_ = unusable(path_, error.what());
    } catch (const std::filesystem::filesystem_error& error) {
        database_.reset();
        failure_ = unusable(path_, error.code().message());
    }
}

Store::~Store() = default;

std::optional<std::string> Store::failure() const {
    std::lock_guard guard(lock_);
    return failure_;
}

std::shared_ptr<const StoreData> Store::data() const {
    std::lock_guard guard(lock_);
    if (failure_) throw WireError{WireError::Code::permission, *failure_ + "."};
    return data_;
}

void Store::open(Database::Mode mode) {
    namespace fs = std::filesystem;
    bool existed = fs::exists(path_);
    if (mode == Database::Mode::readWrite && !existed) {
        fs::path directory = fs::path(path_).parent_path();
        fs::create_directories(directory);
        fs::permissions(directory, fs::perms::owner_all);
    }
    database_ = std::make_unique<Database>(path_, mode);
    if (!existed && mode == Database::Mode::readWrite) chmod(path_.c_str(), 0600);

    // Everything is read before anything is written: a newer, damaged or foreign file must
    // stay exactly as it is, for its owner to recover.
    const int64_t version = database_->pragma("user_version");
    if (version > schemaVersion) {
        throw SqliteError(0, "it was written by a newer version of Vesk (schema " + std::to_string(version) +
                                 "; this one reads up to " + std::to_string(schemaVersion) + "); it is left as it is");
    }
    if (version == 0) {
        if (mode == Database::Mode::readOnly) {
            data_ = std::make_shared<StoreData>();
            return;
        }
        writeThrough();
        // First run: the schema, the default list, the settings' defaults and this device.
        Database::Transaction transaction(*database_);
        database_->execute(schema);
        for (const char* migration : migrations) database_->execute(migration);
        StoreData first;
        StoredList list{Uuid::random().text(), "Reminders", false};
        first.lists[list.id] = list;
        first.defaultList = list.id;
        first.device.id = Uuid::random().text();
        save(StoreData{}, first);
        database_->execute("PRAGMA user_version = " + std::to_string(schemaVersion));
        transaction.commit();
        data_ = load(schemaVersion);
        return;
    }
    auto data = load(version);
    if (mode == Database::Mode::readWrite) {
        writeThrough();
        if (version < schemaVersion) migrate(version);
    }
    data_ = std::move(data);
}

// Brings an older store up to this version in one transaction: all of it or nothing.
void Store::migrate(int64_t from) {
    Database::Transaction transaction(*database_);
    for (int64_t version = from; version < schemaVersion; ++version) database_->execute(migrations[version - 1]);
    database_->execute("PRAGMA user_version = " + std::to_string(schemaVersion));
    transaction.commit();
}

// Every change is written through to the disk before it counts as made.
void Store::writeThrough() {
    database_->execute("PRAGMA journal_mode=WAL");
    database_->execute("PRAGMA synchronous=FULL");
    database_->execute("PRAGMA foreign_keys=ON");
}

std::shared_ptr<StoreData> Store::load(int64_t version) {
    auto data = std::make_shared<StoreData>();
    for (Statement rows = database_->prepare("SELECT id, name, ignored FROM lists"); rows.step();)
        data->lists[rows.text(0)] = StoredList{rows.text(0), rows.text(1), rows.integer(2) != 0};

    Statement rows =
        database_->prepare("SELECT key, title, due, completed, completedAt, list, recurrence, meta FROM reminders");
    while (rows.step()) {
        StoredReminder reminder;
        reminder.key = rows.text(0);
        reminder.title = rows.text(1);
        reminder.completed = rows.integer(3) != 0;
        if (!rows.isNull(4)) reminder.completedAt = Date{rows.real(4)};
        reminder.list = rows.text(5);
        auto meta = decoded(rows.text(7), ReminderMeta::fromJson);
        auto due = rows.isNull(2) ? std::nullopt : decoded(rows.text(2), dateComponentsFromJson);
        auto recurrence = rows.isNull(6) ? std::nullopt : decoded(rows.text(6), Recurrence::fromJson);
        if (!meta || (!rows.isNull(2) && !due) || (!rows.isNull(6) && !recurrence)) {
            // Left in the file as it is; only a change to the reminder would write it.
            skipped("reminder");
            continue;
        }
        reminder.meta = *meta;
        reminder.due = due;
        reminder.recurrence = recurrence;
        data->reminders.emplace(reminder.key, std::move(reminder));
    }

    for (Statement places = database_->prepare("SELECT key, place FROM places"); places.step();) {
        if (auto place = decoded(places.text(1), Place::fromJson)) {
            data->places.emplace(places.text(0), *place);
        } else {
            skipped("place");
        }
    }

    if (version >= 2) {
        for (Statement rows = database_->prepare("SELECT key, inside, since FROM presence"); rows.step();)
            data->presence[rows.text(0)] = Presence{rows.integer(1) != 0, Date{rows.real(2)}};
        Statement found = database_->prepare("SELECT search, latitude, longitude, address, at FROM geocoded");
        while (found.step())
            data->geocoded[found.text(0)] = Geocoded{found.real(1), found.real(2), found.text(3), Date{found.real(4)}};
    }

    for (Statement facts = database_->prepare("SELECT name, value FROM facts"); facts.step();) {
        std::string name = facts.text(0), value = facts.text(1);
        if (name == "settings") {
            if (auto settings = decoded(value, NagSettings::fromJson)) data->settings = *settings;
        } else if (name == "defaultList") {
            data->defaultList = value;
        } else if (name == "device") {
            if (auto device = decoded(value, deviceFromJson)) data->device = *device;
        } else if (name == "deliveredUpTo") {
            if (auto moment = decoded(value, [](const JsonDecoder& json) { return json.number(); }))
                data->deliveredUpTo = Date{*moment};
        }
    }
    return data;
}

std::shared_ptr<const StoreData> Store::change(const std::function<void(StoreData&)>& change) {
    std::lock_guard writing(writing_);
    std::shared_ptr<const StoreData> before = data();
    auto after = std::make_shared<StoreData>(*before);
    change(*after);
    if (*after == *before) return before;
    try {
        Database::Transaction transaction(*database_);
        save(*before, *after);
        transaction.commit();
    } catch (const SqliteError& error) {
        throw WireError{WireError::Code::permission, "Vesk couldn't save to " + path_ + ": " + error.what() + "."};
    }
    std::lock_guard guard(lock_);
    data_ = after;
    return after;
}

// Writes the rows and facts in which `after` differs from `before`.
void Store::save(const StoreData& before, const StoreData& after) {
    // Each kind of row has one statement to write it and one to delete it, prepared once.
    auto saveEach = [&](const auto& old, const auto& now, const char* upsert, const char* erase, auto bind) {
        std::optional<Statement> write, remove;
        for (const auto& [key, value] : now) {
            auto found = old.find(key);
            if (found != old.end() && found->second == value) continue;
            if (!write) write.emplace(database_->prepare(upsert));
            bind(*write, key, value);
            write->run();
        }
        for (const auto& [key, value] : old) {
            if (now.count(key)) continue;
            if (!remove) remove.emplace(database_->prepare(erase));
            remove->bind(1, key).run();
        }
    };
    saveEach(before.lists, after.lists,
             "INSERT INTO lists (id, name, ignored) VALUES (?1, ?2, ?3) "
             "ON CONFLICT (id) DO UPDATE SET name = ?2, ignored = ?3",
             "DELETE FROM lists WHERE id = ?1",
             [](Statement& statement, const std::string& id, const StoredList& list) {
                 statement.bind(1, id).bind(2, list.name).bind(3, int64_t{list.ignored});
             });
    saveEach(before.reminders, after.reminders,
             "INSERT INTO reminders (key, title, due, completed, completedAt, list, recurrence, meta) "
             "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8) ON CONFLICT (key) DO UPDATE SET title = ?2, due = ?3, "
             "completed = ?4, completedAt = ?5, list = ?6, recurrence = ?7, meta = ?8",
             "DELETE FROM reminders WHERE key = ?1",
             [](Statement& statement, const std::string& key, const StoredReminder& reminder) {
                 auto optionalJson = [](const auto& value) -> std::optional<std::string> {
                     if (!value) return std::nullopt;
                     if constexpr (std::is_same_v<std::decay_t<decltype(*value)>, DateComponents>)
                         return compact(toJson(*value));
                     else
                         return compact(value->toJson());
                 };
                 statement.bind(1, key)
                     .bind(2, reminder.title)
                     .bind(3, optionalJson(reminder.due))
                     .bind(4, int64_t{reminder.completed})
                     .bind(5, reminder.completedAt ? std::optional(reminder.completedAt->seconds) : std::nullopt)
                     .bind(6, reminder.list)
                     .bind(7, optionalJson(reminder.recurrence))
                     .bind(8, compact(reminder.meta.toJson()));
             });
    saveEach(before.places, after.places,
             "INSERT INTO places (key, place) VALUES (?1, ?2) ON CONFLICT (key) DO UPDATE SET place = ?2",
             "DELETE FROM places WHERE key = ?1", [](Statement& statement, const std::string& key, const Place& place) {
                 statement.bind(1, key).bind(2, compact(place.toJson()));
             });

    saveEach(before.presence, after.presence,
             "INSERT INTO presence (key, inside, since) VALUES (?1, ?2, ?3) "
             "ON CONFLICT (key) DO UPDATE SET inside = ?2, since = ?3",
             "DELETE FROM presence WHERE key = ?1",
             [](Statement& statement, const std::string& key, const Presence& presence) {
                 statement.bind(1, key).bind(2, int64_t{presence.inside}).bind(3, presence.since.seconds);
             });
    saveEach(before.geocoded, after.geocoded,
             "INSERT INTO geocoded (search, latitude, longitude, address, at) VALUES (?1, ?2, ?3, ?4, ?5) "
             "ON CONFLICT (search) DO UPDATE SET latitude = ?2, longitude = ?3, address = ?4, at = ?5",
             "DELETE FROM geocoded WHERE search = ?1",
             [](Statement& statement, const std::string& search, const Geocoded& found) {
                 statement.bind(1, search)
                     .bind(2, found.latitude)
                     .bind(3, found.longitude)
                     .bind(4, found.address)
                     .bind(5, found.at.seconds);
             });

    auto fact = [&](const char* name, const std::string& value) {
        database_
            ->prepare("INSERT INTO facts (name, value) VALUES (?1, ?2) ON CONFLICT (name) DO UPDATE SET value = ?2")
            .bind(1, std::string_view(name))
            .bind(2, value)
            .run();
    };
    if (!(before.settings == after.settings)) fact("settings", compact(after.settings.toJson()));
    if (before.defaultList != after.defaultList) fact("defaultList", after.defaultList);
    if (!(before.device == after.device)) fact("device", compact(deviceJson(after.device)));
    if (before.deliveredUpTo != after.deliveredUpTo && after.deliveredUpTo)
        fact("deliveredUpTo", compact(Json(after.deliveredUpTo->seconds)));
}
