#include "VeskIPC/Wire.h"

#include <nlohmann/json.hpp>

#include "Platform/Json.h"

namespace {

template <class... Ts>
struct Overloaded : Ts... {
    using Ts::operator()...;
};

// The case object of a request: required to be an object, also for cases without fields.
JsonDecoder caseObject(const JsonDecoder& json, const std::string& key) {
    JsonDecoder payload = json[key];
    payload.requireObject();
    return payload;
}

template <class T>
Json arrayJson(const std::vector<T>& items) {
    Json array = Json::array();
    for (const T& item : items) array.push_back(item.toJson());
    return array;
}

template <class T>
std::vector<T> arrayFromJson(const JsonDecoder& json) {
    auto elements = json.elements();
    std::vector<T> items;
    items.reserve(elements.size());
    for (const JsonDecoder& element : elements) items.push_back(T::fromJson(element));
    return items;
}

template <class T>
std::optional<T> decode(std::string_view bytes) {
    const auto document = JsonDocument::parse(bytes);
    if (!document) return std::nullopt;
    try {
        return T::fromJson(JsonDecoder(*document));
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

}  // namespace

// MARK: Request

const char* Request::rawValue(Section section) {
    switch (section) {
    case Section::now: return "now";
    case Section::later: return "later";
    case Section::all: return "all";
    }
    return "now";
}

std::optional<Request::Section> Request::sectionFromRaw(std::string_view raw) {
    for (Section section : {Section::now, Section::later, Section::all}) {
        if (raw == rawValue(section)) return section;
    }
    return std::nullopt;
}

Json Request::toJson() const {
    const Json empty = Json::object();
    return std::visit(
        Overloaded{
            [](const Add& add) -> Json { return {{"add", {{"text", add.text}, {"dryRun", add.dryRun}}}}; },
            [](const List& list) -> Json { return {{"list", {{"_0", rawValue(list.section)}}}}; },
            [](const Done& done) -> Json { return {{"done", {{"ref", done.ref}}}}; },
            [](const Snooze& snooze) -> Json {
                return {{"snooze", {{"ref", snooze.ref}, {"until", snooze.until}}}};
            },
            [](const Delete& del) -> Json { return {{"delete", {{"ref", del.ref}}}}; },
            [](const AddPlace& place) -> Json {
                Json payload = {{"name", place.name}, {"here", place.here}};
                if (place.search) payload["search"] = *place.search;
                if (place.radius) payload["radius"] = *place.radius;
                return {{"addPlace", payload}};
            },
            [](const RemovePlace& place) -> Json { return {{"removePlace", {{"name", place.name}}}}; },
            [](const SetSetting& set) -> Json { return {{"setSetting", {{"key", set.key}, {"value", set.value}}}}; },
            [&](const Lists&) -> Json { return {{"lists", empty}}; },
            [&](const Doctor&) -> Json { return {{"doctor", empty}}; },
            [&](const Places&) -> Json { return {{"places", empty}}; },
            [&](const Settings&) -> Json { return {{"settings", empty}}; },
        },
        value);
}

Request Request::fromJson(const JsonDecoder& json) {
    const std::string key = json.singleCase({"add", "list", "done", "snooze", "delete", "addPlace", "removePlace",
                                             "setSetting", "lists", "doctor", "places", "settings"});
    const JsonDecoder payload = caseObject(json, key);
    if (key == "add") return {Add{payload["text"].string(), payload["dryRun"].boolean()}};
    if (key == "list") {
        const JsonDecoder sectionJson = payload["_0"];
        const std::string raw = sectionJson.string();
        const auto section = sectionFromRaw(raw);
        if (!section) sectionJson.fail("Cannot initialize Section from invalid String value " + raw);
        return {List{*section}};
    }
    if (key == "done") return {Done{payload["ref"].string()}};
    if (key == "snooze") return {Snooze{payload["ref"].string(), payload["until"].string()}};
    if (key == "delete") return {Delete{payload["ref"].string()}};
    if (key == "addPlace") {
        AddPlace place;
        place.name = payload["name"].string();
        if (auto search = payload.optional("search")) place.search = search->string();
        place.here = payload["here"].boolean();
        if (auto radius = payload.optional("radius")) place.radius = radius->number();
        return {place};
    }
    if (key == "removePlace") return {RemovePlace{payload["name"].string()}};
    if (key == "setSetting") return {SetSetting{payload["key"].string(), payload["value"].string()}};
    if (key == "lists") return {Lists{}};
    if (key == "doctor") return {Doctor{}};
    if (key == "places") return {Places{}};
    return {Settings{}};
}

// MARK: WireError

const char* WireError::rawValue(Code code) {
    switch (code) {
    case Code::invalid: return "invalid";
    case Code::notFound: return "not-found";
    case Code::permission: return "permission";
    case Code::partial: return "partial";
    case Code::unreachable: return "unreachable";
    }
    return "invalid";
}

int WireError::exitStatus(Code code) { return static_cast<int>(code) + 1; }

std::optional<WireError::Code> WireError::codeFromRaw(std::string_view raw) {
    for (Code code : {Code::invalid, Code::notFound, Code::permission, Code::partial, Code::unreachable}) {
        if (raw == rawValue(code)) return code;
    }
    return std::nullopt;
}

Json WireError::toJson() const { return {{"code", rawValue(code)}, {"message", message}}; }

WireError WireError::fromJson(const JsonDecoder& json) {
    const JsonDecoder codeJson = json["code"];
    const std::string raw = codeJson.string();
    const auto code = codeFromRaw(raw);
    if (!code) codeJson.fail("Cannot initialize Code from invalid String value " + raw);
    return WireError{*code, json["message"].string()};
}

// MARK: Response

Json Response::toJson() const {
    Json json = {{"schema", schema}};
    if (reminders) json["reminders"] = arrayJson(*reminders);
    if (reminder) json["reminder"] = reminder->toJson();
    if (parse) json["parse"] = parse->toJson();
    if (lists) json["lists"] = arrayJson(*lists);
    if (doctor) json["doctor"] = doctor->toJson();
    if (places) json["places"] = arrayJson(*places);
    if (settings) json["settings"] = settings->toJson();
    if (error) json["error"] = error->toJson();
    return json;
}

// The schema must be an integer, but any value reads: a newer peer still gets through.
Response Response::fromJson(const JsonDecoder& json) {
    Response response;
    response.schema = json["schema"].integer();
    if (auto value = json.optional("reminders")) response.reminders = arrayFromJson<ReminderDTO>(*value);
    if (auto value = json.optional("reminder")) response.reminder = ReminderDTO::fromJson(*value);
    if (auto value = json.optional("parse")) response.parse = ParseOutput::fromJson(*value);
    if (auto value = json.optional("lists")) response.lists = arrayFromJson<ListDTO>(*value);
    if (auto value = json.optional("doctor")) response.doctor = DoctorDTO::fromJson(*value);
    if (auto value = json.optional("places")) response.places = arrayFromJson<PlaceDTO>(*value);
    if (auto value = json.optional("settings")) response.settings = SettingsDTO::fromJson(*value);
    if (auto value = json.optional("error")) response.error = WireError::fromJson(*value);
    return response;
}

// MARK: Bytes

std::optional<std::string> encodeWire(const Request& request) { return JsonText::compact(request.toJson()); }

std::optional<std::string> encodeWire(const Response& response) { return JsonText::compact(response.toJson()); }

std::optional<Request> decodeRequest(std::string_view bytes) { return decode<Request>(bytes); }

std::optional<Response> decodeResponse(std::string_view bytes) { return decode<Response>(bytes); }
