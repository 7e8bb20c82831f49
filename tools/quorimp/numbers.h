// Numbers on the command line: whole numbers, decimals and comma-separated lists of them.
#ifndef QUORIMP_TOOL_NUMBERS_H
#define QUORIMP_TOOL_NUMBERS_H

#include <string>
#include <vector>

namespace quorimp_tool {

// A decimal integer, all of the text, within [minimum, maximum].
bool parse_whole_number(const std::string& text, long minimum, long maximum, long& value);

// A finite decimal number such as "12", "-0.5", "3.25e2", all of the text. Hexadecimal forms,
// "inf" and "nan" are not numbers here.
bool parse_decimal(const std::string& text, double& value);

// Splits "1, 2,3" at the commas and trims the blanks around each item. An empty text gives one
// empty item, so that every miscount shows up as a wrong number of items.
std::vector<std::string> split_list(const std::string& text);

// Rounds to the nearest whole number with halves going up (10.5 gives 11, -0.5 gives 0, -0.6
// gives -1): the rounding the engine itself applies when it turns corners into whole pixels.
int round_half_up(double value);

}  // namespace quorimp_tool

#endif
