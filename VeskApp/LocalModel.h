#pragma once

#include <chrono>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "VeskParse/ModelReading.h"

// A language model served on this machine behind the chat-completions API that local model
// servers share (POST {url}/chat/completions), asked for a reading in a fixed JSON schema.
class LocalModel : public LanguageModelParsing {
public:
    // `url` is the API base, such as http://127.0.0.1:8080/v1; `name` may be empty.
    LocalModel(std::string url, std::string name, double timeoutSeconds)
        : url_(std::move(url)), name_(std::move(name)), timeoutSeconds_(timeoutSeconds) {}

    // Throws std::runtime_error when the server can't be reached or its answer is no reading.
    ModelReading read(const std::string& sentence, Date now, const Calendar& calendar,
                      const std::vector<std::string>& places, std::stop_token stop) const override;

    // For doctor: "ready (NAME)", "loading" or "unreachable (URL)", from a quick look at the
    // server (its /health, else the API's model list), kept for ten seconds.
    std::string status() const;

    // The request's JSON: the prompt with the sentence, the moment and the places, and the schema.
    static std::string request(const std::string& name, const std::string& sentence, Date now, const Calendar& calendar,
                               const std::vector<std::string>& places);
    // The reading in the body of an answer; throws std::runtime_error when there is none.
    static ModelReading reading(std::string_view answer);

private:
    std::string look() const;

    std::string url_;
    std::string name_;
    double timeoutSeconds_;
    mutable std::mutex statusLock_;  // guards the two below
    mutable std::chrono::steady_clock::time_point lookedAt_;
    mutable std::string status_;
};
