// Places found by address and by where the machine is, and reminders that wait on them:
// the real app with a scripted geocoder on a loopback port and a fake GeoClue on a system
// bus of the test's own, delivering to a recording notification server.
#include <atomic>
#include <filesystem>
#include <fstream>
#include <optional>

#include <gtest/gtest.h>

#include "AppHarness.h"
#include "FakeGeoClue.h"
#include "LoopbackServer.h"
#include "PrivateBus.h"
#include "VeskIPC/Wire.h"

namespace {

constexpr double homeLatitude = 52.37022, homeLongitude = 4.89517;
constexpr double farLatitude = 52.0, farLongitude = 4.3;  // some 40 km away

bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

class Places : public testing::Test {
protected:
    Places() {
        app.environment["DBUS_SESSION_BUS_ADDRESS"] = session.address();
        app.environment["DBUS_SYSTEM_BUS_ADDRESS"] = system.address();
        const std::string folder = app.home() + "/.config/vesk";
        std::filesystem::create_directories(folder);
        std::ofstream(folder + "/config") << "geocoder-url = " << geocoder.origin() << "\ngeocoder-timeout = 1\n";
        session.startServer();
    }
    ~Places() override { app.stop(); }  // while its buses are still there

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
        ASSERT_TRUE(eventually([&] { return geoclue->seen().started >= 1 && geoclue->seen().fixesSent >= 1; }));
    }
    void refused(const std::vector<std::string>& arguments, WireError::Code code, const std::string& says) {
        ProcessResult result = app.vesk(arguments);
        EXPECT_EQ(result.status, WireError::exitStatus(code)) << result.err;
        EXPECT_TRUE(has(result.err, says)) << result.err;
    }

    AppHarness app;
    PrivateBus session{app.base(), app.base() + "/shown"};
    PrivateBus system{app.base() + "/system", app.base() + "/system/shown"};
    // The geocoder: every search finds the Dam.
    std::atomic<int> searches{0};
    LoopbackServer geocoder{[this](const std::string&) {
        ++searches;
        return R"([{"lat":"52.3730796","lon":"4.8924534","display_name":"Dam, Amsterdam"}])";
    }};
    std::optional<FakeGeoClue> geoclue{std::in_place, system.address()};
};

TEST_F(Places, FoundByAddressByCoordinatesAndWhereThisMachineIs) {
    EXPECT_EQ(out({"places", "add", "home", "--at", "Dam 1, Amsterdam"}), "Saved home: Dam, Amsterdam (100 m)\n");
    // The same search again is answered from the store.
    EXPECT_EQ(out({"places", "add", "dam", "--at", " dam 1, AMSTERDAM"}), "Saved dam: Dam, Amsterdam (100 m)\n");
    EXPECT_EQ(out({"places", "add", "office", "--at", "52.3, 4.95"}), "Saved office: 52.30000, 4.95000 (100 m)\n");
    EXPECT_EQ(searches, 1);

    geoclue->moveTo(52.35, 4.91, 15);
    EXPECT_EQ(out({"places", "add", "gym", "--here", "--radius", "50"}), "Saved gym: 52.35000, 4.91000 (50 m)\n");
    EXPECT_EQ(geoclue->seen().desktopId, "vesk");
    EXPECT_EQ(geoclue->seen().accuracyLevel, 6u);
    EXPECT_TRUE(eventually([&] { return geoclue->seen().started == 0; }));

    geoclue->refuseStarts();
    refused({"places", "add", "park", "--here"}, WireError::Code::permission, "Allow location access");
    geoclue.reset();
    refused({"places", "add", "park", "--here"}, WireError::Code::unreachable, "(GeoClue) isn't running");
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
    EXPECT_TRUE(eventually([&] { return geoclue->seen().started == 0; }));
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
