#include <atomic>
#include <stdexcept>
#include <thread>

#include "VeskParse/ParseTesting.h"

using namespace ParseTesting;
using namespace std::chrono_literals;

namespace {

const Parser p = parser();

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
            for (int waited = 0; waited < 30000 && !stop.stop_requested(); ++waited) std::this_thread::sleep_for(1ms);
            stopped = stop.stop_requested();
            throw std::runtime_error("stopped");
        }
        EXPECT_EQ(places, p.places);
        return {.title = "lunch with sam", .dueTime = "12:30"};
    }
};

const std::string unread = "lunch with sam before noonish";

TEST(ModelParse, AnAnswerIsMergedElseTheGrammarsReadingStands) {
    const ParseResult grammar = p.parse(unread, wednesday());
    ASSERT_TRUE(grammar.needsModel());

    // Nothing left unread, no model, or no time to wait: the model is never asked. Else its answer is merged.
    auto answers = std::make_shared<ScriptedModel>(ScriptedModel::Way::answers);
    EXPECT_EQ(p.parse("lunch with sam at 12:30", wednesday(), answers, 10s),
              p.parse("lunch with sam at 12:30", wednesday()));
    EXPECT_EQ(p.parse(unread, wednesday(), nullptr, 10s), grammar);
    EXPECT_EQ(p.parse(unread, wednesday(), answers, 0ms), grammar);
    EXPECT_EQ(answers->calls, 0);
    const Capture merged{.title = "lunch with sam", .due = at(2026, 11, 18, 12, 30)};
    EXPECT_EQ(p.parse(unread, wednesday(), answers, 10s), (ParseResult{merged, {}, true}));

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
