#include "gid/json_value.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <tuple>

namespace tolvane::gid {
namespace {

// A reader of one JSON text by recursive descent. gpsd's reports nest three
// levels; deeper text is refused, so the recursion stays shallow whatever
// the text.
class JsonReader {
  public:
    explicit JsonReader(std::string_view text) : text_(text) {}

    std::optional<JsonValue> Object() {
        JsonValue value;
        SkipBlanks();
        if (Peek() != '{' || !Value(value, 0)) return std::nullopt;
        SkipBlanks();
        if (at_ != text_.size()) return std::nullopt;
        return value;
    }

  private:
    static constexpr int kMaxDepth = 8;

    char Peek() const { return at_ < text_.size() ? text_[at_] : '\0'; }

    void SkipBlanks() {
        while (Peek() == ' ' || Peek() == '\t' || Peek() == '\r' || Peek() == '\n') ++at_;
    }

    bool Take(char c) {
        SkipBlanks();
        if (Peek() != c) return false;
        ++at_;
        return true;
    }

    bool Value(JsonValue& value, int depth) {
        SkipBlanks();
        const char c = Peek();
        if (c == '{' || c == '[') return depth < kMaxDepth && Container(value, depth + 1);
        if (c == '"') {
            value.kind = JsonValue::Kind::kString;
            return String(value.text);
        }
        return Scalar(value);
    }

    // An object or an array, whose opening bracket is next.
    bool Container(JsonValue& value, int depth) {
        const bool object = text_[at_++] == '{';
        value.kind = object ? JsonValue::Kind::kObject : JsonValue::Kind::kArray;
        const char close = object ? '}' : ']';
        if (Take(close)) return true;
        do {
            JsonValue element;
            std::string key;
            if (object && !(Take('"') && StringBody(key) && Take(':'))) return false;
            if (!Value(element, depth)) return false;
            if (object) value.keys.push_back(std::move(key));
            value.elements.push_back(std::move(element));
        } while (Take(','));
        return Take(close);
    }

    bool String(std::string& out) {
        ++at_;
        return StringBody(out);
    }

    // The rest of a string whose opening quote was taken. An escaped
    // character beyond ASCII is kept as '?': no text the program shows
    // comes from gpsd with one.
    bool StringBody(std::string& out) {
        while (at_ < text_.size()) {
            const char c = text_[at_++];
            if (c == '"') return true;
            if (static_cast<unsigned char>(c) < 0x20) return false;
            if (c != '\\') {
                out += c;
                continue;
            }
            if (at_ >= text_.size()) return false;
            const char escaped = text_[at_++];
            if (escaped == 'u') {
                if (text_.size() - at_ < 4) return false;
                const std::string digits(text_.substr(at_, 4));
                char* end = nullptr;
                const long code = std::strtol(digits.c_str(), &end, 16);
                if (end != digits.c_str() + 4) return false;
                out += code > 0 && code < 0x80 ? static_cast<char>(code) : '?';
                at_ += 4;
                continue;
            }
            static constexpr std::string_view kEscapes = "\"\"\\\\//b\bf\fn\nr\rt\t";
            const std::size_t found = kEscapes.find(escaped);
            if (found == std::string_view::npos || found % 2 != 0) return false;
            out += kEscapes[found + 1];
        }
        return false;
    }

    // true, false, null or a number.
    bool Scalar(JsonValue& value) {
        for (const auto& [word, kind, truth] :
             {std::tuple{std::string_view("true"), JsonValue::Kind::kBool, true},
              {std::string_view("false"), JsonValue::Kind::kBool, false},
              {std::string_view("null"), JsonValue::Kind::kNull, false}}) {
            if (text_.substr(at_, word.size()) == word) {
                at_ += word.size();
                value.kind = kind;
                value.boolean = truth;
                return true;
            }
        }
        const std::size_t begin = at_;
        while (at_ < text_.size() &&
               std::string_view("0123456789+-.eE").find(text_[at_]) != std::string_view::npos) {
            ++at_;
        }
        const std::string number(text_.substr(begin, at_ - begin));
        char* end = nullptr;
        value.kind = JsonValue::Kind::kNumber;
        value.number = std::strtod(number.c_str(), &end);
        return !number.empty() && end == number.c_str() + number.size() &&
               std::isfinite(value.number);
    }

    std::string_view text_;
    std::size_t at_ = 0;
};

}  // namespace

const JsonValue* JsonValue::Member(std::string_view key) const {
    if (kind != Kind::kObject) return nullptr;
    const auto found = std::find(keys.begin(), keys.end(), key);
    return found != keys.end() ? &elements[static_cast<std::size_t>(found - keys.begin())]
                               : nullptr;
}

double JsonValue::NumberOf(std::string_view key, double fallback) const {
    const JsonValue* value = Member(key);
    return value != nullptr && value->kind == Kind::kNumber ? value->number : fallback;
}

std::string JsonValue::TextOf(std::string_view key) const {
    const JsonValue* value = Member(key);
    return value != nullptr && value->kind == Kind::kString ? value->text : std::string();
}

std::optional<JsonValue> ReadJsonObject(std::string_view text) {
    return JsonReader(text).Object();
}

}  // namespace tolvane::gid
