#ifndef QUORIMP_GEOMETRIC_BINARIZATION_SAUVOLA_PARA_H
#define QUORIMP_GEOMETRIC_BINARIZATION_SAUVOLA_PARA_H

namespace geometric {

// Parameters of the streaming Sauvola binarization; callers set single fields directly.
struct SauvolaPara {
    SauvolaPara()
        : smoothing_weight(2),
          use_smoothing(true),
          low_gray(50),
          high_gray(200),
          window_size(35),
          k(0.2f),
          use_wide_ring(true) {}

    int smoothing_weight;  // weight of the centre pixel in the smoothing pre-pass; not negative
    bool use_smoothing;    // run the smoothing pre-pass
    int low_gray;          // a pixel below this is foreground without any test
    int high_gray;         // a pixel above this is background without any test
    int window_size;       // side of the local window in pixels
    float k;               // weight of the local deviation in the threshold
    bool use_wide_ring;    // keep 4 windows of integral rows, with wider margin zones
};

}  // namespace geometric

#endif
