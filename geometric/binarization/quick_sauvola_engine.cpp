#include "geometric/binarization/quick_sauvola_engine.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>
#include <vector>

#include "geometric/binarization/geometricexception.h"

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

// n / d for 0 <= n <= 255 * d by one multiplication: with M = ceil(2^32 / d), the quotient
// (n * M) >> 32 is exact as long as n * d stays below 2^32, which holds up to d = 4096.
class SmallQuotient {
public:
    explicit SmallQuotient(unsigned int divisor)
        : multiplier((std::uint64_t{1} << 32) / divisor +
                     ((std::uint64_t{1} << 32) % divisor != 0 ? 1 : 0)) {}
    static bool fits(long long divisor) { return divisor >= 1 && divisor <= 4096; }
    unsigned int operator()(unsigned int numerator) const {
        return static_cast<unsigned int>((numerator * multiplier) >> 32);
    }

private:
    std::uint64_t multiplier;
};

// Sums of three horizontal neighbours of one row, for the columns 1 to width - 2.
void horizontal_sums(const unsigned char* row, int width, int* sums) {
    for (int x = 1; x < width - 1; ++x) {
        sums[x] = row[x - 1] + row[x] + row[x + 1];
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
    auto ring =
        allocate_array<int>(3 * static_cast<std::size_t>(width), kSmoothingAllocationFailed);
    int* slots[3] = {ring.get(), ring.get() + width,
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

    const long long divisor = 9LL + weight;
    const bool small_divisor = SmallQuotient::fits(divisor);
    const SmallQuotient quotient(small_divisor ? static_cast<unsigned int>(divisor) : 1u);
    int slot = 0;
    for (int y = 1; y < height - 1; ++y) {
        horizontal_sums(row(y), width, slots[slot]);
        slot = slot == 2 ? 0 : slot + 1;
        const unsigned char* up = row(y - 1);
        unsigned char* current = row(y);
        const unsigned char* down = row(y + 1);
        current[0] = static_cast<unsigned char>(
            (5 * current[0] + down[1] + up[1] + current[1] + up[0] + down[0]) / 10);
        const int* s0 = slots[0];
        const int* s1 = slots[1];
        const int* s2 = slots[2];
        if (small_divisor) {
            const unsigned int q = static_cast<unsigned int>(weight);
            for (int x = 1; x < last; ++x) {
                const unsigned int numerator =
                    q * current[x] + static_cast<unsigned int>(s0[x] + s1[x] + s2[x]);
                current[x] = static_cast<unsigned char>(quotient(numerator));
            }
        } else {
            for (int x = 1; x < last; ++x) {
                const long long numerator =
                    static_cast<long long>(weight) * current[x] + s0[x] + s1[x] + s2[x];
                current[x] = static_cast<unsigned char>(numerator / divisor);
            }
        }
        current[last] =
            static_cast<unsigned char>((5 * current[last] + down[last - 1] + up[last - 1] +
                                        current[last - 1] + up[last] + down[last]) /
                                       10);
    }
}

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

namespace {

// One image row of the integral: every entry holds the sum over all rows up to this one and all
// columns up to and including its own. `previous` is null for image row 0.
void integral_row(const unsigned char* pixels, int width, const std::uint64_t* previous_sum,
                  const std::uint64_t* previous_square, std::uint64_t* sum, std::uint64_t* square) {
    std::uint64_t row_sum = 0;
    std::uint64_t row_square = 0;
    for (int x = 0; x < width; ++x) {
        const std::uint64_t p = pixels[x];
        row_sum += p;
        row_square += p * p;
        sum[x] = row_sum + (previous_sum != nullptr ? previous_sum[x] : 0);
        square[x] = row_square + (previous_square != nullptr ? previous_square[x] : 0);
    }
}

}  // namespace

bool QuickSauvolaEngine::run() {
    const int width = grey_image->get_width();
    const int height = grey_image->get_height();
    const int smaller = std::min(width, height);
    unsigned char* pixels = height > 0 ? grey_image->get_row(0) : nullptr;

    int window = para.window_size;
    if (11 * window > smaller) {
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

    const std::size_t ring_rows = static_cast<std::size_t>(ring) + 1;
    const std::size_t entries = ring_rows * static_cast<std::size_t>(width);
    auto sums = allocate_array<std::uint64_t>(entries, kAllocationFailed);
    auto squares = allocate_array<std::uint64_t>(entries, kAllocationFailed);
    auto sum_row = [&](int image_row) {
        return sums.get() + (static_cast<std::size_t>(image_row) % ring_rows) * width;
    };
    auto square_row = [&](int image_row) {
        return squares.get() + (static_cast<std::size_t>(image_row) % ring_rows) * width;
    };
    auto grey_row = [&](int y) { return pixels + static_cast<std::size_t>(width) * y; };

    for (int r = 0; r <= ring; ++r) {
        integral_row(grey_row(r), width, r > 0 ? sum_row(r - 1) : nullptr,
                     r > 0 ? square_row(r - 1) : nullptr, sum_row(r), square_row(r));
    }

    const int half = window / 2;
    const int zone = ring / 2;
    const int low_gray = para.low_gray;
    const int high_gray = para.high_gray;
    const float k_over_128 = para.k * 0.0078125f;
    const float one_minus_k = 1 - para.k;

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
    // The decision for a pixel of value p in the grey band, with the window sums and divisor.
    auto threshold_of = [&](std::uint64_t sum, std::uint64_t square, int divisor, bool centre) {
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

    std::vector<unsigned char> marks(static_cast<std::size_t>(width));
    auto write_marks = [&](int y) {
        unsigned char* bits =
            output_image->data + static_cast<std::size_t>(output_image->row_stride) * y;
        for (int x = 0; x < width; ++x) {
            if (marks[x]) {
                bits[x / 8] |= bit_masks[x % 8];
            }
        }
    };
    auto decide = [&](int p, std::uint64_t sum, std::uint64_t square, int divisor, bool centre) {
        if (p < low_gray) {
            return 1;
        }
        if (p > high_gray) {
            return 0;
        }
        return p <= threshold_of(sum, square, divisor, centre) ? 1 : 0;
    };

    // Rows of the top and bottom margins: the window is cut at the image border.
    auto edge_row = [&](int y) {
        const int top = std::max(y - half, 0);
        const int bottom = std::min(y + half, height - 1);
        const std::uint64_t* top_sum = sum_row(top);
        const std::uint64_t* bottom_sum = sum_row(bottom);
        const std::uint64_t* top_square = square_row(top);
        const std::uint64_t* bottom_square = square_row(bottom);
        const unsigned char* row = grey_row(y);
        for (int x = 0; x < width; ++x) {
            const int left = std::max(x - half, 0);
            const int right = std::min(x + half, width - 1);
            const std::uint64_t sum =
                bottom_sum[right] - top_sum[right] - bottom_sum[left] + top_sum[left];
            const std::uint64_t square =
                bottom_square[right] - top_square[right] - bottom_square[left] + top_square[left];
            marks[x] = static_cast<unsigned char>(
                decide(row[x], sum, square, (right - left) * (bottom - top), false));
        }
        write_marks(y);
    };

    for (int y = 0; y < zone; ++y) {
        edge_row(y);
    }

    for (int y = zone; y <= height - zone - 2; ++y) {
        const std::uint64_t* top_sum = sum_row(y - half);
        const std::uint64_t* top_square = square_row(y - half);
        // The margin columns span the rows to y + half, the centre a whole window from the top.
        const std::uint64_t* bottom_sum = sum_row(y + half);
        const std::uint64_t* bottom_square = square_row(y + half);
        const std::uint64_t* centre_sum = sum_row(y - half + window);
        const std::uint64_t* centre_square = square_row(y - half + window);
        const unsigned char* row = grey_row(y);

        for (int x = 0; x < zone; ++x) {
            const int right = x + half;
            const std::uint64_t sum =
                bottom_sum[right] - top_sum[right] - bottom_sum[0] + top_sum[0];
            const std::uint64_t square =
                bottom_square[right] - top_square[right] - bottom_square[0] + top_square[0];
            marks[x] =
                static_cast<unsigned char>(decide(row[x], sum, square, (x + half) * window, false));
        }
        for (int x = zone; x < width - zone; ++x) {
            const int left = x - half;
            const int right = x - half + window;
            const std::uint64_t sum =
                centre_sum[right] - top_sum[right] - centre_sum[left] + top_sum[left];
            const std::uint64_t square =
                centre_square[right] - top_square[right] - centre_square[left] + top_square[left];
            marks[x] =
                static_cast<unsigned char>(decide(row[x], sum, square, window * window, true));
        }
        const int last = width - 1;
        for (int x = width - zone; x < width; ++x) {
            const std::uint64_t sum =
                bottom_sum[last] - top_sum[last] - bottom_sum[x - 1] + top_sum[x - 1];
            const std::uint64_t square =
                bottom_square[last] - top_square[last] - bottom_square[x - 1] + top_square[x - 1];
            marks[x] = static_cast<unsigned char>(
                decide(row[x], sum, square, (width - x) * window, false));
        }
        write_marks(y);

        const int next = y + zone + 1;
        integral_row(grey_row(next), width, sum_row(next - 1), square_row(next - 1), sum_row(next),
                     square_row(next));
    }

    for (int y = std::max(height - zone - 1, 0); y < height; ++y) {
        edge_row(y);
    }
    return true;
}

}  // namespace geometric
