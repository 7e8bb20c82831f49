#include "geometric/binarization/omin_binarization.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>

#include "geometric/binarization/reversed_bits.h"
#include "geometric/operators/image_integer_down_sampling.h"
#include "quorimp/image_c_api_transformer.h"
#include "quorimp/quorimp.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#define QUORIMP_OMIN_SSE2 1
#endif

namespace geometric {

namespace {

constexpr int kScaleFactors[7] = {1, 2, 4, 8, 16, 32, 64};
// The scale maps are painted by create_scale_img_only, whose table ends at scale 5.
constexpr int kCoarsestPaintedScale = 5;
constexpr unsigned char kNoScale = 255;
constexpr int kMapResolution = 300;
constexpr int kDefaultCharacterSize = 35;
constexpr int kWeakCharacterSize = 25;

struct BlobCalculatorDeleter {
    void operator()(void* calculator) const { delete_blob_calculator(calculator); }
};

ImageCApi record_of(const common::Image& image) {
    ImageCApi record = {0, 0, 0, 0, 1, 0, nullptr};
    quorimp::ImageCApiTransformer::transform_image_to_c_api_image(image, record);
    return record;
}

// Sets the bit of every pixel of a row that is strictly darker than its threshold; the row of
// bits is clear beforehand.
void mark_darker_than(const unsigned char* pixels, const unsigned char* thresholds, int width,
                      unsigned char* bits) {
    int x = 0;
#ifdef QUORIMP_OMIN_SSE2
    for (; x + 16 <= width; x += 16) {
        const __m128i p = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pixels + x));
        const __m128i t = _mm_loadu_si128(reinterpret_cast<const __m128i*>(thresholds + x));
        // t - p saturates to 0 exactly where p is not below t.
        const int not_darker =
            _mm_movemask_epi8(_mm_cmpeq_epi8(_mm_subs_epu8(t, p), _mm_setzero_si128()));
        const int darker = ~not_darker & 0xFFFF;
        bits[x / 8] = kReversedBits.table[darker & 0xFF];
        bits[x / 8 + 1] = kReversedBits.table[darker >> 8];
    }
#endif
    for (; x < width; ++x) {
        if (pixels[x] < thresholds[x]) {
            bits[x >> 3] |= static_cast<unsigned char>(0x80u >> (x & 7));
        }
    }
}

}  // namespace

OminBinarization::OminBinarization()
    : estimated_character(para.estimate_character_size ? EstimatedCharacter::CHARACTER_NOT_FOUND
                                                       : EstimatedCharacter::CHARACTER_FROM_HEIGHT,
                          para.estimate_character_size ? 0 : kDefaultCharacterSize) {}

OminBinarization::OminBinarization(const common::Image* input, common::BasicImage* output)
    : Binarization(input, output),
      estimated_character(para.estimate_character_size ? EstimatedCharacter::CHARACTER_NOT_FOUND
                                                       : EstimatedCharacter::CHARACTER_FROM_HEIGHT,
                          para.estimate_character_size ? 0 : kDefaultCharacterSize) {}

int OminBinarization::obtain_rough_character_size() const {
    return estimated_character.size;
}

bool OminBinarization::run_binarization_imp(common::Image* grey) {
    adjust_parameters_from_inputs(*grey);
    create_image_pyramid(*grey);
    // With `estimate_character_size` set, the character size would be measured here from the
    // page's blobs. The library has no estimator yet, so the estimate keeps the value it holds
    // (35 pixels from heights unless a caller wrote another): the window stays what it would be
    // without the flag, rather than coming from a guess that only pretends to measure.
    adjust_parameters_from_estimated_character();
    multi_scale_binarization();
    return true;
}

void OminBinarization::adjust_parameters_from_inputs(const common::Image& grey) {
    if (std::max(grey.get_height(), grey.get_width()) <= para.small_page_dimension) {
        para.minimum_scale = 0;
    }
}

void OminBinarization::create_image_pyramid(const common::Image& grey) {
    image_pyramid.reset(
        new ImagePyramid(grey, para.pyramid_dimension, para.pyramid_minimum_dimension));
}

