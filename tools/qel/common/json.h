// The qel tool's JSON output: a writer that places commas, quotes and indentation, so a command
// states only the structure of what it reports.
//
//   cli::JsonWriter json(std::cout);
//   json.beginObject().key("file").value(path).key("objects").beginArray();
//   ...
//   json.endArray().endObject();   // a newline follows the outermost value
#ifndef QEL_TOOL_JSON_H
#define QEL_TOOL_JSON_H

#include <ostream>
#include <string>
#include <vector>

namespace cli {

// `text` as a JSON string literal, quotes included; control characters are escaped and bytes
// from 0x80 up are passed through (file names are taken as UTF-8).
std::string jsonQuoted(const std::string& text);

class JsonWriter {
public:
    explicit JsonWriter(std::ostream& out) : out_(out) {}
    JsonWriter& beginObject();
    JsonWriter& endObject();
    JsonWriter& beginArray();
    JsonWriter& endArray();
    JsonWriter& key(const std::string& name);  // inside an object, before each value
    JsonWriter& value(const std::string& text);
    JsonWriter& value(const char* text) { return value(std::string(text)); }
    JsonWriter& value(int number);
    JsonWriter& value(bool flag);
    // A real with `decimals` digits after the point; NaN and infinities, which JSON cannot hold,
    // are written as null.
    JsonWriter& value(double number, int decimals);
    // A real in the shortest form that reads back as the same double (NaN and infinities: null).
    JsonWriter& value(double number);

private:
    void beforeValue();
    void scalar(const std::string& literal);
    void open(char bracket);
    void close(char bracket);
    std::ostream& out_;
    std::vector<bool> empty_;  // per open container: nothing written in it yet
    bool afterKey_ = false;
};

}  // namespace cli

#endif
