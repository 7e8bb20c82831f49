#include "geometric/rectification/projective_correction.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <utility>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// The widest loops need AVX2, asked of the processor at run time.
#if (defined(__x86_64__) || defined(__i386__)) && defined(__GNUC__)
#include <immintrin.h>
#define QUORIMP_WIDE_LOOPS 1
#else
#define QUORIMP_WIDE_LOOPS 0
#endif

#include "geometric/primitives/geoline_base_points.h"
#include "geometric/rectification/control_points.h"
#include "geometric/rectification/sampling.h"

namespace geometric {

namespace {

constexpr int kOutputResolution = 300;

// The mapping of the unit square onto the four corners: output position (u, v) reads the source
// at x = (a u + b v + x0) / (g u + h v + 1), y = (d u + e v + y0) / (g u + h v + 1).
struct UnitSquareMapping {
    double x0;
    double y0;
    double a;
    double b;
    double d;
    double e;
    double g;
    double h;
};

UnitSquareMapping map_unit_square_onto(const std::vector<Geocoordinate<float>>& corners) {
    const float x0 = corners[0].x;
    const float y0 = corners[0].y;
    const float x1 = corners[1].x;
    const float y1 = corners[1].y;
    const float x2 = corners[2].x;
    const float y2 = corners[2].y;
    const float x3 = corners[3].x;
    const float y3 = corners[3].y;
    const float sx = (x2 - x3) + (x0 - x1);
    const float sy = (y2 - y3) + (y0 - y1);

    UnitSquareMapping mapping;
    mapping.x0 = x0;
    mapping.y0 = y0;
    if (sx == 0.0f && sy == 0.0f) {
        // A parallelogram: the mapping is affine.
        mapping.g = 0.0;
        mapping.h = 0.0;
        mapping.a = x1 - x0;
        mapping.b = x2 - x1;
        mapping.d = y1 - y0;
        mapping.e = y2 - y1;
        return mapping;
    }
    // Differences in float, the rest in double.
    const double dx1 = x1 - x2;
    const double dx2 = x3 - x2;
    const double dy1 = y1 - y2;
    const double dy2 = y3 - y2;
    const double den = dx1 * dy2 - dy1 * dx2;
    mapping.g = (sx * dy2 - sy * dx2) / den;
    mapping.h = (sy * dx1 - sx * dy1) / den;
    mapping.a = x1 * mapping.g + (x1 - x0);
    mapping.b = x3 * mapping.h + (x3 - x0);
    mapping.d = y1 * mapping.g + (y1 - y0);
    mapping.e = y3 * mapping.h + (y3 - y0);
    return mapping;
}

// Where an output pixel reads from: an interpolated source pixel, a copied one on the rim of the
// source, or the filling pixel outside it.
enum PixelSource : unsigned char {
    kInterior = 0,
    kRim = 1,
    kOutside = 2,
};

// The source positions of one output row: the floors of x and y, their fractions narrowed to
// float, and where the pixel reads from. Floors and fractions are meaningful only inside.
struct RowPositions {
    explicit RowPositions(int width) : xi(width), yi(width), fx(width), fy(width), source(width) {}

    std::vector<int> xi;
    std::vector<int> yi;
    std::vector<float> fx;
    std::vector<float> fy;
    std::vector<unsigned char> source;
};

// The incremental mapping, in double: row bases start at x0, y0 and 1 and gain b, e and h over
// the target height once per row; column accumulators start at 0 in each row and gain a, d and g
// over the target width once per pixel. The accumulators restart in every row with the same
// steps, so they are the same in every row and are worked out once.
struct IncrementalMapping {
    IncrementalMapping(const UnitSquareMapping& mapping, int target_width, int target_height)
        : column_x(target_width),
          column_y(target_width),
          column_w(target_width),
          row_step_x(mapping.b / target_height),
          row_step_y(mapping.e / target_height),
          row_step_w(mapping.h / target_height),
          row_x(mapping.x0),
          row_y(mapping.y0),
          row_w(1.0) {
        const double step_x = mapping.a / target_width;
        const double step_y = mapping.d / target_width;
        const double step_w = mapping.g / target_width;
        double sum_x = 0.0;
        double sum_y = 0.0;
        double sum_w = 0.0;
        for (int i = 0; i < target_width; ++i) {
            column_x[i] = sum_x;
            column_y[i] = sum_y;
            column_w[i] = sum_w;
            sum_x += step_x;
            sum_y += step_y;
            sum_w += step_w;
        }
    }

    void next_row() {
        row_x += row_step_x;
        row_y += row_step_y;
        row_w += row_step_w;
    }

    std::vector<double> column_x;
    std::vector<double> column_y;
    std::vector<double> column_w;
    double row_step_x;
    double row_step_y;
    double row_step_w;
    double row_x;
    double row_y;
    double row_w;
};

// Pixel (xi, yi) with xi = floor(x) is interpolated when 1 <= xi <= width - 3, which for a double
// x is 1 <= x < width - 2, and copied when 0 <= x < width; likewise in y. Comparing x itself keeps
// a position far outside, or not a number, away from any integer conversion, and inside the
// source the floor is the truncation.
struct SourceBounds {
    SourceBounds(int width, int height)
        : width(width), height(height), interior_x_end(width - 2.0), interior_y_end(height - 2.0) {}

