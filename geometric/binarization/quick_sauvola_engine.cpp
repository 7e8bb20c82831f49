#include "geometric/binarization/quick_sauvola_engine.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <type_traits>
#include <vector>

#include "geometric/binarization/geometricexception.h"
#include "geometric/binarization/reversed_bits.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#define QUORIMP_SAUVOLA_SSE2 1
#endif

namespace geometric {

namespace {

const char* const kWindowTooLarge = "The window size is too large";
const char* const kAllocationFailed = "Allocating memory failed!";
const char* const kSmoothingAllocationFailed = "Locating error failed!";
const char* const kNegativeWeight = "Wrong weighting parameter for smoothing";

struct FreeDeleter {
    void operator()(void* pointer) const { std::free(pointer); }
};

template <typename T>
std::unique_ptr<T[], FreeDeleter> allocate_array(std::size_t count, const char* failure) {
    if (count > std::numeric_limits<std::size_t>::max() / sizeof(T)) {
        throw Geometricexception(failure);
    }
    T* array = static_cast<T*>(std::malloc(std::max<std::size_t>(count, 1) * sizeof(T)));
    if (array == nullptr) {
        throw Geometricexception(failure);
    }
    return std::unique_ptr<T[], FreeDeleter>(array);
}

// The square root truncated, not rounded, to three decimals.
float truncated_root(double value) {
    return static_cast<float>(std::floor(std::sqrt(value) * 1000.0) / 1000.0);
}

// ORs the marks of the columns [from, to), `from` a multiple of 8, into a binary row.
void pack_marks(const unsigned char* marks, int from, int to, const unsigned char bit_masks[8],
                unsigned char* bits) {
    int x = from;
#ifdef QUORIMP_SAUVOLA_SSE2
    const __m128i zero = _mm_setzero_si128();
    for (; x + 16 <= to; x += 16) {
        const __m128i set =
            _mm_cmpgt_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(marks + x)), zero);
        const int mask = _mm_movemask_epi8(set);
        bits[x / 8] |= kReversedBits.table[mask & 0xFF];
        bits[x / 8 + 1] |= kReversedBits.table[(mask >> 8) & 0xFF];
    }
#endif
    for (; x < to; ++x) {
        if (marks[x]) {
            bits[x / 8] |= bit_masks[x % 8];
        }
    }
}

// Sums of three horizontal neighbours of one row, for the columns 1 to width - 2. At most 765:
// the ring of the smoothing pass holds them in 16 bits.
void horizontal_sums(const unsigned char* row, int width, std::uint16_t* sums) {
    int x = 1;
#ifdef QUORIMP_SAUVOLA_SSE2
    const __m128i zero = _mm_setzero_si128();
    auto words = [&](int at) {
        return _mm_unpacklo_epi8(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(row + at)), zero);
    };
    for (; x + 9 <= width; x += 8) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(sums + x),
                         _mm_add_epi16(_mm_add_epi16(words(x - 1), words(x)), words(x + 1)));
    }
#endif
    for (; x < width - 1; ++x) {
        sums[x] = static_cast<std::uint16_t>(row[x - 1] + row[x] + row[x + 1]);
    }
}

