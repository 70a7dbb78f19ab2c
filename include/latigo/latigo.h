/** @file
 * LATIGO: geodesy for survey and mapping programs.
 *
 * A `GeodesyHandle` refers to one coordinate system: an ellipsoid, a map projection, and optionally a datum shift, a
 * local grid applied after the projection, and a geoid model. `CreateGeodesy` or `CreateFileGeodesy` makes one,
 * `DestroyGeodesy` releases it.
 *
 * @code{.c}
 * #include <latigo/latigo.h>
 * #include <stdio.h>
 *
 * int main(void) {
 *   const double degree = 0.017453292519943295;
 *   GeodesyParams utm31 = {0};
 *   GeodesyHandle grid;
 *   double x, y;
 *   utm31.Kind = LATIGO_KIND_TRANSVERSE_MERCATOR;
 *   utm31.SemiMajorAxis = 6378137;
 *   utm31.InvFlattening = 298.257223563;
 *   utm31.Unit = 1;
 *   utm31.ScaleFactor = 0.9996;
 *   utm31.CentralMeridian = 3 * degree;
 *   utm31.FalseEasting = 500000;
 *   grid = CreateGeodesy(&utm31);
 *   if (grid == NULL || !GeoXY(grid, &x, &y, 52.5 * degree, 5 * degree)) {
 *     fprintf(stderr, "code %d\n", (int)GetGeodesyError());
 *     return 1;
 *   }
 *   printf("%.3f %.3f\n", x, y);
 *   return !DestroyGeodesy(grid);
 * }
 * @endcode
 *
 * Units
 * - angles: radians; latitudes north positive, longitudes east positive
 * - x, y (easting, northing): grid units; `Unit` of the record is metres per grid unit
 * - ellipsoidal height h, earth-centred X, Y, Z: metres
 *
 * Ranges
 * - Latitudes are meant from -pi/2 to pi/2 and are not tested, except where a code says so. A function that returns a
 *   latitude from a datum conversion or from earth-centred coordinates keeps to that range.
 * - Longitudes are meant from -pi to pi. Whether one beyond is wrapped depends on the function and, for `GeoXY`, on the
 *   kind.
 * - NaN and infinite arguments never crash or hang: they yield NaN or another meaningless value, or a code. A program
 *   that lets floating-point exceptions trap must mask them during calls.
 * - Outside its domain a projection may return meaningless values, infinities or NaN, with code 0. docs/projections.md
 *   has the domain of each kind.
 *
 * Results and codes
 *   A function that returns `int32_t` returns 1 for success and 0 for failure, unless its comment says otherwise.
 *   `GetGeodesyError` returns the code of the calling thread's last call, 0 for success. Every function that takes a
 *   handle fails with LATIGO_ERROR_NULL_HANDLE on a null handle and then writes nothing. `LatigoErrorText` of
 *   latigo_errors.h has the text of each code. Pointers must not be null except where the comment allows it.
 *
 * Threads
 *   Any thread may call any function, but only one thread at a time may use an object with a grid file: even a
 *   conversion may load other rows of the file. Conversions do not change an object without a grid file; threads may
 *   share one as long as none sets or destroys anything. Different objects share no mutable state.
 *
 * Calling convention
 *   The C convention, cdecl, with undecorated names. The declarations carry it (LATIGO_CALL), so that a program built
 *   with another default convention calls correctly.
 *
 * The header compiles as C99 and later, and as C++98 and later.
 */
#ifndef LATIGO_LATIGO_H
#define LATIGO_LATIGO_H

#include <stddef.h>
#include <stdint.h>

#define LATIGO_VERSION_MAJOR 13 /**< version of this header */
#define LATIGO_VERSION_MINOR 2  /**< version of this header */

/** Version of this header as `GetGeodesyVersion` returns the library's: 100 * major + minor. */
#define LATIGO_VERSION (100 * LATIGO_VERSION_MAJOR + LATIGO_VERSION_MINOR)

