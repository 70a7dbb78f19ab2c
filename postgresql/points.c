// The functions of the extension latigo_postgis: points with x the longitude and y the latitude, degrees, or grid
// coordinates. PostGIS itself takes points apart and makes them: its functions are called as from SQL, so that nothing
// here depends on the version of its formats.
#include <postgres.h>

#include <access/htup_details.h>
#include <catalog/pg_type.h>
#include <nodes/value.h>
#include <parser/parse_func.h>
#include <utils/lsyscache.h>
#include <utils/syscache.h>

#include <math.h>

#include "call.h"

enum { SRID_WGS84 = 4326 };

// Bits of ST_Zmflag.
enum { HAS_M = 1, HAS_Z = 2 };

// The functions of PostGIS, looked up by the first call of a call site.
enum { ST_X, ST_Y, ST_Z, ST_M, ST_ZMFLAG, ST_SRID, MAKE_XY, MAKE_XYZ, MAKE_XYZM, MAKE_XYM, SET_SRID, FUNCTIONS };

// A point of two coordinates that PostGIS made, and where they stand in its bytes: others with the same bytes around
// them are read and made by copying, in a tenth of the time of the calls.
typedef struct Model {
  bytea* point;   // null if there is none
  size_t prefix;  // bytes of its data before the coordinates, x and y
  int srid;
} Model;

typedef struct Postgis {
  FmgrInfo functions[FUNCTIONS];
  Model in;   // of the argument
  Model out;  // of the result
} Postgis;

// Their names, and arguments: G a geometry, D a double, I an integer.
static const struct {
  const char* name;
  const char* arguments;
} Signatures[FUNCTIONS] = {
    [ST_X] = {"st_x", "G"},
    [ST_Y] = {"st_y", "G"},
    [ST_Z] = {"st_z", "G"},
    [ST_M] = {"st_m", "G"},
    [ST_ZMFLAG] = {"st_zmflag", "G"},
    [ST_SRID] = {"st_srid", "G"},
    [MAKE_XY] = {"st_makepoint", "DD"},
    [MAKE_XYZ] = {"st_makepoint", "DDD"},
    [MAKE_XYZM] = {"st_makepoint", "DDDD"},
    [MAKE_XYM] = {"st_makepointm", "DDD"},
    [SET_SRID] = {"st_setsrid", "GI"},
};

// The functions with these names and exactly these arguments in the schema of the type of argument 1: that of PostGIS.
static Postgis* PostgisOf(FunctionCallInfo fcinfo, CallSite* site) {
  Oid* types = NULL;
  int count = 0;
  HeapTuple type;
  char* schema;
  Postgis* postgis = site->more;
  if (postgis != NULL) {
    return postgis;
  }
  get_func_signature(fcinfo->flinfo->fn_oid, &types, &count);
  type = SearchSysCache1(TYPEOID, ObjectIdGetDatum(types[1]));
  if (!HeapTupleIsValid(type)) {
    elog(ERROR, "latigo: the type %u is not found", types[1]);
  }
  schema = get_namespace_name(((Form_pg_type)GETSTRUCT(type))->typnamespace);
  ReleaseSysCache(type);
  postgis = MemoryContextAllocZero(fcinfo->flinfo->fn_mcxt, sizeof *postgis);
  for (int i = 0; i < FUNCTIONS; ++i) {
    Oid arguments[4] = {InvalidOid};
    const int length = (int)strlen(Signatures[i].arguments);
    for (int j = 0; j < length; ++j) {
      const char letter = Signatures[i].arguments[j];
      arguments[j] = letter == 'G' ? types[1] : letter == 'D' ? FLOAT8OID : INT4OID;
    }
    fmgr_info_cxt(LookupFuncName(list_make2(makeString(schema), makeString(pstrdup(Signatures[i].name))), length,
                                 arguments, false),
                  &postgis->functions[i], fcinfo->flinfo->fn_mcxt);
  }
  site->more = postgis;
  return postgis;
}

// Calls one; returns whether the result is not NULL.
static bool Call(Postgis* postgis, int function, const Datum* arguments, Datum* result) {
  LOCAL_FCINFO(call, 4);
  const int count = (int)strlen(Signatures[function].arguments);
  InitFunctionCallInfoData(*call, &postgis->functions[function], (short)count, InvalidOid, NULL, NULL);
  for (int i = 0; i < count; ++i) {
    call->args[i].value = arguments[i];
    call->args[i].isnull = false;
  }
  *result = FunctionCallInvoke(call);
  return !call->isnull;
}