void OminBinarization::adjust_parameters_from_estimated_character() {
    switch (estimated_character.output) {
        case EstimatedCharacter::CHARACTER_NOT_FOUND:
            para.maximum_scale += 2;
            break;
        case EstimatedCharacter::CHARACTER_WEAK:
            para.maximum_scale += 2;
            estimated_character.size = std::max(estimated_character.size, kWeakCharacterSize);
            break;
        default:
            break;
    }
}

void OminBinarization::multi_scale_binarization() {
    common::BasicImage* grey = nullptr;
    obtain_grayscale_img(&grey);
    const int minimum_scale = para.minimum_scale;
    const int base_factor = kScaleFactors[minimum_scale];
    common::BasicImage scale_map(grey->height / base_factor, grey->width / base_factor,
                                 common::IMAGE_TYPE_GREY, kMapResolution, kMapResolution);

    int window = estimated_character.size / base_factor;
    if (window % 2 == 0) {
        ++window;
    }
    para.set_up_scale_definitions(window);
    const int minimum_dimension = static_cast<int>(window * 1.5);

    ThresholdMaps threshold_maps;
    common::BasicImage* scale_image = nullptr;
    // Scales beyond the painting table are never tried: only repeated runs of one object, whose
    // limits keep growing, would reach them.
    const int last_scale = std::min(para.maximum_scale, kCoarsestPaintedScale);
    for (int scale = minimum_scale; scale <= last_scale; ++scale) {
        chose_current_scale_img(scale_image, scale);
        const int width = scale_image->width;
        const int height = scale_image->height;
        boost::shared_ptr<Image<unsigned char>> thresholds(
            new Image<unsigned char>(width, height, window, window));
        threshold_maps.push_back(thresholds);
        common::BasicImage binary;
        perform_sauvola_binarization(*scale_image, window, *thresholds, binary, para.k);
        if (scale == minimum_scale) {
            initialize_scale_denotion_maps(*thresholds, scale_map);
        }
        if (!analyze_binary_image(binary, scale_map, scale, minimum_dimension)) {
            break;  // no blob too large for this scale: coarser scales have nothing to find
        }
    }

    propagate_image(scale_map);
    if (minimum_scale != 0) {
        post_process_scale_boundary(scale_map);
    }
    post_process_scale_empty_pixels(scale_map);
    create_binary_image_from_scale(scale_map, threshold_maps);
}

void OminBinarization::chose_current_scale_img(common::BasicImage*& out, int scale) {
    if (scale == 0) {
        obtain_grayscale_img(&out);
        return;
    }
    std::vector<boost::shared_ptr<common::BasicImage>>& levels = image_pyramid->levels;
    if (!levels.empty()) {
        if (scale <= static_cast<int>(levels.size())) {
            out = levels[scale - 1].get();
            return;
        }
        if (out == nullptr) {
            // A first scale beyond the pyramid, which only a raised `minimum_scale` gives: the
            // last level is halved until it has that scale.
            out = levels.back().get();
            for (int level = static_cast<int>(levels.size()); level + 1 < scale; ++level) {
                ImageIntegerDownSampling::DownSampling2(*out);
            }
        }
        // Halved in place: the last level of the pyramid itself shrinks.
        ImageIntegerDownSampling::DownSampling2(*out);
        return;
    }
    // No levels: a small page. The first scale's levels are made from the grey working image, one
    // halving after the other; each further scale adds one level made from the scale before.
    if (scale == para.minimum_scale) {
        common::BasicImage* previous = nullptr;
        obtain_grayscale_img(&previous);
        for (int level = 0; level < scale; ++level) {
            boost::shared_ptr<common::BasicImage> halved(new common::BasicImage());
            ImageIntegerDownSampling::DownSampling2(*previous, *halved);
            levels.push_back(halved);
            previous = halved.get();
        }
        out = previous;
        return;
    }
    boost::shared_ptr<common::BasicImage> halved(new common::BasicImage());
    ImageIntegerDownSampling::DownSampling2(*out, *halved);
    levels.push_back(halved);
    out = halved.get();
}

