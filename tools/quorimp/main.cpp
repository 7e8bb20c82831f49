// quorimp: the command-line face of the engine. `quorimp --help` lists the commands; each
// command's help page comes from its own table (command.h).
//
// Exit status: 0 done; 2 refused, with one line on stderr that names the file, where there is
// one, and the reason; 1 an unexpected failure inside the engine or out of memory.

#include <cstdio>
#include <cstring>
#include <exception>
#include <new>
#include <string>

#include "command.h"
#include "tool_error.h"

namespace {

using quorimp_tool::Command;

constexpr int kExitFailed = 1;

void print_overview(std::FILE* out) {
    std::fputs("usage: quorimp COMMAND [ARGUMENTS]\n\ncommands:\n", out);
    for (const Command& command : quorimp_tool::all_commands()) {
        std::fprintf(out, "  %-11s %s\n", command.name.c_str(), command.summary.c_str());
    }
    std::fprintf(out, "  %-11s %s\n", "help",
                 "print this help, or with COMMAND that command's help");
    std::fputs("\nRun 'quorimp COMMAND --help' for the arguments of a command.\n", out);
}

const Command* find_command(const std::string& name) {
    for (const Command& command : quorimp_tool::all_commands()) {
        if (command.name == name) {
            return &command;
        }
    }
    return nullptr;
}

int refuse_unknown_command(const std::string& name) {
    std::fprintf(stderr, "quorimp: unknown command '%s' (see 'quorimp --help')\n", name.c_str());
    return quorimp_tool::kExitRefused;
}

int run_command(const Command& command, int argc, char** argv) {
    const char* name = command.name.c_str();
    try {
        const quorimp_tool::Arguments arguments =
            quorimp_tool::parse_arguments(command, argc, argv);
        if (arguments.wants_help()) {
            quorimp_tool::print_command_help(command, stdout);
            return 0;
        }
        return command.run(arguments);
    } catch (const quorimp_tool::UsageError& error) {
        std::fprintf(stderr, "quorimp %s: %s (see 'quorimp %s --help')\n", name, error.what(),
                     name);
        return quorimp_tool::kExitRefused;
    } catch (const quorimp_tool::ToolError& error) {
        std::fprintf(stderr, "quorimp %s: %s\n", name, error.what());
        return quorimp_tool::kExitRefused;
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "quorimp %s: out of memory\n", name);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "quorimp %s: unexpected failure: %s\n", name, error.what());
    } catch (const char* message) {
        // The engine's image classes throw their messages as plain strings.
        std::fprintf(stderr, "quorimp %s: unexpected failure: %s\n", name, message);
    }
    return kExitFailed;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        print_overview(stderr);
        return quorimp_tool::kExitRefused;
    }
    const std::string first = argv[1];
    if (first == "-h" || first == "--help" || (first == "help" && argc == 2)) {
        print_overview(stdout);
        return 0;
    }
    if (first == "help") {
        const Command* command = find_command(argv[2]);
        if (command == nullptr || argc > 3) {
            return refuse_unknown_command(argc > 3 ? std::string(argv[2]) + " " + argv[3]
                                                   : argv[2]);
        }
        quorimp_tool::print_command_help(*command, stdout);
        return 0;
    }
    const Command* command = find_command(first == "--version" ? "version" : first);
    if (command == nullptr) {
        return refuse_unknown_command(first);
    }
    return run_command(*command, argc - 2, argv + 2);
}
