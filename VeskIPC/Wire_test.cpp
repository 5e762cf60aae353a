#include "VeskIPC/Wire.h"

#include <cmath>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Platform/Json.h"

TEST(WireRequest, EveryCaseHasItsExactShapeAndPeersMayAddMembers) {
    using R = Request;
    const std::pair<Request, std::string> cases[] = {
        {{R::Add{"call mom", false}}, R"({"add":{"dryRun":false,"text":"call mom"}})"},
        {{R::Add{"say \"hi\"/bye\n", true}}, R"({"add":{"dryRun":true,"text":"say \"hi\"/bye\n"}})"},
        {{R::List{R::Section::now}}, R"({"list":{"_0":"now"}})"},
        {{R::List{R::Section::later}}, R"({"list":{"_0":"later"}})"},
        {{R::List{R::Section::all}}, R"({"list":{"_0":"all"}})"},
        {{R::Snooze{"3", "1h"}}, R"({"snooze":{"ref":"3","until":"1h"}})"},
        {{R::Done{"3"}}, R"({"done":{"ref":"3"}})"},
        {{R::Delete{"3"}}, R"({"delete":{"ref":"3"}})"},
        {{R::AddPlace{"home", "1 Main St", false, 150}},
         R"({"addPlace":{"here":false,"name":"home","radius":150,"search":"1 Main St"}})"},
        {{R::AddPlace{"home", std::nullopt, true, std::nullopt}}, R"({"addPlace":{"here":true,"name":"home"}})"},
        {{R::AddPlace{"home", std::nullopt, true, 0.5}}, R"({"addPlace":{"here":true,"name":"home","radius":0.5}})"},
        {{R::RemovePlace{"home"}}, R"({"removePlace":{"name":"home"}})"},
        {{R::SetSetting{"repeat", "30"}}, R"({"setSetting":{"key":"repeat","value":"30"}})"},
        {{R::Lists{}}, R"({"lists":{}})"},
        {{R::Doctor{}}, R"({"doctor":{}})"},
        {{R::Places{}}, R"({"places":{}})"},
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
    // Not one request of a known case.
    for (const char* document :
         {"not json", "[]", "{}", R"({"extra":{}})", R"({"lists":null})", R"({"lists":[]})", R"({"doctor":true})",
          R"({"add":{"text":"x","dryRun":true},"done":{"ref":"3"}})", "{\"done\":{\"ref\":\"\xff\"}}", ""})
        EXPECT_EQ(decodeRequest(document), std::nullopt) << document;
    // A member missing, or of another type or value.
    for (const char* document :
         {R"({"list":{"_0":"soon"}})", R"({"list":{"_0":"NOW"}})", R"({"list":{}})", R"({"add":{"text":"x"}})",
          R"({"add":{"text":1,"dryRun":false}})", R"({"add":{"text":"x","dryRun":"false"}})",
          R"({"addPlace":{"name":"home","here":"yes"}})", R"({"addPlace":{"name":"home","here":true,"radius":"big"}})",
          R"({"addPlace":{"name":"home","here":true,"search":5}})", R"({"snooze":{"ref":"3"}})",
          R"({"setSetting":{"key":"repeat","value":30}})"})
        EXPECT_EQ(decodeRequest(document), std::nullopt) << document;
}