    double width;
    double height;
    double interior_x_end;
    double interior_y_end;
};

inline void locate_pixel(double x, double y, const SourceBounds& bounds, RowPositions& row, int i) {
    if (x >= 0.0 && x < bounds.width && y >= 0.0 && y < bounds.height) {
        const int xi = static_cast<int>(x);
        const int yi = static_cast<int>(y);
        row.xi[i] = xi;
        row.yi[i] = yi;
        row.fx[i] = static_cast<float>(x - xi);
        row.fy[i] = static_cast<float>(y - yi);
        row.source[i] =
            x >= 1.0 && x < bounds.interior_x_end && y >= 1.0 && y < bounds.interior_y_end
                ? kInterior
                : kRim;
    } else {
        row.source[i] = kOutside;
    }
}

// Maps one output row. Two pixels at a time where SSE2 is at hand: the same double divisions and
// conversions, lane by lane, so the results are those of the one-pixel code.
void locate_row(const IncrementalMapping& mapping, const SourceBounds& bounds, int width,
                RowPositions& row) {
    int i = 0;
#if defined(__SSE2__)
    const __m128d row_x = _mm_set1_pd(mapping.row_x);
    const __m128d row_y = _mm_set1_pd(mapping.row_y);
    const __m128d row_w = _mm_set1_pd(mapping.row_w);
    const __m128d zero = _mm_setzero_pd();
    const __m128d one = _mm_set1_pd(1.0);
    const __m128d source_width = _mm_set1_pd(bounds.width);
    const __m128d source_height = _mm_set1_pd(bounds.height);
    const __m128d interior_x_end = _mm_set1_pd(bounds.interior_x_end);
    const __m128d interior_y_end = _mm_set1_pd(bounds.interior_y_end);
    for (; i + 2 <= width; i += 2) {
        const __m128d den = _mm_add_pd(row_w, _mm_loadu_pd(&mapping.column_w[i]));
        const __m128d x = _mm_div_pd(_mm_add_pd(row_x, _mm_loadu_pd(&mapping.column_x[i])), den);
        const __m128d y = _mm_div_pd(_mm_add_pd(row_y, _mm_loadu_pd(&mapping.column_y[i])), den);
        const int inside = _mm_movemask_pd(
            _mm_and_pd(_mm_and_pd(_mm_cmpge_pd(x, zero), _mm_cmplt_pd(x, source_width)),
                       _mm_and_pd(_mm_cmpge_pd(y, zero), _mm_cmplt_pd(y, source_height))));
        const int interior = _mm_movemask_pd(
            _mm_and_pd(_mm_and_pd(_mm_cmpge_pd(x, one), _mm_cmplt_pd(x, interior_x_end)),
                       _mm_and_pd(_mm_cmpge_pd(y, one), _mm_cmplt_pd(y, interior_y_end))));
        // Lanes outside give arbitrary floors here; they are never read.
        const __m128i xi = _mm_cvttpd_epi32(x);
        const __m128i yi = _mm_cvttpd_epi32(y);
        const __m128 fx = _mm_cvtpd_ps(_mm_sub_pd(x, _mm_cvtepi32_pd(xi)));
        const __m128 fy = _mm_cvtpd_ps(_mm_sub_pd(y, _mm_cvtepi32_pd(yi)));
        _mm_storel_epi64(reinterpret_cast<__m128i*>(&row.xi[i]), xi);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(&row.yi[i]), yi);
        _mm_storel_pi(reinterpret_cast<__m64*>(&row.fx[i]), fx);
        _mm_storel_pi(reinterpret_cast<__m64*>(&row.fy[i]), fy);
        for (int lane = 0; lane < 2; ++lane) {
            row.source[i + lane] = ((inside >> lane) & 1) == 0     ? kOutside
                                   : ((interior >> lane) & 1) != 0 ? kInterior
                                                                   : kRim;
        }
    }
#endif
    for (; i < width; ++i) {
        const double den = mapping.row_w + mapping.column_w[i];
        const double x = (mapping.row_x + mapping.column_x[i]) / den;
        const double y = (mapping.row_y + mapping.column_y[i]) / den;
        locate_pixel(x, y, bounds, row, i);
    }
}

// Kernels inlined into the pixel loop for the common cases. Each computes exactly what the
// `Sampling` kernel of the same name does, operation for operation in float: only the loop
// around it changes. `1 - fx` and `1 - fy` are worked out once per pixel, which is the same float
// value every time.
struct GreyLinearKernel {
    static constexpr int kBytes = 1;
    int row_bytes;

    void operator()(const unsigned char* pixel, float fx, float fy, unsigned char* out) const {
        const float rest_x = 1 - fx;
        const unsigned char* below = pixel + row_bytes;
        const int top =
            static_cast<unsigned char>(static_cast<int>(pixel[1] * fx + pixel[0] * rest_x));
        const int bottom =
            static_cast<unsigned char>(static_cast<int>(below[1] * fx + below[0] * rest_x));
        out[0] = static_cast<unsigned char>(static_cast<int>(top * (1 - fy) + bottom * fy));
    }
};

#if defined(__SSE2__)
// Four bytes to four floats.
inline __m128 bytes_to_floats(__m128i bytes) {
    const __m128i zero = _mm_setzero_si128();
    return _mm_cvtepi32_ps(_mm_unpacklo_epi16(_mm_unpacklo_epi8(bytes, zero), zero));
}

// Float to int towards zero, low eight bits kept: the low8 of the scalar kernel, in each lane.
inline __m128i truncate_low8(__m128 values) {
    return _mm_and_si128(_mm_cvttps_epi32(values), _mm_set1_epi32(0xFF));
}
#endif

// The three channels side by side in the lanes of one vector where SSE2 is at hand; each lane
// does the float operations of the one-channel formula, so the bytes are the same. A fourth lane
// blends the byte after the pixel and is thrown away. The kernel reads eight bytes from the pixel
// and from the one below, which stay within the source: an interpolated pixel has two more pixels
// to its right.
struct ColourLinearKernel {
    static constexpr int kBytes = 3;
    int row_bytes;

