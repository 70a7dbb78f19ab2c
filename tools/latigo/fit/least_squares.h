// Adjustment of uncorrelated observations by least squares, with the measures of its precision and reliability.
//
// Model: A x = l + v, weights p > 0, v'Pv least. Reference: Mikhail and Ackermann, "Observations and Least Squares"
// (1976); redundancy numbers: Baarda, "A testing procedure for use in geodetic networks" (1968).
#pragma once

#include <Eigen/Core>
#include <vector>

namespace latigo::fit {

struct Adjusted {
  Eigen::VectorXd x;   // unknowns
  Eigen::VectorXd v;   // residuals, A x - l
  Eigen::MatrixXd q;   // cofactors of the unknowns, (A'PA)^-1
  Eigen::VectorXd r;   // redundancy numbers, 0 to 1; they add up to the redundancy
  Eigen::MatrixXd u;   // columns of length 1 at right angles; I - U U' are the cofactors of the weighted residuals
  int redundancy = 0;  // number of observations less that of unknowns
  double s0 = 0;       // standard error of unit weight, sqrt(v'Pv / redundancy); 0 without redundancy
  double condition =
      0;  // of the weighted A with columns of length 1; infinite if A is singular, and nothing else is set
};

// At least as many rows as columns.
Adjusted Adjust(const Eigen::MatrixXd& a, const Eigen::VectorXd& l, const Eigen::VectorXd& p);

// The test of each observation for a blunder. With the standard deviation of an observation of weight 1 known
// beforehand, w = v sqrt(p / r) / sigma is normally distributed (Baarda). Without it sigma is estimated without the
// observation under test, so that a blunder does not hide itself, and w has Student's distribution with one degree of
// freedom less than the redundancy.
//
// Observations of two kinds, as heights and positions, can have errors of different size. Then sigma is estimated from
// those of the same kind, and the degrees of freedom are the sum of their redundancy numbers, rounded, less one.
struct BlunderTest {
  std::vector<double> w;  // NaN where nothing checks the observation
  // For the kind of the largest: a larger |w| occurs once in 1000 observations without a blunder. Infinite: no test.
  double critical = 0;
  double criticalOfAll = 0;       // of many tested observations: a larger |w| occurs in one of 1000 fits; else critical
  int tested = 0;                 // observations with a w
  int beyond = 0;                 // of them those beyond the critical value for their kind
  bool apart = false;             // the two kinds are estimated apart
  int freedom = 0;                // of Student's distribution; 0 for the normal one
  int largest = -1;               // the observation with the largest |w| / critical; -1 if none is checked
  bool blunder = false;           // that |w| is larger than the critical value
  bool probable = false;          // and than that of all observations together
  std::vector<int> alternatives;  // of a blunder: further observations, one of which may be wrong instead
  double without = 0;             // the standard error of unit weight without that observation
  double size = 0;  // of that observation's error, estimated as -v / r: the observation less its true value
};

// A sigma of 0 is unknown; then the estimate is at least the standard deviation of the rounding of an observation.
// The kinds, 0 or 1, of the observations count if sigma is unknown; without them all are alike.
BlunderTest TestForBlunders(const Adjusted& adjusted, const Eigen::VectorXd& p, double sigma, double rounding,
                            const std::vector<int>& kinds = {});

// The value that |t| of Student's distribution exceeds with a probability; with 0 degrees of freedom that of the normal
// distribution.
double StudentLimit(double probability, int freedom);

}  // namespace latigo::fit