// The inner pixels of one row of the smoothing pass: (q * p + s0 + s1 + s2) / (9 + q).
void smooth_inner_pixels(unsigned char* row, const std::uint16_t* s0, const std::uint16_t* s1,
                         const std::uint16_t* s2, int last, int weight) {
    int x = 1;
#ifdef QUORIMP_SAUVOLA_SSE2
    auto load = [](const std::uint16_t* at) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    };
    const __m128i zero = _mm_setzero_si128();
    const int divisor = 9 + std::min(weight, 4096);
    if (weight <= 7) {
        // The numerator n is at most 255 * (9 + q), and for weights up to 7 n * (9 + q) stays
        // below 2^16: with m = ceil(2^16 / (9 + q)) the high half of n * m is the quotient.
        const __m128i q = _mm_set1_epi16(static_cast<short>(weight));
        const __m128i m = _mm_set1_epi16(static_cast<short>(((1 << 16) + divisor - 1) / divisor));
        for (; x + 8 <= last; x += 8) {
            const __m128i pixels =
                _mm_unpacklo_epi8(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(row + x)), zero);
            const __m128i numerator = _mm_add_epi16(
                _mm_mullo_epi16(q, pixels),
                _mm_add_epi16(_mm_add_epi16(load(s0 + x), load(s1 + x)), load(s2 + x)));
            const __m128i quotient = _mm_mulhi_epu16(numerator, m);
            _mm_storel_epi64(reinterpret_cast<__m128i*>(row + x), _mm_packus_epi16(quotient, zero));
        }
    } else if (weight <= 4095) {
        // In single precision the numerator, at most 255 * (9 + q), is exact, and the quotient is
        // below 256 while a fraction that is not whole stays at least 1 / (9 + q) away from the
        // next integer, far more than the rounding of the division: the truncated float quotient
        // is the integer quotient.
        const __m128 q = _mm_set1_ps(static_cast<float>(weight));
        const __m128 divisor_float = _mm_set1_ps(static_cast<float>(divisor));
        auto quotients = [&](__m128i pixels, __m128i sums) {
            const __m128 numerator =
                _mm_add_ps(_mm_mul_ps(q, _mm_cvtepi32_ps(pixels)), _mm_cvtepi32_ps(sums));
            return _mm_cvttps_epi32(_mm_div_ps(numerator, divisor_float));
        };
        for (; x + 8 <= last; x += 8) {
            const __m128i pixels =
                _mm_unpacklo_epi8(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(row + x)), zero);
            const __m128i sums =
                _mm_add_epi16(_mm_add_epi16(load(s0 + x), load(s1 + x)), load(s2 + x));
            const __m128i low =
                quotients(_mm_unpacklo_epi16(pixels, zero), _mm_unpacklo_epi16(sums, zero));
            const __m128i high =
                quotients(_mm_unpackhi_epi16(pixels, zero), _mm_unpackhi_epi16(sums, zero));
            const __m128i packed = _mm_packs_epi32(low, high);
            _mm_storel_epi64(reinterpret_cast<__m128i*>(row + x), _mm_packus_epi16(packed, packed));
        }
    }
#endif
    const long long divisor_of_rest = 9LL + weight;
    for (; x < last; ++x) {
        const long long numerator = static_cast<long long>(weight) * row[x] + s0[x] + s1[x] + s2[x];
        row[x] = static_cast<unsigned char>(numerator / divisor_of_rest);
    }
}

// The smoothing pre-pass, in place, on images of at least 3 columns and 2 rows; smaller images
// are left as they are (the engine refuses them right after). The inner pixels of a row take the
// three-pixel sums of the ring, whose rows were read before they changed; the borders read
// neighbours that may already be smoothed. The neighbourhood of an inner pixel is shifted one
// row up: row y takes the sums of rows y - 2 to y.
void smooth_in_place(unsigned char* pixels, int width, int height, int weight) {
    if (weight < 0) {
        throw Geometricexception(kNegativeWeight);
    }
    if (width < 3 || height < 2) {
        return;
    }
    auto ring = allocate_array<std::uint16_t>(3 * static_cast<std::size_t>(width),
                                              kSmoothingAllocationFailed);
    std::uint16_t* slots[3] = {ring.get(), ring.get() + width,
                               ring.get() + 2 * static_cast<std::size_t>(width)};
    auto row = [&](int y) { return pixels + static_cast<std::size_t>(width) * y; };

    horizontal_sums(row(0), width, slots[0]);
    horizontal_sums(row(1), width, slots[1]);
    if (height > 2) {
        horizontal_sums(row(2), width, slots[2]);
    }

    const int last = width - 1;
    unsigned char* first_row = row(0);
    const unsigned char* second_row = row(1);
    first_row[0] = static_cast<unsigned char>(
        (3 * first_row[0] + first_row[1] + second_row[0] + second_row[1]) / 6);
    for (int x = 1; x < last; ++x) {
        first_row[x] =
            static_cast<unsigned char>((4 * first_row[x] + slots[0][x] + slots[1][x]) / 10);
    }
    first_row[last] = static_cast<unsigned char>(
        (3 * first_row[last] + second_row[last - 1] + first_row[last - 1] + second_row[last]) / 6);

    int slot = 0;
    for (int y = 1; y < height - 1; ++y) {
        horizontal_sums(row(y), width, slots[slot]);
        slot = slot == 2 ? 0 : slot + 1;
        const unsigned char* up = row(y - 1);
        unsigned char* current = row(y);
        const unsigned char* down = row(y + 1);
        current[0] = static_cast<unsigned char>(
            (5 * current[0] + down[1] + up[1] + current[1] + up[0] + down[0]) / 10);
        smooth_inner_pixels(current, slots[0], slots[1], slots[2], last, weight);
        current[last] =
            static_cast<unsigned char>((5 * current[last] + down[last - 1] + up[last - 1] +
                                        current[last - 1] + up[last] + down[last]) /
                                       10);
    }
}

