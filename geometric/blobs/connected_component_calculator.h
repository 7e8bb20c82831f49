#ifndef QUORIMP_GEOMETRIC_BLOBS_CONNECTED_COMPONENT_CALCULATOR_H
#define QUORIMP_GEOMETRIC_BLOBS_CONNECTED_COMPONENT_CALCULATOR_H

#include <boost/shared_ptr.hpp>
#include <memory>
#include <vector>

#include "common/basic_image.h"
#include "geometric/blobs/binary_connected_component.h"
#include "geometric/blobs/binary_connected_component_iterator.h"
#include "geometric/blobs/no_delete_pool_allocator.h"
#include "geometric/blobs/run_list_arena.h"
#include "geometric/blobs/runs_in_image.h"
#include "geometric/blobs/runs_in_line.h"
#include "geometric/primitives/geobox.h"
#include "geometric/primitives/geocoordinate.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// Connected components of a binary image, or of the non-white pixels of a grey one, found in a
// single top-to-bottom pass that joins the runs of each line to those of the line above. A
// component is a chain of strokes (see `BinaryConnectedComponent`); no label image is built.
//
// The calculator owns every element and every run its passes made: element pointers and the run
// pointers of the strokes stay valid until the calculator is destroyed, across repeated passes.
//
// The measures that take an image run the pass on it when nothing has been found yet, and
// otherwise answer from what is there without looking at the image.
class QUORIMP_EXPORT ConnectedComponentCalculator {
public:
    // The pass's record of one run of the line just treated and the element it went to.
    struct BeingProcessedStroke {
        BinaryConnectedComponent* element;
        const BinaryRun* run;
    };

    ConnectedComponentCalculator();

    // A copy holds copies of the elements, whose links still point to the elements of the
    // original, and shares the runs.
    ConnectedComponentCalculator(const ConnectedComponentCalculator& other);
    ConnectedComponentCalculator& operator=(const ConnectedComponentCalculator& other);
    ~ConnectedComponentCalculator();

    // The labelling pass. It adds to the pool: a second pass adds its components to the first's.
    void formulate_connected_components(const common::BasicImage& image);

    // The components, head elements in pool order.
    BinaryConnectedComponentIterator begin();
    BinaryConnectedComponentIterator end();

    // The number of components, counted by walking.
    int size();

    // True while no pass has found anything.
    bool isemptyblob() const;

    // The runs of the last pass; empty without `keep_runs`.
    boost::shared_ptr<RunsInImage> obtain_runs_in_image(const common::BasicImage& image);

    // Box height and width of every component, appended in component order.
    void calculate_blob_dimensions(const common::BasicImage& image, std::vector<int>& heights,
                                   std::vector<int>& widths);
    void calculate_blob_heights(const common::BasicImage& image, std::vector<int>& heights);
    void calculate_blob_widths(const common::BasicImage& image, std::vector<int>& widths);

    // The label image, `border` pixels wider on every side than `image`, row by row: component
    // i (from 1, in component order) is written at its pixels. `labels` is resized to the area
    // with new entries 0; entries it held already and that no component covers stay as they were.
    void calculate_label_image(const common::BasicImage& image, std::vector<int>& labels,
                               int border);

    // The same into a caller's array of (width + 2 border) * (height + 2 border) ints, of which
    // only the entries under a component are written.
    void calculate_label_image(const common::BasicImage& image, int* labels, int border);

    // The component with the largest box area, the first of equals; returns that area. Without
    // any component it returns 0 and leaves `box` alone.
    int calculate_largest_blob_bounding_box(Geobox<int>& box);

    // The largest area around the given points: the points are marked white on a grey canvas of
    // their range, the components of its other pixels are found by a pass on this calculator (a
    // fresh one is expected), and the one with most pixels (the first of equals) gives its box and
    // pixels, shifted back to the points' coordinates. Returns its pixel count, or 0 when there is
    // no such area and nothing is written.
    int calculate_largest_blob_bounding_box(const std::vector<int>& x, const std::vector<int>& y,
                                            Geobox<int>& box, std::vector<int>& area_x,
                                            std::vector<int>& area_y);

    // Draws the components at the given positions of the component order into a binary image.
    // The positions are sorted first; a repeated position ends the selection there.
    void create_images_formulated_with_selected_blobs(std::vector<int> indices,
                                                      common::BasicImage& image);

    // The full contour of every component, one after another.
    void obtain_blob_contours_one_by_one(const common::BasicImage& image,
                                         std::vector<Geocoordinate<int>>& contours);

    // The top point of every component.
    void obtain_blob_top_points(const common::BasicImage& image,
                                std::vector<Geocoordinate<int>>& points);

    bool keep_runs;
    bool eight_connected;
    NoDeletePoolAllocator<BinaryConnectedComponent> pool;
    boost::shared_ptr<RunsInImage> runs_in_image;
    int adjacency_margin;

private:
    void run_pass_if_empty(const common::BasicImage& image);
    void init_strokes_of_first_line(const RunsInLine& runs,
                                    std::vector<BeingProcessedStroke>& current);
    void process_line(const RunsInLine& runs, int line, std::vector<BeingProcessedStroke>& previous,
                      std::vector<BeingProcessedStroke>& current);
    BinaryConnectedComponent* new_element(const BinaryRun* run, int line);
    void write_labels(int* labels, int label_width, int border);

    // The runs of earlier passes, which strokes still point into.
    std::vector<boost::shared_ptr<RunsInImage>> earlier_runs;
    // Storage of the run lists of the strokes made here.
    std::unique_ptr<RunListArena> run_list_arena;
};

}  // namespace geometric

#endif
