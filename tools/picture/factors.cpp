// Scale factors and angles of Tissot's indicatrix: Snyder, USGS PP 1395, chapter 4. With the radii of curvature M, N:
//     h = sqrt((dx/dphi)^2 + (dy/dphi)^2) / M, k = sqrt((dx/dlambda)^2 + (dy/dlambda)^2) / (N cos phi)
//     a' = sqrt(h^2 + k^2 + 2 h k sin theta'), b' = sqrt(h^2 + k^2 - 2 h k sin theta'), sin(omega / 2) = b' / a'
// Here a' and b' are lengths of sums of the derivatives, which are the same, and lose no digits where b' is near 0.
//
// The derivatives are central differences of order 8. With step d, their error is d^8 f(9) / 630 by truncation, and by
// rounding 2.1 u |f| / d, where u |f| is the noise of a coordinate: a few units in its last place, some 1e-9 m. At d =
// 1/128 radian (50 km) both are below 1e-12 of the earth's radius for ordinary f. Where f changes faster, near poles
// and limits of a domain, the step is reduced until the difference from the formula of order 6 on the same nodes, whose
// error is far larger, is small. That difference and the noise are the bound of the error.
#include "factors.h"

#include <array>
#include <cmath>
#include <limits>
#include <numbers>

namespace latigo::picture {

namespace {

constexpr double Pi = std::numbers::pi;

constexpr double LargestStep = 1.0 / 128;  // radians
constexpr double StepRatio = 1.0 / 8;
constexpr int Steps = 5;
constexpr double GoodError = 1e-11;     // relative; a smaller step is not tried
constexpr double NoiseUnits = 4;        // of a coordinate, in units of its last place
constexpr double LeastCosine = 1e-12;   // of a latitude that is not a pole
constexpr double UnitTolerance = 0.01;  // of a local grid's scale that changes the unit

constexpr int Nodes = 9;

// Weights of values at nodes that are one step apart, the first at `first` steps: two formulas, of which the second is
// less exact.
struct Formula {
  int first;
  double fine[Nodes];
  double coarse[Nodes];
};

// Orders 8 and 6.
constexpr Formula Central = {-4,
                             {1.0 / 280, -4.0 / 105, 1.0 / 5, -4.0 / 5, 0, 4.0 / 5, -1.0 / 5, 4.0 / 105, -1.0 / 280},
                             {0, -1.0 / 60, 3.0 / 20, -3.0 / 4, 0, 3.0 / 4, -3.0 / 20, 1.0 / 60, 0}};

// Orders 8 and 7, for the limits of a domain.
constexpr Formula OneSided = {0,
                              {-761.0 / 280, 8, -14, 56.0 / 3, -35.0 / 2, 56.0 / 5, -14.0 / 3, 8.0 / 7, -1.0 / 8},
                              {-363.0 / 140, 7, -21.0 / 2, 35.0 / 3, -35.0 / 4, 21.0 / 5, -7.0 / 6, 1.0 / 7, 0}};

bool IgnoresUnit(std::int32_t kind) {
  return kind == LATIGO_KIND_OBLIQUE_STEREOGRAPHIC || kind == LATIGO_KIND_MERCATOR_ON_SPHERE ||
         kind == LATIGO_KIND_POLAR_STEREOGRAPHIC;
}

bool IsSimilarity(const Adjustment& local) {
  return (local.AdjustType & LATIGO_ADJUST_TYPE) == LATIGO_ADJUST_SIMILARITY;
}

}  // namespace

double MetresPerUnit(GeodesyHandle handle) {
  GeodesyParams params{};
  Adjustment local{};
  GetGeodesyParams(handle, &params, nullptr, nullptr);
  GetAdjustment(handle, &local);
  const bool scaled = IsSimilarity(local) && std::fabs(local.AdjustScale * params.Unit - 1) < UnitTolerance;
  return IgnoresUnit(params.Kind) && !scaled ? 1 : params.Unit;
}

double UnitScale(GeodesyHandle handle) {
  GeodesyParams params{};
  Adjustment local{};
  GetGeodesyParams(handle, &params, nullptr, nullptr);
  GetAdjustment(handle, &local);
  return (IsSimilarity(local) ? local.AdjustScale : 1) * (IgnoresUnit(params.Kind) ? params.Unit : 1);
}

double Factors::Mean() const {
  return std::sqrt(area);
}

std::pair<double, double> Factors::SemiAxes() const {
  const double sum = std::sqrt(h * h + k * k + 2 * area);  // a'
  const double difference = sum * std::sin(omega / 2);     // b'
  return {(sum + difference) / 2, (sum - difference) / 2};
}

Differences::Differences(GeodesyHandle handle) : handle_(handle), metresPerUnit_(picture::MetresPerUnit(handle)) {
  GeodesyParams params{};
  GetGeodesyParams(handle, &params, nullptr, nullptr);
  const double f = 1 / params.InvFlattening;
  a_ = params.SemiMajorAxis;
  e2_ = f * (2 - f);
  centralMeridian_ = params.CentralMeridian;
  fromSine_ = params.Kind != LATIGO_KIND_TRANSVERSE_MERCATOR && params.Kind != LATIGO_KIND_CASSINI &&
              params.Kind != LATIGO_KIND_AZIMUTHAL_EQUIDISTANT && params.Kind != LATIGO_KIND_POLAR_STEREOGRAPHIC;
  Adjustment local{};
  GetAdjustment(handle, &local);
  if (IsSimilarity(local)) {  // the only type that reads the flags
    signX_ = (local.AdjustType & LATIGO_REVERSE_X) != 0 ? -1 : 1;
    signY_ = (local.AdjustType & LATIGO_REVERSE_Y) != 0 ? -1 : 1;
  }
}

double Differences::MeanRadius(double latitude) const {
  const double s = std::sin(latitude);
  return a_ * std::sqrt(1 - e2_) / (1 - e2_ * s * s);
}

// The derivative of grid coordinates, in grid metres for `metres` on the ground, of a function that writes x and y and
// returns true. Its argument, which has an error of `rounding`, stays between the limits.
template <typename Function>
Differences::Slope Differences::SlopeOf(const Function& at, double middle, double low, double high, double metres,
                                        double rounding) const {
  Slope best{0, 0, std::numeric_limits<double>::infinity()};
  double step = LargestStep;
  for (int i = 0; i < Steps && !(best.error <= GoodError); ++i, step *= StepRatio) {
    const bool inside = middle - 4 * step >= low && middle + 4 * step <= high;
    const Formula& formula = inside ? Central : OneSided;
    const double spacing = inside || middle + 8 * step <= high ? step : -step;
    Slope fine{0, 0, 0};
    Slope coarse{0, 0, 0};
    double largest = a_ / metresPerUnit_;
    double weights = 0;
    for (int node = 0; node < Nodes; ++node) {
      double x = 0;
      double y = 0;
      if (formula.fine[node] == 0) {
        continue;
      }
      if (!at(middle + (formula.first + node) * spacing, x, y)) {
        x = y = NAN;
      }
      fine.x += formula.fine[node] * x;
      fine.y += formula.fine[node] * y;
      coarse.x += formula.coarse[node] * x;
      coarse.y += formula.coarse[node] * y;
      largest = std::fmax(largest, std::fmax(std::fabs(x), std::fabs(y)));
      weights += std::fabs(formula.fine[node]);
    }
    const double noise = NoiseUnits * std::numeric_limits<double>::epsilon() * largest * weights;
    const double scale = metresPerUnit_ / (spacing * metres);
    const double error =  // relative
        (std::hypot(fine.x - coarse.x, fine.y - coarse.y) + noise) / std::hypot(fine.x, fine.y) +
        rounding * weights / step;
    if (error < best.error) {
      best = {fine.x * scale, fine.y * scale, error};
    }
  }
  return best;
}

bool Differences::JacobianAt(double latitude, double longitude, Jacobian& jacobian) const {
  const double s = std::sin(latitude);
  const double c = std::cos(latitude);
  if (!(std::fabs(latitude) <= Pi / 2 && c > LeastCosine)) {
    return false;
  }
  const double W = 1 - e2_ * s * s;
  const double N = a_ / std::sqrt(W);
  const double M = N * (1 - e2_) / W;
  const Slope north =
      SlopeOf([&](double phi, double& x, double& y) { return GeoXY(handle_, &x, &y, phi, longitude) != 0; }, latitude,
              -Pi / 2, Pi / 2, M, fromSine_ ? std::numeric_limits<double>::epsilon() / 2 / c : 0);
  const Slope east =
      SlopeOf([&](double lambda, double& x, double& y) { return GeoXY(handle_, &x, &y, latitude, lambda) != 0; },
              longitude, centralMeridian_ - Pi, centralMeridian_ + Pi, N * c, 0);
  jacobian = {east.x * signX_, east.y * signY_, north.x * signX_, north.y * signY_, east.error, north.error};
  return std::isfinite(east.error) && std::isfinite(north.error);
}

bool Differences::At(double latitude, double longitude, Factors& factors) const {
  Jacobian j{};
  if (!JacobianAt(latitude, longitude, j)) {
    return false;
  }
  factors.convergence = -std::atan2(j.xNorth, j.yNorth);
  factors.h = std::hypot(j.xNorth, j.yNorth);
  factors.k = std::hypot(j.xEast, j.yEast);
  factors.area = j.xEast * j.yNorth - j.xNorth * j.yEast;
  factors.omega = 2 * std::asin(std::hypot(j.xEast - j.yNorth, j.yEast + j.xNorth) /
                                std::hypot(j.xEast + j.yNorth, j.yEast - j.xNorth));
  factors.error = 2 * (j.errorEast + j.errorNorth);
  return true;
}

bool Differences::ArcToChord(double latitude, double longitude, double azimuth, double chordX, double chordY,
                             double& angle) const {
  Jacobian j{};
  if (!JacobianAt(latitude, longitude, j)) {
    return false;
  }
  const double s = std::sin(azimuth);
  const double c = std::cos(azimuth);
  const double arc = std::atan2(j.xEast * s + j.xNorth * c, j.yEast * s + j.yNorth * c);
  const double chord = std::atan2(chordX * signX_, chordY * signY_);
  angle = std::remainder(chord - arc, 2 * Pi);
  return true;
}

}  // namespace latigo::picture
