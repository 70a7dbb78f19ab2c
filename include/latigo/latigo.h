/** @file
 * LATIGO: geodesy for survey and mapping programs.
 *
 * A `GeodesyHandle` stands for one coordinate system: an ellipsoid, a map projection, and optionally a shift to another
 * datum, a local grid behind the projection and a geoid. Make one with `CreateGeodesy` or `CreateFileGeodesy`, convert
 * positions through it, and give it back with `DestroyGeodesy`.
 *
 * Units at this boundary
 * - angles: radians, north and east positive
 * - x, y: grid units; `Unit` of the record is metres per grid unit
 * - h, X, Y, Z: metres
 *
 * Results and errors
 *   A function that gives `int32_t` gives 1 for success and 0 for failure, unless its comment says otherwise. The code
 *   of the last call on the calling thread, 0 for success, is what `GetGeodesyError` gives. Every function that takes a
 *   handle fails with code 2 on a null handle and then touches nothing else. The codes stand in docs/errors.md.
 *   Pointers must not be null except where the comment says that they may be.
 *
 * Threads
 *   Any thread may call any function, but one object serves one thread at a time: a lookup in a grid file moves the
 *   file's position. Objects share nothing that changes.
 */
#ifndef LATIGO_LATIGO_H
#define LATIGO_LATIGO_H

#include <stddef.h>
#include <stdint.h>

#if defined(_WIN32)
#define LATIGO_API
#else
#define LATIGO_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** The object behind a handle; its contents are the library's own. */
typedef struct GeodesyObject* GeodesyHandle;

/** Projection kinds: `Kind` of the record. docs/projections.md has their sources, domains and accuracy. */
enum LatigoKind {
  LATIGO_KIND_LAMBERT = 1,               /**< Lambert conformal conic, one or two standard parallels */
  LATIGO_KIND_MERCATOR = 2,              /**< Mercator on the ellipsoid */
  LATIGO_KIND_TRANSVERSE_MERCATOR = 3,   /**< transverse Mercator */
  LATIGO_KIND_OBLIQUE_STEREOGRAPHIC = 4, /**< oblique (double) stereographic; metres, whatever `Unit` */
  LATIGO_KIND_OBLIQUE_CYLINDRICAL = 5,   /**< oblique conformal cylindrical (the Swiss grid) */
  LATIGO_KIND_HOTINE = 6,                /**< oblique Mercator (Hotine) */
  LATIGO_KIND_RSO = 7,                   /**< rectified skew orthomorphic: Hotine with rectified coordinates */
  LATIGO_KIND_AZIMUTHAL_EQUIDISTANT = 8, /**< azimuthal equidistant */
  LATIGO_KIND_MERCATOR_ON_SPHERE = 9,    /**< Mercator on a sphere of 6378388 metres; reads no parameter */
  LATIGO_KIND_ALBERS = 10,               /**< Albers equal-area conic */
  LATIGO_KIND_CASSINI = 11,              /**< Cassini-Soldner */
  LATIGO_KIND_POLAR_STEREOGRAPHIC = 12   /**< polar stereographic; metres, whatever `Unit` */
};

/* Records are packed on 4-byte boundaries, the same for every compiler and language. */
#pragma pack(push, 4)

/** Describes a coordinate system. Which fields a projection reads stands in docs/projections.md. */
typedef struct GeodesyParams {
  double SemiMajorAxis;   /**< semi-major axis a, metres */
  double InvFlattening;   /**< reciprocal flattening 1/f, for instance near 298; must not be 0 */
  int32_t Kind;           /**< one of `LatigoKind` */
  double Unit;            /**< metres per grid unit; must not be 0 */
  double ScaleFactor;     /**< central scale factor k0; 0 is read as 1.0 */
  double CentralMeridian; /**< longitude of origin, radians */
  double RefLatitude;     /**< latitude of origin, radians */
  double NorthParallel;   /**< a standard parallel, radians */
  double SouthParallel;   /**< the other standard parallel, radians */
  double SkewAzimuth;     /**< azimuth of the skew line, radians */
  double FalseEasting;    /**< grid units */
  double FalseNorthing;   /**< grid units */
} GeodesyParams;

/** The seven values between WGS-84 (or another datum) and the object's datum, in the direction towards the object's
 * datum. Rotations follow the coordinate frame rotation convention, not the position vector convention. */
typedef struct EllDiff {
  double DeltaX;     /**< translation, metres */
  double DeltaY;     /**< translation, metres */
  double DeltaZ;     /**< translation, metres */
  double DeltaScale; /**< scale as a factor, 1.0 for none; -1.0 from GetEllDiff: a datum grid is in use */
  double DeltaRX;    /**< rotation about X, radians */
  double DeltaRY;    /**< rotation about Y, radians */
  double DeltaRZ;    /**< rotation about Z, radians */
} EllDiff;

