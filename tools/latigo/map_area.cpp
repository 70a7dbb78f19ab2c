#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <optional>

#include "line_reader.h"
#include "map.h"

namespace latigo::cli {

namespace {

using picture::Area;

constexpr std::size_t PathSize = 512;
// Degrees.
constexpr double SmallestSide = 0.0002 - 1e-9;  // about 20 m; less by the rounding error of a difference
constexpr double LargestGrid = 90;              // of longitude: larger grid files are not made for the section
constexpr double MarginOfPoint = 0.02;          // of latitude, around one point
constexpr double LeastMargin = SmallestSide / 2;
constexpr double LeastCosine = 1e-6;  // of a latitude, to divide by

[[noreturn]] void Refuse(const MapOptions& options, const std::string& reason) {
  throw UsageError("--area " + options.area + ": " + reason);
}

// South, west, north, east, in any notation of angles.
Area AreaFromText(const MapOptions& options) {
  constexpr Axis Axes[] = {Axis::Latitude, Axis::Longitude, Axis::Latitude, Axis::Longitude};
  std::array<double, 4> limits{};
  std::size_t begin = 0;
  for (std::size_t i = 0; i < limits.size(); ++i) {
    const std::size_t end = std::min(options.area.find(',', begin), options.area.size());
    if ((i == 3) != (end == options.area.size())) {
      Refuse(options, "an area is four angles: south,west,north,east");
    }
    const Parsed parsed = ParseAngle(options.area.substr(begin, end - begin), Axes[i]);
    if (parsed.fault != nullptr) {
      Refuse(options, parsed.fault);
    }
    limits[i] = parsed.value;
    begin = end + 1;
  }
  const auto& [south, west, north, east] = limits;
  if (!(south < north)) {
    Refuse(options, "the first latitude, south, is not below the third number, north");
  }
  if (!(west < east)) {
    Refuse(options, "the first longitude, west, is not below the second; across 180 degrees write 175,185");
  }
  if (east - west > 360) {
    Refuse(options, "more than 360 degrees of longitude");
  }
  if (north - south < SmallestSide || east - west < SmallestSide) {
    Refuse(options, "a side is shorter than 0.0002 degrees");
  }
  return {south, north, west, east};
}

// Around points: on each side a seventh of the longer extent on the ground, or a few kilometres around one point.
Area AreaAround(const std::vector<picture::NamedPoint>& points) {
  Area area{90, -90, 360, -360};
  for (const picture::NamedPoint& point : points) {
    const double longitude = points[0].at.longitude + std::remainder(point.at.longitude - points[0].at.longitude, 360);
    area = {std::min(area.south, point.at.latitude), std::max(area.north, point.at.latitude),
            std::min(area.west, longitude), std::max(area.east, longitude)};
  }
  const double cosine = std::max(std::cos((area.south + area.north) / 2 * RadiansPerDegree), LeastCosine);
  const double width = area.east - area.west;
  const double extent = std::max(area.north - area.south, width * cosine);
  const double margin = extent > 0 ? std::max(extent / 7, LeastMargin) : MarginOfPoint;
  const double aside = std::min(margin / cosine, (360 - width) / 2);
  return {std::max(area.south - margin, -90.0), std::min(area.north + margin, 90.0), area.west - aside,
          area.east + aside};
}

std::string_view WithoutBlanks(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  return text;
}

// A limit such as "45.82 N", removed from the front of the text with the word after it; NaN for anything else.
double TakeLimit(std::string_view& text, std::string_view word, char positive, char negative) {
  const std::size_t blank = text.find(' ');
  if (blank == std::string_view::npos || blank + 1 >= text.size()) {
    return NAN;
  }
  const Parsed parsed = ParseNumber(text.substr(0, blank));
  const char side = text[blank + 1];
  text.remove_prefix(blank + 2);
  if (parsed.fault != nullptr || (side != positive && side != negative) || !text.starts_with(word)) {
    return NAN;
  }
  text.remove_prefix(word.size());
  return side == positive ? parsed.value : -parsed.value;
}

// A comment such as "; Area: Switzerland; 45.82 N to 47.81 N, 5.96 E to 10.49 E", also without the name.
std::optional<Area> AreaOfComment(std::string_view section) {
  constexpr std::string_view Word = "Area:";
  std::string_view line;
  do {
    if (section.empty()) {
      return std::nullopt;
    }
    NextLine(section, line);
    line = line.starts_with(';') ? WithoutBlanks(line.substr(1)) : "";
  } while (!line.starts_with(Word));
  const std::size_t afterName = line.rfind(';');
  line = WithoutBlanks(line.substr(afterName == std::string_view::npos ? Word.size() : afterName + 1));
  Area area{};
  area.south = TakeLimit(line, " to ", 'N', 'S');
  area.north = TakeLimit(line, ", ", 'N', 'S');
  area.west = TakeLimit(line, " to ", 'E', 'W');
  area.east = TakeLimit(line, "", 'E', 'W');
  area.east += area.east < area.west ? 360 : 0;
  const bool valid = area.south >= -90 && area.north <= 90 && area.north - area.south >= SmallestSide &&
                     area.east - area.west >= SmallestSide && area.east - area.west <= 360;
  return valid ? std::optional(area) : std::nullopt;
}

// The limits of a grid file, from its header: docs/grid-files.md.
std::optional<Area> AreaOfGrid(const char* path) {
  std::string native = path;
  std::replace(native.begin(), native.end(), '\\', '/');
  std::array<char, 96> header{};
  if (!std::ifstream(native, std::ios::binary).read(header.data(), header.size())) {
    return std::nullopt;
  }
  const auto word = [&](std::size_t offset) {
    std::uint32_t value = 0;
    for (std::size_t i = 4; i-- > 0;) {
      value = value << 8U | static_cast<unsigned char>(header[offset + i]);
    }
    return value;
  };
  const auto number = [&](std::size_t offset) { return static_cast<double>(std::bit_cast<float>(word(offset))); };
  const double west = number(76);
  const double south = number(84);
  const Area area{south, south + number(88) * (word(68) - 1), west, west + number(80) * (word(64) - 1)};
  const bool usable = area.south >= -90 && area.north <= 90 && area.south < area.north && area.west < area.east &&
                      area.east - area.west <= LargestGrid;
  return usable ? std::optional(area) : std::nullopt;
}

// Around the origin of the projection, as far as such systems usually go.
Area AreaOfKind(GeodesyHandle handle) {
  GeodesyParams params{};
  GetGeodesyParams(handle, &params, nullptr, nullptr);
  const double phi0 = params.RefLatitude / RadiansPerDegree;
  const double lambda0 = params.CentralMeridian / RadiansPerDegree;
  // Copies: the fields of the packed record may have no references.
  const double first = params.NorthParallel / RadiansPerDegree;
  const double second = params.SouthParallel / RadiansPerDegree;
  const double low = std::min(first, second);
  const double high = std::max(first, second);
  const auto around = [&](double latitude, double north, double east) {
    return Area{std::max(latitude - north, -89.0), std::min(latitude + north, 89.0), lambda0 - east, lambda0 + east};
  };
  constexpr double SouthernNorthing = 5e6;  // metres: zones of the southern hemisphere have a large false northing
  switch (params.Kind) {
    case LATIGO_KIND_TRANSVERSE_MERCATOR:
    case LATIGO_KIND_CASSINI:
      if (phi0 != 0) {
        return around(phi0, 4, 3.5);
      }
      return params.FalseNorthing * params.Unit >= SouthernNorthing ? Area{-80, 0, lambda0 - 3.5, lambda0 + 3.5}
                                                                    : Area{0, 84, lambda0 - 3.5, lambda0 + 3.5};
    case LATIGO_KIND_MERCATOR:
    case LATIGO_KIND_MERCATOR_ON_SPHERE:
      return {-80, 80, lambda0 - 180, lambda0 + 180};
    case LATIGO_KIND_LAMBERT:
    case LATIGO_KIND_ALBERS: {
      const double half = std::max(3.0, high - low);
      return around((low + high) / 2, half,
                    1.5 * half / std::fmax(std::cos((params.NorthParallel + params.SouthParallel) / 2), 0.3));
    }
    case LATIGO_KIND_POLAR_STEREOGRAPHIC:
      return phi0 < 0 ? Area{-90, -60, lambda0 - 180, lambda0 + 180} : Area{60, 90, lambda0 - 180, lambda0 + 180};
    default:
      return around(phi0, 3, 3 / std::fmax(std::cos(params.RefLatitude), 0.3));
  }
}

}  // namespace

MapArea AreaOf(const MapOptions& options, const ConfigFile& config, const Converter& converter,
               const std::vector<picture::NamedPoint>& points) {
  if (!options.area.empty()) {
    return {AreaFromText(options), "as asked for"};
  }
  if (!points.empty()) {
    return {AreaAround(points), "around the points"};
  }
  if (const auto area = AreaOfComment(config.TextOf(options.section))) {
    return {*area, "of the section's comment"};
  }
  char path[PathSize] = "";
  if (GetEllModel(converter.Handle(), path, sizeof path) != 0) {
    if (const auto area = AreaOfGrid(path)) {
      return {*area, "of the datum grid"};
    }
  }
  char geoid[PathSize] = "";
  if (GetGeoid(converter.Handle(), geoid, sizeof geoid, nullptr) != 0) {
    if (const auto area = AreaOfGrid(geoid)) {
      return {*area, "of the geoid grid"};
    }
  }
  return {AreaOfKind(converter.Handle()), "around the projection's origin; --area selects another"};
}

}  // namespace latigo::cli
