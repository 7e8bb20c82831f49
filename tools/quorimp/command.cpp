#include "command.h"

#include <cstring>

#include "tool_error.h"

namespace quorimp_tool {

namespace {

constexpr std::size_t kHelpColumn = 26;

const Option* find_long(const Command& command, const std::string& name) {
    for (const Option& option : command.options) {
        if (option.name == name) {
            return &option;
        }
    }
    return nullptr;
}

const Option* find_short(const Command& command, char name) {
    for (const Option& option : command.options) {
        if (option.short_name != 0 && option.short_name == name) {
            return &option;
        }
    }
    return nullptr;
}

std::string spelled(const Option& option) {
    return "--" + option.name;
}

bool looks_like_number(const char* text) {
    return text[0] == '-' && ((text[1] >= '0' && text[1] <= '9') || text[1] == '.');
}

bool asks_for_help(const char* text) {
    return std::strcmp(text, "-h") == 0 || std::strcmp(text, "--help") == 0;
}

void print_option_line(const std::string& left, const std::string& help, std::FILE* out) {
    std::string line = "  " + left;
    if (line.size() + 2 > kHelpColumn) {
        std::fprintf(out, "%s\n", line.c_str());
        line.clear();
    }
    line.resize(kHelpColumn, ' ');
    // Continuation lines of the help text start in the same column.
    std::size_t start = 0;
    while (true) {
        const std::size_t end = help.find('\n', start);
        std::fprintf(out, "%s%s\n", line.c_str(), help.substr(start, end - start).c_str());
        if (end == std::string::npos || end + 1 == help.size()) {
            break;
        }
        start = end + 1;
        line.assign(kHelpColumn, ' ');
    }
}

}  // namespace

const std::string& Arguments::required(const std::string& option) const {
    const auto found = values_.find(option);
    if (found != values_.end()) {
        return found->second;
    }
    const Option* declared = find_long(*command_, option);
    std::string form = "--" + option;
    if (declared != nullptr && declared->short_name != 0) {
        form = std::string("-") + declared->short_name;
    }
    if (declared != nullptr && !declared->value_name.empty()) {
        form += " " + declared->value_name;
    }
    throw UsageError("missing " + form);
}

const std::string& Arguments::single_positional(const std::string& what) const {
    if (positionals_.empty()) {
        throw UsageError("missing " + what);
    }
    if (positionals_.size() > 1) {
        throw UsageError("expected one " + what + ", got " + std::to_string(positionals_.size()) +
                         " ('" + positionals_[0] + "', '" + positionals_[1] + "'" +
                         (positionals_.size() > 2 ? ", ...)" : ")"));
    }
    return positionals_[0];
}

Arguments parse_arguments(const Command& command, int argc, char** argv) {
    Arguments result;
    result.command_ = &command;
    for (int i = 0; i < argc && std::strcmp(argv[i], "--") != 0; ++i) {
        if (asks_for_help(argv[i])) {
            result.wants_help_ = true;
            return result;
        }
    }

    bool options_ended = false;
    for (int i = 0; i < argc; ++i) {
        const std::string argument = argv[i];
        if (options_ended || argument.size() < 2 || argument[0] != '-' ||
            looks_like_number(argv[i])) {
            result.positionals_.push_back(argument);
            continue;
        }
        if (argument == "--") {
            options_ended = true;
            continue;
        }

        const Option* option = nullptr;
        std::string value;
        bool value_attached = false;
        if (argument[1] == '-') {
            const std::size_t equals = argument.find('=');
            option = find_long(command, argument.substr(2, equals - 2));
            if (equals != std::string::npos) {
                value = argument.substr(equals + 1);
                value_attached = true;
            }
        } else {
            option = find_short(command, argument[1]);
            if (argument.size() > 2) {
                value = argument.substr(2);
                value_attached = true;
            }
        }
        if (option == nullptr || (value_attached && option->value_name.empty())) {
            throw UsageError("unknown option '" + argument + "'");
        }
        if (result.values_.count(option->name) != 0) {
            throw UsageError("option " + spelled(*option) + " given twice");
        }
        if (!option->value_name.empty() && !value_attached) {
            if (i + 1 >= argc) {
                throw UsageError("option " + spelled(*option) + " needs a value (" +
                                 option->value_name + ")");
            }
            value = argv[++i];
        }
        result.values_[option->name] = value;
    }
    return result;
}

void print_command_help(const Command& command, std::FILE* out) {
    std::fprintf(out, "usage: quorimp %s\n\n%s", command.synopsis.c_str(),
                 command.description.c_str());
    std::fputs("\noptions:\n", out);
    for (const Option& option : command.options) {
        std::string left = option.short_name != 0 ? std::string("-") + option.short_name + ", "
                                                  : std::string("    ");
        left += "--" + option.name;
        if (!option.value_name.empty()) {
            left += " " + option.value_name;
        }
        print_option_line(left, option.help, out);
    }
    print_option_line("-h, --help", "show this help", out);
}

const std::vector<Command>& all_commands() {
    static const std::vector<Command> commands = {
        make_binarize_command(),
        make_correct_command(),
        make_dimension_command(),
        make_version_command(),
    };
    return commands;
}

}  // namespace quorimp_tool
