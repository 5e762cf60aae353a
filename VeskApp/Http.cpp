#include "VeskApp/Http.h"

#include <curl/curl.h>

#include <memory>
#include <mutex>

namespace Http {

namespace {

struct Transfer {
    std::string body;
    bool tooLarge = false;
    std::stop_token stop;
};

size_t collect(char* data, size_t size, size_t count, void* user) {
    auto* transfer = static_cast<Transfer*>(user);
    const size_t bytes = size * count;
    if (transfer->body.size() + bytes > answerLimit) {
        transfer->tooLarge = true;
        return 0;  // ends the transfer
    }
    transfer->body.append(data, bytes);
    return bytes;
}

int progress(void* user, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
    return static_cast<Transfer*>(user)->stop.stop_requested() ? 1 : 0;
}

Result perform(const std::string& url, const std::string* body, const Options& options, std::stop_token stop) {
    static std::once_flag initialized;
    std::call_once(initialized, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
    std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> curl(curl_easy_init(), curl_easy_cleanup);
    if (!curl) return std::string("can't start an HTTP transfer");

    Transfer transfer{{}, false, stop};
    CURL* handle = curl.get();
    curl_easy_setopt(handle, CURLOPT_URL, url.c_str());
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    if (!options.throughProxy) curl_easy_setopt(handle, CURLOPT_NOPROXY, "*");
    if (!options.userAgent.empty()) curl_easy_setopt(handle, CURLOPT_USERAGENT, options.userAgent.c_str());
    curl_easy_setopt(handle, CURLOPT_TIMEOUT_MS, static_cast<long>(options.timeoutSeconds * 1000));
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, collect);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, &transfer);
    curl_easy_setopt(handle, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(handle, CURLOPT_XFERINFOFUNCTION, progress);
    curl_easy_setopt(handle, CURLOPT_XFERINFODATA, &transfer);
    curl_slist* headers = nullptr;
    if (body) {
        headers = curl_slist_append(headers, "Content-Type: application/json");
        curl_easy_setopt(handle, CURLOPT_HTTPHEADER, headers);
        curl_easy_setopt(handle, CURLOPT_POSTFIELDS, body->c_str());
        curl_easy_setopt(handle, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body->size()));
    }
    const CURLcode code = curl_easy_perform(handle);
    curl_slist_free_all(headers);
    if (transfer.tooLarge) return std::string("the answer is larger than Vesk reads");
    if (code != CURLE_OK) return std::string(curl_easy_strerror(code));
    Answer answer;
    curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &answer.status);
    answer.body = std::move(transfer.body);
    return answer;
}

}  // namespace

std::string escaped(std::string_view text) {
    if (text.empty()) return {};
    std::unique_ptr<char, decltype(&curl_free)> out(
        curl_easy_escape(nullptr, text.data(), static_cast<int>(text.size())), curl_free);
    return out ? out.get() : "";
}

Result get(const std::string& url, const Options& options, std::stop_token stop) {
    return perform(url, nullptr, options, stop);
}

Result get(const std::string& url, double timeoutSeconds, std::stop_token stop) {
    return perform(url, nullptr, Options{timeoutSeconds, "", false}, stop);
}

Result postJson(const std::string& url, const std::string& body, double timeoutSeconds, std::stop_token stop) {
    return perform(url, &body, Options{timeoutSeconds, "", false}, stop);
}

}  // namespace Http
