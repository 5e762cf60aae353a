#include "VeskIPC/Wire.h"

#include <cmath>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Platform/Json.h"

namespace {

ReminderDTO reminderDTO() {
    return ReminderDTO{3, "x-1", "call mom", "Family", "now", "overdue", "09:00", "2026-03-14T09:00", "repeat", 900,
                       "home", "mac", "repeat every 15 min until done"};
}

}  // namespace

TEST(WireRequest, EveryCaseHasItsExactShapeAndPeersMayAddMembers) {
    using R = Request;
    const std::pair<Request, std::string> cases[] = {
        {{R::Add{"call mom", false}}, R"({"add":{"dryRun":false,"text":"call mom"}})"},
        {{R::Add{"say \"hi\"/bye\n", true}}, R"({"add":{"dryRun":true,"text":"say \"hi\"/bye\n"}})"},
        {{R::List{R::Section::now}}, R"({"list":{"_0":"now"}})"},
        {{R::List{R::Section::later}}, R"({"list":{"_0":"later"}})"},
        {{R::List{R::Section::all}}, R"({"list":{"_0":"all"}})"},
        {{R::Snooze{"3", "1h"}}, R"({"snooze":{"ref":"3","until":"1h"}})"},
        {{R::Done{"3"}}, R"({"done":{"ref":"3"}})"}, {{R::Delete{"3"}}, R"({"delete":{"ref":"3"}})"},
        {{R::AddPlace{"home", "1 Main St", false, 150}},
         R"({"addPlace":{"here":false,"name":"home","radius":150,"search":"1 Main St"}})"},
        {{R::AddPlace{"home", std::nullopt, true, std::nullopt}}, R"({"addPlace":{"here":true,"name":"home"}})"},
        {{R::AddPlace{"home", std::nullopt, true, 0.5}}, R"({"addPlace":{"here":true,"name":"home","radius":0.5}})"},
        {{R::RemovePlace{"home"}}, R"({"removePlace":{"name":"home"}})"},
        {{R::SetSetting{"repeat", "30"}}, R"({"setSetting":{"key":"repeat","value":"30"}})"},
        {{R::Lists{}}, R"({"lists":{}})"}, {{R::Doctor{}}, R"({"doctor":{}})"}, {{R::Places{}}, R"({"places":{}})"},
        {{R::Settings{}}, R"({"settings":{}})"},
    };
    for (const auto& [request, json] : cases) {
        EXPECT_EQ(encodeWire(request), json);
        EXPECT_EQ(decodeRequest(json), request) << json;
    }
    // What reads though it is never written: members a newer peer adds, nulls, blanks.
    const std::pair<std::string, Request> decoded[] = {
        {R"({"add":{"text":"x","dryRun":true},"extra":{}})", {R::Add{"x", true}}},
        {R"({"add":{"text":"x","dryRun":true,"model":"big"}})", {R::Add{"x", true}}},
        {R"({"addPlace":{"name":"home","here":true,"search":null,"radius":null}})",
         {R::AddPlace{"home", {}, true, {}}}},
        {R"({"lists":{"verbose":true}})", {R::Lists{}}},
        {R"( {"doctor" : {}} )", {R::Doctor{}}},
    };
    for (const auto& [json, request] : decoded) EXPECT_EQ(decodeRequest(json), request) << json;
}

TEST(WireRequest, RefusesAnythingElse) {
    for (const char* document : {
             "", "not json", "[]", "{}", R"({"extra":{}})", R"({"add":{"text":"x","dryRun":true},"done":{"ref":"3"}})",
             R"({"list":{"_0":"soon"}})", R"({"list":{"_0":"NOW"}})", R"({"list":{}})", R"({"add":{"text":"x"}})",
             R"({"add":{"text":1,"dryRun":false}})", R"({"add":{"text":"x","dryRun":"false"}})", R"({"lists":null})",
             R"({"lists":[]})", R"({"doctor":true})", R"({"addPlace":{"name":"home","here":"yes"}})",
             R"({"addPlace":{"name":"home","here":true,"radius":"big"}})",
             R"({"addPlace":{"name":"home","here":true,"search":5}})", R"({"snooze":{"ref":"3"}})",
             R"({"setSetting":{"key":"repeat","value":30}})", "{\"done\":{\"ref\":\"\xff\"}}"})
        EXPECT_EQ(decodeRequest(document), std::nullopt) << document;
}

TEST(WireResponse, EmptyAndErrorForms) {
    Response failed, empty;
    failed.error = WireError{WireError::Code::notFound, "No reminder matches “milk”."};
    empty.reminders = std::vector<ReminderDTO>{};
    empty.places = std::vector<PlaceDTO>{};
    const std::pair<Response, std::string> cases[] = {
        {Response{}, R"({"schema":1})"},
        {failed, R"({"error":{"code":"not-found","message":"No reminder matches “milk”."},"schema":1})"},
        {empty, R"({"places":[],"reminders":[],"schema":1})"},
    };
    for (const auto& [response, json] : cases) {
        EXPECT_EQ(encodeWire(response), json);
        EXPECT_EQ(decodeResponse(json), response) << json;
    }
    for (const char* nothing :
         {R"({"schema":1,"whatever":true})", R"({"schema":1,"reminders":null,"parse":null,"error":null})"})
        EXPECT_EQ(decodeResponse(nothing), Response{}) << nothing;
    EXPECT_EQ(decodeResponse(R"({"schema":2})")->schema, 2);
}

