#include "datum/ellipsoid_table.h"

#include <cmath>

namespace latigo {

namespace {

// Largest differences of a (metres) and 1/f (dimensionless) from a matching row.
constexpr double SemiMajorAxisTolerance = 0.0001;
constexpr double InvFlatteningTolerance = 1e-10;

struct NamedEllipsoid {
  const char* name;
  double a;              // semi-major axis, metres
  double invFlattening;  // 1/f
};

// The first matching row is used, so the order matters. The row without a name ends the table.
// clang-format off
constexpr NamedEllipsoid EllipsoidTable[] = {
    {"Airy",                    6377563.396, 299.3249646},
    {"ATS-77",                    6378135.0, 298.257},
    {"Airy Modified",           6377340.189, 299.3249646},
    {"Bessel 1841",             6377397.155, 299.1528128},
    {"Clarke 1866",               6378206.4, 294.9786982},
    {"Clarke 1880",             6378249.145, 293.465},
    {"Clarke-1880 (Arc)",       6378249.145, 293.4663077},
    {"Clarke 1880 (IGN)",         6378249.2, 293.466021294},
    {"Everest",                 6377276.345, 300.8017},
    {"Everest (Malay. & Sing)", 6377304.063, 300.8017},
    {"Everest (India 1956)",    6377301.243, 300.8017},
    {"Everest (Sabah Sarawak)", 6377298.556, 300.8017},
    {"Everest (Malaysia 1969)", 6377295.664, 300.8017},
    {"Everest (Pakistan)",      6377309.613, 300.8017},
    {"Fischer 1960 (Mercury)",    6378166.0, 298.3},
    {"Fischer 1960 Modified",     6378155.0, 298.3},
    {"Fischer 1968",              6378150.0, 298.3},
    {"GRS-1967",                  6378160.0, 298.247167427},
    {"GRS-1980",                  6378137.0, 298.257222101},
    {"Helmert 1906",              6378200.0, 298.3},
    {"Hough",                     6378270.0, 297.0},
    {"Indonesian 1974",           6378160.0, 298.247},
    {"International",             6378388.0, 297.0},
    {"Krassovsky",                6378245.0, 298.3},
    {"SA-1969 & Australian",      6378160.0, 298.25},
    {"WGS-60",                    6378165.0, 298.3},
    {"WGS-66",                    6378145.0, 298.25},
    {"WGS-72",                    6378135.0, 298.26},
    {"WGS-84",                    6378137.0, 298.257223563},
    {nullptr, 0, 0},
};
// clang-format on

}  // namespace

const char* EllipsoidName(double a, double f) {
  const double r = 1 / f;
  for (const NamedEllipsoid* row = EllipsoidTable; row->name != nullptr; ++row) {
    if (std::fabs(a - row->a) < SemiMajorAxisTolerance && std::fabs(r - row->invFlattening) < InvFlatteningTolerance) {
      return row->name;
    }
  }
  return nullptr;
}

}  // namespace latigo
