// vesk add against the real app configured with a local model server, scripted in the test.

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "AppHarness.h"
#include "ModelServer.h"

namespace {

const std::string unread = "lunch with sam around noonish";
const std::string reading =
    R"({"title":"Lunch with Sam","dueDate":null,"dueTime":"12:30","style":null,"repeatMinutes":null,)"
    R"("recurrence":null,"recurrenceInterval":null,"weekdays":[],"arriveAt":null,"leaveFrom":null,)"
    R"("delayMinutes":null,"onlyAt":null})";

// An app whose config names `url` as its model server.
void configure(AppHarness& app, const std::string& url) {
    const std::string folder = app.home() + "/.config/vesk";
    std::filesystem::create_directories(folder);
    std::ofstream(folder + "/config") << "model-url = " << url << "\nmodel-timeout = 1\n";
}

bool readByModel(const ProcessResult& result) {
    return result.out.find("\"readByModel\" : true") != std::string::npos;
}

TEST(Model, ReadsWhatTheGrammarLeftAndNeverHoldsTheAppUp) {
    ModelServer server(reading);
    AppHarness app;
    configure(app, server.url());
    app.start();

    ProcessResult added = app.vesk({"add", unread});
    EXPECT_EQ(added.status, 0) << added.err;
    EXPECT_NE(added.out.find("Lunch with Sam"), std::string::npos) << added.out;
    EXPECT_NE(added.out.find("12:30"), std::string::npos) << added.out;
    EXPECT_NE(added.out.find("the on-device model read what the grammar couldn't"), std::string::npos) << added.out;
    EXPECT_EQ(server.readings, 1);

    // A sentence the grammar reads whole is never sent.
    EXPECT_FALSE(readByModel(app.vesk({"add", "--dry-run", "--json", "call mum at 9"})));
    EXPECT_EQ(server.readings, 1);

    // A model that is late, answers nonsense or hangs up leaves the grammar's reading.
    for (auto way : {ModelServer::Way::slow, ModelServer::Way::garbage, ModelServer::Way::closes}) {
        server.way = way;
        ProcessResult result = app.vesk({"add", "--dry-run", "--json", unread});
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_FALSE(readByModel(result)) << result.out;
        EXPECT_NE(result.out.find("\"title\" : \"lunch with sam around noonish\""), std::string::npos) << result.out;
    }
    ProcessResult doctor = app.vesk({"doctor"});
    EXPECT_NE(doctor.out.find("model   ready (fake)"), std::string::npos) << doctor.out;
}

TEST(Model, DoctorTellsTheServersState) {
    ModelServer server(reading);
    server.health = 503;
    AppHarness loading;
    configure(loading, server.url());
    ProcessResult loadingDoctor = loading.vesk({"doctor"});
    EXPECT_NE(loadingDoctor.out.find("model   loading"), std::string::npos) << loadingDoctor.out;
    loading.stop();

    AppHarness absent;
    configure(absent, "http://127.0.0.1:1/v1");
    ProcessResult doctor = absent.vesk({"doctor"});
    EXPECT_NE(doctor.out.find("model   unreachable (http://127.0.0.1:1/v1)"), std::string::npos) << doctor.out;
    ProcessResult added = absent.vesk({"add", "--dry-run", "--json", unread});
    EXPECT_EQ(added.status, 0) << added.err;
    EXPECT_FALSE(readByModel(added));

    AppHarness off;
    ProcessResult offDoctor = off.vesk({"doctor"});
    EXPECT_NE(offDoctor.out.find("model   off"), std::string::npos) << offDoctor.out;
}

}  // namespace
