#ifndef QUORIMP_GEOMETRIC_BLOBS_BINARY_CONNECTED_COMPONENT_H
#define QUORIMP_GEOMETRIC_BLOBS_BINARY_CONNECTED_COMPONENT_H

#include <vector>

#include "common/basic_image.h"
#include "common/image.h"
#include "geometric/blobs/binary_stroke.h"
#include "geometric/blobs/run_list_arena.h"
#include "geometric/primitives/geobox.h"
#include "geometric/primitives/geocoordinate.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// One element of a component: a stroke, linked into the doubly linked chain of strokes that makes
// up its component. The element with no previous element is the head, and the chain of a head is
// exactly one component. Elements live in the pool of their calculator and never move, so the
// links, and the run pointers of the strokes, stay valid as long as the calculator lives.
//
// Pixel counts, boxes and runs belong to a stroke; a component's values are found by walking its
// chain. Operations described as "this element and all elements behind it" walk from this element
// towards the tail, so called on a head they cover the whole component.
class QUORIMP_EXPORT BinaryConnectedComponent {
public:
    struct BlobNeighborForeBack {
        int foreground_average;  // mean grey of the interior pixels
        int blob_average;        // mean grey of all pixels
        int background_average;  // mean of the local background estimates at the contour
    };

    struct BlobNeighborCost {
        double neighbor_cost;    // accumulated; the caller sets it to 0 first
        double foreground_cost;  // coding the component as foreground
        double background_cost;  // coding its contour as background; kept without an estimate
        double contour_count;    // contour pixels with a background estimate
    };

    BinaryConnectedComponent() = default;
    // An element whose stroke keeps its runs in `arena`, which must outlive the element.
    explicit BinaryConnectedComponent(RunListArena* arena) : stroke(arena) {}

    bool is_top_level() const { return previous_element == nullptr; }

    // The head and the tail of the chain. The caches are followed where set; every element passed
    // on the way remembers the answer, so the walks of later calls are short.
    BinaryConnectedComponent* get_first_element();
    BinaryConnectedComponent* get_last_element();

    // True when both elements belong to the same chain.
    bool operator==(BinaryConnectedComponent& other);

    // Appends the chain of `other` behind the tail of this chain; the head of this chain stays the
    // head. The two chains must be different.
    void merge(BinaryConnectedComponent& other);

    // Pixels of the whole chain, whichever element it is called on.
    unsigned int count_pixel() const;

    // This element and the elements behind it; from a head, the number of strokes.
    int count_stroke() const;

    // The box of the whole chain, whichever element it is called on.
    Geobox<int> get_bounding_box() const;

    // Appends the pixels of this element and all elements behind it, stroke by stroke, run by
    // run, left to right.
    void get_element_coordinates(std::vector<int>& x, std::vector<int>& y) const;

    // The first run of the stroke with the smallest first line among this element and the
    // elements behind it, as (first column, line); among equal lines the earlier element wins.
    // A stroke without kept runs leaves `point` alone.
    void get_top_point(Geocoordinate<int>& point) const;

    // Sets, or clears, the pixels of this element and all elements behind it in a binary image.
    void draw_blob_image(common::BasicImage& image) const;
    void undraw_blob_image(common::BasicImage& image) const;

    // Paints this element and all elements behind it into a grey image magnified `scale` times:
    // every pixel becomes a square of `scale` by `scale` bytes of `value`.
    void draw_blob_image(common::BasicImage& image, int value, int scale) const;

    // True when `image` has a set pixel under any run of this element or the elements behind it.
    bool is_thick_blob(const common::Image& image) const;

    // The outer contour by an eight-neighbour walk, clockwise from the top point, over this
    // element and the elements behind it. With `keep_all` false the points whose x or y equals 1
    // are left out: they are taken to lie on the frame of a page.
    void get_boundary(std::vector<int>& x, std::vector<int>& y, bool keep_all) const;

    // Mean grey values of the interior, of all pixels and of the local background at the contour.
    // `mask` defines background for the estimate; `window` is the side of the sampled square.
    void fore_back_neighbor(const common::Image& binary, const common::Image& mask,
                            const common::Image& grey, int window, BlobNeighborForeBack& out) const;

    // The costs of coding the component as foreground, its contour as background, and of
    // predicting each pixel from its causal and anticausal neighbours.
    void compression_cost(const common::Image& binary, const common::Image& mask,
                          const common::Image& grey, int window,
                          const BlobNeighborForeBack& averages, BlobNeighborCost& cost) const;

    BinaryConnectedComponent* previous_element = nullptr;
    BinaryConnectedComponent* next_element = nullptr;
    BinaryConnectedComponent* last_element_cache = nullptr;   // a hint; may be stale
    BinaryConnectedComponent* first_element_cache = nullptr;  // a hint; may be stale
    BinaryStroke stroke;
};

}  // namespace geometric

#endif
