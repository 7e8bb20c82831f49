#include "geometric/blobs/connected_component_calculator.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace geometric {

ConnectedComponentCalculator::ConnectedComponentCalculator()
    : keep_runs(true),
      eight_connected(true),
      adjacency_margin(1),
      run_list_arena(new RunListArena()) {}

// The copied strokes keep their runs on the heap; new strokes of the copy go to its own arena.
ConnectedComponentCalculator::ConnectedComponentCalculator(
    const ConnectedComponentCalculator& other)
    : keep_runs(other.keep_runs),
      eight_connected(other.eight_connected),
      pool(other.pool),
      runs_in_image(other.runs_in_image),
      adjacency_margin(other.adjacency_margin),
      earlier_runs(other.earlier_runs),
      run_list_arena(new RunListArena()) {}

ConnectedComponentCalculator& ConnectedComponentCalculator::operator=(
    const ConnectedComponentCalculator& other) {
    if (this != &other) {
        keep_runs = other.keep_runs;
        eight_connected = other.eight_connected;
        pool = other.pool;
        runs_in_image = other.runs_in_image;
        adjacency_margin = other.adjacency_margin;
        earlier_runs = other.earlier_runs;
    }
    return *this;
}

// The elements go first: their run lists give their storage back to the arena.
ConnectedComponentCalculator::~ConnectedComponentCalculator() {
    pool.clear();
}

BinaryConnectedComponent* ConnectedComponentCalculator::new_element(const BinaryRun* run,
                                                                    int line) {
    BinaryConnectedComponent* element = pool.allocate(run_list_arena.get());
    element->stroke.init(run, line, keep_runs);
    return element;
}

void ConnectedComponentCalculator::formulate_connected_components(const common::BasicImage& image) {
    const int height = image.get_height();
    const int width = image.get_width();
    adjacency_margin = eight_connected ? 1 : 0;

    // Without kept runs two line lists take turns: the runs of the line above must stay put while
    // the current line is joined to them.
    RunsInLine alternating[2];
    const RunsInLine* runs = nullptr;
    if (keep_runs) {
        if (runs_in_image) {
            earlier_runs.push_back(runs_in_image);
        }
        runs_in_image.reset(new RunsInImage(image));
        if (height <= 0) {
            return;
        }
        runs = &(*runs_in_image)[0];
    } else {
        if (height <= 0) {
            return;
        }
        alternating[0].formulate_runs(image.get_row(0), 0, width);
        runs = &alternating[0];
    }

    std::vector<BeingProcessedStroke> previous;
    std::vector<BeingProcessedStroke> current;
    previous.reserve(64);
    current.reserve(64);
    init_strokes_of_first_line(*runs, current);
    for (int line = 1; line < height; ++line) {
        std::swap(previous, current);
        current.clear();
        if (keep_runs) {
            runs = &(*runs_in_image)[line];
        } else {
            alternating[line & 1].formulate_runs(image.get_row(line), 0, width);
            runs = &alternating[line & 1];
        }
        process_line(*runs, line, previous, current);
    }
}

void ConnectedComponentCalculator::init_strokes_of_first_line(
    const RunsInLine& runs, std::vector<BeingProcessedStroke>& current) {
    for (const BinaryRun& run : runs) {
        current.push_back({new_element(&run, 0), &run});
    }
}

