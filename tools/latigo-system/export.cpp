#include "export.h"

#include <latigo/latigo_errors.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <fstream>
#include <latigo/latigo.hpp>
#include <numbers>
#include <optional>

#include "measure.h"
#include "methods.h"
#include "section.h"

namespace latigo::system {

namespace {

constexpr double Degree = std::numbers::pi / 180;
constexpr double ArcSecond = std::numbers::pi / 648000;

// A PROJ string: words that begin with +.
class Words {
 public:
  explicit Words(std::string text) : text_(std::move(text)) {}
  Words& Add(const char* name, double value) {
    text_.append(" +").append(name).append("=").append(Digits(Clean(value)));
    return *this;
  }
  Words& AddUnless(double usual, const char* name, double value) { return value != usual ? Add(name, value) : *this; }
  Words& Add(const std::string& word) {
    text_.append(" ").append(word);
    return *this;
  }
  const std::string& Text() const { return text_; }

 private:
  std::string text_;
};

// What the library says of a section.
struct Object {
  api::Geodesy geodesy;
  GeodesyParams params;
  EllDiff shift;
  Adjustment local;

  bool IsShifted() const {
    return shift.DeltaX != 0 || shift.DeltaY != 0 || shift.DeltaZ != 0 || shift.DeltaRX != 0 || shift.DeltaRY != 0 ||
           shift.DeltaRZ != 0;
  }
  bool IsSphere() const { return params.InvFlattening >= SphereInverseFlattening / 10; }
  bool CountsMetres() const {
    return params.Kind == LATIGO_KIND_OBLIQUE_STEREOGRAPHIC || params.Kind == LATIGO_KIND_POLAR_STEREOGRAPHIC ||
           params.Kind == LATIGO_KIND_MERCATOR_ON_SPHERE;
  }
  double ProjectionUnit() const { return CountsMetres() ? 1 : ExactUnit(params.Unit); }
};

Object Open(const std::string& file, const std::string& section) {
  if (!std::ifstream(file)) {
    throw Refused(std::strerror(errno));
  }
  auto made = api::Geodesy::CreateFileGeodesy(file.c_str(), section.c_str());
  constexpr int GeoidMissing = 9;  // which no export needs
  if (!made.value || (!made && made.code != GeoidMissing)) {
    throw Refused("there is no such section, or it does not open: error " + std::to_string(made.code) + ": " +
                  LatigoErrorText(made.code, "CreateFileGeodesy"));
  }
  Object object{std::move(made.value), {}, {}, {}};
  object.params = object.geodesy.GetGeodesyParams().value;
  object.shift = object.geodesy.GetEllDiff().value;
  object.local = object.geodesy.GetAdjustment().value;
  if (!object.geodesy.GetEllModel().value.empty()) {
    throw Refused("PROJ does not read its datum grid (DynDatum)");
  }
  return object;
}

// The local grid: none, or a similarity.
struct LocalGrid {
  bool active = false;
  double rotation = 0;  // radians
  double scale = 1;
  bool reverseX = false;
  bool reverseY = false;
};

LocalGrid LocalGridOf(const Object& object) {
  const std::uint32_t type = object.local.AdjustType & 0xffffU;
  if (type >= 2 && type <= 16) {
    throw Refused("its local grid of AdjustType " + std::to_string(type) + " is a fixed polynomial of the library");
  }
  if (type != 1) {
    return {};
  }
  return {true, object.local.AdjustRotation, object.local.AdjustScale,
          (object.local.AdjustType & LATIGO_REVERSE_X) != 0, (object.local.AdjustType & LATIGO_REVERSE_Y) != 0};
}

// What a local grid becomes as a part of the projection itself: another gamma, a unit, axes to the west and south. None
// if it is more than that.
struct Absorbed {
  double rotation = 0;  // radians, of a Hotine grid about its false origin
  double unit = 1;      // metres per grid unit
  std::string axis;     // of +axis; empty for east and north
};

std::optional<Absorbed> Absorb(const Object& object, const LocalGrid& grid) {
  const GeodesyParams& params = object.params;
  const Adjustment& local = object.local;
  Absorbed absorbed{0, object.ProjectionUnit(), ""};
  if (!grid.active) {
    return absorbed;
  }
  const bool aboutFalseOrigin = local.AdjustOrigX == params.FalseEasting && local.AdjustX == params.FalseEasting &&
                                local.AdjustOrigY == params.FalseNorthing && local.AdjustY == params.FalseNorthing;
  const bool aboutZero = local.AdjustOrigX == 0 && local.AdjustOrigY == 0 && local.AdjustX == 0 && local.AdjustY == 0;
  const bool hotine = params.Kind == LATIGO_KIND_HOTINE || params.Kind == LATIGO_KIND_RSO;
  const bool rotates = grid.rotation != 0;
  const bool scales = grid.scale != 1;
  if ((rotates && (scales || !hotine || !aboutFalseOrigin)) || (scales && (!aboutZero || grid.scale < 0)) ||
      (!rotates && !scales && !aboutZero && !aboutFalseOrigin)) {
    return std::nullopt;
  }
  // PROJ converts no system of this method that has a false origin.
  if (params.Kind == LATIGO_KIND_TRANSVERSE_MERCATOR && grid.reverseX && grid.reverseY &&
      (params.FalseEasting != 0 || params.FalseNorthing != 0)) {
    return std::nullopt;
  }
  absorbed.rotation = grid.rotation;
  // Units of the object rather than the quotient, which has lost a digit.
  absorbed.unit =
      std::abs(absorbed.unit / grid.scale / params.Unit - 1) < 1e-15 ? params.Unit : absorbed.unit / grid.scale;
  if (grid.reverseX || grid.reverseY) {
    absorbed.axis = std::string(grid.reverseX ? "w" : "e") + (grid.reverseY ? "s" : "n") + "u";
  }
  return absorbed;
}

// Azimuth of the central line at the natural origin: gamma_0 = asin(sin(alpha) / D).
double AzimuthAtNaturalOrigin(const GeodesyParams& params) {
  const double f = 1 / params.InvFlattening;
  const double e2 = f * (2 - f);
  const double c = std::cos(params.RefLatitude);
  const double s = std::sin(params.RefLatitude);
  const double b = std::sqrt(1 + e2 * c * c * c * c / (1 - e2));
  const double d = b * std::sqrt(1 - e2) / (std::sqrt(1 - e2 * s * s) * c);
  return std::asin(std::sin(params.SkewAzimuth) / d);
}

Words Ellipsoid(const Object& object, Words words) {
  return object.IsSphere() ? words.Add("R", object.params.SemiMajorAxis)
                           : words.Add("a", object.params.SemiMajorAxis).Add("rf", object.params.InvFlattening);
}

// The projection, in the shape that PROJ has it; the false origin is metres, in a unit of its own.
Words Projection(const Object& object, double rotation) {
  const GeodesyParams& p = object.params;
  const double lat0 = p.RefLatitude / Degree;
  const auto about = [&](const char* name) {
    return Words(std::string("+proj=") + name).Add("lat_0", lat0).Add("lon_0", p.CentralMeridian / Degree);
  };
  switch (p.Kind) {
    case LATIGO_KIND_LAMBERT:
      return (p.NorthParallel == p.SouthParallel && p.NorthParallel == p.RefLatitude
                  ? about("lcc").Add("lat_1", p.NorthParallel / Degree)
                  : about("lcc").Add("lat_1", p.NorthParallel / Degree).Add("lat_2", p.SouthParallel / Degree))
          .AddUnless(1, "k_0", p.ScaleFactor);
    case LATIGO_KIND_MERCATOR:
      if (object.IsSphere() && p.SemiMajorAxis == 6378137 && lat0 == 0 && !object.IsShifted()) {
        return Words("+proj=webmerc").Add("lon_0", p.CentralMeridian / Degree);
      }
      return Words("+proj=merc").Add("lat_ts", lat0).Add("lon_0", p.CentralMeridian / Degree);
    case LATIGO_KIND_TRANSVERSE_MERCATOR:
      return about("tmerc").Add("k_0", p.ScaleFactor);
    case LATIGO_KIND_OBLIQUE_STEREOGRAPHIC:
      return about("sterea").Add("k_0", p.ScaleFactor);
    case LATIGO_KIND_OBLIQUE_CYLINDRICAL:
      return about("somerc").Add("k_0", p.ScaleFactor);
    case LATIGO_KIND_HOTINE:
    case LATIGO_KIND_RSO: {
      const double own = p.Kind == LATIGO_KIND_HOTINE ? p.SkewAzimuth : AzimuthAtNaturalOrigin(p);
      return Words("+proj=omerc +no_uoff")
          .Add("lat_0", lat0)
          .Add("lonc", p.CentralMeridian / Degree)
          .Add("alpha", p.SkewAzimuth / Degree)
          .Add("gamma", (own + rotation) / Degree)
          .Add("k_0", p.ScaleFactor);
    }
    case LATIGO_KIND_AZIMUTHAL_EQUIDISTANT:
      return about("aeqd");
    case LATIGO_KIND_MERCATOR_ON_SPHERE:
      return Words("+proj=merc").Add("R", 6378388);
    case LATIGO_KIND_ALBERS:
      return about("aea").Add("lat_1", p.NorthParallel / Degree).Add("lat_2", p.SouthParallel / Degree);
    case LATIGO_KIND_CASSINI:
      return about("cass");
    default: {  // polar stereographic: ScaleFactor belongs to the pole within 1e-5 radians of it
      const double pole = p.RefLatitude < 0 ? -90 : 90;
      Words words = Words("+proj=stere").Add("lat_0", pole);
      if (std::abs(std::abs(p.RefLatitude) - std::numbers::pi / 2) <= 1e-5) {
        words.Add("k_0", p.ScaleFactor);
      } else {
        words.Add("lat_ts", lat0);
      }
      return words.Add("lon_0", p.CentralMeridian / Degree);
    }
  }
}

Words WithOriginAndUnit(const Object& object, Words words, double unit) {
  if (object.params.Kind != LATIGO_KIND_MERCATOR_ON_SPHERE) {
    words.Add("x_0", object.params.FalseEasting * object.ProjectionUnit());
    words.Add("y_0", object.params.FalseNorthing * object.ProjectionUnit());
  }
  constexpr double UsSurveyFoot = 1200.0 / 3937;
  return unit == 1              ? words.Add("+units=m")
         : unit == UsSurveyFoot ? words.Add("+units=us-ft")
                                : words.Add("to_meter", unit);
}

// A system: with the shift as +towgs84, from the object's datum and by the position vector convention.
std::string CrsString(const Object& object, const Absorbed& absorbed) {
  Words words = WithOriginAndUnit(object, Projection(object, absorbed.rotation), absorbed.unit);
  const EllDiff& shift = object.shift;
  constexpr double Wgs84InverseFlattening = 298.257223563;
  const bool wgs84 = object.params.SemiMajorAxis == 6378137 &&
                     (std::abs(object.params.InvFlattening - Wgs84InverseFlattening) < 1e-11 ||
                      words.Text().find("webmerc") != std::string::npos);
  if (!object.IsShifted() && wgs84) {
    words.Add("+datum=WGS84");
  } else if (object.params.Kind != LATIGO_KIND_MERCATOR_ON_SPHERE) {
    words = Ellipsoid(object, words);
  }
  if (object.IsShifted()) {
    std::string values = "+towgs84=";
    for (const double value :
         {-shift.DeltaX, -shift.DeltaY, -shift.DeltaZ, shift.DeltaRX / ArcSecond, shift.DeltaRY / ArcSecond,
          shift.DeltaRZ / ArcSecond, (1 / shift.DeltaScale - 1) * 1e6}) {
      values += Digits(std::abs(value) < 1e-12 ? 0 : std::stod(Digits(std::round(value * 1e10) / 1e10))) + ",";
    }
    values.pop_back();
    words.Add(values);
  }
  if (!absorbed.axis.empty()) {
    words.Add("+axis=" + absorbed.axis);
  }
  return words.Add("+no_defs +type=crs").Text();
}

// From WGS 84 to local coordinates, step by step as the library does it.
std::string Pipeline(const Object& object, const LocalGrid& grid) {
  Words words("+proj=pipeline +step +proj=axisswap +order=2,1 +step +proj=unitconvert +xy_in=deg +xy_out=rad");
  if (const EllDiff& shift = object.shift; object.IsShifted()) {
    words.Add("+step +proj=cart +ellps=WGS84 +step +proj=helmert +convention=coordinate_frame");
    words.Add("x", shift.DeltaX).Add("y", shift.DeltaY).Add("z", shift.DeltaZ);
    words.Add("s", std::round((shift.DeltaScale - 1) * 1e15) / 1e9);  // what the subtraction leaves
    words.Add("rx", shift.DeltaRX / ArcSecond)
        .Add("ry", shift.DeltaRY / ArcSecond)
        .Add("rz", shift.DeltaRZ / ArcSecond);
    words = Ellipsoid(object, words.Add("+step +inv +proj=cart"));
  }
  words.Add("+step");
  words.Add(WithOriginAndUnit(object, Projection(object, 0), object.ProjectionUnit()).Text());
  if (object.params.Kind != LATIGO_KIND_MERCATOR_ON_SPHERE) {
    words = Ellipsoid(object, words);
  }
  if (grid.active) {
    // X = q (x - x0) + p (y - y0) + X0, Y = q (y - y0) - p (x - x0) + Y0, and the flags negate.
    const Adjustment& local = object.local;
    const double p = grid.scale * std::sin(grid.rotation);
    const double q = grid.scale * std::cos(grid.rotation);
    const double signX = grid.reverseX ? -1 : 1;
    const double signY = grid.reverseY ? -1 : 1;
    words.Add("+step +proj=affine");
    words.Add("xoff", signX * (local.AdjustX - q * local.AdjustOrigX - p * local.AdjustOrigY));
    words.Add("yoff", signY * (local.AdjustY - q * local.AdjustOrigY + p * local.AdjustOrigX));
    words.Add("s11", signX * q).Add("s12", signX * p).Add("s21", -signY * p).Add("s22", signY * q);
  }
  return words.Text();
}

std::string Wkt(const Database& database, const std::string& crs, const std::string& name) {
  const Pj object(proj_create(database.Context(), crs.c_str()));
  const char* const text = object ? proj_as_wkt(database.Context(), object.get(), PJ_WKT2_2019, nullptr) : nullptr;
  if (text == nullptr) {
    throw Refused("PROJ makes no WKT of " + crs + ": " + database.Complaint("no reason"));
  }
  std::string wkt = text;
  const std::string unnamed = "PROJCRS[\"unknown\"";
  if (const std::size_t at = wkt.find(unnamed); at != std::string::npos) {
    std::string quoted = OneLine(name);
    for (std::size_t i = 0; (i = quoted.find('"', i)) != std::string::npos; i += 2) {
      quoted.insert(i, 1, '"');
    }
    wkt.replace(at, unnamed.size(), "PROJCRS[\"" + quoted + "\"");
  }
  return wkt + "\n";
}

}  // namespace

Exported Export(const Database& database, const std::string& file, const std::string& section) {
  Object object = Open(file, section);
  const LocalGrid grid = LocalGridOf(object);
  Exported exported;
  exported.pipeline = Pipeline(object, grid);
  if (object.params.Kind == LATIGO_KIND_AZIMUTHAL_EQUIDISTANT) {
    exported.approximation = "PROJ's azimuthal equidistant is exact, and kind 8 a series";
  }
  const auto measure = [&](PJ* transformation) {
    const bool counted = object.params.Kind != LATIGO_KIND_MERCATOR_ON_SPHERE;  // that one from Greenwich
    return MeasurePipeline(object.geodesy, transformation, object.params.RefLatitude / Degree,
                           counted ? object.params.CentralMeridian / Degree : 0, object.ProjectionUnit() / grid.scale);
  };
  const Pj pipeline(proj_create(database.Context(), exported.pipeline.c_str()));
  if (!pipeline) {
    throw Refused("PROJ refuses " + exported.pipeline + ": " + database.Complaint("no reason"));
  }
  exported.largestDifference = measure(pipeline.get());
  if (!std::isfinite(exported.largestDifference)) {
    throw Refused("not every position within two degrees of its origin converts, so nothing can be said of the export");
  }
  constexpr double Wrong = 1;  // metre; the way from WGS 84 by +towgs84 is within centimetres
  if (exported.largestDifference > Wrong && exported.approximation.empty()) {
    throw Refused("PROJ would be " + Length(exported.largestDifference) + " from it");
  }
  const std::optional<Absorbed> absorbed = Absorb(object, grid);
  if (!absorbed) {
    exported.noCrs = "its local grid rotates, scales, shifts or reverses the projection as no system of PROJ does";
    return exported;
  }
  exported.crs = CrsString(object, *absorbed);
  exported.wkt = Wkt(database, exported.crs, section);
  // A system has no words for some of what a section has, and PROJ drops some of those that it has.
  for (const std::string& text : {exported.crs, exported.wkt}) {
    const Pj system(proj_create_crs_to_crs(database.Context(), "EPSG:4326", text.c_str(), nullptr));
    const double difference = system ? measure(system.get()) : HUGE_VAL;
    if (!(difference < exported.largestDifference + Wrong)) {
      exported.noCrs = (std::isfinite(difference) ? "a system of PROJ would be " + Length(difference) + " from it"
                                                  : std::string("PROJ does not convert to a system of it")) +
                       "; the pipeline does as the section";
    }
  }
  return exported;
}

}  // namespace latigo::system