#if defined(_WIN32)
#define LATIGO_API
#else
#define LATIGO_API __attribute__((visibility("default")))
#endif

#if defined(_WIN32) && !defined(_WIN64)
#define LATIGO_CALL __cdecl
#else
#define LATIGO_CALL
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** The object referred to by a handle; its contents are private to the library. */
typedef struct GeodesyObject* GeodesyHandle;

/** Projection kinds: `Kind` of the record. docs/projections.md has their sources, domains and accuracy. */
enum LatigoKind {
  LATIGO_KIND_LAMBERT = 1,               /**< Lambert conformal conic, one or two standard parallels */
  LATIGO_KIND_MERCATOR = 2,              /**< Mercator on the ellipsoid */
  LATIGO_KIND_TRANSVERSE_MERCATOR = 3,   /**< transverse Mercator */
  LATIGO_KIND_OBLIQUE_STEREOGRAPHIC = 4, /**< oblique (double) stereographic; metres, `Unit` is ignored */
  LATIGO_KIND_OBLIQUE_CYLINDRICAL = 5,   /**< oblique conformal cylindrical (the Swiss grid) */
  LATIGO_KIND_HOTINE = 6,                /**< oblique Mercator (Hotine) */
  LATIGO_KIND_RSO = 7,                   /**< rectified skew orthomorphic: Hotine with rectified coordinates */
  LATIGO_KIND_AZIMUTHAL_EQUIDISTANT = 8, /**< azimuthal equidistant */
  LATIGO_KIND_MERCATOR_ON_SPHERE = 9,    /**< Mercator on a sphere of 6378388 metres; reads no parameter */
  LATIGO_KIND_ALBERS = 10,               /**< Albers equal-area conic */
  LATIGO_KIND_CASSINI = 11,              /**< Cassini-Soldner */
  LATIGO_KIND_POLAR_STEREOGRAPHIC = 12   /**< polar stereographic; metres, `Unit` is ignored */
};

/** Types of local grid: the low 16 bits of `AdjustType`. Every other number acts as LATIGO_ADJUST_NONE.
 *
 * Types 2 to 16 are fixed transformations. They need no parameter: the doubles of the record and the flags have no
 * effect. Both directions are approximations of each other, so a round trip (`GeoXY`, then `XYGeo`) does not close
 * exactly.
 *
 * Types 2 and 3: polynomials of degree 5 and 7 in x and y about the origin below. Coordinates are plain numbers, never
 * converted by `Unit`; the origins have the size of a transverse Mercator's coordinates in metres at latitude 55 and 56
 * north. The local axes run east and north, rotated clockwise by 1.1 degrees; local x is negative. "Within" is the
 * distance from the origin, the length is the largest round-trip error.
 * | Type | Origin x, y               | Local x, y of the origin    | Round trip within                           |
 * |------|---------------------------|-----------------------------|---------------------------------------------|
 * | 2    | 678360.656, 6140437.158   | -118722.22369, 106064.77821 | 50000: 0.001; 100000: 0.004; 200000: 0.21   |
 * | 3    | 540369.219, 6219828.218   | -255149.27276, 188195.93793 | 100000: 0.0002; 150000: 0.004; 200000: 0.06 |
 *
 * Beyond that the error grows with the sixth and the eighth power of the distance: 213 units and 9829 units at 500000.
 *
 * Types 4 to 16: quadratic polynomials in chains of 20.1167651216 metres (Sears), for distances up to about 10000
 * chains (200 km) from the origin. Coordinates are grid units and converted to chains by `Unit`, so that the ground
 * position does not depend on the unit. The local axes run east and north. All figures below are chains; the
 * round-trip error grows in proportion to the distance from the origin.
 * | Type | Origin x, y          | Local x, y of the origin | Round trip within 1000 | within 10000 |
 * |------|----------------------|--------------------------|------------------------|--------------|
 * | 4    | 14652.327, 32818.535 | 0.0139, -0.0229          | 0.020                  | 0.20         |
 * | 5    | 23123.367, 32402.468 | -0.0093, 0.0055          | 0.003                  | 0.04         |
 * | 6    | 24530.257, 20402.611 | 0.0392, 0.0402           | 0.003                  | 0.03         |
 * | 7    | 24530.257, 20402.611 | -0.0167, -0.0074         | 0.003                  | 0.03         |
 * | 8    | 24530.257, 20402.611 | -0.0142, 0.0190          | 0.003                  | 0.03         |
 * | 9    | 24530.257, 20402.611 | 0.1127, -0.1201          | 0.003                  | 0.04         |
 * | 10   | 15613.508, 26737.765 | 0.0850, 6633.9373        | 0.016                  | 0.17         |
 * | 11   | 15613.508, 26737.765 | -0.0098, 6633.9306       | 0.016                  | 0.19         |
 * | 12   | 30745.124, 11227.927 | -0.0210, 0.0098          | 0.001                  | 0.01         |
 * | 13   | 21786.154, 14918.998 | -12.0190, -47.1388       | 0.005                  | 0.06         |
 * | 14   | 19407.061, 20245.210 | -1081.64486, 2781.79746  | 0.008                  | 0.10         |
 * | 15   | 13032.613, 29837.050 | 0.0020, -0.0035          | 0.024                  | 0.27         |
 * | 16   | 27071.372, 27187.737 | -0.0022, -0.0023         | 0.001                  | 0.02         |
 */
