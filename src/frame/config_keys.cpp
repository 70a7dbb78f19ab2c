#include "frame/config_keys.h"

#include <latigo/latigo.h>

#include "math/angles.h"
#include "platform/ascii.h"
#include "projection/kinds.h"

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
    {"ScaleFactor",     PARAMS(ScaleFactor),     OneIfZero,        ValueKind::Factor},
    {"RefLatitude",     PARAMS(RefLatitude),     DegreesToRadians, ValueKind::Latitude},
    {"CentralMeridian", PARAMS(CentralMeridian), DegreesToRadians, ValueKind::Longitude},
    {"NorthParallel",   PARAMS(NorthParallel),   DegreesToRadians, ValueKind::Latitude},
    {"SouthParallel",   PARAMS(SouthParallel),   DegreesToRadians, ValueKind::Latitude},
    {"Unit",            PARAMS(Unit),            OneIfZero,        ValueKind::Unit},
    {"FalseEasting",    PARAMS(FalseEasting),    AsGiven,          ValueKind::Number},
    {"FalseNorthing",   PARAMS(FalseNorthing),   AsGiven,          ValueKind::Number},
    {"SkewAzimuth",     PARAMS(SkewAzimuth),     DegreesToRadians, ValueKind::Azimuth},
    {"SemiMajorAxis",   PARAMS(SemiMajorAxis),   AsGiven,          ValueKind::Number},
    {"Flattening",      PARAMS(InvFlattening),   AsGiven,          ValueKind::Reciprocal},  // 1/f, in the file too
    {"Projection",      OTHER,                   AsGiven,          ValueKind::Keyword},
    {"VertUnit",        OTHER,                   AsGiven,          ValueKind::Unit},  // 0 means Unit
    {"DynDatum",        OTHER,                   AsGiven,          ValueKind::File},  // instead of the parameters
    {"DeltaX",          DIFF(DeltaX),            AsGiven,          ValueKind::Number},
    {"DeltaY",          DIFF(DeltaY),            AsGiven,          ValueKind::Number},
    {"DeltaZ",          DIFF(DeltaZ),            AsGiven,          ValueKind::Number},
    {"DeltaScale",      DIFF(DeltaScale),        PartsPerMillion,  ValueKind::Number},
    {"DeltaRX",         DIFF(DeltaRX),           ArcSeconds,       ValueKind::Number},
    {"DeltaRY",         DIFF(DeltaRY),           ArcSeconds,       ValueKind::Number},
    {"DeltaRZ",         DIFF(DeltaRZ),           ArcSeconds,       ValueKind::Number},
    {"AdjustType",      OTHER,                   AsGiven,          ValueKind::LocalGrid},
    {"ReverseX",        OTHER,                   AsGiven,          ValueKind::Boolean},
    {"ReverseY",        OTHER,                   AsGiven,          ValueKind::Boolean},
    {"AdjustRotation",  ADJUST(AdjustRotation),  DegreesByDivision,ValueKind::Azimuth},
    {"AdjustScale",     ADJUST(AdjustScale),     OneIfZero,        ValueKind::Factor},
    {"AdjustX",         ADJUST(AdjustX),         AsGiven,          ValueKind::Number},
    {"AdjustY",         ADJUST(AdjustY),         AsGiven,          ValueKind::Number},
    {"AdjustOrigX",     ADJUST(AdjustOrigX),     AsGiven,          ValueKind::Number},
    {"AdjustOrigY",     ADJUST(AdjustOrigY),     AsGiven,          ValueKind::Number},
    {"OrthoHCorr",      OTHER,                   AsGiven,          ValueKind::Number},
    {"Geoid",           OTHER,                   AsGiven,          ValueKind::File},
};

#undef PARAMS
#undef DIFF
#undef ADJUST
#undef OTHER
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
  for (const KindRow& kind : Kinds) {
    for (const char* known : kind.keywords) {
      if (known != nullptr && EqualIgnoringCase(keyword, known)) {
        return kind.number;
      }
    }
  }
  return 0;
}

}  // namespace latigo
