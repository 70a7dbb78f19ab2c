#include "similarity.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace latigo::fit {

namespace {

constexpr double RadiansPerDegree = std::numbers::pi / 180;
constexpr double LeastSpread = 1e-3;  // mean distance from the centre below which points coincide; grid units
constexpr double HandRatio = 3;       // of the two standard errors, from which the handedness counts as known
constexpr double HandMisfit = 1e-3;   // and the least misfit of the other handedness; grid units
constexpr double AlongAxes = 45;      // a local grid within this angle of the grid's axes has flags; degrees

// Weighted means of the control points, and sums of products about them.
struct Moments {
  double weight = 0;
  double x = 0, y = 0, localX = 0, localY = 0;
  double xx = 0;       // of x^2 + y^2
  double localXX = 0;  // of X^2 + Y^2
};

Moments MomentsOf(const std::vector<PlanePair>& pairs) {
  Moments m;
  // Differences from the first point keep the digits of large coordinates.
  const PlanePair& o = pairs.front();
  for (const PlanePair& pair : pairs) {
    m.weight += pair.weight;
    m.x += pair.weight * (pair.x - o.x);
    m.y += pair.weight * (pair.y - o.y);
    m.localX += pair.weight * (pair.localX - o.localX);
    m.localY += pair.weight * (pair.localY - o.localY);
  }
  m.x = o.x + m.x / m.weight;
  m.y = o.y + m.y / m.weight;
  m.localX = o.localX + m.localX / m.weight;
  m.localY = o.localY + m.localY / m.weight;
  for (const PlanePair& pair : pairs) {
    m.xx += pair.weight * (std::pow(pair.x - m.x, 2) + std::pow(pair.y - m.y, 2));
    m.localXX += pair.weight * (std::pow(pair.localX - m.localX, 2) + std::pow(pair.localY - m.localY, 2));
  }
  return m;
}

struct Trial {
  Similarity similarity;
  double squares = 0;  // weighted, of the residuals
};

// The least squares solution for given flags. With q = s cos r, p = s sin r:
//   q = sum(dx X + dy Y) / sum(dx^2 + dy^2),  p = sum(dy X - dx Y) / sum(dx^2 + dy^2),
// all about the means. A fixed scale leaves the angle as it is.
Trial Solve(const std::vector<PlanePair>& pairs, const Moments& m, bool reverseX, bool reverseY,
            const std::optional<double>& fixedScale) {
  const double signX = reverseX ? -1 : 1;
  const double signY = reverseY ? -1 : 1;
  double q = 0;
  double p = 0;
  for (const PlanePair& pair : pairs) {
    const double dx = pair.x - m.x;
    const double dy = pair.y - m.y;
    const double localX = signX * (pair.localX - m.localX);
    const double localY = signY * (pair.localY - m.localY);
    q += pair.weight * (dx * localX + dy * localY) / m.xx;
    p += pair.weight * (dy * localX - dx * localY) / m.xx;
  }
  Trial trial;
  Similarity& s = trial.similarity;
  s.reverseX = reverseX;
  s.reverseY = reverseY;
  s.rotation = std::atan2(p, q) / RadiansPerDegree;
  s.scale = fixedScale.value_or(std::hypot(p, q));
  // A whole number near the centre, so that the section is easy to read.
  s.originX = std::round(m.x);
  s.originY = std::round(m.y);
  double shiftX = m.x;
  double shiftY = m.y;
  Similarity plain = s;
  plain.reverseX = plain.reverseY = false;
  plain.Map(shiftX, shiftY);
  s.localX = signX * m.localX - shiftX;
  s.localY = signY * m.localY - shiftY;
  for (const PlanePair& pair : pairs) {
    double x = pair.x;
    double y = pair.y;
    s.Map(x, y);
    trial.squares += pair.weight * (std::pow(x - pair.localX, 2) + std::pow(y - pair.localY, 2));
  }
  return trial;
}

// Of the two sets of flags of one handedness the first, unless the second makes the axes nearly parallel to the grid's.
Trial SolveHand(const std::vector<PlanePair>& pairs, const Moments& m, bool mirrored,
                const SimilarityOptions& options) {
  Trial first = Solve(pairs, m, mirrored, false, options.fixedScale);
  Trial second = Solve(pairs, m, !mirrored, true, options.fixedScale);
  return std::fabs(second.similarity.rotation) < AlongAxes ? second : first;
}

Trial SolveReversed(const std::vector<PlanePair>& pairs, const Moments& m, const SimilarityOptions& options) {
  const bool reverseX = options.reversed == Reversed::X || options.reversed == Reversed::Both;
  const bool reverseY = options.reversed == Reversed::Y || options.reversed == Reversed::Both;
  return Solve(pairs, m, reverseX, reverseY, options.fixedScale);
}

// The observation equations at the solution; with a fixed scale without its column.
void Linearise(const std::vector<PlanePair>& pairs, const Similarity& s, bool fixedScale, Eigen::MatrixXd& a,
               Eigen::VectorXd& l, Eigen::VectorXd& weights) {
  const auto rows = static_cast<Eigen::Index>(2 * pairs.size());
  a.resize(rows, 4);
  l.resize(rows);
  weights.resize(rows);
  const double p = s.scale * std::sin(s.rotation * RadiansPerDegree);
  const double q = s.scale * std::cos(s.rotation * RadiansPerDegree);
  Eigen::Index i = 0;
  for (const PlanePair& pair : pairs) {
    const double dx = pair.x - s.originX;
    const double dy = pair.y - s.originY;
    double x = pair.x;
    double y = pair.y;
    s.Map(x, y);
    const double signX = s.reverseX ? -1 : 1;
    const double signY = s.reverseY ? -1 : 1;
    // Columns: X0, Y0, r, s.
    a.row(i) = signX * Eigen::RowVector4d(1, 0, q * dy - p * dx, (q * dx + p * dy) / s.scale);
    a.row(i + 1) = signY * Eigen::RowVector4d(0, 1, -p * dy - q * dx, (q * dy - p * dx) / s.scale);
    l(i) = pair.localX - x;
    l(i + 1) = pair.localY - y;
    weights(i) = weights(i + 1) = pair.weight;
    i += 2;
  }
  if (fixedScale) {
    a.conservativeResize(Eigen::NoChange, 3);
  }
}

double StandardError(double squares, int redundancy) {
  return redundancy > 0 ? std::sqrt(squares / redundancy) : 0;
}

}  // namespace

