/* Loops over the library's functions in C, in degrees: what the module must reproduce bit by bit. */
#include <latigo/latigo.h>

static const double degree = 0.017453292519943295;

static double turn(double azimuth) { return azimuth < 0 ? azimuth + 360 : azimuth; }

/* Converts n points by the function of a number; returns how many fail. */
long convert(int function, GeodesyHandle g, long n, const double* a, const double* b, const double* c, const double* d,
             double* x, double* y, double* z) {
  long failures = 0;
  long i;
  for (i = 0; i < n; ++i) {
    int32_t done = 1;
    x[i] = a[i] * degree;
    y[i] = b[i] * degree;
    z[i] = c[i];
    /* clang-format off */
    switch (function) {
      case 0: done = GeoXY(g, &x[i], &y[i], a[i] * degree, b[i] * degree); break;
      case 1: done = XYGeo(g, a[i], b[i], &x[i], &y[i]); break;
      case 2: done = InvWGS84Conv(g, &x[i], &y[i], &z[i]); break;
      case 3: done = WGS84Conv(g, &x[i], &y[i], &z[i]); break;
      case 4: done = GeoXY(g, &x[i], &y[i], a[i] * degree, b[i] * degree); x[i] = Scale(g, x[i], y[i]); break;
      case 5: x[i] = Scale(g, a[i], b[i]); break;
      case 6: done = Undulation(g, a[i] * degree, b[i] * degree, &x[i]); break;
      case 7: done = GeoECEF(g, &x[i], &y[i], &z[i], a[i] * degree, b[i] * degree, c[i]); break;
      case 8: done = ECEFGeo(g, a[i], b[i], c[i], &x[i], &y[i], &z[i]); break;
      case 9: x[i] = GCircLL(g, a[i] * degree, b[i] * degree, c[i] * degree, d[i] * degree, &y[i]); break;
      default: x[i] = RLineLL(g, a[i] * degree, b[i] * degree, c[i] * degree, d[i] * degree, &y[i]); break;
    }
    /* clang-format on */
    if (function == 1 || function == 2 || function == 3 || function == 8) {
      x[i] /= degree;
      y[i] /= degree;
    } else if (function > 8) {
      y[i] = turn(y[i] / degree);
    }
    failures += done == 0 || GetGeodesyError() != 0;
  }
  return failures;
}