void OminBinarization::perform_sauvola_binarization(const common::BasicImage& image, int window,
                                                    Image<unsigned char>& thresholds,
                                                    common::BasicImage& binary, double k) {
    const int width = image.width;
    const int height = image.height;
    binary.reset(height, width, common::IMAGE_TYPE_BINARY, kMapResolution, kMapResolution);
    if (width <= 0 || height <= 0) {
        return;
    }
    const int high_gray = para.high_gray;
    const double flat_ratio = para.flat_ratio;
    const int half = window / 2;

    // The mean, the deviation and their ratio are worked out per pixel from running window sums
    // instead of being kept in three maps of doubles: the sums are whole numbers, exact in 64
    // bits, and every value is formed as the local statistics form it, so the thresholds are the
    // same to the bit. Bright pixels need none of them.
    std::vector<std::uint64_t> column_sum(static_cast<std::size_t>(width), 0);
    std::vector<std::uint64_t> column_square(static_cast<std::size_t>(width), 0);
    std::vector<std::uint64_t> prefix_sum(static_cast<std::size_t>(width) + 1, 0);
    std::vector<std::uint64_t> prefix_square(static_cast<std::size_t>(width) + 1, 0);
    auto add_row = [&](int y) {
        const unsigned char* row = image.data + static_cast<std::size_t>(width) * y;
        for (int x = 0; x < width; ++x) {
            const std::uint64_t p = row[x];
            column_sum[x] += p;
            column_square[x] += p * p;
        }
    };
    auto remove_row = [&](int y) {
        const unsigned char* row = image.data + static_cast<std::size_t>(width) * y;
        for (int x = 0; x < width; ++x) {
            const std::uint64_t p = row[x];
            column_sum[x] -= p;
            column_square[x] -= p * p;
        }
    };

    int first_row = 0;  // rows [first_row, end_row) are in the column sums
    int end_row = 0;
    for (int y = 0; y < height; ++y) {
        const int top = std::max(y - half, 0);
        const int bottom = std::min(y - half + window, height);
        for (; end_row < bottom; ++end_row) {
            add_row(end_row);
        }
        for (; first_row < top; ++first_row) {
            remove_row(first_row);
        }
        for (int x = 0; x < width; ++x) {
            prefix_sum[x + 1] = prefix_sum[x] + column_sum[x];
            prefix_square[x + 1] = prefix_square[x] + column_square[x];
        }
        const int rows = bottom - top;
        const unsigned char* pixels = image.data + static_cast<std::size_t>(width) * y;
        unsigned char* threshold_row = thresholds.row(y);
        unsigned char* bits = binary.data + static_cast<std::size_t>(binary.row_stride) * y;
        for (int x = 0; x < width; ++x) {
            const int p = pixels[x];
            int threshold = 1;
            if (p <= high_gray) {
                const int left = std::max(x - half, 0);
                const int right = std::min(x - half + window, width);
                const double count = static_cast<double>((right - left) * rows);
                const double sum = static_cast<double>(prefix_sum[right] - prefix_sum[left]);
                const double square =
                    static_cast<double>(prefix_square[right] - prefix_square[left]);
                const double m = sum / count;
                const double s = std::sqrt(square / count - m * m);
                if (m / (s + 1e-10) < flat_ratio) {
                    threshold = static_cast<int>(m * k * 0.0078 * s + (1 - k) * m);
                }
            }
            threshold_row[x] = static_cast<unsigned char>(threshold);
            if (p < threshold) {
                bits[x >> 3] |= static_cast<unsigned char>(0x80u >> (x & 7));
            }
        }
    }
}

