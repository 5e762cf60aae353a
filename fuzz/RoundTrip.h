#pragma once

// Whatever decodes must encode, and decoding that must give the same value back.

#include <optional>
#include <string_view>

#include <nlohmann/json.hpp>

#include "Fuzz.h"
#include "Platform/Json.h"
#include "Platform/JsonDecoder.h"
#include "VeskIPC/Wire.h"

namespace Fuzz {

template <class Record>
void recordRoundTrip(std::string_view bytes) {
    const auto record = decodeJson<Record>(bytes);
    if (!record) return;
    const auto encoded = JsonText::compact(record->toJson());
    check(encoded.has_value(), "a decoded record encodes");
    check(decodeJson<Record>(*encoded) == record, "a record's encoding decodes to the same record");
}

// `decode` is decodeRequest or decodeResponse; encodeWire is the way back.
template <class Decode>
void wireRoundTrip(std::string_view bytes, Decode decode) {
    const auto message = decode(bytes);
    if (!message) return;
    const auto encoded = encodeWire(*message);
    check(encoded.has_value(), "a decoded message encodes");
    check(decode(*encoded) == message, "a message's encoding decodes to the same message");
}

}  // namespace Fuzz
