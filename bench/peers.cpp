#include "peers.h"

#include <cmath>
#include <cstdio>
#include <memory>
#include <stdexcept>

#if BENCH_HAS_PROJ
#include <geodesic.h>
#include <proj.h>
#endif
#if BENCH_HAS_GEOGRAPHICLIB
#include <GeographicLib/AlbersEqualArea.hpp>
#include <GeographicLib/AzimuthalEquidistant.hpp>
#include <GeographicLib/CassiniSoldner.hpp>
#include <GeographicLib/Geocentric.hpp>
#include <GeographicLib/Geodesic.hpp>
#include <GeographicLib/LambertConformalConic.hpp>
#include <GeographicLib/PolarStereographic.hpp>
#include <GeographicLib/Rhumb.hpp>
#include <GeographicLib/TransverseMercator.hpp>
#endif

namespace bench {

namespace {

constexpr Units LineUnits = {{Degree, Degree, Degree, Degree}, {1, Degree, 1, 1}};

}  // namespace

std::string ProjNumber(const std::string& key, double value) {
  char text[64];
  std::snprintf(text, sizeof text, " +%s=%.17g", key.c_str(), value);
  return text;
}

std::string ProjAngle(const std::string& key, double radians) {
  return ProjNumber(key, radians / Degree);
}

std::string ProjText(const std::string& name, const GeodesyParams& params, const std::string& extra) {
  return "+proj=" + name + ProjNumber("a", params.SemiMajorAxis) + ProjNumber("rf", params.InvFlattening) +
         ProjNumber("x_0", params.FalseEasting) + ProjNumber("y_0", params.FalseNorthing) + extra;
}

#if BENCH_HAS_PROJ

namespace {

std::shared_ptr<PJ> MakeProj(const std::string& definition) {
  PJ* const object = proj_create(nullptr, definition.c_str());
  if (object == nullptr) {
    throw std::runtime_error("PROJ refuses " + definition);
  }
  return {object, proj_destroy};
}

}  // namespace

void AddProjForward(Row& row, const Task& task, const Values& tolerance, const std::string& definition,
                    const std::string& name) {
  row.Add(PointByPoint(name, task, tolerance, [proj = MakeProj(definition)](const Values& in, Values& out) {
    const PJ_COORD grid = proj_trans(proj.get(), PJ_FWD, proj_coord(in[1], in[0], in[2], 0));
    out[0] = grid.xyz.x;
    out[1] = grid.xyz.y;
    out[2] = grid.xyz.z;
  }));
}

void AddProjInverse(Row& row, const Task& task, const Values& tolerance, const std::string& definition,
                    const std::string& name) {
  row.Add(PointByPoint(name, task, tolerance, [proj = MakeProj(definition)](const Values& in, Values& out) {
    const PJ_COORD position = proj_trans(proj.get(), PJ_INV, proj_coord(in[0], in[1], in[2], 0));
    out[0] = position.lpz.phi;
    out[1] = position.lpz.lam;
    out[2] = position.lpz.z;
  }));
}

void AddProjShift(Row& row, const Task& task, const Values& tolerance, const std::string& definition, bool forward) {
  row.Add(
      PointByPoint("PROJ", task, tolerance,
                   [proj = MakeProj(definition), direction = forward ? PJ_FWD : PJ_INV](const Values& in, Values& out) {
                     const PJ_COORD position = proj_trans(proj.get(), direction, proj_coord(in[1], in[0], in[2], 0));
                     out[0] = position.lpz.phi;
                     out[1] = position.lpz.lam;
                     out[2] = position.lpz.z;
                   }));
}

void AddProjUndulation(Row& row, const Task& task, const Values& tolerance, const std::string& grid) {
  const std::string definition = "+proj=vgridshift +multiplier=1 +grids=" + grid;
  row.Add(PointByPoint("PROJ", task, tolerance, [proj = MakeProj(definition)](const Values& in, Values& out) {
    out[0] = proj_trans(proj.get(), PJ_FWD, proj_coord(in[1], in[0], 0, 0)).lpz.z;
  }));
}

void AddProjGeodesic(Row& row, const Task& task, const Values& tolerance, const GeodesyParams& params) {
  geod_geodesic geodesic;
  geod_init(&geodesic, params.SemiMajorAxis, 1 / params.InvFlattening);
  row.Add(PointByPoint(
      "PROJ", task, tolerance,
      [geodesic](const Values& in, Values& out) {
        geod_inverse(&geodesic, in[0], in[1], in[2], in[3], &out[0], &out[1], nullptr);
      },
      LineUnits));
}

std::function<void(Values*)> ProjMaker(const std::string& definition, double latitude, double longitude) {
  return [=](Values* out) {
    PJ* const object = proj_create(nullptr, definition.c_str());
    if (out != nullptr) {
      const PJ_COORD grid = proj_trans(object, PJ_FWD, proj_coord(longitude, latitude, 0, 0));
      *out = {grid.xy.x, grid.xy.y};
    }
    proj_destroy(object);
  };
}

void AddProjFactors(Row& row, const Task& task, const Values& tolerance, const std::string& definition) {
  row.Add(PointByPoint("proj_factors", task, tolerance, [proj = MakeProj(definition)](const Values& in, Values& out) {
    out[0] = proj_factors(proj.get(), proj_coord(in[1], in[0], 0, 0)).parallel_scale;
  }));
}

void AddProjGridFactors(Row& row, const Task& task, const Values& tolerance, const std::string& definition) {
  row.Add(PointByPoint("PROJ", task, tolerance, [proj = MakeProj(definition)](const Values& in, Values& out) {
    const PJ_COORD position = proj_trans(proj.get(), PJ_INV, proj_coord(in[0], in[1], 0, 0));
    out[0] = proj_factors(proj.get(), position).parallel_scale;
  }));
}

#else

void AddProjForward(Row&, const Task&, const Values&, const std::string&, const std::string&) {}
void AddProjInverse(Row&, const Task&, const Values&, const std::string&, const std::string&) {}
void AddProjShift(Row&, const Task&, const Values&, const std::string&, bool) {}
void AddProjGeodesic(Row&, const Task&, const Values&, const GeodesyParams&) {}
void AddProjUndulation(Row&, const Task&, const Values&, const std::string&) {}
std::function<void(Values*)> ProjMaker(const std::string&, double, double) {
  return {};
}
void AddProjFactors(Row&, const Task&, const Values&, const std::string&) {}
void AddProjGridFactors(Row&, const Task&, const Values&, const std::string&) {}

#endif

#if BENCH_HAS_GEOGRAPHICLIB

namespace {

// Forward and inverse by one of GeographicLib's classes, followed by the false origin.
template <bool Inverse, typename Projection>
void AddClass(Row& row, const Task& task, const Values& tolerance, const GeodesyParams& params,
              const Projection& projection, double northing0) {
  const double lon0 = params.CentralMeridian / Degree;
  const double x0 = params.FalseEasting;
  const double y0 = params.FalseNorthing - northing0;
  row.Add(PointByPoint(
      "GeographicLib", task, tolerance,
      [=](const Values& in, Values& out) {
        if constexpr (Inverse) {
          projection.Reverse(lon0, in[0] - x0, in[1] - y0, out[0], out[1]);
        } else {
          projection.Forward(lon0, in[0], in[1], out[0], out[1]);
          out[0] += x0;
          out[1] += y0;
        }
      },
      Inverse ? DegreesOut : DegreesIn));
}

// The northing of the origin in a class whose northings have another origin.
template <typename Projection>
double OriginNorthing(const Projection& projection, const GeodesyParams& params) {
  double x = 0;
  double y = 0;
  projection.Forward(0.0, params.RefLatitude / Degree, 0.0, x, y);
  return y;
}

// Adapts a class with an origin of its own, or at a pole, to those with a central meridian.
struct Azimuthal {
  GeographicLib::AzimuthalEquidistant projection;
  double lat0;

