#include "tools/tolvane-tool/json_writer.h"

#include <cmath>
#include <cstdio>

namespace tolvane::tool {

std::string JsonEscape(std::string_view text) {
    std::string out = "\"";
    for (const char c : text) {
        switch (c) {
            case '"':
                out += "\\\"";
                break;
            case '\\':
                out += "\\\\";
                break;
            case '\n':
                out += "\\n";
                break;
            case '\r':
                out += "\\r";
                break;
            case '\t':
                out += "\\t";
                break;
            default:
                if (static_cast<unsigned char>(c) < 0x20) {
                    char buffer[8];
                    std::snprintf(buffer, sizeof buffer, "\\u%04x", c);
                    out += buffer;
                } else {
                    out += c;
                }
        }
    }
    return out + "\"";
}

void JsonWriter::Separate(std::string_view key) {
    if (needComma_) text_ += ',';
    if (!key.empty()) text_ += JsonEscape(key) + ':';
    needComma_ = true;
}

JsonWriter& JsonWriter::BeginObject(std::string_view key) {
    Separate(key);
    text_ += '{';
    needComma_ = false;
    return *this;
}

JsonWriter& JsonWriter::EndObject() {
    text_ += '}';
    needComma_ = true;
    return *this;
}

JsonWriter& JsonWriter::BeginArray(std::string_view key) {
    Separate(key);
    text_ += '[';
    needComma_ = false;
    return *this;
}

JsonWriter& JsonWriter::EndArray() {
    text_ += ']';
    needComma_ = true;
    return *this;
}

JsonWriter& JsonWriter::String(std::string_view key, std::string_view value) {
    Separate(key);
    text_ += JsonEscape(value);
    return *this;
}

JsonWriter& JsonWriter::Number(std::string_view key, double value) {
    Separate(key);
    if (!std::isfinite(value)) {
        text_ += "null";
        return *this;
    }
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.10g", value);
    text_ += buffer;
    return *this;
}

JsonWriter& JsonWriter::Integer(std::string_view key, std::int64_t value) {
    Separate(key);
    text_ += std::to_string(value);
    return *this;
}

JsonWriter& JsonWriter::Bool(std::string_view key, bool value) {
    Separate(key);
    text_ += value ? "true" : "false";
    return *this;
}

}  // namespace tolvane::tool
