// Initialisation when the library is loaded into a process. The static facility of errcode.cpp is constructed before
// any export can run.
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

#if defined(_WIN32)
extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) {
    LibraryLoaded(module);
  }
  return TRUE;
}
#else
// No module handle is needed: the string table is linked in.
[[gnu::constructor]] void Loaded() {
  LibraryLoaded(nullptr);
}
#endif

}  // namespace latigo
