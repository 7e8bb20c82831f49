#ifndef QUORIMP_GEOMETRIC_BLOBS_BINARY_RUN_H
#define QUORIMP_GEOMETRIC_BLOBS_BINARY_RUN_H

namespace geometric {

// One horizontal stretch of foreground in a line; both columns inclusive.
class BinaryRun {
public:
    BinaryRun(int first, int last) : first_x(first), last_x(last) {}

    int begin() const { return first_x; }
    int end() const { return last_x + 1; }
    int size() const { return last_x - first_x + 1; }

    int first_x;
    int last_x;
};

}  // namespace geometric

#endif
