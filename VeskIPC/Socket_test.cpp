#include "VeskIPC/Socket.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <thread>

// Responses are written with designated initializers; the fields left out keep their defaults.
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
namespace fs = std::filesystem;

Request add(const std::string& text) { return Request{Request::Add{text, false}}; }

// The title of the answer to an add of `text`.
std::string ask(const std::string& path, const std::string& text) {
    auto result = SocketClient::send(add(text), path, 10);
    if (const auto* response = std::get_if<Response>(&result); response && response->reminder)
        return response->reminder->title;
    return "<no reminder>";
}

// One exchange of raw bytes, the way a foreign peer might do it.
std::string exchange(const std::string& path, const std::string& bytes) {
    int descriptor = std::get<int>(SocketClient::connect(path));
    VeskSocket::configure(descriptor, 5);
    VeskSocket::writeAll(descriptor, bytes);
    shutdown(descriptor, SHUT_WR);
    std::string answer = VeskSocket::readAll(descriptor);
    close(descriptor);
    return answer;
}

// Where a held request stands: it has entered the handler, is released, is leaving it.
struct Hold {
    std::promise<void> entered, release, leaving;
    std::shared_future<void> released = release.get_future().share();
};

class SocketTest : public ::testing::Test {
protected:
    void SetUp() override {
        char name[] = "/tmp/vesk-socket-XXXXXX";
        ASSERT_NE(mkdtemp(name), nullptr);
        dir = name;
    }
    void TearDown() override {
        servers.clear();
        fs::remove_all(dir);
    }
    std::string path() const { return dir + "/vesk.sock"; }

    // A server of echo() on `where` that has started, and lives until the end of the test.
    void serve(const std::string& where) {
        servers.push_back(std::make_unique<SocketServer>(where, echo()));
        EXPECT_EQ(servers.back()->start(), std::nullopt) << where;
    }

    // Answers an add with a reminder titled by its text, and counts its calls. An add of
    // "missing" throws a WireError; one of "slow" waits in the handler until released.
    // What it shares outlives the fixture: detached exchanges may still run it.
    SocketServer::Handler echo() const {
        return [calls = calls, hold = hold](const Request& request) {
            ++*calls;
            const std::string& text = std::get<Request::Add>(request.value).text;
            if (text == "missing") throw missing;
            if (text == "slow") {
                hold->entered.set_value();
                hold->released.wait();
                hold->leaving.set_value();
            }
            return Response{.reminder = ReminderDTO{.title = text}};
        };
    }
    static inline const WireError missing{WireError::Code::notFound, "No reminder matches “milk”."};

    std::string dir;
    std::vector<std::unique_ptr<SocketServer>> servers;
    std::shared_ptr<std::atomic<int>> calls = std::make_shared<std::atomic<int>>(0);
    std::shared_ptr<Hold> hold = std::make_shared<Hold>();
};

}  // namespace

TEST(VeskSocket, PathsAreUnderThePasswordEntrysHome) {
    const char* saved = std::getenv("HOME");
    setenv("HOME", "/nowhere", 1);
    std::string home = VeskSocket::homeDirectory();
    std::vector<std::string> candidates = VeskSocket::candidatePaths();
    saved ? setenv("HOME", saved, 1) : unsetenv("HOME");

    EXPECT_EQ(home, getpwuid(getuid())->pw_dir);
    std::string prefix = home.back() == '/' ? home : home + "/";
    EXPECT_EQ(candidates,
              (std::vector<std::string>{prefix + "Library/Group Containers/T4KQ79WB3X.com.kerwold.vesk/vesk.sock",
                                        prefix + "Library/Application Support/Vesk/vesk.sock"}));
}

TEST_F(SocketTest, PathOf103BytesServesAnd104IsTooLong) {
    auto ofLength = [&](size_t length) { return dir + "/" + std::string(length - dir.size() - 1, 'x'); };
    std::string fits = ofLength(103), tooLong = ofLength(104);
    serve(fits);
    EXPECT_EQ(ask(fits, "fits"), "fits");
    EXPECT_EQ(SocketServer(tooLong, echo()).start(), SocketError::pathTooLong());
    // The length is checked before the file system: a missing directory is no reason.
    std::string inMissingDirectory = ofLength(104).replace(dir.size(), 9, "/missing/");
    EXPECT_EQ(std::get<SocketError>(SocketClient::connect(inMissingDirectory)), SocketError::pathTooLong());
}

