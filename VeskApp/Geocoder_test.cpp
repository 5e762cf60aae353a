#include "VeskApp/Geocoder.h"

#include <chrono>

#include <gtest/gtest.h>

#include "Platform/Version.h"
#include "VeskApp/HttpTesting.h"
#include "VeskIPC/Wire.h"

namespace {

using namespace std::chrono_literals;
using Found = Geocoder::Found;

std::string shown(const std::variant<std::optional<Found>, std::string>& read) {
    if (auto* problem = std::get_if<std::string>(&read)) return "! " + *problem;
    const auto& found = std::get<std::optional<Found>>(read);
    if (!found) return "none";
    return std::to_string(found->latitude) + " " + std::to_string(found->longitude) + " " + found->address;
}

TEST(Geocoder, ReadsTheFirstResult) {
    const std::pair<const char*, const char*> cases[] = {
        {R"([{"lat":"52.3730796","lon":"4.8924534","display_name":"Dam, Amsterdam"},{"lat":"1","lon":"2"}])",
         "52.373080 4.892453 Dam, Amsterdam"},
        {R"([{"lat":-33.8688,"lon":151.2093}])", "-33.868800 151.209300 "},
        {"<html>busy</html>", "! an answer that isn't JSON"},
        {R"({"error":"Unable to geocode"})",
         "! an answer of another shape (Expected to decode an array but found something else.)"},
        {R"([{"lat":"north","lon":"4.89"}])", "! a result without coordinates"},
        {R"([{"lat":"91","lon":"4.89"}])", "! a result without coordinates"},
        {R"([{"lat":"nan","lon":"4.89"}])", "! a result without coordinates"},
    };
    for (const auto& [answer, expected] : cases) EXPECT_EQ(shown(Geocoder::read(answer)), expected) << answer;
}

TEST(Geocoder, AsksOnceASecondUnderItsOwnName) {
    OneShotServer server({http(200, R"([{"lat":"52.37","lon":"4.89","display_name":"Dam 1, Amsterdam"}])"),
                          http(200, R"([{"lat":"40.7","lon":"-74.0"}])")});
    Geocoder geocoder(server.origin, 5);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(geocoder.search(" Dam 1, Amsterdam "), (Found{52.37, 4.89, "Dam 1, Amsterdam"}));
    EXPECT_EQ(geocoder.search("café Noord"), (Found{40.7, -74.0, "café Noord"}));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, Geocoder::spacing);
    EXPECT_EQ(server.request.rfind("GET /search?q=Dam%201%2C%20Amsterdam&format=jsonv2&limit=1 HTTP/1.1\r\n", 0), 0u)
        << server.request;
    EXPECT_NE(server.request.find("GET /search?q=caf%C3%A9%20Noord&"), std::string::npos) << server.request;
    EXPECT_NE(server.request.find(std::string("User-Agent: vesk/") + veskVersion + "\r\n"), std::string::npos);
}

// Every refusal names the search; only an empty answer means there is no such place.
TEST(Geocoder, NoResultIsNotFoundAndEverythingElseUnreachable) {
    using Code = WireError::Code;
    const std::pair<std::vector<std::string>, Code> cases[] = {
        {{http(200, "[]")}, Code::notFound},
        {{http(200, "Sure, here you go")}, Code::unreachable},
        {{http(429, R"({"error":"too many requests"})")}, Code::unreachable},
        {{}, Code::unreachable},  // no answer within the time-out
    };
    for (const auto& [answers, code] : cases) {
        OneShotServer server(answers);
        const auto begin = std::chrono::steady_clock::now();
        try {
            Geocoder(server.origin, 1).search("Nowhere Street 1");
            ADD_FAILURE() << "no refusal";
        } catch (const WireError& error) {
            EXPECT_EQ(error.code, code) << error.message;
            EXPECT_NE(error.message.find("Nowhere Street 1"), std::string::npos) << error.message;
        }
        EXPECT_LT(std::chrono::steady_clock::now() - begin, 5s);
    }
}

}  // namespace
