#ifndef QUORIMP_GEOMETRIC_BINARIZATION_REVERSED_BITS_H
#define QUORIMP_GEOMETRIC_BINARIZATION_REVERSED_BITS_H

namespace geometric {

// Bytes with their bits in reverse order. A mask of eight pixels with the first pixel in the
// lowest bit, as vector compares give it, becomes a byte of a binary row, whose first pixel is in
// the highest bit. Not part of the library's interface.
struct ReversedBits {
    constexpr ReversedBits() : table() {
        for (int value = 0; value < 256; ++value) {
            int reversed = 0;
            for (int bit = 0; bit < 8; ++bit) {
                reversed |= ((value >> bit) & 1) << (7 - bit);
            }
            table[value] = static_cast<unsigned char>(reversed);
        }
    }
    unsigned char table[256];
};

inline constexpr ReversedBits kReversedBits;

}  // namespace geometric

#endif
