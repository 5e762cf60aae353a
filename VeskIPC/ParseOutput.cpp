#include "VeskIPC/ParseOutput.h"

#include <nlohmann/json.hpp>

#include "Platform/Json.h"
#include "Platform/Text.h"
#include "VeskModel/Truncate.h"

namespace {

std::string startRemindingText(const StartReminding& start) {
    if (start.kind == StartReminding::Case::beforeDue) return "-" + std::to_string(saturatedInt64(start.seconds));
    return ParseOutput::format(start.date).value_or("");
}

Json triggerJson(const ParseOutput::Trigger& trigger) {
    return {{"edge", trigger.edge}, {"place", trigger.place}, {"delaySeconds", trigger.delaySeconds}};
}

ParseOutput::Trigger triggerFromJson(const JsonDecoder& json) {
    return ParseOutput::Trigger{json["edge"].string(), json["place"].string(), json["delaySeconds"].integer()};
}

Json repeatJson(const ParseOutput::Repeat& repeat) {
    Json json = {{"frequency", repeat.frequency},
                 {"interval", repeat.interval},
                 {"fromCompletion", repeat.fromCompletion}};
    if (repeat.weekdays && !repeat.weekdays->empty()) json["weekdays"] = *repeat.weekdays;
    return json;
}

// An empty weekdays array reads as absent, the one form the field has for "no weekdays".
ParseOutput::Repeat repeatFromJson(const JsonDecoder& json) {
    ParseOutput::Repeat repeat;
    repeat.frequency = json["frequency"].string();
    repeat.interval = json["interval"].integer();
    if (auto value = json.optional("weekdays")) {
        std::vector<int64_t> weekdays;
        for (const JsonDecoder& day : value->elements()) weekdays.push_back(day.integer());
        if (!weekdays.empty()) repeat.weekdays = std::move(weekdays);
    }
    repeat.fromCompletion = json["fromCompletion"].boolean();
    return repeat;
}

}  // namespace

ParseOutput::ParseOutput(const ParseResult& result) {
    const Capture& capture = result.capture;
    title = capture.title;
    due = format(capture.due);
    std::tie(style, repeatIntervalSeconds) = styleOf(capture.style);
    if (capture.trigger) {
        trigger = Trigger{rawValue(capture.trigger->edge), capture.trigger->place,
                          saturatedInt64(capture.trigger->delay)};
    }
    gate = capture.gate;
    if (capture.deviceGate) device = deviceOf(*capture.deviceGate);
    if (capture.recurrence) {
        const Recurrence& rule = *capture.recurrence;
        Repeat repeat{rawValue(rule.frequency), rule.interval, std::nullopt, rule.fromCompletion};
        if (!rule.weekdays.empty()) repeat.weekdays = rule.weekdays;
        recurrence = repeat;
    }
    if (capture.startReminding) startReminding = startRemindingText(*capture.startReminding);
    hideDaysBefore = capture.hideDaysBefore;
    list = capture.list;
    unresolved = result.unresolved;
    needsModel = result.needsModel();
    readByModel = result.readByModel;
}

std::pair<std::string, std::optional<int64_t>> ParseOutput::styleOf(const Style& style) {
    switch (style.kind) {
    case Style::Case::once: return {"once", std::nullopt};
    case Style::Case::repeatUntilDone:
        if (style.interval) return {"repeat", saturatedInt64(*style.interval)};
        return {"repeat", std::nullopt};
    case Style::Case::alarm: return {"alarm", std::nullopt};
    case Style::Case::escalate: return {"escalate", std::nullopt};
    }
    return {"once", std::nullopt};
}

std::string ParseOutput::describe(const std::string& style, std::optional<int64_t> repeatIntervalSeconds) {
    if (style != "repeat") return style;
    if (!repeatIntervalSeconds) return "repeat until done";
    return "repeat every " + std::to_string(*repeatIntervalSeconds / 60) + " min until done";
}

std::string ParseOutput::deviceOf(const DeviceGate& gate) {
    switch (gate.kind) {
    case DeviceGate::Case::anyMac: return "mac";
    case DeviceGate::Case::phone: return "phone";
    case DeviceGate::Case::named: return gate.name;
    }
    return gate.name;
}

std::optional<std::string> ParseOutput::format(const std::optional<DateComponents>& components) {
    if (!components || !components->year || !components->month || !components->day) return std::nullopt;
    std::string text;
    Text::appendNumber(text, *components->year, 4);
    text += '-';
    Text::appendNumber(text, *components->month, 2);
    text += '-';
    Text::appendNumber(text, *components->day, 2);
    if (components->hour) {
        text += 'T';
        Text::appendNumber(text, *components->hour, 2);
        text += ':';
        Text::appendNumber(text, components->minute.value_or(0), 2);
    }
    return text;
}

Json ParseOutput::toJson() const {
    Json json = {{"title", title},
                 {"style", style},
                 {"unresolved", unresolved},
                 {"needsModel", needsModel},
                 {"readByModel", readByModel}};
    if (due) json["due"] = *due;
    if (repeatIntervalSeconds) json["repeatIntervalSeconds"] = *repeatIntervalSeconds;
    if (trigger) json["trigger"] = triggerJson(*trigger);
    if (gate) json["gate"] = *gate;
    if (device) json["device"] = *device;
    if (recurrence) json["recurrence"] = repeatJson(*recurrence);
    if (startReminding) json["startReminding"] = *startReminding;
    if (hideDaysBefore) json["hideDaysBefore"] = *hideDaysBefore;
    if (list) json["list"] = *list;
    return json;
}

ParseOutput ParseOutput::fromJson(const JsonDecoder& json) {
    ParseOutput output;
    output.title = json["title"].string();
    output.due = json.optionalString("due");
    output.style = json["style"].string();
    output.repeatIntervalSeconds = json.optionalInteger("repeatIntervalSeconds");
    if (auto value = json.optional("trigger")) output.trigger = triggerFromJson(*value);
    output.gate = json.optionalString("gate");
    output.device = json.optionalString("device");
    if (auto value = json.optional("recurrence")) output.recurrence = repeatFromJson(*value);
    output.startReminding = json.optionalString("startReminding");
    output.hideDaysBefore = json.optionalInteger("hideDaysBefore");
    output.list = json.optionalString("list");
    for (const JsonDecoder& word : json["unresolved"].elements()) output.unresolved.push_back(word.string());
    output.needsModel = json["needsModel"].boolean();
    output.readByModel = json["readByModel"].boolean();
    return output;
}
