#ifndef QUORIMP_GEOMETRIC_BINARIZATION_IMAGE_H
#define QUORIMP_GEOMETRIC_BINARIZATION_IMAGE_H

#include <cstddef>
#include <cstdlib>
#include <new>

namespace geometric {

// A plain per-pixel map (a mean, a deviation, a threshold per pixel), rows packed, distinct from
// the raster images of `common`. Its storage is zero-filled and freed by the map when it owns it.
template <typename T>
class Image {
public:
    Image()
        : owns_data(false), data(nullptr), width(0), height(0), window_width(0), window_height(0) {}

    Image(int width, int height, int window_width = 0, int window_height = 0)
        : owns_data(false),
          data(nullptr),
          width(0),
          height(0),
          window_width(window_width),
          window_height(window_height) {
        allocate(width, height);
    }

    ~Image() { release(); }

    Image(const Image&) = delete;
    Image& operator=(const Image&) = delete;

    // Replaces the storage by a zero-filled one of the given size. Throws std::bad_alloc.
    void allocate(int new_width, int new_height) {
        release();
        const std::size_t count =
            new_width > 0 && new_height > 0 ? static_cast<std::size_t>(new_width) * new_height : 0;
        if (count != 0) {
            data = static_cast<T*>(std::calloc(count, sizeof(T)));
            if (data == nullptr) {
                throw std::bad_alloc();
            }
            owns_data = true;
        }
        width = new_width;
        height = new_height;
    }

    T* row(int y) const { return data + static_cast<std::size_t>(width) * y; }
    T& at(int x, int y) const { return row(y)[x]; }

    bool owns_data;
    T* data;
    int width;
    int height;
    int window_width;
    int window_height;

private:
    void release() {
        if (owns_data) {
            std::free(data);
        }
        data = nullptr;
        owns_data = false;
    }
};

}  // namespace geometric

#endif
