// A subcommand of the tool: its name, its help texts, its options and the function that runs it.
//
// Adding a command takes a new source file that defines a make_..._command() function, a line in
// all_commands() (commands.cpp) and the file in CMakeLists.txt. The command line is parsed for it
// from its option table, and its help page is built from the same table.
#ifndef QUORIMP_TOOL_COMMAND_H
#define QUORIMP_TOOL_COMMAND_H

#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace quorimp_tool {

struct Option {
    std::string name;        // long form without the dashes: "output" for --output
    char short_name = 0;     // 'o' for -o; 0 when there is no short form
    std::string value_name;  // "OUTPUT"; empty for a flag that takes no value
    std::string help;
};

class Arguments;

struct Command {
    std::string name;
    std::string summary;      // one line for the list of commands
    std::string synopsis;     // what follows "usage: quorimp "
    std::string description;  // the body of the command's help page, lines ending in '\n'
    std::vector<Option> options;
    int (*run)(const Arguments& arguments) = nullptr;
};

// The parsed command line of one command. Option values are keyed by the long name.
class Arguments {
public:
    const std::vector<std::string>& positionals() const { return positionals_; }
    bool has(const std::string& option) const { return values_.count(option) != 0; }
    // The value of an option that must be there; throws UsageError naming the option when absent.
    const std::string& required(const std::string& option) const;
    // The one positional argument called `what` in the synopsis ("INPUT"); throws UsageError when
    // there is none or more than one.
    const std::string& single_positional(const std::string& what) const;
    bool wants_help() const { return wants_help_; }

private:
    friend Arguments parse_arguments(const Command& command, int argc, char** argv);

    const Command* command_ = nullptr;
    std::vector<std::string> positionals_;
    std::map<std::string, std::string> values_;
    bool wants_help_ = false;
};

// Parses argv[0..argc) against the command's options: "--name VALUE", "--name=VALUE", "-n VALUE",
// "-nVALUE", flags, and "--" to end the options. An argument that starts with '-' followed by a
// digit or a '.' is a (negative) number, not an option. "-h" or "--help" anywhere before "--" asks
// for the help page. Throws UsageError for an unknown option, a missing value, or an option given
// twice.
Arguments parse_arguments(const Command& command, int argc, char** argv);

// "  -o, --output OUTPUT   where to write ..." for every option, then "-h, --help".
void print_command_help(const Command& command, std::FILE* out);

// The command table, in the order of the overall help page.
const std::vector<Command>& all_commands();

Command make_binarize_command();
Command make_correct_command();
Command make_dimension_command();
Command make_version_command();

}  // namespace quorimp_tool

#endif
