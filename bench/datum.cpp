// Earth-centred coordinates, and the seven-parameter transformation from and to WGS-84.
#include "floors/datum.h"
#include "library.h"
#include "peers.h"
#include "records.h"
#include "rows.h"

namespace bench {

namespace {

constexpr double ArcSecond = Pi / 648000;

// UTM on the Bessel ellipsoid; the projection is not used.
constexpr GeodesyParams Own = OnEllipsoid(6377397.155, 299.1528128);

constexpr EllDiff Diff = {.DeltaX = -598.1,
                          .DeltaY = -73.7,
                          .DeltaZ = -418.2,
                          .DeltaScale = 1 - 6.7e-6,
                          .DeltaRX = 0.202 * ArcSecond,
                          .DeltaRY = 0.045 * ArcSecond,
                          .DeltaRZ = -2.455 * ArcSecond};

// The library stops when an iteration changes the latitude by 1e-9 radians or less.
constexpr Values PeerPosition = {2e-11, 2e-11, 2e-4};
// The library's inverse reverses the signs of the parameters, the peers' is exact: the difference is shift times
// rotation, 7 mm; in longitude it is largest at 85 degrees.
constexpr Values PeerWayBack = {2e-9, 2e-8, 2e-2};
constexpr Values FloorPosition = {1e-14, 1e-14, 1e-7};

Task Positions() {
  return {RandomPoints({{-85 * Degree, 85 * Degree}, {-179 * Degree, 179 * Degree}, {-500, 9000}}), {}};
}

}  // namespace

void AddDatumRows(const Run& run) {
  const EcefFloor own(Own);
  const EcefFloor wgs84(6378137, 1 / 298.257223563);
  const ShiftFloor shift(wgs84, own, Diff);
  const Task positions = Positions();
  Task cartesian = positions;
  for (Values& point : cartesian.points) {
    const Values position = point;
    own.GeoECEF(position[0], position[1], position[2], point[0], point[1], point[2]);
  }

  Row forward{.name = "GeoECEF", .contestants = {}, .targets = {{"PROJ", 0.90}, {"GeographicLib", 0.90}}};
  Row inverse{.name = "ECEFGeo", .contestants = {}, .targets = {{"PROJ", 0.75}, {"GeographicLib", 0.75}}};
  Row there{.name = "WGS84Conv", .contestants = {}, .targets = {{"PROJ", 0.75}, {"GeographicLib", 0.75}}};
  Row back{.name = "InvWGS84Conv", .contestants = {}, .targets = {{"PROJ", 0.75}, {"GeographicLib", 0.75}}};
  for (const Library& library : run.libraries) {
    const auto object = library.Make(Own);
    library.SetEllDiff(object.get(), &Diff);
    forward.Add(PointByPoint(library.name, positions, Metres(1e-8),
                             [object, GeoECEF = library.GeoECEF](const Values& in, Values& out) {
                               GeoECEF(object.get(), &out[0], &out[1], &out[2], in[0], in[1], in[2]);
                             }));
    inverse.Add(PointByPoint(library.name, cartesian, FloorPosition,
                             [object, ECEFGeo = library.ECEFGeo](const Values& in, Values& out) {
                               ECEFGeo(object.get(), in[0], in[1], in[2], &out[0], &out[1], &out[2]);
                             }));
    there.Add(PointByPoint(library.name, positions, FloorPosition,
                           [object, WGS84Conv = library.WGS84Conv](const Values& in, Values& out) {
                             out = in;
                             WGS84Conv(object.get(), &out[0], &out[1], &out[2]);
                           }));
    back.Add(PointByPoint(library.name, positions, FloorPosition,
                          [object, InvWGS84Conv = library.InvWGS84Conv](const Values& in, Values& out) {
                            out = in;
                            InvWGS84Conv(object.get(), &out[0], &out[1], &out[2]);
                          }));
  }
  if (run.WithOthers()) {
    forward.Add(PointByPoint("floor", positions, Metres(1e-8), [own](const Values& in, Values& out) {
      own.GeoECEF(in[0], in[1], in[2], out[0], out[1], out[2]);
    }));
    inverse.Add(PointByPoint("floor", cartesian, FloorPosition, [own](const Values& in, Values& out) {
      own.ECEFGeo(in[0], in[1], in[2], out[0], out[1], out[2]);
    }));
    there.Add(PointByPoint("floor", positions, FloorPosition, [shift](const Values& in, Values& out) {
      shift.Forward(in[0], in[1], in[2], out[0], out[1], out[2]);
    }));
    back.Add(PointByPoint("floor", positions, FloorPosition, [shift](const Values& in, Values& out) {
      shift.Reverse(in[0], in[1], in[2], out[0], out[1], out[2]);
    }));

    const std::string ownCart = ProjText("cart", Own, "");
    AddProjForward(forward, positions, Metres(1e-7), ownCart);
    AddProjInverse(inverse, cartesian, PeerPosition, ownCart);
    const std::string pipeline =
        "+proj=pipeline +step +proj=cart +a=6378137 +rf=298.257223563 +step +proj=helmert "
        "+convention=coordinate_frame" +
        ProjNumber("x", Diff.DeltaX) + ProjNumber("y", Diff.DeltaY) + ProjNumber("z", Diff.DeltaZ) +
        ProjNumber("s", (Diff.DeltaScale - 1) * 1e6) + ProjNumber("rx", Diff.DeltaRX / ArcSecond) +
        ProjNumber("ry", Diff.DeltaRY / ArcSecond) + ProjNumber("rz", Diff.DeltaRZ / ArcSecond) + " +step +inv " +
        ownCart;
    AddProjShift(there, positions, PeerPosition, pipeline, true);
    AddProjShift(back, positions, PeerWayBack, pipeline, false);
    AddGeocentricForward(forward, positions, Metres(1e-7), Own);
    AddGeocentricInverse(inverse, cartesian, PeerPosition, Own);
    AddGeocentricShift(there, positions, PeerPosition, Own, Diff, true);
    AddGeocentricShift(back, positions, PeerWayBack, Own, Diff, false);
  }
  Register(std::move(forward));
  Register(std::move(inverse));
  Register(std::move(there));
  Register(std::move(back));
}

}  // namespace bench
