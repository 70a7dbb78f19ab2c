#include "section_list.h"

#include <latigo/latigo.h>

#include <algorithm>
#include <unordered_set>

#include "frame/config_keys.h"
#include "names.h"
#include "platform/c_numbers.h"
#include "platform/posix/profile_file.h"

namespace latigo::cli {

namespace {

constexpr std::size_t LongestWord = 24;  // more than any key has

bool IsKeyCommentedOut(std::string_view comment) {
  const std::size_t equals = comment.find('=');
  return equals <= LongestWord && std::all_of(comment.begin(), comment.begin() + static_cast<long>(equals),
                                              [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); });
}

// A line without its end and the blanks around it.
std::string_view TextOf(std::string_view line) {
  while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) {
    line.remove_suffix(1);
  }
  return Trimmed(line);
}

// The text of a comment line; empty for a blank line and for a key that is commented out.
std::string_view CommentOf(std::string_view line) {
  const std::size_t begin = line.find_first_not_of("; \t");
  const std::string_view comment = begin == std::string_view::npos ? "" : line.substr(begin);
  return IsKeyCommentedOut(comment) ? "" : comment;
}

bool Describes(std::string_view comment) {
  return !comment.starts_with("Area:");
}

}  // namespace

std::vector<ListedSection> ListSections(const ConfigFile& config) {
  const std::string_view bytes = config.Bytes();
  std::vector<ListedSection> sections;
  std::unordered_set<std::string> seen;
  std::vector<std::string_view> above;  // the last comments without a blank line between, since the last key
  bool ended = false;                   // by a blank line
  ListedSection* in = nullptr;          // the section, up to its first key
  bool described = false;               // by a comment in it
  ProfileLines lines(bytes);
  for (ProfileLine line; lines.Next(line);) {
    if (line.is == ProfileLine::Is::Other) {
      const std::string_view text = TextOf(bytes.substr(line.begin, line.end - line.begin));
      const std::string_view comment = CommentOf(text);
      if (!comment.empty() && in != nullptr) {
        in->comments.push_back(comment);
        if (!described && Describes(comment)) {
          in->description = comment;
          described = true;
        }
      } else if (text.empty() && !sections.empty()) {
        above.clear();
      } else if (text.empty()) {
        ended = true;
      } else if (!comment.empty()) {
        if (ended) {
          above.clear();
          ended = false;
        }
        above.push_back(comment);
      }
    } else if (line.is == ProfileLine::Is::Section && !line.name.empty()) {
      in = nullptr;
      if (seen.insert(ConfigFile::Folded(line.name)).second) {
        const auto description = std::find_if(above.begin(), above.end(), Describes);
        sections.push_back({line.name, description == above.end() ? "" : *description, above});
        in = &sections.back();
      }
      described = false;
      above.clear();
    } else {
      in = nullptr;
      above.clear();
    }
  }
  return sections;
}

std::string DescriptionByKeys(const ConfigFile& config, std::string_view section) {
  const auto number = [&](std::string_view key) { return CDouble(std::string(config.Value(section, key)).c_str()); };
  const std::int32_t kind = KindOfKeyword(std::string(config.Value(section, "Projection")).c_str());
  if (kind == 0) {
    return "no projection";
  }
  std::string text = ProjectionName(kind);
  if (kind == LATIGO_KIND_MERCATOR_ON_SPHERE) {
    return text;
  }
  // The names of ellipsoids are the library's: of any object, here of the kind that needs no parameter.
  GeodesyParams params{};
  params.SemiMajorAxis = number("SemiMajorAxis");
  params.InvFlattening = number("Flattening");
  params.Kind = LATIGO_KIND_MERCATOR_ON_SPHERE;
  params.Unit = 1;
  if (GeodesyHandle handle = CreateGeodesy(&params); handle != nullptr) {
    char ellipsoid[LATIGO_ELLIPSOID_NAME_SIZE] = "";
    GetGeodesyParams(handle, &params, ellipsoid, nullptr);
    text += ellipsoid[0] != '\0' ? std::string(", ") + ellipsoid : "";
    DestroyGeodesy(handle);
  }
  return text + ", central meridian " + ShortNumber(number("CentralMeridian"));
}

}  // namespace latigo::cli
