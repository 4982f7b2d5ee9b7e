// The qel tool's plumbing: subcommand registration, argument parsing, image loading and saving.
#ifndef QEL_TOOL_CLI_H
#define QEL_TOOL_CLI_H

#include <cstdio>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace cli {

// Thrown for bad input; main prints "qel <command>: <message>" and exits with status 2.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};
// Thrown when the input is well formed but the work fails (unreadable file, failed write): exit 1.
struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Parsed command line: positional arguments and --options (an option is a flag or takes the
// next word as its value, as the command's option list says).
class Args {
public:
    Args(std::vector<std::string> words, const std::vector<std::string>& valueOptions,
         const std::vector<std::string>& knownFlags);
    const std::vector<std::string>& positional() const { return positional_; }
    bool flag(const std::string& name) const;                     // --name given
    bool has(const std::string& name) const;                      // --name VALUE given
    std::string value(const std::string& name, const std::string& fallback = "") const;
    int integer(const std::string& name, int fallback) const;     // UsageError when not an integer
    double real(const std::string& name, double fallback) const;  // UsageError when not a number
    // Comma-separated integers ("3,5"); UsageError unless exactly `count` of them.
    std::vector<int> integers(const std::string& name, size_t count) const;
    void expectPositional(size_t count) const;                    // UsageError otherwise
    // The one option of `names` that was given (as a flag or with a value); UsageError when none
    // or several were.
    std::string oneOf(const std::vector<std::string>& names) const;
private:
    std::vector<std::string> positional_;
    std::map<std::string, std::string> values_;
    std::vector<std::string> flags_;
};

struct Command {
    const char* name;
    const char* summary;
    const char* usage;                          // full --help text
    std::vector<std::string> valueOptions;      // options that take a value
    int (*run)(const Args&);
    std::vector<std::string> flags = {};        // options that take no value; any other option is refused
};

// Registers a command from a static object in its group file.
struct Register {
    explicit Register(Command command);
};
const std::vector<Command>& commands();

// ---- images --------------------------------------------------------------------------------
struct Image {
    std::vector<unsigned char> pixels;
    int width = 0;
    int height = 0;
    int channels = 0;  // 1 grey, 3 BGR
};

// Reads an 8-bit or 24-bit BMP (depth taken from the header); Failure with a clear message otherwise.
Image loadBmp(const std::string& path);
// Reads a BMP and converts it to grey if it is colour, saying so on stderr.
Image loadGreyBmp(const std::string& path);
// Writes 8-bit (grey) or 24-bit (BGR) BMP through a temporary file, so no half-written file is
// left behind on failure.
void saveBmp(const Image& image, const std::string& path, bool markColours = false);

// Reads a whole file; Failure when missing or unreadable.
std::vector<unsigned char> readFile(const std::string& path);
// Writes a whole file through a temporary name and renames it into place.
void writeFile(const std::string& path, const std::vector<unsigned char>& bytes);

// Prints "  done/total" progress on stderr for long batch work, when stderr is a terminal.
void progress(const char* what, long done, long total);

}  // namespace cli

#endif
