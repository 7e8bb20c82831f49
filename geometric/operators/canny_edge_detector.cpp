#include "geometric/operators/canny_edge_detector.h"

#include <cmath>
#include <cstdlib>
#include <vector>

namespace geometric {

namespace {

constexpr int kLargestSquare = 2 * 127 * 127;
// A trace that starts this deep marks its pixel but follows no neighbour.
constexpr int kTraceDepthLimit = 65;
constexpr unsigned char kCandidate = 128;
constexpr unsigned char kEdge = 255;

// Rounded square roots of every sum of two squared gradients.
const std::vector<unsigned char>& magnitude_table() {
    static const std::vector<unsigned char> table = [] {
        std::vector<unsigned char> values(kLargestSquare + 1);
        for (int i = 0; i <= kLargestSquare; ++i) {
            values[i] = static_cast<unsigned char>(std::floor(std::sqrt(i) + 0.5));
        }
        return values;
    }();
    return table;
}

int scale_gradient(int sum) {
    int value = sum / 4;  // truncates towards zero
    if (value > 127) {
        value = 127;
    }
    if (value < -127) {
        value = -127;
    }
    return value;
}

struct Gradients {
    std::vector<signed char> gx;
    std::vector<signed char> gy;
    std::vector<unsigned char> magnitude;
};

inline void store(Gradients& out, std::size_t i, int gx, int gy, const unsigned char* table) {
    gx = scale_gradient(gx);
    gy = scale_gradient(gy);
    out.gx[i] = static_cast<signed char>(gx);
    out.gy[i] = static_cast<signed char>(gy);
    out.magnitude[i] = table[gx * gx + gy * gy];
}

// Sobel sums at a pixel of the outer frame: where a side is missing, the centre row or column
// stands in for it, and at the corners only the two by two block is used.
void frame_gradient(const common::Image& input, int width, int height, int x, int y, Gradients& out,
                    const unsigned char* table) {
    const unsigned char* up = input.get_row(y > 0 ? y - 1 : y);
    const unsigned char* mid = input.get_row(y);
    const unsigned char* down = input.get_row(y < height - 1 ? y + 1 : y);
    const bool top = y == 0;
    const bool bottom = y == height - 1;
    const bool left = x == 0;
    const bool right = x == width - 1;
    const int xl = left ? x : x - 1;
    const int xr = right ? x : x + 1;
    const int c = mid[x];
    const int n = up[x];
    const int s = down[x];
    const int w = mid[xl];
    const int e = mid[xr];
    const int nw = up[xl];
    const int ne = up[xr];
    const int sw = down[xl];
    const int se = down[xr];
    int gx;
    int gy;
    if ((top || bottom) && (left || right)) {
        // The two by two block: the centre is one of its corners.
        const int row_c = top ? s : n;   // vertical neighbour
        const int col_c = left ? e : w;  // horizontal neighbour
        const int diagonal = top ? (left ? se : sw) : (left ? ne : nw);
        const int x_sign = left ? 1 : -1;
        const int y_sign = top ? 1 : -1;
        gx = 2 * x_sign * (col_c + diagonal - c - row_c);
        gy = 2 * y_sign * (row_c + diagonal - c - col_c);
    } else if (top) {
        gy = sw + 2 * s + se - w - 2 * c - e;
        gx = 2 * (e + se - w - sw);
    } else if (bottom) {
        gy = w + 2 * c + e - nw - 2 * n - ne;
        gx = 2 * (e + ne - w - nw);
    } else if (left) {
        gx = ne + 2 * e + se - n - 2 * c - s;
        gy = 2 * (s + se - n - ne);
    } else {
        gx = n + 2 * c + s - nw - 2 * w - sw;
        gy = 2 * (s + sw - n - nw);
    }
    store(out, static_cast<std::size_t>(y) * width + x, gx, gy, table);
}

void compute_gradients(const common::Image& input, int width, int height, Gradients& out) {
    const std::size_t size = static_cast<std::size_t>(width) * height;
    out.gx.assign(size, 0);
    out.gy.assign(size, 0);
    out.magnitude.assign(size, 0);
    const unsigned char* table = magnitude_table().data();
    for (int y = 0; y < height; ++y) {
        if (y == 0 || y == height - 1) {
            for (int x = 0; x < width; ++x) {
                frame_gradient(input, width, height, x, y, out, table);
            }
            continue;
        }
        frame_gradient(input, width, height, 0, y, out, table);
        frame_gradient(input, width, height, width - 1, y, out, table);
        const unsigned char* up = input.get_row(y - 1);
        const unsigned char* mid = input.get_row(y);
        const unsigned char* down = input.get_row(y + 1);
        const std::size_t row = static_cast<std::size_t>(y) * width;
        for (int x = 1; x < width - 1; ++x) {
            const int gx =
                up[x + 1] + 2 * mid[x + 1] + down[x + 1] - up[x - 1] - 2 * mid[x - 1] - down[x - 1];
            const int gy =
                down[x - 1] + 2 * down[x] + down[x + 1] - up[x - 1] - 2 * up[x] - up[x + 1];
            store(out, row + x, gx, gy, table);
        }
    }
}

// Whether the pixel is a local maximum of the magnitude along its gradient.
bool is_ridge(const unsigned char* m, int width, int gx, int gy) {
    const int centre = m[0];
    const int n = m[-width];
    const int s = m[width];
    const int w = m[-1];
    const int e = m[1];
    const int nw = m[-width - 1];
    const int ne = m[-width + 1];
    const int sw = m[width - 1];
    const int se = m[width + 1];
    const int xp = -gx * 65536 / centre;
    const int yp = gy * 65536 / centre;
    int a;
    int b;
    if (gx < 0) {
        if (gy >= 0) {
            if (-gx < gy) {
                a = (ne - n) * xp + (n - centre) * yp;
                b = (sw - s) * xp + (s - centre) * yp;
            } else {
                a = (ne - e) * yp + (e - centre) * xp;
                b = (sw - w) * yp + (w - centre) * xp;
            }
        } else if (-gx > -gy) {
            a = (e - se) * yp + (e - centre) * xp;
            b = (w - nw) * yp + (w - centre) * xp;
        } else {
            a = (se - s) * xp + (centre - s) * yp;
            b = (nw - n) * xp + (centre - n) * yp;
        }
    } else if (gy < 0) {
        if (gx >= -gy) {
            a = (w - sw) * yp + (centre - w) * xp;
            b = (e - ne) * yp + (centre - e) * xp;
        } else {
            a = (s - sw) * xp + (centre - s) * yp;
            b = (n - ne) * xp + (centre - n) * yp;
        }
    } else if (gx < gy) {
        a = (n - nw) * xp + (n - centre) * yp;
        b = (s - se) * xp + (s - centre) * yp;
    } else {
        a = (nw - w) * yp + (centre - w) * xp;
        b = (se - e) * yp + (centre - e) * xp;
    }
    return a <= 0 && b < 0;
}

void trace(unsigned char* marks, const unsigned char* magnitude, int width, std::size_t start,
           int depth, int low_threshold) {
    if (depth >= kTraceDepthLimit) {
        return;
    }
    const std::ptrdiff_t w = width;
    // W, NW, N, NE, E, SE, S; the last neighbour, SW, is followed by the loop.
    const std::ptrdiff_t nested[7] = {-1, -w - 1, -w, -w + 1, 1, w + 1, w};
    const std::ptrdiff_t south_west = w - 1;
    std::size_t p = start;
    for (;;) {
        for (std::ptrdiff_t offset : nested) {
            const std::size_t q = static_cast<std::size_t>(static_cast<std::ptrdiff_t>(p) + offset);
            if (marks[q] == kCandidate && magnitude[q] > low_threshold) {
                marks[q] = kEdge;
                trace(marks, magnitude, width, q, depth + 1, low_threshold);
            }
        }
        const std::size_t q = static_cast<std::size_t>(static_cast<std::ptrdiff_t>(p) + south_west);
        if (marks[q] != kCandidate || magnitude[q] <= low_threshold) {
            return;
        }
        marks[q] = kEdge;
        p = q;
    }
}

}  // namespace

void CannyEdgeDetector::perform_edge_detect(int low_threshold, int high_threshold,
                                            const common::Image& input,
                                            common::BasicImage& output) {
    const int width = input.get_width();
    const int height = input.get_height();
    const std::size_t size = static_cast<std::size_t>(width) * height;
    auto* buffer = static_cast<unsigned char*>(std::calloc(size > 0 ? size : 1, 1));
    if (buffer == nullptr) {
        return;
    }
    if (width >= 3 && height >= 3) {
        Gradients gradients;
        compute_gradients(input, width, height, gradients);
        const unsigned char* m = gradients.magnitude.data();
        // The marks live in the output buffer. Pixels outside the treated rows and columns,
        // and the outer frame, end as 0 whatever they are marked first, so they start at 0.
        unsigned char* marks = buffer;
        for (int y = 1; y <= height - 3; ++y) {
            const std::size_t row = static_cast<std::size_t>(y) * width;
            for (int x = 1; x <= width - 3; ++x) {
                const std::size_t i = row + x;
                // A zero magnitude has no direction and is never an edge.
                if (m[i] >= low_threshold && m[i] != 0 &&
                    is_ridge(m + i, width, gradients.gx[i], gradients.gy[i])) {
                    marks[i] = kCandidate;
                }
            }
        }
        for (std::size_t i = 0; i < size; ++i) {
            if (marks[i] == kCandidate && m[i] >= high_threshold) {
                marks[i] = kEdge;
                trace(marks, m, width, i, 0, low_threshold);
            }
        }
        for (std::size_t i = 0; i < size; ++i) {
            if (marks[i] != kEdge) {
                marks[i] = 0;
            }
        }
    }
    if (output.data != nullptr && output.owns_data == 1) {
        std::free(output.data);
    }
    output.data = buffer;
    output.data_size = static_cast<std::uint32_t>(size);
    output.width = width;
    output.height = height;
    output.row_stride = width;
    output.image_type = common::IMAGE_TYPE_GREY;
    output.owns_data = 1;
}

}  // namespace geometric
