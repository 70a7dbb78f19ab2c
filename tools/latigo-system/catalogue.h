// All systems of the database.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "database.h"

namespace latigo::system {

struct SearchOptions {
  std::vector<std::string> words;                 // each is in the code, the name or the area's name
  std::optional<std::array<double, 2>> position;  // latitude and longitude, degrees
};

// Writes a line for each system that fits. Returns how many there are.
std::size_t Search(const Database& database, const SearchOptions& options);

struct PackOptions {
  std::string authority = "EPSG";
  std::string report;  // file for one line a system; empty for none
  int points = 200;
  int jobs = 0;  // threads; 0: one for each processor
};

// Writes a section for every system that can be expressed, and what cannot be as comments.
void Pack(const Database& database, const PackOptions& options);

}  // namespace latigo::system
