#ifndef QUORIMP_GEOMETRIC_PRIMITIVES_LINE_WEIGHTOR_H
#define QUORIMP_GEOMETRIC_PRIMITIVES_LINE_WEIGHTOR_H

namespace geometric {

// What a fitted line is worth: how tightly and how many points support it, and where it lies.
class LineWeightor {
public:
    LineWeightor() : deviation(0.0), point_count(0), angle(0.0f), mean_y(0.0f) {}

    // Sample standard deviation of the points' absolute distances from the line.
    double deviation;
    int point_count;
    float angle;
    float mean_y;
};

}  // namespace geometric

#endif
