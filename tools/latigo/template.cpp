// Prints a commented section of each projection: a real system, whose values are to be replaced.
#include <latigo/latigo.h>

#include <charconv>
#include <cstdlib>
#include <string>
#include <string_view>

#include "commands.h"
#include "error_text.h"
#include "frame/config_keys.h"
#include "names.h"
#include "platform/ascii.h"
#include "streams.h"
#include "visible.h"

namespace latigo::cli {

namespace {

// The values are the texts of the keys; null for a key that the projection does not read.
struct Example {
  std::int32_t kind;
  const char *keyword, *name, *description;
  const char *a, *flattening, *unit, *scale, *meridian, *latitude, *north, *south, *azimuth, *easting, *northing;
};

// clang-format off
constexpr Example Examples[] = {
    {LATIGO_KIND_LAMBERT, "LCC", "Lambert93", "RGF93 / Lambert-93, France",
     "6378137", "298.257222101", "1", "1", "3", "46.5", "49", "44", nullptr, "700000", "6600000"},
    {LATIGO_KIND_MERCATOR, "MER", "Caspian", "Pulkovo 1942 / Caspian Sea Mercator",
     "6378245", "298.3", "1", nullptr, "51", "42", nullptr, nullptr, nullptr, "0", "0"},
    {LATIGO_KIND_TRANSVERSE_MERCATOR, "TME", "NationalGrid", "OSGB36 / British National Grid",
     "6377563.396", "299.3249646", "1", "0.9996012717", "-2", "49", nullptr, nullptr, nullptr, "400000", "-100000"},
    {LATIGO_KIND_OBLIQUE_STEREOGRAPHIC, "OST", "RD", "Amersfoort / RD Old, Netherlands",
     "6377397.155", "299.1528128", nullptr, "0.9999079", "5.387638888888889", "52.156160555555556",
     nullptr, nullptr, nullptr, "155000", "463000"},
    {LATIGO_KIND_OBLIQUE_CYLINDRICAL, "OCY", "LV95", "CH1903+ / LV95, Switzerland",
     "6377397.155", "299.1528128", "1", "1", "7.439583333333333", "46.952405555555556",
     nullptr, nullptr, nullptr, "2600000", "1200000"},
    {LATIGO_KIND_HOTINE, "HOM", "Michigan", "NAD83 / Michigan Oblique Mercator",
     "6378137", "298.257222101", "1", "0.9996", "-86", "45.30916666666666",
     nullptr, nullptr, "337.25556", "2546731.496", "-4354009.816"},
    {LATIGO_KIND_RSO, "RSO", "BorneoRSO", "Timbalai 1948 / RSO Borneo (m)",
     "6377298.556", "300.8017", "1", "0.99984", "115", "4", nullptr, nullptr, "53.315820472222222", "0", "0"},
    {LATIGO_KIND_AZIMUTHAL_EQUIDISTANT, "AZD", "Yap", "Guam 1963 / Yap Islands",
     "6378206.4", "294.9786982", "1", nullptr, "138.168744444444444", "9.546708333333333",
     nullptr, nullptr, nullptr, "40000", "60000"},
    {LATIGO_KIND_MERCATOR_ON_SPHERE, "SMERC", "Sphere", "a sphere of 6378388 metres; the ellipsoid is for distances",
     "6378137", "298.257223563", nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr},
    {LATIGO_KIND_ALBERS, "ALA", "ConusAlbers", "NAD83 / Conus Albers, United States",
     "6378137", "298.257222101", "1", nullptr, "-96", "23", "29.5", "45.5", nullptr, "0", "0"},
    {LATIGO_KIND_CASSINI, "CAS", "TrinidadGrid", "Trinidad 1903 / Trinidad Grid, in Clarke's links",
     "6378293.645208759", "294.2606763692567", "0.201166195", nullptr, "-61.333333333333333", "10.441666666666667",
     nullptr, nullptr, nullptr, "430000", "325000"},
    {LATIGO_KIND_POLAR_STEREOGRAPHIC, "PST", "UPSNorth", "universal polar stereographic, north",
     "6378137", "298.257223563", nullptr, "0.994", "0", "90", nullptr, nullptr, nullptr, "2000000", "2000000"},
};

struct KeyText {
  const char *name, *unit, *meaning, *without;
  const char* Example::*value;   // null for a key that is not of the projection
  const char* sample = nullptr;  // of such a key, which is commented out
};

// The texts are those of docs/configuration.md, in its order.
constexpr KeyText Keys[] = {
    {"Projection", "keyword", "the map projection", "refused, code 5", &Example::keyword},
    {"SemiMajorAxis", "metres", "a of the ellipsoid", "0", &Example::a},
    {"Flattening", "no unit",
     "the reciprocal flattening 1/f, for instance 298.257223563", "refused, code 3", &Example::flattening},
    {"Unit", "metres per grid unit", "unit of the grid coordinates", "1", &Example::unit},
    {"ScaleFactor", "no unit", "central scale factor", "1", &Example::scale},
    {"CentralMeridian", "degrees", "longitude of origin", "0", &Example::meridian},
    {"RefLatitude", "degrees",
     "latitude of origin; for Mercator, and for polar stereographic away from the pole, of true scale", "0",
     &Example::latitude},
    {"NorthParallel", "degrees", "a standard parallel", "0", &Example::north},
    {"SouthParallel", "degrees",
     "the other standard parallel; equal to the first for a cone with one", "0", &Example::south},
    {"SkewAzimuth", "degrees", "azimuth of the skew line", "0", &Example::azimuth},
    {"FalseEasting", "grid units", "false easting", "0", &Example::easting},
    {"FalseNorthing", "grid units", "false northing", "0", &Example::northing},
    {"VertUnit", "metres per vertical unit",
     "unit of heights with grid coordinates", "metres in the program latigo", nullptr, "1"},
    {"DynDatum", "file name", "datum grid; replaces the seven parameters below", "no datum grid", nullptr, "datum.dat"},
    {"DeltaX", "metres", "translation from WGS-84 to the system's datum", "0", nullptr, "0"},
    {"DeltaY", "metres", "translation", "0", nullptr, "0"},
    {"DeltaZ", "metres", "translation", "0", nullptr, "0"},
    {"DeltaScale", "parts per million", "scale difference", "0", nullptr, "0"},
    {"DeltaRX", "arc seconds", "rotation about X, coordinate frame convention", "0", nullptr, "0"},
    {"DeltaRY", "arc seconds", "rotation about Y", "0", nullptr, "0"},
    {"DeltaRZ", "arc seconds", "rotation about Z", "0", nullptr, "0"},
    {"AdjustType", "integer",
     "local grid: 1 for a similarity transformation, 2 to 16 for a fixed grid", "none", nullptr, "1"},
    {"ReverseX", "boolean", "mirrors the X axis; type 1 only", "no", nullptr, "no"},
    {"ReverseY", "boolean", "mirrors the Y axis; type 1 only", "no", nullptr, "no"},
    {"AdjustRotation", "degrees", "rotation of the local grid, anticlockwise", "0", nullptr, "0"},
    {"AdjustScale", "no unit", "scale of the local grid", "1", nullptr, "1"},
    {"AdjustX", "grid units", "local X of the origin", "0", nullptr, "0"},
    {"AdjustY", "grid units", "local Y of the origin", "0", nullptr, "0"},
    {"AdjustOrigX", "grid units", "projection x of the origin", "0", nullptr, "0"},
    {"AdjustOrigY", "grid units", "projection y of the origin", "0", nullptr, "0"},
    {"OrthoHCorr", "unit of the geoid grid's values", "constant added to every undulation", "0", nullptr, "0"},
    {"Geoid", "file name", "geoid grid", "no geoid grid", nullptr, "geoid.dat"},
};
// clang-format on

constexpr int Zones = 60;
constexpr int ZoneWidth = 6;  // degrees

// Heights, datum, local grid and geoid follow the projection, each after an empty line.
bool FirstOfGroup(std::string_view key) {
  return key == "Projection" || key == "VertUnit" || key == "DynDatum" || key == "AdjustType" || key == "OrthoHCorr";
}

std::string TextOf(const Example& example) {
  std::string text = std::string("[") + example.name + "]\n; " + ProjectionName(example.kind) + ": " +
                     example.description + "\n; Replace the values. Angles are decimal degrees, north and east " +
                     "positive. To use a key, remove the semicolon before it.\n";
  std::string ignored;
  for (const KeyText& key : Keys) {
    const char* const value = key.value != nullptr ? example.*key.value : key.sample;
    if (value == nullptr) {
      ignored += (ignored.empty() ? "" : ", ") + std::string(key.name);
      continue;
    }
    text += (FirstOfGroup(key.name) ? "\n; " : "; ") + std::string(key.unit) + ": " + key.meaning +
            ". Absent: " + key.without + ".\n" + (key.value == nullptr ? ";" : "") + key.name + "=" + value + "\n";
  }
  return text + (ignored.empty() ? "" : "\n; This projection does not read " + ignored + ".\n");
}

std::string TextOfZone(const std::string& zone) {
  int number = 0;
  const auto [letter, failure] = std::from_chars(zone.data(), zone.data() + zone.size(), number);
  const std::string hemisphere(letter, zone.data() + zone.size());
  const bool south = EqualIgnoringCase(hemisphere, "S");
  if (failure != std::errc() || number < 1 || number > Zones || !(south || EqualIgnoringCase(hemisphere, "N"))) {
    throw UsageError("utm " + zone + ": a zone is a number from 1 to 60 and N for north or S for south, as 33N");
  }
  const int meridian = ZoneWidth * number - 183;
  const auto edge = [](int longitude) {
    return std::to_string(std::abs(longitude)) + (longitude < 0 ? " W" : longitude > 0 ? " E" : "");
  };
  const std::string name = "UTM" + std::to_string(number) + (south ? "S" : "N");
  const std::string central = std::to_string(meridian);
  const std::string description = "UTM zone " + std::to_string(number) + (south ? " south" : " north") + ", WGS-84, " +
                                  edge(meridian - ZoneWidth / 2) + " to " + edge(meridian + ZoneWidth / 2);
  return TextOf({LATIGO_KIND_TRANSVERSE_MERCATOR, "UTM", name.c_str(), description.c_str(), "6378137", "298.257223563",
                 "1", "0.9996", central.c_str(), "0", nullptr, nullptr, nullptr, "500000", south ? "10000000" : "0"});
}

std::string Known() {
  std::string text = "utm ZONE  universal transverse Mercator, as utm 33N or utm 55S\n";
  for (const Example& example : Examples) {
    std::string keyword(example.keyword);
    for (char& letter : keyword) {
      letter = AsciiLower(letter);
    }
    keyword.resize(10, ' ');
    text += keyword + ProjectionName(example.kind) + ": " + example.description + "\n";
  }
  return text;
}

}  // namespace

int RunTemplate(const TemplateOptions& options) {
  if (options.kind.empty()) {
    Print(Known());
    return 0;
  }
  if (EqualIgnoringCase(options.kind, "UTM")) {
    Print(TextOfZone(options.zone));
    return 0;
  }
  if (!options.zone.empty()) {
    throw UsageError(options.kind + " " + options.zone + ": only utm has zones");
  }
  const std::int32_t kind = KindOfKeyword(options.kind.c_str());
  for (const Example& example : Examples) {
    if (example.kind == kind) {
      Print(TextOf(example));
      return 0;
    }
  }
  throw UsageError("no template " + options.kind + "; latigo template lists them");
}

}  // namespace latigo::cli
