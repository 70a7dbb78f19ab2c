// Prints a commented section of each projection: a real system, whose values are to be replaced.
#include <latigo/latigo.h>

#include <charconv>
#include <cstdlib>
#include <string>
#include <string_view>

#include "commands.h"
#include "error_text.h"
#include "frame/config_keys.h"
#include "names.h"
#include "platform/ascii.h"
#include "section_keys.h"
#include "streams.h"
#include "visible.h"

namespace latigo::cli {

namespace {

constexpr int Zones = 60;
constexpr int ZoneWidth = 6;  // degrees

// Heights, datum, local grid and geoid follow the projection, each after an empty line.
bool FirstOfGroup(std::string_view key) {
  return key == "Projection" || key == "VertUnit" || key == "DynDatum" || key == "AdjustType" || key == "OrthoHCorr";
}

std::string TextOf(const ExampleSection& example) {
  std::string text = std::string("[") + example.name + "]\n; " + ProjectionName(example.kind) + ": " +
                     example.description + "\n; Replace the values. Angles are decimal degrees, north and east " +
                     "positive. To use a key, remove the semicolon before it.\n";
  std::string ignored;
  for (const KeyText& key : KeyTexts()) {
    const char* const value = key.value != nullptr ? example.*key.value : key.sample;
    if (value == nullptr) {
      ignored += (ignored.empty() ? "" : ", ") + std::string(key.name);
      continue;
    }
    text += (FirstOfGroup(key.name) ? "\n; " : "; ") + std::string(key.unit) + ": " + key.meaning +
            ". Absent: " + key.without + ".\n" + (key.value == nullptr ? ";" : "") + key.name + "=" + value + "\n";
  }
  return text + (ignored.empty() ? "" : "\n; This projection does not read " + ignored + ".\n");
}

std::string TextOfZone(const std::string& zone) {
  int number = 0;
  const auto [letter, failure] = std::from_chars(zone.data(), zone.data() + zone.size(), number);
  const std::string hemisphere(letter, zone.data() + zone.size());
  const bool south = EqualIgnoringCase(hemisphere, "S");
  if (failure != std::errc() || number < 1 || number > Zones || !(south || EqualIgnoringCase(hemisphere, "N"))) {
    throw UsageError("utm " + zone + ": a zone is a number from 1 to 60 and N for north or S for south, as 33N");
  }
  const int meridian = ZoneWidth * number - 183;
  const auto edge = [](int longitude) {
    return std::to_string(std::abs(longitude)) + (longitude < 0 ? " W" : longitude > 0 ? " E" : "");
  };
  const std::string name = "UTM" + std::to_string(number) + (south ? "S" : "N");
  const std::string central = std::to_string(meridian);
  const std::string description = "UTM zone " + std::to_string(number) + (south ? " south" : " north") + ", WGS-84, " +
                                  edge(meridian - ZoneWidth / 2) + " to " + edge(meridian + ZoneWidth / 2);
  return TextOf({LATIGO_KIND_TRANSVERSE_MERCATOR, "UTM", name.c_str(), description.c_str(), "6378137", "298.257223563",
                 "1", "0.9996", central.c_str(), "0", nullptr, nullptr, nullptr, "500000", south ? "10000000" : "0"});
}

std::string Known() {
  std::string text = "utm ZONE  universal transverse Mercator, as utm 33N or utm 55S\n";
  for (const ExampleSection& example : ExampleSections()) {
    std::string keyword(example.keyword);
    for (char& letter : keyword) {
      letter = AsciiLower(letter);
    }
    keyword.resize(10, ' ');
    text += keyword + ProjectionName(example.kind) + ": " + example.description + "\n";
  }
  return text;
}

}  // namespace

int RunTemplate(const TemplateOptions& options) {
  if (options.kind.empty()) {
    Print(Known());
    return 0;
  }
  if (EqualIgnoringCase(options.kind, "UTM")) {
    Print(TextOfZone(options.zone));
    return 0;
  }
  if (!options.zone.empty()) {
    throw UsageError(options.kind + " " + options.zone + ": only utm has zones");
  }
  const std::int32_t kind = KindOfKeyword(options.kind.c_str());
  for (const ExampleSection& example : ExampleSections()) {
    if (example.kind == kind) {
      Print(TextOf(example));
      return 0;
    }
  }
  throw UsageError("no template " + options.kind + "; latigo template lists them");
}

}  // namespace latigo::cli
