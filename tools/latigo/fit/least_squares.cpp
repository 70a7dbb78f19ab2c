#include "least_squares.h"

#include <Eigen/SVD>
#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace latigo::fit {

namespace {

constexpr double Infinite = std::numeric_limits<double>::infinity();

constexpr double Significance = 0.001;    // of the test of one observation
constexpr int ManyDegrees = 10000;        // of freedom: Student's distribution is the normal one, within 0.0015
constexpr int ManyTested = 200;           // of more residuals than these one may well exceed its limit by chance
constexpr double LeastRedundancy = 1e-6;  // an observation with less is not checked by the others
constexpr double LeastSigma = 1e-6;       // residuals of rounding are no sign of a blunder; units of the observations
// Two tests with 1 - rho^2 below this are one: only a w of 30 000 and more would distinguish their observations.
constexpr double SameTest = 1e-8;
constexpr double Certain = 0.0027;  // of a difference of two w, three standard deviations of the normal distribution
constexpr double LeastCorrelation = 0.5;  // of two tests: below it an error of one observation leaves the other's small
constexpr double LeastPart = 0.5;         // of the largest w, below which another is not wrong unless it is significant

// The probability that |t| stays below a limit, by Abramowitz and Stegun (26.7.3) and (26.7.4).
double StudentProbability(double t, int freedom) {
  const double theta = std::atan(t / std::sqrt(freedom));
  const double cosine = std::cos(theta);
  const bool odd = freedom % 2 != 0;
  double term = odd ? cosine : 1;
  double sum = freedom == 1 ? 0 : term;
  for (int i = odd ? 3 : 2; i < freedom; i += 2) {
    term *= cosine * cosine * (i - 1) / i;
    sum += term;
  }
  sum *= std::sin(theta);
  return odd ? 2 / std::numbers::pi * (theta + sum) : sum;
}

// The observations of one kind, by their weighted residuals z = sqrt(p) v.
struct Kind {
  double squares = 0;        // sum of z^2
  double redundancy = 0;     // sum of r
  Eigen::VectorXd products;  // U' z
  Eigen::MatrixXd moments;   // U' U
};

Kind KindOf(const Adjusted& adjusted, const Eigen::VectorXd& z, const std::vector<int>& kinds, int kind) {
  Kind result;
  result.products = Eigen::VectorXd::Zero(adjusted.u.cols());
  result.moments = Eigen::MatrixXd::Zero(adjusted.u.cols(), adjusted.u.cols());
  for (Eigen::Index i = 0; i < z.size(); ++i) {
    if (kinds[static_cast<std::size_t>(i)] == kind) {
      result.squares += z(i) * z(i);
      result.redundancy += adjusted.r(i);
      result.products += z(i) * adjusted.u.row(i).transpose();
      result.moments += adjusted.u.row(i).transpose() * adjusted.u.row(i);
    }
  }
  return result;
}

// The standard error of a kind without its observation i, by the residuals z_j - Q_ji z_i / Q_ii and the redundancy
// numbers Q_jj - Q_ji^2 / Q_ii of the others, with Q = I - U U'.
double ErrorWithout(const Kind& kind, const Adjusted& adjusted, const Eigen::VectorXd& z, Eigen::Index i) {
  const Eigen::VectorXd u = adjusted.u.row(i).transpose();
  const double q = adjusted.r(i);
  const double error = z(i) / q;
  const double squaresOfQ = 1 - 2 * u.squaredNorm() + u.dot(kind.moments * u);
  const double squares = kind.squares - 2 * error * (z(i) - u.dot(kind.products)) + error * error * squaresOfQ;
  const double redundancy = kind.redundancy - squaresOfQ / q;
  return redundancy > LeastRedundancy ? std::sqrt(std::max(squares, 0.0) / redundancy) : 0;
}

struct Limit {
  int freedom = 0;
  double critical = Infinite;
};

Limit LimitOf(int redundancy, bool known) {
  Limit limit;
  limit.freedom = known || redundancy > ManyDegrees ? 0 : std::max(redundancy - 1, 0);
  const bool testable = redundancy >= (known ? 1 : 2);
  limit.critical = testable ? StudentLimit(Significance, limit.freedom) : Infinite;
  return limit;
}

// Observations that are nearly as likely wrong as that of the largest w. The tests of i and j have the correlation
//   rho = (Qv)ij / sqrt((Qv)ii (Qv)jj), with weighted residuals Qv = I - U U'.
// An error of j gives w_i the expectation rho w_j. So j is one of them if neither rho nor |w_j| is small, |w_i| - |w_j|
// is within the limit of its standard deviation, sqrt(2 (1 - |rho|)), and i passes the test once j is left out:
//   w_i without j = (w_i - rho w_j) / sqrt(1 - rho^2).
// The squares and the redundancy are those of the kind of i.
std::vector<int> AlternativesOf(const Adjusted& adjusted, const Eigen::VectorXd& p, double sigma,
                                const BlunderTest& test, double least, double squares, int redundancy) {
  std::vector<int> alternatives;
  const Eigen::Index i = test.largest;
  const auto root = [&](Eigen::Index k) { return std::sqrt(p(k) / adjusted.r(k)) * adjusted.v(k); };
  const auto estimate = [&](double sum, int freedom) {
    const double known = sigma > 0 ? sigma : freedom > 0 ? std::sqrt(std::max(sum, 0.0) / freedom) : 0;
    return std::max(known, least * std::sqrt(p(i)));
  };
  const double ownI = root(i);
  const int left = redundancy - 2;  // degrees of freedom without i and j
  const double difference = StudentLimit(Certain, test.freedom);
  double critical = Infinite;
  if (sigma > 0 || left > ManyDegrees) {
    critical = StudentLimit(Significance, 0);
  } else if (left > 0) {
    critical = StudentLimit(Significance, left);
  }
  const double withoutI = estimate(squares - ownI * ownI, redundancy - 1);
  const Eigen::VectorXd products = adjusted.u * adjusted.u.row(i).transpose();
  for (Eigen::Index j = 0; j < adjusted.v.size(); ++j) {
    if (j == i || !(adjusted.r(j) > LeastRedundancy)) {
      continue;
    }
    const double ownJ = root(j);
    const double rho = -products(j) / std::sqrt(adjusted.r(i) * adjusted.r(j));
    const double apart = 1 - rho * rho;
    const double w = std::fabs(test.w[static_cast<std::size_t>(j)]);
    const bool small = w < LeastPart * std::fabs(test.w[static_cast<std::size_t>(i)]) && w < test.critical;
    if (std::fabs(rho) < LeastCorrelation || small) {
      continue;
    }
    if (apart > SameTest) {
      const double part = std::fabs(ownI - rho * ownJ) / std::sqrt(apart);
      const double withoutBoth = estimate(squares - ownJ * ownJ - part * part, left);
      if (std::fabs(ownI) - std::fabs(ownJ) > difference * std::sqrt(2 * (1 - std::fabs(rho))) * withoutI ||
          part > critical * withoutBoth) {
        continue;
      }
    }
    alternatives.push_back(static_cast<int>(j));
  }
  return alternatives;
}

}  // namespace

