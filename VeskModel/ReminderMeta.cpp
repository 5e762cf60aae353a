#include "VeskModel/ReminderMeta.h"

#include <nlohmann/json.hpp>

#include "Platform/Json.h"
#include "Platform/Text.h"

namespace {

Date dateFromJson(const JsonDecoder& json) { return Date{json.number()}; }

}  // namespace

const char* rawValue(Source source) {
    switch (source) {
    case Source::app: return "app";
    case Source::cli: return "cli";
    case Source::intent: return "intent";
    }
    return "app";
}

std::optional<Source> sourceFromRaw(std::string_view raw) {
    for (Source source : {Source::app, Source::cli, Source::intent}) {
        if (raw == rawValue(source)) return source;
    }
    return std::nullopt;
}

// MARK: Snooze

Json Snooze::toJson() const {
    Json json = {{"until", until.seconds}};
    if (dueWhenSnoozed) json["dueWhenSnoozed"] = ::toJson(*dueWhenSnoozed);
    if (originalDue) json["originalDue"] = ::toJson(*originalDue);
    return json;
}

Snooze Snooze::fromJson(const JsonDecoder& json) {
    json.requireObject();
    Snooze snooze;
    snooze.until = dateFromJson(json["until"]);
    if (auto value = json.optional("dueWhenSnoozed")) snooze.dueWhenSnoozed = dateComponentsFromJson(*value);
    if (auto value = json.optional("originalDue")) snooze.originalDue = dateComponentsFromJson(*value);
    return snooze;
}

// MARK: CapturePlace

Json CapturePlace::toJson() const {
    Json json = {{"latitude", latitude}, {"longitude", longitude}};
    if (name) json["name"] = *name;
    return json;
}

CapturePlace CapturePlace::fromJson(const JsonDecoder& json) {
    json.requireObject();
    CapturePlace place;
    if (auto value = json.optional("name")) place.name = value->string();
    place.latitude = json["latitude"].number();
    place.longitude = json["longitude"].number();
    return place;
}

// MARK: ReminderMeta

ReminderMeta::ReminderMeta(Style style, std::optional<PlaceTrigger> trigger, std::optional<Date> triggeredAt,
                           std::optional<std::string> gate, std::optional<DeviceGate> deviceGate,
                           std::optional<StartReminding> startReminding, std::optional<int64_t> hideDaysBefore,
                           bool fromCompletion, std::optional<Snooze> snooze, Date firstSeen,
                           std::optional<Source> source, std::optional<CapturePlace> capturedAt)
    : style(std::move(style)),
      trigger(std::move(trigger)),
      triggeredAt(triggeredAt),
      gate(std::move(gate)),
      deviceGate(std::move(deviceGate)),
      startReminding(std::move(startReminding)),
      hideDaysBefore(hideDaysBefore),
      fromCompletion(fromCompletion),
      snooze(std::move(snooze)),
      firstSeen(firstSeen),
      source(source),
      capturedAt(std::move(capturedAt)) {}

ReminderMeta::ReminderMeta(Style style, bool fromCompletion, Date firstSeen)
    : style(std::move(style)), fromCompletion(fromCompletion), firstSeen(firstSeen) {}

ReminderMeta::ReminderMeta(const Capture& capture, Date firstSeen, Source source)
    : style(capture.style),
      trigger(capture.trigger),
      gate(capture.gate),
      deviceGate(capture.deviceGate),
      startReminding(capture.startReminding),
      hideDaysBefore(capture.hideDaysBefore),
      fromCompletion(capture.recurrence && capture.recurrence->fromCompletion),
      firstSeen(firstSeen),
      source(source) {}

Json ReminderMeta::toJson() const {
    Json json = {{"style", style.toJson()}, {"fromCompletion", fromCompletion}, {"firstSeen", firstSeen.seconds}};
    if (trigger) json["trigger"] = trigger->toJson();
    if (triggeredAt) json["triggeredAt"] = triggeredAt->seconds;
    if (gate) json["gate"] = *gate;
    if (deviceGate) json["deviceGate"] = deviceGate->toJson();
    if (startReminding) json["startReminding"] = startReminding->toJson();
    if (hideDaysBefore) json["hideDaysBefore"] = *hideDaysBefore;
    if (snooze) json["snooze"] = snooze->toJson();
    if (source) json["source"] = rawValue(*source);
    if (capturedAt) json["capturedAt"] = capturedAt->toJson();
    return json;
}

ReminderMeta ReminderMeta::fromJson(const JsonDecoder& json) {
    json.requireObject();
    ReminderMeta meta(Style::fromJson(json["style"]), json["fromCompletion"].boolean(),
                      dateFromJson(json["firstSeen"]));
    if (auto value = json.optional("trigger")) meta.trigger = PlaceTrigger::fromJson(*value);
    if (auto value = json.optional("triggeredAt")) meta.triggeredAt = dateFromJson(*value);
    if (auto value = json.optional("gate")) meta.gate = value->string();
    if (auto value = json.optional("deviceGate")) meta.deviceGate = DeviceGate::fromJson(*value);
    if (auto value = json.optional("startReminding")) meta.startReminding = StartReminding::fromJson(*value);
    if (auto value = json.optional("hideDaysBefore")) meta.hideDaysBefore = value->integer();
    if (auto value = json.optional("snooze")) meta.snooze = Snooze::fromJson(*value);
    if (auto value = json.optional("source")) {
        const std::string raw = value->string();
        const auto source = sourceFromRaw(raw);
        if (!source) value->fail("Cannot initialize Source from invalid String value " + raw);
        meta.source = source;
    }
    if (auto value = json.optional("capturedAt")) meta.capturedAt = CapturePlace::fromJson(*value);
    return meta;
}

// MARK: Place

std::string Place::key(std::string_view name) {
    std::string key = Text::lowercased(Text::trimWhitespaceAndNewlines(name));
    if (key.starts_with("the ")) key.erase(0, 4);
    return key;
}

Json Place::toJson() const {
    Json json = {{"id", id}, {"name", name}, {"latitude", latitude}, {"longitude", longitude}, {"radius", radius}};
    if (address) json["address"] = *address;
    return json;
}

Place Place::fromJson(const JsonDecoder& json) {
    json.requireObject();
    Place place;
    place.id = json["id"].string();
    place.name = json["name"].string();
    place.latitude = json["latitude"].number();
    place.longitude = json["longitude"].number();
    place.radius = json["radius"].number();
    if (auto value = json.optional("address")) place.address = value->string();
    return place;
}