/** The local grid behind the projection. Type 0: none; type 1: similarity; types 2 and 3: fixed polynomial grids of
 * degree 5 and 7, plain numbers whatever the unit; types 4 to 16: fixed quadratic grids in chains; other types: none.
 * Only type 1 reads the doubles and the flags. For type 1, with p = s sin r and q = s cos r: X = q (x - AdjustOrigX) +
 * p (y - AdjustOrigY) + AdjustX, Y = q (y - AdjustOrigY) - p (x - AdjustOrigX) + AdjustY and the reverse flags negate
 * the final X or Y. */
typedef struct Adjustment {
  uint32_t AdjustType;   /**< low 16 bits: type; LATIGO_REVERSE_X, LATIGO_REVERSE_Y; other bits are kept */
  double AdjustOrigX;    /**< x of the point about which the grid turns and scales, projection grid units */
  double AdjustOrigY;    /**< y of that point */
  double AdjustRotation; /**< turn r, radians; positive turns the grid axes anticlockwise */
  double AdjustScale;    /**< factor s; must not be 0 */
  double AdjustX;        /**< X that the origin point gets */
  double AdjustY;        /**< Y that the origin point gets */
} Adjustment;

#pragma pack(pop)

#define LATIGO_REVERSE_X 0x10000u /**< flag of `AdjustType`: the final X is negated */
#define LATIGO_REVERSE_Y 0x20000u /**< flag of `AdjustType`: the final Y is negated */

#define LATIGO_ELLIPSOID_NAME_SIZE 24 /**< bytes of a caller's buffer for an ellipsoid name, at least */
#define LATIGO_PROJECTION_CODE_SIZE 4 /**< bytes of a caller's buffer for a projection code, at least */

/* ---- Objects ---- */

/** Makes an object from a section of a configuration file (docs/configuration.md).
 * - fileName: path of the file
 * - section: name of the section, or null for "Geodesy"
 *
 * Gives the handle, or null. Codes: 1 datum grid cannot be opened, or memory ran out; 2, 3 datum grid header bad or
 * short; 3 "Flattening" missing; 5 file, section or "Projection" missing or unknown; 7 parameters give no usable
 * projection. Code 9 comes with a handle: the geoid grid is missing, and all else works. */
LATIGO_API GeodesyHandle CreateFileGeodesy(const char* fileName, const char* section);

/** Makes an object from a record. Gives the handle, or null. Codes, in the order of testing: 3 `InvFlattening` is 0;
 * 4 `Unit` is 0; 5 unknown `Kind`; 7 parameters give no usable projection; 1 memory ran out. */
LATIGO_API GeodesyHandle CreateGeodesy(const GeodesyParams* params);

/** Ends an object and all that it owns. The handle must not be used afterwards. */
LATIGO_API int32_t DestroyGeodesy(GeodesyHandle handle);

/** Gives the record back, as the object uses it: `InvFlattening` is computed anew and a `ScaleFactor` of 0 is 1.0.
 * - ellipsoidName: may be null; LATIGO_ELLIPSOID_NAME_SIZE bytes; empty for an ellipsoid without a name
 * - projectionCode: may be null; LATIGO_PROJECTION_CODE_SIZE bytes; three letters */
LATIGO_API int32_t GetGeodesyParams(GeodesyHandle handle, GeodesyParams* params, char* ellipsoidName,
                                    char* projectionCode);

/** Gives the code that the last call on this thread left, 0 for success or if there was none. */
LATIGO_API int32_t GetGeodesyError(void);

/** Gives the version as 100 * major + minor. */
LATIGO_API int32_t GetGeodesyVersion(void);

/** Geographic to grid, on the object's datum. Codes: 6 the latitude is a pole that the projection cannot show.
 * On failure x and y are not defined. */
LATIGO_API int32_t GeoXY(GeodesyHandle handle, double* x, double* y, double latitude, double longitude);

/** Grid to geographic, on the object's datum. Codes: 10 the position lies beyond the projection's domain; 11 the
 * latitude iteration ran out of steps. On failure latitude and longitude are not defined. */
LATIGO_API int32_t XYGeo(GeodesyHandle handle, double x, double y, double* latitude, double* longitude);

/** Gives the point scale factor k of the projection at its own grid coordinates: x and y are those before any local
 * grid adjustment. Gives 1.0 on failure, which is a valid factor too: read the code. Codes: 10, 11 as for `XYGeo`. */
LATIGO_API double Scale(GeodesyHandle handle, double x, double y);

