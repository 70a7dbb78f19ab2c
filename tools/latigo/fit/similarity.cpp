#include "similarity.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace latigo::fit {

namespace {

constexpr double RadiansPerDegree = std::numbers::pi / 180;
constexpr double LeastSpread = 1e-3;  // root mean square distance from the centre below which points coincide; metres
constexpr double HandRatio = 3;       // of the two standard errors, below which the handedness is not known
constexpr double HandMisfit = 1e-3;   // and the least misfit of the other handedness; metres
constexpr double HandSignificance = 0.001;  // of the test whether the two standard errors differ
constexpr double AlongAxes = 45;            // a local grid within this angle of the grid's axes has flags; degrees

// The least difference of the squares of the two hands, in sigma^2. For points at the distances k from a line, without
// errors, it is 4 sum k (k + e), and the wrong hand is better by 25 sigma^2 only if sum k e / sqrt(sum k^2) exceeds
// five sigma. For points on a line whose k are errors too it is 4 sum k e, with a deviation of 4 sigma^2 sqrt(n - 2).
constexpr double HandSquares = 25;

// Weighted means of the control points, and sums of products about them.
struct Moments {
  double weight = 0;
  double x = 0, y = 0, localX = 0, localY = 0;
  double xx = 0;  // of x^2 + y^2
};

// The root mean square distance from a centre, whatever the weights are: that of (x, y), or of (X, Y).
double SpreadOf(const std::vector<PlanePair>& pairs, double PlanePair::*x, double PlanePair::*y, double centreX,
                double centreY) {
  double sum = 0;
  for (const PlanePair& pair : pairs) {
    sum += std::pow(pair.*x - centreX, 2) + std::pow(pair.*y - centreY, 2);
  }
  return std::sqrt(sum / static_cast<double>(pairs.size()));
}

// That from the mean of the points.
double ExtentOf(const std::vector<PlanePair>& pairs, double PlanePair::*x, double PlanePair::*y) {
  double meanX = 0;
  double meanY = 0;
  for (const PlanePair& pair : pairs) {
    meanX += (pair.*x - pairs.front().*x) / static_cast<double>(pairs.size());
    meanY += (pair.*y - pairs.front().*y) / static_cast<double>(pairs.size());
  }
  return SpreadOf(pairs, x, y, pairs.front().*x + meanX, pairs.front().*y + meanY);
}

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
  }
  return m;
}

struct Trial {
  Similarity similarity;
  double squares = 0;  // weighted, of the residuals
  double misfit = 0;   // root mean square of the distances between given and mapped points, whatever the weights are
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
    const double square = std::pow(x - pair.localX, 2) + std::pow(y - pair.localY, 2);
    trial.squares += pair.weight * square;
    trial.misfit += square / static_cast<double>(pairs.size());
  }
  trial.misfit = std::sqrt(trial.misfit);
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

int RedundancyOf(std::size_t points, const SimilarityOptions& options) {
  return 2 * static_cast<int>(points) - (options.fixedScale ? 3 : 4);
}

// The standard deviation of the rounding of a local coordinate and of that mapped to it.
double RoundingOf(const Trial& trial, const SimilarityOptions& options) {
  return std::hypot(options.localRounding, trial.similarity.scale * options.gridRounding);
}

// Whether the points show which of the two hands it is. Points on a line have the same residuals with both, but for
// their errors.
bool HandIsKnown(const Trial& better, const Trial& worse, std::size_t points, const SimilarityOptions& options) {
  if (points < 3) {
    return false;
  }
  const int redundancy = RedundancyOf(points, options);
  // F is the square of t / sqrt(f) + sqrt(t^2 / f + 1) if both sums have f degrees of freedom.
  const double t = StudentLimit(HandSignificance, redundancy) / std::sqrt(redundancy);
  const double ratio = std::max(HandRatio, t + std::sqrt(t * t + 1));
  if (!(worse.misfit * options.metresPerUnit > HandMisfit && worse.misfit > ratio * RoundingOf(better, options))) {
    return false;
  }
  if (options.sigma > 0) {
    // The points may have larger errors than given.
    const double variance = std::max(options.sigma * options.sigma, better.squares / redundancy);
    return worse.squares - better.squares > HandSquares * variance * std::sqrt(static_cast<double>(points) - 2);
  }
  return worse.squares > ratio * ratio * better.squares;
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
  if (!(ExtentOf(used, &PlanePair::x, &PlanePair::y) * options.metresPerUnit > LeastSpread)) {
    fit.refused = "all control points coincide in the section's grid: they determine neither rotation nor scale";
    return fit;
  }
  fit.localSpread = ExtentOf(used, &PlanePair::localX, &PlanePair::localY);
  if (!(fit.localSpread * options.metresPerUnit > LeastSpread)) {
    fit.refused = "all control points coincide in the local grid: they determine neither rotation nor scale";
    return fit;
  }
  fit.spread = SpreadOf(used, &PlanePair::x, &PlanePair::y, m.x, m.y);
  const Trial plain = SolveHand(used, m, false, options);
  const Trial mirrored = SolveHand(used, m, true, options);
  const bool plainIsBetter = plain.squares <= mirrored.squares;
  fit.handKnown = HandIsKnown(plainIsBetter ? plain : mirrored, plainIsBetter ? mirrored : plain, used.size(), options);
  // Without flags if the points do not show which axes are reversed.
  const Trial chosen = options.reversed != Reversed::Auto || !fit.handKnown ? SolveReversed(used, m, options)
                       : plainIsBetter                                      ? plain
                                                                            : mirrored;
  fit.similarity = chosen.similarity;
  if (!(fit.similarity.scale * fit.spread * options.metresPerUnit > LeastSpread)) {
    fit.refused = "the two sets of coordinates do not match: the scale would be 0";
    return fit;
  }
  Eigen::MatrixXd a;
  Eigen::VectorXd l;
  Eigen::VectorXd weights;
  Linearise(used, fit.similarity, options.fixedScale.has_value(), a, l, weights);
  fit.adjusted = Adjust(a, l, weights);
  if (!std::isfinite(fit.adjusted.condition)) {
    fit.refused = "the control points do not determine the parameters: the equations are singular";
    return fit;
  }
  const double s0 = fit.adjusted.s0;
  const auto deviation = [&](Eigen::Index i) { return s0 * std::sqrt(fit.adjusted.q(i, i)); };
  fit.localXDeviation = deviation(0);
  fit.localYDeviation = deviation(1);
  fit.rotationDeviation = deviation(2) / RadiansPerDegree;
  fit.scaleDeviation = options.fixedScale ? 0 : deviation(3);
  fit.pointDeviation = s0 / std::sqrt(m.weight);
  fit.growth = s0 / std::sqrt(m.xx);
  fit.misfit = fit.adjusted.redundancy > 0
                   ? chosen.misfit * std::sqrt(static_cast<double>(used.size()) / fit.adjusted.redundancy)
                   : 0;
  const bool isMirrored = fit.similarity.reverseX != fit.similarity.reverseY;
  fit.otherHand = StandardError((isMirrored ? plain : mirrored).squares, fit.adjusted.redundancy);
  fit.test = TestForBlunders(fit.adjusted, weights, options.sigma, RoundingOf(chosen, options));
  return fit;
}

}  // namespace latigo::fit
