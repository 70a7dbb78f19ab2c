// The settings, and the beginning and end of a server process.
#include <postgres.h>

#include <fmgr.h>
#include <utils/guc.h>

#include "call.h"

PG_MODULE_MAGIC;

void _PG_init(void);

int OnErrorSetting = ON_ERROR_ERROR;
bool StrictSetting = false;
static char* configFiles = NULL;

static const struct config_enum_entry onErrorNames[] = {
    {"error", ON_ERROR_ERROR, false}, {"null", ON_ERROR_NULL, false}, {NULL, 0, false}};

static bool CheckFiles(char** value, void** extra, GucSource source) {
  const char* fault = EngineCheckFiles(*value);
  (void)extra;
  (void)source;
  if (fault != NULL) {
    GUC_check_errdetail("%s.", fault);
  }
  return fault == NULL;
}

static void AssignFiles(const char* value, void* extra) {
  (void)extra;
  EngineSetFiles(value);
}

// Only the server's own configuration names files (PGC_SIGHUP): no session can, not even a superuser's.
void _PG_init(void) {
  DefineCustomStringVariable("latigo.config_files", "Configuration files of coordinate systems.",
                             "Absolute paths, separated by commas. The first file with a section counts.", &configFiles,
                             "", PGC_SIGHUP, 0, CheckFiles, AssignFiles, NULL);
  DefineCustomEnumVariable("latigo.on_error", "What a point that cannot be converted is: an error, or NULL.", NULL,
                           &OnErrorSetting, ON_ERROR_ERROR, onErrorNames, PGC_USERSET, 0, NULL, NULL, NULL);
  DefineCustomBoolVariable(
      "latigo.strict",
      "A doubtful result, of a point too far from the projection's origin or a distance too long, fails.", NULL,
      &StrictSetting, false, PGC_USERSET, 0, NULL, NULL, NULL);
  MarkGUCPrefixReserved("latigo");
}
