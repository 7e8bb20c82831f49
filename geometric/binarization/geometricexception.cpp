#include "geometric/binarization/geometricexception.h"

namespace geometric {

Geometricexception::Geometricexception(const std::string& message) : message(message) {}

Geometricexception::~Geometricexception() = default;

const char* Geometricexception::what() const noexcept {
    return message.c_str();
}

}  // namespace geometric
