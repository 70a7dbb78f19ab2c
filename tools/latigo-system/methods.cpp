#include "methods.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <iterator>
#include <numbers>

namespace latigo::system {

namespace {

// Parameters by the codes that the EPSG data set gives them, with the symbols of IOGP Guidance Note 7-2.
enum ParameterCode {
  LatitudeOfNaturalOrigin = 8801,   // phi_O
  LongitudeOfNaturalOrigin = 8802,  // lambda_O
  ScaleAtNaturalOrigin = 8805,      // k_O
  FalseEasting = 8806,              // FE
  FalseNorthing = 8807,             // FN
  LatitudeOfCentre = 8811,          // phi_c
  LongitudeOfCentre = 8812,         // lambda_c
  AzimuthOfInitialLine = 8813,      // alpha_c
  AngleRectifiedToSkew = 8814,      // gamma_c
  ScaleOnInitialLine = 8815,        // k_c
  EastingAtCentre = 8816,           // E_c
  NorthingAtCentre = 8817,          // N_c
  LatitudeOfFalseOrigin = 8821,     // phi_F
  LongitudeOfFalseOrigin = 8822,    // lambda_F
  FirstParallel = 8823,             // phi_1
  SecondParallel = 8824,            // phi_2
  EastingAtFalseOrigin = 8826,      // E_F
  NorthingAtFalseOrigin = 8827,     // N_F
  LatitudeOfParallel = 8832,        // phi_F of the polar variants
  LongitudeOfOrigin = 8833,         // lambda_O of the polar variants
  EllipsoidScaling = 1038,          // K
};

constexpr double Degree = std::numbers::pi / 180;

// Reads the parameters of a method and writes keys.
struct Mapping {
  const Crs& crs;
  Section& section;
  bool metres;  // the kind does not read Unit

  double Degrees(int code) const { return crs.method.Find(code).Degrees(); }
  double Radians(int code) const { return crs.method.Find(code).Si(); }
  double Factor(int code) const { return crs.method.Find(code).Si(); }

  // A length in the unit of the kind's own coordinates; as it stands in the data if it has that unit there.
  double Length(int code) const {
    const Parameter& length = crs.method.Find(code);
    const double unit = metres ? 1 : crs.Unit();
    return length.factor == unit ? length.value : InUnits(length.Si());
  }
  double InUnits(double inMetres) const { return metres ? inMetres : Clean(inMetres / crs.Unit()); }

  void Projection(const char* keyword) const { section.Set("Projection", keyword); }
  void Scale(double k) const { section.Set("ScaleFactor", k == 1 ? 0 : k); }
  // The longitude of the data counts from the prime meridian, that of the section from Greenwich.
  void Meridian(double longitude) const {
    const double east = Clean(longitude + crs.primeMeridian);
    section.Set("CentralMeridian", east > 180 ? east - 360 : east < -180 ? east + 360 : east);
  }
  void Meridian(ParameterCode code) const { Meridian(Degrees(code)); }
  void Latitude(double degrees) const { section.Set("RefLatitude", degrees); }
  void Parallels(double first, double second) const {
    section.Set("NorthParallel", std::max(first, second));
    section.Set("SouthParallel", std::min(first, second));
  }
  void FalseOrigin(double east, double north) const {
    section.Set("FalseEasting", east);
    section.Set("FalseNorthing", north);
  }
  void FalseOrigin(ParameterCode east, ParameterCode north) const { FalseOrigin(Length(east), Length(north)); }

