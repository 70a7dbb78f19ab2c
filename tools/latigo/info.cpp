// The description of a section.
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "commands.h"
#include "coordinate_system.h"
#include "names.h"
#include "visible.h"

namespace latigo::cli {

namespace {

constexpr double Pi = 3.141592653589793;

double Degrees(double radians) {
  return radians * 180 / Pi;
}
double Seconds(double radians) {
  return radians * 648000 / Pi;
}

// The library's names are Windows-1252; their accented letters have the same numbers in Unicode.
std::string LocalName(GeodesyHandle handle, std::int32_t request, const std::string& language) {
  char name[64];
  if (GetLocalName(handle, request, language.c_str(), name, sizeof name) == 0) {
    return "without a name";
  }
  std::string text;
  for (const char* c = name; *c != '\0'; ++c) {
    const auto byte = static_cast<unsigned char>(*c);
    if (byte < 0x80) {
      text += *c;
    } else {
      text += static_cast<char>(0xC0U | (byte >> 6U));
      text += static_cast<char>(0x80U | (byte & 0x3FU));
    }
  }
  return text;
}

void PrintProjection(GeodesyHandle handle) {
  GeodesyParams p;
  char ellipsoid[LATIGO_ELLIPSOID_NAME_SIZE];
  char code[LATIGO_PROJECTION_CODE_SIZE];
  GetGeodesyParams(handle, &p, ellipsoid, code);
  std::printf("  projection      %s (%s)\n", ProjectionName(p.Kind), code);
  std::printf("  ellipsoid       %s, a = %.10g m, 1/f = %.12g\n", ellipsoid[0] != '\0' ? ellipsoid : "without a name",
              p.SemiMajorAxis, p.InvFlattening);
  std::printf("  origin          latitude %.10g, longitude %.10g degrees\n", Degrees(p.RefLatitude),
              Degrees(p.CentralMeridian));
  std::printf("  parallels       %.10g, %.10g degrees\n", Degrees(p.NorthParallel), Degrees(p.SouthParallel));
  std::printf("  scale factor    %.12g\n", p.ScaleFactor);
  std::printf("  false origin    easting %.12g, northing %.12g\n", p.FalseEasting, p.FalseNorthing);
}

void PrintNames(GeodesyHandle handle, const std::string& language) {
  const auto name = [&](std::int32_t request) { return LocalName(handle, request, language); };
  double unit = 1;
  double vertical = 1;
  HConvert(handle, &unit, LATIGO_TO_METRES);
  VConvert(handle, &vertical, LATIGO_TO_METRES);
  std::printf("  unit            %s, %s (%s), %.12g m\n", name(LATIGO_NAME_UNIT).c_str(),
              name(LATIGO_NAME_UNITS).c_str(), name(LATIGO_NAME_UNIT_SHORT).c_str(), unit);
  std::printf("  vertical unit   %s, %s (%s), %.12g m\n", name(LATIGO_NAME_VERTICAL_UNIT).c_str(),
              name(LATIGO_NAME_VERTICAL_UNITS).c_str(), name(LATIGO_NAME_VERTICAL_UNIT_SHORT).c_str(), vertical);
  std::printf("  axes            %s (%s), %s (%s)\n", name(LATIGO_NAME_FIRST_AXIS).c_str(),
              name(LATIGO_NAME_FIRST_AXIS_LETTER).c_str(), name(LATIGO_NAME_SECOND_AXIS).c_str(),
              name(LATIGO_NAME_SECOND_AXIS_LETTER).c_str());
}

void PrintDatum(GeodesyHandle handle) {
  EllDiff d;
  char path[512] = "";
  GetEllModel(handle, path, sizeof path);
  GetEllDiff(handle, &d);
  if (path[0] != '\0') {
    std::printf("  datum           grid %s\n", Visible(path).c_str());
  } else if (d.DeltaScale == 1 && d.DeltaX == 0 && d.DeltaY == 0 && d.DeltaZ == 0 && d.DeltaRX == 0 && d.DeltaRY == 0 &&
             d.DeltaRZ == 0) {
    std::printf("  datum           no shift to WGS-84\n");
  } else {
    std::printf("  datum           from WGS-84: dX %.10g, dY %.10g, dZ %.10g m, scale %.10g ppm,\n", d.DeltaX, d.DeltaY,
                d.DeltaZ, std::round((d.DeltaScale - 1) * 1e12) / 1e6);
    std::printf("                  rX %.10g, rY %.10g, rZ %.10g arc seconds\n", Seconds(d.DeltaRX), Seconds(d.DeltaRY),
                Seconds(d.DeltaRZ));
    std::printf("                  (coordinate frame rotation, not position vector)\n");
  }
}

void PrintAdjustment(GeodesyHandle handle) {
  Adjustment a;
  GetAdjustment(handle, &a);
  const std::uint32_t type = a.AdjustType & LATIGO_ADJUST_TYPE;
  if (type == LATIGO_ADJUST_NONE) {
    std::printf("  local grid      none\n");
  } else if (type != LATIGO_ADJUST_SIMILARITY) {
    std::printf("  local grid      type %u: %s\n", static_cast<unsigned>(type),
                type <= LATIGO_ADJUST_POLYNOMIAL_7 ? "fixed polynomial grid"
                : type <= LATIGO_ADJUST_CHAINS_16  ? "fixed quadratic grid in chains"
                                                   : "does nothing");
  } else {
    std::printf("  local grid      similarity about %.12g, %.12g: turn %.10g degrees, scale %.12g,\n", a.AdjustOrigX,
                a.AdjustOrigY, Degrees(a.AdjustRotation), a.AdjustScale);
    std::printf("                  to %.12g, %.12g%s%s\n", a.AdjustX, a.AdjustY,
                (a.AdjustType & LATIGO_REVERSE_X) != 0 ? ", X reversed" : "",
                (a.AdjustType & LATIGO_REVERSE_Y) != 0 ? ", Y reversed" : "");
  }
}

void PrintGeoid(GeodesyHandle handle) {
  char path[512] = "";
  double constant = 0;
  GetGeoid(handle, path, sizeof path, &constant);
  std::printf("  geoid           %s%s, constant %.10g\n", path[0] != '\0' ? "grid " : "no grid", Visible(path).c_str(),
              constant);
  if (path[0] != '\0' || constant != 0) {
    std::printf(
        "                  refers to WGS-84 with --wgs84, else or with --geoid-on-datum to the section's ellipsoid\n");
  }
}

void PrintHeights(bool hasVerticalUnit) {
  std::printf("  heights         metres%s\n", hasVerticalUnit ? ", on the grid's side vertical units" : "");
}

// The result for a section, in increasing severity.
enum class Outcome { Clean, Warned, Failed };

Outcome Describe(const InfoOptions& options, const ConfigFile& config, const SectionOpener& opener,
                 const std::string& section) {
  std::printf("[%s]\n", Visible(section).c_str());
  std::fflush(stdout);  // so that warnings follow the name
  Outcome outcome = Outcome::Clean;
  for (const std::string& warning : config.Warnings(section)) {
    Message(warning);
    outcome = Outcome::Warned;
  }
  const Opened opened = opener.Open(section);
  if (opened.code != 0) {
    outcome = opened.object ? std::max(outcome, Outcome::Warned) : Outcome::Failed;
    Message(options.file + " [" + section + "]: " + (opened.object ? "warning: " : "") + opened.explanation);
  }
  if (opened.object) {
    PrintProjection(opened.object.Handle());
    PrintNames(opened.object.Handle(), options.language);
    PrintDatum(opened.object.Handle());
    PrintAdjustment(opened.object.Handle());
    PrintGeoid(opened.object.Handle());
    PrintHeights(config.HasValue(section, "VertUnit"));
  }
  return outcome;
}

std::vector<std::string> SectionsAsked(const CheckOptions& options, const ConfigFile& config) {
  if (options.section.empty() && !config.Sections().empty()) {
    return config.Sections();
  }
  RequireSection(config, options);
  return {options.section};
}

}  // namespace

int RunInfo(const InfoOptions& options) {
  const ConfigFile config(options.file);
  const SectionOpener opener(config, options.file);
  Outcome worst = Outcome::Clean;
  for (const std::string& section : SectionsAsked(options, config)) {
    worst = std::max(worst, Describe(options, config, opener, section));
  }
  if (options.strict && worst != Outcome::Clean) {
    return 2;
  }
  return worst == Outcome::Failed ? 1 : 0;
}

int RunCheck(const CheckOptions& options) {
  try {
    const ConfigFile config(options.file);
    const std::vector<std::string> sections = SectionsAsked(options, config);
    const SectionOpener opener(config, options.file);
    const bool clean = std::all_of(sections.begin(), sections.end(), [&](const std::string& section) {
      return config.Warnings(section).empty() && opener.Open(section).code == 0;
    });
    return clean ? 0 : 2;
  } catch (const UsageError&) {
    return 2;
  }
}

}  // namespace latigo::cli
