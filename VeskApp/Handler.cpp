#include "VeskApp/Handler.h"

#include <algorithm>
#include <cmath>

#include "Platform/Text.h"
#include "Platform/Uuid.h"
#include "Platform/Version.h"
#include "VeskApp/Coordinates.h"
#include "VeskApp/Planning.h"
#include "VeskIPC/Listing.h"
#include "VeskParse/Parser.h"
#include "VeskParse/SnoozeTime.h"
#include "VeskNag/Occurrences.h"

namespace {

WireError invalid(std::string message) { return {WireError::Code::invalid, std::move(message)}; }
WireError notFound(std::string message) { return {WireError::Code::notFound, std::move(message)}; }

std::string quoted(const std::string& text) { return "\u201c" + text + "\u201d"; }

const StoredList* listNamed(const StoreData& data, const std::string& name) {
    for (const auto& [id, list] : data.lists)
        if (Text::equalsIgnoringCase(list.name, name)) return &list;
    return nullptr;
}

// The id of the list called `name`, made when there is none yet.
std::string listId(StoreData& data, const std::string& name) {
    if (const StoredList* list = listNamed(data, name)) return list->id;
    StoredList list{Uuid::random().text(), name, false};
    data.lists[list.id] = list;
    return list.id;
}

std::string defaultListName(const StoreData& data, const Config& config) {
    if (config.defaultList) return *config.defaultList;
    auto list = data.lists.find(data.defaultList);
    return list != data.lists.end() ? list->second.name : "Reminders";
}

int64_t waitingOn(const StoreData& data, const std::string& placeKey) {
    int64_t count = 0;
    for (const auto& [key, reminder] : data.reminders) {
        if (reminder.completed) continue;
        const ReminderMeta& meta = reminder.meta;
        if ((meta.trigger && meta.trigger->place == placeKey) || meta.gate == placeKey) ++count;
    }
    return count;
}

PlaceDTO placeDTO(const Place& place, const StoreData& data) {
    return {place.id,
            place.name,
            place.latitude,
            place.longitude,
            place.radius,
            place.address,
            waitingOn(data, Place::key(place.name))};
}

SettingsDTO settingsDTO(const NagSettings& settings) {
    using Field = NagSettings::Field;
    return {settings.get(Field::repeat),       settings.get(Field::nag),
            settings.get(Field::stagger),      settings.get(Field::alarmRepeat),
            settings.get(Field::dateOnlyHour), settings.nightWindow ? settings.nightWindow->text() : "off"};
}

// Address searches answered and kept; beyond this, the oldest answers go.
constexpr size_t geocodedLimit = 1000;

void keepNewest(std::map<std::string, Geocoded>& answers, size_t limit) {
    while (answers.size() > limit)
        answers.erase(std::min_element(answers.begin(), answers.end(),
                                       [](const auto& a, const auto& b) { return a.second.at < b.second.at; }));
}

constexpr size_t sentenceLimit = 10000;  // characters of a sentence to read as a reminder
constexpr size_t wordsLimit = 1000;      // characters of a reference, a name, a time or a setting

// The grammar reads a megabyte in about a second and every listing would carry what it
// saved: a request far beyond anything a person types is refused before any of that.
void refuseOversized(const Request& request) {
    auto within = [](const std::string& text, size_t limit) { return Text::characterCount(text) <= limit; };
    bool fits = std::visit(
        [&](const auto& value) {
            using R = std::decay_t<decltype(value)>;
            if constexpr (std::is_same_v<R, Request::Add>) return within(value.text, sentenceLimit);
            if constexpr (std::is_same_v<R, Request::Done> || std::is_same_v<R, Request::Delete>)
                return within(value.ref, wordsLimit);
            if constexpr (std::is_same_v<R, Request::Snooze>)
                return within(value.ref, wordsLimit) && within(value.until, wordsLimit);
            if constexpr (std::is_same_v<R, Request::AddPlace>)
                return within(value.name, wordsLimit) && within(value.search.value_or(""), wordsLimit);
            if constexpr (std::is_same_v<R, Request::RemovePlace>) return within(value.name, wordsLimit);
            if constexpr (std::is_same_v<R, Request::SetSetting>)
                return within(value.key, wordsLimit) && within(value.value, wordsLimit);
            return true;
        },
        request.value);
    if (!fits)
        throw invalid(
            "That is more than Vesk reads: a reminder takes at most 10,000 characters, and a number, "
            "name or time at most 1,000.");
}

}  // namespace