enum LatigoAdjust {
  LATIGO_ADJUST_NONE = 0,         /**< no local grid */
  LATIGO_ADJUST_SIMILARITY = 1,   /**< similarity transformation; the one type that reads the doubles and the flags */
  LATIGO_ADJUST_POLYNOMIAL_5 = 2, /**< polynomial of degree 5 */
  LATIGO_ADJUST_POLYNOMIAL_7 = 3, /**< polynomial of degree 7 */
  LATIGO_ADJUST_CHAINS_4 = 4,     /**< quadratic polynomial in chains */
  LATIGO_ADJUST_CHAINS_5 = 5,     /**< quadratic polynomial in chains */
  LATIGO_ADJUST_CHAINS_6 = 6,     /**< quadratic polynomial in chains */
  LATIGO_ADJUST_CHAINS_7 = 7,     /**< quadratic polynomial in chains */
  LATIGO_ADJUST_CHAINS_8 = 8,     /**< quadratic polynomial in chains */
  LATIGO_ADJUST_CHAINS_9 = 9,     /**< quadratic polynomial in chains */
  LATIGO_ADJUST_CHAINS_10 = 10,   /**< quadratic polynomial in chains */
  LATIGO_ADJUST_CHAINS_11 = 11,   /**< quadratic polynomial in chains */
  LATIGO_ADJUST_CHAINS_12 = 12,   /**< quadratic polynomial in chains */
  LATIGO_ADJUST_CHAINS_13 = 13,   /**< quadratic polynomial in chains */
  LATIGO_ADJUST_CHAINS_14 = 14,   /**< quadratic polynomial in chains */
  LATIGO_ADJUST_CHAINS_15 = 15,   /**< quadratic polynomial in chains */
  LATIGO_ADJUST_CHAINS_16 = 16    /**< quadratic polynomial in chains */
};

#define LATIGO_ADJUST_TYPE 0xFFFFu /**< the bits of `AdjustType` that hold the type */
#define LATIGO_REVERSE_X 0x10000u  /**< flag of `AdjustType`: the final X is negated */
#define LATIGO_REVERSE_Y 0x20000u  /**< flag of `AdjustType`: the final Y is negated */

