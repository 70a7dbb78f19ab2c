// A coordinate system opened from a section of a configuration file, through the library's public interface.
#pragma once

#include <latigo/latigo.h>

#include <memory>
#include <string>
#include <vector>

#include "error_text.h"

namespace latigo::cli {

struct DestroyObject {
  void operator()(GeodesyObject* handle) const { DestroyGeodesy(handle); }
};
using Object = std::unique_ptr<GeodesyObject, DestroyObject>;

struct Opened {
  Object object;            // null if the section does not open
  std::int32_t code = 0;    // 9 comes with an object
  std::string explanation;  // for a code other than 0: what it means, and where to look
};

// The names of a file's sections in its order, or of a section's keys.
std::vector<std::string> SectionsOf(const std::string& file);
std::vector<std::string> KeysOf(const std::string& file, const std::string& section);

// Throws UsageError if the file cannot be read or has no such section, and names those that it has.
void RequireSection(const std::string& file, const std::string& section);

Opened OpenSection(const std::string& file, const std::string& section);

// Warns on standard error of the keys that nobody reads, each with the nearest known key.
void WarnOfUnknownKeys(const std::string& file, const std::string& section);

}  // namespace latigo::cli