Adjusted Adjust(const Eigen::MatrixXd& a, const Eigen::VectorXd& l, const Eigen::VectorXd& p) {
  Adjusted result;
  result.redundancy = static_cast<int>(a.rows() - a.cols());
  const Eigen::VectorXd root = p.cwiseSqrt();
  Eigen::MatrixXd weighted = root.asDiagonal() * a;
  const Eigen::VectorXd length = weighted.colwise().norm();
  if (!(length.minCoeff() > 0)) {
    result.condition = Infinite;
    return result;
  }
  weighted *= length.cwiseInverse().asDiagonal();
  // A = U S V': x = V S^-1 U' l, Q = V S^-2 V', r = 1 - diag(U U').
  const Eigen::JacobiSVD<Eigen::MatrixXd> svd(weighted, Eigen::ComputeThinU | Eigen::ComputeThinV);
  const Eigen::VectorXd& s = svd.singularValues();
  const double smallest = s(s.size() - 1);
  result.condition = smallest > 0 ? s(0) / smallest : Infinite;
  if (!(result.condition * std::numeric_limits<double>::epsilon() < 1)) {
    result.condition = Infinite;
    return result;
  }
  const Eigen::MatrixXd v = length.cwiseInverse().asDiagonal() * svd.matrixV() * s.cwiseInverse().asDiagonal();
  result.x = v * (svd.matrixU().transpose() * root.cwiseProduct(l));
  result.v = a * result.x - l;
  result.u = svd.matrixU();
  result.q = v * v.transpose();
  if (result.redundancy == 0) {
    result.r = Eigen::VectorXd::Zero(a.rows());
    return result;
  }
  result.r = Eigen::VectorXd::Ones(a.rows()) - result.u.rowwise().squaredNorm();
  result.s0 = std::sqrt(p.dot(result.v.cwiseAbs2()) / result.redundancy);
  return result;
}