    void operator()(const unsigned char* pixel, float fx, float fy, unsigned char* out) const {
        const float rest_x = 1 - fx;
        const float rest_y = 1 - fy;
        const unsigned char* below = pixel + row_bytes;
#if defined(__SSE2__)
        const __m128i upper_bytes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(pixel));
        const __m128i lower_bytes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(below));
        const __m128 left = bytes_to_floats(upper_bytes);
        const __m128 right = bytes_to_floats(_mm_srli_epi64(upper_bytes, 24));
        const __m128 below_left = bytes_to_floats(lower_bytes);
        const __m128 below_right = bytes_to_floats(_mm_srli_epi64(lower_bytes, 24));
        const __m128 weight_right = _mm_set1_ps(fx);
        const __m128 weight_left = _mm_set1_ps(rest_x);
        const __m128 top = _mm_cvtepi32_ps(truncate_low8(
            _mm_add_ps(_mm_mul_ps(right, weight_right), _mm_mul_ps(left, weight_left))));
        const __m128 bottom = _mm_cvtepi32_ps(truncate_low8(_mm_add_ps(
            _mm_mul_ps(below_right, weight_right), _mm_mul_ps(below_left, weight_left))));
        __m128i blended = truncate_low8(
            _mm_add_ps(_mm_mul_ps(top, _mm_set1_ps(rest_y)), _mm_mul_ps(bottom, _mm_set1_ps(fy))));
        blended = _mm_packs_epi32(blended, blended);
        blended = _mm_packus_epi16(blended, blended);
        const int packed = _mm_cvtsi128_si32(blended);
        std::memcpy(out, &packed, 3);
#else
        for (int channel = 0; channel < 3; ++channel) {
            const int top = static_cast<unsigned char>(
                static_cast<int>(pixel[channel + 3] * fx + pixel[channel] * rest_x));
            const int bottom = static_cast<unsigned char>(
                static_cast<int>(below[channel + 3] * fx + below[channel] * rest_x));
            out[channel] = static_cast<unsigned char>(static_cast<int>(top * rest_y + bottom * fy));
        }
#endif
    }
};

struct GreyNearestKernel {
    static constexpr int kBytes = 1;

    void operator()(const unsigned char* pixel, float, float, unsigned char* out) const {
        out[0] = pixel[0];
    }
};

// Any kernel and pixel size, through the sampling object's function object.
struct GenericKernel {
    static constexpr int kBytes = 0;
    const Sampling* sampling;

    void operator()(const unsigned char* pixel, float fx, float fy, unsigned char* out) const {
        (*sampling)(pixel, fx, fy, out);
    }
};

struct SourceImage {
    const unsigned char* data;
    int width;
    int height;
    int row_bytes;
};

// One output pixel: interpolated, copied from the source rim, or filled.
template <typename Kernel, typename Fill>
inline void write_pixel(const SourceImage& source, const RowPositions& row, int i, int bytes,
                        const Kernel& kernel, Fill& fill, unsigned char* out) {
    if (row.source[i] == kOutside) {
        std::memcpy(out, fill(), bytes);
        return;
    }
    const unsigned char* pixel = source.data +
                                 static_cast<std::ptrdiff_t>(source.row_bytes) * row.yi[i] +
                                 static_cast<std::ptrdiff_t>(row.xi[i]) * bytes;
    if (row.source[i] == kInterior) {
        kernel(pixel, row.fx[i], row.fy[i], out);
    } else {
        std::memcpy(out, pixel, bytes);
    }
}

// Walks the output rows, maps each pixel into the source and writes it. `kDirect` kernels write
// every byte of a pixel, so they can write into the target; the others write into a scratch pixel
// that keeps its bytes from one pixel to the next and is copied out each time.
template <typename Kernel, bool kDirect, typename Fill>
void map_pixels(const UnitSquareMapping& mapping, const SourceImage& source, int bytes_per_pixel,
                unsigned char* target, int target_width, int target_height, const Kernel& kernel,
                Fill& fill) {
    const int bytes = Kernel::kBytes > 0 ? Kernel::kBytes : bytes_per_pixel;
    IncrementalMapping steps(mapping, target_width, target_height);
    const SourceBounds bounds(source.width, source.height);
    RowPositions row(target_width);
    unsigned char scratch[4] = {0, 0, 0, 0};
    unsigned char* target_pixel = target;
    for (int j = 0; j < target_height; ++j, steps.next_row()) {
        locate_row(steps, bounds, target_width, row);
        for (int i = 0; i < target_width; ++i, target_pixel += bytes) {
            if (kDirect) {
                write_pixel(source, row, i, bytes, kernel, fill, target_pixel);
            } else {
                write_pixel(source, row, i, bytes, kernel, fill, scratch);
                std::memcpy(target_pixel, scratch, bytes);
            }
        }
    }
}

#if QUORIMP_WIDE_LOOPS
// Eight output pixels at a time with AVX2, for the kernels of the default paths. Every lane runs
// the IEEE operations of the one-pixel code in the same order (no fused multiply-add: the
// processor's AVX2 is asked for, not its FMA), so the bytes are the same. A group of eight that is
// not wholly interpolated goes pixel by pixel.

#define QUORIMP_AVX2 __attribute__((target("avx2")))

bool processor_has_avx2() {
    static const bool has_avx2 = __builtin_cpu_supports("avx2") != 0;
    return has_avx2;
}

// The positions of eight consecutive output pixels.
struct EightPositions {
    __m256i xi;
    __m256i yi;
    __m256 fx;
    __m256 fy;
    int inside;    // bit k: pixel k lies in the source
    int interior;  // bit k: pixel k is interpolated
};

struct FourPositions {
    __m128i xi;
    __m128i yi;
    __m128 fx;
    __m128 fy;
    int inside;
    int interior;
};