/** Requests of `GetLocalName`. */
enum LatigoName {
  LATIGO_NAME_UNIT = 1,                /**< horizontal unit, singular: "meter" */
  LATIGO_NAME_UNITS = 2,               /**< horizontal unit, plural: "meters" */
  LATIGO_NAME_UNIT_SHORT = 3,          /**< horizontal unit, abbreviation: "m" */
  LATIGO_NAME_VERTICAL_UNIT = 4,       /**< vertical unit, singular */
  LATIGO_NAME_VERTICAL_UNITS = 5,      /**< vertical unit, plural */
  LATIGO_NAME_VERTICAL_UNIT_SHORT = 6, /**< vertical unit, abbreviation */
  LATIGO_NAME_FIRST_AXIS = 7,          /**< first axis: "easting", or "westing" if reversed */
  LATIGO_NAME_FIRST_AXIS_LETTER = 8,   /**< first axis: "X", or "Y" if reversed */
  LATIGO_NAME_SECOND_AXIS = 9,         /**< second axis: "northing", or "southing" if reversed */
  LATIGO_NAME_SECOND_AXIS_LETTER = 10  /**< second axis: "Y", or "X" if reversed */
};

/** Codes of `GetGeodesyError`. Some numbers have two meanings, depending on the function; docs/errors.md has both. */
enum LatigoError {
  LATIGO_ERROR_NONE = 0,                 /**< success */
  LATIGO_ERROR_SYSTEM = 1,               /**< creating, loading: memory ran out, or another failure of the system */
  LATIGO_ERROR_GRID_NOT_OPENED = 1,      /**< SetEllModel, CreateFileGeodesy: the datum grid cannot be opened */
  LATIGO_ERROR_NULL_HANDLE = 2,          /**< every function that takes a handle: it is null */
  LATIGO_ERROR_GRID_HEADER_RANGE = 2,    /**< SetEllModel, CreateFileGeodesy: datum grid header out of range */
  LATIGO_ERROR_NO_FLATTENING = 3,        /**< creating: the reciprocal flattening is missing or 0 */
  LATIGO_ERROR_GRID_HEADER_SHORT = 3,    /**< SetEllModel, CreateFileGeodesy: datum grid header incomplete */
  LATIGO_ERROR_NO_UNIT = 4,              /**< CreateGeodesy: the unit is 0 */
  LATIGO_ERROR_OUTSIDE_GRID = 4,         /**< inside the library; no call leaves it */
  LATIGO_ERROR_UNKNOWN_KIND = 5,         /**< creating: the projection, file or section is missing or unknown */
  LATIGO_ERROR_POLE = 6,                 /**< GeoXY: the latitude is a pole that the projection maps to infinity */
  LATIGO_ERROR_NO_USABLE_PROJECTION = 7, /**< creating: the parameters define no usable projection */
  LATIGO_ERROR_NO_ADJUST_SCALE = 7,      /**< SetAdjustment: the scale of the adjustment is 0 */
  LATIGO_ERROR_OUTSIDE_GEOID = 8,        /**< Undulation: the point lies outside the geoid grid */
  LATIGO_ERROR_GEOID_NOT_LOADED = 9,     /**< SetGeoid, CreateFileGeodesy: the geoid grid could not be loaded */
  LATIGO_ERROR_BEYOND_DOMAIN = 10,       /**< XYGeo, Scale: the grid position lies outside the projection's domain */
  LATIGO_ERROR_NO_CONVERGENCE = 11,      /**< XYGeo, Scale: the latitude iteration did not converge */
  LATIGO_ERROR_NO_SUCH_NAME = 12,        /**< GetLocalName: the request is unknown, or no name exists */
  LATIGO_ERROR_ROW_UNREADABLE = 13       /**< Undulation: a row of the grid file cannot be read */
};

/* Records are packed on 4-byte boundaries, the same for every compiler and language. */
#pragma pack(push, 4)

/** Describes a coordinate system. docs/projections.md says which fields each kind reads; the others are kept and
 * returned unchanged. */
