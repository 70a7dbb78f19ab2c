// The keys of a configuration section: one table, used to read a section and to recognise unknown keys.
// docs/configuration.md documents the same table.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace latigo {

// How the number in the file becomes the number in the record.
enum class Conversion {
  AsGiven,
  OneIfZero,          // 0 or a missing key means 1.0
  DegreesToRadians,   // by one multiplication
  DegreesByDivision,  // by pi and 180: differs from the multiplication in the last digit
  PartsPerMillion,    // to a factor
  ArcSeconds,         // to radians
};

// The record that receives a key's value. Keys of `Other` are read by the reader one by one.
enum class Record { Params, Diff, Adjust, Other };

// The type of a value, for checking a file.
enum class ValueKind {
  Number,
  Factor,
  Latitude,
  Longitude,
  Azimuth,
  Reciprocal,
  Unit,
  LocalGrid,
  Boolean,
  Keyword,
  File
};

struct ConfigKey {
  const char* name;
  Record record;
  std::size_t offset;  // of the double in the record
  Conversion conversion;
  ValueKind kind;
};

// All keys, in the order of reading.
std::span<const ConfigKey> ConfigKeys();

double Convert(Conversion conversion, double value);

// The projection kind of a keyword, compared without case; 0 for an unknown keyword.
std::int32_t KindOfKeyword(const char* keyword);

}  // namespace latigo
