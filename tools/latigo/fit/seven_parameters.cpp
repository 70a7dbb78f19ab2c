#include "seven_parameters.h"

#include <Eigen/SVD>
#include <cmath>
#include <numbers>

namespace latigo::fit {

namespace {

constexpr double RadiansPerSecond = std::numbers::pi / 648000;
constexpr double Million = 1e6;
// Below this flatness the points lie on a line, and the rotation about it is unknown: at 100 km a deviation of 10 m.
constexpr double LeastFlatness = 1e-4;
constexpr int Unknowns = 7;

// The derivative of (X + rZ Y - rY Z, Y - rZ X + rX Z, Z + rY X - rX Y) by rX, rY, rZ.
Eigen::Matrix3d ByRotations(const Eigen::Vector3d& d) {
  Eigen::Matrix3d m;
  m << 0, -d.z(), d.y(),  //
      d.z(), 0, -d.x(),   //
      -d.y(), d.x(), 0;
  return m;
}

// The extent of the points across their longest direction, divided by that along it; 0 for points on a line.
double FlatnessOf(const std::vector<SpatialPair>& pairs, const Eigen::Vector3d& centre) {
  Eigen::Matrix3d squares = Eigen::Matrix3d::Zero();
  for (const SpatialPair& pair : pairs) {
    const Eigen::Vector3d d = pair.from - centre;
    squares += d * d.transpose();
  }
  const Eigen::Vector3d lengths = Eigen::JacobiSVD<Eigen::Matrix3d>(squares).singularValues();
  return lengths(0) > 0 ? std::sqrt(lengths(1) / lengths(0)) : 0;
}

}  // namespace

Eigen::Vector3d SevenParameters::Map(const Eigen::Vector3d& from) const {
  const double s = ppm / Million + 1;
  return (from + ByRotations(from) * (rotation * RadiansPerSecond)) * s + delta;
}

Eigen::Matrix3d NorthEastUp(double latitude, double longitude) {
  const double sinPhi = std::sin(latitude);
  const double cosPhi = std::cos(latitude);
  const double sinLambda = std::sin(longitude);
  const double cosLambda = std::cos(longitude);
  Eigen::Matrix3d axes;
  axes << -sinPhi * cosLambda, -sinPhi * sinLambda, cosPhi,  //
      -sinLambda, cosLambda, 0,                              //
      cosPhi * cosLambda, cosPhi * sinLambda, sinPhi;
  return axes;
}

SevenParametersFit FitSevenParameters(const std::vector<SpatialPair>& pairs, const SevenParametersOptions& options) {
  std::vector<SpatialPair> used;
  double weight = 0;
  for (const SpatialPair& pair : pairs) {
    if (pair.weight > 0) {
      used.push_back(pair);
      weight += pair.weight;
    }
  }
  SevenParametersFit fit;
  if (used.size() < 3) {
    fit.refused = "a seven-parameter transformation needs at least three control points";
    return fit;
  }
  Eigen::Vector3d centre = Eigen::Vector3d::Zero();
  Eigen::Vector3d shift = Eigen::Vector3d::Zero();  // mean of to - from
  for (const SpatialPair& pair : used) {
    centre += pair.from * (pair.weight / weight);
    shift += (pair.to - pair.from) * (pair.weight / weight);
  }
  fit.shift = shift;
  fit.flatness = FlatnessOf(used, centre);
  if (!(fit.flatness > LeastFlatness)) {
    fit.refused = "the control points lie on a line: the rotation about it is not determined";
    return fit;
  }

  // Linear in t, m = s - 1 and s rX, s rY, s rZ, about the centre:
  //   to - from - shift = t + m d + ByRotations(d) (s rX, s rY, s rZ),  d = from - centre.
  const double fixedM = options.fixedScale.value_or(1) - 1;
  const int unknowns = options.fixedScale ? Unknowns - 1 : Unknowns;
  const auto rows = static_cast<Eigen::Index>(3 * used.size());
  Eigen::MatrixXd a(rows, unknowns);
  Eigen::VectorXd l(rows);
  Eigen::VectorXd p(rows);
  Eigen::Index i = 0;
  for (const SpatialPair& pair : used) {
    const Eigen::Vector3d d = pair.from - centre;
    Eigen::Matrix<double, 3, Unknowns> equations;
    equations << Eigen::Matrix3d::Identity(), ByRotations(d), d;
    a.middleRows<3>(i) = (pair.axes * equations).leftCols(unknowns);
    l.segment<3>(i) = pair.axes * (pair.to - pair.from - shift - fixedM * d);
    p.segment<3>(i).setConstant(pair.weight);
    i += 3;
  }
  fit.adjusted = Adjust(a, l, p);
  if (!std::isfinite(fit.adjusted.condition)) {
    fit.refused = "the control points do not determine the parameters: the equations are singular";
    return fit;
  }

  const Eigen::VectorXd& x = fit.adjusted.x;
  const double m = options.fixedScale ? fixedM : x(6);
  const double s = 1 + m;
  const Eigen::Vector3d scaled = x.segment<3>(3);
  fit.parameters.delta = x.head<3>() + shift - (m * centre + ByRotations(centre) * scaled);
  fit.parameters.ppm = m * Million;
  fit.parameters.rotation = scaled / s / RadiansPerSecond;

  // Propagation of the cofactors to the parameters at the centre of the earth; rotation = scaled / s.
  Eigen::Matrix<double, Unknowns, Unknowns> all = Eigen::Matrix<double, Unknowns, Unknowns>::Zero();
  all.topLeftCorner(unknowns, unknowns) = fit.adjusted.q;
  Eigen::Matrix<double, Unknowns, Unknowns> j = Eigen::Matrix<double, Unknowns, Unknowns>::Identity();
  j.block<3, 3>(0, 3) = -ByRotations(centre);
  j.block<3, 1>(0, 6) = -centre;
  j.block<3, 3>(3, 3) /= s;
  j.block<3, 1>(3, 6) = -scaled / (s * s);
  const Eigen::Matrix<double, Unknowns, 1> cofactors = (j * all * j.transpose()).diagonal();
  const double s0 = fit.adjusted.s0;
  fit.deviations.delta = s0 * cofactors.head<3>().cwiseSqrt();
  fit.deviations.rotation = s0 * cofactors.segment<3>(3).cwiseSqrt() / RadiansPerSecond;
  fit.deviations.ppm = s0 * std::sqrt(cofactors(6)) * Million;
  fit.shiftDeviation = s0 * fit.adjusted.q.diagonal().head<3>().cwiseSqrt();
  std::vector<int> kinds;
  for (Eigen::Index k = 0; options.heightsApart && k < rows; ++k) {
    kinds.push_back(k % 3 == 2 ? 1 : 0);
  }
  fit.test = TestForBlunders(fit.adjusted, p, options.sigma, options.rounding, kinds);
  return fit;
}

}  // namespace latigo::fit