QUORIMP_AVX2 inline FourPositions locate_four(const IncrementalMapping& mapping,
                                              const SourceBounds& bounds, int i) {
    const __m256d den =
        _mm256_add_pd(_mm256_set1_pd(mapping.row_w), _mm256_loadu_pd(&mapping.column_w[i]));
    const __m256d x = _mm256_div_pd(
        _mm256_add_pd(_mm256_set1_pd(mapping.row_x), _mm256_loadu_pd(&mapping.column_x[i])), den);
    const __m256d y = _mm256_div_pd(
        _mm256_add_pd(_mm256_set1_pd(mapping.row_y), _mm256_loadu_pd(&mapping.column_y[i])), den);
    const __m256d zero = _mm256_setzero_pd();
    const __m256d one = _mm256_set1_pd(1.0);
    // Ordered comparisons: not a number compares false, as in the one-pixel code.
    const __m256d inside_x =
        _mm256_and_pd(_mm256_cmp_pd(x, zero, _CMP_GE_OQ),
                      _mm256_cmp_pd(x, _mm256_set1_pd(bounds.width), _CMP_LT_OQ));
    const __m256d inside_y =
        _mm256_and_pd(_mm256_cmp_pd(y, zero, _CMP_GE_OQ),
                      _mm256_cmp_pd(y, _mm256_set1_pd(bounds.height), _CMP_LT_OQ));
    const __m256d interior_x =
        _mm256_and_pd(_mm256_cmp_pd(x, one, _CMP_GE_OQ),
                      _mm256_cmp_pd(x, _mm256_set1_pd(bounds.interior_x_end), _CMP_LT_OQ));
    const __m256d interior_y =
        _mm256_and_pd(_mm256_cmp_pd(y, one, _CMP_GE_OQ),
                      _mm256_cmp_pd(y, _mm256_set1_pd(bounds.interior_y_end), _CMP_LT_OQ));
    FourPositions four;
    four.inside = _mm256_movemask_pd(_mm256_and_pd(inside_x, inside_y));
    four.interior = _mm256_movemask_pd(_mm256_and_pd(interior_x, interior_y));
    // Lanes outside give arbitrary floors here; they are never read.
    four.xi = _mm256_cvttpd_epi32(x);
    four.yi = _mm256_cvttpd_epi32(y);
    four.fx = _mm256_cvtpd_ps(_mm256_sub_pd(x, _mm256_cvtepi32_pd(four.xi)));
    four.fy = _mm256_cvtpd_ps(_mm256_sub_pd(y, _mm256_cvtepi32_pd(four.yi)));
    return four;
}

QUORIMP_AVX2 inline EightPositions locate_eight(const IncrementalMapping& mapping,
                                                const SourceBounds& bounds, int i) {
    const FourPositions low = locate_four(mapping, bounds, i);
    const FourPositions high = locate_four(mapping, bounds, i + 4);
    EightPositions eight;
    eight.xi = _mm256_set_m128i(high.xi, low.xi);
    eight.yi = _mm256_set_m128i(high.yi, low.yi);
    eight.fx = _mm256_set_m128(high.fx, low.fx);
    eight.fy = _mm256_set_m128(high.fy, low.fy);
    eight.inside = low.inside | (high.inside << 4);
    eight.interior = low.interior | (high.interior << 4);
    return eight;
}

QUORIMP_AVX2 inline __m256i low_byte(__m256i words, int shift) {
    return _mm256_and_si256(_mm256_srli_epi32(words, shift), _mm256_set1_epi32(0xFF));
}

// One channel of the bilinear formula in eight lanes: the rows truncated and wrapped, then the
// column, as the one-channel kernel does.
QUORIMP_AVX2 inline __m256i blend_eight(__m256i left, __m256i right, __m256i below_left,
                                        __m256i below_right, __m256 fx, __m256 rest_x, __m256 fy,
                                        __m256 rest_y) {
    const __m256i low8 = _mm256_set1_epi32(0xFF);
    const __m256 top = _mm256_cvtepi32_ps(_mm256_and_si256(
        _mm256_cvttps_epi32(_mm256_add_ps(_mm256_mul_ps(_mm256_cvtepi32_ps(right), fx),
                                          _mm256_mul_ps(_mm256_cvtepi32_ps(left), rest_x))),
        low8));
    const __m256 bottom = _mm256_cvtepi32_ps(_mm256_and_si256(
        _mm256_cvttps_epi32(_mm256_add_ps(_mm256_mul_ps(_mm256_cvtepi32_ps(below_right), fx),
                                          _mm256_mul_ps(_mm256_cvtepi32_ps(below_left), rest_x))),
        low8));
    return _mm256_and_si256(
        _mm256_cvttps_epi32(_mm256_add_ps(_mm256_mul_ps(top, rest_y), _mm256_mul_ps(bottom, fy))),
        low8);
}

// Eight values of 0 to 255, one per lane, stored as eight bytes.
QUORIMP_AVX2 inline void store_eight_bytes(__m256i values, unsigned char* out) {
    const __m256i words = _mm256_packs_epi32(values, values);
    const __m256i bytes = _mm256_packus_epi16(words, words);
    const int low = _mm_cvtsi128_si32(_mm256_castsi256_si128(bytes));
    const int high = _mm_cvtsi128_si32(_mm256_extracti128_si256(bytes, 1));
    std::memcpy(out, &low, 4);
    std::memcpy(out + 4, &high, 4);
}

// Four bytes from each of eight addresses, `base + at[k]`, one address per lane. Plain loads: on
// many processors they beat a gather instruction.
QUORIMP_AVX2 inline __m256i load_eight_words(const unsigned char* base, const int* at) {
    int words[8];
    for (int k = 0; k < 8; ++k) {
        std::memcpy(&words[k], base + at[k], 4);
    }
    return _mm256_setr_epi32(words[0], words[1], words[2], words[3], words[4], words[5], words[6],
                             words[7]);
}

// The source offsets of eight pixels, `bytes` bytes per pixel.
QUORIMP_AVX2 inline void pixel_offsets(const SourceImage& source, const EightPositions& eight,
                                       int bytes, int* at) {
    const __m256i offsets =
        _mm256_add_epi32(_mm256_mullo_epi32(eight.yi, _mm256_set1_epi32(source.row_bytes)),
                         _mm256_mullo_epi32(eight.xi, _mm256_set1_epi32(bytes)));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(at), offsets);
}

