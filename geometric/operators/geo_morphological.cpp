#include "geometric/operators/geo_morphological.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "geometric/blobs/runs_in_line.h"

namespace geometric {

namespace {

unsigned char* row_of(unsigned char* data, int stride, int y) {
    return data + static_cast<std::ptrdiff_t>(stride) * y;
}

// Sets or clears the bits of the columns [from, to) of one packed row, a byte at a time.
void set_bits(unsigned char* row, int from, int to) {
    for (int x = from; x < to;) {
        const int bit = x % 8;
        const int count = std::min(8 - bit, to - x);
        row[x / 8] |= static_cast<unsigned char>((0xFFu >> bit) & ~(0xFFu >> (bit + count)));
        x += count;
    }
}

void clear_bits(unsigned char* row, int from, int to) {
    for (int x = from; x < to;) {
        const int bit = x % 8;
        const int count = std::min(8 - bit, to - x);
        row[x / 8] &= static_cast<unsigned char>(~((0xFFu >> bit) & ~(0xFFu >> (bit + count))));
        x += count;
    }
}

// Sets or clears one column in the rows [from, to).
void set_column(unsigned char* data, int stride, int column, int from, int to) {
    const unsigned char mask = static_cast<unsigned char>(0x80u >> (column % 8));
    for (int y = from; y < to; ++y) {
        row_of(data, stride, y)[column / 8] |= mask;
    }
}

void clear_column(unsigned char* data, int stride, int column, int from, int to) {
    const unsigned char mask = static_cast<unsigned char>(~(0x80u >> (column % 8)));
    for (int y = from; y < to; ++y) {
        row_of(data, stride, y)[column / 8] &= mask;
    }
}

// For dilation `state` holds -1 while a column is in foreground, else the row where its background
// began.
void set_pixel_based_on_runs_for_dilate(int size, int stride, unsigned char* data, int top,
                                        int bottom, int y, int left, const RunsInLine& runs,
                                        std::vector<int>& state) {
    for (const BinaryRun& run : runs) {
        for (int c = run.first_x; c <= run.last_x; ++c) {
            const int s = state[c];
            if (s == -1) {
                state[c] = y;
                continue;
            }
            if (s > top) {
                set_column(data, stride, left + c, s, std::min(s + size, bottom));
            }
            set_column(data, stride, left + c, std::max(y - size, s), y);
            state[c] = -1;
        }
    }
}

// For erosion and opening `state` holds -1 while a column is in background, else the row where its
// foreground began.
void set_pixel_based_on_runs_for_erode(int size, int stride, unsigned char* data, int y, int left,
                                       const RunsInLine& runs, std::vector<int>& state) {
    for (const BinaryRun& run : runs) {
        for (int c = run.first_x; c <= run.last_x; ++c) {
            const int s = state[c];
            if (s == -1) {
                state[c] = y;
                continue;
            }
            if (s + size < y - size) {
                clear_column(data, stride, left + c, s, s + size);
                clear_column(data, stride, left + c, y - size, y);
            } else {
                clear_column(data, stride, left + c, s, y);
            }
            state[c] = -1;
        }
    }
}

void set_pixel_based_on_runs_for_open(int size, int stride, unsigned char* data, int y, int left,
                                      const RunsInLine& runs, std::vector<int>& state) {
    for (const BinaryRun& run : runs) {
        for (int c = run.first_x; c <= run.last_x; ++c) {
            const int s = state[c];
            if (s == -1) {
                state[c] = y;
                continue;
            }
            if (y - s < size) {
                clear_column(data, stride, left + c, s, y);
            }
            state[c] = -1;
        }
    }
}

// Walks the rows below `top` and hands the columns that change between a row and the one above
// it to `step(y, runs)`. The scratch line holds the XOR of the two rows' bytes that cover
// [left, right).
template <typename Step>
void walk_column_changes(unsigned char* data, int stride, int left, int right, int top, int bottom,
                         RunsInLine& runs, Step step) {
    std::vector<unsigned char> scratch(static_cast<std::size_t>(stride), 0);
    const int first_byte = left / 8;
    const int end_byte = std::min((right + 7) / 8, stride);
    for (int y = top + 1; y < bottom; ++y) {
        const unsigned char* current = row_of(data, stride, y);
        const unsigned char* previous = row_of(data, stride, y - 1);
        for (int i = first_byte; i < end_byte; ++i) {
            scratch[i] = current[i] ^ previous[i];
        }
        runs.formulate_runs(scratch.data(), left, right - left);
        step(y, runs);
    }
}

int image_stride(const common::Image& image) {
    return image.get_row_stride();
}

unsigned char* image_data(common::Image& image) {
    return image.get_height() > 0 ? image.get_row(0) : nullptr;
}

}  // namespace

void GeoMorphological::dilate_x(common::Image& image, int size) {
    dilate_x(size, image_data(image), image_stride(image), 0, image.get_width(), 0,
             image.get_height());
}

void GeoMorphological::dilate_x(int size, unsigned char* data, int stride, int left, int right,
                                int top, int bottom) {
    RunsInLine runs;
    for (int y = top; y < bottom; ++y) {
        unsigned char* row = row_of(data, stride, y);
        runs.formulate_runs(row, left, right - left);
        for (const BinaryRun& run : runs) {
            set_bits(row, std::max(run.first_x - size, left), run.first_x);
            set_bits(row, run.last_x + 1, std::min(run.last_x + size + 1, right));
        }
    }
}

void GeoMorphological::erode_x(common::Image& image, int size) {
    erode_x(size, image_data(image), image_stride(image), 0, image.get_width(), 0,
            image.get_height());
}

void GeoMorphological::erode_x(int size, unsigned char* data, int stride, int left, int right,
                               int top, int bottom) {
    RunsInLine runs;
    for (int y = top; y < bottom; ++y) {
        unsigned char* row = row_of(data, stride, y);
        runs.formulate_runs(row, left, right - left);
        for (const BinaryRun& run : runs) {
            if (run.first_x + size < run.last_x + 1 - size) {
                clear_bits(row, run.first_x, run.first_x + size);
                clear_bits(row, run.last_x + 1 - size, run.last_x + 1);
            } else {
                clear_bits(row, run.first_x, run.last_x + 1);
            }
        }
    }
}

void GeoMorphological::open_x(common::Image& image, int size) {
    open_x(size, image_data(image), image_stride(image), 0, image.get_width(), 0,
           image.get_height());
}

void GeoMorphological::open_x(int size, unsigned char* data, int stride, int left, int right,
                              int top, int bottom) {
    RunsInLine runs;
    for (int y = top; y < bottom; ++y) {
        unsigned char* row = row_of(data, stride, y);
        runs.formulate_runs(row, left, right - left);
        for (const BinaryRun& run : runs) {
            if (run.size() < size) {
                clear_bits(row, run.first_x, run.last_x + 1);
            }
        }
    }
}

void GeoMorphological::dilate_y(common::Image& image, int size) {
    dilate_y(size, image_data(image), image_stride(image), 0, image.get_width(), 0,
             image.get_height());
}

void GeoMorphological::dilate_y(int size, unsigned char* data, int stride, int left, int right,
                                int top, int bottom) {
    if (top >= bottom || left >= right) {
        return;
    }
    std::vector<int> state(static_cast<std::size_t>(right - left), top);
    RunsInLine runs;
    runs.formulate_runs(row_of(data, stride, top), left, right - left);
    for (const BinaryRun& run : runs) {
        std::fill(state.begin() + run.first_x, state.begin() + run.last_x + 1, -1);
    }
    walk_column_changes(data, stride, left, right, top, bottom, runs,
                        [&](int y, const RunsInLine& changes) {
                            set_pixel_based_on_runs_for_dilate(size, stride, data, top, bottom, y,
                                                               left, changes, state);
                        });
    for (int c = 0; c < right - left; ++c) {
        const int s = state[c];
        if (s > top) {
            set_column(data, stride, left + c, s, std::min(s + size, bottom));
        }
    }
}

void GeoMorphological::erode_y(common::Image& image, int size) {
    erode_y(size, image_data(image), image_stride(image), 0, image.get_width(), 0,
            image.get_height());
}

void GeoMorphological::erode_y(int size, unsigned char* data, int stride, int left, int right,
                               int top, int bottom) {
    if (top >= bottom || left >= right) {
        return;
    }
    std::vector<int> state(static_cast<std::size_t>(right - left), -1);
    RunsInLine runs;
    runs.formulate_runs(row_of(data, stride, top), left, right - left);
    for (const BinaryRun& run : runs) {
        std::fill(state.begin() + run.first_x, state.begin() + run.last_x + 1, top);
    }
    walk_column_changes(
        data, stride, left, right, top, bottom, runs, [&](int y, const RunsInLine& changes) {
            set_pixel_based_on_runs_for_erode(size, stride, data, y, left, changes, state);
        });
    // The stretches still open at the bottom end there.
    runs.formulate_runs(row_of(data, stride, bottom - 1), left, right - left);
    set_pixel_based_on_runs_for_erode(size, stride, data, bottom, left, runs, state);
}

void GeoMorphological::open_y(common::Image& image, int size) {
    open_y(size, image_data(image), image_stride(image), 0, image.get_width(), 0,
           image.get_height());
}

void GeoMorphological::open_y(int size, unsigned char* data, int stride, int left, int right,
                              int top, int bottom) {
    if (top >= bottom || left >= right) {
        return;
    }
    std::vector<int> state(static_cast<std::size_t>(right - left), -1);
    RunsInLine runs;
    runs.formulate_runs(row_of(data, stride, top), left, right - left);
    for (const BinaryRun& run : runs) {
        std::fill(state.begin() + run.first_x, state.begin() + run.last_x + 1, top);
    }
    walk_column_changes(
        data, stride, left, right, top, bottom, runs, [&](int y, const RunsInLine& changes) {
            set_pixel_based_on_runs_for_open(size, stride, data, y, left, changes, state);
        });
    runs.formulate_runs(row_of(data, stride, bottom - 1), left, right - left);
    set_pixel_based_on_runs_for_open(size, stride, data, bottom, left, runs, state);
}

void GeoMorphological::dilate_xy(const common::Image& input, common::BasicImage& output) {
    if (output.data == nullptr) {
        output.reset(input.get_height(), input.get_width(), common::IMAGE_TYPE_BINARY, 300, 300);
    }
    if (input.get_height() <= 0) {
        return;
    }
    dilate_xy(input.get_row(0), output.data, input.get_height(), input.get_row_stride());
}

namespace {

// ORs into `out` a row shifted one pixel to each side; the carry comes from the neighbouring
// byte, and none crosses the ends of the row.
void or_shifted(const unsigned char* row, unsigned char* out, int stride) {
    for (int i = 0; i < stride; ++i) {
        const unsigned int from_left = (row[i] >> 1) | (i > 0 ? (row[i - 1] << 7) & 0xFFu : 0u);
        const unsigned int from_right =
            ((row[i] << 1) & 0xFFu) | (i + 1 < stride ? row[i + 1] >> 7 : 0u);
        out[i] |= static_cast<unsigned char>(from_left | from_right);
    }
}

void or_row_and_shifted(const unsigned char* row, unsigned char* out, int stride) {
    for (int i = 0; i < stride; ++i) {
        out[i] |= row[i];
    }
    or_shifted(row, out, stride);
}

}  // namespace

void GeoMorphological::dilate_xy(const unsigned char* input, unsigned char* output, int height,
                                 int stride) {
    for (int y = 0; y < height; ++y) {
        const std::ptrdiff_t offset = static_cast<std::ptrdiff_t>(stride) * y;
        unsigned char* out = output + offset;
        if (y > 0) {
            or_row_and_shifted(input + offset - stride, out, stride);
        }
        if (y + 1 < height) {
            or_row_and_shifted(input + offset + stride, out, stride);
        }
        or_shifted(input + offset, out, stride);
    }
}

namespace {

template <typename Combine>
void combine_rows(common::Image& a, const common::Image& b, Combine combine) {
    const int stride = a.get_row_stride();
    for (int y = 0; y < a.get_height(); ++y) {
        unsigned char* __restrict target = a.get_row(y);
        const unsigned char* __restrict source = b.get_row(y);
        if (target == source) {
            // The same image twice: combine byte by byte through one pointer.
            for (int i = 0; i < stride; ++i) {
                target[i] = combine(target[i], target[i]);
            }
            continue;
        }
        for (int i = 0; i < stride; ++i) {
            target[i] = combine(target[i], source[i]);
        }
    }
}

}  // namespace

void GeoMorphological::or2(common::Image& a, const common::Image& b) {
    combine_rows(
        a, b, [](unsigned char x, unsigned char y) { return static_cast<unsigned char>(x | y); });
}

void GeoMorphological::xor2(common::Image& a, const common::Image& b) {
    combine_rows(
        a, b, [](unsigned char x, unsigned char y) { return static_cast<unsigned char>(x ^ y); });
}

void GeoMorphological::remove_denotation(common::Image& a, const common::Image& b) {
    combine_rows(
        a, b, [](unsigned char x, unsigned char y) { return static_cast<unsigned char>(x & ~y); });
}

}  // namespace geometric
