#ifndef QUORIMP_GEOMETRIC_BLOBS_RUNS_IN_IMAGE_H
#define QUORIMP_GEOMETRIC_BLOBS_RUNS_IN_IMAGE_H

#include <vector>

#include "common/image.h"
#include "geometric/blobs/runs_in_line.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// The runs of every line of an image, one entry per line, lines without runs included. A binary
// image gives the runs of its set bits, any other image those of its non-white bytes.
//
// The runs of a line never move once the line is stored, so pointers to them stay valid for the
// life of the object.
class QUORIMP_EXPORT RunsInImage : public std::vector<RunsInLine> {
public:
    explicit RunsInImage(const common::Image& image);
};

}  // namespace geometric

#endif