// The loads take four bytes from each pixel address. An interpolated pixel has two more pixels to
// its right and one more row below it, so those bytes lie inside the source.
struct WideGreyLinear {
    static constexpr int kBytes = 1;

    QUORIMP_AVX2 static void run(const SourceImage& source, const EightPositions& eight,
                                 unsigned char* out) {
        int at[8];
        pixel_offsets(source, eight, 1, at);
        const __m256i upper = load_eight_words(source.data, at);
        const __m256i lower = load_eight_words(source.data + source.row_bytes, at);
        const __m256 rest_x = _mm256_sub_ps(_mm256_set1_ps(1.0f), eight.fx);
        const __m256 rest_y = _mm256_sub_ps(_mm256_set1_ps(1.0f), eight.fy);
        store_eight_bytes(blend_eight(low_byte(upper, 0), low_byte(upper, 8), low_byte(lower, 0),
                                      low_byte(lower, 8), eight.fx, rest_x, eight.fy, rest_y),
                          out);
    }
};

struct WideGreyNearest {
    static constexpr int kBytes = 1;

    QUORIMP_AVX2 static void run(const SourceImage& source, const EightPositions& eight,
                                 unsigned char* out) {
        int at[8];
        pixel_offsets(source, eight, 1, at);
        for (int k = 0; k < 8; ++k) {
            out[k] = source.data[at[k]];
        }
    }
};

// Eight bytes from each of eight addresses, `base + at[k]`, split into the first four bytes and
// the next four bytes of each address, in pixel order.
QUORIMP_AVX2 inline void load_eight_pairs(const unsigned char* base, const int* at, __m256i& first,
                                          __m256i& second) {
    __m128i pairs[4];
    for (int k = 0; k < 4; ++k) {
        pairs[k] = _mm_unpacklo_epi64(
            _mm_loadl_epi64(reinterpret_cast<const __m128i*>(base + at[2 * k])),
            _mm_loadl_epi64(reinterpret_cast<const __m128i*>(base + at[2 * k + 1])));
    }
    const __m256i low = _mm256_set_m128i(pairs[1], pairs[0]);
    const __m256i high = _mm256_set_m128i(pairs[3], pairs[2]);
    // Within each half the even 32-bit words are the first four bytes of a pixel; the shuffle
    // interleaves the halves by pairs, and the permutation puts the pairs back in order.
    first = _mm256_permute4x64_epi64(
        _mm256_castps_si256(_mm256_shuffle_ps(_mm256_castsi256_ps(low), _mm256_castsi256_ps(high),
                                              _MM_SHUFFLE(2, 0, 2, 0))),
        _MM_SHUFFLE(3, 1, 2, 0));
    second = _mm256_permute4x64_epi64(
        _mm256_castps_si256(_mm256_shuffle_ps(_mm256_castsi256_ps(low), _mm256_castsi256_ps(high),
                                              _MM_SHUFFLE(3, 1, 3, 1))),
        _MM_SHUFFLE(3, 1, 2, 0));
}

// Reads eight bytes from each pixel address, in the row and the row below: the pixel's three
// bytes, its right neighbour's three and two of the pixel after, which an interpolated pixel has.
struct WideColourLinear {
    static constexpr int kBytes = 3;

    QUORIMP_AVX2 static void run(const SourceImage& source, const EightPositions& eight,
                                 unsigned char* out) {
        int at[8];
        pixel_offsets(source, eight, 3, at);
        __m256i upper_first;
        __m256i upper_second;
        __m256i lower_first;
        __m256i lower_second;
        load_eight_pairs(source.data, at, upper_first, upper_second);
        load_eight_pairs(source.data + source.row_bytes, at, lower_first, lower_second);
        const __m256 rest_x = _mm256_sub_ps(_mm256_set1_ps(1.0f), eight.fx);
        const __m256 rest_y = _mm256_sub_ps(_mm256_set1_ps(1.0f), eight.fy);
        // Bytes 0 to 2 are the pixel, bytes 3 to 5 its right neighbour.
        const __m256i first = blend_eight(low_byte(upper_first, 0), low_byte(upper_first, 24),
                                          low_byte(lower_first, 0), low_byte(lower_first, 24),
                                          eight.fx, rest_x, eight.fy, rest_y);
        const __m256i second = blend_eight(low_byte(upper_first, 8), low_byte(upper_second, 0),
                                           low_byte(lower_first, 8), low_byte(lower_second, 0),
                                           eight.fx, rest_x, eight.fy, rest_y);
        const __m256i third = blend_eight(low_byte(upper_first, 16), low_byte(upper_second, 8),
                                          low_byte(lower_first, 16), low_byte(lower_second, 8),
                                          eight.fx, rest_x, eight.fy, rest_y);
        const __m256i packed = _mm256_or_si256(
            first, _mm256_or_si256(_mm256_slli_epi32(second, 8), _mm256_slli_epi32(third, 16)));
        // Three bytes of each lane, twelve bytes per half, stored as exactly 24 bytes.
        const __m256i squeeze =
            _mm256_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1, 0, 1, 2, 4, 5,
                             6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
        const __m256i squeezed = _mm256_shuffle_epi8(packed, squeeze);
        const __m128i low = _mm256_castsi256_si128(squeezed);
        const __m128i high = _mm256_extracti128_si256(squeezed, 1);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(out), low);
        const int low_tail = _mm_cvtsi128_si32(_mm_srli_si128(low, 8));
        std::memcpy(out + 8, &low_tail, 4);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(out + 12), high);
        const int high_tail = _mm_cvtsi128_si32(_mm_srli_si128(high, 8));
        std::memcpy(out + 20, &high_tail, 4);
    }
};