  double SquaredEccentricity() const {
    const double f = crs.inverseFlattening != 0 ? 1 / crs.inverseFlattening : 0;
    return f * (2 - f);
  }
};

// ---- Lambert conformal conic ----

// 9801: phi_1 = phi_2 = phi_O, and the scale is k_O there.
void LambertOneParallel(const Mapping& map) {
  map.Projection("Lambert");
  map.Scale(map.Factor(ScaleAtNaturalOrigin));
  map.Meridian(LongitudeOfNaturalOrigin);
  map.Latitude(map.Degrees(LatitudeOfNaturalOrigin));
  map.Parallels(map.Degrees(LatitudeOfNaturalOrigin), map.Degrees(LatitudeOfNaturalOrigin));
  map.FalseOrigin(FalseEasting, FalseNorthing);
}

// 9826: W = FE - r sin theta. ReverseX negates the section's easting, so that starts from -FE.
void LambertWestOriented(const Mapping& map) {
  LambertOneParallel(map);
  map.FalseOrigin(-map.Length(FalseEasting), map.Length(FalseNorthing));
}

// 9802
void LambertTwoParallels(const Mapping& map) {
  map.Projection("Lambert");
  map.Meridian(LongitudeOfFalseOrigin);
  map.Latitude(map.Degrees(LatitudeOfFalseOrigin));
  map.Parallels(map.Degrees(FirstParallel), map.Degrees(SecondParallel));
  map.FalseOrigin(EastingAtFalseOrigin, NorthingAtFalseOrigin);
}

// 1051: the ellipsoid is taken K times as large, which multiplies every radius r as a scale factor does.
void LambertMichigan(const Mapping& map) {
  LambertTwoParallels(map);
  map.Scale(map.Factor(EllipsoidScaling));
}

// 9803: theta = n (lambda - lambda_F) - 29.2985". The angle is a shift of the meridian by 29.2985" / n.
void LambertBelgium(const Mapping& map) {
  LambertTwoParallels(map);
  const double e = std::sqrt(map.SquaredEccentricity());
  const auto m = [&](double phi) { return std::cos(phi) / std::sqrt(1 - std::pow(e * std::sin(phi), 2)); };
  const auto t = [&](double phi) {
    const double s = e * std::sin(phi);
    return std::tan(std::numbers::pi / 4 - phi / 2) / std::pow((1 - s) / (1 + s), e / 2);
  };
  const double phi1 = map.Radians(FirstParallel);
  const double phi2 = map.Radians(SecondParallel);
  const double n = (std::log(m(phi1)) - std::log(m(phi2))) / (std::log(t(phi1)) - std::log(t(phi2)));
  map.Meridian(map.Degrees(LongitudeOfFalseOrigin) + 29.2985 / 3600 / n);
}

// ---- Mercator ----

// 9804: kind 2 has the latitude of true scale instead of k_O: nu cos(phi) = a k_O.
void MercatorA(const Mapping& map) {
  if (map.Degrees(LatitudeOfNaturalOrigin) != 0) {
    throw Refused("its latitude of natural origin is not the equator");
  }
  const double k = map.Factor(ScaleAtNaturalOrigin);
  if (!(k > 0 && k <= 1)) {
    throw Refused("its scale factor is above 1, and the section has a latitude of true scale");
  }
  const double e2 = map.SquaredEccentricity();
  map.Projection("Mercator");
  map.Meridian(LongitudeOfNaturalOrigin);
  map.Latitude(std::acos(k * std::sqrt((1 - e2) / (1 - k * k * e2))) / Degree);
  map.FalseOrigin(FalseEasting, FalseNorthing);
}

// 9805: FN belongs to the equator, as in kind 2.
void MercatorB(const Mapping& map) {
  map.Projection("Mercator");
  map.Meridian(LongitudeOfNaturalOrigin);
  map.Latitude(map.Degrees(FirstParallel));
  map.FalseOrigin(FalseEasting, FalseNorthing);
}

// 1024: the formulas of a sphere with radius a, and the latitudes of the ellipsoid as they stand.
void PseudoMercator(const Mapping& map) {
  if (map.Degrees(LatitudeOfNaturalOrigin) != 0) {
    throw Refused("its latitude of natural origin is not the equator");
  }
  map.Projection("Mercator");
  map.section.Set("Flattening", SphereInverseFlattening);
  map.section.Comment("Mercator on a sphere, of latitudes on the ellipsoid: lines and ecef are those of the sphere.");
  map.Meridian(LongitudeOfNaturalOrigin);
  map.FalseOrigin(FalseEasting, FalseNorthing);
}

// ---- Transverse Mercator and Cassini ----

// 9807, 1111
void TransverseMercator(const Mapping& map) {
  map.Projection("TransMerc");
  map.Scale(map.Factor(ScaleAtNaturalOrigin));
  map.Meridian(LongitudeOfNaturalOrigin);
  map.Latitude(map.Degrees(LatitudeOfNaturalOrigin));
  map.FalseOrigin(FalseEasting, FalseNorthing);
}

// 9808: W = FE - ..., S = FN - ...; the section's coordinates are negated, so they start from -FE and -FN.
void TransverseMercatorSouth(const Mapping& map) {
  TransverseMercator(map);
  map.FalseOrigin(-map.Length(FalseEasting), -map.Length(FalseNorthing));
}

// 9806
void Cassini(const Mapping& map) {
  map.Projection("CAS");
  map.Meridian(LongitudeOfNaturalOrigin);
  map.Latitude(map.Degrees(LatitudeOfNaturalOrigin));
  map.FalseOrigin(FalseEasting, FalseNorthing);
}

// ---- Stereographic ----

// 9809
void ObliqueStereographic(const Mapping& map) {
  map.Projection("OST");
  map.Scale(map.Factor(ScaleAtNaturalOrigin));
  map.Meridian(LongitudeOfNaturalOrigin);
  map.Latitude(map.Degrees(LatitudeOfNaturalOrigin));
  map.FalseOrigin(FalseEasting, FalseNorthing);
}

// 9810: k_O is the scale at the pole.
void PolarStereographicA(const Mapping& map) {
  const double latitude = map.Degrees(LatitudeOfNaturalOrigin);
  if (std::abs(latitude) != 90) {
    throw Refused("its latitude of natural origin is no pole");
  }
  map.Projection("PST");
  map.Scale(map.Factor(ScaleAtNaturalOrigin));
  map.Meridian(LongitudeOfNaturalOrigin);
  map.Latitude(latitude);
  map.FalseOrigin(FalseEasting, FalseNorthing);
}

// 9829: the scale is 1 on the parallel phi_F, and the false origin is the pole.
void PolarStereographicB(const Mapping& map) {
  map.Projection("PST");
  map.Meridian(LongitudeOfOrigin);
  map.Latitude(map.Degrees(LatitudeOfParallel));
  map.FalseOrigin(FalseEasting, FalseNorthing);
}

// 9830: as 9829, but the false origin is the point (phi_F, lambda_O), rho_F = a m_F from the pole.
void PolarStereographicC(const Mapping& map) {
  map.Projection("PST");
  map.Meridian(LongitudeOfOrigin);
  map.Latitude(map.Degrees(LatitudeOfParallel));
  const double phi = map.Radians(LatitudeOfParallel);
  const double rho =
      map.crs.semiMajorAxis * std::cos(phi) / std::sqrt(1 - map.SquaredEccentricity() * std::pow(std::sin(phi), 2));
  map.FalseOrigin(map.Length(EastingAtFalseOrigin), map.Length(NorthingAtFalseOrigin) + (phi < 0 ? -rho : rho));
}

// ---- Oblique Mercator ----

// The grid of kind 6 is rotated by alpha_c. Where the data has another gamma_c, the local grid rotates by the
// difference about the false origin.
void Hotine(const Mapping& map, double east, double north) {
  const double alpha = map.Degrees(AzimuthOfInitialLine);
  const double gamma = map.Degrees(AngleRectifiedToSkew);
  if (std::cos(alpha * Degree) < -1e-12) {
    // asin(sin(alpha) / D) is the line of 180 degrees less alpha then.
    throw Refused("its azimuth of " + Digits(alpha) + " degrees is more than 90 from north");
  }
  map.Projection("HOM");
  map.Scale(map.Factor(ScaleOnInitialLine));
  map.Meridian(LongitudeOfCentre);
  map.Latitude(map.Degrees(LatitudeOfCentre));
  map.section.Set("SkewAzimuth", alpha);
  map.FalseOrigin(east, north);
  if (gamma != alpha) {
    map.section.Set("AdjustType", "1");
    map.section.Set("AdjustRotation", Clean(gamma - alpha));
    for (const char* origin : {"AdjustX", "AdjustOrigX"}) {
      map.section.Set(origin, east);
    }
    for (const char* origin : {"AdjustY", "AdjustOrigY"}) {
      map.section.Set(origin, north);
    }
  }
}

// 9815 with alpha_c = gamma_c = 90 degrees: its sphere is the one of Gauss, and the initial line is the great circle
// about which kind 5 is drawn. Kind 6 would have its natural origin a quarter turn away, where its inverse ends.
bool IsObliqueCylindrical(const Mapping& map) {
  return map.Degrees(AzimuthOfInitialLine) == 90 && map.Degrees(AngleRectifiedToSkew) == 90;
}

void ObliqueCylindrical(const Mapping& map, ParameterCode east, ParameterCode north) {
  map.Projection("OCY");
  map.Scale(map.Factor(ScaleOnInitialLine));
  map.Meridian(LongitudeOfCentre);
  map.Latitude(map.Degrees(LatitudeOfCentre));
  map.FalseOrigin(east, north);
}

// 9812: the false origin is the natural origin, as in kind 6. With 90 degrees that is a quarter turn away, and
// definitions that have them mean the centre: older ones of the Swiss grid.
void HotineA(const Mapping& map) {
  if (IsObliqueCylindrical(map)) {
    ObliqueCylindrical(map, FalseEasting, FalseNorthing);
    return;
  }
  Hotine(map, map.Length(FalseEasting), map.Length(FalseNorthing));
}

// 9815: the false origin is the centre, u_c along the initial line from the natural origin:
// u_c = (A / B) atan(sqrt(D^2 - 1) / cos(alpha_c)), with the sign of phi_c.
void HotineB(const Mapping& map) {
  if (IsObliqueCylindrical(map)) {
    ObliqueCylindrical(map, EastingAtCentre, NorthingAtCentre);
    return;
  }
  const double e2 = map.SquaredEccentricity();
  const double phi = map.Radians(LatitudeOfCentre);
  const double alpha = map.Radians(AzimuthOfInitialLine);
  const double gamma = map.Radians(AngleRectifiedToSkew);
  const double w = 1 - e2 * std::pow(std::sin(phi), 2);
  const double b = std::sqrt(1 + e2 * std::pow(std::cos(phi), 4) / (1 - e2));
  const double a = map.crs.semiMajorAxis * b * map.Factor(ScaleOnInitialLine) * std::sqrt(1 - e2) / w;
  const double d = b * std::sqrt(1 - e2) / (std::cos(phi) * std::sqrt(w));
  const double u =
      map.InUnits(std::copysign(a / b * std::atan2(std::sqrt(std::max(d * d - 1, 0.0)), std::cos(alpha)), phi));
  Hotine(map, map.Length(EastingAtCentre) - u * std::sin(gamma), map.Length(NorthingAtCentre) - u * std::cos(gamma));
}

// ---- The others ----

// 9822
void Albers(const Mapping& map) {
  LambertTwoParallels(map);
  map.Projection("ALA");
}

// 9831, 9832
void AzimuthalEquidistant(const Mapping& map) {
  map.Projection("AZD");
  map.Meridian(LongitudeOfNaturalOrigin);
  map.Latitude(map.Degrees(LatitudeOfNaturalOrigin));
  map.FalseOrigin(FalseEasting, FalseNorthing);
}

struct Row {
  int code;
  const char* name;  // as the database's list of systems has it
  void (*express)(const Mapping&);
  bool metres;                // the kind does not read Unit
  const char* approximation;  // how far from the method the section is; null for not at all
};

constexpr Row Methods[] = {
    {9801, "Lambert Conic Conformal (1SP)", LambertOneParallel, false, nullptr},
    {9802, "Lambert Conic Conformal (2SP)", LambertTwoParallels, false, nullptr},
    {9803, "Lambert Conic Conformal (2SP Belgium)", LambertBelgium, false, nullptr},
    {9826, "Lambert Conic Conformal (West Orientated)", LambertWestOriented, false, nullptr},
    {1051, "Lambert Conic Conformal (2SP Michigan)", LambertMichigan, false, nullptr},
    {9804, "Mercator (variant A)", MercatorA, false, nullptr},
    {9805, "Mercator (variant B)", MercatorB, false, nullptr},
    {1024, "Popular Visualisation Pseudo Mercator", PseudoMercator, false, nullptr},
    {9807, "Transverse Mercator", TransverseMercator, false, nullptr},
    {9808, "Transverse Mercator (South Orientated)", TransverseMercatorSouth, false, nullptr},
    {1111, "Transverse Mercator 3D", TransverseMercator, false, nullptr},
    {9806, "Cassini-Soldner", Cassini, false, nullptr},
    {9809, "Oblique Stereographic", ObliqueStereographic, true, nullptr},
    {9810, "Polar Stereographic (variant A)", PolarStereographicA, true, nullptr},
    {9829, "Polar Stereographic (variant B)", PolarStereographicB, true, nullptr},
    {9830, "Polar Stereographic (variant C)", PolarStereographicC, true, nullptr},
    {9812, "Hotine Oblique Mercator (variant A)", HotineA, false, nullptr},
    {9815, "Hotine Oblique Mercator (variant B)", HotineB, false, nullptr},
    {9822, "Albers Equal Area", Albers, false, nullptr},
    {9831, "Guam Projection", AzimuthalEquidistant, false,
     "distances by Clarke's series instead of the formulas for Guam"},
    {9832, "Modified Azimuthal Equidistant", AzimuthalEquidistant, false,
     "the inverse ends at the fourth power of the distance"},
};

const Row* RowOf(int code) {
  const auto* const found =
      std::find_if(std::begin(Methods), std::end(Methods), [&](const Row& row) { return row.code == code; });
  return code != 0 && found != std::end(Methods) ? found : nullptr;
}

// Axes to the west and south are the local grid's, and so is the unit of a kind that has none.
void SetAxes(const Crs& crs, bool metres, Section& section) {
  const bool reverseX = crs.MapAxis(true).reversed;
  const bool reverseY = crs.MapAxis(false).reversed;
  const bool scaled = metres && crs.Unit() != 1;
  if (reverseX || reverseY || scaled) {
    section.Set("AdjustType", "1");
  }
  if (scaled) {
    section.Comment("The kind counts metres: its false origin is metres, and AdjustScale makes grid units.");
    section.Set("AdjustScale", 1 / crs.Unit());
  }
  if (reverseX) {
    section.Set("ReverseX", "yes");
  }
  if (reverseY) {
    section.Set("ReverseY", "yes");
  }
}

// Units of which the library's table of names has fewer digits than the data, by 0.05 mm in 10 000 km at most.
struct NamedPair {
  double named;
  double exact;
};
constexpr NamedPair NamedUnits[] = {
    {0.3048006096, 1200.0 / 3937},        // US survey foot
    {20.1167651216, 20.116765121552632},  // Sears's chain
};
constexpr double SameUnit = 5e-12;

}  // namespace

Section Express(const Crs& crs) {
  const Row* const row = RowOf(crs.method.code);
  if (row == nullptr) {
    throw Refused("no kind expresses its method, " + crs.method.Label());
  }
  for (const Parameter& each : crs.method.parameters) {
    if (each.code == 0 && each.value != 0) {
      throw Refused("its parameter " + each.name + " is none of " + crs.method.Label());
    }
  }
  Section section;
  const Mapping map{crs, section, row->metres};
  section.Set("SemiMajorAxis", crs.semiMajorAxis);
  section.Set("Flattening", crs.inverseFlattening != 0 ? crs.inverseFlattening : SphereInverseFlattening);
  const double unit = NamedUnit(crs.Unit());
  section.Set("Unit", unit == 1 ? 0 : unit);
  if (crs.verticalUnit != 0 && crs.verticalUnit != 1) {
    section.Set("VertUnit", NamedUnit(crs.verticalUnit));
  }
  row->express(map);
  SetAxes(crs, row->metres, section);
  return section;
}

bool IsExpressible(const std::string& methodName) {
  return std::any_of(std::begin(Methods), std::end(Methods), [&](const Row& row) { return row.name == methodName; });
}

bool SameName(std::string_view one, std::string_view other) {
  const auto letters = [](std::string_view name) {
    std::string kept;
    for (const char each : name) {
      if (std::isalnum(static_cast<unsigned char>(each)) != 0) {
        kept += static_cast<char>(std::tolower(static_cast<unsigned char>(each)));
      }
    }
    return kept;
  };
  return letters(one) == letters(other);
}

int CodeOfMethod(const std::string& name) {
  const auto* const found =
      std::find_if(std::begin(Methods), std::end(Methods), [&](const Row& row) { return SameName(row.name, name); });
  return found != std::end(Methods) ? found->code : 0;
}

std::string ApproximationOf(int method) {
  const Row* const row = RowOf(method);
  return row != nullptr && row->approximation != nullptr ? row->approximation : "";
}

double NamedUnit(double unit) {
  const NamedPair* const found = std::find_if(std::begin(NamedUnits), std::end(NamedUnits), [&](const NamedPair& each) {
    return std::abs(unit / each.named - 1) < SameUnit;
  });
  return found != std::end(NamedUnits) ? found->named : unit;
}

double ExactUnit(double unit) {
  const NamedPair* const found = std::find_if(std::begin(NamedUnits), std::end(NamedUnits),
                                              [&](const NamedPair& each) { return each.named == unit; });
  return found != std::end(NamedUnits) ? found->exact : unit;
}

}  // namespace latigo::system