typedef struct GeodesyParams {
  double SemiMajorAxis;   /**< semi-major axis a, metres */
  double InvFlattening;   /**< reciprocal flattening 1/f, for instance 298.257223563; must not be 0 */
  int32_t Kind;           /**< one of `LatigoKind` */
  double Unit;            /**< metres per grid unit; must not be 0 */
  double ScaleFactor;     /**< scale factor k0 at the natural origin; 0 means 1.0 */
  double CentralMeridian; /**< longitude of natural origin, radians */
  double RefLatitude;     /**< latitude of natural origin, radians; Mercator: latitude of true scale */
  double NorthParallel;   /**< a standard parallel, radians */
  double SouthParallel;   /**< the other standard parallel, radians; both may be given in either order */
  double SkewAzimuth;     /**< azimuth of the initial line, radians, clockwise from north */
  double FalseEasting;    /**< grid units */
  double FalseNorthing;   /**< grid units */
} GeodesyParams;

/** A seven-parameter (Helmert) transformation from WGS-84, or another datum, to the object's datum, in the coordinate
 * frame rotation convention (EPSG method 1032), not the position vector convention. Parameters published in the
 * position vector convention need the signs of the three rotations changed; those published towards WGS-84 need all
 * seven signs changed.
 *
 * From the other datum: X' = (X + rZ Y - rY Z) s + dX, Y' = (Y - rZ X + rX Z) s + dY, Z' = (Z + rY X - rX Y) s + dZ.
 * To the other datum: the same with the signs of rotations and translations changed, 1/s for s, and the translation
 * subtracted last. A round trip therefore leaves a residue of about translation * (rotation + |s - 1|): millimetres. */
typedef struct EllDiff {
  double DeltaX;     /**< translation dX, metres */
  double DeltaY;     /**< translation dY, metres */
  double DeltaZ;     /**< translation dZ, metres */
  double DeltaScale; /**< scale s as a factor, 1.0 for none; `GetEllDiff` returns -1.0 if a datum grid is set */
  double DeltaRX;    /**< rotation rX about X, radians */
  double DeltaRY;    /**< rotation rY about Y, radians */
  double DeltaRZ;    /**< rotation rZ about Z, radians */
} EllDiff;

/** The local grid: a transformation of the projection's x, y to the X, Y of the caller.
 *
 * Similarity, with r = `AdjustRotation`, s = `AdjustScale`, dx = x - `AdjustOrigX`, dy = y - `AdjustOrigY`:
 * X = s cos r dx + s sin r dy + `AdjustX`, Y = s cos r dy - s sin r dx + `AdjustY`. The flags then negate X or Y,
 * translation included. */
typedef struct Adjustment {
  uint32_t AdjustType;   /**< one of `LatigoAdjust`, with LATIGO_REVERSE_X, LATIGO_REVERSE_Y; other bits are kept */
  double AdjustOrigX;    /**< projection x of the point about which the grid rotates and scales, grid units */
  double AdjustOrigY;    /**< projection y of that point */
  double AdjustRotation; /**< rotation r of the grid axes, radians, anticlockwise positive */
  double AdjustScale;    /**< scale factor s; must not be 0, for any type */
  double AdjustX;        /**< X of that point, grid units */
  double AdjustY;        /**< Y of that point */
} Adjustment;

#pragma pack(pop)

#define LATIGO_ELLIPSOID_NAME_SIZE 24 /**< smallest size in bytes of a caller's buffer for an ellipsoid name */
#define LATIGO_PROJECTION_CODE_SIZE 4 /**< smallest size in bytes of a caller's buffer for a projection code */

#define LATIGO_FROM_METRES 0 /**< direction of `HConvert` and `VConvert` */
#define LATIGO_TO_METRES 1   /**< direction of `HConvert` and `VConvert` */

/* ---- Objects ---- */

/** Makes an object from a section of a configuration file (docs/configuration.md; angles there are degrees).
 * - fileName: path of the file
 * - section: name of the section, or null for "Geodesy"
 *
 * Returns the handle, or null. Codes: 1 datum grid cannot be opened, or memory ran out; 2, 3 datum grid header out of
 * range or incomplete; 3 "Flattening" missing or 0; 5 file, section or "Projection" missing or unknown; 7 parameters
 * define no usable projection. Code 9 accompanies a usable handle: the geoid grid is missing, all else works. */
LATIGO_API GeodesyHandle LATIGO_CALL CreateFileGeodesy(const char* fileName, const char* section);

