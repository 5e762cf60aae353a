#pragma once

#include <atomic>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "LoopbackServer.h"

// A scripted address search on a loopback port, answering /search as the app expects of
// its geocoder: every search finds `found` (as a jsonv2 result), or nothing, or garbage,
// or answers only after `slowSeconds`, as `way` says.
class GeocoderServer {
public:
    enum class Way { finds, findsNothing, garbage, slow };
    GeocoderServer(double latitude, double longitude, std::string address);

    std::string url() const { return server_.origin(); }
    std::atomic<Way> way{Way::finds};
    std::atomic<int> slowSeconds{3};
    // The request lines received, like "GET /search?q=...&format=jsonv2&limit=1 HTTP/1.1".
    std::vector<std::string> requests() const;
    // The User-Agent of the last request.
    std::string userAgent() const;

private:
    std::optional<LoopbackServer::Reply> answer(const std::string& request);

    const std::string found_;
    mutable std::mutex lock_;  // guards the two below
    std::vector<std::string> requests_;
    std::string userAgent_;
    LoopbackServer server_;  // last: it calls `answer` until it is gone
};
