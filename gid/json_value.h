#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tolvane::gid {

// One value of a JSON text, as far as gpsd's reports need: numbers are
// doubles, strings are bytes with their escapes resolved.
struct JsonValue {
    enum class Kind { kNull, kBool, kNumber, kString, kArray, kObject };

    Kind kind = Kind::kNull;
    bool boolean = false;
    double number = 0;
    std::string text;
    // The elements of an array, or the values of an object's members with
    // their names beside them in keys.
    std::vector<JsonValue> elements;
    std::vector<std::string> keys;

    // The member of an object named key; null when there is none.
    const JsonValue* Member(std::string_view key) const;
    // The number of member key; fallback when it is missing or no number.
    double NumberOf(std::string_view key, double fallback = 0) const;
    // The text of member key; empty when it is missing or no string.
    std::string TextOf(std::string_view key) const;
};

// Reads text that holds exactly one JSON object, nested no deeper than a
// few levels; nullopt for anything else.
std::optional<JsonValue> ReadJsonObject(std::string_view text);

}  // namespace tolvane::gid
