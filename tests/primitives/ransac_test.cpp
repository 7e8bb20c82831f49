#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <random>
#include <utility>
#include <vector>

#include "geometric/primitives/general_line_param_estimator.h"
#include "geometric/primitives/geoline_adaptive_least_square.h"
#include "geometric/primitives/ransac.h"

namespace {

using geometric::GeneralLineParamEstimator;
using geometric::GeolineAdaptiveLeastSquare;
using Point = geometric::Geocoordinate<double>;
using Ransac = geometric::RANSAC<Point, double>;

std::vector<Point*> pointers(std::vector<Point>& points) {
    std::vector<Point*> out;
    for (Point& point : points) {
        out.push_back(&point);
    }
    return out;
}

// Records the points of every minimal subset it is asked to estimate from.
class RecordingEstimator : public GeneralLineParamEstimator<double> {
public:
    explicit RecordingEstimator(double delta) : GeneralLineParamEstimator<double>(delta) {}
    void estimate(std::vector<Point*>& data, std::vector<double>& parameters) override {
        subsets.push_back({*data[0], *data[1]});
        GeneralLineParamEstimator<double>::estimate(data, parameters);
    }
    std::vector<std::pair<Point, Point>> subsets;
};

TEST(LineEstimator, ExactCoefficientsVerticalLinesAndTheAgreementBand) {
    GeneralLineParamEstimator<double> estimator(2.0);
    EXPECT_EQ(estimator.numForEstimate(), 2u);
    std::vector<double> parameters{9.0};
    std::vector<Point> one{{1.0, 1.0}};
    std::vector<Point*> one_pointer = pointers(one);
    estimator.estimate(one_pointer, parameters);
    EXPECT_TRUE(parameters.empty());

    std::vector<Point> sloped{{0.0, 1.0}, {1.0, 3.0}, {2.0, 5.0}, {3.0, 7.0}};
    std::vector<Point*> sloped_pointers = pointers(sloped);
    estimator.leastSquaresEstimate(sloped_pointers, parameters);
    EXPECT_EQ(parameters, (std::vector<double>{2.0, -1.0, 1.0}));
    EXPECT_EQ(estimator.line[0].a, 2.0);

    std::vector<Point> vertical{{3.0, 0.0}, {3.0, 5.0}};
    std::vector<Point*> vertical_pointers = pointers(vertical);
    estimator.estimate(vertical_pointers, parameters);
    EXPECT_EQ(parameters, (std::vector<double>{1.0, 0.0, -3.0}));

    std::vector<double> horizontal{0.0, -1.0, 0.0};
    Point on_edge(5.0, 2.0);
    Point inside(5.0, -1.99);
    EXPECT_FALSE(estimator.agree(horizontal, on_edge));  // strictly closer than delta
    EXPECT_TRUE(estimator.agree(horizontal, inside));
}

TEST(Ransac, BinomialCoefficientSaturates) {
    EXPECT_EQ(Ransac::choose(100, 2), 4950u);
    EXPECT_EQ(Ransac::choose(7, 7), 1u);
    EXPECT_EQ(Ransac::choose(10, 3), 120u);
    EXPECT_EQ(Ransac::choose(200, 100), 4294967295u);
    EXPECT_EQ(Ransac::choose(3, 5), 0u);
}

TEST(Ransac, BadInputLeavesParametersAlone) {
    GeneralLineParamEstimator<double> estimator(1.0);
    std::vector<Point> data{{0, 0}, {1, 1}, {2, 2}};
    std::vector<double> parameters{4.0};
    std::vector<int> consensus{7};
    EXPECT_EQ(Ransac::compute(parameters, &estimator, data, 1.0, consensus, false, {}), 0.0);
    EXPECT_EQ(parameters, std::vector<double>{4.0});
    EXPECT_TRUE(consensus.empty());
    std::vector<Point> single{{0, 0}};
    EXPECT_EQ(Ransac::compute(parameters, &estimator, single, 0.9, consensus, false, {}), 0.0);
}

TEST(Ransac, TwoPointsMakeOneSubset) {
    RecordingEstimator estimator(0.5);
    std::vector<Point> data{{1, 1}, {4, 7}};
    std::vector<double> parameters;
    std::vector<int> consensus;
    EXPECT_EQ(Ransac::compute(parameters, &estimator, data, 0.99, consensus, false, {}), 1.0);
    EXPECT_EQ(estimator.subsets.size(), 1u);
    EXPECT_EQ(consensus, (std::vector<int>{0, 1}));
    EXPECT_EQ(parameters, (std::vector<double>{2.0, -1.0, -1.0}));
}

// Points on y = 0.5 x + 3 with a few far outliers mixed in.
std::vector<Point> line_with_outliers(std::vector<int>& inliers) {
    std::mt19937 generator(17);
    std::uniform_real_distribution<double> noise(-0.2, 0.2);
    std::uniform_real_distribution<double> anywhere(-50.0, 50.0);
    std::vector<Point> data;
    for (int i = 0; i < 30; ++i) {
        if (i % 6 == 4) {
            data.emplace_back(anywhere(generator), 40.0 + anywhere(generator));
        } else {
            const double x = i * 1.5;
            data.emplace_back(x, 0.5 * x + 3.0 + noise(generator));
            inliers.push_back(i);
        }
    }
    return data;
}

TEST(Ransac, FindsTheLineAmongOutliersAndRepeatsItself) {
    std::vector<int> inliers;
    std::vector<Point> data = line_with_outliers(inliers);
    GeneralLineParamEstimator<double> estimator(1.0);
    std::vector<double> parameters;
    std::vector<int> consensus;
    const double fraction =
        Ransac::compute(parameters, &estimator, data, 0.99, consensus, false, {});
    EXPECT_EQ(consensus, inliers);
    EXPECT_DOUBLE_EQ(fraction, 25.0 / 30.0);

    // The refined line is the plain least squares fit of the inliers.
    std::vector<Point> kept;
    for (int index : inliers) {
        kept.push_back(data[static_cast<std::size_t>(index)]);
    }
    std::vector<Point*> kept_pointers = pointers(kept);
    std::vector<double> expected;
    GeneralLineParamEstimator<double>(1.0).leastSquaresEstimate(kept_pointers, expected);
    EXPECT_EQ(parameters, expected);
    EXPECT_NEAR(parameters[0], 0.5, 0.02);
    EXPECT_NEAR(parameters[2], 3.0, 0.3);

    std::vector<double> again;
    std::vector<int> again_consensus;
    Ransac::compute(again, &estimator, data, 0.99, again_consensus, false, {});
    EXPECT_EQ(again, parameters);
    EXPECT_EQ(again_consensus, consensus);
}

TEST(Ransac, SeedPairsComeFirstThenTheGeneratorFromZero) {
    std::vector<int> inliers;
    std::vector<Point> data = line_with_outliers(inliers);
    const std::vector<std::pair<int, int>> seeds{{4, 10}, {16, 3}, {22, 28}};
    RecordingEstimator estimator(1.0);
    std::vector<double> parameters;
    std::vector<int> consensus;
    Ransac::compute(parameters, &estimator, data, 0.99, consensus, true, seeds);
    ASSERT_GE(estimator.subsets.size(), 4u);
    for (std::size_t i = 0; i < seeds.size(); ++i) {
        EXPECT_EQ(estimator.subsets[i].first, data[static_cast<std::size_t>(seeds[i].first)]);
        EXPECT_EQ(estimator.subsets[i].second, data[static_cast<std::size_t>(seeds[i].second)]);
    }

    // The first drawn pair, worked out from the generator: state 12345 gives draw 0, the next
    // state gives the second draw among the points not yet taken.
    RecordingEstimator plain(1.0);
    Ransac::compute(parameters, &plain, data, 0.99, consensus, false, {});
    std::uint64_t state = 12345;
    state = state * 1103515245u + 12345u;
    const int second =
        ((static_cast<std::int32_t>(static_cast<std::uint32_t>(state)) >> 16) & 0x7fff) % 30;
    EXPECT_EQ(plain.subsets[0].first, data[0]);
    EXPECT_EQ(plain.subsets[0].second, data[static_cast<std::size_t>(second + 1)]);
}

TEST(AdaptiveLine, WeightedFitFastExpAndReweighting) {
    GeolineAdaptiveLeastSquare line;
    std::vector<Point> points{{0, 0}, {1, 1}, {2, 4}};
    std::vector<double> weights{1.0, 1.0, 2.0};
    line.fit_weighted(points, weights);
    EXPECT_EQ(weights, (std::vector<double>{0.25, 0.25, 0.5}));
    // mx 1.25, my 2.25, mxx 2.25, mxy 4.25
    EXPECT_DOUBLE_EQ(line.a, 1.4375 / 0.6875);
    EXPECT_EQ(line.b, -1.0);
    EXPECT_DOUBLE_EQ(line.c, 2.25 - line.a * 1.25);

    EXPECT_LT(GeolineAdaptiveLeastSquare::fast_exp(0.0), 1.0);
    EXPECT_GT(GeolineAdaptiveLeastSquare::fast_exp(0.0), 0.96);
    EXPECT_NEAR(GeolineAdaptiveLeastSquare::fast_exp(-1.0), std::exp(-1.0), 0.03);
    EXPECT_EQ(GeolineAdaptiveLeastSquare::fast_exp(-100.5), 0.0);

    // A perfect fit stays as it is.
    std::vector<geometric::Geocoordinate<float>> exact;
    for (int x = 0; x < 10; ++x) {
        exact.emplace_back(static_cast<float>(x), static_cast<float>(3 * x - 2));
    }
    line.fit_adaptive(exact, true, 0.01);
    EXPECT_EQ(line.a, 3.0);
    EXPECT_EQ(line.c, -2.0);

    // One far outlier drags the plain fit; reweighting pulls the slope back towards the truth.
    std::vector<Point> dragged;
    for (int x = 0; x < 20; ++x) {
        dragged.emplace_back(x, 2.0 * x + 1.0 + ((x % 2) ? 0.1 : -0.1));
    }
    dragged.emplace_back(19.0, 80.0);
    std::vector<Point*> dragged_pointers = pointers(dragged);
    std::vector<double> plain;
    GeneralLineParamEstimator<double>(1.0).leastSquaresEstimate(dragged_pointers, plain);
    line.fit_adaptive(dragged, true, 0.01);
    EXPECT_GT(line.a, 2.0);
    EXPECT_LT(line.a - 2.0, 0.6 * (plain[0] - 2.0));

    std::vector<Point> vertical{{4, 0}, {4, 3}, {4, 9}};
    line.fit_adaptive(vertical, true, 0.01);
    EXPECT_EQ(line.a, 1.0);
    EXPECT_EQ(line.b, 0.0);
    EXPECT_EQ(line.c, -4.0);
}

}  // namespace
