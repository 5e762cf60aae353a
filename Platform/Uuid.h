#pragma once

#include <array>
#include <cstdint>
#include <string>

// A 16-byte identifier, written in the usual 8-4-4-4-12 form in lower-case hex.
struct Uuid {
    std::array<uint8_t, 16> bytes{};

    bool operator==(const Uuid&) const = default;

    std::string text() const;

    // A random identifier (version 4), from the kernel's random source.
    static Uuid random();
};
