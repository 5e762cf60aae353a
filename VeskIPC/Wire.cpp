#include "VeskIPC/Wire.h"

#include <nlohmann/json.hpp>

#include "Platform/Json.h"

namespace {

template <class... Ts>
struct Overloaded : Ts... {
    using Ts::operator()...;
};
template <class... Ts>
Overloaded(Ts...) -> Overloaded<Ts...>;

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

namespace {

// Every field of a response but its reminders.
Json withoutReminders(const Response& response) {
    Json json = {{"schema", response.schema}};
    if (response.parse) json["parse"] = response.parse->toJson();
    if (response.lists) json["lists"] = arrayJson(*response.lists);
    if (response.doctor) json["doctor"] = response.doctor->toJson();
    if (response.places) json["places"] = arrayJson(*response.places);
    if (response.settings) json["settings"] = response.settings->toJson();
    if (response.error) json["error"] = response.error->toJson();
    return json;
}

// A reminder written straight into the text, its keys in the order the tree would sort them.
void appendReminder(std::string& out, const ReminderDTO& reminder) {
    char separator = '{';
    auto key = [&](const char* name) {
        out += separator;
        separator = ',';
        out += '"';
        out += name;
        out += "\":";
    };
    auto text = [&](const char* name, std::string_view value) {
        key(name);
        JsonText::appendString(out, value);
    };
    auto optionalText = [&](const char* name, const std::optional<std::string>& value) {
        if (value) text(name, *value);
    };
    optionalText("at", reminder.at);
    text("detail", reminder.detail);
    optionalText("device", reminder.device);
    optionalText("due", reminder.due);
    text("id", reminder.id);
    optionalText("list", reminder.list);
    key("number");
    out += std::to_string(reminder.number);
    optionalText("place", reminder.place);
    if (reminder.repeatIntervalSeconds) {
        key("repeatIntervalSeconds");
        out += std::to_string(*reminder.repeatIntervalSeconds);
    }
    text("section", reminder.section);
    text("status", reminder.status);
    text("style", reminder.style);
    text("title", reminder.title);
    out += '}';
}

}  // namespace

Json Response::toJson() const {
    Json json = withoutReminders(*this);
    if (reminders) json["reminders"] = arrayJson(*reminders);
    if (reminder) json["reminder"] = reminder->toJson();
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

// A listing is most of what the app ever sends: its reminders go straight into the text
// rather than through a tree of maps, which took longer than making the listing. The
// members come in the sorted order the tree gives them.
std::optional<std::string> encodeWire(const Response& response) {
    std::string text;
    bool written = true;
    auto member = [&](const char* key) {
        text += text.empty() ? "{\"" : ",\"";
        text += key;
        text += "\":";
    };
    auto small = [&](const char* key, const Json& value) {
        member(key);
        auto compact = JsonText::compact(value);
        written = written && compact;
        if (compact) text += *compact;
    };
    if (response.doctor) small("doctor", response.doctor->toJson());
    if (response.error) small("error", response.error->toJson());
    if (response.lists) small("lists", arrayJson(*response.lists));
    if (response.parse) small("parse", response.parse->toJson());
    if (response.places) small("places", arrayJson(*response.places));
    if (response.reminder) {
        member("reminder");
        appendReminder(text, *response.reminder);
    }
    if (response.reminders) {
        member("reminders");
        text.reserve(text.size() + response.reminders->size() * 320);
        text += '[';
        for (size_t i = 0; i < response.reminders->size(); ++i) {
            if (i) text += ',';
            appendReminder(text, (*response.reminders)[i]);
        }
        text += ']';
    }
    member("schema");
    text += std::to_string(response.schema);
    if (response.settings) small("settings", response.settings->toJson());
    text += '}';
    if (!written) return std::nullopt;
    return text;
}

std::optional<Request> decodeRequest(std::string_view bytes) { return decodeJson<Request>(bytes); }

std::optional<Response> decodeResponse(std::string_view bytes) { return decodeJson<Response>(bytes); }
