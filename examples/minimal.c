/* Converts a position to grid coordinates and back: Flinders Peak, in zone 55 south of UTM. */
#include <latigo/latigo.h>
#include <latigo/latigo_errors.h>
#include <stdio.h>

#define RADIANS 0.017453292519943295

int main(void) {
  const GeodesyParams zone55 = {.SemiMajorAxis = 6378137.0,
                                .InvFlattening = 298.257223563,
                                .Kind = LATIGO_KIND_TRANSVERSE_MERCATOR,
                                .Unit = 1.0,
                                .ScaleFactor = 0.9996,
                                .CentralMeridian = 147 * RADIANS,
                                .FalseEasting = 500000,
                                .FalseNorthing = 10000000};
  double x, y, latitude, longitude;
  GeodesyHandle handle = CreateGeodesy(&zone55);
  if (handle == NULL || !GeoXY(handle, &x, &y, -37.951033416667 * RADIANS, 144.424867894444 * RADIANS) ||
      !XYGeo(handle, x, y, &latitude, &longitude)) {
    fprintf(stderr, "%s\n", LatigoErrorText(GetGeodesyError(), NULL));
    return 1;
  }
  printf("easting %.3f, northing %.3f\n", x, y);
  printf("latitude %.7f, longitude %.7f\n", latitude / RADIANS, longitude / RADIANS);
  DestroyGeodesy(handle);
  return 0;
}