static Datum Value(Postgis* postgis, int function, const Datum* arguments) {
  Datum result;
  if (!Call(postgis, function, arguments, &result)) {
    elog(ERROR, "latigo: %s returned NULL", Signatures[function].name);
  }
  return result;
}

static double Coordinate(Postgis* postgis, int function, Datum point) {
  return DatumGetFloat8(Value(postgis, function, &point));
}

// Reads a point whose bytes are those of the model but for the coordinates. They are not NaN: those are failed points.
static bool ReadLike(const Model* model, const bytea* given, double* x, double* y) {
  if (model->point == NULL || VARSIZE_ANY_EXHDR(given) != VARSIZE(model->point) - VARHDRSZ ||
      memcmp(VARDATA_ANY(given), VARDATA(model->point), model->prefix) != 0) {
    return false;
  }
  memcpy(x, VARDATA_ANY(given) + model->prefix, sizeof *x);
  memcpy(y, VARDATA_ANY(given) + model->prefix + sizeof *x, sizeof *y);
  return !isnan(*x) && !isnan(*y);
}

// Makes the model of an SRID, unless it is one already. Fails if the coordinates are not the last of its bytes, as doubles
// of this machine.
static void SetModel(FunctionCallInfo fcinfo, Model* model, int srid) {
  const double given[2] = {1.2345678901234567e+89, -7.6543210987654321e-78};
  double found[2] = {0, 0};
  Datum made[4] = {Float8GetDatum(given[0]), Float8GetDatum(given[1]), 0, 0};
  Model next;
  Postgis* postgis = ((CallSite*)fcinfo->flinfo->fn_extra)->more;
  MemoryContext before;
  if (model->point != NULL && model->srid == srid) {
    return;
  }
  made[0] = Value(postgis, MAKE_XY, made);
  made[1] = Int32GetDatum(srid);
  made[0] = Value(postgis, SET_SRID, made);
  before = MemoryContextSwitchTo(fcinfo->flinfo->fn_mcxt);
  next.point = PG_DETOAST_DATUM_COPY(made[0]);
  MemoryContextSwitchTo(before);
  next.prefix = VARSIZE(next.point) - VARHDRSZ - sizeof given;
  next.srid = srid;
  if (VARSIZE(next.point) < VARHDRSZ + sizeof given || !ReadLike(&next, next.point, &found[0], &found[1]) ||
      found[0] != given[0] || found[1] != given[1]) {
    elog(ERROR, "latigo: this version of PostGIS stores points in an unknown way");
  }
  if (model->point != NULL) {
    pfree(model->point);
  }
  *model = next;
}

static Datum MakeLike(const Model* model, double x, double y) {
  bytea* made = palloc(VARSIZE(model->point));
  memcpy(made, model->point, VARHDRSZ + model->prefix);
  memcpy(VARDATA(made) + model->prefix, &x, sizeof x);
  memcpy(VARDATA(made) + model->prefix + sizeof x, &y, sizeof y);
  PG_RETURN_BYTEA_P(made);
}

static int SridOf(Postgis* postgis, Datum point) {
  return DatumGetInt32(Value(postgis, ST_SRID, &point));
}

static void RequireWgs84(int srid) {
  if (srid != 0 && srid != SRID_WGS84) {
    ereport(ERROR, (errcode(ERRCODE_INVALID_PARAMETER_VALUE),
                    errmsg("latigo: a point on WGS-84 has SRID %d or none, not %d", SRID_WGS84, srid)));
  }
}

// Where x and y of a point stand among the numbers of an operation: a position has its latitude, y, first.
typedef struct Kind {
  enum EngineOperation operation;
  int inX, inY;
  int outX, outY;
} Kind;

static const Kind Forward = {ENGINE_FORWARD, 1, 0, 0, 1};
static const Kind Inverse = {ENGINE_INVERSE, 0, 1, 1, 0};
static const Kind ToWgs84 = {ENGINE_TO_WGS84, 1, 0, 1, 0};
static const Kind FromWgs84 = {ENGINE_FROM_WGS84, 1, 0, 1, 0};