#ifdef QUORIMP_SAUVOLA_SSE2
// The running sums of one row, 16 pixels at a time, added to the integral row above; all in
// 32-bit arithmetic modulo 2^32, like the scalar walk. Returns the first column left to do.
int integral_row_sse2(const unsigned char* pixels, int width, const std::uint32_t* previous_sum,
                      const std::uint32_t* previous_square, std::uint32_t* sum,
                      std::uint32_t* square) {
    const __m128i zero = _mm_setzero_si128();
    __m128i carry_sum = zero;
    __m128i carry_square = zero;
    // Inclusive prefix sum of four lanes, plus the carry of the lanes before.
    auto prefix = [](__m128i v, __m128i& carry) {
        v = _mm_add_epi32(v, _mm_slli_si128(v, 4));
        v = _mm_add_epi32(v, _mm_slli_si128(v, 8));
        v = _mm_add_epi32(v, carry);
        carry = _mm_shuffle_epi32(v, 0xFF);
        return v;
    };
    auto store = [](std::uint32_t* target, const std::uint32_t* above, __m128i v) {
        const __m128i row_above = _mm_loadu_si128(reinterpret_cast<const __m128i*>(above));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(target), _mm_add_epi32(v, row_above));
    };
    int x = 0;
    for (; x + 16 <= width; x += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pixels + x));
        const __m128i words[2] = {_mm_unpacklo_epi8(bytes, zero), _mm_unpackhi_epi8(bytes, zero)};
        for (int half_block = 0; half_block < 2; ++half_block) {
            const __m128i w = words[half_block];
            const __m128i w_square = _mm_mullo_epi16(w, w);  // at most 65025: fits 16 bits
            const __m128i values[2] = {_mm_unpacklo_epi16(w, zero), _mm_unpackhi_epi16(w, zero)};
            const __m128i squares[2] = {_mm_unpacklo_epi16(w_square, zero),
                                        _mm_unpackhi_epi16(w_square, zero)};
            for (int quarter = 0; quarter < 2; ++quarter) {
                const int at = x + 8 * half_block + 4 * quarter;
                store(sum + at, previous_sum + at, prefix(values[quarter], carry_sum));
                store(square + at, previous_square + at, prefix(squares[quarter], carry_square));
            }
        }
    }
    return x;
}
#endif

// One image row of the integral: every entry holds the sum over all rows up to this one and all
// columns up to and including its own. `previous` is null for image row 0.
template <typename Entry>
void integral_row(const unsigned char* pixels, int width, const Entry* previous_sum,
                  const Entry* previous_square, Entry* sum, Entry* square) {
    Entry row_sum = 0;
    Entry row_square = 0;
    if (previous_sum == nullptr) {
        for (int x = 0; x < width; ++x) {
            const Entry p = pixels[x];
            row_sum += p;
            row_square += p * p;
            sum[x] = row_sum;
            square[x] = row_square;
        }
        return;
    }
    int x = 0;
#ifdef QUORIMP_SAUVOLA_SSE2
    if constexpr (std::is_same<Entry, std::uint32_t>::value) {
        x = integral_row_sse2(pixels, width, previous_sum, previous_square, sum, square);
        if (x > 0) {
            row_sum = sum[x - 1] - previous_sum[x - 1];
            row_square = square[x - 1] - previous_square[x - 1];
        }
    }
#endif
    for (; x < width; ++x) {
        const Entry p = pixels[x];
        row_sum += p;
        row_square += p * p;
        sum[x] = row_sum + previous_sum[x];
        square[x] = row_square + previous_square[x];
    }
}