/* ---- Datum ---- */

/** Puts the seven values in force and ends a datum grid. A record whose translations and rotations are all 0 shifts
 * nothing, whatever its scale. */
LATIGO_API int32_t SetEllDiff(GeodesyHandle handle, const EllDiff* diff);

/** Gives the seven values. With a datum grid in use all are 0 and `DeltaScale` is -1.0. */
LATIGO_API int32_t GetEllDiff(GeodesyHandle handle, EllDiff* diff);

/** Puts a datum grid file in force (docs/grid-files.md), or removes it if fileName is null; either ends the seven
 * values. Codes: 1 cannot be opened; 2 header out of range; 3 header short. After a failure there is neither grid nor
 * seven values, but a shift that was in force still carries positions between the ellipsoids. */
LATIGO_API int32_t SetEllModel(GeodesyHandle handle, const char* fileName);

/** Gives the path of the datum grid, or an empty text. At most size - 1 bytes are written (size at least 1), filled up
 * with zeros; a path of size - 1 bytes or more leaves no terminator, so clear the buffer first or make it large. */
LATIGO_API int32_t GetEllModel(GeodesyHandle handle, char* buffer, int32_t size);

/** Moves a position from another ellipsoid to the object's datum by the seven values.
 * - latitude, longitude: read and written, radians
 * - height: read and written, metres; may be null for height 0
 * - a, f: the other ellipsoid: semi-major axis in metres, the flattening itself (not its reciprocal)
 *
 * Changes nothing if no seven values are in force or the two ellipsoids are equal. */
LATIGO_API int32_t EllConv(GeodesyHandle handle, double* latitude, double* longitude, double* height, double a,
                           double f);

/** Moves a position from the object's datum to another ellipsoid; arguments as for `EllConv`. */
LATIGO_API int32_t InvEllConv(GeodesyHandle handle, double* latitude, double* longitude, double* height, double a,
                              double f);

/** Moves a WGS-84 position to the object's datum. Latitude, longitude (radians) and height (metres, may be null for
 * height 0) are read and written. Without a shift in force nothing changes. A point outside the datum grid is carried
 * between the ellipsoids unshifted. */
LATIGO_API int32_t WGS84Conv(GeodesyHandle handle, double* latitude, double* longitude, double* height);

/** Moves a position from the object's datum to WGS-84; arguments as for `WGS84Conv`. */
LATIGO_API int32_t InvWGS84Conv(GeodesyHandle handle, double* latitude, double* longitude, double* height);

/** Geographic to earth-centred cartesian on the object's ellipsoid; no datum shift. */
LATIGO_API int32_t GeoECEF(GeodesyHandle handle, double* x, double* y, double* z, double latitude, double longitude,
                           double height);

/** Earth-centred cartesian to geographic on the object's ellipsoid; no datum shift. */
LATIGO_API int32_t ECEFGeo(GeodesyHandle handle, double x, double y, double z, double* latitude, double* longitude,
                           double* height);

/* ---- Lines ---- */

/** Gives the distance in grid units between two positions on the object's ellipsoid along the great circle, by the
 * mid-latitude formulas of Gauss. The azimuth at the first position towards the second (may be
 * null) is radians, clockwise from north, not normalised. The longitude difference is taken as it stands. Gives 0.0
 * on a null handle. */
LATIGO_API double GCircLL(GeodesyHandle handle, double latitude1, double longitude1, double latitude2,
                          double longitude2, double* azimuth);

/** Gives the distance along the rhumb line; all else as for `GCircLL`. */
LATIGO_API double RLineLL(GeodesyHandle handle, double latitude1, double longitude1, double latitude2,
                          double longitude2, double* azimuth);

/* ---- Heights ---- */

/** Puts a geoid grid file in force, or none if fileName is null, and the constant that is added to every undulation,
 * in the unit of the grid's values. Code 9: the file could not be loaded; then there is no grid, and the constant has
 * its new value. */
LATIGO_API int32_t SetGeoid(GeodesyHandle handle, const char* fileName, double orthoHCorr);

/** Gives the path of the geoid grid, or an empty text, and the constant (orthoHCorr may be null). At most size bytes
 * are written, filled up with zeros; a path of size bytes or more leaves no terminator. */
LATIGO_API int32_t GetGeoid(GeodesyHandle handle, char* buffer, int32_t size, double* orthoHCorr);

/** Gives the geoid undulation at a point, constant included. Code 8: the point lies outside the grid, and code 13: the
 * grid's rows cannot be read; undulation is then the constant alone. */
LATIGO_API int32_t Undulation(GeodesyHandle handle, double latitude, double longitude, double* undulation);

