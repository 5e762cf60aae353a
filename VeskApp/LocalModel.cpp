#include "VeskApp/LocalModel.h"

#include <stdexcept>

#include <nlohmann/json.hpp>

#include "Platform/Json.h"
#include "Platform/JsonDecoder.h"
#include "Platform/Text.h"
#include "VeskApp/Http.h"

namespace {

const char* const weekdayNames[] = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};

// The fields of ModelReading; every one present, null where the sentence says nothing.
Json schema() {
    auto nullable = [](const char* type) { return Json{{"type", Json::array({type, "null"})}}; };
    Json properties = {
        {"title", {{"type", "string"}}},
        {"dueDate", nullable("string")},
        {"dueTime", nullable("string")},
        {"style",
         {{"type", Json::array({"string", "null"})},
          {"enum", Json::array({"once", "repeat", "alarm", "escalate", nullptr})}}},
        {"repeatMinutes", nullable("integer")},
        {"recurrence",
         {{"type", Json::array({"string", "null"})},
          {"enum", Json::array({"daily", "weekly", "monthly", "yearly", nullptr})}}},
        {"recurrenceInterval", nullable("integer")},
        {"weekdays", {{"type", "array"}, {"items", {{"type", "integer"}}}}},
        {"arriveAt", nullable("string")},
        {"leaveFrom", nullable("string")},
        {"delayMinutes", nullable("integer")},
        {"onlyAt", nullable("string")},
    };
    Json required = Json::array();
    for (const auto& [key, value] : properties.items()) required.push_back(key);
    return {{"type", "object"}, {"properties", properties}, {"required", required}, {"additionalProperties", false}};
}

std::string prompt(const std::string& sentence, Date now, const Calendar& calendar,
                   const std::vector<std::string>& places) {
    const DateComponents today = calendar.components(now);
    const std::string moment =
        Text::format("%s %04lld-%02lld-%02lld, %02lld:%02lld",
                     weekdayNames[(calendar.component(CalendarComponent::weekday, now) + 6) % 7],
                     static_cast<long long>(today.year.value_or(0)), static_cast<long long>(today.month.value_or(0)),
                     static_cast<long long>(today.day.value_or(0)), static_cast<long long>(today.hour.value_or(0)),
                     static_cast<long long>(today.minute.value_or(0)));
    std::string known = "home, work";
    for (const auto& place : places) known += ", " + place;
    return "It is " + moment + " in the time zone " + calendar.timeZoneId() + ". The user's places are: " + known +
           ".\n"
           "Read this reminder and give only what its words say; leave every other field null (weekdays empty).\n"
           "title: the thing to do, without the date, time and nagging words. dueDate: YYYY-MM-DD. "
           "dueTime: HH:MM, 24-hour. style: once, repeat (with repeatMinutes), alarm or escalate. "
           "recurrence: daily, weekly, monthly or yearly, with recurrenceInterval and, for weekly, "
           "weekdays (1 Sunday to 7 Saturday). arriveAt, leaveFrom: a place that triggers it, with delayMinutes. "
           "onlyAt: a place it applies at.\n"
           "Reminder: " +
           sentence;
}

}  // namespace

std::string LocalModel::request(const std::string& name, const std::string& sentence, Date now,
                                const Calendar& calendar, const std::vector<std::string>& places) {
    Json body = {
        {"messages", Json::array({{{"role", "user"}, {"content", prompt(sentence, now, calendar, places)}}})},
        {"temperature", 0},
        {"response_format",
         {{"type", "json_schema"}, {"json_schema", {{"name", "reminder"}, {"strict", true}, {"schema", schema()}}}}},
    };
    if (!name.empty()) body["model"] = name;
    return JsonText::compact(body).value();
}

ModelReading LocalModel::reading(std::string_view answer) {
    const auto outer = JsonDocument::parse(answer);
    if (!outer) throw std::runtime_error("the model's answer is no JSON");
    const auto choices = JsonDecoder(*outer)["choices"].elements();
    if (choices.empty()) throw std::runtime_error("the model's answer has no choice");
    const std::string content = choices.front()["message"]["content"].string();
    const auto document = JsonDocument::parse(content);
    if (!document) throw std::runtime_error("the model's reading is no JSON");
    const JsonDecoder json(*document);
    json.requireObject();
    ModelReading reading;
    reading.title = json["title"].string();
    reading.dueDate = json.optionalString("dueDate");
    reading.dueTime = json.optionalString("dueTime");
    reading.style = json.optionalString("style");
    reading.repeatMinutes = json.optionalInteger("repeatMinutes");
    reading.recurrence = json.optionalString("recurrence");
    reading.recurrenceInterval = json.optionalInteger("recurrenceInterval");
    if (auto weekdays = json.optional("weekdays"))
        for (const JsonDecoder& day : weekdays->elements()) reading.weekdays.push_back(day.integer());
    reading.arriveAt = json.optionalString("arriveAt");
    reading.leaveFrom = json.optionalString("leaveFrom");
    reading.delayMinutes = json.optionalInteger("delayMinutes");
    reading.onlyAt = json.optionalString("onlyAt");
    return reading;
}

ModelReading LocalModel::read(const std::string& sentence, Date now, const Calendar& calendar,
                              const std::vector<std::string>& places, std::stop_token stop) const {
    auto result = Http::postJson(url_ + "/chat/completions", request(name_, sentence, now, calendar, places),
                                 timeoutSeconds_, stop);
    if (auto* problem = std::get_if<std::string>(&result)) throw std::runtime_error(*problem);
    const auto& answer = std::get<Http::Answer>(result);
    if (answer.status != 200) throw std::runtime_error("the model server answered " + std::to_string(answer.status));
    return reading(answer.body);
}

std::string LocalModel::status() const {
    std::lock_guard guard(statusLock_);
    const auto now = std::chrono::steady_clock::now();
    if (status_.empty() || now - lookedAt_ > std::chrono::seconds(10)) {
        status_ = look();
        lookedAt_ = now;
    }
    return status_;
}

std::string LocalModel::look() const {
    constexpr double quick = 1;
    // The model's name as configured, else the first the server lists.
    auto ready = [&](const Http::Result& models) {
        std::string name = name_;
        if (const auto* answer = std::get_if<Http::Answer>(&models); name.empty() && answer && answer->status == 200) {
            try {
                if (const auto document = JsonDocument::parse(answer->body)) {
                    const auto listed = JsonDecoder(*document)["data"].elements();
                    if (!listed.empty()) name = listed.front()["id"].string();
                }
            } catch (const std::exception&) {
            }
        }
        return "ready (" + (name.empty() ? std::string("the server's model") : name) + ")";
    };
    // A server's /health sits beside its API: http://host:port/health for http://host:port/v1.
    std::string root = url_;
    if (root.ends_with("/v1")) root.resize(root.size() - 3);
    const auto health = Http::get(root + "/health", quick);
    if (const auto* answer = std::get_if<Http::Answer>(&health)) {
        if (answer->status == 503) return "loading";
        if (answer->status == 200) return ready(name_.empty() ? Http::get(url_ + "/models", quick) : health);
    }
    const auto models = Http::get(url_ + "/models", quick);
    if (const auto* answer = std::get_if<Http::Answer>(&models); answer && answer->status == 200) return ready(models);
    return "unreachable (" + url_ + ")";
}