Handler::Handler(Store& store, Config config, Activity& activity, World world)
    : store_(store), config_(std::move(config)), activity_(activity), world_(std::move(world)) {}

Response Handler::answer(const Request& request) {
    refuseOversized(request);
    const Moment moment{world_.now(), world_.calendar()};
    activity_.touch(moment.now);
    return std::visit(
        [&](const auto& value) -> Response {
            using R = std::decay_t<decltype(value)>;
            if constexpr (std::is_same_v<R, Request::Add>) return add(value, moment);
            if constexpr (std::is_same_v<R, Request::List>) return list(value.section, moment);
            if constexpr (std::is_same_v<R, Request::Done>) return done(value.ref, moment);
            if constexpr (std::is_same_v<R, Request::Snooze>) return snooze(value, moment);
            if constexpr (std::is_same_v<R, Request::Delete>) return remove(value.ref, moment);
            if constexpr (std::is_same_v<R, Request::AddPlace>) return addPlace(value, moment);
            if constexpr (std::is_same_v<R, Request::RemovePlace>) return removePlace(value.name);
            if constexpr (std::is_same_v<R, Request::SetSetting>) return setSetting(value);
            if constexpr (std::is_same_v<R, Request::Lists>) return lists();
            if constexpr (std::is_same_v<R, Request::Places>) return places();
            if constexpr (std::is_same_v<R, Request::Settings>) return settings();
            if constexpr (std::is_same_v<R, Request::Doctor>) return doctor();
        },
        request.value);
}

std::shared_ptr<const Planning::Reminders> Handler::reminders(const std::shared_ptr<const StoreData>& data,
                                                              const Calendar& calendar) const {
    std::lock_guard guard(viewing_);
    std::string zone = calendar.timeZoneId();
    if (viewed_ == data && viewedZone_ == zone) return view_;
    auto view = std::make_shared<const Planning::Reminders>(Planning::reminders(*data, config_, calendar));
    // Only the store's latest data is kept: a request that took its data before a change
    // would otherwise swap the view back and forth with those that came after it.
    if (data == store_.data()) {
        view_ = view;
        viewed_ = data;
        viewedZone_ = std::move(zone);
    }
    return view;
}

std::vector<ReminderDTO> Handler::rows(const std::shared_ptr<const StoreData>& data, const Moment& moment,
                                       Request::Section section) const {
    return Planning::rows(*data, *reminders(data, moment.calendar), activity_.me(moment.now), moment.now,
                          moment.calendar, section);
}

ReminderDTO Handler::resolve(const std::string& reference, const Moment& moment) const {
    auto found = Listing::resolve(reference, rows(store_.data(), moment));
    if (auto* error = std::get_if<WireError>(&found)) throw *error;
    return std::get<ReminderDTO>(found);
}

std::shared_ptr<const StoreData> Handler::change(const std::function<void(StoreData&)>& change) {
    auto saved = store_.change([&](StoreData& data) {
        change(data);
        data.device = activity_.record();
    });
    if (world_.changed) world_.changed();
    return saved;
}

std::shared_ptr<const StoreData> Handler::change(const std::function<void(StoredReminder&)>& change,
                                                 const std::string& key) {
    return this->change([&](StoreData& data) {
        auto reminder = data.reminders.find(key);
        // Another request may have taken it away since it was found.
        if (reminder == data.reminders.end()) throw notFound("That reminder is gone. `vesk now` shows what is left.");
        change(reminder->second);
    });
}

Response Handler::add(const Request::Add& add, const Moment& moment) {
    auto data = store_.data();
    std::vector<std::string> places;
    for (const auto& [key, place] : data->places) places.push_back(place.name);
    const ParseResult reading =
        Parser{moment.calendar, places, data->settings}.parse(add.text, moment.now, world_.model, world_.modelTimeout);
    Response response;
    response.parse = ParseOutput(reading);
    if (add.dryRun) return response;

    const Capture& capture = reading.capture;
    if (Text::trimWhitespaceAndNewlines(capture.title).empty())
        throw invalid("Vesk found nothing to remind you of in " + quoted(add.text) + ".");
    const std::string key = Uuid::random().text();
    auto saved = change([&](StoreData& data) {
        StoredReminder reminder;
        reminder.key = key;
        reminder.title = capture.title;
        reminder.due = capture.due;
        reminder.recurrence = capture.recurrence;
        reminder.meta = ReminderMeta(capture, moment.now, Source::cli);
        if (capture.list) {
            reminder.list = listId(data, *capture.list);
        } else if (config_.defaultList) {
            reminder.list = listId(data, *config_.defaultList);
        } else {
            if (!data.lists.count(data.defaultList)) data.defaultList = listId(data, "Reminders");
            reminder.list = data.defaultList;
        }
        data.reminders[key] = reminder;
    });
    for (auto& row : rows(saved, moment))
        if (row.id == key) response.reminder = std::move(row);
    return response;
}

