// The keys of a section as texts for people, and a real system of each projection as an example of their values.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace latigo::cli {

// The values are the texts of the keys; null for a key that the projection does not read.
struct ExampleSection {
  std::int32_t kind;
  const char *keyword, *name, *description;
  const char *a, *flattening, *unit, *scale, *meridian, *latitude, *north, *south, *azimuth, *easting, *northing;
};

struct KeyText {
  const char *name, *unit, *meaning, *without;
  const char* ExampleSection::*value;  // null for a key that is not of the projection
  const char* sample = nullptr;        // of such a key, which is commented out
};

std::span<const ExampleSection> ExampleSections();
// In the order of docs/configuration.md.
std::span<const KeyText> KeyTexts();

// Whether a projection reads a key; true for keys that are not of the projection, and for an unknown projection.
bool ReadsKey(std::int32_t kind, std::string_view key);

}  // namespace latigo::cli
