#ifndef QUORIMP_GEOMETRIC_BINARIZATION_BINARIZATION_METHOD_H
#define QUORIMP_GEOMETRIC_BINARIZATION_BINARIZATION_METHOD_H

// The binarization methods by number; the numbers are part of the interface.
enum BinarizationMethod {
    BinarizationSauvola = 0,
    BinarizationOmin = 1,
    BinarizationSauvolaOriginal = 2,
    BinarizationWolfOriginal = 3,
    BinarizationOtsu = 4,
};

#endif