// The conversion of a point with z or m, or another SRID than the model's. fromWgs84: the point has the SRID of WGS-84,
// or none; wgs84: argument of the operation; srid: of the result.
static Datum ConvertAny(FunctionCallInfo fcinfo, CallSite* site, const Kind* kind, bool fromWgs84, bool wgs84,
                        int srid) {
  Postgis* postgis = site->more;
  const Datum given = PG_GETARG_DATUM(1);
  struct EnginePoint point = {{0, 0, 0, 0}, {0, 0, 0}, false, false};
  Datum made[4] = {0, 0, 0, 0};
  const int flags = DatumGetInt16(Value(postgis, ST_ZMFLAG, &given));
  int function = MAKE_XY;
  if (!Call(postgis, ST_X, &given, made)) {
    PG_RETURN_NULL();
  }
  if (fromWgs84) {
    RequireWgs84(SridOf(postgis, given));
  }
  point.in[kind->inX] = DatumGetFloat8(made[0]);
  point.in[kind->inY] = Coordinate(postgis, ST_Y, given);
  if ((flags & HAS_Z) != 0) {
    point.in[2] = Coordinate(postgis, ST_Z, given);
    point.height = true;
  }
  if (!ConvertPoint(fcinfo, site, wgs84, &point)) {
    PG_RETURN_NULL();
  }
  made[0] = Float8GetDatum(point.out[kind->outX]);
  made[1] = Float8GetDatum(point.out[kind->outY]);
  if ((flags & HAS_Z) != 0) {
    made[2] = Float8GetDatum(point.out[2]);
    function = MAKE_XYZ;
  }
  if ((flags & HAS_M) != 0) {
    made[(flags & HAS_Z) != 0 ? 3 : 2] = Float8GetDatum(Coordinate(postgis, ST_M, given));
    function = (flags & HAS_Z) != 0 ? MAKE_XYZM : MAKE_XYM;
  }
  made[0] = Value(postgis, function, made);
  made[1] = Int32GetDatum(srid);
  PG_RETURN_DATUM(Value(postgis, SET_SRID, made));
}

// The result of argument 1, a point; NULL for an empty point, or one that cannot be converted.
static Datum Convert(FunctionCallInfo fcinfo, const Kind* kind, bool fromWgs84, bool wgs84, int srid) {
  CallSite* site = CallSiteOf(fcinfo, kind->operation);
  Postgis* postgis = PostgisOf(fcinfo, site);
  const bytea* given = PG_GETARG_BYTEA_PP(1);
  struct EnginePoint point = {{0, 0, 0, 0}, {0, 0, 0}, false, false};
  if (!ReadLike(&postgis->in, given, &point.in[kind->inX], &point.in[kind->inY])) {
    SetModel(fcinfo, &postgis->in, SridOf(postgis, PG_GETARG_DATUM(1)));  // the next points probably have its SRID
    return ConvertAny(fcinfo, site, kind, fromWgs84, wgs84, srid);
  }
  if (fromWgs84) {
    RequireWgs84(postgis->in.srid);
  }
  if (!ConvertPoint(fcinfo, site, wgs84, &point)) {
    PG_RETURN_NULL();
  }
  SetModel(fcinfo, &postgis->out, srid);
  return MakeLike(&postgis->out, point.out[kind->outX], point.out[kind->outY]);
}

// section, point, srid, wgs84
PG_FUNCTION_INFO_V1(latigo_point_forward);
Datum latigo_point_forward(PG_FUNCTION_ARGS) {
  const bool wgs84 = PG_GETARG_BOOL(3);
  return Convert(fcinfo, &Forward, wgs84, wgs84, PG_GETARG_INT32(2));
}

// section, point, srid, wgs84
PG_FUNCTION_INFO_V1(latigo_point_inverse);
Datum latigo_point_inverse(PG_FUNCTION_ARGS) {
  const bool wgs84 = PG_GETARG_BOOL(3);
  const int srid = PG_GETARG_INT32(2);
  return Convert(fcinfo, &Inverse, false, wgs84, srid == 0 && wgs84 ? SRID_WGS84 : srid);
}

// section, point
PG_FUNCTION_INFO_V1(latigo_point_to_wgs84);
Datum latigo_point_to_wgs84(PG_FUNCTION_ARGS) {
  return Convert(fcinfo, &ToWgs84, false, false, SRID_WGS84);
}

// section, point, srid
PG_FUNCTION_INFO_V1(latigo_point_from_wgs84);
Datum latigo_point_from_wgs84(PG_FUNCTION_ARGS) {
  return Convert(fcinfo, &FromWgs84, true, false, PG_GETARG_INT32(2));
}
