#include "names.h"

#include <charconv>

namespace latigo::cli {

const char* ProjectionName(std::int32_t kind) {
  switch (kind) {
#define LATIGO_KIND(Class, name, number, code, words, ...) \
  case number:                                             \
    return words;
#include "kinds.def"
#undef LATIGO_KIND
    default:
      return "";
  }
}

std::string ShortNumber(double value) {
  char text[32];
  return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

}  // namespace latigo::cli
