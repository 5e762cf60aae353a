#include <atomic>
#include <condition_variable>
#include <mutex>
#include <stdexcept>

#include <gtest/gtest.h>

#include "VeskParse/ParseTesting.h"

using namespace ParseTesting;
using namespace std::chrono_literals;

namespace {

// A model that answers, fails or keeps silent until it is told to stop, and counts its calls.
struct ScriptedModel : LanguageModelParsing {
    enum class Way { answers, fails, staysSilent } way;
    mutable std::atomic<int> calls{0};
    mutable std::atomic<bool> stopped{false};
    explicit ScriptedModel(Way way) : way(way) {}

    ModelReading read(const std::string&, Date, const Calendar&, const std::vector<std::string>& places,
                      std::stop_token stop) const override {
        ++calls;
        if (way == Way::fails) throw std::runtime_error("no model here");
        if (way == Way::staysSilent) {
            std::mutex lock;
            std::condition_variable_any wake;
            std::unique_lock guard(lock);
            wake.wait_for(guard, stop, 30s, [] { return false; });
            stopped = stop.stop_requested();
            throw std::runtime_error("stopped");
        }
        ModelReading reading;
        reading.title = "lunch with sam";
        reading.dueTime = "12:30";
        EXPECT_EQ(places, p().places);
        return reading;
    }
    static const Parser& p() {
        static const Parser parser = ParseTesting::parser();
        return parser;
    }
};

const std::string unread = "lunch with sam before noonish";

TEST(ModelParse, AnAnswerIsMerged) {
    auto model = std::make_shared<ScriptedModel>(ScriptedModel::Way::answers);
    const ParseResult result = ScriptedModel::p().parse(unread, wednesday(), model, 10s);
    EXPECT_TRUE(result.readByModel);
    EXPECT_EQ(result.capture.due, at(2026, 11, 18, 12, 30));
    EXPECT_TRUE(result.unresolved.empty());
}

TEST(ModelParse, TheGrammarsReadingWhenTheModelIsNotAskedFailsOrIsLate) {
    const Parser& p = ScriptedModel::p();
    const ParseResult grammar = p.parse(unread, wednesday());
    ASSERT_TRUE(grammar.needsModel());

    // Nothing left unread, no model, or no time to wait: the model is never asked.
    auto answers = std::make_shared<ScriptedModel>(ScriptedModel::Way::answers);
    EXPECT_EQ(p.parse("lunch with sam at 12:30", wednesday(), answers, 10s),
              p.parse("lunch with sam at 12:30", wednesday()));
    EXPECT_EQ(p.parse(unread, wednesday(), nullptr, 10s), grammar);
    EXPECT_EQ(p.parse(unread, wednesday(), answers, 0ms), grammar);
    EXPECT_EQ(answers->calls, 0);

    // A model that fails at once ends the wait at once; a whole minute would show here.
    auto fails = std::make_shared<ScriptedModel>(ScriptedModel::Way::fails);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(p.parse(unread, wednesday(), fails, 60s), grammar);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 30s);
    EXPECT_EQ(fails->calls, 1);

    // A silent model is left at the time-out and told to stop.
    auto silent = std::make_shared<ScriptedModel>(ScriptedModel::Way::staysSilent);
    EXPECT_EQ(p.parse(unread, wednesday(), silent, 50ms), grammar);
    for (int i = 0; i < 500 && !silent->stopped; ++i) std::this_thread::sleep_for(10ms);
    EXPECT_TRUE(silent->stopped);
}

}  // namespace
