#include "frame/local_names.h"

#include "frame/units.h"
#include "platform/ascii.h"
#include "platform/strings.h"

namespace latigo {

namespace {

// Offset of a text from the short name of its unit or the letter of its axis.
constexpr std::int32_t Name = 32;
constexpr std::int32_t Plural = 64;

struct Language {
  const char* key;
  std::int32_t offset;  // of its texts' ids in the string table
};

// Known languages without texts of their own use the English texts.
constexpr Language Languages[] = {{"fra", 100}, {"esp", 200}, {"chs", 300}, {"jpn", 400}};

std::int32_t LanguageOffset(const char* language) {
  for (const auto& [key, offset] : Languages) {
    if (EqualIgnoringCase(language, key)) {
      return offset;
    }
  }
  return 0;
}

}  // namespace

HMODULE ModuleHandle;

void Geodesy::SetVertUnit(double metresPerUnit) {
  VertUnit = metresPerUnit == 0 ? Proj->Unit : metresPerUnit;
  VertUnitId = FindUnit(VertUnit);
}

std::int32_t Geodesy::LocalNameId(std::int32_t request) const {
  switch (request) {
    case 1:
      return UnitId + Name;
    case 2:
      return UnitId + Plural;
    case 3:
      return UnitId;
    case 4:
      return VertUnitId + Name;
    case 5:
      return VertUnitId + Plural;
    case 6:
      return VertUnitId;
    case 7:
      return FirstAxisId + Name;
    case 8:
      return FirstAxisId;
    case 9:
      return SecondAxisId + Name;
    case 10:
      return SecondAxisId;
    default:
      return 0;
  }
}

std::int32_t GetLocalName(const Geodesy& object, std::int32_t request, const char* language, char* buffer,
                          std::int32_t size) {
  const std::int32_t id = object.LocalNameId(request);
  if (id == 0) {
    return NoSuchName;
  }
  for (const std::int32_t textId : {id + LanguageOffset(language), id}) {
    if (LoadText(ModuleHandle, static_cast<UINT>(textId), buffer, size) != 0) {
      return 0;
    }
  }
  return NoSuchName;
}

}  // namespace latigo
