#include "VeskModel/Capture.h"

#include <nlohmann/json.hpp>

#include "Platform/Json.h"
#include "VeskModel/Truncate.h"

namespace {

// Seconds whose whole part is shown as an integer elsewhere: a value that can't be
// truncated into 64 bits has no such form and is refused here, where it comes in.
double seconds(const JsonDecoder& json) {
    const double value = json.number();
    if (!truncatedInt64(value)) json.fail("Seconds must be finite and fit a 64-bit integer.");
    return value;
}

// The object under a case key; a case without payload still needs one.
JsonDecoder casePayload(const JsonDecoder& json, const std::string& key) {
    JsonDecoder payload = json[key];
    payload.requireObject();
    return payload;
}

Json emptyObject() { return Json::object(); }

}  // namespace

const char* rawValue(PlaceTrigger::Edge edge) {
    return edge == PlaceTrigger::Edge::arrive ? "arrive" : "leave";
}

const char* rawValue(Recurrence::Frequency frequency) {
    switch (frequency) {
    case Recurrence::Frequency::daily: return "daily";
    case Recurrence::Frequency::weekly: return "weekly";
    case Recurrence::Frequency::monthly: return "monthly";
    case Recurrence::Frequency::yearly: return "yearly";
    }
    return "daily";
}

std::optional<Recurrence::Frequency> frequencyFromRaw(std::string_view raw) {
    for (auto frequency : {Recurrence::Frequency::daily, Recurrence::Frequency::weekly,
                           Recurrence::Frequency::monthly, Recurrence::Frequency::yearly}) {
        if (raw == rawValue(frequency)) return frequency;
    }
    return std::nullopt;
}

std::optional<PlaceTrigger::Edge> edgeFromRaw(std::string_view raw) {
    if (raw == "arrive") return PlaceTrigger::Edge::arrive;
    if (raw == "leave") return PlaceTrigger::Edge::leave;
    return std::nullopt;
}

// MARK: Style

Json Style::toJson() const {
    switch (kind) {
    case Case::once: return {{"once", emptyObject()}};
    case Case::repeatUntilDone: {
        Json payload = emptyObject();
        if (interval) payload["interval"] = *interval;
        return {{"repeatUntilDone", payload}};
    }
    case Case::alarm: return {{"alarm", emptyObject()}};
    case Case::escalate: return {{"escalate", emptyObject()}};
    }
    return {};
}

Style Style::fromJson(const JsonDecoder& json) {
    json.requireObject();
    const std::string key = json.singleCase({"once", "repeatUntilDone", "alarm", "escalate"});
    const JsonDecoder payload = casePayload(json, key);
    if (key == "once") return once();
    if (key == "alarm") return alarm();
    if (key == "escalate") return escalate();
    std::optional<double> interval;
    if (auto value = payload.optional("interval")) interval = seconds(*value);
    return repeatUntilDone(interval);
}

// MARK: PlaceTrigger

Json PlaceTrigger::toJson() const {
    return {{"edge", rawValue(edge)}, {"place", place}, {"delay", delay}};
}

PlaceTrigger PlaceTrigger::fromJson(const JsonDecoder& json) {
    json.requireObject();
    const JsonDecoder edgeJson = json["edge"];
    const std::string raw = edgeJson.string();
    const auto edge = edgeFromRaw(raw);
    if (!edge) edgeJson.fail("Cannot initialize Edge from invalid String value " + raw);
    PlaceTrigger trigger;
    trigger.edge = *edge;
    trigger.place = json["place"].string();
    trigger.delay = seconds(json["delay"]);
    return trigger;
}

// MARK: DeviceGate

Json DeviceGate::toJson() const {
    switch (kind) {
    case Case::anyMac: return {{"anyMac", emptyObject()}};
    case Case::phone: return {{"phone", emptyObject()}};
    case Case::named: return {{"named", {{"_0", name}}}};
    }
    return {};
}

DeviceGate DeviceGate::fromJson(const JsonDecoder& json) {
    json.requireObject();
    const std::string key = json.singleCase({"anyMac", "phone", "named"});
    const JsonDecoder payload = casePayload(json, key);
    if (key == "anyMac") return anyMac();
    if (key == "phone") return phone();
    return named(payload["_0"].string());
}

