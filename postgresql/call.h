// What the functions share: settings, and the state of a call site.
#ifndef LATIGO_POSTGRESQL_CALL_H
#define LATIGO_POSTGRESQL_CALL_H

#include <postgres.h>

#include <access/htup_details.h>
#include <fmgr.h>

#include "engine.h"

// Settings.
enum OnError { ON_ERROR_ERROR, ON_ERROR_NULL };
extern int OnErrorSetting;  // one of OnError
extern bool StrictSetting;  // doubtful points fail

// Columns of a composite result: doubles.
enum {
  ROW_COLUMNS = 3,
  ROW_START = MAXALIGN(SizeofHeapTupleHeader + BITMAPLEN(ROW_COLUMNS)),  // bytes before the first double
  ROW_BYTES = ROW_START + ROW_COLUMNS * sizeof(double)
};

// The state of a call site, for as long as the server keeps its expression.
typedef struct CallSite {
  struct EngineUse use;
  enum EngineOperation operation;
  bool sameSection;  // the section is a constant
  char* section;     // of the handle
  size_t length;     // of that text
  bool wgs84;
  bool strict;      // when the section was opened
  bool warned;      // of a doubtful point
  TupleDesc tuple;  // of a composite result; else null
  char* models[2];  // rows without and with a height
  void* more;       // of the caller
} CallSite;

// The state of the calling site, made by its first call.
CallSite* CallSiteOf(FunctionCallInfo fcinfo, enum EngineOperation operation);

// Converts a point with the section of argument 0. Returns false if the result is NULL, because the point failed.
bool ConvertPoint(FunctionCallInfo fcinfo, CallSite* site, bool wgs84, struct EnginePoint* point);

// Reports the failure of an operation that is not that of a point.
void RequireDone(enum EngineOutcome outcome);

// Closes the handles of this process.
void CloseHandles(void);

// A text of a file or a message, valid in the database's encoding: other bytes are written as \xNN.
char* DatabaseText(const char* text);

#endif
