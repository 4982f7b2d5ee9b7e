// The qel tool: main, argument parsing and the image helpers every subcommand uses.
#include "cli.h"

#include <qel.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>

#if defined(_WIN32)
#  include <io.h>
#  define QEL_ISATTY _isatty
#  define QEL_FILENO _fileno
#else
#  include <unistd.h>
#  define QEL_ISATTY isatty
#  define QEL_FILENO fileno
#endif

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
// Renames a completely written temporary file onto its final name.
void moveIntoPlace(const std::string& temp, const std::string& path) {
    std::remove(path.c_str());
    if (std::rename(temp.c_str(), path.c_str()) != 0) {
        std::remove(temp.c_str());
        throw Failure("cannot write '" + path + "'");
    }
}
}  // namespace

Register::Register(Command command) { registry().push_back(std::move(command)); }
const std::vector<Command>& commands() { return registry(); }

Args::Args(std::vector<std::string> words, const std::vector<std::string>& valueOptions,
           const std::vector<std::string>& knownFlags) {
    for (size_t i = 0; i < words.size(); ++i) {
        const std::string& w = words[i];
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
    if (positional_.size() < count) throw UsageError("missing argument (see --help)");
    if (positional_.size() > count) throw UsageError("unexpected argument '" + positional_[count] + "'");
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

std::vector<unsigned char> readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw Failure("cannot open '" + path + "'");
    std::vector<unsigned char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (in.bad()) throw Failure("cannot read '" + path + "'");
    return bytes;
}

void writeFile(const std::string& path, const std::vector<unsigned char>& bytes) {
    const std::string temp = path + ".part";
    {
        std::ofstream out(temp, std::ios::binary | std::ios::trunc);
        if (!out) throw Failure("cannot create '" + path + "'");
        out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        out.close();
        if (!out) {
            std::remove(temp.c_str());
            throw Failure("cannot write '" + path + "'");
        }
    }
    moveIntoPlace(temp, path);
}

Image loadBmp(const std::string& path) {
    std::ifstream probe(path, std::ios::binary);
    if (!probe) throw Failure("cannot open '" + path + "'");
    unsigned char header[54] = {};
    probe.read(reinterpret_cast<char*>(header), sizeof header);
    if (probe.gcount() < 54 || header[0] != 'B' || header[1] != 'M') throw Failure("'" + path + "' is not a BMP file");
    const int bits = header[28] | (header[29] << 8);
    const int compression = header[30] | (header[31] << 8) | (header[32] << 16) | (header[33] << 24);
    if ((bits != 8 && bits != 24) || compression != 0)
        throw Failure("'" + path + "' is a " + std::to_string(bits) + "-bit BMP; only uncompressed 8-bit and 24-bit files are read");
    Image img;
    img.channels = bits == 8 ? 1 : 3;
    unsigned char* data = bits == 8 ? QelRead8BitBmpFile2Img(path.c_str(), &img.width, &img.height)
                                    : QelRead24BitBmpFile2Img(path.c_str(), &img.width, &img.height);
    if (data == nullptr) throw Failure("'" + path + "' is damaged or truncated (declared " + std::to_string(img.width) + " x " + std::to_string(img.height) + ")");
    img.pixels.assign(data, data + static_cast<size_t>(img.width) * static_cast<size_t>(img.height) * static_cast<size_t>(img.channels));
    delete[] data;
    return img;
}

Image loadGreyBmp(const std::string& path) {
    Image img = loadBmp(path);
    if (img.channels == 1) return img;
    std::cerr << path << ": colour input converted to grey\n";
    Image grey;
    grey.width = img.width;
    grey.height = img.height;
    grey.channels = 1;
    grey.pixels.resize(static_cast<size_t>(img.width) * static_cast<size_t>(img.height));
    QelRGB2Gry(img.pixels.data(), img.width, img.height, grey.pixels.data());
    return grey;
}

void saveBmp(const Image& image, const std::string& path, bool markColours) {
    const std::string temp = path + ".part";
    unsigned char* px = const_cast<unsigned char*>(image.pixels.data());
    bool ok = image.channels == 3 ? QelWrite24BitImg2BmpFile(px, image.width, image.height, temp.c_str())
              : markColours       ? QelWrite8BitImg2BmpFileMarkColor(px, image.width, image.height, temp.c_str())
                                  : QelWrite8BitImg2BmpFile(px, image.width, image.height, temp.c_str());
    if (!ok) {
        std::remove(temp.c_str());
        throw Failure("cannot write '" + path + "'");
    }
    moveIntoPlace(temp, path);
}

void progress(const char* what, long done, long total) {
    if (!QEL_ISATTY(QEL_FILENO(stderr))) return;
    std::fprintf(stderr, "\r%s %ld/%ld", what, done, total);
    if (done >= total) std::fputc('\n', stderr);
    std::fflush(stderr);
}

}  // namespace cli

namespace {

void printOverview() {
    std::cout << "qel - machine-vision image processing on BMP files and camera frames\n\n"
                 "usage: qel <command> [arguments] [--options]\n"
                 "       qel <command> --help\n\ncommands:\n";
    // Files and formats first, then the operations alphabetically.
    std::vector<const cli::Command*> sorted;
    for (const auto& c : cli::commands()) sorted.push_back(&c);
    auto rank = [](const cli::Command* c) { return std::string(c->name) == "info" ? 0 : std::string(c->name) == "convert" ? 1 : 2; };
    std::sort(sorted.begin(), sorted.end(), [&](const cli::Command* a, const cli::Command* b) {
        return rank(a) != rank(b) ? rank(a) < rank(b) : std::string(a->name) < std::string(b->name);
    });
    for (const cli::Command* cp : sorted) {
        const cli::Command& c = *cp;
        std::string name = c.name;
        name.resize(12, ' ');
        std::cout << "  " << name << c.summary << "\n";
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        printOverview();
        return 2;
    }
    const std::string name = argv[1];
    if (name == "--help" || name == "-h" || name == "help") {
        printOverview();
        return 0;
    }
    for (const auto& c : cli::commands()) {
        if (name != c.name) continue;
        std::vector<std::string> words(argv + 2, argv + argc);
        for (const auto& w : words) {
            if (w == "--help" || w == "-h") {
                std::cout << c.usage;
                return 0;
            }
        }
        try {
            return c.run(cli::Args(words, c.valueOptions, c.flags));
        } catch (const cli::UsageError& e) {
            std::cerr << "qel " << name << ": " << e.what() << "\n";
            return 2;
        } catch (const cli::Failure& e) {
            std::cerr << "qel " << name << ": " << e.what() << "\n";
            return 1;
        } catch (const std::bad_alloc&) {
            std::cerr << "qel " << name << ": out of memory\n";
            return 1;
        }
    }
    std::cerr << "qel: unknown command '" << name << "' (try qel --help)\n";
    return 2;
}
