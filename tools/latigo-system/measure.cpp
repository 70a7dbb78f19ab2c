#include "measure.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <latigo/latigo.hpp>
#include <numbers>
#include <random>

namespace latigo::system {

namespace {

constexpr double Degree = std::numbers::pi / 180;

// A section as the library reads it: from a file, which is there for as long as that takes.
api::Geodesy Open(const Section& section) {
  std::random_device random;
  const std::filesystem::path path =
      std::filesystem::temp_directory_path() / ("latigo-system-" + std::to_string(random()) + std::to_string(random()));
  const auto file = std::unique_ptr<std::FILE, Destroyer<std::FILE, std::fclose>>(std::fopen(path.c_str(), "wx"));
  if (!file) {
    throw Refused(path.string() + ": cannot be written");
  }
  const std::string text = section.Write("Geodesy");
  const bool written =
      std::fwrite(text.data(), 1, text.size(), file.get()) == text.size() && std::fflush(file.get()) == 0;
  auto made = api::Geodesy::CreateFileGeodesy(path.c_str());
  std::filesystem::remove(path);
  if (!written) {
    throw Refused(path.string() + ": cannot be written");
  }
  if (!made) {
    throw Refused("the library refuses the section with code " + std::to_string(made.code));
  }
  return std::move(made.value);
}

// Between our order, units and directions and those of a system's axes.
PJ_COORD ToAxes(const Axes& axes, double first, double second) {
  PJ_COORD coordinates = proj_coord(0, 0, 0, HUGE_VAL);
  for (std::size_t i = 0; i < 2; ++i) {
    const double value = (axes[i].first ? first : second) / axes[i].unit;
    coordinates.v[i] = axes[i].reversed ? -value : value;
  }
  return coordinates;
}

struct Pair {
  double first, second;
};

Pair FromAxes(const Axes& axes, const PJ_COORD& coordinates) {
  Pair pair{};
  for (std::size_t i = 0; i < 2; ++i) {
    const double value = coordinates.v[i] * axes[i].unit;
    (axes[i].first ? pair.first : pair.second) = axes[i].reversed ? -value : value;
  }
  return pair;
}

const PJ_COORD Nowhere = proj_coord(HUGE_VAL, HUGE_VAL, HUGE_VAL, HUGE_VAL);

bool Finite(double a, double b) {
  return std::isfinite(a) && std::isfinite(b);
}

double Wrapped(double radians) {
  return std::remainder(radians, 2 * std::numbers::pi);
}

// Positions, uniform in latitude and longitude; the same for the same area. The limits themselves are left out, since
// a pole may be one.
class RandomPositions {
 public:
  explicit RandomPositions(const Area& area, std::uint64_t seed = 7) : area_(area), generator_(seed) {}

  api::Position Next() {
    const double latitude = area_.south + (area_.north - area_.south) * Fraction();
    const double longitude = area_.west + (area_.east - area_.west) * Fraction();
    return {latitude * Degree, Wrapped(longitude * Degree)};
  }

 private:
  double Fraction() { return (static_cast<double>(generator_() >> 11U) + 0.5) * 0x1p-53; }

