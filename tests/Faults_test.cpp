// The app under faults: killed at any moment, out of disk, sent a request of many
// megabytes, or given a config it can't read.
#include <gtest/gtest.h>
#include <sys/mount.h>

#include <atomic>
#include <cerrno>
#include <filesystem>
#include <mutex>
#include <random>
#include <set>
#include <thread>

#include "AppHarness.h"
#include "VeskIPC/Socket.h"

namespace {

Response send(const Request& request) {
    auto answer = SocketClient::send(request, VeskSocket::defaultPath(), 30);
    return std::holds_alternative<Response>(answer) ? std::get<Response>(answer) : Response{};
}

Request add(const std::string& text) { return Request{Request::Add{text, false}}; }

TEST(Faults, AKilledAppLosesNoAcknowledgedReminder) {
    AppHarness app;
    std::set<std::string> acknowledged;
    std::mt19937 random(11);
    for (int round = 0; round < 6; ++round) {
        app.start();
        std::atomic<bool> killed{false};
        std::mutex lock;
        std::vector<std::thread> clients;
        for (int client = 0; client < 3; ++client) {
            clients.emplace_back([&, client] {
                for (int i = 0; !killed; ++i) {
                    std::string title =
                        "errand " + std::to_string(round) + "-" + std::to_string(client) + "-" + std::to_string(i);
                    auto answer = SocketClient::send(add(title + " tomorrow at 9"), VeskSocket::defaultPath(), 5);
                    auto* response = std::get_if<Response>(&answer);
                    if (!response || !response->reminder) continue;
                    std::lock_guard guard(lock);
                    acknowledged.insert(response->reminder->title);
                }
            });
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(100 + random() % 300));
        app.kill();
        killed = true;
        for (auto& client : clients) client.join();
    }
    ASSERT_GT(acknowledged.size(), 20u);

    app.start();
    Response listing = send(Request{Request::List{Request::Section::all}});
    ASSERT_TRUE(listing.reminders);
    std::set<std::string> stored;
    for (const auto& row : *listing.reminders) stored.insert(row.title);
    for (const auto& title : acknowledged) EXPECT_TRUE(stored.count(title)) << title << " was acknowledged and lost";
}

// On a full disk a change fails whole with a clear word, and reading goes on.
TEST(Faults, AFullDiskRefusesChangesAndKeepsServingReads) {
    AppHarness app;
    // Mounted where the app looks: the home it sees is a mount of its own.
    const std::string data = VeskSocket::homeDirectory() + "/.local/share/vesk";
    std::filesystem::create_directories(data);
    ASSERT_EQ(mount("vesk-tiny", data.c_str(), "tmpfs", 0, "size=512k,mode=0700"), 0) << errno;
    app.start();
    ASSERT_EQ(app.vesk({"call mum tomorrow at 9"}).status, 0);
    writeFile(data + "/filler", std::string(1 << 20, 'x'));  // more than is left: all of it taken
    // The store's files keep some room they took before; changes fill it, then fail.
    ProcessResult refused;
    int saved = 0;
    for (; saved < 300; ++saved) {
        refused = app.vesk({"errand " + std::to_string(saved) + " tomorrow at 10"});
        if (refused.status != 0) break;
    }
    EXPECT_EQ(refused.status, 3);
    EXPECT_NE(refused.err.find("Vesk couldn't save to "), std::string::npos) << refused.err;
    EXPECT_NE(refused.err.find("full"), std::string::npos) << refused.err;
    ProcessResult later = app.vesk({"later", "--json"});
    EXPECT_EQ(later.status, 0);
    EXPECT_EQ(later.out.find("errand " + std::to_string(saved) + "\""), std::string::npos) << "nothing half-saved";
    EXPECT_NE(later.out.find("call mum"), std::string::npos);

    std::filesystem::remove(data + "/filler");
    EXPECT_EQ(app.vesk({"buy milk tomorrow at 10"}).status, 0);
    app.stop();
    app.start();
    EXPECT_NE(app.vesk({"later"}).out.find("buy milk"), std::string::npos) << "saved through a restart";
    app.stop();
    umount2(data.c_str(), MNT_DETACH);
}

// Many megabytes are refused in words, at once, while others are served.
TEST(Faults, ARequestOfManyMegabytesIsRefusedAndOthersAreServed) {
    AppHarness app;
    app.start();
    std::thread huge([] {
        Response response = send(add(std::string(20 << 20, 'a')));
        ASSERT_TRUE(response.error);
        EXPECT_EQ(response.error->code, WireError::Code::invalid);
        EXPECT_NE(response.error->message.find("more than Vesk reads"), std::string::npos);
    });
    EXPECT_EQ(app.vesk({"now"}).status, 0);
    huge.join();
    EXPECT_EQ(app.vesk({"lists"}).out, "Reminders\n");
}

// A config the app can't use stops it with the reason, before it serves in the foreground or
// the background. Each reason is checked in VeskApp/Config_test.cpp.
TEST(Faults, AConfigItCannotReadStopsTheApp) {
    AppHarness app;
    std::filesystem::create_directories(app.home() + "/.config/vesk");
    writeFile(app.home() + "/.config/vesk/config", "relay-only = true\ncolour = blue\n");
    ProcessResult started = app.app({});
    EXPECT_EQ(started.status, 1);
    EXPECT_EQ(started.err, "vesk-app: config:2: unknown key \u201ccolour\u201d\n");
}

}  // namespace
