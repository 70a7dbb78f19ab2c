// The keys of a configuration section: one table, which the reader walks and from which an unknown key is told.
// docs/configuration.md is the same table for people.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace latigo {

// How the number in the file becomes the number in the record.
enum class Conversion {
  AsGiven,
  OneIfZero,          // 0, or no key at all, means 1.0
  DegreesToRadians,   // by one multiplication
  DegreesByDivision,  // by pi and 180: differs from the multiplication in the last digit
  PartsPerMillion,    // to a factor
  ArcSeconds,         // to radians
};

// Where a key's value goes. Keys of `Other` are read by the reader one by one.
enum class Record { Params, Diff, Adjust, Other };

// What a value is, for whoever checks it.
enum class ValueKind { Number, Factor, Latitude, Longitude, Azimuth, Reciprocal, Integer, Boolean, Keyword, File };

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

// Finds the projection kind of a keyword, whatever its capitals; 0 if no keyword is equal to it.
std::int32_t KindOfKeyword(const char* keyword);

}  // namespace latigo
