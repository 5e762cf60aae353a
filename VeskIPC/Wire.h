#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "Platform/JsonDecoder.h"
#include "VeskIPC/ParseOutput.h"

// The messages between the command line and the app: one Request, one Response.

struct Request {
    enum class Section { now, later, all };

    struct Add { std::string text; bool dryRun = false; bool operator==(const Add&) const = default; };
    struct List { Section section = Section::now; bool operator==(const List&) const = default; };
    struct Done { std::string ref; bool operator==(const Done&) const = default; };
    struct Snooze { std::string ref; std::string until; bool operator==(const Snooze&) const = default; };
    struct Delete { std::string ref; bool operator==(const Delete&) const = default; };
    struct AddPlace {
        std::string name;
        std::optional<std::string> search;
        bool here = false;
        std::optional<double> radius;
        bool operator==(const AddPlace&) const = default;
    };
    struct RemovePlace { std::string name; bool operator==(const RemovePlace&) const = default; };
    struct SetSetting { std::string key; std::string value; bool operator==(const SetSetting&) const = default; };
    struct Lists { bool operator==(const Lists&) const = default; };
    struct Doctor { bool operator==(const Doctor&) const = default; };
    struct Places { bool operator==(const Places&) const = default; };
    struct Settings { bool operator==(const Settings&) const = default; };

    std::variant<Add, List, Done, Snooze, Delete, AddPlace, RemovePlace, SetSetting, Lists, Doctor, Places, Settings> value;

    bool operator==(const Request&) const = default;

    static const char* rawValue(Section section);  // "now", "later", "all"
    static std::optional<Section> sectionFromRaw(std::string_view raw);

    nlohmann::json toJson() const;
    static Request fromJson(const JsonDecoder& json);
};

struct WireError {
    enum class Code { invalid, notFound, permission, partial, unreachable };
    Code code = Code::invalid;
    std::string message;

    bool operator==(const WireError&) const = default;

    static const char* rawValue(Code code);  // "invalid", "not-found", ...
    static int exitStatus(Code code);        // 1 to 5, the position of the case
    static std::optional<Code> codeFromRaw(std::string_view raw);

    nlohmann::json toJson() const;
    static WireError fromJson(const JsonDecoder& json);
};

struct ReminderDTO {
    int64_t number = 0;
    std::string id;
    std::string title;
    std::optional<std::string> list;
    std::string section;
    std::string status;
    std::optional<std::string> at;
    std::optional<std::string> due;
    std::string style;
    std::optional<int64_t> repeatIntervalSeconds;
    std::optional<std::string> place;
    std::optional<std::string> device;
    std::string detail;

    bool operator==(const ReminderDTO&) const = default;
    nlohmann::json toJson() const;
    static ReminderDTO fromJson(const JsonDecoder& json);
};

struct PlaceDTO {
    std::string id;
    std::string name;
    double latitude = 0;
    double longitude = 0;
    double radiusMeters = 0;
    std::optional<std::string> address;
    int64_t reminders = 0;

    bool operator==(const PlaceDTO&) const = default;
    nlohmann::json toJson() const;
    static PlaceDTO fromJson(const JsonDecoder& json);
};

struct SettingsDTO {
    int64_t repeatMinutes = 0;
    int64_t nagMinutes = 0;
    int64_t staggerMinutes = 0;
    int64_t alarmRepeatMinutes = 0;
    int64_t dateOnlyHour = 0;
    std::string night;

    bool operator==(const SettingsDTO&) const = default;
    nlohmann::json toJson() const;
    static SettingsDTO fromJson(const JsonDecoder& json);
};

struct ListDTO {
    std::string id;
    std::string name;
    bool ignored = false;

    bool operator==(const ListDTO&) const = default;
    nlohmann::json toJson() const;
    static ListDTO fromJson(const JsonDecoder& json);
};

struct DoctorDTO {
    std::string remindersAccess;
    std::string notifications;
    bool relayOnly = false;
    std::string writes;
    std::optional<std::string> defaultList;
    std::vector<std::string> ignoredLists;
    int64_t reminders = 0;
    std::string device;
    std::string version;
    std::optional<std::string> sync;
    std::optional<std::string> model;

    bool operator==(const DoctorDTO&) const = default;
    bool healthy() const { return remindersAccess == "full" && notifications != "denied"; }
    nlohmann::json toJson() const;
    static DoctorDTO fromJson(const JsonDecoder& json);
};

struct Response {
    int64_t schema = 1;
    std::optional<std::vector<ReminderDTO>> reminders;
    std::optional<ReminderDTO> reminder;
    std::optional<ParseOutput> parse;
    std::optional<std::vector<ListDTO>> lists;
    std::optional<DoctorDTO> doctor;
    std::optional<std::vector<PlaceDTO>> places;
    std::optional<SettingsDTO> settings;
    std::optional<WireError> error;

    bool operator==(const Response&) const = default;
    nlohmann::json toJson() const;
    static Response fromJson(const JsonDecoder& json);
};

// Bytes on the wire: compact JSON. Encoding is absent when a number is not finite;
// decoding is absent for anything that is not a valid message of the right shape.
std::optional<std::string> encodeWire(const Request& request);
std::optional<std::string> encodeWire(const Response& response);
std::optional<Request> decodeRequest(std::string_view bytes);
std::optional<Response> decodeResponse(std::string_view bytes);
