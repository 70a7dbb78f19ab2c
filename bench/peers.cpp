#include "peers.h"

#include <cmath>
#include <cstdio>
#include <memory>
#include <stdexcept>

#if BENCH_HAS_PROJ
#include <proj.h>
#endif
#if BENCH_HAS_GEOGRAPHICLIB
#include <GeographicLib/AlbersEqualArea.hpp>
#include <GeographicLib/AzimuthalEquidistant.hpp>
#include <GeographicLib/CassiniSoldner.hpp>
#include <GeographicLib/LambertConformalConic.hpp>
#include <GeographicLib/PolarStereographic.hpp>
#include <GeographicLib/TransverseMercator.hpp>
#endif

namespace bench {

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

void AddProjFactors(Row& row, const Task& task, const Values& tolerance, const std::string& definition) {
  row.Add(PointByPoint("PROJ", task, tolerance, [proj = MakeProj(definition)](const Values& in, Values& out) {
    out[0] = proj_factors(proj.get(), proj_coord(in[1], in[0], 0, 0)).parallel_scale;
  }));
}

#else

void AddProjForward(Row&, const Task&, const Values&, const std::string&, const std::string&) {}
void AddProjInverse(Row&, const Task&, const Values&, const std::string&, const std::string&) {}
void AddProjFactors(Row&, const Task&, const Values&, const std::string&) {}

#endif

#if BENCH_HAS_GEOGRAPHICLIB

namespace {

// A conversion and its way back by one of GeographicLib's classes, with the false origin put on behind it.
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

// The northing of the origin in a class that counts northings from somewhere else.
template <typename Projection>
double OriginNorthing(const Projection& projection, const GeodesyParams& params) {
  double x = 0;
  double y = 0;
  projection.Forward(0.0, params.RefLatitude / Degree, 0.0, x, y);
  return y;
}

// A class with its own origin, or at a pole, in the shape of those with a central meridian.
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
    case 1: {
      const GeographicLib::LambertConformalConic cone(a, f, lat1, lat2, k0);
      AddClass<Inverse>(row, task, tolerance, params, cone, OriginNorthing(cone, params));
      return;
    }
    case 2: {
      const double s = std::sin(params.RefLatitude);
      const double equatorScale = std::cos(params.RefLatitude) / std::sqrt(1 - f * (2 - f) * s * s);
      const GeographicLib::LambertConformalConic mercator(a, f, 0.0, equatorScale);
      AddClass<Inverse>(row, task, tolerance, params, mercator, 0.0);
      return;
    }
    case 3: {
      const GeographicLib::TransverseMercator transverse(a, f, k0);
      AddClass<Inverse>(row, task, tolerance, params, transverse, OriginNorthing(transverse, params));
      return;
    }
    case 8: {
      const GeographicLib::Geodesic geodesic(a, f);
      const Azimuthal azimuthal{GeographicLib::AzimuthalEquidistant(geodesic), params.RefLatitude / Degree};
      AddClass<Inverse>(row, task, tolerance, params, azimuthal, 0.0);
      return;
    }
    case 10: {
      const GeographicLib::AlbersEqualArea cone(a, f, lat1, lat2, 1.0);
      AddClass<Inverse>(row, task, tolerance, params, cone, OriginNorthing(cone, params));
      return;
    }
    case 11: {
      const GeographicLib::Geodesic geodesic(a, f);
      const Soldner soldner{
          GeographicLib::CassiniSoldner(params.RefLatitude / Degree, params.CentralMeridian / Degree, geodesic)};
      AddClass<Inverse>(row, task, tolerance, params, soldner, 0.0);
      return;
    }
    case 12: {
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

#else

void AddGeographicLibForward(Row&, const Task&, const Values&, const GeodesyParams&) {}
void AddGeographicLibInverse(Row&, const Task&, const Values&, const GeodesyParams&) {}

#endif

}  // namespace bench
