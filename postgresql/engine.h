// The converting half of the extension, in C++, as the half of the server's functions, in C, calls it.
//
// The halves do not mix: no exception of C++ leaves a function declared here, and no function of the server is called
// behind it, so that the server's errors, which are long jumps, never cross a C++ frame. A server process has one
// thread; nothing here locks.
#ifndef LATIGO_POSTGRESQL_ENGINE_H
#define LATIGO_POSTGRESQL_ENGINE_H

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

enum EngineOperation {
  ENGINE_FORWARD,       // latitude, longitude, height -> x, y, height
  ENGINE_INVERSE,       // x, y, height -> latitude, longitude, height
  ENGINE_FROM_WGS84,    // latitude, longitude, height -> the same on the section's datum
  ENGINE_TO_WGS84,      // the reverse
  ENGINE_SCALE,         // latitude, longitude -> point scale factor
  ENGINE_UNDULATION,    // latitude, longitude -> undulation
  ENGINE_GREAT_CIRCLE,  // two latitudes and longitudes -> distance in grid units, azimuth
  ENGINE_RHUMB_LINE     // the same along the rhumb line
};

enum EngineOutcome {
  ENGINE_DONE,
  ENGINE_POINT_FAILED,    // the point has no result; the message says why
  ENGINE_NO_SECTION,      // no file has the section
  ENGINE_SECTION_FAILED,  // the section, a configuration file or a grid file cannot be used
  ENGINE_SYSTEM_FAILED    // memory ran out
};

// A handle in use by a call site. The handle may be closed at any time: then the next use opens it again.
struct EngineUse {
  uint64_t serial;  // of the handle; 0 for none
  int place;        // in the cache
};

struct EnginePoint {
  double in[4];       // degrees, grid units, metres
  double out[3];      // undefined unless the outcome is ENGINE_DONE
  bool height;        // the third input is a height
  const char* doubt;  // converted, but probably wrong for this reason; or null
};

// Absolute paths, separated by commas; blanks around them are dropped. Handles are opened again.
void EngineSetFiles(const char* paths);

// Why a list of paths cannot be used, or null.
const char* EngineCheckFiles(const char* paths);

// Makes `use` refer to a section's handle, with its datum shift applied or not (`wgs84`). `command` is a number that
// changes with each command of the client: within one, files that have changed are not looked at again.
enum EngineOutcome EngineOpen(struct EngineUse* use, const char* section, enum EngineOperation operation, bool wgs84,
                              int64_t command);

// Warnings of the section of an open handle: entries that are probably not read as intended, each a line. Null without any,
// or if they were returned since EngineClose and are not asked for `again`.
const char* EngineWarnings(const struct EngineUse* use, bool again);

// Whether the handle is still open and was looked at in this command.
bool EngineIsCurrent(const struct EngineUse* use, int64_t command);

enum EngineOutcome EngineConvert(const struct EngineUse* use, enum EngineOperation operation,
                                 struct EnginePoint* point);

// The configuration file of a handle.
const char* EngineFile(const struct EngineUse* use);

// Closes all handles, and forgets the files.
void EngineClose(void);

// Grid files that are open.
int EngineOpenFiles(void);

// Lists the sections of all files. Returns an outcome; then EngineSection has each of `count` in the order of the files.
struct EngineSectionText {
  const char* name;
  const char* file;
  const char* warnings;  // lines of text, or null
};
enum EngineOutcome EngineListSections(size_t* count);
enum EngineOutcome EngineSection(size_t index, struct EngineSectionText* text);

// What failed last. The text is overwritten by the next failure.
const char* EngineMessage(void);

#ifdef __cplusplus
}
#endif

#endif