double StudentLimit(double probability, int freedom) {
  const auto beyond = [&](double t) {
    return freedom > 0 ? 1 - StudentProbability(t, freedom) : std::erfc(t / std::numbers::sqrt2);
  };
  double below = 0;
  double above = 1;
  while (beyond(above) > probability) {
    above *= 2;
  }
  for (int i = 0; i < 60; ++i) {
    const double middle = (below + above) / 2;
    (beyond(middle) > probability ? below : above) = middle;
  }
  return above;
}

BlunderTest TestForBlunders(const Adjusted& adjusted, const Eigen::VectorXd& p, double sigma, double rounding,
                            const std::vector<int>& kinds) {
  BlunderTest test;
  const Eigen::Index count = adjusted.v.size();
  const bool known = sigma > 0;
  const double least = known ? LeastSigma : std::max(LeastSigma, rounding);
  test.apart = !known && !kinds.empty();
  const auto kindOf = [&](Eigen::Index i) {
    return test.apart ? static_cast<std::size_t>(kinds[static_cast<std::size_t>(i)]) : 0;
  };
  const Eigen::VectorXd z = p.cwiseSqrt().cwiseProduct(adjusted.v);
  std::vector<Kind> apart;
  std::vector<Limit> limits;
  if (test.apart) {
    for (const int kind : {0, 1}) {
      apart.push_back(KindOf(adjusted, z, kinds, kind));
      limits.push_back(LimitOf(static_cast<int>(std::lround(apart.back().redundancy)), known));
    }
  } else {
    limits.push_back(LimitOf(adjusted.redundancy, known));
  }
  test.critical = limits.front().critical;
  test.freedom = limits.front().freedom;
  test.w.assign(static_cast<std::size_t>(count), std::numeric_limits<double>::quiet_NaN());
  const double squares = z.squaredNorm();
  double largest = -1;
  for (Eigen::Index i = 0; i < count; ++i) {
    const Limit& limit = limits[kindOf(i)];
    if (!(adjusted.r(i) > LeastRedundancy) || std::isinf(limit.critical)) {
      continue;
    }
    // v'Pv is smaller by p v^2 / r without the observation.
    const double own = z(i) * z(i) / adjusted.r(i);
    const double without =
        adjusted.redundancy > 1 ? std::sqrt(std::max(squares - own, 0.0) / (adjusted.redundancy - 1)) : 0;
    const double estimate = known ? sigma : test.apart ? ErrorWithout(apart[kindOf(i)], adjusted, z, i) : without;
    const double w = std::copysign(std::sqrt(own), adjusted.v(i)) / std::max(estimate, least * std::sqrt(p(i)));
    test.w[static_cast<std::size_t>(i)] = w;
    ++test.tested;
    test.beyond += std::fabs(w) > limit.critical ? 1 : 0;
    if (std::fabs(w) / limit.critical > largest) {
      largest = std::fabs(w) / limit.critical;
      test.largest = static_cast<int>(i);
      test.without = without;
      test.critical = limit.critical;
      test.freedom = limit.freedom;
    }
  }
  if (test.largest >= 0) {
    const double w = std::fabs(test.w[static_cast<std::size_t>(test.largest)]);
    const bool many = test.tested > ManyTested;
    test.criticalOfAll = many ? StudentLimit(Significance / test.tested, test.freedom) : test.critical;
    test.blunder = w > test.critical;
    test.probable = w > test.criticalOfAll;
    test.size = -adjusted.v(test.largest) / adjusted.r(test.largest);
    if (test.blunder) {
      double ofSquares = squares;
      int ofRedundancy = adjusted.redundancy;
      if (test.apart) {
        const Kind& kind = apart[kindOf(test.largest)];
        ofSquares = kind.squares;
        ofRedundancy = static_cast<int>(std::lround(kind.redundancy));
      }
      test.alternatives = AlternativesOf(adjusted, p, sigma, test, least, ofSquares, ofRedundancy);
    }
  }
  return test;
}

}  // namespace latigo::fit
