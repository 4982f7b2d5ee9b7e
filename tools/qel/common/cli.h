// The qel tool's command plumbing: the two kinds of error, subcommand registration, argument
// parsing, and whole-file reads and writes.
#ifndef QEL_TOOL_CLI_H
#define QEL_TOOL_CLI_H

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace cli {

// Exit statuses: 0 done, 2 for anything the user can fix by changing the command or the input,
// 1 when the work itself fails.
constexpr int kExitBadInput = 2;
constexpr int kExitFailure = 1;

// Everything the user can fix: a bad option, a missing or unreadable input file, a directory, a
// file that is not a supported image, a size a format refuses, an unknown output extension. main
// prints "qel <command>: <message>" and exits with kExitBadInput.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};
// The input was fine but the work failed (the output cannot be written): kExitFailure.
struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Parsed command line: positional arguments and --options (an option is a flag or takes the
// next word as its value, as the command's option list says). "-o" is short for "--output".
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
    // At least `count` positional arguments; returns how many there are.
    size_t expectAtLeast(size_t count) const;
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

// ---- whole files -----------------------------------------------------------------------------
// Throws UsageError naming the problem unless `path` is an existing file that is not a directory.
void requireInputFile(const std::string& path);
// Reads a whole file; UsageError when it is missing, a directory or unreadable.
std::vector<unsigned char> readFile(const std::string& path);
// Writes a whole file through a temporary name and renames it into place; Failure when it cannot.
void writeFile(const std::string& path, const std::vector<unsigned char>& bytes);
// The temporary name a file is written under before it is renamed into place.
std::string temporaryName(const std::string& path);
// Renames a completely written temporary file onto its final name; Failure (and the temporary
// file removed) when that is impossible.
void moveIntoPlace(const std::string& temp, const std::string& path);

// A number as the user would write it, in at most 6 significant digits: 30, 12.5, 0.333.
std::string shortNumber(double value);

// Lower-case extension of a file name without its dot ("" when there is none).
std::string extensionOf(const std::string& path);

}  // namespace cli

#endif
