// Killing the app at any moment loses no reminder that a client saw acknowledged.
#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <random>
#include <set>
#include <thread>

#include "AppHarness.h"
#include "VeskIPC/Socket.h"

namespace {

TEST(Durability, AKilledAppLosesNoAcknowledgedReminder) {
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
                    std::string title = "errand " + std::to_string(round) + "-" + std::to_string(client) + "-" +
                                        std::to_string(i);
                    auto answer = SocketClient::send(Request{Request::Add{title + " tomorrow at 9", false}},
                                                     VeskSocket::defaultPath(), 5);
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
    auto listing = SocketClient::send(Request{Request::List{Request::Section::all}}, VeskSocket::defaultPath(), 5);
    ASSERT_TRUE(std::holds_alternative<Response>(listing));
    std::set<std::string> stored;
    for (const auto& row : *std::get<Response>(listing).reminders) stored.insert(row.title);
    for (const auto& title : acknowledged) EXPECT_TRUE(stored.count(title)) << title << " was acknowledged and lost";
}

}  // namespace
