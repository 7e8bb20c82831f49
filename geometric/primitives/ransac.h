#ifndef QUORIMP_GEOMETRIC_PRIMITIVES_RANSAC_H
#define QUORIMP_GEOMETRIC_PRIMITIVES_RANSAC_H

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <set>
#include <utility>
#include <vector>

#include "geometric/primitives/parameter_estimator.h"

namespace geometric {

// Robust estimation of a model from data with outliers: minimal subsets are drawn, each gives a
// model, the model with most agreeing points wins and is refined on them. The draws come from a
// private generator that restarts with every call, so equal inputs give equal results.
template <class T, class S>
class RANSAC {
public:
    // Returns the fraction of `data` that agrees with the model written to `parameters`;
    // `consensus` receives the indices of the agreeing points in ascending order. The first
    // subsets tried are `seed_pairs` when `use_seed_pairs` is set (for estimators of two points).
    static double compute(std::vector<S>& parameters, ParameterEstimator<T, S>* estimator,
                          std::vector<T>& data, double desired_probability,
                          std::vector<int>& consensus, bool use_seed_pairs,
                          const std::vector<std::pair<int, int>>& seed_pairs) {
        consensus.clear();
        const unsigned int n = static_cast<unsigned int>(data.size());
        const unsigned int k = estimator->numForEstimate();
        if (n < k || desired_probability >= 1.0 || desired_probability <= 0.0) {
            return 0.0;
        }

        std::vector<unsigned char> best_votes(n, 0);
        std::vector<unsigned char> current_votes(n, 0);
        std::vector<unsigned char> not_chosen(n, 1);
        const double log_probability = std::log(1.0 - desired_probability);
        const unsigned int all_subsets = choose(n, k);
        unsigned int number_of_tries = all_subsets;
        parameters.clear();
        unsigned int best_vote_count = 0;
        bool random_used = false;
        // Subsets already evaluated, as ascending 1-based positions, compared element by element.
        std::set<std::vector<int>> tried_subsets;
        std::vector<T*> chosen_points;
        // Every draw comes from this state, which starts afresh with each call; the runtime's own
        // generator is neither seeded nor read.
        std::uint64_t state = 0;
        const std::size_t seed_count = seed_pairs.size();

        for (unsigned int i = 0; i < number_of_tries; ++i) {
            std::fill(not_chosen.begin(), not_chosen.end(), 1);
            // Slots left by a point drawn twice stay 0.
            std::vector<int> subset(k, 0);
            chosen_points.clear();
            for (unsigned int j = 0; j < k; ++j) {
                if (use_seed_pairs && i < seed_count) {
                    const int index = j == 0 ? seed_pairs[i].first : seed_pairs[i].second;
                    chosen_points.push_back(&data[static_cast<std::size_t>(index)]);
                    not_chosen[static_cast<std::size_t>(index)] = 0;
                    continue;
                }
                if (use_seed_pairs) {
                    random_used = true;
                }
                const int r = next_draw(state, n);
                // The draw range does not shrink as points are taken: a high draw runs off the
                // end and lands on the last point, taken or not.
                int counted = -1;
                unsigned int m = 0;
                for (; m < n && counted < r; ++m) {
                    if (not_chosen[m]) {
                        ++counted;
                    }
                }
                --m;
                chosen_points.push_back(&data[m]);
                not_chosen[m] = 0;
            }
            unsigned int filled = 0;
            for (unsigned int m = 0; m < n && filled < k; ++m) {
                if (!not_chosen[m]) {
                    subset[filled++] = static_cast<int>(m) + 1;
                }
            }
            if (!tried_subsets.insert(subset).second) {
                continue;
            }

            estimator->estimate(chosen_points, parameters);
            if (parameters.empty()) {
                continue;
            }
            std::fill(current_votes.begin(), current_votes.end(), 0);
            unsigned int votes = 0;
            for (unsigned int m = 0; m < n && n - m + votes > best_vote_count; ++m) {
                if (estimator->agree(parameters, data[m])) {
                    current_votes[m] = 1;
                    ++votes;
                }
            }
            if (votes > best_vote_count) {
                best_vote_count = votes;
                best_votes = current_votes;
                if (votes == n) {
                    break;
                }
                const double w = static_cast<double>(votes) / static_cast<double>(n);
                double new_tries = std::trunc(
                    log_probability / std::log(1.0 - std::pow(w, static_cast<double>(k))) + 0.5);
                if (random_used) {
                    new_tries += static_cast<double>(seed_count);
                }
                // A vanishing agreement gives no finite count: all subsets stay allowed.
                if (new_tries >= 0.0 && new_tries < static_cast<double>(all_subsets)) {
                    number_of_tries = static_cast<unsigned int>(new_tries);
                } else {
                    number_of_tries = all_subsets;
                }
            }
        }

        if (best_vote_count > 0) {
            chosen_points.clear();
            for (unsigned int m = 0; m < n; ++m) {
                if (best_votes[m]) {
                    consensus.push_back(static_cast<int>(m));
                    chosen_points.push_back(&data[m]);
                }
            }
            estimator->leastSquaresEstimate(chosen_points, parameters);
        }
        return static_cast<double>(best_vote_count) / static_cast<double>(n);
    }

    // The binomial coefficient, saturated at the largest unsigned value; 0 when k exceeds n.
    static unsigned int choose(unsigned int n, unsigned int k) {
        if (k > n) {
            return 0;
        }
        double numerator = 1.0;
        double denominator = 1.0;
        for (unsigned int i = std::max(n - k, k) + 1; i <= n && i != 0; ++i) {
            numerator *= static_cast<double>(i);
        }
        for (unsigned int i = 2; i <= std::min(n - k, k); ++i) {
            denominator *= static_cast<double>(i);
        }
        const double largest = 1.7976931348623157e308;
        if (numerator > largest || denominator > largest) {
            return 4294967295u;
        }
        const double quotient = numerator / denominator;
        if (quotient > 4294967295.0) {
            return 4294967295u;
        }
        return static_cast<unsigned int>(quotient);
    }

private:
    // A linear congruential step on a 64-bit state; the draw is bits 16 to 30 of its low word,
    // reduced to 0 .. n - 1.
    static int next_draw(std::uint64_t& state, unsigned int n) {
        state = state * 1103515245u + 12345u;
        const std::int32_t low = static_cast<std::int32_t>(static_cast<std::uint32_t>(state));
        return static_cast<int>(((low >> 16) & 0x7fff) % static_cast<std::int32_t>(n));
    }
};

}  // namespace geometric

#endif
