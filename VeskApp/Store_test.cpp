#include "VeskApp/Store.h"

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "VeskIPC/Wire.h"

namespace {

namespace fs = std::filesystem;

std::string bytes(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}
int mode(const std::string& file) { return static_cast<int>(fs::status(file).permissions()); }

// A fresh directory for the store, removed afterwards.
class StoreTest : public testing::Test {
protected:
    void SetUp() override {
        char name[] = "/tmp/vesk-store-XXXXXX";
        ASSERT_TRUE(mkdtemp(name));
        directory = name;
        path = directory + "/data/vesk/vesk.db";
    }
    void TearDown() override { fs::remove_all(directory); }

    std::string directory, path;
};

StoredReminder fullReminder(const std::string& list) {
    StoredReminder reminder("6d3c2b1a-0000-4000-8000-000000000001", "call mum", DateComponents{2026, 11, 18, 18, 0},
                            false, std::nullopt, list, Recurrence{Recurrence::Frequency::weekly, 2, {2, 4}, false},
                            ReminderMeta(Style::repeatUntilDone(900), false, Date{800000000}));
    reminder.meta.trigger = PlaceTrigger{PlaceTrigger::Edge::leave, "work", 600};
    reminder.meta.triggeredAt = Date{800000100.5};
    reminder.meta.snooze = Snooze{Date{800003600}, DateComponents{2026, 11, 18, 18, 0}, std::nullopt};
    return reminder;
}

TEST_F(StoreTest, FirstRunMakesAPrivateStoreWithADefaultListAndReadingOnlyCreatesNothing) {
    EXPECT_TRUE(Store(path, Database::Mode::readOnly).failure());
    EXPECT_FALSE(fs::exists(path));
    Store store(path);
    ASSERT_FALSE(store.failure()) << *store.failure();
    auto data = store.data();
    ASSERT_EQ(data->lists.size(), 1u);
    EXPECT_EQ(data->lists.at(data->defaultList).name, "Reminders");
    EXPECT_EQ(data->device.id.size(), 36u);
    EXPECT_EQ(mode(path), 0600);
    EXPECT_EQ(mode(fs::path(path).parent_path()), 0700);
}

// Saved changes are there after reopening; a change that throws changes nothing.
TEST_F(StoreTest, WhatAChangeSavedIsThereAfterReopening) {
    StoreData saved;
    {
        Store store(path);
        store.change([](StoreData& data) {
            data.reminders["6d3c2b1a-0000-4000-8000-000000000001"] = fullReminder(data.defaultList);
            data.places["home"] = Place{"p1", "Home", 52.37022, 4.89517, 150, "1 Main St"};
            data.settings.stagger = 60;
            data.settings.nightWindow.reset();
            data.deliveredUpTo = Date{800000200.25};
            data.device.lastActive = Date{800000300};
            data.presence["home"] = Presence{true, Date{800000250.5}};
            data.geocoded["1 main st"] = Geocoded{52.37022, 4.89517, "1 Main St, Amsterdam", Date{800000000}};
        });
        saved = *store.change([](StoreData& data) { data.reminders.begin()->second.completed = true; });
        auto failing = [](StoreData& data) {
            data.reminders["k"] = fullReminder(data.defaultList);
            throw WireError{WireError::Code::invalid, "no"};
        };
        EXPECT_THROW(store.change(failing), WireError);
        EXPECT_EQ(*store.data(), saved);
    }
    Store reopened(path);
    EXPECT_EQ(*reopened.data(), saved);
}

TEST_F(StoreTest, FilesItCannotUseAreLeftAsTheyAre) {
    Store(path).change([](StoreData& data) {
        for (int i = 0; i < 200; ++i) data.reminders["k" + std::to_string(i)] = fullReminder(data.defaultList);
    });
    const std::string whole = bytes(path);
    Database(path, Database::Mode::readWrite).execute("PRAGMA user_version = 7");
    const std::pair<std::string, std::string> files[] = {
        {bytes(path), "newer version of Vesk (schema 7"},
        {whole.substr(0, whole.size() / 2), "malformed"},
    };
    for (const auto& [contents, reason] : files) {
        fs::remove(path + "-wal");
        fs::remove(path + "-shm");
        std::ofstream(path, std::ios::binary | std::ios::trunc) << contents;
        Store store(path);
        ASSERT_TRUE(store.failure()) << reason;
        EXPECT_NE(store.failure()->find(path), std::string::npos) << *store.failure();
        EXPECT_NE(store.failure()->find(reason), std::string::npos) << *store.failure();
        EXPECT_THROW(store.data(), WireError);
        EXPECT_THROW(store.change([](StoreData&) {}), WireError);
        EXPECT_EQ(bytes(path), contents) << reason;
    }
}

TEST_F(StoreTest, AStoreOfTheFirstVersionIsBroughtUpToDateWithItsDataKept) {
    Store(path).change([](StoreData& data) { data.places["home"] = Place{"p1", "Home", 52.37022, 4.89517, 150, {}}; });
    Database(path, Database::Mode::readWrite)
        .execute("DROP TABLE presence; DROP TABLE geocoded; PRAGMA user_version = 1");
    Store store(path);
    ASSERT_FALSE(store.failure()) << *store.failure();
    EXPECT_EQ(store.data()->places.at("home").name, "Home");
    store.change([](StoreData& data) { data.presence["home"] = Presence{true, Date{1}}; });
    EXPECT_TRUE(Store(path).data()->presence.at("home").inside);
}

TEST_F(StoreTest, ARowItCannotReadIsSkippedAndKept) {
    Store{path};  // makes the file
    Database(path, Database::Mode::readWrite)
        .execute("INSERT INTO reminders (key, title, list, meta) VALUES ('bad', 'x', 'none', '{\"style\":7}')");
    Store store(path);
    EXPECT_FALSE(store.data()->reminders.count("bad"));
    store.change([](StoreData& data) { data.settings.stagger = 120; });
    Database file(path, Database::Mode::readOnly);
    Statement row = file.prepare("SELECT meta FROM reminders WHERE key = 'bad'");
    ASSERT_TRUE(row.step());
    EXPECT_EQ(row.text(0), "{\"style\":7}");
}

}  // namespace
