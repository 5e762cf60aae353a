// Places found by address and by where the machine is, and reminders that wait on them:
// the real app with a scripted geocoder on a loopback port and a fake GeoClue on a system
// bus of the test's own, delivering to a recording notification server.
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <thread>

#include <gtest/gtest.h>

#include "AppHarness.h"
#include "FakeGeoClue.h"
#include "GeocoderServer.h"
#include "PrivateBus.h"
#include "VeskIPC/Wire.h"

using namespace std::chrono_literals;

namespace {

constexpr double homeLatitude = 52.37022, homeLongitude = 4.89517;
constexpr double farLatitude = 52.0, farLongitude = 4.3;  // some 40 km away

bool eventually(const std::function<bool()>& done) {
    for (auto until = std::chrono::steady_clock::now() + 8s; !done(); std::this_thread::sleep_for(50ms))
        if (std::chrono::steady_clock::now() > until) return false;
    return true;
}

bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

int status(WireError::Code code) { return WireError::exitStatus(code); }

class Places : public testing::Test {
protected:
    Places() {
        app.environment["DBUS_SESSION_BUS_ADDRESS"] = session.address();
        app.environment["DBUS_SYSTEM_BUS_ADDRESS"] = system.address();
        const std::string folder = app.home() + "/.config/vesk";
        std::filesystem::create_directories(folder);
        std::ofstream(folder + "/config") << "geocoder-url = " << geocoder.url() << "\ngeocoder-timeout = 1\n";
        session.startServer();
    }
    ~Places() override { app.stop(); }  // while its buses are still there

    ProcessResult vesk(const std::vector<std::string>& arguments) { return app.vesk(arguments); }
    std::string out(const std::vector<std::string>& arguments) {
        ProcessResult result = app.vesk(arguments);
        EXPECT_EQ(result.status, 0) << arguments[0] << ": " << result.err;
        return result.out;
    }
    bool notified(const std::string& title) const {
        for (const auto& line : readLines(app.base() + "/shown"))
            if (has(line, "\t" + title + "\t")) return true;
        return false;
    }
    // Once the app follows the position and has its first fix, the next move is a crossing.
    void awaitFollowing() {
        ASSERT_TRUE(geoclue->waitFor([&] { return geoclue->started() >= 1 && geoclue->fixesSent() >= 1; }, 8s));
    }

