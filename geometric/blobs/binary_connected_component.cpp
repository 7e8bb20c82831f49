#include "geometric/blobs/binary_connected_component.h"

#include <cstddef>
#include <cstring>

#include "geometric/operators/binary_image_operator.h"

namespace geometric {

namespace {

// Sets or clears the bits of columns first..last of a packed binary row.
void fill_bits(unsigned char* row, int first, int last, bool set) {
    const int first_byte = first >> 3;
    const int last_byte = last >> 3;
    const unsigned char head = static_cast<unsigned char>(0xFFu >> (first & 7));
    const unsigned char tail = static_cast<unsigned char>(0xFFu << (7 - (last & 7)));
    auto apply = [&](int index, unsigned char mask) {
        if (set) {
            row[index] = static_cast<unsigned char>(row[index] | mask);
        } else {
            row[index] = static_cast<unsigned char>(row[index] & ~mask);
        }
    };
    if (first_byte == last_byte) {
        apply(first_byte, static_cast<unsigned char>(head & tail));
        return;
    }
    apply(first_byte, head);
    if (last_byte - first_byte > 1) {
        std::memset(row + first_byte + 1, set ? 0xFF : 0x00,
                    static_cast<std::size_t>(last_byte - first_byte - 1));
    }
    apply(last_byte, tail);
}

void widen(Geobox<int>& box, const BinaryStroke& stroke) {
    if (stroke.max_x > box.max_x) {
        box.max_x = stroke.max_x;
    }
    if (stroke.max_y > box.max_y) {
        box.max_y = stroke.max_y;
    }
    if (stroke.min_x < box.min_x) {
        box.min_x = stroke.min_x;
    }
    if (stroke.min_y < box.min_y) {
        box.min_y = stroke.min_y;
    }
}

template <typename Visit>
void for_each_pixel_behind(const BinaryConnectedComponent* element, Visit visit) {
    for (; element != nullptr; element = element->next_element) {
        for (const BinaryStroke::RunAtLine& entry : element->stroke.runs) {
            for (int x = entry.run->first_x; x <= entry.run->last_x; ++x) {
                visit(x, entry.line);
            }
        }
    }
}

}  // namespace

BinaryConnectedComponent* BinaryConnectedComponent::get_first_element() {
    BinaryConnectedComponent* head = this;
    while (head->previous_element != nullptr) {
        head = head->first_element_cache != nullptr ? head->first_element_cache
                                                    : head->previous_element;
    }
    for (BinaryConnectedComponent* element = this; element->previous_element != nullptr;) {
        BinaryConnectedComponent* step = element->first_element_cache != nullptr
                                             ? element->first_element_cache
                                             : element->previous_element;
        element->first_element_cache = head;
        element = step;
    }
    return head;
}

BinaryConnectedComponent* BinaryConnectedComponent::get_last_element() {
    BinaryConnectedComponent* tail = this;
    while (tail->next_element != nullptr) {
        tail = tail->last_element_cache != nullptr ? tail->last_element_cache : tail->next_element;
    }
    for (BinaryConnectedComponent* element = this; element->next_element != nullptr;) {
        BinaryConnectedComponent* step = element->last_element_cache != nullptr
                                             ? element->last_element_cache
                                             : element->next_element;
        element->last_element_cache = tail;
        element = step;
    }
    return tail;
}

bool BinaryConnectedComponent::operator==(BinaryConnectedComponent& other) {
    return get_first_element() == other.get_first_element();
}

void BinaryConnectedComponent::merge(BinaryConnectedComponent& other) {
    BinaryConnectedComponent* tail = get_last_element();
    BinaryConnectedComponent* head = other.get_first_element();
    tail->next_element = head;
    head->previous_element = tail;
}

unsigned int BinaryConnectedComponent::count_pixel() const {
    unsigned int count = 0;
    for (const BinaryConnectedComponent* element = this; element != nullptr;
         element = element->next_element) {
        count += element->stroke.pixel_count;
    }
    for (const BinaryConnectedComponent* element = previous_element; element != nullptr;
         element = element->previous_element) {
        count += element->stroke.pixel_count;
    }
    return count;
}

int BinaryConnectedComponent::count_stroke() const {
    int count = 1;
    for (const BinaryConnectedComponent* element = next_element; element != nullptr;
         element = element->next_element) {
        ++count;
    }
    return count;
}

Geobox<int> BinaryConnectedComponent::get_bounding_box() const {
    Geobox<int> box;
    for (const BinaryConnectedComponent* element = this; element != nullptr;
         element = element->next_element) {
        widen(box, element->stroke);
    }
    for (const BinaryConnectedComponent* element = previous_element; element != nullptr;
         element = element->previous_element) {
        widen(box, element->stroke);
    }
    return box;
}

void BinaryConnectedComponent::get_element_coordinates(std::vector<int>& x,
                                                       std::vector<int>& y) const {
    for_each_pixel_behind(this, [&](int column, int line) {
        x.push_back(column);
        y.push_back(line);
    });
}

void BinaryConnectedComponent::get_top_point(Geocoordinate<int>& point) const {
    if (stroke.runs.empty()) {
        return;
    }
    point.set(stroke.runs.front().run->first_x, stroke.runs.front().line);
    for (const BinaryConnectedComponent* element = next_element; element != nullptr;
         element = element->next_element) {
        if (!element->stroke.runs.empty() && element->stroke.runs.front().line < point.y) {
            point.set(element->stroke.runs.front().run->first_x, element->stroke.runs.front().line);
        }
    }
}

void BinaryConnectedComponent::draw_blob_image(common::BasicImage& image) const {
    for (const BinaryConnectedComponent* element = this; element != nullptr;
         element = element->next_element) {
        for (const BinaryStroke::RunAtLine& entry : element->stroke.runs) {
            fill_bits(image.data + static_cast<std::size_t>(image.row_stride) * entry.line,
                      entry.run->first_x, entry.run->last_x, true);
        }
    }
}

void BinaryConnectedComponent::undraw_blob_image(common::BasicImage& image) const {
    for (const BinaryConnectedComponent* element = this; element != nullptr;
         element = element->next_element) {
        for (const BinaryStroke::RunAtLine& entry : element->stroke.runs) {
            fill_bits(image.data + static_cast<std::size_t>(image.row_stride) * entry.line,
                      entry.run->first_x, entry.run->last_x, false);
        }
    }
}

void BinaryConnectedComponent::draw_blob_image(common::BasicImage& image, int value,
                                               int scale) const {
    for (const BinaryConnectedComponent* element = this; element != nullptr;
         element = element->next_element) {
        for (const BinaryStroke::RunAtLine& entry : element->stroke.runs) {
            const int first = entry.run->first_x * scale;
            const int count = (entry.run->last_x + 1) * scale - first;
            for (int i = 0; i < scale; ++i) {
                unsigned char* row = image.get_row(entry.line * scale + i);
                std::memset(row + first, value, static_cast<std::size_t>(count));
            }
        }
    }
}

bool BinaryConnectedComponent::is_thick_blob(const common::Image& image) const {
    for (const BinaryConnectedComponent* element = this; element != nullptr;
         element = element->next_element) {
        for (const BinaryStroke::RunAtLine& entry : element->stroke.runs) {
            if (BinaryImageOperator::check_black_run(image.get_row(entry.line), entry.run->first_x,
                                                     entry.run->size())) {
                return true;
            }
        }
    }
    return false;
}

void BinaryConnectedComponent::get_boundary(std::vector<int>& x, std::vector<int>& y,
                                            bool keep_all) const {
    if (stroke.runs.empty()) {
        return;
    }
    // A canvas of the chain's box with a frame of one empty pixel on every side: 0 outside, 1 for
    // a pixel of the chain, -1 for the start, -2 for a contour pixel already stored.
    const Geobox<int> box = get_bounding_box();
    const int canvas_width = box.width() + 2;
    const int canvas_height = box.height() + 2;
    std::vector<int> canvas(static_cast<std::size_t>(canvas_width) * canvas_height, 0);
    auto cell = [&](int column, int line) -> int& {
        return canvas[static_cast<std::size_t>(line - box.min_y + 1) * canvas_width +
                      (column - box.min_x + 1)];
    };
    for_each_pixel_behind(this, [&](int column, int line) { cell(column, line) = 1; });

    Geocoordinate<int> start;
    get_top_point(start);
    std::vector<Geocoordinate<int>> points;
    points.reserve(10000);
    points.push_back(start);
    cell(start.x, start.y) = -1;

    // Directions clockwise from north: N, NE, E, SE, S, SW, W, NW.
    static const int kStepX[8] = {0, 1, 1, 1, 0, -1, -1, -1};
    static const int kStepY[8] = {-1, -1, 0, 1, 1, 1, 0, -1};
    // After a move in direction d the search for the next pixel starts here.
    static const int kNextSearch[8] = {7, 7, 1, 1, 3, 3, 5, 5};

    int search = 1;
    int first_direction = -1;
    int returns = 0;
    bool closed = false;
    Geocoordinate<int> current = start;
    for (;;) {
        int found = -1;
        for (int tries = 0, direction = search; tries < 8;
             ++tries, direction = (direction + 1) % 8) {
            if (cell(current.x + kStepX[direction], current.y + kStepY[direction]) != 0) {
                found = direction;
                break;
            }
        }
        if (found < 0) {
            break;  // an isolated pixel
        }
        if (cell(current.x, current.y) == -1) {
            if (first_direction < 0) {
                first_direction = found;
            } else if (found == first_direction) {
                closed = true;
                break;
            }
        }
        const Geocoordinate<int> next(current.x + kStepX[found], current.y + kStepY[found]);
        if (cell(next.x, next.y) == -1) {
            ++returns;
            current = points.front();
        } else {
            current = next;
            cell(current.x, current.y) = -2;
            points.push_back(current);
        }
        search = kNextSearch[found];
    }
    if (closed && returns >= 2) {
        points.push_back(points.front());
    }

    for (const Geocoordinate<int>& point : points) {
        if (keep_all || (point.x != 1 && point.y != 1)) {
            x.push_back(point.x);
            y.push_back(point.y);
        }
    }
}

void BinaryConnectedComponent::fore_back_neighbor(const common::Image& binary,
                                                  const common::Image& mask,
                                                  const common::Image& grey, int window,
                                                  BlobNeighborForeBack& out) const {
    const int height = binary.get_height();
    const int width = binary.get_width();
    const int stride = binary.get_row_stride();
    const int half = window / 2;
    long long all_sum = 0;
    long long interior_sum = 0;
    long long background_sum = 0;
    long long all_count = 0;
    long long interior_count = 0;
    long long background_count = 0;
    for (const BinaryConnectedComponent* element = this; element != nullptr;
         element = element->next_element) {
        for (const BinaryStroke::RunAtLine& entry : element->stroke.runs) {
            unsigned char* binary_row = binary.get_row(entry.line);
            unsigned char* mask_row = mask.get_row(entry.line);
            unsigned char* grey_row = grey.get_row(entry.line);
            for (int x = entry.run->first_x; x <= entry.run->last_x; ++x) {
                const int value = grey_row[x];
                all_sum += value;
                ++all_count;
                if (BinaryImageOperator::in_the_blob_contour(binary_row, x, entry.line, height,
                                                             width, stride)) {
                    const int background = BinaryImageOperator::calculate_background_average(
                        mask_row, grey_row, x, entry.line, height, width, stride, half);
                    if (background != -1) {
                        background_sum += background;
                        ++background_count;
                    }
                } else {
                    interior_sum += value;
                    ++interior_count;
                }
            }
        }
    }
    out.foreground_average =
        static_cast<int>(interior_count != 0 ? interior_sum / interior_count : interior_sum);
    out.blob_average = static_cast<int>(all_count != 0 ? all_sum / all_count : all_sum);
    out.background_average = static_cast<int>(
        background_count != 0 ? background_sum / background_count : background_sum);
}

// The squares are integers; their sums are held in doubles, which add integers exactly, so that
// the products with the pixel count below cannot overflow and the quotients are not truncated.
// A pixel without any causal (or anticausal) neighbour, such as the top left (or bottom right)
// pixel of the image, has no prediction and adds nothing.
void BinaryConnectedComponent::compression_cost(const common::Image& binary,
                                                const common::Image& mask,
                                                const common::Image& grey, int window,
                                                const BlobNeighborForeBack& averages,
                                                BlobNeighborCost& cost) const {
    const int height = binary.get_height();
    const int width = binary.get_width();
    const int stride = binary.get_row_stride();
    const int grey_width = grey.get_width();
    const int half = window / 2;
    double blob_sum = 0.0;
    double interior_sum = 0.0;
    double contour_sum = 0.0;
    long long pixel_count = 0;
    long long interior_count = 0;
    long long contour_count = 0;
    for (const BinaryConnectedComponent* element = this; element != nullptr;
         element = element->next_element) {
        for (const BinaryStroke::RunAtLine& entry : element->stroke.runs) {
            const int y = entry.line;
            unsigned char* binary_row = binary.get_row(y);
            unsigned char* mask_row = mask.get_row(y);
            unsigned char* grey_row = grey.get_row(y);
            for (int x = entry.run->first_x; x <= entry.run->last_x; ++x) {
                const int g = grey_row[x];
                ++pixel_count;
                const int blob_difference = g - averages.blob_average;
                blob_sum += blob_difference * blob_difference;

                if (BinaryImageOperator::in_the_blob_contour(binary_row, x, y, height, width,
                                                             stride)) {
                    const int background = BinaryImageOperator::calculate_background_average(
                        mask_row, grey_row, x, y, height, width, stride, half);
                    if (background != -1) {
                        const int difference = background - averages.background_average;
                        contour_sum += difference * difference;
                        ++contour_count;
                    }
                } else {
                    const int difference = g - averages.foreground_average;
                    interior_sum += difference * difference;
                    ++interior_count;
                }

                // Causal prediction. The upper neighbours are read one binary stride back in the
                // grey row, not one grey row up.
                int sum = 0;
                int count = 0;
                if (x > 0) {
                    sum += grey_row[x - 1];
                    ++count;
                }
                if (y > 0) {
                    sum += grey_row[x - stride];
                    ++count;
                }
                if (x > 0 && y > 0) {
                    sum += grey_row[x - stride - 1];
                    ++count;
                }
                if (count != 0) {
                    const int error = sum / count - g;
                    cost.neighbor_cost += error * error;
                }

                // Anticausal prediction from the right, lower and lower right neighbours.
                sum = 0;
                count = 0;
                const unsigned char* lower_row = grey_row + grey_width;
                if (x < width - 1) {
                    sum += grey_row[x + 1];
                    ++count;
                }
                if (y < height - 1) {
                    sum += lower_row[x];
                    ++count;
                }
                if (x < width - 1 && y < height - 1) {
                    sum += lower_row[x + 1];
                    ++count;
                }
                if (count != 0) {
                    const int error = sum / count - g;
                    cost.neighbor_cost += error * error;
                }
            }
        }
    }
    const double n = static_cast<double>(pixel_count);
    if (interior_count > 4) {
        cost.foreground_cost = n * interior_sum / static_cast<double>(interior_count);
    } else if (interior_count >= 1) {
        cost.foreground_cost = interior_sum * 0.5;
    } else {
        cost.foreground_cost = blob_sum * 0.25;
    }
    cost.contour_count = static_cast<double>(contour_count);
    if (contour_count >= 1) {
        cost.background_cost = n * contour_sum / static_cast<double>(contour_count);
    }
}

}  // namespace geometric
