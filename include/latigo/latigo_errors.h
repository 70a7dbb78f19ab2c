/** @file
 * The texts of the codes of latigo.h, for messages to people. Header only: nothing of it is in the library. It compiles
 * as C99 and later, and as C++98 and later.
 */
#ifndef LATIGO_LATIGO_ERRORS_H
#define LATIGO_LATIGO_ERRORS_H

#include <latigo/latigo.h>
#include <string.h>

#ifdef __cplusplus
#define LATIGO_INLINE inline
#else
#define LATIGO_INLINE static inline
#endif

/** Returns the text of a code, in English, without a capital or a full stop: "the unit is 0".
 * - code: as `GetGeodesyError` returns it
 * - function: name of the function that failed, for instance "SetEllModel", which selects between the two meanings of
 *   some codes. Null or another text: the general meaning.
 *
 * The text is static. For a code that the library does not have it is "unknown code". */
LATIGO_INLINE const char* LatigoErrorText(int32_t code, const char* function) {
  static const struct {
    int32_t code;
    const char* functions;
    const char* text;
  } senses[] = {
      /* The first row of a code is its general meaning. */
      {LATIGO_ERROR_NONE, "all", "success"},
      {LATIGO_ERROR_SYSTEM, "functions that create or load", "out of memory, or another failure of the system"},
      {LATIGO_ERROR_GRID_NOT_OPENED, "SetEllModel, CreateFileGeodesy", "the datum grid file cannot be opened"},
      {LATIGO_ERROR_NULL_HANDLE, "every function that takes a handle", "the handle is null"},
      {LATIGO_ERROR_GRID_HEADER_RANGE, "SetEllModel, CreateFileGeodesy", "the datum grid's header is out of range"},
      {LATIGO_ERROR_NO_FLATTENING, "CreateGeodesy, CreateFileGeodesy", "the reciprocal flattening is missing or 0"},
      {LATIGO_ERROR_GRID_HEADER_SHORT, "SetEllModel, CreateFileGeodesy",
       "the datum grid's header cannot be read completely"},
      {LATIGO_ERROR_NO_UNIT, "CreateGeodesy", "the unit is 0"},
      {LATIGO_ERROR_OUTSIDE_GRID, "inside the library", "the point is outside a grid"},
      {LATIGO_ERROR_UNKNOWN_KIND, "CreateGeodesy, CreateFileGeodesy", "the projection is missing or unknown"},
      {LATIGO_ERROR_POLE, "GeoXY", "the latitude is a pole outside the projection's domain"},
      {LATIGO_ERROR_NO_USABLE_PROJECTION, "CreateGeodesy, CreateFileGeodesy",
       "the parameters define no usable projection"},
      {LATIGO_ERROR_NO_ADJUST_SCALE, "SetAdjustment", "the scale of the adjustment is 0"},
      {LATIGO_ERROR_OUTSIDE_GEOID, "Undulation", "the point is outside the geoid grid"},
      {LATIGO_ERROR_GEOID_NOT_LOADED, "SetGeoid, CreateFileGeodesy", "the geoid grid could not be loaded"},
      {LATIGO_ERROR_BEYOND_DOMAIN, "XYGeo, Scale", "the grid position is outside the projection's domain"},
      {LATIGO_ERROR_NO_CONVERGENCE, "XYGeo, Scale", "the latitude iteration reached its limit"},
      {LATIGO_ERROR_NO_SUCH_NAME, "GetLocalName", "the request is unknown, or no name exists"},
      {LATIGO_ERROR_ROW_UNREADABLE, "Undulation", "a row of the grid file cannot be read completely"}};
  /* Neither NULL nor nullptr: compilers can warn of the first in C++, and C has no other. */
  const char* general = "unknown code";
  int known = 0;
  size_t i;
  for (i = 0; i < sizeof senses / sizeof senses[0]; ++i) {
    if (senses[i].code == code) {
      if (function && *function != '\0' && strstr(senses[i].functions, function)) {
        return senses[i].text;
      }
      general = known ? general : senses[i].text;
      known = 1;
    }
  }
  return general;
}

#endif