#ifdef QUORIMP_SAUVOLA_SSE2
// The decision for four neighbouring pixels at once, with the same single-precision steps as the
// decision for one: window sums below 2^31 convert to float exactly as through double, the
// divisions, products and sums are the same operations in the same order, and the square root in
// single precision equals the double root rounded to float, since double carries more than twice
// the bits of float. The table indices are the same truncations; the coarse one, trunc(q + 0.5)
// for q >= 0, is found as trunc(q) plus one when the exact remainder q - trunc(q) reaches 0.5.
class FourPixelDecision {
public:
    // What all groups of a run share.
    struct Constants {
        Constants(int low_gray, int high_gray, float k_over_128, float one_minus_k,
                  const float* fine, const float* middle, const float* coarse)
            : low(_mm_set1_epi32(low_gray)),
              high(_mm_set1_epi32(high_gray)),
              k_over_128(_mm_set1_ps(k_over_128)),
              one_minus_k(_mm_set1_ps(one_minus_k)),
              tables{fine, middle, coarse} {}

        __m128i low;
        __m128i high;
        __m128 k_over_128;
        __m128 one_minus_k;
        const float* tables[3];
    };

    // The four pixels from `row`; the marks of those outside the grey band are set here.
    FourPixelDecision(const Constants& constants, const unsigned char* row) : constants(constants) {
        std::int32_t four;
        std::memcpy(&four, row, sizeof(four));
        const __m128i zero = _mm_setzero_si128();
        pixels = _mm_unpacklo_epi16(_mm_unpacklo_epi8(_mm_cvtsi32_si128(four), zero), zero);
        below_low = _mm_cmplt_epi32(pixels, constants.low);
        above_high = _mm_cmpgt_epi32(pixels, constants.high);
        foreground = below_low;
    }

    // Whether any of the four lies inside the grey band and needs the statistics.
    bool in_band() const {
        return _mm_movemask_epi8(_mm_or_si128(below_low, above_high)) != 0xFFFF;
    }

    static __m128i load(const std::uint32_t* entries) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(entries));
    }

    // The four window sums, each the difference of two column differences.
    static __m128i window_sum(const std::uint32_t* bottom, const std::uint32_t* top, int left,
                              int right) {
        return _mm_sub_epi32(_mm_sub_epi32(load(bottom + right), load(top + right)),
                             _mm_sub_epi32(load(bottom + left), load(top + left)));
    }

    void with_root(__m128i sum, __m128i square, __m128 divisor) {
        __m128 mean;
        const __m128 variance = variance_of(sum, square, divisor, mean);
        decide(_mm_sqrt_ps(_mm_andnot_ps(_mm_set1_ps(-0.0f), variance)), mean);
    }

    void with_tables(__m128i sum, __m128i square, __m128 divisor) {
        __m128 mean;
        const __m128 variance = variance_of(sum, square, divisor, mean);
        const __m128i in_fine = _mm_castps_si128(_mm_cmple_ps(variance, _mm_set1_ps(100.0f)));
        const __m128i in_middle = _mm_andnot_si128(
            in_fine, _mm_castps_si128(_mm_cmple_ps(variance, _mm_set1_ps(1000.0f))));
        // A variance a rounding step below 0 gives the index 0.
        __m128i fine = _mm_cvttps_epi32(_mm_mul_ps(variance, _mm_set1_ps(10.0f)));
        fine = _mm_andnot_si128(_mm_srai_epi32(fine, 31), fine);
        const __m128i middle = _mm_cvttps_epi32(
            _mm_mul_ps(_mm_sub_ps(variance, _mm_set1_ps(100.0f)), _mm_set1_ps(0.5f)));
        const __m128 q = _mm_div_ps(_mm_sub_ps(variance, _mm_set1_ps(1000.0f)), _mm_set1_ps(10.0f));
        const __m128i whole = _mm_cvttps_epi32(q);
        const __m128 remainder = _mm_sub_ps(q, _mm_cvtepi32_ps(whole));
        __m128i coarse =
            _mm_sub_epi32(whole, _mm_castps_si128(_mm_cmpge_ps(remainder, _mm_set1_ps(0.5f))));
        const __m128i past_end = _mm_cmpgt_epi32(coarse, _mm_set1_epi32(1539));
        coarse = _mm_or_si128(_mm_andnot_si128(past_end, coarse),
                              _mm_and_si128(past_end, _mm_set1_epi32(1539)));
        const __m128i index = _mm_or_si128(
            _mm_or_si128(_mm_and_si128(in_fine, fine), _mm_and_si128(in_middle, middle)),
            _mm_andnot_si128(_mm_or_si128(in_fine, in_middle), coarse));
        const __m128i table = _mm_sub_epi32(
            _mm_set1_epi32(2), _mm_or_si128(_mm_and_si128(in_fine, _mm_set1_epi32(2)),
                                            _mm_and_si128(in_middle, _mm_set1_epi32(1))));
        alignas(16) std::int32_t indices[4];
        alignas(16) std::int32_t which[4];
        _mm_store_si128(reinterpret_cast<__m128i*>(indices), index);
        _mm_store_si128(reinterpret_cast<__m128i*>(which), table);
        const float* const* tables = constants.tables;
        const __m128 root = _mm_setr_ps(tables[which[0]][indices[0]], tables[which[1]][indices[1]],
                                        tables[which[2]][indices[2]], tables[which[3]][indices[3]]);
        decide(root, mean);
    }

    // The foreground of the four pixels, the first in the lowest bit.
    int mask() const { return _mm_movemask_ps(_mm_castsi128_ps(foreground)); }

    // One 0/1 mark per pixel.
    void store(unsigned char* marks) const {
        const __m128i zero = _mm_setzero_si128();
        const __m128i ones = _mm_srli_epi32(foreground, 31);
        const std::int32_t packed =
            _mm_cvtsi128_si32(_mm_packus_epi16(_mm_packs_epi32(ones, zero), zero));
        std::memcpy(marks, &packed, sizeof(packed));
    }

