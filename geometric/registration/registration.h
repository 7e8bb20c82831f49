#ifndef QUORIMP_GEOMETRIC_REGISTRATION_REGISTRATION_H
#define QUORIMP_GEOMETRIC_REGISTRATION_REGISTRATION_H

#include "common/image.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// The root of every search for a page in an image. The image belongs to the caller.
class QUORIMP_EXPORT Registration {
public:
    explicit Registration(const common::Image* image) : image(image) {}
    virtual ~Registration() = 0;

    const common::Image* image;
};

}  // namespace geometric

#endif
