// Distance and azimuth of great circles and rhumb lines.
#include "floors/lines.h"
#include "library.h"
#include "peers.h"
#include "records.h"
#include "rows.h"

namespace bench {

namespace {

constexpr GeodesyParams Own = OnEllipsoid(6378137, 298.257223563);

constexpr Values FloorLine = {1e-7, 1e-13};
// Nearly along a parallel the library divides by the small cosine of an azimuth.
constexpr Values FloorRhumb = {1e-4, 1e-13};

}  // namespace

void AddLineRows(const Run& run) {
  const LineFloor floor(Own);
  // Lines of up to 80 km, eastward, for the mid-latitude formulas.
  Task near = {RandomPoints({{-60 * Degree, 60 * Degree},
                             {-179 * Degree, 178 * Degree},
                             {-0.5 * Degree, 0.5 * Degree},
                             {0.05 * Degree, 0.5 * Degree}}),
               {}};
  for (Values& line : near.points) {
    line[2] += line[0];
    line[3] += line[1];
  }
  const Task far = {RandomPoints({{-70 * Degree, 70 * Degree},
                                  {-80 * Degree, 0 * Degree},
                                  {-70 * Degree, 70 * Degree},
                                  {1 * Degree, 80 * Degree}}),
                    {}};

  Row shortest{.name = "GCircLL", .contestants = {}, .targets = {{"PROJ", 0.15}}};
  Row rhumb{.name = "RLineLL", .contestants = {}, .targets = {{"GeographicLib", 0.12}}};
  for (const Library& library : run.libraries) {
    const auto object = library.Make(Own);
    shortest.Add(
        PointByPoint(library.name, near, FloorLine, [object, GCircLL = library.GCircLL](const Values& in, Values& out) {
          out[0] = GCircLL(object.get(), in[0], in[1], in[2], in[3], &out[1]);
        }));
    rhumb.Add(
        PointByPoint(library.name, far, FloorRhumb, [object, RLineLL = library.RLineLL](const Values& in, Values& out) {
          out[0] = RLineLL(object.get(), in[0], in[1], in[2], in[3], &out[1]);
        }));
  }
  if (run.WithOthers()) {
    shortest.Add(PointByPoint("floor", near, FloorRhumb, [floor](const Values& in, Values& out) {
      out[0] = floor.GCircLL(in[0], in[1], in[2], in[3], out[1]);
    }));
    rhumb.Add(PointByPoint("floor", far, FloorRhumb, [floor](const Values& in, Values& out) {
      out[0] = floor.RLineLL(in[0], in[1], in[2], in[3], out[1]);
    }));
    // The library's meridian arc series has fewer terms than the peers'.
    AddProjGeodesic(shortest, near, {1e-2, 1e-7}, Own);
    AddGeographicLibGeodesic(shortest, near, {1e-2, 1e-7}, Own);
    AddGeographicLibRhumb(rhumb, far, {1e-2, 1e-13}, Own);
  }
  Register(std::move(shortest));
  Register(std::move(rhumb));
}

}  // namespace bench
