#include "frame/config_keys.h"

#include <latigo/latigo.h>

#include "datum/angles.h"
#include "platform/ascii.h"

namespace latigo {

namespace {

constexpr double RadiansPerDegree = 0.017453292519943295;

// clang-format off
#define PARAMS(field) Record::Params, offsetof(GeodesyParams, field)
#define DIFF(field)   Record::Diff,   offsetof(EllDiff, field)
#define ADJUST(field) Record::Adjust, offsetof(Adjustment, field)
#define OTHER         Record::Other,  0
using enum Conversion;

constexpr ConfigKey Keys[] = {
    {"ScaleFactor",     PARAMS(ScaleFactor),     OneIfZero},
    {"RefLatitude",     PARAMS(RefLatitude),     DegreesToRadians},
    {"CentralMeridian", PARAMS(CentralMeridian), DegreesToRadians},
    {"NorthParallel",   PARAMS(NorthParallel),   DegreesToRadians},
    {"SouthParallel",   PARAMS(SouthParallel),   DegreesToRadians},
    {"Unit",            PARAMS(Unit),            OneIfZero},
    {"FalseEasting",    PARAMS(FalseEasting),    AsGiven},
    {"FalseNorthing",   PARAMS(FalseNorthing),   AsGiven},
    {"SkewAzimuth",     PARAMS(SkewAzimuth),     DegreesToRadians},
    {"SemiMajorAxis",   PARAMS(SemiMajorAxis),   AsGiven},
    {"Flattening",      PARAMS(InvFlattening),   AsGiven},  // the reciprocal, in the file too
    {"Projection",      OTHER,                   AsGiven},
    {"VertUnit",        OTHER,                   AsGiven},  // 0 means Unit
    {"DynDatum",        OTHER,                   AsGiven},  // in force instead of the seven values
    {"DeltaX",          DIFF(DeltaX),            AsGiven},
    {"DeltaY",          DIFF(DeltaY),            AsGiven},
    {"DeltaZ",          DIFF(DeltaZ),            AsGiven},
    {"DeltaScale",      DIFF(DeltaScale),        PartsPerMillion},
    {"DeltaRX",         DIFF(DeltaRX),           ArcSeconds},
    {"DeltaRY",         DIFF(DeltaRY),           ArcSeconds},
    {"DeltaRZ",         DIFF(DeltaRZ),           ArcSeconds},
    {"AdjustType",      OTHER,                   AsGiven},
    {"ReverseX",        OTHER,                   AsGiven},
    {"ReverseY",        OTHER,                   AsGiven},
    {"AdjustRotation",  ADJUST(AdjustRotation),  DegreesByDivision},
    {"AdjustScale",     ADJUST(AdjustScale),     OneIfZero},
    {"AdjustX",         ADJUST(AdjustX),         AsGiven},
    {"AdjustY",         ADJUST(AdjustY),         AsGiven},
    {"AdjustOrigX",     ADJUST(AdjustOrigX),     AsGiven},
    {"AdjustOrigY",     ADJUST(AdjustOrigY),     AsGiven},
    {"OrthoHCorr",      OTHER,                   AsGiven},
    {"Geoid",           OTHER,                   AsGiven},
};

#undef PARAMS
#undef DIFF
#undef ADJUST
#undef OTHER

struct ProjectionKeyword {
  const char* keyword;
  std::int32_t kind;
};

constexpr ProjectionKeyword ProjectionKeywords[] = {
    {"Lambert", 1},  {"LCC", 1}, {"LC1", 1},
    {"Mercator", 2}, {"MER", 2},
    {"TransMerc", 3}, {"TME", 3}, {"UTM", 3},
    {"OST", 4},
    {"OCY", 5},
    {"HOM", 6},
    {"RSO", 7},
    {"AZD", 8},
    {"SMERC", 9}, {"CME", 9},
    {"ALA", 10},
    {"CAS", 11},
    {"PST", 12},
};
// clang-format on

}  // namespace

std::span<const ConfigKey> ConfigKeys() {
  return Keys;
}

double Convert(Conversion conversion, double value) {
  switch (conversion) {
    case OneIfZero:
      return value == 0 ? 1.0 : value;
    case DegreesToRadians:
      return value * RadiansPerDegree;
    case DegreesByDivision:
      return value * Pi / 180.0;
    case PartsPerMillion:
      return value / 1000000.0 + 1.0;
    case ArcSeconds:
      return value * Pi / 648000.0;
    case AsGiven:
      break;
  }
  return value;
}

std::int32_t KindOfKeyword(const char* keyword) {
  for (const auto& [name, kind] : ProjectionKeywords) {
    if (EqualIgnoringCase(keyword, name)) {
      return kind;
    }
  }
  return 0;
}

}  // namespace latigo
