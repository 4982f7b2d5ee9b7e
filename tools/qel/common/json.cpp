// The qel tool's JSON writer.
#include "json.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <locale>
#include <sstream>

namespace cli {

namespace {
constexpr int kIndent = 2;
constexpr int kShortestDigits = 6;
constexpr int kRoundTripDigits = 17;  // enough significant digits for any double to read back

// A real in the C locale: `digits` after the point (fixed) or significant digits (not fixed).
std::string formatReal(double number, int digits, bool fixed) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    if (fixed) text.setf(std::ios::fixed);
    text.precision(digits);
    text << number;
    return text.str();
}
}  // namespace

std::string jsonQuoted(const std::string& text) {
    std::string out = "\"";
    for (const char ch : text) {
        const unsigned char c = static_cast<unsigned char>(ch);
        switch (c) {
            case '"': out += "\\\""; break;
            case '\\': out += "\\\\"; break;
            case '\n': out += "\\n"; break;
            case '\r': out += "\\r"; break;
            case '\t': out += "\\t"; break;
            default:
                if (c < 0x20) {
                    char escaped[8];
                    std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned>(c));
                    out += escaped;
                } else {
                    out += ch;
                }
        }
    }
    return out + "\"";
}

void JsonWriter::beforeValue() {
    if (afterKey_) {
        afterKey_ = false;
        return;
    }
    if (empty_.empty()) return;
    if (!empty_.back()) out_ << ',';
    empty_.back() = false;
    out_ << '\n' << std::string(empty_.size() * kIndent, ' ');
}

void JsonWriter::open(char bracket) {
    beforeValue();
    out_ << bracket;
    empty_.push_back(true);
}

void JsonWriter::close(char bracket) {
    const bool wasEmpty = empty_.back();
    empty_.pop_back();
    if (!wasEmpty) out_ << '\n' << std::string(empty_.size() * kIndent, ' ');
    out_ << bracket;
    if (empty_.empty()) out_ << '\n';
}

JsonWriter& JsonWriter::beginObject() {
    open('{');
    return *this;
}
JsonWriter& JsonWriter::endObject() {
    close('}');
    return *this;
}
JsonWriter& JsonWriter::beginArray() {
    open('[');
    return *this;
}
JsonWriter& JsonWriter::endArray() {
    close(']');
    return *this;
}

JsonWriter& JsonWriter::key(const std::string& name) {
    beforeValue();
    out_ << jsonQuoted(name) << ": ";
    afterKey_ = true;
    return *this;
}

void JsonWriter::scalar(const std::string& literal) {
    beforeValue();
    out_ << literal;
    if (empty_.empty()) out_ << '\n';
}

JsonWriter& JsonWriter::value(const std::string& text) {
    scalar(jsonQuoted(text));
    return *this;
}

JsonWriter& JsonWriter::value(int number) {
    scalar(std::to_string(number));
    return *this;
}

JsonWriter& JsonWriter::value(bool flag) {
    scalar(flag ? "true" : "false");
    return *this;
}

JsonWriter& JsonWriter::value(double number, int decimals) {
    scalar(std::isfinite(number) ? formatReal(number, decimals, true) : "null");
    return *this;
}

JsonWriter& JsonWriter::value(double number) {
    if (!std::isfinite(number)) {
        scalar("null");
        return *this;
    }
    // The fewest significant digits that read back as the same double.
    std::string text;
    for (int digits = kShortestDigits; digits <= kRoundTripDigits; ++digits) {
        text = formatReal(number, digits, false);
        if (std::strtod(text.c_str(), nullptr) == number) break;
    }
    scalar(text);
    return *this;
}

}  // namespace cli