Response Handler::list(Request::Section section, const Moment& moment) {
    Response response;
    response.reminders = rows(store_.data(), moment, section);
    return response;
}

void Handler::complete(const std::string& key, const Moment& moment) {
    change(
        [&](StoredReminder& reminder) {
            std::optional<DateComponents> next;
            if (reminder.recurrence && reminder.due)
                next = VeskNag::nextDue(*reminder.recurrence, *reminder.due, moment.now, moment.calendar);
            if (next) {
                // A repeating reminder stays open with its next date, snooze and trigger cleared.
                reminder.due = next;
                reminder.meta.snooze.reset();
                reminder.meta.triggeredAt.reset();
            } else {
                reminder.completed = true;
                reminder.completedAt = moment.now;
            }
        },
        key);
}

void Handler::snoozeUntil(const std::string& key, Date until) {
    change(
        [&](StoredReminder& reminder) {
            std::optional<DateComponents> original = reminder.due;
            if (reminder.meta.snooze && reminder.meta.snooze->originalDue) original = reminder.meta.snooze->originalDue;
            reminder.meta.snooze = Snooze{until, reminder.due, original};
        },
        key);
}

void Handler::complete(const std::string& key) {
    const Moment moment{world_.now(), world_.calendar()};
    activity_.touch(moment.now);
    complete(key, moment);
}

void Handler::snoozeOnce(const std::string& key) {
    const Moment moment{world_.now(), world_.calendar()};
    activity_.touch(moment.now);
    snoozeUntil(key, SnoozeTime::swipe(moment.now, moment.calendar, store_.data()->settings));
}

Response Handler::done(const std::string& reference, const Moment& moment) {
    ReminderDTO row = resolve(reference, moment);
    complete(row.id, moment);
    Response response;
    response.reminder = std::move(row);
    return response;
}

Response Handler::snooze(const Request::Snooze& snooze, const Moment& moment) {
    ReminderDTO row = resolve(snooze.ref, moment);
    auto until = SnoozeTime::resolve(snooze.until, moment.now, moment.calendar, store_.data()->settings);
    if (!until)
        throw invalid("Vesk can't read " + quoted(snooze.until) +
                      " as a time to come back. Try 15m, 2h, tonight, tomorrow or friday at 3pm.");
    snoozeUntil(row.id, *until);
    Response response;
    for (auto& after : rows(store_.data(), moment))
        if (after.id == row.id) response.reminder = std::move(after);
    return response;
}

Response Handler::remove(const std::string& reference, const Moment& moment) {
    ReminderDTO row = resolve(reference, moment);
    change([&](StoreData& data) {
        if (!data.reminders.erase(row.id)) throw notFound("That reminder is gone. `vesk now` shows what is left.");
    });
    Response response;
    response.reminder = std::move(row);
    return response;
}