// The rows of a whole-pixel kernel, eight pixels at a time; `Narrow` is the same kernel for one
// pixel, used where a group mixes interpolated pixels with copied or filled ones.
template <typename Wide, typename Narrow, typename Fill>
QUORIMP_AVX2 void map_pixels_wide(const UnitSquareMapping& mapping, const SourceImage& source,
                                  unsigned char* target, int target_width, int target_height,
                                  const Narrow& narrow, Fill& fill) {
    constexpr int bytes = Wide::kBytes;
    IncrementalMapping steps(mapping, target_width, target_height);
    const SourceBounds bounds(source.width, source.height);
    RowPositions row(target_width);
    unsigned char* target_pixel = target;
    for (int j = 0; j < target_height; ++j, steps.next_row()) {
        int i = 0;
        for (; i + 8 <= target_width; i += 8, target_pixel += 8 * bytes) {
            const EightPositions eight = locate_eight(steps, bounds, i);
            if (eight.interior == 0xFF) {
                Wide::run(source, eight, target_pixel);
                continue;
            }
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(&row.xi[i]), eight.xi);
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(&row.yi[i]), eight.yi);
            _mm256_storeu_ps(&row.fx[i], eight.fx);
            _mm256_storeu_ps(&row.fy[i], eight.fy);
            for (int k = 0; k < 8; ++k) {
                row.source[i + k] = ((eight.inside >> k) & 1) == 0     ? kOutside
                                    : ((eight.interior >> k) & 1) != 0 ? kInterior
                                                                       : kRim;
                write_pixel(source, row, i + k, bytes, narrow, fill, target_pixel + k * bytes);
            }
        }
        for (; i < target_width; ++i, target_pixel += bytes) {
            const double den = steps.row_w + steps.column_w[i];
            locate_pixel((steps.row_x + steps.column_x[i]) / den,
                         (steps.row_y + steps.column_y[i]) / den, bounds, row, i);
            write_pixel(source, row, i, bytes, narrow, fill, target_pixel);
        }
    }
}

// The source must be small enough for 32-bit offsets, with room for the bytes read past the last
// pixel address.
bool fits_wide_offsets(const SourceImage& source) {
    return static_cast<long long>(source.row_bytes) * source.height + 16 <
           static_cast<long long>(std::numeric_limits<int>::max());
}
#endif

// A double truncated towards zero into an int; values beyond the int range, which lie far outside
// any image, are clamped to it and not a number gives the smallest int.
int truncate_to_int(double value) {
    if (!(value > static_cast<double>(std::numeric_limits<int>::min()))) {
        return std::numeric_limits<int>::min();
    }
    if (value >= static_cast<double>(std::numeric_limits<int>::max())) {
        return std::numeric_limits<int>::max();
    }
    return static_cast<int>(value);
}

bool is_inside(const common::BasicImage& image, int x, int y) {
    return x >= 0 && x < image.width && y >= 0 && y < image.height;
}

// Appends the bytes of the pixel at (x, y): one for grey, three for RGB, four for BGRA, none for
// binary.
void push_pixel(const common::BasicImage& image, long long x, long long y,
                std::vector<unsigned char>& samples) {
    int bytes = 0;
    if (!image.get_bytes_per_pixel(bytes) || image.data == nullptr) {
        return;
    }
    const unsigned char* pixel =
        image.data + (static_cast<std::size_t>(image.width) * static_cast<std::size_t>(y) +
                      static_cast<std::size_t>(x)) *
                         static_cast<std::size_t>(bytes);
    samples.insert(samples.end(), pixel, pixel + bytes);
}

long long clamp_index(long long value, int size) {
    return std::max(0LL, std::min(static_cast<long long>(size) - 1, value));
}

// The same bits as set_pixel(x, y, grey < 129) for every pixel of `output`: padding bits and
// padding bytes keep what they held.
void pack_darker_than_129(const unsigned char* grey, common::BasicImage& output) {
    const int whole_bytes = output.width / 8;
    const int tail_pixels = output.width % 8;
    for (int y = 0; y < output.height; ++y) {
        const unsigned char* row = grey + static_cast<std::size_t>(output.width) * y;
        unsigned char* bits = output.data + static_cast<std::size_t>(output.row_stride) * y;
        for (int i = 0; i < whole_bytes; ++i) {
            const unsigned char* pixels = row + 8 * i;
            unsigned int byte = 0;
            for (int k = 0; k < 8; ++k) {
                byte = (byte << 1) | static_cast<unsigned int>(pixels[k] < 129);
            }
            bits[i] = static_cast<unsigned char>(byte);
        }
        if (tail_pixels != 0) {
            unsigned int byte = bits[whole_bytes];
            for (int k = 0; k < tail_pixels; ++k) {
                const unsigned int mask = 0x80u >> k;
                byte = row[8 * whole_bytes + k] < 129 ? (byte | mask) : (byte & ~mask);
            }
            bits[whole_bytes] = static_cast<unsigned char>(byte);
        }
    }
}

}  // namespace

ProjectiveCorrection::ProjectiveCorrection(common::BasicImage* input, common::BasicImage* output)
    : Correction(input, output),
      filling_mode(1),
      filling_pixel{255, 255, 255, 255},
      specialised_loops(true),
      wide_loops(true) {}

void ProjectiveCorrection::set_control_points(const std::vector<Geocoordinate<float>>& corners) {
    control_points = corners;
}

void ProjectiveCorrection::obtain_output_img_dimension(int& width, int& height) {
    calculate_output_dimension(control_points, width, height);
}

