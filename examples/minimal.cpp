// Converts positions to grid coordinates and back: Flinders Peak and Buninyong, in zone 55 south of UTM, and the pole.
#include <cstdio>
#include <latigo/latigo.hpp>

using latigo::api::Position;
using latigo::api::ToDegrees;

int main() {
  GeodesyParams zone55{};
  zone55.SemiMajorAxis = 6378137.0;
  zone55.InvFlattening = 298.257223563;
  zone55.Kind = LATIGO_KIND_TRANSVERSE_MERCATOR;
  zone55.Unit = 1.0;
  zone55.ScaleFactor = 0.9996;
  zone55.CentralMeridian = latigo::api::FromDegrees(147);
  zone55.FalseEasting = 500000;
  zone55.FalseNorthing = 10000000;

  const auto [geodesy, code, function] = latigo::api::Geodesy::CreateGeodesy(zone55);
  if (code != 0) {
    std::fprintf(stderr, "%s: %s\n", function, LatigoErrorText(code, function));
    return 1;
  }
  const Position positions[] = {Position::FromDegrees(-37.951033416667, 144.424867894444),
                                Position::FromDegrees(-37.652821147222, 143.926495525000),
                                Position::FromDegrees(90, 0)};
  latigo::api::Grid grids[3];
  std::int32_t codes[3];
  const latigo::api::Batch batch = geodesy.GeoXY(positions, grids, codes);
  for (std::size_t i = 0; i < 3; ++i) {
    std::printf("easting %.3f, northing %.3f, code %d\n", grids[i].x, grids[i].y, codes[i]);
  }
  if (const auto back = geodesy.XYGeo(grids[0])) {
    std::printf("latitude %.7f, longitude %.7f\n", ToDegrees(back->latitude), ToDegrees(back->longitude));
  }
  return batch.failures == 1 && batch.first == 2 ? 0 : 1;
}
