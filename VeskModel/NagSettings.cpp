#include "VeskModel/NagSettings.h"

#include <algorithm>

#include <nlohmann/json.hpp>

#include "Platform/Json.h"
#include "Platform/Text.h"
#include "VeskModel/Truncate.h"

namespace {

// Pieces of `text` between the separators, empty pieces dropped.
std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> pieces;
    size_t start = 0;
    while (start <= text.size()) {
        size_t end = text.find(separator, start);
        if (end == std::string_view::npos) end = text.size();
        if (end > start) pieces.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return pieces;
}

bool isDuration(NagSettings::Field field) { return field != NagSettings::Field::dateOnlyHour; }

std::string rangeMessage(NagSettings::Field field) {
    const auto [low, high] = NagSettings::range(field);
    if (!isDuration(field)) {
        return Text::format("date-only-hour takes an hour from %lld to %lld.", (long long)low, (long long)high);
    }
    return Text::format("%s takes whole minutes from %lld to %lld.", NagSettings::rawValue(field), (long long)low,
                        (long long)high);
}

}  // namespace

std::optional<AlertLevel> alertLevelFromRaw(int64_t raw) {
    if (raw < 0 || raw > 2) return std::nullopt;
    return static_cast<AlertLevel>(raw);
}

// MARK: TimeOfDay

std::string TimeOfDay::text() const {
    return Text::format("%02lld:%02lld", (long long)hour, (long long)minute);
}

std::optional<TimeOfDay> TimeOfDay::fromText(std::string_view text) {
    const std::string trimmed = Text::trimBlanks(text);
    const auto pieces = split(trimmed, ':');
    if (pieces.size() != 2) return std::nullopt;
    const auto hour = Text::parseInt64(pieces[0]);
    const auto minute = Text::parseInt64(pieces[1]);
    if (!hour || !minute || *hour < 0 || *hour > 23 || *minute < 0 || *minute > 59) return std::nullopt;
    return TimeOfDay{*hour, *minute};
}

Json TimeOfDay::toJson() const { return {{"hour", hour}, {"minute", minute}}; }

TimeOfDay TimeOfDay::fromJson(const JsonDecoder& json) {
    json.requireObject();
    return TimeOfDay{json["hour"].integer(), json["minute"].integer()};
}

// MARK: NightWindow

std::string NightWindow::text() const { return start.text() + "-" + end.text(); }

std::optional<NightWindow> NightWindow::fromText(std::string_view text) {
    const auto pieces = split(text, '-');
    if (pieces.size() != 2) return std::nullopt;
    const auto start = TimeOfDay::fromText(pieces[0]);
    const auto end = TimeOfDay::fromText(pieces[1]);
    if (!start || !end) return std::nullopt;
    return NightWindow{*start, *end};
}

bool NightWindow::contains(TimeOfDay time) const {
    const int64_t s = start.hour * 60 + start.minute;
    const int64_t e = end.hour * 60 + end.minute;
    const int64_t t = time.hour * 60 + time.minute;
    if (s < e) return s <= t && t < e;
    return s <= t || t < e;
}

bool NightWindow::contains(Date date, const Calendar& calendar) const {
    const DateComponents components = calendar.components(date);
    return contains(TimeOfDay{components.hour.value_or(0), components.minute.value_or(0)});
}

Json NightWindow::toJson() const { return {{"start", start.toJson()}, {"end", end.toJson()}}; }

NightWindow NightWindow::fromJson(const JsonDecoder& json) {
    json.requireObject();
    return NightWindow{TimeOfDay::fromJson(json["start"]), TimeOfDay::fromJson(json["end"])};
}

// MARK: EscalationLadder

Json EscalationLadder::toJson() const {
    return {{"timeSensitiveAfter", timeSensitiveAfter}, {"alarmAfter", alarmAfter}, {"alarmRepeat", alarmRepeat}};
}

EscalationLadder EscalationLadder::fromJson(const JsonDecoder& json) {
    json.requireObject();
    return EscalationLadder{json["timeSensitiveAfter"].number(), json["alarmAfter"].number(),
                            json["alarmRepeat"].number()};
}

// MARK: NagSettings

const std::vector<NagSettings::Field>& NagSettings::allFields() {
    static const std::vector<Field> fields = {Field::repeat, Field::nag, Field::stagger, Field::alarmRepeat,
                                              Field::dateOnlyHour};
    return fields;
}

