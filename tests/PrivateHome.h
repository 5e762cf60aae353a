#pragma once

#include <string>

// A fresh home for one end-to-end test. The first one of the process moves the process
// into a private mount namespace; each mounts an empty temporary directory over the
// user's home directory there, so vesk, the app and the test itself see it as home and
// the real home of whoever runs the tests is never touched. Needs root (or, failing that,
// the right to make a user namespace). Gone when destroyed.
class PrivateHome {
public:
    PrivateHome();
    ~PrivateHome();
    PrivateHome(const PrivateHome&) = delete;
    PrivateHome& operator=(const PrivateHome&) = delete;

    // The temporary directory with home/ and whatever a harness keeps beside it.
    const std::string& base() const { return base_; }
    const std::string& home() const { return home_; }

private:
    std::string base_, home_, realHome_;
};
