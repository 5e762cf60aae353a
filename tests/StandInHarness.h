#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "PrivateHome.h"
#include "Process.h"
#include "VeskIPC/Socket.h"

// End-to-end tests of vesk against a stand-in for the app: a server in the test itself that
// gives every request the same answer, in a fresh home (PrivateHome) that vesk and the test
// both see.
//
//     StandInHarness app;
//     app.start(StandInHarness::line(response));
//     ProcessResult result = app.vesk({"now"});
//     EXPECT_EQ(decodeRequest(app.requests().at(0)), Request{Request::List{Request::Section::now}});
//
// An answer is the bytes of a response, sent back as they stand, or `silent` (close without
// an answer) or `garbage` (bytes that are no response).
class StandInHarness {
public:
    StandInHarness();
    ~StandInHarness();
    StandInHarness(const StandInHarness&) = delete;
    StandInHarness& operator=(const StandInHarness&) = delete;

    static constexpr const char* silent = "SILENT";
    static constexpr const char* garbage = "GARBAGE";
    static std::string line(const Response& response) { return encodeWire(response).value(); }

    const std::string& home() const { return private_.home(); }
    const std::string& base() const { return private_.base(); }

    // Serves on `path` (the default socket path when empty), answering every request with `answer`.
    void start(const std::string& answer, const std::string& path = "");
    // The requests it received, raw, in order.
    std::vector<std::string> requests() const;

    // Runs vesk from a folder of the harness's, where no vesk-app stands beside it.
    ProcessResult vesk(const std::vector<std::string>& arguments) const {
        return runVesk(arguments, environment, vesk_);
    }
    // What vesk runs with: testEnvironment(). Tests may change it.
    std::map<std::string, std::string> environment = testEnvironment();

private:
    struct Served;

    PrivateHome private_;
    std::string vesk_ = private_.base() + "/bin/vesk";
    std::shared_ptr<Served> served_;
    std::unique_ptr<SocketServer> server_;
};