  void Forward(double lon0, double lat, double lon, double& x, double& y) const {
    projection.Forward(lat0, lon0, lat, lon, x, y);
  }
  void Reverse(double lon0, double x, double y, double& lat, double& lon) const {
    projection.Reverse(lat0, lon0, x, y, lat, lon);
  }
};
struct Soldner {
  GeographicLib::CassiniSoldner projection;

  void Forward(double, double lat, double lon, double& x, double& y) const { projection.Forward(lat, lon, x, y); }
  void Reverse(double, double x, double y, double& lat, double& lon) const { projection.Reverse(x, y, lat, lon); }
};
struct NorthPole {
  GeographicLib::PolarStereographic projection;

  void Forward(double lon0, double lat, double lon, double& x, double& y) const {
    projection.Forward(true, lat, lon - lon0, x, y);
  }
  void Reverse(double lon0, double x, double y, double& lat, double& lon) const {
    projection.Reverse(true, x, y, lat, lon);
    lon += lon0;
  }
};

template <bool Inverse>
void AddGeographicLib(Row& row, const Task& task, const Values& tolerance, const GeodesyParams& params) {
  const double a = params.SemiMajorAxis;
  const double f = 1 / params.InvFlattening;
  const double k0 = params.ScaleFactor;
  const double lat1 = params.SouthParallel / Degree;
  const double lat2 = params.NorthParallel / Degree;
  switch (params.Kind) {
    case LATIGO_KIND_LAMBERT: {
      const GeographicLib::LambertConformalConic cone(a, f, lat1, lat2, k0);
      AddClass<Inverse>(row, task, tolerance, params, cone, OriginNorthing(cone, params));
      return;
    }
    case LATIGO_KIND_MERCATOR: {
      const double s = std::sin(params.RefLatitude);
      const double equatorScale = std::cos(params.RefLatitude) / std::sqrt(1 - f * (2 - f) * s * s);
      const GeographicLib::LambertConformalConic mercator(a, f, 0.0, equatorScale);
      AddClass<Inverse>(row, task, tolerance, params, mercator, 0.0);
      return;
    }
    case LATIGO_KIND_TRANSVERSE_MERCATOR: {
      const GeographicLib::TransverseMercator transverse(a, f, k0);
      AddClass<Inverse>(row, task, tolerance, params, transverse, OriginNorthing(transverse, params));
      return;
    }
    case LATIGO_KIND_AZIMUTHAL_EQUIDISTANT: {
      const GeographicLib::Geodesic geodesic(a, f);
      const Azimuthal azimuthal{GeographicLib::AzimuthalEquidistant(geodesic), params.RefLatitude / Degree};
      AddClass<Inverse>(row, task, tolerance, params, azimuthal, 0.0);
      return;
    }
    case LATIGO_KIND_ALBERS: {
      const GeographicLib::AlbersEqualArea cone(a, f, lat1, lat2, 1.0);
      AddClass<Inverse>(row, task, tolerance, params, cone, OriginNorthing(cone, params));
      return;
    }
    case LATIGO_KIND_CASSINI: {
      const GeographicLib::Geodesic geodesic(a, f);
      const Soldner soldner{
          GeographicLib::CassiniSoldner(params.RefLatitude / Degree, params.CentralMeridian / Degree, geodesic)};
      AddClass<Inverse>(row, task, tolerance, params, soldner, 0.0);
      return;
    }
    case LATIGO_KIND_POLAR_STEREOGRAPHIC: {
      AddClass<Inverse>(row, task, tolerance, params, NorthPole{GeographicLib::PolarStereographic(a, f, k0)}, 0.0);
      return;
    }
    default:
      return;
  }
}

}  // namespace

void AddGeographicLibForward(Row& row, const Task& task, const Values& tolerance, const GeodesyParams& params) {
  AddGeographicLib<false>(row, task, tolerance, params);
}
void AddGeographicLibInverse(Row& row, const Task& task, const Values& tolerance, const GeodesyParams& params) {
  AddGeographicLib<true>(row, task, tolerance, params);
}

void AddGeocentricForward(Row& row, const Task& task, const Values& tolerance, const GeodesyParams& params) {
  const GeographicLib::Geocentric earth(params.SemiMajorAxis, 1 / params.InvFlattening);
  row.Add(PointByPoint(
      "GeographicLib", task, tolerance,
      [earth](const Values& in, Values& out) { earth.Forward(in[0], in[1], in[2], out[0], out[1], out[2]); },
      DegreesInHeight));
}

void AddGeocentricInverse(Row& row, const Task& task, const Values& tolerance, const GeodesyParams& params) {
  const GeographicLib::Geocentric earth(params.SemiMajorAxis, 1 / params.InvFlattening);
  row.Add(PointByPoint(
      "GeographicLib", task, tolerance,
      [earth](const Values& in, Values& out) { earth.Reverse(in[0], in[1], in[2], out[0], out[1], out[2]); },
      DegreesOutHeight));
}

void AddGeocentricShift(Row& row, const Task& task, const Values& tolerance, const GeodesyParams& params,
                        const EllDiff& d, bool forward) {
  const GeographicLib::Geocentric own(params.SemiMajorAxis, 1 / params.InvFlattening);
  const GeographicLib::Geocentric wgs84 = GeographicLib::Geocentric::WGS84();
  const Units units = {DegreesInHeight.in, DegreesOutHeight.out};
  if (forward) {
    row.Add(PointByPoint(
        "GeographicLib", task, tolerance,
        [=](const Values& in, Values& out) {
          double X, Y, Z;
          wgs84.Forward(in[0], in[1], in[2], X, Y, Z);
          own.Reverse((X + d.DeltaRZ * Y - d.DeltaRY * Z) * d.DeltaScale + d.DeltaX,
                      (Y - d.DeltaRZ * X + d.DeltaRX * Z) * d.DeltaScale + d.DeltaY,
                      (Z + d.DeltaRY * X - d.DeltaRX * Y) * d.DeltaScale + d.DeltaZ, out[0], out[1], out[2]);
        },
        units));
    return;
  }
  row.Add(PointByPoint(
      "GeographicLib", task, tolerance,
      [=](const Values& in, Values& out) {
        double X, Y, Z;
        own.Forward(in[0], in[1], in[2], X, Y, Z);
        X = (X - d.DeltaX) / d.DeltaScale;
        Y = (Y - d.DeltaY) / d.DeltaScale;
        Z = (Z - d.DeltaZ) / d.DeltaScale;
        wgs84.Reverse(X - d.DeltaRZ * Y + d.DeltaRY * Z, Y + d.DeltaRZ * X - d.DeltaRX * Z,
                      Z - d.DeltaRY * X + d.DeltaRX * Y, out[0], out[1], out[2]);
      },
      units));
}

void AddGeographicLibGeodesic(Row& row, const Task& task, const Values& tolerance, const GeodesyParams& params) {
  const GeographicLib::Geodesic geodesic(params.SemiMajorAxis, 1 / params.InvFlattening);
  row.Add(PointByPoint(
      "GeographicLib", task, tolerance,
      [geodesic](const Values& in, Values& out) {
        double azimuth2;
        geodesic.Inverse(in[0], in[1], in[2], in[3], out[0], out[1], azimuth2);
      },
      LineUnits));
}

void AddGeographicLibRhumb(Row& row, const Task& task, const Values& tolerance, const GeodesyParams& params) {
  const GeographicLib::Rhumb rhumb(params.SemiMajorAxis, 1 / params.InvFlattening);
  row.Add(PointByPoint(
      "GeographicLib", task, tolerance,
      [rhumb](const Values& in, Values& out) { rhumb.Inverse(in[0], in[1], in[2], in[3], out[0], out[1]); },
      LineUnits));
}

#else

void AddGeographicLibForward(Row&, const Task&, const Values&, const GeodesyParams&) {}
void AddGeographicLibInverse(Row&, const Task&, const Values&, const GeodesyParams&) {}
void AddGeocentricForward(Row&, const Task&, const Values&, const GeodesyParams&) {}
void AddGeocentricInverse(Row&, const Task&, const Values&, const GeodesyParams&) {}
void AddGeocentricShift(Row&, const Task&, const Values&, const GeodesyParams&, const EllDiff&, bool) {}
void AddGeographicLibGeodesic(Row&, const Task&, const Values&, const GeodesyParams&) {}
void AddGeographicLibRhumb(Row&, const Task&, const Values&, const GeodesyParams&) {}

#endif

}  // namespace bench
