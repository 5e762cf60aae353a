#include "VeskIPC/Wire.h"

#include <cmath>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Platform/Json.h"

TEST(WireRequest, EveryCaseHasItsExactShapeAndPeersMayAddMembers) {
    using R = Request;
    using S = Request::Section;
    // clang-format off
    const std::pair<Request, std::string> cases[] = {
        {{R::Add{"call mom", false}}, R"({"add":{"dryRun":false,"text":"call mom"}})"},
        {{R::List{S::now}}, R"({"list":{"_0":"now"}})"},   {{R::List{S::later}}, R"({"list":{"_0":"later"}})"},
        {{R::List{S::all}}, R"({"list":{"_0":"all"}})"},   {{R::Done{"3"}}, R"({"done":{"ref":"3"}})"},
        {{R::Delete{"3"}}, R"({"delete":{"ref":"3"}})"},   {{R::RemovePlace{"h"}}, R"({"removePlace":{"name":"h"}})"},
        {{R::Snooze{"3", "1h"}}, R"({"snooze":{"ref":"3","until":"1h"}})"},
        {{R::AddPlace{"home", "1 Main St", false, 150}},
         R"({"addPlace":{"here":false,"name":"home","radius":150,"search":"1 Main St"}})"},
        {{R::AddPlace{"home", std::nullopt, true, std::nullopt}}, R"({"addPlace":{"here":true,"name":"home"}})"},
        {{R::SetSetting{"repeat", "30"}}, R"({"setSetting":{"key":"repeat","value":"30"}})"},
        {{R::Lists{}}, R"({"lists":{}})"},                 {{R::Doctor{}}, R"({"doctor":{}})"},
        {{R::Places{}}, R"({"places":{}})"},               {{R::Settings{}}, R"({"settings":{}})"},
    };
    // clang-format on
    for (const auto& [request, json] : cases) {
        EXPECT_EQ(encodeWire(request), json);
        EXPECT_EQ(decodeRequest(json), request) << json;
    }
    // What reads though it is never written: members a newer peer adds, nulls.
    const std::pair<std::string, Request> decoded[] = {
        {R"({"add":{"text":"x","dryRun":true},"extra":{}})", {R::Add{"x", true}}},
        {R"({"add":{"text":"x","dryRun":true,"model":"big"}})", {R::Add{"x", true}}},
        {R"({"addPlace":{"name":"home","here":true,"search":null,"radius":null}})",
         {R::AddPlace{"home", {}, true, {}}}},
    };
    for (const auto& [json, request] : decoded) EXPECT_EQ(decodeRequest(json), request) << json;
}

TEST(WireRequest, RefusesAnythingElse) {
    for (const char* document :
         {// Not one request of a known case.
          R"({"extra":{}})", R"({"lists":null})", R"({"add":{"text":"x","dryRun":true},"done":{"ref":"3"}})",
          // A member missing, of another type, or a section by another name.
          R"({"add":{"text":"x"}})", R"({"setSetting":{"key":"repeat","value":30}})", R"({"list":{"_0":"NOW"}})"})
        EXPECT_EQ(decodeRequest(document), std::nullopt) << document;
}

