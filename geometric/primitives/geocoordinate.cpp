#include "geometric/primitives/geocoordinate.h"

namespace geometric {

bool operator==(const std::vector<Geocoordinate<float>>& first,
                const std::vector<Geocoordinate<float>>& second) {
    if (second.size() < first.size()) {
        return false;
    }
    for (std::size_t i = 0; i < first.size(); ++i) {
        if (!(first[i] == second[i])) {
            return false;
        }
    }
    return true;
}

}  // namespace geometric
