#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <variant>

#include "VeskApp/Bus.h"
#include "VeskApp/Regions.h"

struct FollowerCallbacks;

// Where this machine is, from GeoClue on the system bus: once, or followed for as long as
// the app needs it.
namespace GeoClue {

// Why no position came, in a sentence that says what to do; `refused` when the service
// (or the user, through its agent) doesn't allow it rather than can't give it.
struct Problem {
    bool refused = false;
    std::string message;
};

// The first position the service gives, within `limit`. Asks for street-level accuracy
// and stops the service's client again before it returns.
std::variant<Fix, Problem> locate(std::chrono::milliseconds limit);

// Follows the position on the app's loop and reports every fix. Costs nothing while not
// following: the connection is closed then.
class Follower {
public:
    Follower(std::function<void(const Fix&)> fixed, std::function<void(const Problem&)> failed);
    ~Follower();
    Follower(const Follower&) = delete;
    Follower& operator=(const Follower&) = delete;

    // Starts following, unless it already does; a failure goes to `failed`.
    void follow();
    void stop();
    bool following() const { return bus_.isOpen(); }

    Bus& bus() { return bus_; }
    void process();

private:
    friend struct ::FollowerCallbacks;  // the bus's callbacks, in GeoClue.cpp
    void fail(const Problem& problem);

    std::function<void(const Fix&)> fixed_;
    std::function<void(const Problem&)> failed_;
    Bus bus_;
    std::string client_;              // the service's client object, while following
    std::optional<Problem> failure_;  // from a callback, acted on once the bus is done
    bool restart_ = false;            // likewise: the service went away or came back
};

}  // namespace GeoClue