/** Makes an object from a record. Returns the handle, or null. Codes, in the order of testing: 3 `InvFlattening` is 0;
 * 4 `Unit` is 0; 5 unknown `Kind`; 7 parameters define no usable projection; 1 memory ran out. */
LATIGO_API GeodesyHandle LATIGO_CALL CreateGeodesy(const GeodesyParams* params);

/** Destroys an object and closes its files. The handle must not be used afterwards. */
LATIGO_API int32_t LATIGO_CALL DestroyGeodesy(GeodesyHandle handle);

/** Writes the record as the object uses it: `InvFlattening` is recomputed as 1/f and may differ in the last digit, a
 * `ScaleFactor` of 0 is 1.0.
 * - ellipsoidName: may be null; LATIGO_ELLIPSOID_NAME_SIZE bytes; empty for an ellipsoid without a name
 * - projectionCode: may be null; LATIGO_PROJECTION_CODE_SIZE bytes; three letters */
LATIGO_API int32_t LATIGO_CALL GetGeodesyParams(GeodesyHandle handle, GeodesyParams* params, char* ellipsoidName,
                                                char* projectionCode);

/** Returns the code of the last call on this thread, one of `LatigoError`; 0 for success or if there was no call. */
LATIGO_API int32_t LATIGO_CALL GetGeodesyError(void);

/** Returns the library's version as 100 * major + minor. */
LATIGO_API int32_t LATIGO_CALL GetGeodesyVersion(void);

/** Geographic to grid coordinates, on the object's datum: projection, then local grid.
 * - latitude: -pi/2 to pi/2, radians
 * - longitude: radians. Kind 2 wraps the difference from the central meridian into -pi to pi, kind 3 by one turn at
 *   most; kinds 8 and 12 are periodic. The other kinds do not wrap the difference: keep it within -pi to pi.
 *
 * Codes: 6 the latitude is a pole that the projection maps to infinity (kinds 1, 2, 3 only; others return values far
 * away, or NaN, with code 0). After a failure x and y are undefined. */
LATIGO_API int32_t LATIGO_CALL GeoXY(GeodesyHandle handle, double* x, double* y, double latitude, double longitude);

/** Grid to geographic coordinates, on the object's datum: local grid, then projection. Kind 2 wraps the longitude into
 * -pi to pi, kind 3 refuses one outside; the other kinds may return one beyond pi near the 180 degree meridian.
 *
 * Codes: 10 the position lies outside the projection's domain (kinds 3, 10); 11 the latitude iteration did not converge
 * (kinds 1, 6, 7, 10). Outside the domain the other kinds return a wrong position or NaN with code 0. After a failure
 * latitude and longitude are undefined: one of them may have been written. */
LATIGO_API int32_t LATIGO_CALL XYGeo(GeodesyHandle handle, double x, double y, double* latitude, double* longitude);

/** Returns the point scale factor k of the projection at its own grid coordinates: x and y are those before any local
 * grid. Kinds 5, 8, 9 and 11 return 1.0 everywhere; docs/projections.md says what the others include. Returns 1.0 on
 * failure, which is a valid factor too: test `GetGeodesyError`. Codes: 10 (kinds 3, 10), 11 (kinds 6, 7). */
LATIGO_API double LATIGO_CALL Scale(GeodesyHandle handle, double x, double y);

/* ---- Datum ---- */

/** Sets the seven-parameter (Helmert) transformation and closes any datum grid. If all translations and rotations are
 * 0, conversions change nothing, whatever the scale. */
LATIGO_API int32_t LATIGO_CALL SetEllDiff(GeodesyHandle handle, const EllDiff* diff);

/** Writes the seven parameters. With a datum grid set all are 0, except `DeltaScale`, which is -1.0. */
LATIGO_API int32_t LATIGO_CALL GetEllDiff(GeodesyHandle handle, EllDiff* diff);

