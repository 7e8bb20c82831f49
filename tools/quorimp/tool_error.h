// The two ways a command of the tool refuses to go on. Both carry one line of text, without the
// leading "quorimp COMMAND: " that main() adds; both end the program with exit status 2.
#ifndef QUORIMP_TOOL_TOOL_ERROR_H
#define QUORIMP_TOOL_TOOL_ERROR_H

#include <stdexcept>
#include <string>

namespace quorimp_tool {

// A file or value that the tool cannot work with. The text names the file first, when there is
// one: "scan.png: the file ends too early (truncated PNG)".
class ToolError : public std::runtime_error {
public:
    explicit ToolError(const std::string& message) : std::runtime_error(message) {}
};

// A command line that does not fit the command. main() adds a pointer to the command's help.
class UsageError : public ToolError {
public:
    explicit UsageError(const std::string& message) : ToolError(message) {}
};

constexpr int kExitRefused = 2;

}  // namespace quorimp_tool

#endif