// Every record in its exact shape, read back as it was, and the same as the tree that
// --json prints. The full reminder and the minimal ones are written straight, not through a tree.
TEST(WireResponse, EveryRecordHasItsExactShapeAndRoundTrips) {
    Response minimal, full;
    minimal.error = WireError{WireError::Code::notFound, "No reminder matches “milk”."};
    minimal.doctor = DoctorDTO{"full", "allowed", true, "any-list", {}, {}, 0, "Studio", "1.0", {}, {}};
    minimal.lists = std::vector<ListDTO>{};
    minimal.places = std::vector<PlaceDTO>{{"p1", "home", 52.37, 4.89, 100, {}, 0}};
    minimal.reminders = std::vector<ReminderDTO>{};
    full.reminders = std::vector<ReminderDTO>{
        {3, "x-1", "call mom", "Family", "now", "overdue", "09:00", "2026-03-14T09:00", "repeat", 900, "home", "mac",
         "repeat every 15 min until done"},
        {4, "x-2", "milk \"2%\"\n\u00e9\x01/", {}, "later", "waiting", {}, {}, "once", {}, {}, {}, ""}};
    full.reminder = ReminderDTO{1, "i", "t", {}, "now", "due", {}, {}, "once", {}, {}, {}, ""};
    full.parse = ParseOutput();
    full.parse->title = "milk";
    full.parse->style = "once";
    full.lists = std::vector<ListDTO>{{"l1", "Home", false}, {"l2", "Work", true}};
    full.doctor =
        DoctorDTO{"full", "allowed", false, "any-list", "Home", {"Work", "Old"}, 12, "Studio", "1.2", "ok", "ready"};
    full.places = std::vector<PlaceDTO>{{"p1", "home", 52.37, 4.89, 100, "1 Main St", 2}};
    full.settings = SettingsDTO{60, 15, 10, 9, 9, "22:00-07:00"};
    full.error = WireError{WireError::Code::partial, "Saved, but the list was not changed."};
    const std::pair<Response, std::string> cases[] = {
        {Response{}, R"({"schema":1})"},
        {minimal,
         R"({"doctor":{"device":"Studio","ignoredLists":[],"notifications":"allowed","relayOnly":true,"reminders":0,)"
         R"("remindersAccess":"full","version":"1.0","writes":"any-list"},)"
         R"("error":{"code":"not-found","message":"No reminder matches “milk”."},"lists":[],)"
         R"("places":[{"id":"p1","latitude":52.37,"longitude":4.89,"name":"home","radiusMeters":100,"reminders":0}],)"
         R"("reminders":[],"schema":1})"},
        {full,
         R"({"doctor":{"defaultList":"Home","device":"Studio","ignoredLists":["Work","Old"],"model":"ready",)"
         R"("notifications":"allowed","relayOnly":false,"reminders":12,"remindersAccess":"full","sync":"ok",)"
         R"("version":"1.2","writes":"any-list"},)"
         R"("error":{"code":"partial","message":"Saved, but the list was not changed."},)"
         R"("lists":[{"id":"l1","ignored":false,"name":"Home"},{"id":"l2","ignored":true,"name":"Work"}],)"
         R"("parse":{"needsModel":false,"readByModel":false,"style":"once","title":"milk","unresolved":[]},)"
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

TEST(WireResponse, RefusesMalformedMessagesWhole) {
    for (const char* document :
         {"{}", R"({"schema":"1"})", R"({"schema":1.5})", R"({"schema":null})", "[1]", "{\"schema\":1",
          R"({"schema":1,"error":{"code":"gone","message":"x"}})", R"({"schema":1,"error":{"code":"invalid"}})",
          R"({"schema":1,"reminders":{}})", R"({"schema":1,"reminders":[{"number":1}]})",
          R"({"schema":1,"settings":{"repeatMinutes":60}})",
          R"({"schema":1,"lists":[{"id":"1","name":"Home","ignored":"no"}]})",
          R"({"schema":1,"doctor":{"remindersAccess":"full"}})", R"({"schema":1,"parse":{"title":"x"}})",
          R"({"schema":1,"places":[{"id":"1","name":"Home","latitude":1,"longitude":2,"radiusMeters":100}]})"})
        EXPECT_EQ(decodeResponse(document), std::nullopt) << document;
}

// Beside the reports the command line shows end to end: absent, and case-sensitive words.
TEST(WireDoctor, HealthyNeedsFullAccessAndNotDenied) {
    DoctorDTO doctor;
    doctor.remindersAccess = "full";
    EXPECT_TRUE(doctor.healthy()) << "notifications unknown";
    doctor.notifications = "Denied";
    EXPECT_TRUE(doctor.healthy());
    doctor.remindersAccess = "Full";
    EXPECT_FALSE(doctor.healthy());
}

TEST(WireEncoding, NonFiniteNumbersHaveNoWireForm) {
    EXPECT_EQ(encodeWire(Request{Request::AddPlace{"home", {}, false, std::nan("")}}), std::nullopt);
    Response response;
    response.places = std::vector<PlaceDTO>{{"p1", "home", INFINITY, 0, 100, {}, 0}};
    EXPECT_EQ(encodeWire(response), std::nullopt);
}