/** Sets a datum grid file (docs/grid-files.md), or removes it if fileName is null; either clears the seven parameters.
 * Codes: 1 the file cannot be opened; 2 header out of range; 3 header incomplete. After a failure the grid and the
 * parameters are cleared; if a shift was active, conversions still change the ellipsoid, without a shift. */
LATIGO_API int32_t LATIGO_CALL SetEllModel(GeodesyHandle handle, const char* fileName);

/** Writes the path of the datum grid, or an empty text. At most size - 1 bytes are written (size at least 1), padded
 * with zeros; a path of size - 1 bytes or more is cut and has no terminator, so clear the buffer first. */
LATIGO_API int32_t LATIGO_CALL GetEllModel(GeodesyHandle handle, char* buffer, int32_t size);

/** Converts a position from another ellipsoid to the object's datum by the seven-parameter transformation.
 * - latitude, longitude: read and written, radians; results within -pi/2 to pi/2 and -pi to pi
 * - height: read and written, metres above the ellipsoid; may be null for height 0
 * - a, f: the other ellipsoid: semi-major axis in metres, the flattening itself (not its reciprocal)
 *
 * Changes nothing if no such transformation is active (also with a datum grid) or if a and f equal the object's. */
LATIGO_API int32_t LATIGO_CALL EllConv(GeodesyHandle handle, double* latitude, double* longitude, double* height,
                                       double a, double f);

/** Converts a position from the object's datum to another ellipsoid; arguments as for `EllConv`. */
LATIGO_API int32_t LATIGO_CALL InvEllConv(GeodesyHandle handle, double* latitude, double* longitude, double* height,
                                          double a, double f);

/** Converts a WGS-84 position to the object's datum, by the seven parameters or the datum grid.
 * - latitude, longitude: read and written, radians; results within -pi/2 to pi/2 and -pi to pi
 * - height: read and written, metres above the ellipsoid; may be null for height 0
 *
 * Without an active shift nothing changes, even if the ellipsoids differ. A point outside the datum grid, or in a row
 * that cannot be read, is converted between the ellipsoids without a shift, with code 0. A grid is interpolated at the
 * given position, so a round trip differs by the change of the grid over one shift. */
LATIGO_API int32_t LATIGO_CALL WGS84Conv(GeodesyHandle handle, double* latitude, double* longitude, double* height);

/** Converts a position from the object's datum to WGS-84; arguments as for `WGS84Conv`. */
LATIGO_API int32_t LATIGO_CALL InvWGS84Conv(GeodesyHandle handle, double* latitude, double* longitude, double* height);

/** Geographic to earth-centred, earth-fixed cartesian coordinates on the object's ellipsoid; no datum shift. Any finite
 * latitude and longitude will do: only their sines and cosines are used. */
LATIGO_API int32_t LATIGO_CALL GeoECEF(GeodesyHandle handle, double* x, double* y, double* z, double latitude,
                                       double longitude, double height);

/** Earth-centred, earth-fixed cartesian to geographic coordinates on the object's ellipsoid; no datum shift. Latitude
 * within -pi/2 to pi/2, longitude within -pi to pi; on the polar axis the longitude is 0. */
LATIGO_API int32_t LATIGO_CALL ECEFGeo(GeodesyHandle handle, double x, double y, double z, double* latitude,
                                       double* longitude, double* height);

/* ---- Lines ---- */

/** Returns the distance in grid units between two positions on the object's ellipsoid along the geodesic, by the Gauss
 * mid-latitude formulas, which are meant for lines of up to some hundred kilometres.
 * - azimuth: at the first position towards the second, radians, clockwise from north, not normalised; may be null
 *
 * The longitude difference is not normalised: for a difference above pi the line is the longer one around the earth.
 * Returns 0.0 on a null handle. */
LATIGO_API double LATIGO_CALL GCircLL(GeodesyHandle handle, double latitude1, double longitude1, double latitude2,
                                      double longitude2, double* azimuth);

/** Returns the distance in grid units along the rhumb line (loxodrome), of any length; the azimuth is constant along
 * it and lies within -pi to pi. All else as for `GCircLL`. */
