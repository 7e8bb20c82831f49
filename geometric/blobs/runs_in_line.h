#ifndef QUORIMP_GEOMETRIC_BLOBS_RUNS_IN_LINE_H
#define QUORIMP_GEOMETRIC_BLOBS_RUNS_IN_LINE_H

#include <vector>

#include "geometric/blobs/binary_run.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// The runs of one image line in ascending column order. `clear()` keeps the storage, so one list
// can be refilled line after line without allocating.
class QUORIMP_EXPORT RunsInLine : public std::vector<BinaryRun> {
public:
    RunsInLine() { reserve(10); }

    // The runs of set bits of a packed binary line, most significant bit first. Bit number
    // `start` of `line` is column 0 and `width` bits are covered; a run that reaches the end
    // closes at column width - 1, and bits beyond `width` are never reported.
    void formulate_runs(const unsigned char* line, int start, int width);

    // The runs of a grey line, one byte per pixel from byte `start`: every pixel other than pure
    // white (255) is foreground.
    void formulate_gray_runs(const unsigned char* line, int start, int width);
};

}  // namespace geometric

#endif
