#include "describe.h"

#include <cmath>

#include "methods.h"

namespace latigo::system {

namespace {

constexpr const char* Ours[] = {"easting", "northing", "westing", "southing"};

std::string ProjVersion() {
  return std::string("PROJ ") + proj_info().version;
}

void DescribeSource(const Crs& crs, Section& section) {
  section.Comment(crs.name + (crs.deprecated ? " (deprecated)" : ""));
  section.Comment((crs.id.empty() ? "no code" : crs.id) + (crs.source.empty() ? "" : ", " + crs.source) + "; method " +
                  crs.method.Label() + "; ellipsoid " + crs.ellipsoid);
  section.Comment("Area: " + (crs.area.name.empty() ? "not known; assumed about the origin" : crs.area.name) + "; " +
                  crs.area.Limits());
}

void DescribeAxes(const Crs& crs, Section& section) {
  if (!crs.mapAxes[0].first || crs.mapAxes[0].reversed || crs.mapAxes[1].reversed) {
    section.Comment("Axes: the source has " + crs.mapAxes[0].name + ", " + crs.mapAxes[1].name + "; here X is the " +
                    Ours[crs.MapAxis(true).reversed ? 2 : 0] + " and Y the " +
                    Ours[crs.MapAxis(false).reversed ? 3 : 1] + ", in that order.");
  }
  if (crs.primeMeridian != 0) {
    section.Comment("Prime meridian: " + crs.primeMeridianName + ", " + Digits(crs.primeMeridian) +
                    " degrees from Greenwich. CentralMeridian and all longitudes here count from Greenwich.");
  }
  if (const double unit = section.Number("Unit"); unit != 0 && unit != crs.Unit()) {
    section.Comment("Unit: " + crs.mapAxes[0].unitName + ", " + Digits(crs.Unit()) +
                    " m; the library knows its name by the digits below.");
  }
}

void DescribeDifference(const Crs& crs, const Difference& difference, Section& section) {
  if (const std::string approximation = ApproximationOf(crs.method.code); !approximation.empty()) {
    section.Comment("Approximate: " + approximation + ".");
  }
  if (difference.unknown == difference.points) {
    section.Comment(ProjVersion() + " does not convert by this method: nothing to compare with.");
  } else {
    section.Comment("Largest difference from " + ProjVersion() + " over the area: " + difference.Sentence() + ".");
  }
  if (difference.turned > 0) {
    section.Comment("Longitudes do not wrap in this projection: give them within 180 degrees of CentralMeridian.");
  }
}

}  // namespace

Described Describe(const Database& database, const Crs& crs, const std::vector<Operation>& operations,
                   const Choice& choice, int points) {
  Section section = Express(crs);
  const Difference difference = MeasureProjection(database, crs, section, points);
  DescribeSource(crs, section);
  DescribeAxes(crs, section);
  DescribeDifference(crs, difference, section);
  if (const Operation* const operation = Choose(operations, choice); operation != nullptr) {
    SetShift(crs, *operation, section);
    if (operation->form == Operation::Form::Parameters) {
      const Difference shift = MeasureShift(database, crs, section, operation->object.get(), points);
      section.Comment("  Largest difference from " + ProjVersion() + ": " + shift.Sentence() + ".");
    }
  } else if (operations.empty()) {
    section.Comment(IsWgs84(database, crs) ? "Datum: WGS 84 itself."
                                           : "Datum: the database has no operation to WGS 84, so nothing is shifted.");
  } else {
    section.Comment("Datum: nothing is shifted; latigo-system operations lists what leads to WGS 84.");
  }
  return {section, difference};
}

}  // namespace latigo::system
