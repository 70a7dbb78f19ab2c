// The similarity transformation of a local grid, fitted to control points.
#include "fit/similarity.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <vector>

#include "fit/convex_hull.h"

namespace latigo::fit {
namespace {

constexpr double Degree = std::numbers::pi / 180;

TEST(FitSimilarity, WorkedValuesOfTheLibrarysDocument) {
  const double x[] = {1376.0254037844386, 1376.0254037844386, -1376.0254037844386, -1376.0254037844386};
  const double y[] = {386.02540378443877, -386.02540378443877, 386.02540378443877, -386.02540378443877};
  for (int flags = 0; flags < 4; ++flags) {
    const Similarity s{1000, 2000, 30, 2, 10, 20, (flags & 2) != 0, (flags & 1) != 0};
    double mappedX = 1500;
    double mappedY = 2500;
    s.Map(mappedX, mappedY);
    EXPECT_NEAR(mappedX, x[flags], 1e-12);
    EXPECT_NEAR(mappedY, y[flags], 1e-12);
  }
}

// Ghilani and Wolf, "Adjustment Computations", example 18.1: digitised points to a plane grid, X = a x - b y + Tx and
// Y = b x + a y + Ty.
TEST(FitSimilarity, TextbookTwoDimensionalHelmertTransformation) {
  const std::vector<PlanePair> pairs = {{121.622, -128.066, 1049422.40, 51089.20},
                                        {141.228, 187.718, 1049413.95, 49659.30},
                                        {175.802, 135.728, 1049244.95, 49884.95}};
  const SimilarityFit fit = FitSimilarity(pairs, {});
  ASSERT_EQ(fit.refused, nullptr);
  const double a = fit.similarity.scale * std::cos(fit.similarity.rotation * Degree);
  const double b = -fit.similarity.scale * std::sin(fit.similarity.rotation * Degree);
  // Half a turn: both axes are reversed rather than that.
  EXPECT_TRUE(fit.similarity.reverseX && fit.similarity.reverseY);
  EXPECT_NEAR(-a, -4.51249, 5e-6);
  EXPECT_NEAR(-b, -0.25371, 5e-6);
  EXPECT_NEAR(fit.scaleDeviation, 0.00058, 5e-6);
  EXPECT_NEAR(fit.rotationDeviation * Degree * fit.similarity.scale, 0.00058, 5e-6);
  EXPECT_EQ(fit.adjusted.redundancy, 2);
  EXPECT_NEAR(fit.adjusted.s0, 0.14, 0.005);
  const double v[] = {0.004, -0.029, 0.101, -0.077, -0.105, 0.106};
  for (int i = 0; i < 6; ++i) { EXPECT_NEAR(fit.adjusted.v(i), v[i], 5e-4) << i; }
  const double others[][4] = {{174.148, -120.262, 1049187.361, 51040.629},
                              {513.520, -192.130, 1047637.713, 51278.829},
                              {754.444, -67.706, 1046582.113, 50656.241},
                              {972.788, 120.994, 1045644.713, 49749.336}};
  for (const auto& [x, y, localX, localY] : others) {
    double mappedX = x;
    double mappedY = y;
    fit.similarity.Map(mappedX, mappedY);
    EXPECT_NEAR(mappedX, localX, 6e-4);
    EXPECT_NEAR(mappedY, localY, 6e-4);
  }
}

// By algebra. At the corners of a square residuals of X of e, -e, e, -e are orthogonal to translation, rotation and
// scale, so the parameters are exact, and the residuals are known. Each corner has the leverage 1/4 + 1/4, so r is 1/2.
struct Square {
  static constexpr double E = 0.01;
  static constexpr double S = 1.0005;  // q = 0.8 S and p = 0.6 S: a rotation by atan(3/4)
  std::vector<PlanePair> pairs;
  explicit Square(double signX = 1, double signY = 1) {
    const double corner[][2] = {{100, 100}, {-100, 100}, {-100, -100}, {100, -100}};
    for (int i = 0; i < 4; ++i) {
      const auto [dx, dy] = corner[i];
      pairs.push_back({400000 + dx, 5600000 + dy, signX * (S * (0.8 * dx + 0.6 * dy) + 1000 + (i % 2 == 0 ? E : -E)),
                       signY * (S * (0.8 * dy - 0.6 * dx) + 2000)});
    }
  }
};

TEST(FitSimilarity, ResidualsRedundancyAndDeviationsOfASquare) {
  SimilarityOptions options;
  options.sigma = Square::E;
  const SimilarityFit fit = FitSimilarity(Square().pairs, options);
  ASSERT_EQ(fit.refused, nullptr);
  EXPECT_EQ(fit.similarity.originX, 400000);
  EXPECT_EQ(fit.similarity.originY, 5600000);
  EXPECT_NEAR(fit.similarity.rotation, std::atan(0.75) / Degree, 1e-10);
  EXPECT_NEAR(fit.similarity.scale, Square::S, 1e-11);
  EXPECT_NEAR(fit.similarity.localX, 1000, 1e-8);
  EXPECT_NEAR(fit.similarity.localY, 2000, 1e-8);
  EXPECT_EQ(fit.adjusted.redundancy, 4);
  EXPECT_NEAR(fit.adjusted.s0, Square::E, 1e-9);
  for (int i = 0; i < 8; ++i) {
    EXPECT_NEAR(fit.adjusted.v(i), i % 2 == 1 ? 0 : i % 4 == 0 ? -Square::E : Square::E, 1e-8);
    EXPECT_NEAR(fit.adjusted.r(i), 0.5, 1e-12);
    EXPECT_NEAR(std::fabs(fit.test.w[static_cast<std::size_t>(i)]), i % 2 == 1 ? 0 : std::numbers::sqrt2, 1e-5);
  }
  EXPECT_FALSE(fit.test.blunder);
  EXPECT_NEAR(fit.pointDeviation, Square::E / 2, 1e-9);
  EXPECT_NEAR(fit.localXDeviation, Square::E / 2, 1e-9);
  EXPECT_NEAR(fit.scaleDeviation, Square::E / std::sqrt(4 * 2e4), 1e-9);
  EXPECT_NEAR(fit.rotationDeviation * Degree * Square::S, Square::E / std::sqrt(4 * 2e4), 1e-9);
  EXPECT_NEAR(fit.spread, std::sqrt(2e4), 1e-9);
}

TEST(FitSimilarity, ReversedAxesAreFound) {
  struct Row {
    double signX, signY;
    double rotation;  // degrees
    bool reverseX, reverseY;
  };
  const double r = std::atan(0.75) / Degree;
  for (const Row& row :
       {Row{1, 1, r, false, false}, {-1, 1, r, true, false}, {1, -1, r, false, true}, {-1, -1, r, true, true}}) {
    const SimilarityFit fit = FitSimilarity(Square(row.signX, row.signY).pairs, {});
    EXPECT_EQ(fit.similarity.reverseX, row.reverseX);
    EXPECT_EQ(fit.similarity.reverseY, row.reverseY);
    EXPECT_NEAR(fit.similarity.rotation, row.rotation, 1e-10);
    EXPECT_TRUE(fit.handKnown);
    EXPECT_NEAR(fit.adjusted.s0, Square::E, 1e-9);
    // Of a mirrored square nothing fits: all of s^2 (dx^2 + dy^2) remains.
    EXPECT_NEAR(fit.otherHand, Square::S * std::sqrt(4 * 2e4 / 4), 0.01);
  }
  // X to the north, Y to the east: mirrored, by a quarter turn.
  std::vector<PlanePair> swapped = Square().pairs;
  for (PlanePair& pair : swapped) { std::swap(pair.localX, pair.localY); }
  const SimilarityFit fit = FitSimilarity(swapped, {});
  EXPECT_NE(fit.similarity.reverseX, fit.similarity.reverseY);
  EXPECT_NEAR(fit.adjusted.s0, Square::E, 1e-9);
}

TEST(FitSimilarity, AFixedScaleRemainsAndItsUnknownToo) {
  SimilarityOptions options;
  options.fixedScale = 1;
  const SimilarityFit fit = FitSimilarity(Square().pairs, options);
  EXPECT_EQ(fit.similarity.scale, 1);
  EXPECT_EQ(fit.scaleDeviation, 0);
  EXPECT_EQ(fit.adjusted.redundancy, 5);
  EXPECT_NEAR(fit.similarity.rotation, std::atan(0.75) / Degree, 1e-10);
  // The residuals of scale, 0.0005 of each distance from the centre, and those of X.
  EXPECT_NEAR(fit.adjusted.s0, std::sqrt((0.0005 * 0.0005 * 8e4 + 4 * Square::E * Square::E) / 5), 1e-8);
}

TEST(FitSimilarity, TwoPointsFitExactlyAndShowNoHandedness) {
  std::vector<PlanePair> pairs = Square().pairs;
  pairs.resize(2);
  const SimilarityFit fit = FitSimilarity(pairs, {});
  ASSERT_EQ(fit.refused, nullptr);
  EXPECT_EQ(fit.adjusted.redundancy, 0);
  EXPECT_EQ(fit.adjusted.s0, 0);
  EXPECT_FALSE(fit.handKnown);
  EXPECT_EQ(fit.otherHand, 0);
  EXPECT_LT(fit.test.largest, 0);
  EXPECT_LT(fit.adjusted.v.cwiseAbs().maxCoeff(), 1e-8);
  // Points on a line neither, though they have redundancy.
  pairs.push_back({(pairs[0].x + pairs[1].x) / 2, pairs[0].y, (pairs[0].localX + pairs[1].localX) / 2,
                   (pairs[0].localY + pairs[1].localY) / 2});
  EXPECT_FALSE(FitSimilarity(pairs, {}).handKnown);
  // The axes that the caller knows are kept.
  SimilarityOptions options;
  options.reversed = Reversed::X;
  EXPECT_TRUE(FitSimilarity(pairs, options).similarity.reverseX);
  EXPECT_LT(FitSimilarity(pairs, options).adjusted.v.cwiseAbs().maxCoeff(), 1e-8);
  // With a fixed scale two points have a redundancy of 1, and both hands the same residuals.
  pairs.resize(2);
  options = {1, Reversed::Auto, 0};
  EXPECT_GT(FitSimilarity(pairs, options).adjusted.s0, 0.01);
  EXPECT_NEAR(FitSimilarity(pairs, options).otherHand, FitSimilarity(pairs, options).adjusted.s0, 1e-8);
}

// The corners of a rhombus. Local coordinates stretched by p along its first diagonal and by q along its second have
// standard errors as |p - q| to p + q with the two hands, by algebra.
std::vector<PlanePair> Rhombus(double a, double b, double p, double q) {
  return {{a, 0, p * a, 0}, {-a, 0, -p * a, 0}, {0, b, 0, q * b}, {0, -b, 0, -q * b}};
}

// The tables' percentile of F for 4 and 4 degrees of freedom is 76.1 at 0.05 %, 8.72^2. For 76 and 76 it is 2.15, less
// than three times the error.
TEST(FitSimilarity, TheHandIsKnownFromALimitOfTheErrorsAndAMillimetreOn) {
  EXPECT_TRUE(FitSimilarity(Rhombus(100, 100, 1, 0.796), {}).handKnown);
  EXPECT_FALSE(FitSimilarity(Rhombus(100, 100, 1, 0.793), {}).handKnown);
  for (const double q : {0.55, 0.45}) {
    std::vector<PlanePair> many;
    for (int i = 0; i < 10; ++i) {
      for (const PlanePair& pair : Rhombus(100, 100, 1, q)) { many.push_back(pair); }
    }
    EXPECT_EQ(FitSimilarity(many, {}).handKnown, q > 0.5);
  }
  // In a unit of 2 m the same lengths are twice as long.
  for (const double metres : {1.0, 2.0}) {
    SimilarityOptions options;
    options.metresPerUnit = metres;
    EXPECT_TRUE(FitSimilarity(Rhombus(1.5e-3 / metres, 1.5e-3 / metres, 1, 1), options).handKnown);
    EXPECT_FALSE(FitSimilarity(Rhombus(1e-2 / metres, 5e-4 / metres, 1, 1), options).handKnown);
  }
  // Of a flat one, fitted exactly by one hand, the other leaves squares of 8 b^2: 25 sqrt(2) sigma^2 for b = 2.102 sigma.
  // The weight of a fixed point changes nothing.
  for (const double b : {0.0206, 0.0214}) {
    std::vector<PlanePair> flat = Rhombus(100, b, 1, 1);
    EXPECT_EQ(FitSimilarity(flat, {.fixedScale = {}, .sigma = 0.01}).handKnown, b > 0.021);
    EXPECT_FALSE(FitSimilarity(flat, {.fixedScale = {}, .localRounding = 0.01}).handKnown);
    flat = Rhombus(100, 100, 1, 1);
    flat[0].weight = 1e14;
    EXPECT_TRUE(FitSimilarity(flat, {}).handKnown);
  }
}

TEST(FitSimilarity, BothAxesAreReversedIfTheyAreThenWithin45Degrees) {
  for (const double p : {0.98, 1.0, 1.02}) {
    std::vector<PlanePair> pairs = Rhombus(100, 100, 0, 0);
    for (PlanePair& pair : pairs) {
      pair.localX = p * pair.y - pair.x;
      pair.localY = -p * pair.x - pair.y;
    }
    EXPECT_EQ(FitSimilarity(pairs, {}).similarity.reverseX, p < 1) << p;
    EXPECT_EQ(FitSimilarity(pairs, {}).similarity.reverseY, p < 1) << p;
  }
}

TEST(FitSimilarity, WhatDeterminesNothingIsRefused) {
  const PlanePair one{500000, 5000000, 10, 20};
  PlanePair check{500100, 5000000, 110, 20};
  check.weight = 0;
  EXPECT_STREQ(FitSimilarity({}, {}).refused, "a similarity transformation needs at least two control points");
  EXPECT_STREQ(FitSimilarity({one, check}, {}).refused,
               "a similarity transformation needs at least two control points");
  PlanePair sameGrid = one;
  sameGrid.localX += 100;
  EXPECT_NE(FitSimilarity({one, sameGrid, one}, {}).refused, nullptr);
  PlanePair sameLocal = one;
  sameLocal.x += 100;
  EXPECT_NE(FitSimilarity({one, sameLocal, one}, {}).refused, nullptr);
  // Points within a millimetre of their centre coincide.
  const auto two = [](double grid, double local) {
    return std::vector<PlanePair>{{-grid, 0, -local, 0}, {grid, 0, local, 0}};
  };
  EXPECT_STREQ(FitSimilarity(two(1e-3, 1), {}).refused,
               "all control points coincide in the section's grid: they determine neither rotation nor scale");
  EXPECT_STREQ(FitSimilarity(two(1, 1e-3), {}).refused,
               "all control points coincide in the local grid: they determine neither rotation nor scale");
  EXPECT_EQ(FitSimilarity(two(1.5e-3, 1.5e-3), {}).refused, nullptr);
  EXPECT_EQ(FitSimilarity(two(0.75e-3, 0.75e-3), {.fixedScale = {}, .metresPerUnit = 2}).refused, nullptr);
  EXPECT_STREQ(FitSimilarity({{-1, 0, 0, 0}, {1, 0, 1e160, 0}, {0, 1, 2, 4}}, {}).refused,
               "the control points do not determine the parameters: the equations are singular");
  EXPECT_STREQ(FitSimilarity(two(1, 1), {1e-3, Reversed::Auto, 0}).refused,
               "the two sets of coordinates do not match: the scale would be 0");
}

// A weight of k is the same as k equal points, but for the redundancy; a weight of 0 leaves a point out.
TEST(FitSimilarity, Weights) {
  std::vector<PlanePair> twice = Square().pairs;
  twice.push_back(twice[0]);
  std::vector<PlanePair> heavy = Square().pairs;
  heavy[0].weight = 2;
  heavy.push_back({400010, 5600000, 0, 0, 0});
  const SimilarityFit one = FitSimilarity(twice, {});
  const SimilarityFit two = FitSimilarity(heavy, {});
  EXPECT_NEAR(one.similarity.rotation, two.similarity.rotation, 1e-12);
  EXPECT_NEAR(one.similarity.scale, two.similarity.scale, 1e-12);
  EXPECT_NEAR(one.similarity.localX, two.similarity.localX, 1e-8);
  EXPECT_NEAR(one.adjusted.s0 * one.adjusted.s0 * 6, two.adjusted.s0 * two.adjusted.s0 * 4, 1e-10);
  EXPECT_NEAR(two.adjusted.r.sum(), 4, 1e-12);
  // A fixed point is the centre; the distances of the others are the sides of the square and its diagonal: 200, 200 and 200 sqrt(2).
  std::vector<PlanePair> fixed = Square().pairs;
  fixed[0].weight = 1e14;
  const SimilarityFit about = FitSimilarity(fixed, {});
  ASSERT_EQ(about.refused, nullptr);
  EXPECT_NEAR(about.spread, std::sqrt((4e4 + 8e4 + 4e4) / 4), 1e-9);
  EXPECT_NEAR(about.localSpread, Square::S * std::sqrt(2e4), 0.01);
  EXPECT_NEAR(about.growth, about.adjusted.s0 / std::sqrt(16e4), 1e-9);
  for (PlanePair& pair : heavy) { pair.weight /= 1e4; }
  EXPECT_NEAR(FitSimilarity(heavy, {}).adjusted.s0, two.adjusted.s0 / 100, 1e-12);
}

// A network of six points in an area of some kilometres, with northings of seven digits.
struct Network {
  static constexpr double Sigma = 0.01;
  Similarity truth{452000, 5411000, -17.25, 0.99987, 10000, 20000};
  std::mt19937_64 random{20240607};
  std::normal_distribution<double> noise{0, Sigma};