void Similarity::Map(double& x, double& y) const {
  const double p = scale * std::sin(rotation * RadiansPerDegree);
  const double q = scale * std::cos(rotation * RadiansPerDegree);
  const double dx = x - originX;
  const double dy = y - originY;
  x = q * dx + p * dy + localX;
  y = q * dy - p * dx + localY;
  x = reverseX ? -x : x;
  y = reverseY ? -y : y;
}

SimilarityFit FitSimilarity(const std::vector<PlanePair>& pairs, const SimilarityOptions& options) {
  std::vector<PlanePair> used;
  for (const PlanePair& pair : pairs) {
    if (pair.weight > 0) {
      used.push_back(pair);
    }
  }
  SimilarityFit fit;
  if (used.size() < 2) {
    fit.refused = "a similarity transformation needs at least two control points";
    return fit;
  }
  const Moments m = MomentsOf(used);
  fit.spread = std::sqrt(m.xx / m.weight);
  if (!(fit.spread > LeastSpread)) {
    fit.refused = "all control points coincide in the section's grid: they determine neither rotation nor scale";
    return fit;
  }
  if (!(std::sqrt(m.localXX / m.weight) > LeastSpread)) {
    fit.refused = "all control points coincide in the local grid: they determine neither rotation nor scale";
    return fit;
  }
  const Trial plain = SolveHand(used, m, false, options);
  const Trial mirrored = SolveHand(used, m, true, options);
  const double larger = std::max(plain.squares, mirrored.squares);
  fit.handKnown = used.size() > 2 && larger > HandRatio * HandRatio * std::min(plain.squares, mirrored.squares) &&
                  std::sqrt(larger / m.weight) > HandMisfit;
  // Without flags if the points do not show which axes are reversed.
  const Trial chosen = options.reversed != Reversed::Auto || !fit.handKnown ? SolveReversed(used, m, options)
                       : mirrored.squares < plain.squares                   ? mirrored
                                                                            : plain;
  fit.similarity = chosen.similarity;
  if (!(fit.similarity.scale * fit.spread > LeastSpread)) {
    fit.refused = "the two sets of coordinates do not match: the scale would be 0";
    return fit;
  }
  Eigen::MatrixXd a;
  Eigen::VectorXd l;
  Eigen::VectorXd weights;
  Linearise(used, fit.similarity, options.fixedScale.has_value(), a, l, weights);
  fit.adjusted = Adjust(a, l, weights);
  const double s0 = fit.adjusted.s0;
  const auto deviation = [&](Eigen::Index i) { return s0 * std::sqrt(fit.adjusted.q(i, i)); };
  fit.localXDeviation = deviation(0);
  fit.localYDeviation = deviation(1);
  fit.rotationDeviation = deviation(2) / RadiansPerDegree;
  fit.scaleDeviation = options.fixedScale ? 0 : deviation(3);
  fit.pointDeviation = s0 / std::sqrt(m.weight);
  const bool isMirrored = fit.similarity.reverseX != fit.similarity.reverseY;
  fit.otherHand = StandardError((isMirrored ? plain : mirrored).squares, fit.adjusted.redundancy);
  fit.test = TestForBlunders(fit.adjusted, weights, options.sigma);
  return fit;
}

}  // namespace latigo::fit
