#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <fstream>
#include <limits>
#include <set>

#include "formats.h"

namespace latigo::grids {

namespace {

struct Node {
  double latitude, longitude;
  std::array<float, 3> values;
};

// The numbers of a line; refuses anything else in it.
std::vector<double> Numbers(const std::string& line, int number) {
  std::vector<double> found;
  const auto separates = [](char c) { return c == ' ' || c == '\t' || c == ',' || c == ';' || c == '\r'; };
  const char *at = line.data(), *const end = at + line.size();
  while (true) {
    at = std::find_if_not(at, end, separates);
    if (at == end) {
      return found;
    }
    double value = 0;
    const auto [rest, fault] = std::from_chars(at + (*at == '+' ? 1 : 0), end, value);
    if (fault != std::errc() || (rest != end && !separates(*rest))) {
      throw Refused("no grid format that is known here, and line " + std::to_string(number) + " is not numbers");
    }
    found.push_back(value);
    at = rest;
  }
}

// The lattice of an axis, from the coordinates that occur: the least distance between two is the step.
Axis AxisOf(std::vector<double> all, const char* name) {
  constexpr double Slack = 1e-6;  // degrees
  std::sort(all.begin(), all.end());
  all.erase(std::unique(all.begin(), all.end(), [](double a, double b) { return b - a < Slack; }), all.end());
  if (all.size() < 2) {
    throw Refused(std::string("only one ") + name);
  }
  double step = 360;
  for (std::size_t i = 1; i < all.size(); ++i) {
    step = std::min(step, all[i] - all[i - 1]);
  }
  const double span = all.back() - all.front(), steps = std::round(span / step);
  step = span / steps;
  for (const double at : all) {
    if (const double whole = (at - all.front()) / step; std::fabs(whole - std::round(whole)) > 0.01) {
      throw Refused(std::string("the ") + name + "s are no lattice");
    }
  }
  return {all.front(), step, static_cast<int>(steps) + 1};
}

}  // namespace

Field ReadText(const std::string& path, const SourceOptions& options) {
  std::ifstream file(path);
  std::vector<Node> nodes;
  std::vector<double> latitudes, longitudes;
  std::size_t depth = 0;
  int number = 0;
  for (std::string line; std::getline(file, line);) {
    ++number;
    if (line.rfind('#', 0) == 0 || line.find_first_not_of(" \t\r") == std::string::npos) {
      continue;
    }
    const std::vector<double> found = Numbers(line, number);
    depth = depth == 0 && found.size() > 2 ? found.size() - 2 : depth;
    if (found.size() != depth + 2 || depth > 3) {
      throw Refused("line " + std::to_string(number) + " is not a latitude, a longitude and one to three values" +
                    (nodes.empty() ? "" : ", as many as in the lines before"));
    }
    Node node{found[options.longitudeFirst ? 1 : 0], found[options.longitudeFirst ? 0 : 1], {}};
    if (!(std::fabs(node.latitude) <= 90 && std::fabs(node.longitude) <= 360)) {
      throw Refused("line " + std::to_string(number) + ": no latitude and longitude in degrees");
    }
    for (std::size_t i = 0; i < depth; ++i) {
      const double value = found[i + 2];
      node.values.at(i) = options.noData && value == *options.noData ? std::numeric_limits<float>::quiet_NaN()
                                                                     : static_cast<float>(value);
    }
    nodes.push_back(node);
    latitudes.push_back(node.latitude), longitudes.push_back(node.longitude);
  }
  if (nodes.empty()) {
    throw Refused("no grid format that is known here, and no line of numbers");
  }
  const Axis latitude = AxisOf(std::move(latitudes), "latitude"),
             longitude = AxisOf(std::move(longitudes), "longitude");
  const auto cols = static_cast<std::size_t>(longitude.nodes), rows = static_cast<std::size_t>(latitude.nodes);
  if (rows * cols > nodes.size() * 100) {
    throw Refused("the lines are no lattice");
  }
  std::vector<float> values(rows * cols * depth, std::numeric_limits<float>::quiet_NaN());
  std::vector<bool> taken(rows * cols);
  for (const Node& node : nodes) {
    const auto row = static_cast<std::size_t>(std::lround((latitude.End() - node.latitude) / latitude.step));
    const auto col = static_cast<std::size_t>(std::lround((node.longitude - longitude.start) / longitude.step));
    if (taken[row * cols + col]) {
      throw Refused("two lines for the node " + std::to_string(node.latitude) + " " + std::to_string(node.longitude));
    }
    taken[row * cols + col] = true;
    std::copy_n(node.values.begin(), depth, values.begin() + static_cast<std::ptrdiff_t>((row * cols + col) * depth));
  }
  Field field;
  field.format = "text", field.kind = static_cast<Kind>(depth);
  const std::size_t perRow = cols * depth;
  AddLayer(field,
           {"", "", longitude.nodes, latitude.nodes, static_cast<int>(depth), longitude.start, latitude.End(),
            longitude.step, latitude.step,
            [&](int row, float* to) {
              std::copy_n(values.begin() + static_cast<std::ptrdiff_t>(static_cast<std::size_t>(row) * perRow), perRow,
                          to);
            }},
           options);
  return field;
}

}  // namespace latigo::grids