bool ProjectiveCorrection::run_correction() {
    int width = 0;
    int height = 0;
    obtain_output_img_dimension(width, height);
    const bool binary_input = input_type == common::IMAGE_TYPE_BINARY;

    if (output_owns_buffer) {
        output->reset(height, width, input->image_type, kOutputResolution, kOutputResolution);
        perspective_transformation_general(input->data, output->data, input->width, input->height,
                                           width, height, control_points);
        if (binary_input) {
            output->threshold_to_binary_in_place(128);
        }
        return true;
    }
    if (!binary_input) {
        perspective_transformation_general(input->data, output->data, input->width, input->height,
                                           width, height, control_points);
        return true;
    }

    // A caller's binary output: corrected as grey into a temporary buffer, then packed. The
    // temporary also covers the output's own size, so that an output of another size than the
    // page reads defined bytes.
    const std::size_t page_bytes = static_cast<std::size_t>(std::max(width, 0)) *
                                   static_cast<std::size_t>(std::max(height, 0));
    const std::size_t output_bytes = static_cast<std::size_t>(std::max(output->width, 0)) *
                                     static_cast<std::size_t>(std::max(output->height, 0));
    std::vector<unsigned char> grey(std::max(page_bytes, output_bytes));
    output->image_type = common::IMAGE_TYPE_GREY;
    try {
        perspective_transformation_general(input->data, grey.data(), input->width, input->height,
                                           width, height, control_points);
    } catch (...) {
        output->image_type = common::IMAGE_TYPE_BINARY;
        throw;
    }
    output->image_type = common::IMAGE_TYPE_BINARY;
    pack_darker_than_129(grey.data(), *output);
    return true;
}

void ProjectiveCorrection::perspective_transformation_general(
    const unsigned char* source, unsigned char* target, int source_width, int source_height,
    int target_width, int target_height, const std::vector<Geocoordinate<float>>& corners) {
    if (target_width <= 0 || target_height <= 0 || corners.size() < 4) {
        return;
    }
    const Sampling sampling(output->image_type, source_width, para.interpolation);
    const int bytes = sampling.bytes_per_pixel;
    if (bytes == 0) {
        return;
    }
    const UnitSquareMapping mapping = map_unit_square_onto(corners);
    const SourceImage image{source, source_width, source_height, sampling.row_bytes};

    // The filling pixel is measured at the first pixel that needs it, once per run.
    bool filling_ready = false;
    auto fill = [this, &filling_ready]() -> const unsigned char* {
        if (!filling_ready) {
            if (filling_mode == 1) {
                calculate_filling_pixel();
            }
            filling_ready = true;
        }
        return filling_pixel;
    };

#if QUORIMP_WIDE_LOOPS
    if (specialised_loops && wide_loops && processor_has_avx2() && fits_wide_offsets(image)) {
        if (bytes == 1 && para.interpolation == INTERPOLATION_LINEAR) {
            map_pixels_wide<WideGreyLinear>(mapping, image, target, target_width, target_height,
                                            GreyLinearKernel{image.row_bytes}, fill);
            return;
        }
        if (bytes == 3 && para.interpolation == INTERPOLATION_COLOR_LINEAR) {
            map_pixels_wide<WideColourLinear>(mapping, image, target, target_width, target_height,
                                              ColourLinearKernel{image.row_bytes}, fill);
            return;
        }
        if (bytes == 1 && para.interpolation == INTERPOLATION_NEAREST) {
            map_pixels_wide<WideGreyNearest>(mapping, image, target, target_width, target_height,
                                             GreyNearestKernel{}, fill);
            return;
        }
    }
#endif
    if (specialised_loops) {
        if (bytes == 1 && para.interpolation == INTERPOLATION_LINEAR) {
            map_pixels<GreyLinearKernel, true>(mapping, image, bytes, target, target_width,
                                               target_height, GreyLinearKernel{image.row_bytes},
                                               fill);
            return;
        }
        if (bytes == 3 && para.interpolation == INTERPOLATION_COLOR_LINEAR) {
            map_pixels<ColourLinearKernel, true>(mapping, image, bytes, target, target_width,
                                                 target_height, ColourLinearKernel{image.row_bytes},
                                                 fill);
            return;
        }
        if (bytes == 1 && para.interpolation == INTERPOLATION_NEAREST) {
            map_pixels<GreyNearestKernel, true>(mapping, image, bytes, target, target_width,
                                                target_height, GreyNearestKernel{}, fill);
            return;
        }
    }
    map_pixels<GenericKernel, false>(mapping, image, bytes, target, target_width, target_height,
                                     GenericKernel{&sampling}, fill);
}

void ProjectiveCorrection::calculate_filling_pixel() {
    if (control_points.size() < 4) {
        return;
    }
    std::vector<unsigned char> samples;
    Geocoordinate<float> corners[4] = {control_points[0], control_points[1], control_points[2],
                                       control_points[3]};
    get_pixels_on_hor_line(corners[0], corners[1], samples, true);
    get_pixels_on_hor_line(corners[3], corners[2], samples, false);
    get_pixels_on_ver_line(corners[1], corners[2], samples, false);
    get_pixels_on_ver_line(corners[0], corners[3], samples, true);
    if (samples.empty()) {
        return;
    }
    if (input->image_type == common::IMAGE_TYPE_RGB) {
        find_above_median_color(static_cast<int>(samples.size() / 3), samples.data(),
                                filling_pixel);
        return;
    }
    // Grey: the mean of the lighter half of the bytes, summed in float and truncated.
    std::sort(samples.begin(), samples.end(), std::greater<unsigned char>());
    const std::size_t lighter_half = samples.size() / 2;
    if (lighter_half == 0) {
        return;
    }
    float sum = 0.0f;
    for (std::size_t i = 0; i < lighter_half; ++i) {
        sum += samples[i];
    }
    const float mean = sum / static_cast<float>(lighter_half);
    filling_pixel[0] = static_cast<unsigned char>(static_cast<int>(mean));
}