private:
    static __m128 variance_of(__m128i sum, __m128i square, __m128 divisor, __m128& mean) {
        mean = _mm_div_ps(_mm_cvtepi32_ps(sum), divisor);
        const __m128 mean_square = _mm_div_ps(_mm_cvtepi32_ps(square), divisor);
        return _mm_sub_ps(mean_square, _mm_mul_ps(mean, mean));
    }

    void decide(__m128 root, __m128 mean) {
        const __m128i threshold = _mm_cvttps_epi32(_mm_mul_ps(
            _mm_add_ps(_mm_mul_ps(root, constants.k_over_128), constants.one_minus_k), mean));
        const __m128i rejected = _mm_or_si128(above_high, _mm_cmpgt_epi32(pixels, threshold));
        foreground = _mm_or_si128(below_low, _mm_xor_si128(rejected, _mm_set1_epi32(-1)));
    }

    const Constants& constants;
    __m128i pixels;
    __m128i below_low;
    __m128i above_high;
    __m128i foreground;
};
#endif
}  // namespace

QuickSauvolaEngine::QuickSauvolaEngine(common::Image* grey, common::BasicImage* output,
                                       const SauvolaPara& para)
    : grey_image(grey), output_image(output), para(para), bit_masks{0x80, 0x40, 0x20, 0x10,
                                                                    8,    4,    2,    1} {
    for (int i = 0; i < 1001; ++i) {
        root_table_fine[i] = truncated_root(i / 10.0);
    }
    for (int i = 0; i < 451; ++i) {
        root_table_middle[i] = truncated_root(100.0 + 2.0 * i);
    }
    for (int i = 0; i < 1540; ++i) {
        root_table_coarse[i] = std::min(truncated_root(1000.0 + 10.0 * i), 128.0f);
    }
}

bool QuickSauvolaEngine::run() {
    const int width = grey_image->get_width();
    const int height = grey_image->get_height();
    const int smaller = std::min(width, height);
    unsigned char* pixels = height > 0 ? grey_image->get_row(0) : nullptr;

    int window = para.window_size;
    if (11LL * window > smaller) {
        window = smaller / 11;
        if (window < 2) {
            window = 2;
        }
    }
    // A window of one pixel has no neighbourhood, and the border zones would divide by zero.
    if (window < 2) {
        window = 2;
    }

    if (para.use_smoothing) {
        smooth_in_place(pixels, width, height, para.smoothing_weight);
    }

    int ring;
    if (para.use_wide_ring) {
        ring = 4 * window;
        if (2 * ring > smaller) {
            ring = window;
            if (2 * window > smaller) {
                throw Geometricexception(kWindowTooLarge);
            }
        }
    } else {
        // The ring walk advances by whole halves of the ring, so a narrow ring must be even. An
        // image of fewer than three rows or columns cannot hold the smallest ring.
        if (window % 2 != 0) {
            ++window;
        }
        ring = window;
        if (smaller < 3) {
            throw Geometricexception(kWindowTooLarge);
        }
    }

    // No window of any zone counts more than (zone + half) * window pixels. While their sums of
    // squares stay below 2^31, 32-bit entries give the same sums as 64-bit ones.
    const long long largest_count = static_cast<long long>(ring / 2 + window / 2) * window;
    if (255LL * 255LL * largest_count < (1LL << 31)) {
        threshold_zones<std::uint32_t>(pixels, width, height, window, ring);
    } else {
        threshold_zones<std::uint64_t>(pixels, width, height, window, ring);
    }
    return true;
}

