#include "geometric/blobs/runs_in_line.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace geometric {

namespace {

// Bit positions count from the most significant bit of a byte, which is position 0.
struct RunTables {
    unsigned char from_position[9];    // bits from position i to the end of the byte
    unsigned char before_position[9];  // bits before position i
    signed char first_set[256];        // position of the first set bit, -1 for 0
    signed char first_clear[256];      // position of the first clear bit, -1 for 255
};

constexpr RunTables make_run_tables() {
    RunTables tables{};
    for (int i = 0; i <= 8; ++i) {
        tables.from_position[i] = static_cast<unsigned char>(0xFFu >> i);
        tables.before_position[i] = static_cast<unsigned char>(~(0xFFu >> i));
    }
    for (int value = 0; value < 256; ++value) {
        tables.first_set[value] = -1;
        tables.first_clear[value] = -1;
        for (int position = 7; position >= 0; --position) {
            if ((value >> (7 - position)) & 1) {
                tables.first_set[value] = static_cast<signed char>(position);
            } else {
                tables.first_clear[value] = static_cast<signed char>(position);
            }
        }
    }
    return tables;
}

constexpr RunTables kRunTables = make_run_tables();

inline bool four_clear_bytes(const unsigned char* bytes) {
    std::uint32_t word;
    std::memcpy(&word, bytes, sizeof word);
    return word == 0;
}

}  // namespace

void RunsInLine::formulate_runs(const unsigned char* line, int start, int width) {
    clear();
    const unsigned char* byte = line + (start >> 3);
    int position = start & 7;  // of the current bit inside *byte
    int x = 0;                 // column of the current bit
    while (x < width) {
        // No run is open: skip clear words while a whole word remains, then clear bytes.
        if (position == 0) {
            while (width - x >= 32 && four_clear_bytes(byte)) {
                byte += 4;
                x += 32;
            }
            if (x >= width) {
                break;
            }
        }
        const int first_set = kRunTables.first_set[*byte & kRunTables.from_position[position]];
        if (first_set < 0) {
            x += 8 - position;
            ++byte;
            position = 0;
            continue;
        }
        x += first_set - position;
        position = first_set;
        if (x >= width) {
            break;
        }
        const int run_first = x;
        // A run is open: it ends at the first clear bit, or at the end of the line.
        for (;;) {
            const int first_clear =
                kRunTables.first_clear[*byte | kRunTables.before_position[position]];
            if (first_clear >= 0) {
                x += first_clear - position;
                position = first_clear;
                break;
            }
            x += 8 - position;
            ++byte;
            position = 0;
            if (x >= width) {
                break;
            }
        }
        emplace_back(run_first, std::min(x, width) - 1);
    }
}

void RunsInLine::formulate_gray_runs(const unsigned char* line, int start, int width) {
    clear();
    const unsigned char* pixels = line + start;
    bool open = false;
    int run_first = 0;
    for (int x = 0; x < width; ++x) {
        if (pixels[x] != 255) {
            if (!open) {
                open = true;
                run_first = x;
            }
        } else if (open) {
            emplace_back(run_first, x - 1);
            open = false;
        }
    }
    if (open && pixels[width - 1] != 255) {
        emplace_back(run_first, width - 1);
    }
}

}  // namespace geometric