void OminBinarization::initialize_scale_denotion_maps(const Image<unsigned char>& thresholds,
                                                      common::BasicImage& scale_map) {
    const int width = std::min(thresholds.width, scale_map.width);
    const int height = std::min(thresholds.height, scale_map.height);
    for (int y = 0; y < height; ++y) {
        const unsigned char* threshold_row = thresholds.row(y);
        unsigned char* map_row = scale_map.data + static_cast<std::size_t>(scale_map.width) * y;
        for (int x = 0; x < width; ++x) {
            if (threshold_row[x] == 1) {
                map_row[x] = kNoScale;
            }
        }
    }
}

bool OminBinarization::analyze_binary_image(common::BasicImage& binary,
                                            common::BasicImage& scale_map, int scale,
                                            int minimum_dimension) {
    const OminPara::ScaleDefinition& band =
        para.scale_definitions[static_cast<std::size_t>(scale - para.minimum_scale)];
    ImageCApi binary_record = record_of(binary);
    ImageCApi map_record = record_of(scale_map);
    const unsigned char use_height =
        estimated_character.output == EstimatedCharacter::CHARACTER_FROM_WIDTH ? 0 : 1;
    std::unique_ptr<void, BlobCalculatorDeleter> calculator(create_blob_calculator());
    if (calculator == nullptr) {
        throw std::bad_alloc();
    }
    return create_scale_img_only(calculator.get(), band.maximum_area, band.minimum_area, scale,
                                 &map_record, &binary_record, para.minimum_scale, minimum_dimension,
                                 use_height) != 0;
}

void OminBinarization::propagate_image(common::BasicImage& scale_map) {
    const int width = scale_map.width;
    const int height = scale_map.height;
    if (width <= 0 || height <= 0) {
        return;
    }
    unsigned char* map = scale_map.data;
    std::memset(map, kNoScale, static_cast<std::size_t>(width));
    std::memset(map + static_cast<std::size_t>(width) * (height - 1), kNoScale,
                static_cast<std::size_t>(width));
    for (int y = 0; y < height; ++y) {
        map[static_cast<std::size_t>(width) * y] = kNoScale;
        map[static_cast<std::size_t>(width) * y + width - 1] = kNoScale;
    }

    // Left, upper left, up, upper right, right, lower right, down, lower left. The frame is
    // 255, so every pixel that ever enters the queue is an inner one with all eight neighbours.
    const std::ptrdiff_t w = width;
    const std::ptrdiff_t neighbours[8] = {-1, -w - 1, -w, -w + 1, 1, w + 1, w, w - 1};
    std::vector<std::uint32_t> queue;

    // The seeds, in row order: assigned pixels with an unassigned neighbour. Whether a pixel has
    // one is read from three rows of marks, each mark saying that the pixel or one beside it is
    // 0.
    std::vector<unsigned char> near_zero[3];
    for (std::vector<unsigned char>& marks : near_zero) {
        marks.assign(static_cast<std::size_t>(width), 0);
    }
    auto mark_row = [&](int y, std::vector<unsigned char>& marks) {
        const unsigned char* row = map + w * y;
        for (int x = 1; x + 1 < width; ++x) {
            marks[x] =
                static_cast<unsigned char>((row[x - 1] == 0) | (row[x] == 0) | (row[x + 1] == 0));
        }
    };
    if (height >= 3 && width >= 3) {
        mark_row(0, near_zero[0]);
        mark_row(1, near_zero[1]);
    }
    for (int y = 1; y + 1 < height; ++y) {
        const unsigned char* above = near_zero[(y - 1) % 3].data();
        const unsigned char* level = near_zero[y % 3].data();
        mark_row(y + 1, near_zero[(y + 1) % 3]);
        const unsigned char* below = near_zero[(y + 1) % 3].data();
        const unsigned char* row = map + w * y;
        for (int x = 1; x + 1 < width; ++x) {
            const unsigned char value = row[x];
            if (value != 0 && value != kNoScale && (above[x] | level[x] | below[x]) != 0) {
                queue.push_back(static_cast<std::uint32_t>(w * y + x));
            }
        }
    }
    for (std::size_t head = 0; head < queue.size(); ++head) {
        const std::ptrdiff_t i = queue[head];
        const unsigned char value = map[i];
        for (const std::ptrdiff_t offset : neighbours) {
            if (map[i + offset] == 0) {
                map[i + offset] = value;
                queue.push_back(static_cast<std::uint32_t>(i + offset));
            }
        }
    }
}