// Every record in its exact shape, read back as it was, and the same as the tree that
// --json prints. Reminders are written straight, not through a tree: x-2 shows their absent members.
TEST(WireResponse, EveryRecordHasItsExactShapeAndRoundTrips) {
    Response full;
    full.reminders = std::vector<ReminderDTO>{
        {3, "x-1", "call mom", "Family", "now", "overdue", "09:00", "2026-03-14T09:00", "repeat", 900, "home", "mac",
         "repeat every 15 min until done"},
        {4, "x-2", "milk \"2%\"\n\u00e9\x01/", {}, "later", "waiting", {}, {}, "once", {}, {}, {}, ""}};
    full.reminder = ReminderDTO{1, "i", "t", {}, "now", "due", {}, {}, "once", {}, {}, {}, ""};
    full.parse = ParseOutput();
    full.lists = std::vector<ListDTO>{{"l1", "Home", false}, {"l2", "Work", true}};
    full.doctor =
        DoctorDTO{"full", "allowed", false, "any-list", "Home", {"Work", "Old"}, 12, "Studio", "1.2", "ok", "ready"};
    full.places = std::vector<PlaceDTO>{{"p1", "home", 52.37, 4.89, 100, "1 Main St", 2}};
    full.settings = SettingsDTO{60, 15, 10, 9, 9, "22:00-07:00"};
    full.error = WireError{WireError::Code::partial, "Saved, but the list was not changed."};
    const std::pair<Response, std::string> cases[] = {
        {Response{}, R"({"schema":1})"},
        {full,
         R"({"doctor":{"defaultList":"Home","device":"Studio","ignoredLists":["Work","Old"],"model":"ready",)"
         R"("notifications":"allowed","relayOnly":false,"reminders":12,"remindersAccess":"full","sync":"ok",)"
         R"("version":"1.2","writes":"any-list"},)"
         R"("error":{"code":"partial","message":"Saved, but the list was not changed."},)"
         R"("lists":[{"id":"l1","ignored":false,"name":"Home"},{"id":"l2","ignored":true,"name":"Work"}],)"
         R"("parse":{"needsModel":false,"readByModel":false,"style":"","title":"","unresolved":[]},)"
         R"("places":[{"address":"1 Main St","id":"p1","latitude":52.37,"longitude":4.89,"name":"home",)"
         R"("radiusMeters":100,"reminders":2}],)"
         R"("reminder":{"detail":"","id":"i","number":1,"section":"now","status":"due","style":"once","title":"t"},)"
         R"("reminders":[{"at":"09:00","detail":"repeat every 15 min until done","device":"mac",)"
         R"("due":"2026-03-14T09:00","id":"x-1","list":"Family","number":3,"place":"home",)"
         R"("repeatIntervalSeconds":900,"section":"now","status":"overdue","style":"repeat","title":"call mom"},)"
         R"({"detail":"","id":"x-2","number":4,"section":"later","status":"waiting","style":"once",)"
         R"("title":"milk \"2%\"\né\u0001/"}],"schema":1,)"
         R"("settings":{"alarmRepeatMinutes":9,"dateOnlyHour":9,"nagMinutes":15,"night":"22:00-07:00",)"
         R"("repeatMinutes":60,"staggerMinutes":10}})"},
    };
    for (const auto& [response, json] : cases) {
        EXPECT_EQ(encodeWire(response), json);
        EXPECT_EQ(decodeResponse(json), response) << json;
        EXPECT_EQ(Json::parse(json), response.toJson()) << json;
    }
    // What reads though it is never written: members a newer peer adds, nulls, a newer schema.
    for (const char* nothing :
         {R"({"schema":1,"whatever":true})", R"({"schema":1,"reminders":null,"parse":null,"error":null})"})
        EXPECT_EQ(decodeResponse(nothing), Response{}) << nothing;
    EXPECT_EQ(decodeResponse(R"({"schema":2})")->schema, 2);
}

// No schema, an error code by another name, a record without its members.
TEST(WireResponse, RefusesMalformedMessagesWhole) {
    for (const char* document :
         {"{}", R"({"schema":1,"error":{"code":"gone","message":"x"}})", R"({"schema":1,"reminders":[{"number":1}]})"})
        EXPECT_EQ(decodeResponse(document), std::nullopt) << document;
}

TEST(WireDoctor, HealthyNeedsFullAccessAndNotificationsNotDenied) {
    // Both words are compared as the app writes them, case and all.
    const std::tuple<const char*, const char*, bool> cases[] = {
        {"full", "", true}, {"full", "denied", false}, {"full", "Denied", true}, {"Full", "allowed", false}};
    for (const auto& [access, notifications, healthy] : cases) {
        DoctorDTO doctor;
        doctor.remindersAccess = access;
        doctor.notifications = notifications;
        EXPECT_EQ(doctor.healthy(), healthy) << access << " " << notifications;
    }
}

// A place's coordinates go through the writer of the small members, which must refuse them whole.
TEST(WireEncoding, NonFiniteNumbersHaveNoWireForm) {
    Response response;
    response.places = std::vector<PlaceDTO>{{"p1", "home", INFINITY, 0, 100, {}, 0}};
    EXPECT_EQ(encodeWire(response), std::nullopt);
}