const char* NagSettings::rawValue(Field field) {
    switch (field) {
    case Field::repeat: return "repeat";
    case Field::nag: return "nag";
    case Field::stagger: return "stagger";
    case Field::alarmRepeat: return "alarm-repeat";
    case Field::dateOnlyHour: return "date-only-hour";
    }
    return "";
}

std::optional<NagSettings::Field> NagSettings::fieldFromRaw(std::string_view raw) {
    for (Field field : allFields()) {
        if (raw == rawValue(field)) return field;
    }
    return std::nullopt;
}

std::pair<int64_t, int64_t> NagSettings::range(Field field) {
    switch (field) {
    case Field::repeat: return {5, 240};
    case Field::nag: return {1, 120};
    case Field::stagger: return {0, 60};
    case Field::alarmRepeat: return {1, 60};
    case Field::dateOnlyHour: return {0, 23};
    }
    return {0, 0};
}

const std::vector<std::string>& NagSettings::settingKeys() {
    static const std::vector<std::string> keys = {"repeat", "nag", "stagger", "alarm-repeat", "date-only-hour",
                                                  "night"};
    return keys;
}

// A hand-made document may hold a duration beyond 64 bits in minutes; it reads clamped.
int64_t NagSettings::get(Field field) const {
    switch (field) {
    case Field::repeat: return saturatedInt64(defaultRepeat / 60);
    case Field::nag: return saturatedInt64(nagInterval / 60);
    case Field::stagger: return saturatedInt64(stagger / 60);
    case Field::alarmRepeat: return saturatedInt64(alarmRepeat / 60);
    case Field::dateOnlyHour: return dateOnlyHour;
    }
    return 0;
}

void NagSettings::put(Field field, int64_t value) {
    const auto [low, high] = range(field);
    const int64_t clamped = std::clamp(value, low, high);
    const double seconds = static_cast<double>(clamped) * 60;
    switch (field) {
    case Field::repeat: defaultRepeat = seconds; break;
    case Field::nag: nagInterval = seconds; break;
    case Field::stagger: stagger = seconds; break;
    case Field::alarmRepeat: alarmRepeat = seconds; break;
    case Field::dateOnlyHour: dateOnlyHour = clamped; break;
    }
}

std::optional<NagSettings::SettingError> NagSettings::set(std::string_view key, std::string_view value) {
    const std::string trimmed = Text::trimBlanks(value);
    if (key == "night") {
        if (Text::lowercased(trimmed) == "off") {
            nightWindow.reset();
            return std::nullopt;
        }
        const auto window = NightWindow::fromText(trimmed);
        if (!window) return SettingError{"Give night as a start and end, like 22:00-07:00, or off."};
        nightWindow = *window;
        return std::nullopt;
    }
    const auto field = fieldFromRaw(key);
    if (!field) {
        std::string message = "No setting called \u201c" + std::string(key) + "\u201d. The settings are ";
        const auto& keys = settingKeys();
        for (size_t i = 0; i < keys.size(); ++i) message += (i ? ", " : "") + keys[i];
        return SettingError{message + "."};
    }
    const auto number = Text::parseInt64(trimmed);
    const auto [low, high] = range(*field);
    if (!number || *number < low || *number > high) return SettingError{rangeMessage(*field)};
    put(*field, *number);
    return std::nullopt;
}

Json NagSettings::toJson() const {
    return {{"defaultRepeat", defaultRepeat},
            {"nagInterval", nagInterval},
            {"stagger", stagger},
            {"nightWindow", nightWindow ? nightWindow->toJson() : Json(nullptr)},
            {"escalation", escalation.toJson()},
            {"dateOnlyHour", dateOnlyHour},
            {"alarmRepeat", alarmRepeat}};
}

// Every key falls back to its default. A missing nightWindow gives the default night,
// a null one gives no night at all.
NagSettings NagSettings::fromJson(const JsonDecoder& json) {
    json.requireObject();
    NagSettings settings;
    if (auto value = json.optional("defaultRepeat")) settings.defaultRepeat = value->number();
    if (auto value = json.optional("nagInterval")) settings.nagInterval = value->number();
    if (auto value = json.optional("stagger")) settings.stagger = value->number();
    if (auto value = json.optional("nightWindow")) {
        settings.nightWindow = NightWindow::fromJson(*value);
    } else if (json.contains("nightWindow")) {
        settings.nightWindow.reset();
    }
    if (auto value = json.optional("escalation")) settings.escalation = EscalationLadder::fromJson(*value);
    if (auto value = json.optional("dateOnlyHour")) settings.dateOnlyHour = value->integer();
    if (auto value = json.optional("alarmRepeat")) settings.alarmRepeat = value->number();
    return settings;
}
