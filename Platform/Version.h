#pragma once

// The version of vesk and vesk-app, which ship together.
inline constexpr const char* veskVersion = "0.2.0";
