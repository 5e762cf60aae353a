#pragma once

#include <sys/types.h>

#include <map>
#include <string>
#include <vector>

#include "PrivateHome.h"
#include "Process.h"
#include "VeskIPC/Wire.h"

// End-to-end tests of vesk against a stand-in app (tests/standin/StandIn.cpp).
//
// A harness gives its test a fresh home (PrivateHome): vesk, the stand-in and the test
// itself (VeskSocket::defaultPath() included) all see that directory as home.
//
//     StandInHarness app;
//     app.start({StandInHarness::line(response)});          // answers the first request
//     ProcessResult result = app.vesk({"now"});
//     ASSERT_EQ(app.requests().size(), 1u);
//     EXPECT_EQ(decodeRequest(app.requests()[0]), Request{Request::List{Request::Section::now}});
//
// Script lines: the bytes of a response, sent back as they stand, or `silent` (close
// without an answer) or `garbage` (bytes that are no response). Request n is answered
// by line n; once the lines run out the last one answers again; no lines at all answer
// {"schema":1}.
//
// Launch tests: set the script with `script(...)`, then `installBesideVesk()` or
// `installOnPath()` puts the stand-in where vesk looks for vesk-app; vesk then starts it
// with --background and it serves at the default path with that script.
//
// Everything the harness started is stopped when it is destroyed.
class StandInHarness {
public:
    StandInHarness();
    ~StandInHarness();
    StandInHarness(const StandInHarness&) = delete;
    StandInHarness& operator=(const StandInHarness&) = delete;

    static constexpr const char* silent = "SILENT";
    static constexpr const char* garbage = "GARBAGE";
    // A script line answering with `response`.
    static std::string line(const Response& response);

    // The temporary directory that everybody in the test sees as home.
    const std::string& home() const { return home_; }

    // Sets the answers of every stand-in started from now on.
    void script(const std::vector<std::string>& lines);
    // Sets the script and starts a stand-in on `path` (the default socket path when
    // empty); returns once it listens. Throws when it doesn't within 5 seconds.
    void start(const std::vector<std::string>& lines, const std::string& path = "");
    // Stops every stand-in started so far, by the harness or by vesk, and waits for them.
    void stop();

    // The requests the stand-ins received, raw, in order.
    std::vector<std::string> requests() const;

    // Runs vesk, from a folder of the harness's, with `arguments` and `environment`.
    ProcessResult vesk(const std::vector<std::string>& arguments) const;

    // Puts the stand-in as vesk-app beside the vesk that vesk() runs.
    void installBesideVesk();
    // Puts the stand-in as vesk-app in a directory at the front of PATH for vesk().
    void installOnPath();

    // What vesk and the stand-ins run with: testEnvironment() and the stand-in's
    // STANDIN_SCRIPT, STANDIN_LOG, STANDIN_PIDS and STANDIN_LIFETIME. Tests may change it.
    std::map<std::string, std::string> environment;

private:
    PrivateHome private_;
    std::string base_;  // the temporary directory: home/, bin/, path/ and the stand-in's files
    std::string home_;
    std::string vesk_ = base_ + "/bin/vesk";
    std::vector<pid_t> started_;
};
