// The sections of a configuration file with their comments, for people who look for one.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "config_check.h"

namespace latigo::cli {

struct ListedSection {
  std::string_view name;
  std::vector<std::string_view> comments;  // without ; and blanks; the first is the description
};

// Every section that is read, in the order of the file, in time proportional to its size. The comments are the lines
// before the section's first key, or, if it has none there, those above its name: without a blank line between, except
// for the first section, to which the head of the file belongs. A key that is commented out is no comment.
std::vector<ListedSection> ListSections(const ConfigFile& config);

// "transverse Mercator, WGS-84, central meridian 3": for a section without comments.
std::string DescriptionByKeys(const ConfigFile& config, std::string_view section);

}  // namespace latigo::cli
