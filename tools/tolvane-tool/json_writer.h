#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tolvane::tool {

// A small writer of one-line JSON objects, enough for the tool's reports.
class JsonWriter {
  public:
    JsonWriter& BeginObject(std::string_view key = {});
    JsonWriter& EndObject();
    JsonWriter& BeginArray(std::string_view key = {});
    JsonWriter& EndArray();

    JsonWriter& String(std::string_view key, std::string_view value);
    JsonWriter& Number(std::string_view key, double value);
    JsonWriter& Integer(std::string_view key, std::int64_t value);
    JsonWriter& Bool(std::string_view key, bool value);

    const std::string& Text() const { return text_; }

  private:
    void Separate(std::string_view key);

    std::string text_;
    bool needComma_ = false;
};

std::string JsonEscape(std::string_view text);

}  // namespace tolvane::tool
