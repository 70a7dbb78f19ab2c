// Runs a fuzzer's function on the files of the folders named by the arguments, without the fuzzing library, which is
// not compiled with the memory sanitizer, so that its writes would be reported.
#include <dirent.h>
#include <sanitizer/msan_interface.h>

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <string>

#include "fuzz_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

// Marks the writes of the standard library's object code as written; the linker redirects these calls.
#define REAL(symbol) __asm__("__real_" symbol)
#define WRAPPED(symbol) __asm__("__wrap_" symbol)

#define TO_CHARS "_ZSt8to_charsPcS_dSt12chars_formati"
std::to_chars_result RealToChars(char* first, char* last, double value, std::chars_format, int precision)
    REAL(TO_CHARS);
std::to_chars_result ToChars(char* first, char* last, double value, std::chars_format, int precision) WRAPPED(TO_CHARS);
std::to_chars_result ToChars(char* first, char* last, double value, std::chars_format format, int precision) {
  std::to_chars_result result = RealToChars(first, last, value, format, precision);
  __msan_unpoison(&result, sizeof result);
  __msan_unpoison(first, static_cast<std::size_t>(result.ptr - first));
  return result;
}

#define TO_SHORTEST "_ZSt8to_charsPcS_d"
std::to_chars_result RealToShortest(char* first, char* last, double value) REAL(TO_SHORTEST);
std::to_chars_result ToShortest(char* first, char* last, double value) WRAPPED(TO_SHORTEST);
std::to_chars_result ToShortest(char* first, char* last, double value) {
  std::to_chars_result result = RealToShortest(first, last, value);
  __msan_unpoison(&result, sizeof result);
  __msan_unpoison(first, static_cast<std::size_t>(result.ptr - first));
  return result;
}

// The list of a path's parts: one pointer.
#define PATH_LIST "_ZNSt10filesystem7__cxx114path5_ListC1Ev"
void RealPathList(void* list) REAL(PATH_LIST);
void PathList(void* list) WRAPPED(PATH_LIST);
void PathList(void* list) {
  RealPathList(list);
  __msan_unpoison(list, sizeof(void*));
}

int main(int count, char** arguments) {
  std::size_t runs = 0;
  for (int i = 1; i < count; ++i) {
    const std::string folder = arguments[i];
    DIR* const listing = opendir(folder.c_str());
    if (listing == nullptr) { return std::perror(folder.c_str()), 1; }
    while (const dirent* const entry = readdir(listing)) {
      const std::string path = folder + "/" + entry->d_name;
      if (entry->d_name[0] == '.') { continue; }
      std::fprintf(stderr, "%s\n", path.c_str());  // the last line before a report names the input
      const std::string bytes = fuzz::ReadFile(path);
      LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
      ++runs;
    }
    closedir(listing);
  }
  std::fprintf(stderr, "inputs run: %zu\n", runs);
  return runs > 0 ? 0 : 1;
}
