#include <latigo/latigo.h>

/* Calls through the header as a C program does. */
int32_t UseHeader(const GeodesyParams* params) {
  double x, y;
  GeodesyHandle handle = CreateGeodesy(params);
  GeoXY(handle, &x, &y, 0.9, 0.1);
  return DestroyGeodesy(handle);
}
