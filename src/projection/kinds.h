// The projection kinds, from resources/kinds.def.
#pragma once

#include <latigo/latigo.h>

#include <cstdint>

namespace latigo {

struct KindRow {
  std::int32_t number;
  const char* code;         // three letters
  const char* keywords[3];  // of configuration files; null after the last one
};

inline constexpr KindRow Kinds[] = {
#define LATIGO_KIND(Class, name, number, code, words, ...) {number, code, {__VA_ARGS__}},
#include "kinds.def"
#undef LATIGO_KIND
};

// The number and the code of a projection class.
template <typename Class>
inline constexpr std::int32_t KindOf = 0;
template <typename Class>
inline constexpr const char* CodeOf = nullptr;

#define LATIGO_KIND(Class, name, number, code, words, ...) \
  class Class;                                             \
  template <>                                              \
  inline constexpr std::int32_t KindOf<Class> = number;    \
  template <>                                              \
  inline constexpr const char* CodeOf<Class> = code;       \
  static_assert(LATIGO_KIND_##name == number, "latigo.h has the numbers of the list");
#include "kinds.def"
#undef LATIGO_KIND

}  // namespace latigo
