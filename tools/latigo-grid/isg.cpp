#include <algorithm>
#include <cmath>
#include <fstream>
#include <limits>
#include <map>
#include <vector>

#include "../latigo/angle.h"
#include "formats.h"

namespace latigo::grids {

namespace {

using Header = std::map<std::string, std::string>;  // by keys in small letters

std::string Trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \t"), last = text.find_last_not_of(" \t\r");
  return first == std::string::npos ? "" : text.substr(first, last - first + 1);
}

// The lines "key : value" or "key = value" between the marks of the header.
Header ReadHeader(std::istream& file) {
  Header header;
  bool inside = false;
  for (std::string line; std::getline(file, line);) {
    if (line.rfind("end_of_head", 0) == 0) {
      return header;
    }
    inside = inside || line.rfind("begin_of_head", 0) == 0;
    if (const std::size_t mark = line.find_first_of(":="); inside && mark != std::string::npos) {
      std::string key = Trimmed(line.substr(0, mark));
      std::transform(key.begin(), key.end(), key.begin(), [](unsigned char c) { return std::tolower(c); });
      header.emplace(key, Trimmed(line.substr(mark + 1)));
    }
  }
  throw Refused("its header has no end");
}

// Degrees, or degrees, minutes and seconds.
double Number(const Header& header, const char* key) {
  const auto found = header.find(key);
  if (found == header.end()) {
    throw Refused(std::string("its header has no ") + key);
  }
  const cli::Parsed parsed = cli::ParseAngle(found->second, cli::Axis::Longitude);
  if (parsed.fault != nullptr) {
    throw Refused(std::string("its ") + key + " " + found->second + ": " + parsed.fault);
  }
  return parsed.value;
}

// Refuses a header in which a key stands with another value than one of those.
void Require(const Header& header, const char* key, const char* wanted) {
  const auto found = header.find(key);
  if (found != header.end() && found->second != wanted && found->second != "---") {
    throw Refused(std::string("its ") + key + " is " + found->second + ", and only " + wanted + " is read");
  }
}

// The first node: the header's limits are the edges of the cells around the nodes, or the nodes. Steps in few digits
// leave both open where there are many nodes; then a step of whole arc seconds counts, or the nearer one by far.
double FirstNode(double low, double high, double step, int nodes) {
  const double ofEdges = (high - low) / nodes, ofNodes = (high - low) / (nodes - 1);
  const auto miss = [&](double each) { return std::fabs(each / step - 1); };
  const auto fits = [&](double each) { return miss(each) < 0.01; };
  const auto whole = [](double each) { return std::fabs(each * 3600 - std::round(each * 3600)) < 1e-3; };
  constexpr double Far = 4;
  const auto better = [&](double one, double other) {
    return fits(one) && (!fits(other) || (whole(one) && !whole(other)) ||
                         (whole(one) == whole(other) && miss(other) > Far * miss(one)));
  };
  if (better(ofEdges, ofNodes)) {
    return low + ofEdges / 2;
  }
  if (better(ofNodes, ofEdges)) {
    return low;
  }
  throw Refused(fits(ofNodes) ? "its limits may be edges of cells or nodes; more digits of the steps would show which"
                              : "its limits, steps and counts contradict each other");
}

}  // namespace

Field ReadIsg(const std::string& path, const SourceOptions& options) {
  std::ifstream file(path);
  const Header header = ReadHeader(file);
  Require(header, "data format", "grid");
  Require(header, "data ordering", "N-to-S, W-to-E");
  Require(header, "coord type", "geodetic");
  const auto count = [&](const char* key) {
    const auto found = header.find(key);
    const cli::Parsed parsed = cli::ParseNumber(found == header.end() ? "" : found->second);
    if (parsed.fault != nullptr || !(parsed.value >= 2 && parsed.value <= 1e6)) {
      throw Refused(std::string("its header has no count ") + key);
    }
    return static_cast<int>(parsed.value);
  };
  const auto unit = header.count("data units") != 0 ? header.find("data units") : header.find("units");
  const double factor = ToMetres(unit == header.end() || unit->second == "---" ? "" : unit->second);
  const auto mark = header.find("nodata");
  const cli::Parsed none = cli::ParseNumber(mark == header.end() ? "" : mark->second);

  Raster raster;
  raster.rows = count("nrows"), raster.cols = count("ncols");
  const double south = Number(header, "lat min"), north = Number(header, "lat max");
  const double west = Number(header, "lon min"), east = Number(header, "lon max");
  const double firstLat = FirstNode(south, north, Number(header, "delta lat"), raster.rows);
  const double firstLon = FirstNode(west, east, Number(header, "delta lon"), raster.cols);
  // The steps stand in few digits; the limits say them better.
  raster.latStep = (north - south) / (raster.rows - (firstLat == south ? 1 : 0));
  raster.lonStep = (east - west) / (raster.cols - (firstLon == west ? 1 : 0));
  raster.west = firstLon, raster.north = firstLat + raster.latStep * (raster.rows - 1);
  const auto cols = static_cast<std::size_t>(raster.cols);
  std::vector<float> all;
  for (double value = 0; all.size() < cols * static_cast<std::size_t>(raster.rows);) {
    if (!(file >> value)) {
      throw Refused("row " + std::to_string(all.size() / cols) + " cannot be read");
    }
    const bool missing = (none.fault == nullptr && value == none.value) || (options.noData && value == *options.noData);
    all.push_back(missing ? std::numeric_limits<float>::quiet_NaN() : static_cast<float>(value * factor));
  }
  if (std::string more; file >> more) {
    throw Refused("has more values than nrows and ncols say");
  }
  raster.read = [&](int row, float* values) { std::copy_n(&all[static_cast<std::size_t>(row) * cols], cols, values); };
  Field field;
  field.format = "ISG";
  AddLayer(field, raster, options);
  return field;
}

}  // namespace latigo::grids
