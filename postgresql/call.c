// A call of a conversion: its section, its handle, its failures.
#include "call.h"

#include <catalog/pg_type.h>
#include <funcapi.h>
#include <mb/pg_wchar.h>
#include <miscadmin.h>
#include <nodes/primnodes.h>
#include <storage/fd.h>
#include <storage/ipc.h>
#include <utils/builtins.h>

#include <access/xact.h>

// The arguments of an operation, for messages.
static const char* const ArgumentNames[][4] = {
    [ENGINE_FORWARD] = {"latitude", "longitude", "height"},
    [ENGINE_INVERSE] = {"x", "y", "height"},
    [ENGINE_FROM_WGS84] = {"latitude", "longitude", "height"},
    [ENGINE_TO_WGS84] = {"latitude", "longitude", "height"},
    [ENGINE_SCALE] = {"latitude", "longitude"},
    [ENGINE_UNDULATION] = {"latitude", "longitude"},
    [ENGINE_GREAT_CIRCLE] = {"latitude", "longitude", "to latitude", "to longitude"},
    [ENGINE_RHUMB_LINE] = {"latitude", "longitude", "to latitude", "to longitude"},
};

char* DatabaseText(const char* text) {
  StringInfoData shown;
  if (pg_verify_mbstr(GetDatabaseEncoding(), text, (int)strlen(text), true)) {
    return pstrdup(text);
  }
  initStringInfo(&shown);
  for (; *text != '\0'; ++text) {
    if (IS_HIGHBIT_SET(*text)) {
      appendStringInfo(&shown, "\\x%02X", (unsigned char)*text);
    } else {
      appendStringInfoChar(&shown, *text);
    }
  }
  return shown.data;
}

// Handles are closed in the order of the server's shutdown, before its own statics go.
static void CloseAtExit(int code, Datum argument) {
  (void)code;
  (void)argument;
  EngineClose();
}

static void RegisterExit(void) {
  static int registeredFor = 0;  // the process; a child of the postmaster loses its registrations
  if (registeredFor != MyProcPid) {
    on_proc_exit(CloseAtExit, 0);
    registeredFor = MyProcPid;
  }
}

// The server limits its own open files so that ours, counted here, find room.
static void CountOpenFiles(void) {
  static int counted = 0;
  for (; counted < EngineOpenFiles(); ++counted) {
    ReserveExternalFD();
  }
  for (; counted > EngineOpenFiles(); --counted) {
    ReleaseExternalFD();
  }
}

static int SqlState(enum EngineOutcome outcome) {
  switch (outcome) {
    case ENGINE_NO_SECTION:
      return ERRCODE_UNDEFINED_OBJECT;
    case ENGINE_SYSTEM_FAILED:
      return ERRCODE_OUT_OF_MEMORY;
    default:
      return ERRCODE_CONFIG_FILE_ERROR;
  }
}

void RequireDone(enum EngineOutcome outcome) {
  if (outcome != ENGINE_DONE) {
    ereport(ERROR, (errcode(SqlState(outcome)), errmsg("latigo: %s", DatabaseText(EngineMessage()))));
  }
}

void CloseHandles(void) {
  EngineClose();
  CountOpenFiles();
}

CallSite* CallSiteOf(FunctionCallInfo fcinfo, enum EngineOperation operation) {
  FmgrInfo* function = fcinfo->flinfo;
  CallSite* site = function->fn_extra;
  TupleDesc tuple = NULL;
  if (site != NULL) {
    return site;
  }
  site = MemoryContextAllocZero(function->fn_mcxt, sizeof *site);
  site->operation = operation;
  site->sameSection = function->fn_expr != NULL && IsA(function->fn_expr, FuncExpr) &&
                      IsA(linitial(((FuncExpr*)function->fn_expr)->args), Const);
  if (get_call_result_type(fcinfo, NULL, &tuple) == TYPEFUNC_COMPOSITE) {
    MemoryContext before = MemoryContextSwitchTo(function->fn_mcxt);
    site->tuple = BlessTupleDesc(CreateTupleDescCopy(tuple));
    MemoryContextSwitchTo(before);
    for (int i = 0; i < Max(tuple->natts, ROW_COLUMNS); ++i) {
      if (tuple->natts != ROW_COLUMNS || TupleDescAttr(tuple, i)->atttypid != FLOAT8OID) {
        ereport(ERROR, (errcode(ERRCODE_DATATYPE_MISMATCH),
                        errmsg("latigo: the type %s has been changed", format_type_be(tuple->tdtypeid))));
      }
    }
  }
  function->fn_extra = site;
  return site;
}

