// The string table. Its texts are Latin characters with the same numbers in Windows-1252 and in Unicode.
#include <algorithm>
#include <string_view>

#include "platform/platform.h"
#include "platform/strings.h"

namespace {

struct StringEntry {
  UINT id;
  std::u16string_view text;
};

constexpr StringEntry StringTable[] = {
#define LATIGO_STRING(id, text) {id, u##text},
#include "strings.def"
#undef LATIGO_STRING
};

static_assert(std::is_sorted(std::begin(StringTable), std::end(StringTable),
                             [](const StringEntry& l, const StringEntry& r) { return l.id < r.id; }));

}  // namespace

int LoadStringA(HMODULE /*module*/, UINT id, char* buffer, int size) {
  const auto* const entry = std::lower_bound(std::begin(StringTable), std::end(StringTable), id,
                                             [](const StringEntry& e, UINT wanted) { return e.id < wanted; });
  if (entry == std::end(StringTable) || entry->id != id || size <= 0) {
    return 0;
  }
  const std::u16string_view text = entry->text.substr(0, static_cast<std::size_t>(size) - 1);
  *std::transform(text.begin(), text.end(), buffer, [](char16_t c) { return static_cast<char>(c); }) = '\0';
  return static_cast<int>(text.size());
}

namespace latigo {

int LoadText(HMODULE module, UINT id, char* buffer, int size) {
  return LoadStringA(module, id, buffer, size);
}

}  // namespace latigo