/** Converts a horizontal length in place: to metres if direction is not 0, to grid units if it is 0. */
LATIGO_API int32_t HConvert(GeodesyHandle handle, double* value, uint8_t direction);

/** Converts a vertical length in place: to metres if direction is not 0, to vertical units if it is 0. */
LATIGO_API int32_t VConvert(GeodesyHandle handle, double* value, uint8_t direction);

/* ---- Local grid ---- */

/** Replaces the adjustment record as a whole. Code 7: `AdjustScale` is 0, and nothing has changed. */
LATIGO_API int32_t SetAdjustment(GeodesyHandle handle, const Adjustment* adjustment);

/** Gives the adjustment record as it was set. */
LATIGO_API int32_t GetAdjustment(GeodesyHandle handle, Adjustment* adjustment);

/* ---- Names ---- */

/** Gives the name of a unit or axis in a language, cut to size - 1 bytes, in Windows-1252.
 * - request: 1 name, 2 plural, 3 short name of the horizontal unit; 4, 5, 6 the same of the vertical unit;
 *   7 word, 8 letter of the first axis; 9, 10 the same of the second
 * - language: "fra", "esp", in any mix of capitals; any other text is English
 *
 * Code 12: unknown request, or a unit that has no name. */
LATIGO_API int32_t GetLocalName(GeodesyHandle handle, int32_t request, const char* language, char* buffer,
                                int32_t size);

#ifdef __cplusplus
}
#endif

/* The layout of the records is part of the interface. */
#if defined(__cplusplus)
#define LATIGO_LAYOUT(condition, text) static_assert(condition, text)
#elif defined(__STDC_VERSION__) && __STDC_VERSION__ >= 201112L
#define LATIGO_LAYOUT(condition, text) _Static_assert(condition, text)
#else
#define LATIGO_LAYOUT_NAME2(line) latigo_layout_##line
#define LATIGO_LAYOUT_NAME(line) LATIGO_LAYOUT_NAME2(line)
#define LATIGO_LAYOUT(condition, text) typedef char LATIGO_LAYOUT_NAME(__LINE__)[(condition) ? 1 : -1]
#endif
#define LATIGO_OFFSET(record, field, bytes) \
  LATIGO_LAYOUT(offsetof(record, field) == (bytes), #record "." #field " stands at byte " #bytes)

LATIGO_OFFSET(GeodesyParams, SemiMajorAxis, 0);
LATIGO_OFFSET(GeodesyParams, InvFlattening, 8);
LATIGO_OFFSET(GeodesyParams, Kind, 16);
LATIGO_OFFSET(GeodesyParams, Unit, 20);
LATIGO_OFFSET(GeodesyParams, ScaleFactor, 28);
LATIGO_OFFSET(GeodesyParams, CentralMeridian, 36);
LATIGO_OFFSET(GeodesyParams, RefLatitude, 44);
LATIGO_OFFSET(GeodesyParams, NorthParallel, 52);
LATIGO_OFFSET(GeodesyParams, SouthParallel, 60);
LATIGO_OFFSET(GeodesyParams, SkewAzimuth, 68);
LATIGO_OFFSET(GeodesyParams, FalseEasting, 76);
LATIGO_OFFSET(GeodesyParams, FalseNorthing, 84);
LATIGO_LAYOUT(sizeof(GeodesyParams) == 92, "GeodesyParams has 92 bytes");

LATIGO_OFFSET(EllDiff, DeltaX, 0);
LATIGO_OFFSET(EllDiff, DeltaY, 8);
LATIGO_OFFSET(EllDiff, DeltaZ, 16);
LATIGO_OFFSET(EllDiff, DeltaScale, 24);
LATIGO_OFFSET(EllDiff, DeltaRX, 32);
LATIGO_OFFSET(EllDiff, DeltaRY, 40);
LATIGO_OFFSET(EllDiff, DeltaRZ, 48);
LATIGO_LAYOUT(sizeof(EllDiff) == 56, "EllDiff has 56 bytes");

LATIGO_OFFSET(Adjustment, AdjustType, 0);
LATIGO_OFFSET(Adjustment, AdjustOrigX, 4);
LATIGO_OFFSET(Adjustment, AdjustOrigY, 12);
LATIGO_OFFSET(Adjustment, AdjustRotation, 20);
LATIGO_OFFSET(Adjustment, AdjustScale, 28);
LATIGO_OFFSET(Adjustment, AdjustX, 36);
LATIGO_OFFSET(Adjustment, AdjustY, 44);
LATIGO_LAYOUT(sizeof(Adjustment) == 52, "Adjustment has 52 bytes");

#undef LATIGO_OFFSET
#undef LATIGO_LAYOUT

#endif