// MARK: Recurrence

Json Recurrence::toJson() const {
    return {{"frequency", rawValue(frequency)},
            {"interval", interval},
            {"weekdays", weekdays},
            {"fromCompletion", fromCompletion}};
}

Recurrence Recurrence::fromJson(const JsonDecoder& json) {
    json.requireObject();
    const JsonDecoder frequencyJson = json["frequency"];
    const std::string raw = frequencyJson.string();
    const auto frequency = frequencyFromRaw(raw);
    if (!frequency) frequencyJson.fail("Cannot initialize Frequency from invalid String value " + raw);
    Recurrence recurrence;
    recurrence.frequency = *frequency;
    recurrence.interval = json["interval"].integer();
    for (const JsonDecoder& day : json["weekdays"].elements()) recurrence.weekdays.push_back(day.integer());
    recurrence.fromCompletion = json["fromCompletion"].boolean();
    return recurrence;
}

// MARK: StartReminding

Json StartReminding::toJson() const {
    if (kind == Case::on) return {{"on", {{"_0", ::toJson(date)}}}};
    return {{"beforeDue", {{"_0", seconds}}}};
}

StartReminding StartReminding::fromJson(const JsonDecoder& json) {
    json.requireObject();
    const std::string key = json.singleCase({"on", "beforeDue"});
    const JsonDecoder payload = casePayload(json, key);
    if (key == "on") return on(dateComponentsFromJson(payload["_0"]));
    return beforeDue(::seconds(payload["_0"]));
}

// MARK: DateComponents

Json toJson(const DateComponents& components) {
    Json json = emptyObject();
    if (components.year) json["year"] = *components.year;
    if (components.month) json["month"] = *components.month;
    if (components.day) json["day"] = *components.day;
    if (components.hour) json["hour"] = *components.hour;
    if (components.minute) json["minute"] = *components.minute;
    return json;
}

DateComponents dateComponentsFromJson(const JsonDecoder& json) {
    json.requireObject();
    DateComponents components;
    if (auto value = json.optional("year")) components.year = value->integer();
    if (auto value = json.optional("month")) components.month = value->integer();
    if (auto value = json.optional("day")) components.day = value->integer();
    if (auto value = json.optional("hour")) components.hour = value->integer();
    if (auto value = json.optional("minute")) components.minute = value->integer();
    return components;
}

// MARK: Capture

Json Capture::toJson() const {
    Json json = {{"title", title}, {"style", style.toJson()}};
    if (due) json["due"] = ::toJson(*due);
    if (trigger) json["trigger"] = trigger->toJson();
    if (gate) json["gate"] = *gate;
    if (deviceGate) json["deviceGate"] = deviceGate->toJson();
    if (recurrence) json["recurrence"] = recurrence->toJson();
    if (startReminding) json["startReminding"] = startReminding->toJson();
    if (hideDaysBefore) json["hideDaysBefore"] = *hideDaysBefore;
    if (list) json["list"] = *list;
    return json;
}

Capture Capture::fromJson(const JsonDecoder& json) {
    json.requireObject();
    Capture capture;
    capture.title = json["title"].string();
    capture.style = Style::fromJson(json["style"]);
    if (auto value = json.optional("due")) capture.due = dateComponentsFromJson(*value);
    if (auto value = json.optional("trigger")) capture.trigger = PlaceTrigger::fromJson(*value);
    if (auto value = json.optional("gate")) capture.gate = value->string();
    if (auto value = json.optional("deviceGate")) capture.deviceGate = DeviceGate::fromJson(*value);
    if (auto value = json.optional("recurrence")) capture.recurrence = Recurrence::fromJson(*value);
    if (auto value = json.optional("startReminding")) capture.startReminding = StartReminding::fromJson(*value);
    if (auto value = json.optional("hideDaysBefore")) capture.hideDaysBefore = value->integer();
    if (auto value = json.optional("list")) capture.list = value->string();
    return capture;
}
