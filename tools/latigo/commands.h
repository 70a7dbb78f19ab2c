// The commands that convert points, a line at a time.
#pragma once

#include <string>
#include <vector>

#include "point_line.h"

namespace latigo::cli {

inline constexpr double RadiansPerDegree = 0.017453292519943295;

struct Options {
  std::string file;
  std::string section = "Geodesy";
  std::string language = "eng";
  std::vector<std::string> points;  // files; none means standard input
  bool wgs84 = false;               // the geographic side is WGS-84, behind the datum shift
  bool dms = false;                 // write degrees, minutes and seconds
  bool lonlat = false;              // longitude before latitude, in and out
  bool inverse = false;             // of ecef
  bool rhumb = false;               // distance: along the rhumb line
  bool grid = false;                // scale: read projection coordinates
  bool localGrid = true;            // the local grid of the section is in force
  bool strict = false;              // every warning is a failure
  bool unshifted = false;           // points outside the datum grid keep their latitude and longitude
  bool geoidOnDatum = false;        // the geoid belongs to the section's own ellipsoid, though the points are WGS-84
  bool noHeight = false;            // the third field is no height and is carried through
  Separation separation = Separation::Auto;
  int precision = -1;  // digits behind the point; -1 for the command's own
  int jobs = 1;        // threads
};

// Each gives the exit status: 0, or 1 if a point failed. Throws UsageError.
int RunForward(const Options& options);
int RunInverse(const Options& options);
int RunScale(Options options);
int RunUndulation(const Options& options);
int RunEcef(const Options& options);
int RunDistance(const Options& options);

// Describes the section, or every section of the file if sectionGiven is false.
int RunInfo(const Options& options, bool sectionGiven);

// The same without a word: 0 if there is no warning and every section opens, else 2.
int RunCheck(const Options& options, bool sectionGiven);

}  // namespace latigo::cli
