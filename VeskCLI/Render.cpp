#include "VeskCLI/Render.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <exception>

#include <nlohmann/json.hpp>

#include "Platform/Json.h"
#include "Platform/Text.h"
#include "VeskCLI/Output.h"

namespace Render {

namespace {

// Toward zero; a value no integer can hold is clamped rather than trusted.
int64_t truncated(double value) {
    if (std::isnan(value)) return 0;
    if (value >= 9.2e18) return INT64_MAX;
    if (value <= -9.2e18) return INT64_MIN;
    return static_cast<int64_t>(value);
}

}  // namespace

std::string listText(const Response& response) {
    if (!response.reminders || response.reminders->empty()) return "Nothing here.";
    const auto& reminders = *response.reminders;

    int64_t highest = reminders.front().number;
    for (const auto& reminder : reminders) highest = std::max(highest, reminder.number);
    size_t width = std::to_string(highest).size();

    std::string text;
    for (const auto& reminder : reminders) {
        std::string number = std::to_string(reminder.number);
        if (!text.empty()) text += '\n';
        text += std::string(width - std::min(width, number.size()), ' ') + number + "  " + reminder.title + '\n';
        text += std::string(width, ' ') + "  " + reminder.detail;
    }
    return text;
}

void list(const Response& response, bool json) {
    if (json) {
        Render::json(response);
        return;
    }
    Output::print(listText(response));
}

std::string where(const PlaceDTO& place) {
    std::string text = place.address ? *place.address : Text::format("%.5f, %.5f", place.latitude, place.longitude);
    return text + " (" + std::to_string(truncated(place.radiusMeters)) + " m)";
}

std::string settings(const SettingsDTO& settings) {
    auto number = [](int64_t value) { return std::to_string(value); };
    return "repeat          " + number(settings.repeatMinutes) +
           " min   repeat until done, when the words give no interval\n"
           "nag             " + number(settings.nagMinutes) + " min   “nag me” with no number\n"
           "stagger         " + number(settings.staggerMinutes) + " min   between alerts due together\n"
           "alarm-repeat    " + number(settings.alarmRepeatMinutes) + " min   a stopped alarm rings again\n"
           "date-only-hour  " + number(settings.dateOnlyHour) + "   when a date-only reminder alerts\n"
           "night           " + settings.night + "   escalation stops at Time Sensitive";
}

std::string places(const std::vector<PlaceDTO>& places) {
    std::string text;
    for (const auto& place : places) {
        if (!text.empty()) text += '\n';
        text += place.name + "  " + where(place) + "  " + std::to_string(place.reminders) + " reminder" +
                (place.reminders == 1 ? "" : "s");
    }
    return text;
}

std::string doctor(const DoctorDTO& doctor) {
    std::string ignored;
    for (const auto& name : doctor.ignoredLists) ignored += (ignored.empty() ? "" : ", ") + name;
    return "Reminders access  " + doctor.remindersAccess + "\n" +
           "Notifications     " + doctor.notifications + "\n" +
           "This Mac          " + doctor.device + (doctor.relayOnly ? " (relay only)" : "") + "\n" +
           "Writes to         " + (doctor.writes == "any-list" ? "any list" : "Vesk Test only (debug build)") + "\n" +
           "Default list      " + doctor.defaultList.value_or("Reminders’ default") + "\n" +
           "Ignored lists     " + (doctor.ignoredLists.empty() ? "none" : ignored) + "\n" +
           "Reminders         " + std::to_string(doctor.reminders) + " incomplete\n" +
           "Sync              " + doctor.sync.value_or("off in this build") + "\n" +
           "On-device model   " + doctor.model.value_or("unknown") + "\n" +
           "App version       " + doctor.version;
}

std::optional<std::string> jsonText(const Response& response) {
    try {
        auto text = JsonText::pretty(response.toJson());
        if (!text) return std::nullopt;
        return Text::repairUtf8(*text);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

void json(const Response& response) {
    if (auto text = jsonText(response)) Output::print(*text);
}

}  // namespace Render
