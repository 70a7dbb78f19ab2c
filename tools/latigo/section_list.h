// The sections of a configuration file with their comments, for people who look for one.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "config_check.h"

namespace latigo::cli {

struct ListedSection {
  std::string_view name;
  std::string_view description;            // one of the comments, or empty
  std::vector<std::string_view> comments;  // without ; and blanks
};

// Every section that is read, in the order of the file, in time proportional to its size. The comments are the lines
// above its name, without a blank line between, and those before its first key. Above the first section a blank line
// may follow, so that the head of a file describes it. The description is the first comment before the first key, or
// else above the name; "Area: ..." is none. A key that is commented out is no comment.
std::vector<ListedSection> ListSections(const ConfigFile& config);

// "transverse Mercator, WGS-84, central meridian 3": for a section without comments.
std::string DescriptionByKeys(const ConfigFile& config, std::string_view section);

}  // namespace latigo::cli