TEST_F(SocketTest, StartReplacesAStaleFileWithMode0600ButNotALiveServer) {
    // A socket file with nobody behind it, as a crashed server leaves it.
    int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    auto address = VeskSocket::address(path());
    ASSERT_EQ(bind(descriptor, reinterpret_cast<const sockaddr*>(&*address), VeskSocket::addressLength()), 0);
    close(descriptor);
    EXPECT_EQ(std::get<SocketError>(SocketClient::send(add("x"), path(), 5)), SocketError::unreachable());

    serve(path());
    EXPECT_EQ(fs::status(path()).permissions(), fs::perms(0600));
    EXPECT_EQ(ask(path(), "replaced"), "replaced");

    SocketServer second(path(), echo());
    EXPECT_EQ(second.start(), SocketError::inUse());
    second.stop();  // never listened: must leave the first one's socket alone
    EXPECT_EQ(ask(path(), "first"), "first");
}

TEST_F(SocketTest, EmptyUndecodableFailedAndMultiMegabyteRequests) {
    serve(path());
    // Nothing sent: no answer, and the server goes on.
    EXPECT_EQ(exchange(path(), ""), "");
    const WireError unreadable{WireError::Code::invalid,
                               "Vesk couldn't read that request. Are the CLI and app the same version?"};
    EXPECT_EQ(decodeResponse(exchange(path(), R"({"list":{"_0":"soon"}})")), (Response{.error = unreadable}));
    EXPECT_EQ(*calls, 0);
    // A WireError the handler throws is the answer.
    EXPECT_EQ(std::get<Response>(SocketClient::send(add("missing"), path(), 5)), (Response{.error = missing}));

    std::string text;
    for (int i = 0; text.size() < 5'000'000; ++i) text += "line " + std::to_string(i) + " \"quoted\" ünïcode\n";
    EXPECT_EQ(ask(path(), text), text);
}

// A peer that sends half a request and then nothing, and a handler slower than its
// client's patience hold up no one else.
TEST_F(SocketTest, ASilentPeerAndASlowHandlerKeepNoOneWaiting) {
    serve(path());
    int silent = std::get<int>(SocketClient::connect(path()));
    VeskSocket::writeAll(silent, R"({"add":{"text":"half)");
    auto begin = Clock::now();
    EXPECT_EQ(ask(path(), "served"), "served");
    EXPECT_LT(Clock::now() - begin, 1s);
    close(silent);

    begin = Clock::now();
    EXPECT_EQ(std::get<SocketError>(SocketClient::send(add("slow"), path(), 1)), SocketError::noResponse());
    EXPECT_LT(Clock::now() - begin, 5s);
    EXPECT_EQ(ask(path(), "quick"), "quick");

    // Its write goes to a closed peer: no SIGPIPE, and the server goes on.
    std::signal(SIGPIPE, SIG_DFL);
    hold->release.set_value();
    hold->leaving.get_future().wait();
    std::this_thread::sleep_for(100ms);
    EXPECT_EQ(ask(path(), "after"), "after");
}

TEST_F(SocketTest, DestroyingTheServerLetsAnExchangeUnderWayFinish) {
    auto server = std::make_unique<SocketServer>(path(), echo());
    ASSERT_EQ(server->start(), std::nullopt);
    auto client = std::async(std::launch::async, [&] { return ask(path(), "slow"); });
    hold->entered.get_future().wait();
    server.reset();
    EXPECT_FALSE(SocketClient::isListening(path()));
    hold->release.set_value();
    EXPECT_EQ(client.get(), "slow");
}

TEST_F(SocketTest, PeerOfAnotherUserGetsNoAnswer) {
    if (getuid() != 0) GTEST_SKIP() << "needs root to act as another user";
    serve(path());
    fs::permissions(dir, fs::perms(0711));
    fs::permissions(path(), fs::perms(0666));
    const std::string request = *encodeWire(add("intruder"));
    const sockaddr_un address = *VeskSocket::address(path());

    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        // Only system calls here: the parent has threads.
        if (setgid(65534) != 0 || setuid(65534) != 0) _exit(10);
        int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
        if (connect(descriptor, reinterpret_cast<const sockaddr*>(&address), VeskSocket::addressLength()) != 0)
            _exit(11);
        timeval timeout{5, 0};
        setsockopt(descriptor, SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof timeout);
        if (send(descriptor, request.data(), request.size(), MSG_NOSIGNAL) < 0) _exit(0);
        shutdown(descriptor, SHUT_WR);
        char byte;
        _exit(read(descriptor, &byte, 1) > 0 ? 1 : 0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0) << "10: could not change user, 11: could not connect, 1: answered";
    EXPECT_EQ(*calls, 0);
    EXPECT_EQ(ask(path(), "owner"), "owner");
}