template <typename Entry>
void QuickSauvolaEngine::threshold_zones(unsigned char* pixels, int width, int height, int window,
                                         int ring) {
    const std::size_t ring_rows = static_cast<std::size_t>(ring) + 1;
    const std::size_t entries = ring_rows * static_cast<std::size_t>(width);
    auto sums = allocate_array<Entry>(entries, kAllocationFailed);
    auto squares = allocate_array<Entry>(entries, kAllocationFailed);
    auto sum_row = [&](int image_row) {
        return sums.get() + (static_cast<std::size_t>(image_row) % ring_rows) * width;
    };
    auto square_row = [&](int image_row) {
        return squares.get() + (static_cast<std::size_t>(image_row) % ring_rows) * width;
    };
    auto grey_row = [&](int y) { return pixels + static_cast<std::size_t>(width) * y; };

    for (int r = 0; r <= ring; ++r) {
        integral_row<Entry>(grey_row(r), width, r > 0 ? sum_row(r - 1) : nullptr,
                            r > 0 ? square_row(r - 1) : nullptr, sum_row(r), square_row(r));
    }

    const int half = window / 2;
    const int zone = ring / 2;
    const int low_gray = para.low_gray;
    const int high_gray = para.high_gray;
    const float k_over_128 = para.k * 0.0078125f;
    const float one_minus_k = 1 - para.k;
#ifdef QUORIMP_SAUVOLA_SSE2
    const FourPixelDecision::Constants four_pixels(low_gray, high_gray, k_over_128, one_minus_k,
                                                   root_table_fine, root_table_middle,
                                                   root_table_coarse);
#endif

    auto table_root = [&](float variance) {
        if (variance <= 100) {
            // A variance a rounding step below 0 would give a negative index.
            const int index = static_cast<int>(variance * 10);
            return root_table_fine[index > 0 ? index : 0];
        }
        if (variance <= 1000) {
            return root_table_middle[static_cast<int>((variance - 100) * 0.5)];
        }
        // Values of 0 to 255 keep the variance below 16257, inside the table, even where the
        // divisor counts one row more than the window holds; the index is guarded all the same.
        const int index = static_cast<int>((variance - 1000) / 10 + 0.5);
        return root_table_coarse[index < 1539 ? index : 1539];
    };
    // The threshold from the window sums and the divisor: the true root in the centre, the
    // tables elsewhere.
    auto threshold_of = [&](Entry sum, Entry square, int divisor, bool centre) {
        const float count = static_cast<float>(divisor);
        const float mean = static_cast<float>(static_cast<double>(sum)) / count;
        const float mean_square = static_cast<float>(static_cast<double>(square)) / count;
        float variance = mean_square - mean * mean;
        float root;
        if (centre) {
            if (variance < 0) {
                variance = -variance;
            }
            root = static_cast<float>(std::sqrt(static_cast<double>(variance)));
        } else {
            root = table_root(variance);
        }
        return static_cast<int>((root * k_over_128 + one_minus_k) * mean);
    };
    auto decide = [&](int p, Entry sum, Entry square, int divisor, bool centre) {
        if (p < low_gray) {
            return 1;
        }
        if (p > high_gray) {
            return 0;
        }
        return p <= threshold_of(sum, square, divisor, centre) ? 1 : 0;
    };

    std::vector<unsigned char> marks(static_cast<std::size_t>(width));
    auto output_row = [&](int y) {
        return output_image->data + static_cast<std::size_t>(output_image->row_stride) * y;
    };
    // The marks of a row, except for the whole bytes [skip_from / 8, skip_to / 8) that the centre
    // wrote directly.
    auto write_marks = [&](int y, int skip_from, int skip_to) {
        pack_marks(marks.data(), 0, skip_from, bit_masks, output_row(y));
        pack_marks(marks.data(), skip_to, width, bit_masks, output_row(y));
    };

    // Rows of the top and bottom margins: the window is cut at the image border.
    auto edge_row = [&](int y) {
        const int top = std::max(y - half, 0);
        const int bottom = std::min(y + half, height - 1);
        const Entry* top_sum = sum_row(top);
        const Entry* bottom_sum = sum_row(bottom);
        const Entry* top_square = square_row(top);
        const Entry* bottom_square = square_row(bottom);
        const unsigned char* row = grey_row(y);
        auto decide_one = [&](int x) {
            const int left = std::max(x - half, 0);
            const int right = std::min(x + half, width - 1);
            const Entry sum = bottom_sum[right] - top_sum[right] - bottom_sum[left] + top_sum[left];
            const Entry square =
                bottom_square[right] - top_square[right] - bottom_square[left] + top_square[left];
            marks[x] = static_cast<unsigned char>(
                decide(row[x], sum, square, (right - left) * (bottom - top), false));
        };
        int x = 0;
#ifdef QUORIMP_SAUVOLA_SSE2
        if constexpr (std::is_same<Entry, std::uint32_t>::value) {
            // Between the border columns the window is never cut sideways.
            for (; x < std::min(half, width); ++x) {
                decide_one(x);
            }
            const __m128 divisor = _mm_set1_ps(static_cast<float>(2 * half * (bottom - top)));
            for (; x + 4 <= width - half; x += 4) {
                FourPixelDecision four(four_pixels, row + x);
                if (four.in_band()) {
                    four.with_tables(
                        FourPixelDecision::window_sum(bottom_sum, top_sum, x - half, x + half),
                        FourPixelDecision::window_sum(bottom_square, top_square, x - half,
                                                      x + half),
                        divisor);
                }
                four.store(marks.data() + x);
            }
        }
#endif
        for (; x < width; ++x) {
            decide_one(x);
        }
        write_marks(y, width, width);
    };
    for (int y = 0; y < zone; ++y) {
        edge_row(y);
    }

    for (int y = zone; y <= height - zone - 2; ++y) {
        const Entry* top_sum = sum_row(y - half);
        const Entry* top_square = square_row(y - half);
        // The margin columns span the rows to y + half, the centre a whole window from the top.
        const Entry* bottom_sum = sum_row(y + half);
        const Entry* bottom_square = square_row(y + half);
        const Entry* centre_sum = sum_row(y - half + window);
        const Entry* centre_square = square_row(y - half + window);
        const unsigned char* row = grey_row(y);

        int first = 0;
#ifdef QUORIMP_SAUVOLA_SSE2
        if constexpr (std::is_same<Entry, std::uint32_t>::value) {
            const __m128i corner_sum = _mm_set1_epi32(static_cast<int>(bottom_sum[0] - top_sum[0]));
            const __m128i corner_square =
                _mm_set1_epi32(static_cast<int>(bottom_square[0] - top_square[0]));
            for (; first + 4 <= zone; first += 4) {
                FourPixelDecision four(four_pixels, row + first);
                if (four.in_band()) {
                    const int right = first + half;
                    auto strip = [&](const Entry* bottom, const Entry* top) {
                        return _mm_sub_epi32(FourPixelDecision::load(bottom + right),
                                             FourPixelDecision::load(top + right));
                    };
                    const __m128i columns =
                        _mm_add_epi32(_mm_set1_epi32(first + half), _mm_setr_epi32(0, 1, 2, 3));
                    four.with_tables(_mm_sub_epi32(strip(bottom_sum, top_sum), corner_sum),
                                     _mm_sub_epi32(strip(bottom_square, top_square), corner_square),
                                     _mm_mul_ps(_mm_cvtepi32_ps(columns),
                                                _mm_set1_ps(static_cast<float>(window))));
                }
                four.store(marks.data() + first);
            }
        }
#endif
        for (int x = first; x < zone; ++x) {
            const int right = x + half;
            const Entry sum = bottom_sum[right] - top_sum[right] - bottom_sum[0] + top_sum[0];
            const Entry square =
                bottom_square[right] - top_square[right] - bottom_square[0] + top_square[0];
            marks[x] =
                static_cast<unsigned char>(decide(row[x], sum, square, (x + half) * window, false));
        }

        auto centre_one = [&](int x) {
            const int left = x - half;
            const int right = x - half + window;
            const Entry sum = centre_sum[right] - top_sum[right] - centre_sum[left] + top_sum[left];
            const Entry square =
                centre_square[right] - top_square[right] - centre_square[left] + top_square[left];
            marks[x] =
                static_cast<unsigned char>(decide(row[x], sum, square, window * window, true));
        };
        int x = zone;
        int direct_from = width;  // whole output bytes written here, not through the marks
        int direct_to = width;
#ifdef QUORIMP_SAUVOLA_SSE2
        if constexpr (std::is_same<Entry, std::uint32_t>::value) {
            for (; x % 8 != 0 && x < width - zone; ++x) {
                centre_one(x);
            }
            const __m128 divisor = _mm_set1_ps(static_cast<float>(window * window));
            unsigned char* bits = output_row(y);
            direct_from = x;
            for (; x + 8 <= width - zone; x += 8) {
                FourPixelDecision first(four_pixels, row + x);
                FourPixelDecision second(four_pixels, row + x + 4);
                // One test for the eight pixels of an output byte: on a clean page most bytes
                // lie wholly outside the grey band.
                if (first.in_band() || second.in_band()) {
                    first.with_root(FourPixelDecision::window_sum(centre_sum, top_sum, x - half,
                                                                  x - half + window),
                                    FourPixelDecision::window_sum(centre_square, top_square,
                                                                  x - half, x - half + window),
                                    divisor);
                    second.with_root(
                        FourPixelDecision::window_sum(centre_sum, top_sum, x + 4 - half,
                                                      x + 4 - half + window),
                        FourPixelDecision::window_sum(centre_square, top_square, x + 4 - half,
                                                      x + 4 - half + window),
                        divisor);
                }
                bits[x / 8] = kReversedBits.table[first.mask() | (second.mask() << 4)];
            }
            direct_to = x;
        }
#endif
        for (; x < width - zone; ++x) {
            centre_one(x);
        }

        const int last = width - 1;
        x = width - zone;
#ifdef QUORIMP_SAUVOLA_SSE2
        if constexpr (std::is_same<Entry, std::uint32_t>::value) {
            const __m128i full_sum =
                _mm_set1_epi32(static_cast<int>(bottom_sum[last] - top_sum[last]));
            const __m128i full_square =
                _mm_set1_epi32(static_cast<int>(bottom_square[last] - top_square[last]));
            for (; x + 4 <= width; x += 4) {
                FourPixelDecision four(four_pixels, row + x);
                if (four.in_band()) {
                    auto strip = [&](const Entry* bottom, const Entry* top) {
                        return _mm_sub_epi32(FourPixelDecision::load(bottom + x - 1),
                                             FourPixelDecision::load(top + x - 1));
                    };
                    const __m128i columns =
                        _mm_sub_epi32(_mm_set1_epi32(width - x), _mm_setr_epi32(0, 1, 2, 3));
                    four.with_tables(_mm_sub_epi32(full_sum, strip(bottom_sum, top_sum)),
                                     _mm_sub_epi32(full_square, strip(bottom_square, top_square)),
                                     _mm_mul_ps(_mm_cvtepi32_ps(columns),
                                                _mm_set1_ps(static_cast<float>(window))));
                }
                four.store(marks.data() + x);
            }
        }
#endif
        for (; x < width; ++x) {
            const Entry sum = bottom_sum[last] - top_sum[last] - bottom_sum[x - 1] + top_sum[x - 1];
            const Entry square =
                bottom_square[last] - top_square[last] - bottom_square[x - 1] + top_square[x - 1];
            marks[x] = static_cast<unsigned char>(
                decide(row[x], sum, square, (width - x) * window, false));
        }
        write_marks(y, direct_from, direct_to);

        const int next = y + zone + 1;
        integral_row<Entry>(grey_row(next), width, sum_row(next - 1), square_row(next - 1),
                            sum_row(next), square_row(next));
    }

    for (int y = std::max(height - zone - 1, 0); y < height; ++y) {
        edge_row(y);
    }
}

template void QuickSauvolaEngine::threshold_zones<std::uint32_t>(unsigned char*, int, int, int,
                                                                 int);
template void QuickSauvolaEngine::threshold_zones<std::uint64_t>(unsigned char*, int, int, int,
                                                                 int);

}  // namespace geometric
