// The seven-parameter transformation, fitted to pairs of earth-centred positions.
#include <gtest/gtest.h>
#include <latigo/latigo.h>

#include <cmath>
#include <numbers>
#include <random>
#include <utility>
#include <vector>

#include "fit/seven_parameters.h"

namespace latigo::fit {
namespace {

using Eigen::Vector3d;

constexpr double Second = std::numbers::pi / 648000;

// EPSG guidance note 7-2, WGS 72 to WGS 84: 0, 0, 4.5 m, 0.219 ppm, rotation about Z 0.554 seconds, position vector
// convention; and its worked position. The other pairs are PROJ's, cct +proj=helmert with these parameters.
TEST(FitSevenParameters, PublishedParametersOfWgs72) {
  const std::vector<SpatialPair> pairs = {
      {{3657660.66, 255768.55, 5201382.11}, {3657660.774067, 255778.430008, 5201387.749103}},
      {{3980000.5, -12000.25, 4966800.75}, {3980001.403851, -11989.562871, 4966806.337729}},
      {{3130000.25, 600000.5, 5500000.25}, {3129999.323948, 600009.038169, 5500005.954500}},
      {{4200000, 900000, 4700000}, {4199998.502518, 900011.477747, 4700005.529300}}};
  const SevenParametersFit fit = FitSevenParameters(pairs, {});
  ASSERT_EQ(fit.refused, nullptr);
  EXPECT_LT((fit.parameters.delta - Vector3d(0, 0, 4.5)).norm(), 2e-5);
  EXPECT_NEAR(fit.parameters.ppm, 0.219, 2e-6);
  EXPECT_LT((fit.parameters.rotation - Vector3d(0, 0, -0.554)).norm(), 2e-6);
  const Vector3d published(3657660.78, 255778.43, 5201387.75);
  EXPECT_LT((fit.parameters.Map(pairs[0].from) - published).cwiseAbs().maxCoeff(), 0.01);
  EXPECT_LT(fit.adjusted.v.cwiseAbs().maxCoeff(), 2e-6);
}

// EPSG guidance note 7-2, La Canoa to REGVEN by Molodensky and Badekas, coordinate frame convention: -5.266, -1.238,
// 2.381 seconds, -5.109 ppm about a point of rotation, which is seven parameters with other translations; and its worked
// position. The pairs are PROJ's, cct +proj=molobadekas with these parameters.
TEST(FitSevenParameters, PublishedParametersAboutAPointOfRotation) {
  const std::vector<SpatialPair> pairs = {
      {{2550408.96, -5749912.26, 1054891.11}, {2550138.455308, -5749799.870308, 1054530.814999}},
      {{2467352.1, -5812020.4, 889120.3}, {2467080.307759, -5811902.502088, 888759.764796}},
      {{2300144.7, -5850313.9, 1012760.8}, {2299874.062071, -5850197.032874, 1012399.659050}},
      {{2688010.2, -5694870.6, 1001344.5}, {2687739.306284, -5694758.712843, 1000985.057914}}};
  const SevenParametersFit fit = FitSevenParameters(pairs, {});
  ASSERT_EQ(fit.refused, nullptr);
  EXPECT_NEAR(fit.parameters.ppm, -5.109, 1e-5);
  EXPECT_LT((fit.parameters.rotation - Vector3d(-5.266, -1.238, 2.381)).norm(), 5e-6);
  const Vector3d published(2550138.45, -5749799.87, 1054530.82);
  EXPECT_LT((fit.parameters.Map(pairs[0].from) - published).cwiseAbs().maxCoeff(), 0.01);
  // The point of rotation is mapped by the published translation alone.
  const Vector3d pivot(2464351.59, -5783466.61, 974809.81);
  EXPECT_LT((fit.parameters.Map(pivot) - pivot - Vector3d(-270.933, 115.599, -360.226)).norm(), 1e-5);
}

// Control points within 200 km at 52 degrees north, their truth, and noise.
struct Network {
  static constexpr double Sigma = 0.02;
  SevenParameters truth{{-446.448, 125.157, -542.060}, 20.4894, {0.1502, 0.2470, 0.8421}};
  std::mt19937_64 random{19521};
  std::normal_distribution<double> noise{0, Sigma};

