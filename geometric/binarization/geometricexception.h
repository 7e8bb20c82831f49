#ifndef QUORIMP_GEOMETRIC_BINARIZATION_GEOMETRICEXCEPTION_H
#define QUORIMP_GEOMETRIC_BINARIZATION_GEOMETRICEXCEPTION_H

#include <exception>
#include <string>

#include "quorimp/quorimp_export.h"

namespace geometric {

// The engine's own errors: a refused parameter, a window that does not fit the image, a failed
// working allocation. The image classes keep throwing their constant strings instead.
class QUORIMP_EXPORT Geometricexception : public std::exception {
public:
    explicit Geometricexception(const std::string& message);
    ~Geometricexception() override;

    const char* what() const noexcept override;

    std::string message;
};

}  // namespace geometric

#endif
