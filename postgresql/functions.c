// The functions of the extension latigo.
#include <postgres.h>

#include <funcapi.h>
#include <latigo/latigo.h>
#include <miscadmin.h>
#include <utils/builtins.h>
#include <utils/tuplestore.h>

#include "call.h"

// Of the arguments section, two coordinates, optionally a height, and further ones.
static struct EnginePoint PointOf(FunctionCallInfo fcinfo, int plainArguments) {
  struct EnginePoint point = {{PG_GETARG_FLOAT8(1), PG_GETARG_FLOAT8(2), 0, 0}, {0, 0, 0}, false, NULL};
  if (PG_NARGS() > plainArguments) {
    point.in[2] = PG_GETARG_FLOAT8(3);
    point.height = true;
  }
  return point;
}

// The row that the server forms of zeros, as the model of others.
static char* ModelOf(FunctionCallInfo fcinfo, CallSite* site, bool height) {
  Datum values[ROW_COLUMNS] = {Float8GetDatum(0), Float8GetDatum(0), Float8GetDatum(0)};
  bool nulls[ROW_COLUMNS] = {false, false, !height};
  HeapTuple row = heap_form_tuple(site->tuple, values, nulls);
  char* model = MemoryContextAllocZero(fcinfo->flinfo->fn_mcxt, ROW_BYTES);
  if (row->t_data->t_hoff != ROW_START || row->t_len > ROW_BYTES) {
    elog(ERROR, "latigo: a row of %d columns has an unexpected layout", ROW_COLUMNS);
  }
  memcpy(model, row->t_data, row->t_len);
  return model;
}

// A row of the first two results, and of the third if the point has a height; else that column is NULL. It is a copy of a
// row that the server formed, with other doubles, in a third of the time of forming each.
static Datum RowOf(FunctionCallInfo fcinfo, CallSite* site, const struct EnginePoint* point) {
  char* row = palloc(ROW_BYTES);
  if (site->models[point->height] == NULL) {
    site->models[point->height] = ModelOf(fcinfo, site, point->height);
  }
  // Sizes that the compiler knows; the row of a point without a height ends before the third.
  memcpy(row, site->models[point->height], ROW_START);
  memcpy(row + ROW_START, point->out, sizeof point->out);
  PG_RETURN_HEAPTUPLEHEADER((HeapTupleHeader)row);
}

static Datum Row(FunctionCallInfo fcinfo, enum EngineOperation operation, bool hasWgs84) {
  CallSite* site = CallSiteOf(fcinfo, operation);
  struct EnginePoint point = PointOf(fcinfo, hasWgs84 ? 4 : 3);
  if (!ConvertPoint(fcinfo, site, hasWgs84 && PG_GETARG_BOOL(PG_NARGS() - 1), &point)) {
    PG_RETURN_NULL();
  }
  return RowOf(fcinfo, site, &point);
}

// One of the results, of a function whose last argument is whether positions are WGS-84.
static Datum Number(FunctionCallInfo fcinfo, enum EngineOperation operation) {
  struct EnginePoint point = PointOf(fcinfo, 4);
  if (!ConvertPoint(fcinfo, CallSiteOf(fcinfo, operation), PG_GETARG_BOOL(3), &point)) {
    PG_RETURN_NULL();
  }
  PG_RETURN_FLOAT8(point.out[0]);
}

// Of a line between two positions: result 0 the distance, 1 the azimuth. The last argument chooses the rhumb line.
static Datum Line(FunctionCallInfo fcinfo, int result) {
  const bool rhumb = PG_GETARG_BOOL(5);
  CallSite* site = CallSiteOf(fcinfo, ENGINE_GREAT_CIRCLE);
  struct EnginePoint line = {
      {PG_GETARG_FLOAT8(1), PG_GETARG_FLOAT8(2), PG_GETARG_FLOAT8(3), PG_GETARG_FLOAT8(4)}, {0, 0, 0}, false, NULL};
  site->operation = rhumb ? ENGINE_RHUMB_LINE : ENGINE_GREAT_CIRCLE;
  if (!ConvertPoint(fcinfo, site, false, &line)) {
    PG_RETURN_NULL();
  }
  PG_RETURN_FLOAT8(line.out[result]);
}

PG_FUNCTION_INFO_V1(latigo_forward);
Datum latigo_forward(PG_FUNCTION_ARGS) {
  return Row(fcinfo, ENGINE_FORWARD, true);
}

PG_FUNCTION_INFO_V1(latigo_inverse);
Datum latigo_inverse(PG_FUNCTION_ARGS) {
  return Row(fcinfo, ENGINE_INVERSE, true);
}

PG_FUNCTION_INFO_V1(latigo_to_wgs84);
Datum latigo_to_wgs84(PG_FUNCTION_ARGS) {
  return Row(fcinfo, ENGINE_TO_WGS84, false);
}

PG_FUNCTION_INFO_V1(latigo_from_wgs84);
Datum latigo_from_wgs84(PG_FUNCTION_ARGS) {
  return Row(fcinfo, ENGINE_FROM_WGS84, false);
}

PG_FUNCTION_INFO_V1(latigo_scale);
Datum latigo_scale(PG_FUNCTION_ARGS) {
  return Number(fcinfo, ENGINE_SCALE);
}

PG_FUNCTION_INFO_V1(latigo_distance);
Datum latigo_distance(PG_FUNCTION_ARGS) {
  return Line(fcinfo, 0);
}

PG_FUNCTION_INFO_V1(latigo_azimuth);
Datum latigo_azimuth(PG_FUNCTION_ARGS) {
  return Line(fcinfo, 1);
}

PG_FUNCTION_INFO_V1(latigo_undulation);
Datum latigo_undulation(PG_FUNCTION_ARGS) {
  return Number(fcinfo, ENGINE_UNDULATION);
}

PG_FUNCTION_INFO_V1(latigo_version);
Datum latigo_version(PG_FUNCTION_ARGS) {
  const int version = GetGeodesyVersion();
  (void)fcinfo;
  PG_RETURN_TEXT_P(cstring_to_text(psprintf("%d.%d", version / 100, version % 100)));
}

PG_FUNCTION_INFO_V1(latigo_close);
Datum latigo_close(PG_FUNCTION_ARGS) {
  (void)fcinfo;
  CloseHandles();
  PG_RETURN_VOID();
}

PG_FUNCTION_INFO_V1(latigo_sections);
Datum latigo_sections(PG_FUNCTION_ARGS) {
  ReturnSetInfo* result = (ReturnSetInfo*)fcinfo->resultinfo;
  size_t count = 0;
  enum EngineOutcome outcome;
  InitMaterializedSRF(fcinfo, 0);
  outcome = EngineListSections(&count);
  for (size_t i = 0; outcome == ENGINE_DONE && i < count; ++i) {
    struct EngineSectionText text;
    CHECK_FOR_INTERRUPTS();
    outcome = EngineSection(i, &text);
    if (outcome == ENGINE_DONE) {
      Datum values[3] = {CStringGetTextDatum(DatabaseText(text.name)), CStringGetTextDatum(DatabaseText(text.file)),
                         (Datum)0};
      bool nulls[3] = {false, false, text.warnings == NULL};
      if (text.warnings != NULL) {
        values[2] = CStringGetTextDatum(DatabaseText(text.warnings));
      }
      tuplestore_putvalues(result->setResult, result->setDesc, values, nulls);
    }
  }
  RequireDone(outcome);
  return (Datum)0;
}
