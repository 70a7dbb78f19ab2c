// GeoXY, XYGeo and Scale of every kind, in the area of a real grid.
#include "floors/albers.h"
#include "floors/azimuth_eq_dist.h"
#include "floors/cassini.h"
#include "floors/conformal_sphere.h"
#include "floors/lambert.h"
#include "floors/mercator.h"
#include "floors/oblique_mercator.h"
#include "floors/polar_stereo.h"
#include "floors/transverse_mercator.h"
#include "library.h"
#include "peers.h"
#include "rows.h"

namespace bench {

namespace {

// Targets are the largest acceptable ratios to PROJ's time, 0 for none.
struct Case {
  const char* name;
  GeodesyParams params;  // angles in degrees
  Range latitude;        // degrees
  Range longitude;       // degrees
  const char* proj;      // PROJ's name of the projection
  double forwardTarget, inverseTarget, scaleTarget;
  // Largest difference from the peers, by the difference of the methods: metres, radians, dimensionless.
  double forwardTolerance = 1e-5, inverseTolerance = 5e-12, scaleTolerance = 1e-6;
};

// clang-format off
const Case Cases[] = {
    {"Lambert", {.SemiMajorAxis = 6378137, .InvFlattening = 298.257222101,
        .Kind = LATIGO_KIND_LAMBERT, .Unit = 1, .ScaleFactor = 1,
                 .CentralMeridian = 3, .RefLatitude = 46.5, .NorthParallel = 49, .SouthParallel = 44, .SkewAzimuth = 0,
                 .FalseEasting = 700000, .FalseNorthing = 6600000},
     {41, 52}, {-6, 11}, "lcc", 0.55, 0.95, 0.40},
    {"Mercator", {.SemiMajorAxis = 6378137, .InvFlattening = 298.257223563,
        .Kind = LATIGO_KIND_MERCATOR, .Unit = 1, .ScaleFactor = 1,
                  .CentralMeridian = 0, .RefLatitude = 40, .NorthParallel = 0, .SouthParallel = 0, .SkewAzimuth = 0,
                  .FalseEasting = 0, .FalseNorthing = 0},
     {-75, 75}, {-179, 179}, "merc", 0.40, 0.95, 0.40},
    {"Transverse Mercator", {.SemiMajorAxis = 6378137, .InvFlattening = 298.257223563,
        .Kind = LATIGO_KIND_TRANSVERSE_MERCATOR, .Unit = 1,
                             .ScaleFactor = 0.9996, .CentralMeridian = 3, .RefLatitude = 0, .NorthParallel = 0,
                             .SouthParallel = 0, .SkewAzimuth = 0, .FalseEasting = 500000, .FalseNorthing = 0},
     {-80, 80}, {0, 6}, "tmerc", 0.32, 0.45, 0.40, 2e-3, 1e-8},
    {"Stereographic", {.SemiMajorAxis = 6377397.155, .InvFlattening = 299.1528128,
        .Kind = LATIGO_KIND_OBLIQUE_STEREOGRAPHIC, .Unit = 1,
                       .ScaleFactor = 0.9999079, .CentralMeridian = 5.387638889, .RefLatitude = 52.156160556,
                       .NorthParallel = 0, .SouthParallel = 0, .SkewAzimuth = 0, .FalseEasting = 155000,
                       .FalseNorthing = 463000},
     {50.5, 53.8}, {3.2, 7.4}, "sterea", 0.40, 0.75, 0.40},
    {"ObliqueCylindrical", {.SemiMajorAxis = 6377397.155, .InvFlattening = 299.1528128,
        .Kind = LATIGO_KIND_OBLIQUE_CYLINDRICAL, .Unit = 1,
                            .ScaleFactor = 1, .CentralMeridian = 7.439583333, .RefLatitude = 46.952405556,
                            .NorthParallel = 0, .SouthParallel = 0, .SkewAzimuth = 0, .FalseEasting = 600000,
                            .FalseNorthing = 200000},
     {45.7, 47.9}, {5.9, 10.6}, "somerc", 0.50, 0.75, 0, 1e-5, 1e-9},
    {"Hotine", {.SemiMajorAxis = 6377298.556, .InvFlattening = 300.8017,
        .Kind = LATIGO_KIND_HOTINE, .Unit = 1, .ScaleFactor = 0.99984,
                .CentralMeridian = 115, .RefLatitude = 4, .NorthParallel = 0, .SouthParallel = 0,
                .SkewAzimuth = 53.315820472, .FalseEasting = 0, .FalseNorthing = 0},
     {0.8, 7.5}, {109, 119.5}, "omerc", 0.65, 0.85, 0.40, 1e-5, 2e-11},
    {"RSO", {.SemiMajorAxis = 6377298.556, .InvFlattening = 300.8017,
        .Kind = LATIGO_KIND_RSO, .Unit = 1, .ScaleFactor = 0.99984,
             .CentralMeridian = 115, .RefLatitude = 4, .NorthParallel = 0, .SouthParallel = 0,
             .SkewAzimuth = 53.315820472, .FalseEasting = 0, .FalseNorthing = 0},
     {0.8, 7.5}, {109, 119.5}, "omerc", 0.65, 0.85, 0.40, 1e-5, 2e-11},
    // Peers use the azimuth of the geodesic, kind 8 that of the normal section.
    {"AzimuthEqDist", {.SemiMajorAxis = 6378206.4, .InvFlattening = 294.9786982,
        .Kind = LATIGO_KIND_AZIMUTHAL_EQUIDISTANT, .Unit = 1, .ScaleFactor = 1,
                       .CentralMeridian = 138.168744444, .RefLatitude = 9.546708333, .NorthParallel = 0,
                       .SouthParallel = 0, .SkewAzimuth = 0, .FalseEasting = 40000, .FalseNorthing = 60000},
     {8.6, 10.5}, {137.2, 139.1}, "aeqd", 0.10, 0.20, 0, 0.05, 1e-8},
    {"SMerc", {.SemiMajorAxis = 6378388, .InvFlattening = 297,
        .Kind = LATIGO_KIND_MERCATOR_ON_SPHERE, .Unit = 1, .ScaleFactor = 1,
               .CentralMeridian = 0, .RefLatitude = 0, .NorthParallel = 0, .SouthParallel = 0, .SkewAzimuth = 0,
               .FalseEasting = 0, .FalseNorthing = 0},
     {-80, 80}, {-179, 179}, "merc", 0.25, 0.30, 0},
    // Scale of kind 10 uses the starting latitude of the iteration.
    {"Albers", {.SemiMajorAxis = 6378137, .InvFlattening = 298.257222101,
        .Kind = LATIGO_KIND_ALBERS, .Unit = 1, .ScaleFactor = 1,
                .CentralMeridian = -96, .RefLatitude = 23, .NorthParallel = 45.5, .SouthParallel = 29.5,
                .SkewAzimuth = 0, .FalseEasting = 0, .FalseNorthing = 0},
     {24, 50}, {-125, -66}, "aea", 0.50, 0.75, 0.40, 1e-5, 1e-11, 8e-3},
    {"Cassini", {.SemiMajorAxis = 6377397.155, .InvFlattening = 299.1528128,
        .Kind = LATIGO_KIND_CASSINI, .Unit = 1, .ScaleFactor = 1,
                 .CentralMeridian = 13.627203667, .RefLatitude = 52.418648278, .NorthParallel = 0, .SouthParallel = 0,
                 .SkewAzimuth = 0, .FalseEasting = 40000, .FalseNorthing = 10000},
     {51.4, 53.4}, {12.6, 14.6}, "cass", 0.50, 0.28, 0, 5e-3, 1e-9},
    {"PolarStereo", {.SemiMajorAxis = 6378137, .InvFlattening = 298.257223563,
        .Kind = LATIGO_KIND_POLAR_STEREOGRAPHIC, .Unit = 1,
                     .ScaleFactor = 0.994, .CentralMeridian = 0, .RefLatitude = 90, .NorthParallel = 0,
                     .SouthParallel = 0, .SkewAzimuth = 0, .FalseEasting = 2000000, .FalseNorthing = 2000000},
     {60, 89.9}, {-179, 179}, "stere", 0.60, 0.25, 0.40},
};
// clang-format on

// The library and a floor differ by rounding only, most where a formula divides by the sine of a small azimuth.
constexpr double FloorMetres = 1e-6;
constexpr double FloorRadians = 1e-13;
constexpr double FloorScale = 1e-12;

GeodesyParams InRadians(GeodesyParams params) {
  params.CentralMeridian *= Degree;
  params.RefLatitude *= Degree;
  params.NorthParallel *= Degree;
  params.SouthParallel *= Degree;
  params.SkewAzimuth *= Degree;
  return params;
}

std::string ProjDefinition(const Case& kind, const GeodesyParams& p) {
  std::string extra = ProjAngle("lon_0", p.CentralMeridian) + ProjAngle("lat_0", p.RefLatitude);
  switch (p.Kind) {
    case LATIGO_KIND_LAMBERT:
    case LATIGO_KIND_ALBERS:
      extra += ProjAngle("lat_1", p.NorthParallel) + ProjAngle("lat_2", p.SouthParallel);
      break;
    case LATIGO_KIND_MERCATOR:
      extra = ProjAngle("lon_0", p.CentralMeridian) + ProjAngle("lat_ts", p.RefLatitude);
      break;
    case LATIGO_KIND_HOTINE:
    case LATIGO_KIND_RSO:
      extra = ProjAngle("lonc", p.CentralMeridian) + ProjAngle("lat_0", p.RefLatitude) +
              ProjAngle("alpha", p.SkewAzimuth) + " +no_uoff" + ProjNumber("k_0", p.ScaleFactor);
      if (p.Kind == LATIGO_KIND_RSO) {
        extra += ProjAngle("gamma", ObliqueMercatorFloor(p).Gamma0());
      }
      break;
    case LATIGO_KIND_MERCATOR_ON_SPHERE:
      return "+proj=merc" + ProjNumber("R", p.SemiMajorAxis);
    case LATIGO_KIND_TRANSVERSE_MERCATOR:
    case LATIGO_KIND_OBLIQUE_STEREOGRAPHIC:
    case LATIGO_KIND_OBLIQUE_CYLINDRICAL:
    case LATIGO_KIND_POLAR_STEREOGRAPHIC:
      extra += ProjNumber("k_0", p.ScaleFactor);
      break;
    default:
      break;
  }
  return ProjText(kind.proj, p, extra);
}

template <typename Floor>
void AddRows(const Run& run, const Case& kind) {
  const GeodesyParams params = InRadians(kind.params);
  const Floor floor(params);
  const std::string definition = run.WithOthers() ? ProjDefinition(kind, params) : "";
  const std::string name = kind.name;

  const Task geographic = {RandomPoints({{kind.latitude.low * Degree, kind.latitude.high * Degree},
                                         {kind.longitude.low * Degree, kind.longitude.high * Degree}}),
                           {}};
  Task grid = geographic;
  for (Values& point : grid.points) {
    const Values position = point;
    floor.GeoXY(position[0], position[1], point[0], point[1]);
  }

  Row forward{.name = name + " GeoXY", .contestants = {}, .targets = {}};
  Row inverse{.name = name + " XYGeo", .contestants = {}, .targets = {}};
  Row scale{.name = name + " Scale", .contestants = {}, .targets = {}};
  for (const Library& library : run.libraries) {
    const auto object = library.Make(params);
    if (!object) {
      continue;
    }
    forward.Add(PointByPoint(library.name, geographic, Metres(FloorMetres),
                             [object, GeoXY = library.GeoXY](const Values& in, Values& out) {
                               GeoXY(object.get(), &out[0], &out[1], in[0], in[1]);
                             }));
    inverse.Add(PointByPoint(library.name, grid, Radians(FloorRadians),
                             [object, XYGeo = library.XYGeo](const Values& in, Values& out) {
                               XYGeo(object.get(), in[0], in[1], &out[0], &out[1]);
                             }));
    scale.Add(
        PointByPoint(library.name, grid, {FloorScale}, [object, Scale = library.Scale](const Values& in, Values& out) {
          out[0] = Scale(object.get(), in[0], in[1]);
        }));
  }
  if (run.WithOthers()) {
    forward.Add(PointByPoint("floor", geographic, Metres(FloorMetres),
                             [floor](const Values& in, Values& out) { floor.GeoXY(in[0], in[1], out[0], out[1]); }));
    AddProjForward(forward, geographic, Metres(kind.forwardTolerance), definition);
    AddGeographicLibForward(forward, geographic, Metres(kind.forwardTolerance), params);
    forward.targets = {{"PROJ", kind.forwardTarget}};

    inverse.Add(PointByPoint("floor", grid, Radians(FloorRadians),
                             [floor](const Values& in, Values& out) { floor.XYGeo(in[0], in[1], out[0], out[1]); }));
    AddProjInverse(inverse, grid, Radians(kind.inverseTolerance), definition);
    AddGeographicLibInverse(inverse, grid, Radians(kind.inverseTolerance), params);
    inverse.targets = {{"PROJ", kind.inverseTarget}};

    scale.Add(PointByPoint("floor", grid, {FloorScale},
                           [floor](const Values& in, Values& out) { out[0] = floor.Scale(in[0], in[1]); }));
    if (kind.scaleTarget > 0) {
      // The target is a ratio to proj_factors alone, which starts from latitude and longitude.
      AddProjGridFactors(scale, grid, {kind.scaleTolerance}, definition);
      AddProjFactors(scale, geographic, {kind.scaleTolerance}, definition);
      scale.targets = {{"proj_factors", kind.scaleTarget}};
    }
    // PROJ's other transverse Mercator, a series like the library's.
    if (kind.params.Kind == LATIGO_KIND_TRANSVERSE_MERCATOR) {
      AddProjForward(forward, geographic, Metres(kind.forwardTolerance), definition + " +approx", "PROJ approx");
      AddProjInverse(inverse, grid, Radians(kind.inverseTolerance), definition + " +approx", "PROJ approx");
    }
  }
  Register(std::move(forward));
  Register(std::move(inverse));
  Register(std::move(scale));
}

}  // namespace

void AddProjectionRows(const Run& run) {
  for (const Case& kind : Cases) {
    switch (kind.params.Kind) {
      case LATIGO_KIND_LAMBERT:
        AddRows<LambertFloor>(run, kind);
        break;
      case LATIGO_KIND_MERCATOR:
        AddRows<MercatorFloor>(run, kind);
        break;
      case LATIGO_KIND_TRANSVERSE_MERCATOR:
        AddRows<TransverseMercatorFloor>(run, kind);
        break;
      case LATIGO_KIND_OBLIQUE_STEREOGRAPHIC:
        AddRows<StereographicFloor>(run, kind);
        break;
      case LATIGO_KIND_OBLIQUE_CYLINDRICAL:
        AddRows<ObliqueCylindricalFloor>(run, kind);
        break;
      case LATIGO_KIND_HOTINE:
      case LATIGO_KIND_RSO:
        AddRows<ObliqueMercatorFloor>(run, kind);
        break;
      case LATIGO_KIND_AZIMUTHAL_EQUIDISTANT:
        AddRows<AzimuthEqDistFloor>(run, kind);
        break;
      case LATIGO_KIND_MERCATOR_ON_SPHERE:
        AddRows<SMercFloor>(run, kind);
        break;
      case LATIGO_KIND_ALBERS:
        AddRows<AlbersFloor>(run, kind);
        break;
      case LATIGO_KIND_CASSINI:
        AddRows<CassiniFloor>(run, kind);
        break;
      case LATIGO_KIND_POLAR_STEREOGRAPHIC:
        AddRows<PolarStereoFloor>(run, kind);
        break;
      default:
        break;
    }
  }
}

}  // namespace bench
