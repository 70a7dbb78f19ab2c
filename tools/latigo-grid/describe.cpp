#include "describe.h"

#include <cstdio>

#include "amounts.h"

namespace latigo::grids {

namespace {

std::string Number(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.7g", value);
  return text;
}

std::string LimitsText(const Area& area) {
  return Degrees(area.south) + " to " + Degrees(area.north) + " north, " + Degrees(area.west) + " to " +
         Degrees(area.east) + " east";
}

}  // namespace

std::string Meaning(Kind kind) {
  switch (kind) {
    case Kind::Geoid:
      return "undulation, metres";
    case Kind::Shift:
      return "shift of latitude and longitude to WGS-84, arc seconds";
    case Kind::Translation:
      return "translation dX, dY, dZ from WGS-84, metres";
  }
  return "";
}

std::string Describe(const Field& field) {
  std::string text = field.format + ", " + Meaning(field.kind);
  if (!field.from.empty()) {
    text += ", " + field.from + (field.to.empty() ? "" : " to " + field.to);
  }
  text += "\n";
  for (const Layer& layer : field.layers) {
    text += (layer.name.empty() ? "  " : "  sub-grid " + layer.name + ": ") +
            LimitsText({layer.latitude.start, layer.longitude.start, layer.latitude.End(), layer.longitude.End()});
    text += ", " + std::to_string(layer.latitude.nodes) + " x " + std::to_string(layer.longitude.nodes) + " nodes, " +
            Number(layer.latitude.step * 3600) + "\" x " + Number(layer.longitude.step * 3600) + "\"" +
            (layer.periodic ? ", all around the earth" : "") + "\n";
  }
  for (const std::string& note : field.notes) {
    text += "  note: " + note + "\n";
  }
  return text;
}

std::string Describe(const Lattice& lattice) {
  return std::to_string(lattice.rows) + " x " + std::to_string(lattice.cols) + " nodes, " +
         std::to_string(lattice.latStep) + "\" x " + std::to_string(lattice.lonStep) + "\", " +
         Bytes(static_cast<double>(lattice.FileBytes())) + "\n  " + LimitsText(lattice.Limits()) + "\n";
}

}  // namespace latigo::grids