  std::vector<PlanePair> Draw() {
    std::uniform_real_distribution<double> place(-3000, 3000);
    std::vector<PlanePair> pairs;
    for (int i = 0; i < 6; ++i) {
      PlanePair pair{452310 + place(random), 5411740 + place(random)};
      pair.localX = pair.x;
      pair.localY = pair.y;
      truth.Map(pair.localX, pair.localY);
      pair.localX += noise(random);
      pair.localY += noise(random);
      pairs.push_back(pair);
    }
    return pairs;
  }
};

TEST(FitSimilarity, SimulatedNetworksAreRecoveredWithinTheirDeviations) {
  constexpr int Networks = 4000;
  Network network;
  double squares[4] = {};  // of errors divided by their deviations: 1 on average
  int beyond = 0;          // errors of more than three deviations
  double variance = 0;
  int alarms = 0;
  int alarmsKnown = 0;
  for (int i = 0; i < Networks; ++i) {
    const std::vector<PlanePair> pairs = network.Draw();
    const SimilarityFit fit = FitSimilarity(pairs, {});
    ASSERT_EQ(fit.refused, nullptr);
    double trueX = fit.similarity.originX;
    double trueY = fit.similarity.originY;
    network.truth.Map(trueX, trueY);
    const double s0 = fit.adjusted.s0;
    const double errors[] = {(fit.similarity.rotation - network.truth.rotation) / fit.rotationDeviation,
                             (fit.similarity.scale - network.truth.scale) / fit.scaleDeviation,
                             (fit.similarity.localX - trueX) / fit.localXDeviation,
                             (fit.similarity.localY - trueY) / fit.localYDeviation};
    for (int k = 0; k < 4; ++k) {
      // The deviations are estimated too; with the true standard error the quotient is normally distributed.
      const double normal = errors[k] * s0 / Network::Sigma;
      squares[k] += normal * normal / Networks;
      beyond += std::fabs(normal) > 3 ? 1 : 0;
    }
    variance += s0 * s0 / Networks;
    const auto count = [](const SimilarityFit& of) {
      return static_cast<int>(
          std::count_if(of.test.w.begin(), of.test.w.end(), [&](double w) { return std::fabs(w) > of.test.critical; }));
    };
    alarms += count(fit);
    SimilarityOptions known;
    known.sigma = Network::Sigma;
    alarmsKnown += count(FitSimilarity(pairs, known));
  }
  for (const double square : squares) { EXPECT_NEAR(square, 1, 4 * std::sqrt(2.0 / Networks)); }
  EXPECT_NEAR(beyond, 0.0027 * 4 * Networks, 4 * std::sqrt(0.0027 * 4 * Networks));
  EXPECT_NEAR(std::sqrt(variance), Network::Sigma, 0.02 * Network::Sigma);
  // Without a blunder one observation in a thousand exceeds the critical value.
  EXPECT_NEAR(alarms, 12 * Networks / 1000, 4 * std::sqrt(12 * Networks / 1000));
  EXPECT_NEAR(alarmsKnown, 12 * Networks / 1000, 4 * std::sqrt(12 * Networks / 1000));
}

TEST(FitSimilarity, ABlunderOfFifteenCentimetresIsFound) {
  for (const double sigma : {0.0, Network::Sigma}) {
    SimilarityOptions options;
    options.sigma = sigma;
    Network network;
    int found = 0;
    for (int i = 0; i < 200; ++i) {
      std::vector<PlanePair> pairs = network.Draw();
      const int point = i % 6;
      (i % 2 == 0 ? pairs[static_cast<std::size_t>(point)].localX : pairs[static_cast<std::size_t>(point)].localY) +=
          0.15;
      const BlunderTest test = FitSimilarity(pairs, options).test;
      found += test.blunder && test.largest == 2 * point + i % 2 && std::fabs(test.size - 0.15) < 0.08 ? 1 : 0;
    }
    // 15 standard deviations; the least of it that is lost is where a point dominates the network, with r below 0.1.
    EXPECT_GT(found, sigma > 0 ? 190 : 170);
  }
}

// Percentiles of the tables of Student's distribution, 0.1 % on both sides together.
TEST(FitSimilarity, StudentsLimitsAreThoseOfTheTables) {
  const double table[][2] = {{1, 636.619}, {2, 31.599}, {3, 12.924}, {4, 8.610},  {5, 6.869},
                             {10, 4.587},  {30, 3.646}, {60, 3.460}, {120, 3.373}};
  for (const auto& [freedom, limit] : table) {
    EXPECT_NEAR(StudentLimit(0.001, static_cast<int>(freedom)), limit, 6e-4) << freedom;
  }
  EXPECT_NEAR(StudentLimit(0.5, 2), std::sqrt(2.0 / 3), 1e-12);
}

// y = a + b x at x = 0, 1, 2..., all with the same weight.
Adjusted StraightLine(const std::vector<double>& y, double weight) {
  const auto n = static_cast<Eigen::Index>(y.size());
  Eigen::MatrixXd a(n, 2);
  a << Eigen::VectorXd::Ones(n), Eigen::VectorXd::LinSpaced(n, 0, static_cast<double>(n - 1));
  return Adjust(a, Eigen::Map<const Eigen::VectorXd>(y.data(), n), Eigen::VectorXd::Constant(n, weight));
}

TEST(LeastSquares, StraightLinesByAlgebra) {
  // Residuals 1 : -2 : 1 through three points; the columns of the equations have the angle arccos(3 / sqrt(15)).
  const Adjusted three = StraightLine({1, 2, 6}, 1);
  EXPECT_LT((three.x - Eigen::Vector2d(0.5, 2.5)).norm(), 1e-14);
  EXPECT_LT((three.v - Eigen::Vector3d(-0.5, 1, -0.5)).norm(), 1e-14);
  EXPECT_LT((three.r - Eigen::Vector3d(1 / 6.0, 2 / 3.0, 1 / 6.0)).norm(), 1e-14);
  const double cosine = 3 / std::sqrt(15);
  EXPECT_NEAR(three.condition, std::sqrt((1 + cosine) / (1 - cosine)), 1e-12);
  const Eigen::VectorXd ones = Eigen::VectorXd::Ones(3);
  const BlunderTest untested = TestForBlunders(three, ones, 0, 0);
  EXPECT_TRUE(untested.largest == -1 && untested.freedom == 0 && std::isinf(untested.critical));
  EXPECT_NEAR(TestForBlunders(three, ones, 0.1, 0).w[1], std::sqrt(1.5) / 0.1, 1e-12);
  EXPECT_EQ(TestForBlunders(three, ones, 0.1, 0).without, 0);
  // The residual of 1.1 at an end of four points, where r is 0.3, is the largest; v'Pv is 4 * 4.2.
  std::vector<double> y = {0.9, -0.7, -1.3, 1.1};
  for (const int end : {3, 0}) {
    const Adjusted four = StraightLine(y, 4);
    for (const double sigma : {0.0, 0.5, 10.0}) {
      const BlunderTest test = TestForBlunders(four, Eigen::VectorXd::Constant(4, 4), sigma, 0);
      EXPECT_EQ(test.largest, end);
      EXPECT_EQ(test.freedom, sigma > 0 ? 0 : 1);
      EXPECT_NEAR(test.critical, sigma > 0 ? 3.29053 : 636.619, sigma > 0 ? 5e-5 : 6e-4);
      EXPECT_EQ(test.blunder, sigma == 0.5);
      EXPECT_NEAR(test.size, 1.1 / 0.3, 1e-13);
      EXPECT_NEAR(test.without, std::sqrt(2.0 / 3), 1e-13);
      EXPECT_NEAR(test.w[static_cast<std::size_t>(end)],
                  -std::sqrt(4 * 1.21 / 0.3) / (sigma > 0 ? sigma : test.without), 1e-12);
    }
    std::reverse(y.begin(), y.end());
  }
}

TEST(LeastSquares, LimitsOfTheTestForBlunders) {
  Adjusted adjusted;
  adjusted.v = Eigen::Vector4d(3e-6, 1, -3e-6, 1e-12);
  adjusted.r = Eigen::Vector4d(1, 1e-6, 1, 1.5e-6);
  for (const int redundancy : {10000, 10001}) {
    adjusted.redundancy = redundancy;
    EXPECT_EQ(TestForBlunders(adjusted, Eigen::VectorXd::Constant(4, 4), 0, 0).freedom, redundancy == 10000 ? 9999 : 0);
  }
  // Residuals of rounding are compared with a millionth; a redundancy number of a millionth is none.
  const BlunderTest test = TestForBlunders(adjusted, Eigen::VectorXd::Constant(4, 4), 1e-9, 0);
  EXPECT_NEAR(test.w[0], 3, 1e-12);
  EXPECT_TRUE(std::isnan(test.w[1]));
  EXPECT_FALSE(std::isnan(test.w[3]));
  EXPECT_EQ(test.largest, 0);  // the first of equals
}

// Ends and middle of three points on a line have residuals of 1 : -2 : 1, whichever is wrong. Of four points the test of
// the second has the correlations -0.8729, -0.2857 and -0.2182 with the others, by algebra. If it is wrong, w without the
// first is w sqrt(1 - 0.8729^2): below the critical value for w < 6.744, which is sqrt(0.7 * 4) / sigma.
TEST(LeastSquares, ObservationsThatAreNearlyAsLikelyWrongAreNamed) {
  const auto alternatives = [](const std::vector<double>& y, double sigma) {
    const Adjusted adjusted = StraightLine(y, 4);
    const BlunderTest test = TestForBlunders(adjusted, Eigen::VectorXd::Constant(adjusted.v.size(), 4), sigma, 0);
    EXPECT_TRUE(test.blunder);
    std::vector<int> all = test.alternatives;
    all.push_back(test.largest);
    std::sort(all.begin(), all.end());
    return all;
  };
  EXPECT_EQ(alternatives({0, 1, 0}, 0.01), (std::vector<int>{0, 1, 2}));
  EXPECT_EQ(alternatives({0, 1, 0, 0}, 0.2475), (std::vector<int>{1}));
  EXPECT_EQ(alternatives({0, 1, 0, 0}, 0.2485), (std::vector<int>{0, 1}));
}

// The wrong one is among those named, but for two in a thousand or so.
TEST(LeastSquares, TheWrongObservationIsAmongThoseNamed) {
  std::mt19937_64 random{20261};
  std::normal_distribution<double> noise{0, 1};
  int named = 0;
  int alone = 0;
  int blunders = 0;
  for (int i = 0; i < 4000; ++i) {
    std::vector<double> y(5);
    for (double& one : y) { one = noise(random); }
    const int wrong = i % 5;
    y[static_cast<std::size_t>(wrong)] += 8;
    for (const double sigma : {1.0, 0.0}) {
      const BlunderTest test = TestForBlunders(StraightLine(y, 1), Eigen::VectorXd::Ones(5), sigma, 0);
      if (test.blunder) {
        ++blunders;
        named += test.largest == wrong || std::count(test.alternatives.begin(), test.alternatives.end(), wrong) > 0;
        alone += test.alternatives.empty() ? 1 : 0;
      }
    }
  }
  EXPECT_GT(blunders, 4000);
  EXPECT_GT(named, 0.997 * blunders);
  EXPECT_GT(alone, blunders / 4);
}

// A residual of the rounding's size is no blunder though the others are 0.
TEST(LeastSquares, TheStandardErrorIsAtLeastThatOfRounding) {
  const Adjusted adjusted = StraightLine({0, 0, 0.001, 0, 0, 0}, 4);
  const Eigen::VectorXd p = Eigen::VectorXd::Constant(6, 4);
  EXPECT_TRUE(TestForBlunders(adjusted, p, 0, 0).blunder);
  const BlunderTest test = TestForBlunders(adjusted, p, 0, 0.0003);
  EXPECT_FALSE(test.blunder);
  EXPECT_NEAR(test.w[2], adjusted.v(2) / std::sqrt(adjusted.r(2)) / 0.0003, 1e-9);
}

TEST(LeastSquares, SingularEquationsAreRecognised) {
  for (const double factor : {0.0, 0.1}) {
    Eigen::MatrixXd a(3, 2);
    a << 1, factor * 1, 2, factor * 2, 3, factor * 3;
    EXPECT_TRUE(std::isinf(Adjust(a, Eigen::Vector3d(1, 2, 4), Eigen::Vector3d::Ones()).condition)) << factor;
  }
}

TEST(ConvexHull, AreaAndCornersAndWhatIsInside) {
  const std::vector<PlanePoint> hull = ConvexHull(
      {{5e5, 5e6}, {5e5 + 4, 5e6}, {5e5 + 2, 5e6 + 1}, {5e5 + 4, 5e6 + 3}, {5e5, 5e6 + 3}, {5e5, 5e6 + 1}, {5e5, 5e6}});
  EXPECT_EQ(hull.size(), 4U);
  EXPECT_NEAR(AreaOf(hull), 12, 1e-9);
  EXPECT_TRUE(Contains(hull, {5e5 + 1, 5e6 + 2}));
  EXPECT_TRUE(Contains(hull, {5e5, 5e6 + 2}));
  EXPECT_FALSE(Contains(hull, {5e5 - 0.01, 5e6 + 2}));
  EXPECT_FALSE(Contains(hull, {5e5 + 1, 5e6 + 3.01}));
  // A small triangle; a millionth of the unit outside is still on the edge. What is no corner any more does not count.
  std::vector<PlanePoint> triangle = ConvexHull({{0, 0}, {0.5, 0}, {0.2, 0.5}});
  EXPECT_NEAR(AreaOf(triangle), 0.125, 1e-15);
  EXPECT_TRUE(Contains(triangle, {0.2, 0.48}));
  EXPECT_TRUE(Contains(triangle, {0.25, -0.9e-6}));
  EXPECT_FALSE(Contains(triangle, {0.25, -1.5e-6}));
  triangle.pop_back();
  EXPECT_EQ(AreaOf(triangle), 0);
  EXPECT_TRUE(Contains(triangle, {0.25, 0}));
  EXPECT_FALSE(Contains({}, {0, 0}));
  EXPECT_EQ(ConvexHull(std::vector<PlanePoint>(99, {5, 5})).size(), 1U);
  const std::vector<PlanePoint> line = ConvexHull({{0, 0}, {2, 2}, {1, 1}});
  EXPECT_EQ(line.size(), 2U);
  EXPECT_EQ(AreaOf(line), 0);
  EXPECT_TRUE(Contains(line, {0.5, 0.5}));
  EXPECT_TRUE(Contains(line, {2, 2}));
  EXPECT_FALSE(Contains(line, {0.5, 0.6}));
  EXPECT_FALSE(Contains(line, {3, 3}));
  EXPECT_FALSE(Contains(ConvexHull({{0, 0}}), {3, 3}));
  EXPECT_TRUE(Contains(ConvexHull({{5, 5}}), {5, 5}));
}

}  // namespace
}  // namespace latigo::fit
