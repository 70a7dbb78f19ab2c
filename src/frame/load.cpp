// Initialisation when the library is loaded into a process, or starts with the program that it is linked into: there
// before the program's static objects, whose constructors may call exports.
#include <latigo/latigo.h>

#include "errors/last_error.h"
#include "errors/log_line.h"
#include "frame/local_names.h"
#include "platform/platform.h"

namespace latigo {

namespace {

void LibraryLoaded(HMODULE module) {
  LogLine("LATIGO ver %d.%d loaded", LATIGO_VERSION_MAJOR, LATIGO_VERSION_MINOR);
  AllocateLastError();
  ModuleHandle = module;
}

}  // namespace

#if defined(_WIN32) && !defined(LATIGO_LINKED_IN)
extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) {
    LibraryLoaded(module);
  }
  return TRUE;
}
#else
// No module handle: the string table belongs to the program, or is linked in.
[[gnu::constructor(101)]] void Loaded() {
  LibraryLoaded(nullptr);
}
#endif

}  // namespace latigo
