#include <condition_variable>
#include <mutex>
#include <thread>

#include "VeskParse/Parser.h"

ParseResult Parser::parse(std::string_view sentence, Date now, std::shared_ptr<const LanguageModelParsing> model,
                          std::chrono::milliseconds timeout) const {
    ParseResult grammar = parse(sentence, now);
    if (!grammar.needsModel() || !model || timeout <= std::chrono::milliseconds::zero()) return grammar;

    // All the reading's thread shares with this one. The thread may outlive the wait: it
    // holds its own copies, and an answer that comes after the time-out is dropped.
    struct Race {
        std::mutex lock;
        std::condition_variable settled;
        bool done = false;
        std::optional<ModelReading> reading;  // absent when the model failed
    };
    auto race = std::make_shared<Race>();
    std::stop_source stop;
    std::thread([race, model, text = std::string(sentence), now, calendar = calendar, places = places,
                 token = stop.get_token()] {
        std::optional<ModelReading> reading;
        try {
            reading = model->read(text, now, calendar, places, token);
        } catch (...) {
        }
        std::lock_guard guard(race->lock);
        race->reading = std::move(reading);
        race->done = true;
        race->settled.notify_all();
    }).detach();

    std::optional<ModelReading> reading;
    {
        std::unique_lock guard(race->lock);
        // A model that fails at once ends the wait at once.
        race->settled.wait_for(guard, timeout, [&] { return race->done; });
        if (race->done) reading = std::move(race->reading);
    }
    stop.request_stop();
    if (!reading) return grammar;
    return merge(grammar, *reading, sentence, now);
}