  std::vector<SpatialPair> Draw(int count = 8) {
    std::uniform_real_distribution<double> place(-0.03, 0.03);
    std::vector<SpatialPair> pairs;
    for (int i = 0; i < count; ++i) {
      const double phi = 0.91 + place(random);
      const double lambda = -0.03 + place(random);
      const double height = 6.36e6 + 4000 * place(random);
      SpatialPair pair;
      pair.from = height * Vector3d(std::cos(phi) * std::cos(lambda), std::cos(phi) * std::sin(lambda), std::sin(phi));
      pair.to = truth.Map(pair.from) + Vector3d(noise(random), noise(random), noise(random));
      pair.axes = NorthEastUp(phi, lambda);
      pairs.push_back(pair);
    }
    return pairs;
  }
};

TEST(FitSevenParameters, MapIsTheLibrarysShift) {
  const GeodesyParams record{6377563.396, 299.3249646, LATIGO_KIND_TRANSVERSE_MERCATOR, 1, 0, 0, 0, 0, 0, 0, 0, 0};
  GeodesyHandle handle = CreateGeodesy(&record);
  ASSERT_NE(handle, nullptr);
  // Large values, so that a wrong order of scale, rotation and translation shows.
  const SevenParameters p{{1000, -2000, 3000}, 500, {100, -200, 300}};
  const EllDiff shift{p.delta.x(),
                      p.delta.y(),
                      p.delta.z(),
                      1 + p.ppm / 1e6,
                      p.rotation.x() * Second,
                      p.rotation.y() * Second,
                      p.rotation.z() * Second};
  ASSERT_EQ(SetEllDiff(handle, &shift), 1);
  double phi = 0.9;
  double lambda = -0.4;
  double h = 250;
  GeodesyHandle wgs84 = nullptr;
  const GeodesyParams wgs84Record{6378137, 298.257223563, LATIGO_KIND_TRANSVERSE_MERCATOR, 1, 0, 0, 0, 0, 0, 0, 0, 0};
  ASSERT_NE(wgs84 = CreateGeodesy(&wgs84Record), nullptr);
  Vector3d from;
  Vector3d to;
  GeoECEF(wgs84, &from.x(), &from.y(), &from.z(), phi, lambda, h);
  ASSERT_EQ(WGS84Conv(handle, &phi, &lambda, &h), 1);
  GeoECEF(handle, &to.x(), &to.y(), &to.z(), phi, lambda, h);
  EXPECT_LT((p.Map(from) - to).norm(), 1e-6);
  DestroyGeodesy(handle);
  DestroyGeodesy(wgs84);
}

TEST(FitSevenParameters, SimulatedNetworksAreRecoveredWithinTheirDeviations) {
  constexpr int Networks = 1500;
  Network network;
  Eigen::Matrix<double, 7, 1> squares = Eigen::Matrix<double, 7, 1>::Zero();
  Vector3d centreSquares = Vector3d::Zero();
  double variance = 0;
  int alarms = 0;
  for (int i = 0; i < Networks; ++i) {
    const std::vector<SpatialPair> pairs = network.Draw();
    const SevenParametersFit fit = FitSevenParameters(pairs, {});
    ASSERT_EQ(fit.refused, nullptr);
    Eigen::Matrix<double, 7, 1> errors;
    errors << (fit.parameters.delta - network.truth.delta).cwiseQuotient(fit.deviations.delta),
        (fit.parameters.ppm - network.truth.ppm) / fit.deviations.ppm,
        (fit.parameters.rotation - network.truth.rotation).cwiseQuotient(fit.deviations.rotation);
    const double toNormal = fit.adjusted.s0 / Network::Sigma;
    EXPECT_LT(errors.cwiseAbs().maxCoeff() * toNormal, 4.5);
    squares += (errors * toNormal).cwiseAbs2() / Networks;
    Vector3d centre = Vector3d::Zero();
    for (const SpatialPair& pair : pairs) { centre += pair.from / static_cast<double>(pairs.size()); }
    centreSquares +=
        ((fit.parameters.Map(centre) - network.truth.Map(centre)).cwiseQuotient(fit.shiftDeviation) * toNormal)
            .cwiseAbs2() /
        Networks;
    variance += fit.adjusted.s0 * fit.adjusted.s0 / Networks;
    for (const double w : fit.test.w) { alarms += std::fabs(w) > fit.test.critical ? 1 : 0; }
    EXPECT_NEAR(fit.adjusted.r.sum(), 24 - 7, 1e-9);
  }
  const double tolerance = 4 * std::sqrt(2.0 / Networks);
  EXPECT_LT((squares.array() - 1).abs().maxCoeff(), tolerance) << squares;
  EXPECT_LT((centreSquares.array() - 1).abs().maxCoeff(), tolerance) << centreSquares;
  EXPECT_NEAR(std::sqrt(variance), Network::Sigma, 0.02 * Network::Sigma);
  EXPECT_NEAR(alarms, 0.024 * Networks, 4 * std::sqrt(0.024 * Networks));
}

TEST(FitSevenParameters, ABlunderIsFoundAlongItsAxis) {
  Network network;
  int found = 0;
  for (int i = 0; i < 100; ++i) {
    std::vector<SpatialPair> pairs = network.Draw(10);
    const int axis = i % 3;
    const int point = i % 10;
    SpatialPair& wrong = pairs[static_cast<std::size_t>(point)];
    wrong.to += 0.3 * wrong.axes.row(axis).transpose();
    const BlunderTest test = FitSevenParameters(pairs, {.fixedScale = {}, .sigma = Network::Sigma}).test;
    found += test.blunder && test.largest == 3 * point + axis && std::fabs(test.size - 0.3) < 0.15 ? 1 : 0;
  }
  EXPECT_GT(found, 95);
}

// Heights are three times worse than positions, over 200 km and 5 km. Without a blunder an observation in a thousand is
// called one, of heights and of positions; one of 0.2 in a position is not hidden by the errors of heights.
TEST(FitSevenParameters, HeightsAreComparedWithHeights) {
  constexpr int Networks = 200;
  Network network;
  for (const double size : {1.0, 0.025}) {
    int alarms[2] = {};
    int found = 0;
    for (int i = 0; i < Networks; ++i) {
      std::vector<SpatialPair> pairs = network.Draw(12);
      for (SpatialPair& pair : pairs) {
        if (&pair != &pairs[0]) { pair.from = pairs[0].from + size * (pair.from - pairs[0].from); }
        pair.to = network.truth.Map(pair.from);
        for (int axis = 0; axis < 3; ++axis) {
          pair.to += (axis == 2 ? 3 : 1) * network.noise(network.random) * pair.axes.row(axis).transpose();
        }
      }
      const SevenParametersOptions options{.fixedScale = {}, .heightsApart = true};
      const BlunderTest test = FitSevenParameters(pairs, options).test;
      const bool height = test.largest % 3 == 2;
      alarms[height ? 1 : 0] += test.blunder ? test.beyond : 0;
      pairs[5].to += 0.2 * pairs[5].axes.row(1).transpose();
      const BlunderTest wrong = FitSevenParameters(pairs, options).test;
      found += wrong.blunder && wrong.largest == 16 ? 1 : 0;
    }
    EXPECT_NEAR(alarms[0], 0.024 * Networks, 5 * std::sqrt(0.024 * Networks)) << size;
    EXPECT_NEAR(alarms[1], 0.012 * Networks, 5 * std::sqrt(0.012 * Networks)) << size;
    EXPECT_GT(found, 0.95 * Networks) << size;
  }
}

TEST(FitSevenParameters, AFixedScaleRemains) {
  Network network;
  const SevenParametersFit fit = FitSevenParameters(network.Draw(), {.fixedScale = 1.0000204894});
  ASSERT_EQ(fit.refused, nullptr);
  EXPECT_NEAR(fit.parameters.ppm, 20.4894, 1e-9);
  EXPECT_EQ(fit.deviations.ppm, 0);
  EXPECT_EQ(fit.adjusted.redundancy, 24 - 6);
  for (int i = 0; i < 3; ++i) {
    EXPECT_LT(std::fabs(fit.parameters.rotation(i) - network.truth.rotation(i)), 4 * fit.deviations.rotation(i));
    EXPECT_LT(std::fabs(fit.parameters.delta(i) - network.truth.delta(i)), 4 * fit.deviations.delta(i));
  }
}

TEST(FitSevenParameters, WhatDeterminesNothingIsRefused) {
  Network network;
  std::vector<SpatialPair> pairs = network.Draw(3);
  EXPECT_EQ(FitSevenParameters(pairs, {}).refused, nullptr);
  EXPECT_EQ(FitSevenParameters(pairs, {}).adjusted.redundancy, 2);
  pairs[2].weight = 0;
  EXPECT_STREQ(FitSevenParameters(pairs, {}).refused,
               "a seven-parameter transformation needs at least three control points");
  pairs[2].weight = 1;
  // On a line, but for one metre in 300 km.
  pairs[2].from = 2 * pairs[1].from - pairs[0].from + Vector3d(0, 1, 0);
  pairs[2].to = network.truth.Map(pairs[2].from);
  EXPECT_STREQ(FitSevenParameters(pairs, {}).refused,
               "the control points lie on a line: the rotation about it is not determined");
  EXPECT_STREQ(FitSevenParameters({pairs[0], pairs[0], pairs[0], pairs[0]}, {}).refused,
               "the control points lie on a line: the rotation about it is not determined");
}

// Points at the ends of two diagonals: the flatness is the quotient of their lengths.
TEST(FitSevenParameters, FlatnessIsTheWidthDividedByTheLength) {
  for (const auto& [length, width] : {std::pair(1e5, 2.5e3), std::pair(1e5, 15.0), std::pair(0.5, 0.25)}) {
    std::vector<SpatialPair> pairs;
    for (const Vector3d& d :
         {Vector3d(length, 0, 0), Vector3d(-length, 0, 0), Vector3d(0, width, 0), Vector3d(0, -width, 0)}) {
      pairs.push_back({Vector3d(4e6, 1e6, 5e6) + d, Vector3d(4e6, 1e6, 5e6) + d});
    }
    const SevenParametersFit fit = FitSevenParameters(pairs, {});
    EXPECT_EQ(fit.refused, nullptr) << width;
    EXPECT_NEAR(fit.flatness, width / length, 1e-9);
  }
}

TEST(FitSevenParameters, NorthEastAndUp) {
  Eigen::Matrix3d expected;
  expected << -1, -std::sqrt(3), 2 * std::sqrt(3), -2 * std::sqrt(3), 2, 0, std::sqrt(3), 3, 2;
  EXPECT_LT((4 * NorthEastUp(std::numbers::pi / 6, std::numbers::pi / 3) - expected).norm(), 1e-14);
}

// By algebra. Points at the distance A from the centre along each axis, with errors of Z at the ends of two axes that
// no parameter explains: translation at the centre, rotations and scale are independent, with the cofactors 1/6, 1/(4 A^2)
// and 1/(6 A^2). Rotations of some radians and a scale of 2, so that the products with them have an effect.
TEST(FitSevenParameters, DeviationsByAlgebra) {
  constexpr double A = 1e5;
  constexpr double E = 0.1;
  const Vector3d centre(4e6, 1e6, 5e6);
  const Vector3d rotation(1, 2, 3);  // radians
  const SevenParameters truth{{10, 20, 30}, 1e6, rotation / Second};
  std::vector<SpatialPair> pairs;
  for (int i = 0; i < 6; ++i) {
    const Vector3d from = centre + (i % 2 == 0 ? A : -A) * Vector3d::Unit(i / 2);
    pairs.push_back({from, truth.Map(from) + Vector3d(0, 0, i < 2 ? E : i < 4 ? -E : 0)});
  }
  const SevenParametersFit fit = FitSevenParameters(pairs, {});
  ASSERT_EQ(fit.refused, nullptr);
  const double s0 = std::sqrt(4 * E * E / 11);
  EXPECT_NEAR(fit.adjusted.s0, s0, 1e-6 * s0);
  EXPECT_NEAR(fit.deviations.ppm, 1e6 * s0 / A / std::sqrt(6), 1e-6);
  for (int i = 0; i < 3; ++i) {
    const double c = centre(i) * centre(i);
    const double delta = 1 / 6.0 + c / (6 * A * A) + (centre.squaredNorm() - c) / (4 * A * A);
    EXPECT_NEAR(fit.deviations.delta(i) / (s0 * std::sqrt(delta)), 1, 1e-6);
    const double turn = std::sqrt(1 / 4.0 + rotation(i) * rotation(i) / 6) / (2 * A);
    EXPECT_NEAR(fit.deviations.rotation(i) * Second / (s0 * turn), 1, 1e-6);
  }
}

}  // namespace
}  // namespace latigo::fit