Response Handler::addPlace(const Request::AddPlace& add, const Moment& moment) {
    const std::string key = Place::key(add.name);
    if (key.empty()) throw invalid("A place needs a name, like home or office.");
    const double radius = add.radius.value_or(Place::defaultRadius);
    if (!(radius > 0 && radius <= 1e7)) throw invalid("A place's radius is a number of meters above 0.");

    Place place{"", Text::trimWhitespaceAndNewlines(add.name), 0, 0, radius, std::nullopt};
    std::optional<std::pair<std::string, Geocoded>> answer;  // a fresh answer of the geocoder, to keep
    const std::string search = Text::trimWhitespaceAndNewlines(add.search.value_or(""));
    if (add.here) {
        if (!world_.here) throw WireError{WireError::Code::unreachable, "Vesk can't tell where this computer is."};
        const Fix fix = world_.here();
        place.latitude = fix.latitude;
        place.longitude = fix.longitude;
    } else if (search.empty()) {
        throw invalid("Give an address or a place to search for, like --at \"1 Main St, Springfield\", or --here.");
    } else if (auto coordinates = Coordinates::fromText(search)) {
        place.latitude = coordinates->latitude;
        place.longitude = coordinates->longitude;
    } else {
        const std::string searchKey = Geocoder::searchKey(search);
        auto data = store_.data();
        auto cached = data->geocoded.find(searchKey);
        if (cached == data->geocoded.end()) {
            if (!world_.geocode) throw WireError{WireError::Code::unreachable, "Vesk can't look up addresses."};
            const Geocoder::Found found = world_.geocode(search);
            answer.emplace(searchKey, Geocoded{found.latitude, found.longitude, found.address, moment.now});
        }
        const Geocoded& found = answer ? answer->second : cached->second;
        place.latitude = found.latitude;
        place.longitude = found.longitude;
        place.address = found.address;
    }

    auto saved = change([&](StoreData& data) {
        auto existing = data.places.find(key);
        place.id = existing != data.places.end() ? existing->second.id : Uuid::random().text();
        data.places[key] = place;
        // Where the user was, as to the place's old outline, says nothing of the new one.
        data.presence.erase(key);
        if (answer) {
            data.geocoded[answer->first] = answer->second;
            keepNewest(data.geocoded, geocodedLimit);
        }
    });
    Response response;
    response.places = std::vector{placeDTO(place, *saved)};
    return response;
}

Response Handler::removePlace(const std::string& name) {
    const std::string key = Place::key(name);
    std::optional<PlaceDTO> removed;
    change([&](StoreData& data) {
        auto place = data.places.find(key);
        if (place == data.places.end())
            throw notFound("No place is called " + quoted(Text::trimWhitespaceAndNewlines(name)) +
                           ". `vesk places` shows them.");
        removed = placeDTO(place->second, data);
        data.places.erase(place);
        data.presence.erase(key);
    });
    Response response;
    response.places = std::vector{*removed};
    return response;
}

Response Handler::setSetting(const Request::SetSetting& set) {
    auto saved = change([&](StoreData& data) {
        if (auto refusal = data.settings.set(set.key, set.value)) throw invalid(refusal->message);
    });
    Response response;
    response.settings = settingsDTO(saved->settings);
    return response;
}

Response Handler::lists() {
    auto data = store_.data();
    std::vector<ListDTO> lists;
    for (const auto& [id, list] : data->lists) lists.push_back({id, list.name, Planning::isIgnored(list, config_)});
    std::sort(lists.begin(), lists.end(),
              [](const ListDTO& a, const ListDTO& b) { return Text::lowercased(a.name) < Text::lowercased(b.name); });
    Response response;
    response.lists = std::move(lists);
    return response;
}

Response Handler::places() {
    auto data = store_.data();
    std::vector<PlaceDTO> places;
    for (const auto& [key, place] : data->places) places.push_back(placeDTO(place, *data));
    Response response;
    response.places = std::move(places);
    return response;
}

Response Handler::settings() {
    Response response;
    response.settings = settingsDTO(store_.data()->settings);
    return response;
}

Response Handler::doctor() {
    DoctorDTO doctor;
    doctor.notifications = world_.notifications ? world_.notifications() : "unavailable";
    doctor.relayOnly = config_.relayOnly;
    doctor.writes = "any-list";
    doctor.device = activity_.me(world_.now()).name;
    doctor.version = veskVersion;
    doctor.model = world_.modelStatus ? world_.modelStatus() : "off";
    doctor.ignoredLists = config_.ignoredLists;
    if (store_.failure()) {
        doctor.remindersAccess = "unavailable";
    } else {
        auto data = store_.data();
        doctor.remindersAccess = "full";
        doctor.defaultList = defaultListName(*data, config_);
        for (const auto& [id, list] : data->lists) {
            bool named = std::any_of(
                doctor.ignoredLists.begin(), doctor.ignoredLists.end(),
                [&listName = list.name](const std::string& name) { return Text::equalsIgnoringCase(name, listName); });
            if (list.ignored && !named) doctor.ignoredLists.push_back(list.name);
        }
        doctor.reminders = static_cast<int64_t>(Planning::items(*data, config_).size());
    }
    Response response;
    response.doctor = std::move(doctor);
    return response;
}