LATIGO_API double LATIGO_CALL RLineLL(GeodesyHandle handle, double latitude1, double longitude1, double latitude2,
                                      double longitude2, double* azimuth);

/* ---- Heights ---- */

/** Sets a geoid grid file, or none if fileName is null, and the constant that is added to every undulation, in the unit
 * of the grid's values. Code 9: the file could not be loaded; then no grid is set, and the constant has its new
 * value. */
LATIGO_API int32_t LATIGO_CALL SetGeoid(GeodesyHandle handle, const char* fileName, double orthoHCorr);

/** Writes the path of the geoid grid, or an empty text, and the constant (orthoHCorr may be null). At most size bytes
 * are written, padded with zeros; a path of size bytes or more is cut and has no terminator. */
LATIGO_API int32_t LATIGO_CALL GetGeoid(GeodesyHandle handle, char* buffer, int32_t size, double* orthoHCorr);

/** Writes the geoid undulation N at a point, constant included: h = H + N for the ellipsoidal height h and the
 * orthometric height H. Without a grid it is the constant everywhere. A grid that crosses the 180 degree meridian
 * accepts longitudes from -pi to pi. Codes: 8 the point lies outside the grid, 13 the grid's rows cannot be read;
 * undulation is then the constant alone. */
LATIGO_API int32_t LATIGO_CALL Undulation(GeodesyHandle handle, double latitude, double longitude, double* undulation);

/** Converts a horizontal length in place: with LATIGO_TO_METRES from grid units, with LATIGO_FROM_METRES to them. Any
 * direction other than 0 is LATIGO_TO_METRES. */
LATIGO_API int32_t LATIGO_CALL HConvert(GeodesyHandle handle, double* value, uint8_t direction);

/** Converts a vertical length in place, between metres and vertical units; directions as for `HConvert`. The vertical
 * unit is that of the configuration file, otherwise the grid unit. */
LATIGO_API int32_t LATIGO_CALL VConvert(GeodesyHandle handle, double* value, uint8_t direction);

/* ---- Local grid ---- */

/** Replaces the adjustment record as a whole. Code 7: `AdjustScale` is 0, and nothing has changed. A similarity also
 * sets the names of the axes by its flags; other types leave the names as they were. */
LATIGO_API int32_t LATIGO_CALL SetAdjustment(GeodesyHandle handle, const Adjustment* adjustment);

/** Writes the adjustment record as it was set. */
LATIGO_API int32_t LATIGO_CALL GetAdjustment(GeodesyHandle handle, Adjustment* adjustment);

/* ---- Names ---- */

/** Writes the name of a unit or axis in a language, cut to size - 1 bytes and terminated, in Windows-1252.
 * - request: one of `LatigoName`
 * - language: "fra" or "esp", in any capitals; any other text is English. Abbreviations and letters are the same in all
 *
 * Code 12: unknown request, or a unit that has no name. */
LATIGO_API int32_t LATIGO_CALL GetLocalName(GeodesyHandle handle, int32_t request, const char* language, char* buffer,
                                            int32_t size);

#ifdef __cplusplus
}
#endif

/* The layout of the records is part of the interface. */
#if defined(__cplusplus) && __cplusplus >= 201103L
#define LATIGO_LAYOUT(condition, text) static_assert(condition, text)
#elif defined(__STDC_VERSION__) && __STDC_VERSION__ >= 201112L
#define LATIGO_LAYOUT(condition, text) _Static_assert(condition, text)
#else
#define LATIGO_LAYOUT_NAME2(line) latigo_layout_##line
#define LATIGO_LAYOUT_NAME(line) LATIGO_LAYOUT_NAME2(line)
#define LATIGO_LAYOUT(condition, text) typedef char LATIGO_LAYOUT_NAME(__LINE__)[(condition) ? 1 : -1]
#endif
#define LATIGO_OFFSET(record, field, bytes) \
  LATIGO_LAYOUT(offsetof(record, field) == (bytes), #record "." #field " is at byte " #bytes)

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
