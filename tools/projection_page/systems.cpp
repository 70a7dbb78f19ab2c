#include "systems.h"

namespace latigo::page {

// Projection, name.
// SemiMajorAxis, InvFlattening, Kind, Unit, ScaleFactor, CentralMeridian, RefLatitude, NorthParallel, SouthParallel,
// SkewAzimuth, FalseEasting, FalseNorthing.
// Area: south, north, west, east. What distances are measured from.
// clang-format off
const std::array<System, 12> Systems = {{
    {"Lambert conformal conic", "NAD27 / Texas South Central",
     {6378206.4, 294.9786982, LATIGO_KIND_LAMBERT, 1200.0 / 3937, 1, -99, 27 + 50.0 / 60, 30 + 17.0 / 60,
      28 + 23.0 / 60, 0, 2000000, 0},
     {5, 55, -129, -69}, From::Parallel, {29 + 20.0 / 60, -99}, "latitude 29°20'"},
    {"Mercator", "Pulkovo 1942 / Caspian Sea Mercator",
     {6378245, 298.3, LATIGO_KIND_MERCATOR, 1, 1, 51, 42, 0, 0, 0, 0, 0},
     {-80, 80, -129, 231}, From::Parallel, {0, 51}, "the equator"},
    {"transverse Mercator", "WGS 84 / UTM zone 31N",
     {6378137, 298.257223563, LATIGO_KIND_TRANSVERSE_MERCATOR, 1, 0.9996, 3, 0, 0, 0, 0, 500000, 0},
     {-80, 80, -7, 13}, From::Meridian, {0, 3}, "the central meridian"},
    {"oblique stereographic", "Amersfoort / RD New",
     {6377397.155, 299.1528128, LATIGO_KIND_OBLIQUE_STEREOGRAPHIC, 1, 0.9999079, 5.387638888888889,
      52.156160555555556, 0, 0, 0, 155000, 463000},
     {32, 72, -35, 45}, From::Point, {52.156160555555556, 5.387638888888889}, "the origin"},
    {"oblique cylindrical", "CH1903 / LV03",
     {6377397.155, 299.1528128, LATIGO_KIND_OBLIQUE_CYLINDRICAL, 1, 1, 7.439583333333333, 46.952405555555556, 0, 0,
      0, 600000, 200000},
     {44, 50, 3, 12}, From::Point, {46.952405555555556, 7.439583333333333}, "the origin"},
    {"Hotine oblique Mercator", "NAD27 / Alaska zone 1",
     {6378206.4, 294.9786982, LATIGO_KIND_HOTINE, 1200.0 / 3937, 0.9999, -133 - 40.0 / 60, 57, 0, 0,
      -36.869897645844021,
      5000000 / (1200.0 / 3937), -5000000 / (1200.0 / 3937)},
     {47, 67, -158, -110}, From::Point, {57, -133 - 40.0 / 60}, "the centre"},
    {"rectified skew orthomorphic", "Timbalai 1948 / RSO Borneo (m)",
     {6377298.556, 300.8017, LATIGO_KIND_RSO, 1, 0.99984, 115, 4, 0, 0, 53.315820472222222, 0, 0},
     {-8, 16, 103, 127}, From::Point, {4, 115}, "the centre"},
    {"azimuthal equidistant", "Guam 1963 / Yap Islands",
     {6378206.4, 294.9786982, LATIGO_KIND_AZIMUTHAL_EQUIDISTANT, 1, 1, 138.168744444444444, 9.546708333333333, 0,
      0, 0, 40000, 60000},
     {-6, 26, 120, 156}, From::Point, {9.546708333333333, 138.168744444444444}, "the origin"},
    {"Mercator on a sphere", "sphere of 6378388 m",
     {6378388, 297, LATIGO_KIND_MERCATOR_ON_SPHERE, 1, 1, 0, 0, 0, 0, 0, 0, 0},
     {-80, 80, -180, 180}, From::Parallel, {0, 0}, "the equator"},
    {"Albers equal-area conic", "NAD83 / Conus Albers",
     {6378137, 298.257222101, LATIGO_KIND_ALBERS, 1, 1, -96, 23, 29.5, 45.5, 0, 0, 0},
     {-10, 90, -156, -36}, From::Parallel, {37.5, -96}, "latitude 37°30'"},
    {"Cassini-Soldner", "Trinidad 1903 / Trinidad Grid",
     {6378293.645208759, 294.2606763692567, LATIGO_KIND_CASSINI, 0.201166195, 1, -61.333333333333333,
      10.441666666666667, 0, 0, 0,
      430000, 325000},
     {-80, 80, -73.333333333333333, -49.333333333333333}, From::Meridian, {0, -61.333333333333333},
     "the central meridian"},
    {"polar stereographic", "WGS 84 / UPS North",
     {6378137, 298.257223563, LATIGO_KIND_POLAR_STEREOGRAPHIC, 1, 0.994, 0, 90, 0, 0, 0, 2000000, 2000000},
     {0, 90, -180, 180}, From::Point, {90, 0}, "the pole"},
}};
// clang-format on

}  // namespace latigo::page
