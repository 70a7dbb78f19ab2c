// The commands of the program and their options.
#pragma once

#include <string>
#include <vector>

#include "table_options.h"

namespace latigo::cli {

inline constexpr double RadiansPerDegree = 0.017453292519943295;

struct OutputOptions {
  std::string output;  // a file that is replaced when the output is complete; empty for standard output
};

// Of every command that reads a section.
struct Options : OutputOptions {
  std::string file;
  std::string section;  // not given: empty until ChooseSection; for info and check, all sections of the file
  bool strict = false;  // every warning is a failure
};

struct CheckOptions : Options {};

struct InfoOptions : CheckOptions {
  std::string language = "eng";
};

struct ListOptions : OutputOptions {
  std::string file;                // or a folder, whose .ini files are listed; empty for the installed examples
  std::vector<std::string> words;  // in the name or the comments of each listed section
};

struct TemplateOptions : OutputOptions {
  std::string kind;  // "utm" or a keyword of a projection; empty to list them
  std::string zone;  // of UTM, as 33N
};

// Of the commands that convert points.
struct PointOptions : Options {
  std::vector<std::string> points;  // files; none means standard input
  bool dms = false;                 // write degrees, minutes and seconds
  bool lonlat = false;              // longitude before latitude, in and out
  TableOptions table;
  int precision = -1;  // decimals; -1 for the command's own
  int jobs = 1;        // threads
};

// Of commands whose positions may be on another datum than the section's.
struct ShiftOptions : PointOptions {
  bool wgs84 = false;      // positions are WGS-84
  bool unshifted = false;  // points outside the datum grid are converted without a shift
};

struct UndulationOptions : ShiftOptions {
  bool geoidOnDatum = false;  // undulations refer to the section's own ellipsoid, also for WGS-84 positions
};

// Forward and inverse.
struct GridOptions : UndulationOptions {
  bool noHeight = false;  // the third field is not a height and is copied
};

// The heights of convert: not converted before the user has decided; above the geoids of both sections, or above their
// ellipsoids. With geographic coordinates they are ellipsoidal.
enum class Heights { Undecided, Geoid, Ellipsoidal };

struct ConvertOptions : UndulationOptions {
  std::string to;         // a file; empty for that of the first section
  std::string toSection;  // not given: empty
  bool fromGeographic = false;
  bool toGeographic = false;
  bool sameDatum = false;  // both sections have the same datum, so there is no shift
  Heights heights = Heights::Undecided;
  bool noHeight = false;  // the third field is not a height and is copied
};

struct ScaleOptions : ShiftOptions {
  bool grid = false;  // read coordinates of the projection
};

struct FactorsOptions : UndulationOptions {
  bool grid = false;      // read coordinates of the grid
  bool noHeight = false;  // the third field is not a height and is copied
};

struct EcefOptions : ShiftOptions {
  bool inverse = false;
};

struct DistanceOptions : ShiftOptions {
  bool rhumb = false;       // along the rhumb line
  bool arcToChord = false;  // with the arc-to-chord corrections
};

struct MapOptions : Options {
  std::string area;    // south,west,north,east; empty for the command's own
  std::string points;  // a file of points to draw; empty for none
  bool grid = false;   // the points are coordinates of the grid
  bool lonlat = false;
  TableOptions table;  // how the points are read
};

// Each returns the exit status: 0, or 1 if a point failed. Throws UsageError.
int RunForward(const GridOptions& options);
int RunInverse(const GridOptions& options);
int RunConvert(const ConvertOptions& options);
int RunScale(const ScaleOptions& options);
int RunFactors(const FactorsOptions& options);
int RunUndulation(const UndulationOptions& options);
int RunEcef(const EcefOptions& options);
int RunDistance(const DistanceOptions& options);

// Prints a picture of the section as SVG: 0, or 1 if a point is invalid.
int RunMap(const MapOptions& options);

// Describes the section, or every section of the file.
int RunInfo(const InfoOptions& options);

// The files whose sections are listed.
std::vector<std::string> ListedFiles(const ListOptions& options);

// Lists sections with their descriptions: 0, or 1 if none has the words.
int RunList(const ListOptions& options);

// Prints a commented section.
int RunTemplate(const TemplateOptions& options);

// Checks the same without output: 0 if there is no warning and every section opens, else 2.
int RunCheck(const CheckOptions& options);

}  // namespace latigo::cli