void ConnectedComponentCalculator::process_line(const RunsInLine& runs, int line,
                                                std::vector<BeingProcessedStroke>& previous,
                                                std::vector<BeingProcessedStroke>& current) {
    const int margin = adjacency_margin;
    const std::size_t previous_count = previous.size();
    std::size_t position = 0;  // the walk through `previous` goes on from run to run
    BinaryConnectedComponent* used = nullptr;
    for (const BinaryRun& run : runs) {
        BinaryConnectedComponent* element = nullptr;
        const int limit = run.last_x + margin;
        while (position < previous_count && previous[position].run->last_x + margin < run.first_x) {
            ++position;
        }
        while (position < previous_count) {
            const BeingProcessedStroke& entry = previous[position];
            if (entry.run->first_x > limit) {
                // Not touching; it lies beyond this run and may touch the next one.
                if (entry.run->last_x > run.last_x) {
                    break;
                }
                ++position;
                continue;
            }
            BinaryConnectedComponent* entry_element = entry.element;
            if (element == nullptr) {
                if (entry_element != used) {
                    // The run continues the stroke above.
                    element = entry_element;
                    element->stroke.update(&run, line, keep_runs);
                } else {
                    // The run before has continued this stroke already: the stroke forks, and the
                    // new branch heads the joined chain.
                    element = new_element(&run, line);
                    element->merge(*entry_element);
                }
            } else if (!(*element == *entry_element)) {
                // The run joins two components.
                element->merge(*entry_element);
            }
            if (entry.run->last_x > run.last_x) {
                break;  // it may touch the next run too
            }
            ++position;
        }
        if (element == nullptr) {
            element = new_element(&run, line);
        }
        current.push_back({element, &run});
        used = element;
    }
}

BinaryConnectedComponentIterator ConnectedComponentCalculator::begin() {
    return BinaryConnectedComponentIterator(pool.begin());
}

BinaryConnectedComponentIterator ConnectedComponentCalculator::end() {
    return BinaryConnectedComponentIterator(pool.end());
}

int ConnectedComponentCalculator::size() {
    int count = 0;
    for (auto it = begin(); !it.is_end(); ++it) {
        ++count;
    }
    return count;
}

bool ConnectedComponentCalculator::isemptyblob() const {
    return pool.empty();
}

void ConnectedComponentCalculator::run_pass_if_empty(const common::BasicImage& image) {
    if (pool.empty()) {
        formulate_connected_components(image);
    }
}

boost::shared_ptr<RunsInImage> ConnectedComponentCalculator::obtain_runs_in_image(
    const common::BasicImage& image) {
    run_pass_if_empty(image);
    return runs_in_image;
}

void ConnectedComponentCalculator::calculate_blob_dimensions(const common::BasicImage& image,
                                                             std::vector<int>& heights,
                                                             std::vector<int>& widths) {
    run_pass_if_empty(image);
    for (auto it = begin(); !it.is_end(); ++it) {
        const Geobox<int> box = it->get_bounding_box();
        heights.push_back(box.height());
        widths.push_back(box.width());
    }
}

void ConnectedComponentCalculator::calculate_blob_heights(const common::BasicImage& image,
                                                          std::vector<int>& heights) {
    run_pass_if_empty(image);
    for (auto it = begin(); !it.is_end(); ++it) {
        heights.push_back(it->get_bounding_box().height());
    }
}

void ConnectedComponentCalculator::calculate_blob_widths(const common::BasicImage& image,
                                                         std::vector<int>& widths) {
    run_pass_if_empty(image);
    for (auto it = begin(); !it.is_end(); ++it) {
        widths.push_back(it->get_bounding_box().width());
    }
}

void ConnectedComponentCalculator::write_labels(int* labels, int label_width, int border) {
    int label = 0;
    for (auto it = begin(); !it.is_end(); ++it) {
        ++label;
        for (const BinaryConnectedComponent* element = &*it; element != nullptr;
             element = element->next_element) {
            for (const BinaryStroke::RunAtLine& entry : element->stroke.runs) {
                int* row = labels + static_cast<std::ptrdiff_t>(entry.line + border) * label_width +
                           border;
                std::fill(row + entry.run->first_x, row + entry.run->last_x + 1, label);
            }
        }
    }
}

void ConnectedComponentCalculator::calculate_label_image(const common::BasicImage& image,
                                                         std::vector<int>& labels, int border) {
    const int label_width = image.get_width() + 2 * border;
    const int label_height = image.get_height() + 2 * border;
    labels.resize(static_cast<std::size_t>(label_width) * label_height, 0);
    run_pass_if_empty(image);
    write_labels(labels.data(), label_width, border);
}

void ConnectedComponentCalculator::calculate_label_image(const common::BasicImage& image,
                                                         int* labels, int border) {
    run_pass_if_empty(image);
    write_labels(labels, image.get_width() + 2 * border, border);
}

