#pragma once

#include <string_view>

namespace Descriptor {

// Writes all of `bytes` to the descriptor, going on after short writes and EINTR.
// False when a write fails.
bool writeAll(int descriptor, std::string_view bytes);

}  // namespace Descriptor
