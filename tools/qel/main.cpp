// The qel tool: the command overview, --version, and running one subcommand with the exit status
// its outcome calls for.
#include "common/cli.h"

#include <algorithm>
#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <vector>

#ifndef QEL_VERSION
#  define QEL_VERSION "unknown"
#endif

namespace {

void printOverview() {
    std::cout << "qel - machine-vision image processing on image files and camera frames\n\n"
                 "usage: qel <command> [arguments] [--options]\n"
                 "       qel <command> --help\n"
                 "       qel --version\n\n"
                 "Images are read from BMP (uncompressed 8-bit and 24-bit), PNG and JPEG files, and\n"
                 "written as BMP or PNG, as the output's extension says.\n\ncommands:\n";
    // The main job first, then files and formats, then the operations alphabetically.
    std::vector<const cli::Command*> sorted;
    for (const auto& c : cli::commands()) sorted.push_back(&c);
    auto rank = [](const cli::Command* c) {
        const std::string name = c->name;
        return name == "inspect" ? 0 : name == "info" ? 1 : name == "convert" ? 2 : 3;
    };
    std::sort(sorted.begin(), sorted.end(), [&](const cli::Command* a, const cli::Command* b) {
        return rank(a) != rank(b) ? rank(a) < rank(b) : std::string(a->name) < std::string(b->name);
    });
    for (const cli::Command* c : sorted) {
        std::string name = c->name;
        name.resize(12, ' ');
        std::cout << "  " << name << c->summary << "\n";
    }
    std::cout << "\nexit status: 0 done; 2 bad command line or unusable input (missing file, directory,\n"
                 "unsupported or damaged image, unknown output extension); 1 the work failed (the\n"
                 "output could not be written).\n";
}

int run(const cli::Command& c, const std::vector<std::string>& words) {
    const std::string prefix = std::string("qel ") + c.name + ": ";
    try {
        return c.run(cli::Args(words, c.valueOptions, c.flags));
    } catch (const cli::UsageError& e) {
        std::cerr << prefix << e.what() << "\n";
        return cli::kExitBadInput;
    } catch (const cli::Failure& e) {
        std::cerr << prefix << e.what() << "\n";
        return cli::kExitFailure;
    } catch (const std::bad_alloc&) {
        std::cerr << prefix << "out of memory\n";
        return cli::kExitFailure;
    } catch (const std::exception& e) {  // anything else is a fault of the tool, still reported plainly
        std::cerr << prefix << e.what() << "\n";
        return cli::kExitFailure;
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        printOverview();
        return cli::kExitBadInput;
    }
    const std::string name = argv[1];
    if (name == "--help" || name == "-h" || name == "help") {
        printOverview();
        return 0;
    }
    if (name == "--version") {
        std::cout << "qel " << QEL_VERSION << "\n";
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
        return run(c, words);
    }
    std::cerr << "qel: unknown command '" << name << "' (try qel --help)\n";
    return cli::kExitBadInput;
}
