// The qel tool's command plumbing: argument parsing, subcommand registry, whole-file reads and writes.
#include "cli.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <sstream>
#include <system_error>

namespace cli {

namespace {
std::vector<Command>& registry() {
    static std::vector<Command> all;
    return all;
}

bool parseInt(const std::string& text, int* out) {
    if (text.empty()) return false;
    char* end = nullptr;
    errno = 0;
    long v = std::strtol(text.c_str(), &end, 10);
    if (*end != '\0' || errno != 0 || v < -2147483647L - 1 || v > 2147483647L) return false;
    *out = static_cast<int>(v);
    return true;
}
}  // namespace

Register::Register(Command command) { registry().push_back(std::move(command)); }
const std::vector<Command>& commands() { return registry(); }

Args::Args(std::vector<std::string> words, const std::vector<std::string>& valueOptions,
           const std::vector<std::string>& knownFlags) {
    for (size_t i = 0; i < words.size(); ++i) {
        const std::string w = words[i] == "-o" ? "--output" : words[i];
        if (w.size() > 2 && w.compare(0, 2, "--") == 0) {
            std::string name = w.substr(2);
            std::string inlineValue;
            bool hasInline = false;
            if (size_t eq = name.find('='); eq != std::string::npos) {
                inlineValue = name.substr(eq + 1);
                name = name.substr(0, eq);
                hasInline = true;
            }
            const bool takesValue = std::find(valueOptions.begin(), valueOptions.end(), name) != valueOptions.end();
            if (takesValue) {
                if (hasInline) {
                    values_[name] = inlineValue;
                } else {
                    if (i + 1 >= words.size()) throw UsageError("option --" + name + " needs a value");
                    values_[name] = words[++i];
                }
            } else {
                if (std::find(knownFlags.begin(), knownFlags.end(), name) == knownFlags.end())
                    throw UsageError("unknown option --" + name + " (see --help)");
                if (hasInline) throw UsageError("option --" + name + " takes no value");
                flags_.push_back(name);
            }
        } else {
            positional_.push_back(w);
        }
    }
}

bool Args::flag(const std::string& name) const {
    for (const auto& f : flags_) if (f == name) return true;
    return false;
}
bool Args::has(const std::string& name) const { return values_.count(name) != 0; }
std::string Args::value(const std::string& name, const std::string& fallback) const {
    auto it = values_.find(name);
    return it == values_.end() ? fallback : it->second;
}
int Args::integer(const std::string& name, int fallback) const {
    if (!has(name)) return fallback;
    int v = 0;
    if (!parseInt(value(name), &v)) throw UsageError("--" + name + " wants an integer, got '" + value(name) + "'");
    return v;
}
double Args::real(const std::string& name, double fallback) const {
    if (!has(name)) return fallback;
    const std::string text = value(name);
    char* end = nullptr;
    double v = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0') throw UsageError("--" + name + " wants a number, got '" + text + "'");
    return v;
}
std::vector<int> Args::integers(const std::string& name, size_t count) const {
    std::vector<int> out;
    std::string text = value(name);
    size_t start = 0;
    while (start <= text.size()) {
        size_t comma = text.find(',', start);
        std::string part = text.substr(start, comma == std::string::npos ? std::string::npos : comma - start);
        int v = 0;
        if (!parseInt(part, &v)) throw UsageError("--" + name + " wants " + std::to_string(count) + " comma-separated integers, got '" + text + "'");
        out.push_back(v);
        if (comma == std::string::npos) break;
        start = comma + 1;
    }
    if (out.size() != count) throw UsageError("--" + name + " wants " + std::to_string(count) + " comma-separated integers, got '" + text + "'");
    return out;
}
void Args::expectPositional(size_t count) const {
    expectAtLeast(count);
    if (positional_.size() > count) throw UsageError("unexpected argument '" + positional_[count] + "'");
}
size_t Args::expectAtLeast(size_t count) const {
    if (positional_.size() < count) throw UsageError("missing argument (see --help)");
    return positional_.size();
}

std::string Args::oneOf(const std::vector<std::string>& names) const {
    std::string chosen;
    int given = 0;
    for (const auto& n : names) {
        if (flag(n) || has(n)) {
            ++given;
            chosen = n;
        }
    }
    if (given != 1) {
        std::string list;
        for (size_t i = 0; i < names.size(); ++i) list += (i == 0 ? "--" : i + 1 == names.size() ? " and --" : ", --") + names[i];
        throw UsageError("give exactly one of " + list);
    }
    return chosen;
}

namespace {
using FileHandle = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;
}  // namespace

void requireInputFile(const std::string& path) {
    std::error_code ec;
    const std::filesystem::file_status status = std::filesystem::status(path, ec);
    if (status.type() == std::filesystem::file_type::not_found) throw UsageError("cannot open '" + path + "': no such file");
    if (status.type() == std::filesystem::file_type::directory) throw UsageError("'" + path + "' is a directory, not a file");
    if (ec) throw UsageError("cannot open '" + path + "': " + ec.message());
}

std::vector<unsigned char> readFile(const std::string& path) {
    requireInputFile(path);
    FileHandle f(std::fopen(path.c_str(), "rb"), std::fclose);
    if (!f) throw UsageError("cannot open '" + path + "': " + std::strerror(errno));
    std::vector<unsigned char> bytes;
    unsigned char chunk[1 << 16];
    size_t got = 0;
    while ((got = std::fread(chunk, 1, sizeof chunk, f.get())) > 0) bytes.insert(bytes.end(), chunk, chunk + got);
    if (std::ferror(f.get())) throw UsageError("cannot read '" + path + "': " + std::strerror(errno));
    return bytes;
}

std::string temporaryName(const std::string& path) { return path + ".part"; }

void moveIntoPlace(const std::string& temp, const std::string& path) {
    std::remove(path.c_str());
    if (std::rename(temp.c_str(), path.c_str()) != 0) {
        std::remove(temp.c_str());
        throw Failure("cannot write '" + path + "'");
    }
}

void writeFile(const std::string& path, const std::vector<unsigned char>& bytes) {
    const std::string temp = temporaryName(path);
    std::FILE* f = std::fopen(temp.c_str(), "wb");
    if (f == nullptr) throw Failure("cannot write '" + path + "': " + std::strerror(errno));
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size();
    if (std::fclose(f) != 0 || !written) {
        std::remove(temp.c_str());
        throw Failure("cannot write '" + path + "'");
    }
    moveIntoPlace(temp, path);
}

std::string shortNumber(double value) {
    std::ostringstream text;
    text << value;
    return text.str();
}

std::string extensionOf(const std::string& path) {
    const size_t dot = path.find_last_of('.');
    const size_t slash = path.find_last_of("/\\");
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return "";
    std::string ext = path.substr(dot + 1);
    for (char& c : ext) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return ext;
}

}  // namespace cli