// Warns once in a process; a session that is strict fails each time.
static void WarnOfSection(CallSite* site) {
  const char* warnings = EngineWarnings(&site->use, StrictSetting);
  if (warnings == NULL) {
    return;
  }
  if (StrictSetting) {
    site->use.serial = 0;
  }
  ereport(StrictSetting ? ERROR : WARNING,
          (errcode(StrictSetting ? ERRCODE_CONFIG_FILE_ERROR : ERRCODE_WARNING),
           errmsg("latigo: section \"%s\" is probably not read as intended", site->section),
           errdetail("%s", DatabaseText(warnings))));
}

static void Open(FunctionCallInfo fcinfo, CallSite* site, const text* section, bool wgs84) {
  const size_t length = VARSIZE_ANY_EXHDR(section);
  enum EngineOutcome outcome;
  CHECK_FOR_INTERRUPTS();
  RegisterExit();
  site->use.serial = 0;  // until the section is open
  if (site->section != NULL) {
    pfree(site->section);
    site->section = NULL;
  }
  site->section = MemoryContextAlloc(fcinfo->flinfo->fn_mcxt, length + 1);
  memcpy(site->section, VARDATA_ANY(section), length);
  site->section[length] = '\0';
  site->length = length;
  site->wgs84 = wgs84;
  site->strict = StrictSetting;
  outcome = EngineOpen(&site->use, site->section, site->operation, wgs84, GetCurrentStatementStartTimestamp());
  CountOpenFiles();
  RequireDone(outcome);
  WarnOfSection(site);
}

static bool SameSection(const CallSite* site, const text* section) {
  return VARSIZE_ANY_EXHDR(section) == site->length && memcmp(VARDATA_ANY(section), site->section, site->length) == 0;
}

// "File "utm.ini", section "UTM31", latitude 91, longitude 3."
static char* Place(const CallSite* site, const struct EnginePoint* point) {
  StringInfoData shown;
  initStringInfo(&shown);
  appendStringInfo(&shown, "File \"%s\", section \"%s\"", DatabaseText(EngineFile(&site->use)), site->section);
  for (int i = 0; i < 4 && ArgumentNames[site->operation][i] != NULL; ++i) {
    if (i == 2 && site->operation < ENGINE_GREAT_CIRCLE && !point->height) {
      break;
    }
    appendStringInfo(&shown, ", %s %.15g", ArgumentNames[site->operation][i], point->in[i]);
  }
  appendStringInfoChar(&shown, '.');
  return shown.data;
}

static void FailPoint(const CallSite* site, const struct EnginePoint* point, const char* reason) {
  ereport(ERROR, (errcode(ERRCODE_NUMERIC_VALUE_OUT_OF_RANGE), errmsg("latigo: %s", reason),
                  errdetail("%s", Place(site, point)),
                  errhint("With latigo.on_error = 'null' a point that cannot be converted is NULL.")));
}

bool ConvertPoint(FunctionCallInfo fcinfo, CallSite* site, bool wgs84, struct EnginePoint* point) {
  enum EngineOutcome outcome;
  const bool current = EngineIsCurrent(&site->use, GetCurrentStatementStartTimestamp()) && wgs84 == site->wgs84 &&
                       StrictSetting == site->strict;
  if (!(current && site->sameSection)) {
    text* section = PG_GETARG_TEXT_PP(0);
    if (!(current && SameSection(site, section))) {
      Open(fcinfo, site, section, wgs84);
    }
    PG_FREE_IF_COPY(section, 0);
  }
  outcome = EngineConvert(&site->use, site->operation, point);
  if (outcome != ENGINE_POINT_FAILED) {
    RequireDone(outcome);
  }
  if (outcome == ENGINE_POINT_FAILED || (point->doubt != NULL && StrictSetting)) {
    if (OnErrorSetting == ON_ERROR_ERROR) {
      FailPoint(site, point, outcome == ENGINE_POINT_FAILED ? EngineMessage() : point->doubt);
    }
    return false;
  }
  if (point->doubt != NULL && !site->warned) {
    site->warned = true;
    ereport(WARNING, (errmsg("latigo: %s", point->doubt), errdetail("%s", Place(site, point)),
                      errhint("Further points of this call may be doubtful without a warning. With latigo.strict they "
                              "fail.")));
  }
  return true;
}