    AppHarness app;
    PrivateBus session{app.base(), app.base() + "/shown"};
    PrivateBus system{app.base() + "/system", app.base() + "/system/shown"};
    GeocoderServer geocoder{52.3730796, 4.8924534, "Dam, Amsterdam"};
    std::optional<FakeGeoClue> geoclue{std::in_place, system.address()};
};

TEST_F(Places, FoundByAddressByCoordinatesAndWhereThisMachineIs) {
    EXPECT_EQ(out({"places", "add", "home", "--at", "Dam 1, Amsterdam"}), "Saved home: Dam, Amsterdam (100 m)\n");
    ASSERT_EQ(geocoder.requests().size(), 1u);
    EXPECT_TRUE(has(geocoder.requests()[0], "GET /search?q=Dam%201%2C%20Amsterdam&format=jsonv2&limit=1 "));
    EXPECT_EQ(geocoder.userAgent(), "vesk/0.2.0");
    // The same search again is answered from the store.
    EXPECT_EQ(out({"places", "add", "dam", "--at", " dam 1, AMSTERDAM"}), "Saved dam: Dam, Amsterdam (100 m)\n");
    EXPECT_EQ(out({"places", "add", "office", "--at", "52.3, 4.95"}), "Saved office: 52.30000, 4.95000 (100 m)\n");
    EXPECT_EQ(geocoder.requests().size(), 1u);

    geoclue->moveTo(52.35, 4.91, 15);
    EXPECT_EQ(out({"places", "add", "gym", "--here", "--radius", "50"}), "Saved gym: 52.35000, 4.91000 (50 m)\n");
    EXPECT_EQ(geoclue->desktopId(), "vesk");
    EXPECT_EQ(geoclue->accuracyLevel(), 6u);
    EXPECT_TRUE(geoclue->waitFor([&] { return geoclue->started() == 0; }));

    struct Refusal {
        GeocoderServer::Way way;
        int status;
        const char* says;
    };
    for (auto [way, code, says] :
         {Refusal{GeocoderServer::Way::findsNothing, status(WireError::Code::notFound),
                  "vesk: Vesk found no place for \u201cNowhere 1\u201d. Try a fuller"},
          Refusal{GeocoderServer::Way::garbage, status(WireError::Code::unreachable),
                  "it gave an answer that isn't JSON"},
          Refusal{GeocoderServer::Way::slow, status(WireError::Code::unreachable), "Timeout was reached"}}) {
        geocoder.way = way;
        ProcessResult refused = vesk({"places", "add", "nowhere", "--at", "Nowhere 1"});
        EXPECT_EQ(refused.status, code) << refused.err;
        EXPECT_TRUE(has(refused.err, says)) << refused.err;
    }

    geoclue->mode = FakeGeoClue::Mode::refuses;
    ProcessResult refused = vesk({"places", "add", "park", "--here"});
    EXPECT_EQ(refused.status, status(WireError::Code::permission)) << refused.err;
    EXPECT_TRUE(has(refused.err, "Allow location access")) << refused.err;
    geoclue.reset();
    ProcessResult absent = vesk({"places", "add", "park", "--here"});
    EXPECT_EQ(absent.status, status(WireError::Code::unreachable)) << absent.err;
    EXPECT_TRUE(has(absent.err, "(GeoClue) isn't running")) << absent.err;
    EXPECT_EQ(out({"places"}),
              "dam  Dam, Amsterdam (100 m)  0 reminders\ngym  52.35000, 4.91000 (50 m)  0 reminders\n"
              "home  Dam, Amsterdam (100 m)  0 reminders\noffice  52.30000, 4.95000 (100 m)  0 reminders\n");
}

TEST_F(Places, ArrivingHomeMakesTheReminderDue) {
    geoclue->moveTo(farLatitude, farLongitude);
    out({"places", "add", "home", "--at", "52.37022, 4.89517"});
    out({"remind me to water the plants when I get home"});
    EXPECT_TRUE(has(out({"later"}), "when you get to home \u00b7")) << out({"later"});
    awaitFollowing();
    EXPECT_FALSE(has(out({"now"}), "water the plants"));

    geoclue->moveTo(homeLatitude + 0.0003, homeLongitude);  // some 33 m from the centre
    EXPECT_TRUE(eventually([&] { return has(out({"now"}), "water the plants"); })) << out({"now"});
    EXPECT_TRUE(eventually([&] { return notified("water the plants"); }));
    // Nothing waits on a place any more: the position is no longer followed.
    EXPECT_TRUE(geoclue->waitFor([&] { return geoclue->started() == 0; }));
}

TEST_F(Places, TurningBackWithinTheDelayCallsTheDepartureOff) {
    geoclue->moveTo(homeLatitude, homeLongitude);
    out({"places", "add", "work", "--at", "52.37022, 4.89517"});
    out({"call mum when I leave work and give me 10 minutes"});
    const std::string waiting = "when you leave work \u00b7";
    awaitFollowing();

    geoclue->moveTo(farLatitude, farLongitude);
    EXPECT_TRUE(eventually([&] { return !has(out({"later"}), waiting); })) << out({"later"});
    geoclue->moveTo(homeLatitude, homeLongitude);
    EXPECT_TRUE(eventually([&] { return has(out({"later"}), waiting); })) << out({"later"});

    // Gone for good: ten minutes later, with the app started again, the reminder is due.
    geoclue->moveTo(farLatitude, farLongitude);
    EXPECT_TRUE(eventually([&] { return !has(out({"later"}), waiting); })) << out({"later"});
    app.stop();
    app.moment = "2026-11-18 10:11:00";
    app.start();
    EXPECT_TRUE(has(out({"now"}), "call mum")) << out({"now"});
    EXPECT_TRUE(eventually([&] { return notified("call mum"); }));
    EXPECT_FALSE(notified("water the plants"));
}

TEST_F(Places, AGateHoldsTheReminderBackUntilThere) {
    geoclue->moveTo(farLatitude, farLongitude);
    out({"places", "add", "gym", "--at", "52.37022, 4.89517"});
    out({"stretch today only at the gym"});
    awaitFollowing();
    EXPECT_TRUE(has(out({"now"}), "waiting for gym \u00b7")) << out({"now"});

    geoclue->moveTo(homeLatitude, homeLongitude);
    EXPECT_TRUE(eventually([&] { return !has(out({"now"}), "waiting for gym"); })) << out({"now"});
    EXPECT_TRUE(has(out({"now"}), "stretch")) << out({"now"});
    EXPECT_TRUE(eventually([&] { return notified("stretch"); }));
}

}  // namespace
