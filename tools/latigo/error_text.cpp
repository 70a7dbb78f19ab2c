#include "error_text.h"

#include <string_view>

namespace latigo::cli {

namespace {

struct Meaning {
  std::int32_t number;
  std::string_view functions;
  std::string_view text;
};

constexpr Meaning Meanings[] = {
#define LATIGO_ERROR(name, NAME, number, functions, text) {number, functions, text},
#include "errors.def"
#undef LATIGO_ERROR
};

}  // namespace

std::string ErrorText(std::int32_t code, const char* function) {
  std::string_view text = "unknown";
  for (const Meaning& meaning : Meanings) {
    if (meaning.number == code) {
      text = meaning.text;
      if (meaning.functions.find(function) != std::string_view::npos) {
        break;
      }
    }
  }
  return "code " + std::to_string(code) + ": " + std::string(text);
}

}  // namespace latigo::cli