TEST(WireResponse, RefusesMalformedMessagesWhole) {
    for (const char* document : {
             "{}", R"({"schema":"1"})", R"({"schema":1.5})", R"({"schema":null})", "[1]", "{\"schema\":1",
             R"({"schema":1,"error":{"code":"gone","message":"x"}})", R"({"schema":1,"error":{"code":"invalid"}})",
             R"({"schema":1,"reminders":{}})", R"({"schema":1,"reminders":[{"number":1}]})",
             R"({"schema":1,"settings":{"repeatMinutes":60}})",
             R"({"schema":1,"lists":[{"id":"1","name":"Home","ignored":"no"}]})",
             R"({"schema":1,"doctor":{"remindersAccess":"full"}})", R"({"schema":1,"parse":{"title":"x"}})",
             R"({"schema":1,"places":[{"id":"1","name":"Home","latitude":1,"longitude":2,"radiusMeters":100}]})"})
        EXPECT_EQ(decodeResponse(document), std::nullopt) << document;
}

TEST(WireResponse, EveryRecordRoundTrips) {
    Response response;
    response.reminders = std::vector<ReminderDTO>{
        reminderDTO(), ReminderDTO{4, "x-2", "milk \"2%\"\n\u00e9\x01/", {}, "later", "waiting", {}, {}, "once", {}, {}, {}, ""}};
    response.reminder = reminderDTO();
    ParseOutput parse;
    parse.title = "milk";
    parse.style = "once";
    response.parse = parse;
    response.lists = std::vector<ListDTO>{{"l1", "Home", false}, {"l2", "Work", true}};
    response.doctor =
        DoctorDTO{"full", "allowed", false, "any-list", "Home", {"Work", "Old"}, 12, "Studio", "1.2", "ok", "ready"};
    response.places = std::vector<PlaceDTO>{{"p1", "home", 52.37, 4.89, 100, "1 Main St", 2}};
    response.settings = SettingsDTO{60, 15, 10, 9, 9, "22:00-07:00"};
    response.error = WireError{WireError::Code::partial, "Saved, but the list was not changed."};
    const auto bytes = encodeWire(response);
    ASSERT_TRUE(bytes.has_value());
    EXPECT_EQ(decodeResponse(*bytes), response);
    EXPECT_EQ(Json::parse(*bytes), response.toJson()) << "reminders written straight say what the tree says";
}

TEST(WireRecords, ExactShapes) {
    struct Case { Json json; std::string expected; };
    const Case cases[] = {
        {reminderDTO().toJson(),
         R"({"at":"09:00","detail":"repeat every 15 min until done","device":"mac","due":"2026-03-14T09:00",)"
         R"("id":"x-1","list":"Family","number":3,"place":"home","repeatIntervalSeconds":900,"section":"now",)"
         R"("status":"overdue","style":"repeat","title":"call mom"})"},
        {ReminderDTO{1, "i", "t", {}, "now", "due", {}, {}, "once", {}, {}, {}, ""}.toJson(),
         R"({"detail":"","id":"i","number":1,"section":"now","status":"due","style":"once","title":"t"})"},
        {PlaceDTO{"p1", "home", 52.37, 4.89, 100, {}, 0}.toJson(),
         R"({"id":"p1","latitude":52.37,"longitude":4.89,"name":"home","radiusMeters":100,"reminders":0})"},
        {SettingsDTO{60, 15, 10, 9, 9, "off"}.toJson(),
         R"({"alarmRepeatMinutes":9,"dateOnlyHour":9,"nagMinutes":15,"night":"off","repeatMinutes":60,)"
         R"("staggerMinutes":10})"},
        {ListDTO{"l1", "Home", true}.toJson(), R"({"id":"l1","ignored":true,"name":"Home"})"},
        {DoctorDTO{"full", "allowed", true, "any-list", {}, {}, 0, "Studio", "1.0", {}, {}}.toJson(),
         R"({"device":"Studio","ignoredLists":[],"notifications":"allowed","relayOnly":true,)"
         R"("reminders":0,"remindersAccess":"full","version":"1.0","writes":"any-list"})"},
    };
    for (const auto& c : cases) EXPECT_EQ(JsonText::compact(c.json).value(), c.expected);
}

// Beside the reports the command line shows end to end: absent, and case-sensitive words.
TEST(WireDoctor, HealthyNeedsFullAccessAndNotDenied) {
    const std::tuple<const char*, const char*, bool> cases[] = {
        {"full", "", true}, {"Full", "allowed", false}, {"full", "Denied", true}};
    for (const auto& [access, notifications, healthy] : cases) {
        DoctorDTO doctor;
        doctor.remindersAccess = access, doctor.notifications = notifications;
        EXPECT_EQ(doctor.healthy(), healthy) << access << " " << notifications;
    }
}

TEST(WireEncoding, NonFiniteNumbersHaveNoWireForm) {
    EXPECT_EQ(encodeWire(Request{Request::AddPlace{"home", {}, false, std::nan("")}}), std::nullopt);
    Response response;
    response.places = std::vector<PlaceDTO>{{"p1", "home", INFINITY, 0, 100, {}, 0}};
    EXPECT_EQ(encodeWire(response), std::nullopt);
}