  const Area& area_;
  std::mt19937_64 generator_;
};

// The distance on the ground, for small ones.
double Distance(const Crs& crs, api::Position one, api::Position other) {
  const double north = one.latitude - other.latitude;
  const double east = Wrapped(one.longitude - other.longitude) * std::cos(one.latitude);
  return crs.semiMajorAxis * std::hypot(north, east);
}

}  // namespace

std::string Length(double metres) {
  char text[32];
  if (!(metres < 1)) {
    std::snprintf(text, sizeof text, metres < 10 ? "%.1f m" : "%.0f m", metres);
  } else if (metres * 1000 < 0.01) {
    return "0.01 mm";
  } else {
    std::snprintf(text, sizeof text,
                  metres >= 0.01    ? "%.0f mm"
                  : metres >= 0.001 ? "%.1f mm"
                                    : "%.2f mm",
                  metres * 1000);
  }
  return text;
}

std::string Difference::Sentence() const {
  return Length(forward) + " forward, " + Length(inverse) + " inverse, at " + std::to_string(points - unknown) +
         " random points" + (failures > 0 ? ", of which " + std::to_string(failures) + " fail" : "");
}

Difference MeasureProjection(const Database& database, const Crs& crs, const Section& section, int points) {
  api::Geodesy ours = Open(section);
  const Pj theirs(
      proj_create_crs_to_crs_from_pj(database.Context(), crs.geodetic.get(), crs.projected.get(), nullptr, nullptr));
  const double greenwich = crs.primeMeridian * Degree;
  const double meridian = section.Number("CentralMeridian") * Degree;
  const double unit = crs.Unit();
  Difference difference;
  RandomPositions positions(crs.area);
  for (difference.points = 0; difference.points < points; ++difference.points) {
    const api::Position at = positions.Next();
    const PJ_COORD ground = ToAxes(crs.groundAxes, Wrapped(at.longitude - greenwich), at.latitude);
    const PJ_COORD map = theirs ? proj_trans(theirs.get(), PJ_FWD, ground) : Nowhere;
    const PJ_COORD there = theirs ? proj_trans(theirs.get(), PJ_INV, map) : Nowhere;
    if (!Finite(map.v[0], map.v[1]) || !Finite(there.v[0], there.v[1])) {
      ++difference.unknown;
      continue;
    }
    // Axes to the west and south are the section's own, so only order and unit are left to compare.
    const api::Grid theirGrid = {map.v[crs.mapAxes[0].first ? 0 : 1], map.v[crs.mapAxes[0].first ? 1 : 0]};
    const auto distance = [&](const api::Grid& grid) {
      return std::hypot(grid.x - theirGrid.x, grid.y - theirGrid.y) * unit;
    };
    // The near side of the central meridian, where a kind does not wrap longitudes by itself.
    const auto plain = ours.GeoXY(at);
    const auto grid = ours.GeoXY({at.latitude, meridian + Wrapped(at.longitude - meridian)});
    const auto back = ours.XYGeo(theirGrid);
    if (!plain || !grid || !back || !Finite(grid->x, grid->y) || !Finite(back->latitude, back->longitude)) {
      ++difference.failures;
      continue;
    }
    constexpr double Elsewhere = 1000;  // metres
    difference.turned += std::hypot(plain->x - grid->x, plain->y - grid->y) * unit > Elsewhere ? 1 : 0;
    difference.forward = std::max(difference.forward, distance(*grid));
    const Pair theirBack = FromAxes(crs.groundAxes, there);
    difference.inverse =
        std::max(difference.inverse, Distance(crs, *back, {theirBack.second, theirBack.first + greenwich}));
  }
  database.Complaint("");
  return difference;
}

Difference MeasureShift(const Database&, const Crs& crs, const Section& section, PJ* operation, int points) {
  api::Geodesy ours = Open(section);
  const double greenwich = crs.primeMeridian * Degree;
  const Axes wgs84 = {Axis{false, false, Degree, "north", "", ""}, Axis{true, false, Degree, "east", "", ""}};
  Difference difference;
  RandomPositions positions(crs.area);
  for (difference.points = 0; difference.points < points; ++difference.points) {
    const api::Position at = positions.Next();
    const PJ_COORD local = ToAxes(crs.groundAxes, Wrapped(at.longitude - greenwich), at.latitude);
    const PJ_COORD global = proj_trans(operation, PJ_FWD, local);
    const Pair theirs = FromAxes(wgs84, global);
    const Pair theirsBack = FromAxes(crs.groundAxes, proj_trans(operation, PJ_INV, global));
    const auto to = ours.InvWGS84Conv({at.latitude, at.longitude, 0});
    const auto from = ours.WGS84Conv({theirs.second, theirs.first, 0});
    if (!to || !from || !Finite(theirs.first, theirs.second) || !Finite(theirsBack.first, theirsBack.second)) {
      ++difference.failures;
      continue;
    }
    difference.inverse =
        std::max(difference.inverse, Distance(crs, {to->latitude, to->longitude}, {theirs.second, theirs.first}));
    difference.forward = std::max(difference.forward, Distance(crs, {from->latitude, from->longitude},
                                                               {theirsBack.second, theirsBack.first + greenwich}));
  }
  return difference;
}

double MeasurePipeline(api::Geodesy& ours, PJ* pipeline, double latitude, double longitude, double unit) {
  constexpr double Reach = 2;
  const double middle = std::clamp(latitude, Reach - 90, 90 - Reach);
  const Area area{middle - Reach, longitude - Reach, middle + Reach, longitude + Reach, ""};
  RandomPositions positions(area);
  double largest = 0;
  for (int i = 0; i < 200; ++i) {
    const api::Position at = positions.Next();
    const PJ_COORD theirs =
        proj_trans(pipeline, PJ_FWD, proj_coord(at.latitude / Degree, at.longitude / Degree, 0, HUGE_VAL));
    const auto moved = ours.WGS84Conv({at.latitude, at.longitude, 0});
    // The near side of the central meridian, where a kind does not wrap longitudes by itself.
    const double meridian = longitude * Degree;
    const auto grid = ours.GeoXY({moved->latitude, meridian + Wrapped(moved->longitude - meridian)});
    if (!moved || !grid || !Finite(grid->x, grid->y) || !Finite(theirs.v[0], theirs.v[1])) {
      return HUGE_VAL;
    }
    largest = std::max(largest, std::hypot(grid->x - theirs.v[0], grid->y - theirs.v[1]) * std::abs(unit));
  }
  return largest;
}

}  // namespace latigo::system
