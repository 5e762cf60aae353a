#include "VeskIPC/Wire.h"

#include <nlohmann/json.hpp>

#include "Platform/Json.h"

namespace {

std::optional<std::string> optionalString(const JsonDecoder& json, std::string_view key) {
    if (auto value = json.optional(key)) return value->string();
    return std::nullopt;
}

}  // namespace

// MARK: ReminderDTO

Json ReminderDTO::toJson() const {
    Json json = {{"number", number}, {"id", id},         {"title", title},
                 {"section", section}, {"status", status}, {"style", style},
                 {"detail", detail}};
    if (list) json["list"] = *list;
    if (at) json["at"] = *at;
    if (due) json["due"] = *due;
    if (repeatIntervalSeconds) json["repeatIntervalSeconds"] = *repeatIntervalSeconds;
    if (place) json["place"] = *place;
    if (device) json["device"] = *device;
    return json;
}

ReminderDTO ReminderDTO::fromJson(const JsonDecoder& json) {
    ReminderDTO dto;
    dto.number = json["number"].integer();
    dto.id = json["id"].string();
    dto.title = json["title"].string();
    dto.list = optionalString(json, "list");
    dto.section = json["section"].string();
    dto.status = json["status"].string();
    dto.at = optionalString(json, "at");
    dto.due = optionalString(json, "due");
    dto.style = json["style"].string();
    if (auto value = json.optional("repeatIntervalSeconds")) dto.repeatIntervalSeconds = value->integer();
    dto.place = optionalString(json, "place");
    dto.device = optionalString(json, "device");
    dto.detail = json["detail"].string();
    return dto;
}

// MARK: PlaceDTO

Json PlaceDTO::toJson() const {
    Json json = {{"id", id},
                 {"name", name},
                 {"latitude", latitude},
                 {"longitude", longitude},
                 {"radiusMeters", radiusMeters},
                 {"reminders", reminders}};
    if (address) json["address"] = *address;
    return json;
}

PlaceDTO PlaceDTO::fromJson(const JsonDecoder& json) {
    PlaceDTO dto;
    dto.id = json["id"].string();
    dto.name = json["name"].string();
    dto.latitude = json["latitude"].number();
    dto.longitude = json["longitude"].number();
    dto.radiusMeters = json["radiusMeters"].number();
    dto.address = optionalString(json, "address");
    dto.reminders = json["reminders"].integer();
    return dto;
}

// MARK: SettingsDTO

Json SettingsDTO::toJson() const {
    return {{"repeatMinutes", repeatMinutes},
            {"nagMinutes", nagMinutes},
            {"staggerMinutes", staggerMinutes},
            {"alarmRepeatMinutes", alarmRepeatMinutes},
            {"dateOnlyHour", dateOnlyHour},
            {"night", night}};
}

SettingsDTO SettingsDTO::fromJson(const JsonDecoder& json) {
    return SettingsDTO{json["repeatMinutes"].integer(),      json["nagMinutes"].integer(),
                       json["staggerMinutes"].integer(),     json["alarmRepeatMinutes"].integer(),
                       json["dateOnlyHour"].integer(),       json["night"].string()};
}

// MARK: ListDTO

Json ListDTO::toJson() const { return {{"id", id}, {"name", name}, {"ignored", ignored}}; }

ListDTO ListDTO::fromJson(const JsonDecoder& json) {
    return ListDTO{json["id"].string(), json["name"].string(), json["ignored"].boolean()};
}

// MARK: DoctorDTO

Json DoctorDTO::toJson() const {
    Json json = {{"remindersAccess", remindersAccess},
                 {"notifications", notifications},
                 {"relayOnly", relayOnly},
                 {"writes", writes},
                 {"ignoredLists", ignoredLists},
                 {"reminders", reminders},
                 {"device", device},
                 {"version", version}};
    if (defaultList) json["defaultList"] = *defaultList;
    if (sync) json["sync"] = *sync;
    if (model) json["model"] = *model;
    return json;
}

DoctorDTO DoctorDTO::fromJson(const JsonDecoder& json) {
    DoctorDTO dto;
    dto.remindersAccess = json["remindersAccess"].string();
    dto.notifications = json["notifications"].string();
    dto.relayOnly = json["relayOnly"].boolean();
    dto.writes = json["writes"].string();
    dto.defaultList = optionalString(json, "defaultList");
    for (const JsonDecoder& name : json["ignoredLists"].elements()) dto.ignoredLists.push_back(name.string());
    dto.reminders = json["reminders"].integer();
    dto.device = json["device"].string();
    dto.version = json["version"].string();
    dto.sync = optionalString(json, "sync");
    dto.model = optionalString(json, "model");
    return dto;
}