void ProjectiveCorrection::find_above_median_color(int pixel_count, const unsigned char* samples,
                                                   unsigned char* colour) {
    const int lighter_half = pixel_count / 2;
    if (lighter_half == 0) {
        return;  // too few samples to halve: the colour stays as it was
    }
    std::vector<std::pair<int, int>> lumas(static_cast<std::size_t>(pixel_count));
    for (int i = 0; i < pixel_count; ++i) {
        const unsigned char* pixel = samples + 3 * static_cast<std::size_t>(i);
        lumas[i] = {(299 * pixel[0] + 587 * pixel[1] + 114 * pixel[2]) / 1000, i};
    }
    // Stable, so that among equal lumas the earlier sample comes first.
    std::stable_sort(lumas.begin(), lumas.end(),
                     [](const std::pair<int, int>& first, const std::pair<int, int>& second) {
                         return first.first > second.first;
                     });
    long long sums[3] = {0, 0, 0};
    for (int k = 0; k < lighter_half; ++k) {
        const unsigned char* pixel = samples + 3 * static_cast<std::size_t>(lumas[k].second);
        for (int channel = 0; channel < 3; ++channel) {
            sums[channel] += pixel[channel];
        }
    }
    for (int channel = 0; channel < 3; ++channel) {
        colour[channel] = static_cast<unsigned char>(sums[channel] / lighter_half);
    }
}

// Design: the ends are walked pixel by pixel, but a stretch that lies wholly left of or right of
// the image is skipped in one jump to the first column that could be inside; every column in it is
// outside whatever its y, so the ends stop where a pixel-by-pixel walk would. An edge with no
// extent in x (a vertical line through both corners) gives no samples, and a sample row that
// falls outside the image, which only fractional corners on a steep edge can cause, is clamped
// into it.
void ProjectiveCorrection::get_pixels_on_hor_line(Geocoordinate<float>& first,
                                                  Geocoordinate<float>& second,
                                                  std::vector<unsigned char>& samples,
                                                  bool downward) {
    const common::BasicImage& image = *input;
    const int margin = std::max(image.height / 100, 5);
    GeolineBasePoints<float> line;
    line.use_two_points(first, second);
    if (line.b == 0.0) {
        return;
    }
    auto y_at = [&line](long long x) {
        return truncate_to_int(-(line.a * static_cast<double>(x) + line.c) / line.b);
    };

    int left_x = truncate_to_int(first.x);
    int left_y = truncate_to_int(first.y);
    int right_x = truncate_to_int(second.x);
    int right_y = truncate_to_int(second.y);
    if (second.x < first.x) {
        std::swap(left_x, right_x);
        std::swap(left_y, right_y);
    }

    if (!is_inside(image, left_x, left_y) && left_x < std::min(0, image.width)) {
        left_x = std::min(0, image.width);
        left_y = y_at(left_x);
    }
    while (!is_inside(image, left_x, left_y) && left_x < image.width) {
        ++left_x;
        left_y = y_at(left_x);
    }
    if (!is_inside(image, right_x, right_y) && right_x > std::max(image.width - 1, left_x)) {
        right_x = std::max(image.width - 1, left_x);
        right_y = y_at(right_x);
    }
    while (!is_inside(image, right_x, right_y) && right_x > left_x) {
        --right_x;
        right_y = y_at(right_x);
    }

    const long long span = static_cast<long long>(right_x) - left_x;
    if (span < 1) {
        return;
    }
    const long long step = std::max(span / 8, 1LL);
    for (long long x = left_x; x <= right_x; x += step) {
        const long long y = y_at(x);
        const long long row = downward
                                  ? std::min(static_cast<long long>(image.height) - 1, y + margin)
                                  : std::max(0LL, y - margin);
        push_pixel(image, x, clamp_index(row, image.height), samples);
    }
}

// The same walk with the axes exchanged; see get_pixels_on_hor_line.
void ProjectiveCorrection::get_pixels_on_ver_line(Geocoordinate<float>& first,
                                                  Geocoordinate<float>& second,
                                                  std::vector<unsigned char>& samples,
                                                  bool rightward) {
    const common::BasicImage& image = *input;
    const int margin = std::max(image.width / 100, 5);
    GeolineBasePoints<float> line;
    line.use_two_points(first, second);
    if (line.a == 0.0) {
        return;
    }
    auto x_at = [&line](long long y) {
        return truncate_to_int(-(line.b * static_cast<double>(y) + line.c) / line.a);
    };

    int top_x = truncate_to_int(first.x);
    int top_y = truncate_to_int(first.y);
    int bottom_x = truncate_to_int(second.x);
    int bottom_y = truncate_to_int(second.y);
    if (second.y < first.y) {
        std::swap(top_x, bottom_x);
        std::swap(top_y, bottom_y);
    }

    if (!is_inside(image, top_x, top_y) && top_y < std::min(0, image.height)) {
        top_y = std::min(0, image.height);
        top_x = x_at(top_y);
    }
    while (!is_inside(image, top_x, top_y) && top_y < image.height) {
        ++top_y;
        top_x = x_at(top_y);
    }
    if (!is_inside(image, bottom_x, bottom_y) && bottom_y > std::max(image.height - 1, top_y)) {
        bottom_y = std::max(image.height - 1, top_y);
        bottom_x = x_at(bottom_y);
    }
    while (!is_inside(image, bottom_x, bottom_y) && bottom_y > top_y) {
        --bottom_y;
        bottom_x = x_at(bottom_y);
    }

    const long long span = static_cast<long long>(bottom_y) - top_y;
    if (span < 1) {
        return;
    }
    const long long step = std::max(span / 8, 1LL);
    for (long long y = top_y; y <= bottom_y; y += step) {
        const long long x = x_at(y);
        const long long column = rightward
                                     ? std::min(static_cast<long long>(image.width) - 1, x + margin)
                                     : std::max(0LL, x - margin);
        push_pixel(image, clamp_index(column, image.width), y, samples);
    }
}

}  // namespace geometric
