#include "numbers.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>

namespace quorimp_tool {

namespace {

bool is_blank(char c) {
    return c == ' ' || c == '\t';
}

std::string trimmed(const std::string& text) {
    std::size_t begin = 0;
    std::size_t end = text.size();
    while (begin < end && is_blank(text[begin])) {
        ++begin;
    }
    while (end > begin && is_blank(text[end - 1])) {
        --end;
    }
    return text.substr(begin, end - begin);
}

}  // namespace

bool parse_whole_number(const std::string& text, long minimum, long maximum, long& value) {
    if (text.empty() || is_blank(text[0])) {
        return false;
    }
    errno = 0;
    char* end = nullptr;
    const long parsed = std::strtol(text.c_str(), &end, 10);
    if (*end != '\0' || errno == ERANGE || parsed < minimum || parsed > maximum) {
        return false;
    }
    value = parsed;
    return true;
}

bool parse_decimal(const std::string& text, double& value) {
    // strtod alone would also take "0x1p3", "inf" and "nan"; only plain decimal notation passes.
    if (text.empty() || text.find_first_not_of("0123456789+-.eE") != std::string::npos) {
        return false;
    }
    errno = 0;
    char* end = nullptr;
    const double parsed = std::strtod(text.c_str(), &end);
    if (*end != '\0' || errno == ERANGE || !std::isfinite(parsed)) {
        return false;
    }
    value = parsed;
    return true;
}

std::vector<std::string> split_list(const std::string& text) {
    std::vector<std::string> items;
    std::size_t start = 0;
    while (true) {
        const std::size_t comma = text.find(',', start);
        items.push_back(trimmed(text.substr(start, comma - start)));
        if (comma == std::string::npos) {
            return items;
        }
        start = comma + 1;
    }
}

int round_half_up(double value) {
    return static_cast<int>(std::floor(value + 0.5));
}

}  // namespace quorimp_tool
