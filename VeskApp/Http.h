#pragma once

#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <variant>

// HTTP through libcurl: no signals, a total time-out, and given up as soon as `stop` is
// requested. Servers are reached directly unless the caller lets the environment's proxy apply.
namespace Http {

struct Options {
    double timeoutSeconds = 10;
    std::string userAgent;      // none when empty
    bool throughProxy = false;  // whether the environment's proxy settings apply
};

struct Answer {
    long status = 0;
    std::string body;
};

// The answer, or what went wrong in words.
using Result = std::variant<Answer, std::string>;

// At most this much of an answer is read; a larger one is an error.
inline constexpr size_t answerLimit = 4 * 1024 * 1024;

// `text` for a URL's query: every byte but the unreserved characters percent-encoded.
std::string escaped(std::string_view text);

Result get(const std::string& url, const Options& options, std::stop_token stop = {});
Result get(const std::string& url, double timeoutSeconds, std::stop_token stop = {});
Result postJson(const std::string& url, const std::string& body, double timeoutSeconds, std::stop_token stop = {});

}  // namespace Http