int ConnectedComponentCalculator::calculate_largest_blob_bounding_box(Geobox<int>& box) {
    auto it = begin();
    if (it.is_end()) {
        return 0;  // no component: the box is left as it was
    }
    Geobox<int> best = it->get_bounding_box();
    int best_area = best.height() * best.width();
    for (; !it.is_end(); ++it) {
        const Geobox<int> candidate = it->get_bounding_box();
        const int area = candidate.height() * candidate.width();
        if (area > best_area) {
            best_area = area;
            best = candidate;
        }
    }
    box = best;
    return best_area;
}

int ConnectedComponentCalculator::calculate_largest_blob_bounding_box(const std::vector<int>& x,
                                                                      const std::vector<int>& y,
                                                                      Geobox<int>& box,
                                                                      std::vector<int>& area_x,
                                                                      std::vector<int>& area_y) {
    if (x.empty() || y.empty()) {
        return 0;
    }
    const auto [min_x, max_x] = std::minmax_element(x.begin(), x.end());
    const auto [min_y, max_y] = std::minmax_element(y.begin(), y.end());
    const int left = *min_x;
    const int top = *min_y;
    const int canvas_width = *max_x - left + 1;
    const int canvas_height = *max_y - top + 1;
    std::vector<unsigned char> canvas(static_cast<std::size_t>(canvas_width) * canvas_height, 0);
    const std::size_t count = std::min(x.size(), y.size());
    for (std::size_t i = 0; i < count; ++i) {
        canvas[static_cast<std::size_t>(y[i] - top) * canvas_width + (x[i] - left)] = 255;
    }
    // Grey runs are the pixels other than 255, so the components are those of the unmarked area.
    common::BasicImage wrapped(canvas.data(), canvas_height, canvas_width, common::IMAGE_TYPE_GREY,
                               300, 300);
    formulate_connected_components(wrapped);

    BinaryConnectedComponent* largest = nullptr;
    unsigned int largest_count = 0;
    for (auto it = begin(); !it.is_end(); ++it) {
        const unsigned int pixels = it->count_pixel();
        if (largest == nullptr || pixels > largest_count) {
            largest = &*it;
            largest_count = pixels;
        }
    }
    if (largest == nullptr) {
        return 0;
    }
    box = largest->get_bounding_box();
    box.min_x += left;
    box.max_x += left;
    box.min_y += top;
    box.max_y += top;
    const std::size_t first = area_x.size();
    largest->get_element_coordinates(area_x, area_y);
    for (std::size_t i = first; i < area_x.size(); ++i) {
        area_x[i] += left;
        area_y[i] += top;
    }
    return static_cast<int>(largest_count);
}

void ConnectedComponentCalculator::create_images_formulated_with_selected_blobs(
    std::vector<int> indices, common::BasicImage& image) {
    std::sort(indices.begin(), indices.end());
    std::size_t next = 0;
    int index = 0;
    for (auto it = begin(); !it.is_end() && next < indices.size(); ++it, ++index) {
        if (indices[next] == index) {
            it->draw_blob_image(image);
            ++next;
        }
    }
}

void ConnectedComponentCalculator::obtain_blob_contours_one_by_one(
    const common::BasicImage& image, std::vector<Geocoordinate<int>>& contours) {
    run_pass_if_empty(image);
    contours.reserve(contours.size() + 100 * static_cast<std::size_t>(size()));
    std::vector<int> x;
    std::vector<int> y;
    for (auto it = begin(); !it.is_end(); ++it) {
        x.clear();
        y.clear();
        it->get_boundary(x, y, true);
        for (std::size_t i = 0; i < x.size(); ++i) {
            contours.emplace_back(x[i], y[i]);
        }
    }
}

void ConnectedComponentCalculator::obtain_blob_top_points(const common::BasicImage& image,
                                                          std::vector<Geocoordinate<int>>& points) {
    run_pass_if_empty(image);
    for (auto it = begin(); !it.is_end(); ++it) {
        Geocoordinate<int> point;
        it->get_top_point(point);
        points.push_back(point);
    }
}

}  // namespace geometric
