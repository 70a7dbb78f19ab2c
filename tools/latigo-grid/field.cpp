#include "field.h"

#include <algorithm>
#include <cmath>

namespace latigo::grids {

namespace {

constexpr double OnNode = 1e-7;  // of a step

// Where a position lies on an axis: the node before it and the fraction of the step after it.
struct Place {
  int node;
  double fraction;
};

// Cubic convolution (Keys 1981, a = -1/2) between p[1] and p[2].
double Cubic(const double* p, double t) {
  return p[1] + t * ((p[2] - p[0]) / 2 +
                     t * (p[0] - 2.5 * p[1] + 2 * p[2] - p[3] / 2 + t * (1.5 * (p[1] - p[2]) + (p[3] - p[0]) / 2)));
}

// The four values around a cell of an axis; beyond an end of the axis they continue the line of the last two.
template <typename Value>
void FourAround(int node, int nodes, bool periodic, Value value, double* p) {
  for (int i = 0; i < 4; ++i) {
    const int at = node - 1 + i;
    if (periodic) {
      p[i] = value((at + nodes) % nodes);
    } else if (at < 0) {
      p[i] = nodes > 1 ? 2 * value(0) - value(1) : value(0);
    } else if (at >= nodes) {
      const double last = value(nodes - 1);
      p[i] = last + (at - nodes + 1) * (nodes > 1 ? last - value(nodes - 2) : 0);
    } else {
      p[i] = value(at);
    }
  }
}

double CubicAt(const Layer& layer, const Place& row, const Place& col, int i) {
  double rows[4], cols[4];
  const auto inRow = [&](int r) {
    if (col.fraction == 0) {
      return double{layer.Node(r, col.node)[i]};
    }
    FourAround(
        col.node, layer.longitude.nodes, layer.periodic, [&](int c) { return double{layer.Node(r, c)[i]}; }, cols);
    return Cubic(cols, col.fraction);
  };
  if (row.fraction == 0) {
    return inRow(row.node);
  }
  FourAround(row.node, layer.latitude.nodes, false, inRow, rows);
  return Cubic(rows, row.fraction);
}

// Nodes of weight 0 do not count, so that one without a value beside a node changes nothing there.
double LinearAt(const Layer& layer, const Place& row, const Place& col, int i) {
  const int nextCol = layer.periodic ? (col.node + 1) % layer.longitude.nodes : col.node + 1;
  const auto inRow = [&](int r) {
    const double west = layer.Node(r, col.node)[i];
    return col.fraction == 0 ? west : west + (layer.Node(r, nextCol)[i] - west) * col.fraction;
  };
  const double south = inRow(row.node);
  return row.fraction == 0 ? south : south + (inRow(row.node + 1) - south) * row.fraction;
}

// False outside. Positions beyond an end by no more than the rounding of float32 degrees count as on it.
bool Find(const Axis& axis, bool periodic, double offset, double beyond, Place& place) {
  const double last = periodic ? axis.nodes : axis.nodes - 1;
  const double slack = std::max(beyond, FloatRounding) / axis.step;
  double at = offset / axis.step;
  if (!(at >= -slack && at <= last + slack)) {
    return false;
  }
  at = beyond > 0 && axis.nodes > 1 ? at : std::clamp(at, 0.0, last);
  if (const double whole = std::round(at); std::fabs(at - whole) < OnNode) {
    at = whole;
  }
  place.node = std::clamp(static_cast<int>(at), 0, static_cast<int>(last) - (at > last ? 1 : 0));
  place.fraction = at - place.node;
  if (periodic && place.node == axis.nodes) {
    place.node = 0;
  }
  return true;
}

}  // namespace

double EastOf(double start, double longitude, double slack) {
  double offset = std::fmod(longitude - start, 360);
  offset += offset < 0 ? 360 : 0;
  return offset > 360 - slack ? offset - 360 : offset;
}

Area Field::Limits() const {
  Area all{90, 0, -90, 0};
  bool first = true;
  for (const Layer& layer : layers) {
    const double east = layer.periodic ? layer.longitude.start + 360 : layer.longitude.End();
    all.south = std::min(all.south, layer.latitude.start);
    all.north = std::max(all.north, layer.latitude.End());
    all.west = first ? layer.longitude.start : std::min(all.west, layer.longitude.start);
    all.east = first ? east : std::max(all.east, east);
    first = false;
  }
  return all;
}

bool Field::AsStored(double latitude, double longitude, double beyond, Values& values) const {
  for (const Layer& layer : layers) {
    Place row{}, col{};
    const double east = EastOf(layer.longitude.start, longitude, std::max(beyond, FloatRounding));
    if (!Find(layer.latitude, false, latitude - layer.latitude.start, beyond, row) ||
        !Find(layer.longitude, layer.periodic, east, beyond, col)) {
      continue;
    }
    for (int i = 0; i < layer.depth; ++i) {
      double& value = values[static_cast<std::size_t>(i)];
      value = interpolation == Interpolation::Bicubic ? CubicAt(layer, row, col, i) : LinearAt(layer, row, col, i);
      if (!std::isfinite(value)) {
        return false;
      }
    }
    return true;
  }
  return false;
}

// The file's shift is that at q, a position on the one datum, and p = q + shift is the position asked, on the other.
bool Field::Iterated(double latitude, double longitude, Values& values) const {
  constexpr int Iterations = 20;
  constexpr double Tolerance = 1e-10;  // arc seconds
  constexpr double Beyond = 0.1;       // degrees; more than any shift between datums
  Values shift{};
  for (int i = 0; i < Iterations; ++i) {
    const double lat = latitude - shift[0] / 3600, lon = longitude - shift[1] / 3600;
    if (!AsStored(lat, lon, 0, values) && (i == 0 || !AsStored(lat, lon, Beyond, values))) {
      return false;
    }
    const Values change = Minus(values, shift);
    shift = values;
    if (std::hypot(change[0], change[1]) < Tolerance) {
      break;
    }
  }
  return true;
}

bool Field::At(double latitude, double longitude, Values& values) const {
  if (!(Iterates() ? Iterated(latitude, longitude, values) : AsStored(latitude, longitude, 0, values))) {
    return false;
  }
  if (inverted && kind != Kind::Geoid) {
    values = Minus({}, values);
  }
  return true;
}

}  // namespace latigo::grids
