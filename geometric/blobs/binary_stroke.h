#ifndef QUORIMP_GEOMETRIC_BLOBS_BINARY_STROKE_H
#define QUORIMP_GEOMETRIC_BLOBS_BINARY_STROKE_H

#include <vector>

#include "geometric/blobs/binary_run.h"
#include "geometric/blobs/run_list_allocator.h"
#include "geometric/blobs/run_list_arena.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// A vertically connected piece of a component: the runs of consecutive lines that grew it, its
// pixel count and its box. The box starts as the library's empty box.
class QUORIMP_EXPORT BinaryStroke {
public:
    // One run of the stroke and the line it lies on. The run belongs to a `RunsInImage`.
    struct RunAtLine {
        const BinaryRun* run;
        int line;
    };
    using RunList = std::vector<RunAtLine, RunListAllocator<RunAtLine>>;

    BinaryStroke() = default;
    // A stroke whose run list takes its storage from `arena`, which must outlive the list.
    explicit BinaryStroke(RunListArena* arena) : runs(RunListAllocator<RunAtLine>(arena)) {}

    // Starts the stroke with `run` on `line`; the run is remembered when `keep_run` is set.
    void init(const BinaryRun* run, int line, bool keep_run) {
        min_x = run->first_x;
        max_x = run->last_x;
        min_y = line;
        max_y = line;
        pixel_count = static_cast<unsigned int>(run->size());
        if (keep_run) {
            runs.push_back({run, line});
        }
    }

    // Grows the stroke by `run` on `line`, the stroke's new last line.
    void update(const BinaryRun* run, int line, bool keep_run) {
        max_y = line;
        if (run->first_x < min_x) {
            min_x = run->first_x;
        }
        if (run->last_x > max_x) {
            max_x = run->last_x;
        }
        pixel_count += static_cast<unsigned int>(run->size());
        if (keep_run) {
            runs.push_back({run, line});
        }
    }

    unsigned int pixel_count = 0;
    RunList runs;  // in the order of growth; empty unless the runs were kept
    int max_x = -1000;
    int max_y = -1000;
    int min_x = 100000;
    int min_y = 100000;
};

}  // namespace geometric

#endif
