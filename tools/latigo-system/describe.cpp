#include "describe.h"

#include "methods.h"

namespace latigo::system {

namespace {

constexpr const char* Ours[] = {"easting", "northing", "westing", "southing"};

std::string ProjVersion() {
  return std::string("PROJ ") + proj_info().version;
}

void DescribeSource(const Crs& crs, Section& section) {
  section.Comment(crs.name + (crs.deprecated ? " (deprecated)" : ""));
  const std::string code = crs.otherId.empty() ? "no code" : "no code, and not " + crs.otherId + " as it says";
  section.Comment((crs.id.empty() ? code : crs.id) + (crs.source.empty() ? "" : ", " + crs.source) + "; method " +
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
  if (!crs.heights.empty()) {
    section.Comment("Heights: the source has " + crs.heights + (crs.depths ? ", downwards" : "") +
                    "; here they go up from the ellipsoid, or from the geoid of the key Geoid.");
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

// Of the operations at the place that is asked for, the one with a grid that is more accurate than the one chosen; null
// for none.
const Operation* MoreAccurateGrid(const std::vector<Operation>& operations, const Operation& chosen,
                                  const Choice& choice) {
  for (const Operation& each : operations) {
    if (choice.position && chosen.form == Operation::Form::Parameters && each.form == Operation::Form::Grid &&
        each.accuracy >= 0 && each.accuracy < chosen.accuracy &&
        each.area.Holds((*choice.position)[0], (*choice.position)[1])) {
      return &each;
    }
  }
  return nullptr;
}

}  // namespace

Described Describe(const Database& database, const Crs& crs, const std::vector<Operation>& operations,
                   const Choice& choice, int points) {
  Described made{Express(crs), {}, {}};
  Section& section = made.section;
  made.projection = MeasureProjection(database, crs, section, points);
  if (made.projection.failures > 0 && made.projection.failures + made.projection.unknown == points) {
    throw Refused("the library converts no point of its area");
  }
  DescribeSource(crs, section);
  DescribeAxes(crs, section);
  DescribeDifference(crs, made.projection, section);
  constexpr double Noticeable = 1;  // metre
  if (made.projection.forward > Noticeable) {
    made.notes.push_back("the section is " + Length(made.projection.forward) + " from " + ProjVersion());
  }

  if (const Operation* const operation = Choose(operations, choice); operation != nullptr) {
    SetShift(crs, *operation, section);
    if (operation->form == Operation::Form::Grid) {
      made.notes.push_back("the section opens when the folder datum has the file " + section.Value("DynDatum"));
    } else {
      const Difference shift = MeasureShift(database, crs, section, operation->object.get(), points);
      constexpr double Wrong = 0.1;  // metres; the way to WGS 84 is PROJ's own formula
      if (!(shift.inverse < Wrong) || shift.failures > 0) {
        throw Refused("as a section, " + (operation->id.empty() ? "" : operation->id + " ") + operation->name +
                      (shift.failures > 0 ? " fails at " + std::to_string(shift.failures) + " of " +
                                                std::to_string(shift.points) + " points"
                                          : " would be " + Length(shift.inverse) + " from " + ProjVersion()) +
                      "; --no-datum makes one without it");
      }
      section.Comment("  Largest difference from " + ProjVersion() + ": " + shift.Sentence() + ".");
    }
    if (const Operation* const better = MoreAccurateGrid(operations, *operation, choice); better != nullptr) {
      section.Comment("  " + better->id + " " + better->name + ", " + better->Accuracy() + ", needs the grid " +
                      better->grids.front() + ".");
    }
  } else if (operations.empty() && IsWgs84(database, crs)) {
    section.Comment("Datum: WGS 84 itself.");
  } else if (operations.empty()) {
    section.Comment("Datum: the database has no operation to WGS 84, so nothing is shifted.");
    if (!choice.none) {
      made.notes.emplace_back("the database has no operation to WGS 84, so nothing is shifted");
    }
  } else {
    const Operation& first = operations.front();
    const std::string why = choice.none
                                ? ""
                                : ", since a section cannot express " + (first.id.empty() ? "" : first.id + " ") +
                                      first.name + ": " + first.reason;
    section.Comment("Datum: nothing is shifted" + why + "; latigo-system operations lists what leads to WGS 84.");
    if (!choice.none) {
      made.notes.push_back("nothing is shifted" + why);
    }
  }
  return made;
}

}  // namespace latigo::system