void OminBinarization::post_process_scale_boundary(common::BasicImage& scale_map) {
    const int width = scale_map.width;
    const int height = scale_map.height;
    if (width < 2 || height < 2) {
        return;
    }
    unsigned char* map = scale_map.data;
    const std::size_t row_bytes = static_cast<std::size_t>(width);
    std::memcpy(map, map + row_bytes, row_bytes);
    std::memcpy(map + row_bytes * (height - 1), map + row_bytes * (height - 2), row_bytes);
    for (int y = 0; y < height; ++y) {
        unsigned char* row = map + row_bytes * y;
        row[0] = row[1];
        row[width - 1] = row[width - 2];
    }
}

void OminBinarization::post_process_scale_empty_pixels(common::BasicImage& scale_map) {
    const unsigned char first_scale = static_cast<unsigned char>(para.minimum_scale + 1);
    const std::size_t count = static_cast<std::size_t>(scale_map.width > 0 ? scale_map.width : 0) *
                              static_cast<std::size_t>(scale_map.height > 0 ? scale_map.height : 0);
    for (std::size_t i = 0; i < count; ++i) {
        if (scale_map.data[i] == 0) {
            scale_map.data[i] = first_scale;
        }
    }
}

void OminBinarization::create_binary_image_from_scale(const common::BasicImage& scale_map,
                                                      const ThresholdMaps& threshold_maps) {
    common::BasicImage* grey = nullptr;
    obtain_grayscale_img(&grey);
    const int width = grey->width;
    const int height = grey->height;
    if (width < 3 || height < 3) {
        return;
    }
    const int minimum_scale = para.minimum_scale;
    const int base_factor = kScaleFactors[minimum_scale];
    const int scale_count = static_cast<int>(threshold_maps.size());

    // Each row first gets the threshold of every pixel, 0 where none applies (no scale, or the
    // frame), so that the comparison runs over whole rows. The map holds one byte per block of
    // `base_factor` columns, and every scale's factor is a multiple of it, so a block shares its
    // map value and its threshold column: both are read once per block.
    std::vector<unsigned char> row_thresholds(static_cast<std::size_t>(width));
    std::vector<const unsigned char*> threshold_rows(static_cast<std::size_t>(scale_count));
    const int blocks = std::min(scale_map.width, (width + base_factor - 1) / base_factor);
    for (int y = 1; y + 1 < height; ++y) {
        const unsigned char* map_row =
            scale_map.data + static_cast<std::size_t>(scale_map.width) * (y / base_factor);
        for (int i = 0; i < scale_count; ++i) {
            const Image<unsigned char>& thresholds = *threshold_maps[i];
            const int factor = kScaleFactors[minimum_scale + i];
            threshold_rows[i] = thresholds.height > 0
                                    ? thresholds.row(std::min(y / factor, thresholds.height - 1))
                                    : nullptr;
        }
        std::fill(row_thresholds.begin(), row_thresholds.end(), 0);
        for (int block = 0; block < blocks; ++block) {
            const unsigned char value = map_row[block];
            if (value == kNoScale) {
                continue;
            }
            const int first = block * base_factor;
            const int end = std::min(first + base_factor, width);
            const int index = value - 1 - minimum_scale;
            const int factor = kScaleFactors[value - 1];
            const int threshold_width = threshold_maps[index]->width;
            const unsigned char threshold =
                threshold_rows[index][std::min(first / factor, threshold_width - 1)];
            std::fill(row_thresholds.begin() + first, row_thresholds.begin() + end, threshold);
        }
        row_thresholds[0] = 0;
        row_thresholds[width - 1] = 0;
        mark_darker_than(
            grey->data + static_cast<std::size_t>(width) * y, row_thresholds.data(), width,
            output_image->data + static_cast<std::size_t>(output_image->row_stride) * y);
    }
}

}  // namespace geometric
