#include "help.h"

namespace latigo::cli {

namespace {

constexpr std::string_view Program = R"(LATIGO: geodesy for survey and mapping programs
Usage: latigo COMMAND [OPTIONS] FILE [POINTS...]
       latigo COMMAND --help

FILE is a configuration file; each of its sections describes a coordinate system.

Commands:
  info        describe one section, or every section of the file
  check       report by the exit status only whether info would print a warning
  list        list or search the sections of a file, or the installed examples
  template    print a commented section of a projection, or of a UTM zone
  forward     latitude and longitude to easting and northing
  inverse     easting and northing to latitude and longitude
  convert     coordinates of one system to those of another
  scale       latitude and longitude to the point scale factor
  factors     latitude and longitude to convergence, scale factors and distortion
  undulation  latitude and longitude to the geoid undulation
  ecef        latitude, longitude and height to earth-centred X, Y, Z, or the inverse
  distance    two positions to distance and azimuth
  fit         control points in two systems to a local grid, or to a datum shift
  map         picture of scale, convergence and round-trip error over an area

Options:
  -h, --help  print this help, or that of a command, and exit
  --version   print the version and exit
)";

constexpr std::string_view Info = R"(Describes one section, or every section of the file.
Usage: latigo info [OPTIONS] FILE

Options:
  -h, --help            print this help and exit
  -s, --section NAME    section of the file; default: all
  --strict              every warning is a failure
  --lang eng|fra|esp    language of the names; default eng
  -o, --output FILE     write to a file, which is replaced only when the output is complete

Exit status: 0; 1 if a section does not open; 2 for an invalid file, section or argument, or, with --strict, a warning.
)";

constexpr std::string_view Check = R"(Reports by the exit status only whether info would print a warning.
Usage: latigo check [OPTIONS] FILE

Options:
  -h, --help            print this help and exit
  -s, --section NAME    section of the file; default: all
  --strict              no effect: check is always strict

Exit status: 0; 2 if there is a warning, if the file cannot be read or a section does not open.
)";

constexpr std::string_view List = R"(Lists the sections of a configuration file with their descriptions.
Usage: latigo list [FILE [TEXT...]]

FILE is a configuration file, or a folder, whose .ini files are listed. Without it, the installed examples are listed.
With TEXT, only sections with all of its words in their names or comments are listed; the case of A to Z does not count.
The description is the first comment line of the section, or directly above it, that does not begin with "Area:";
without one, projection, ellipsoid and central meridian. A file of the folder that cannot be read is reported, and the
others are listed.

Options:
  -h, --help            print this help and exit
  -o, --output FILE     write to a file, which is replaced only when the output is complete

Exit status: 0; 1 if there is no such section; 2 for an invalid file or argument.
)";

constexpr std::string_view Template =
    R"(Prints a commented section: a real system, with every key, its unit and its meaning.
Usage: latigo template [KIND [ZONE]]

KIND is utm or a projection's keyword, as lcc; without it, the kinds are listed. ZONE is a zone of utm: a number from 1
to 60 with N for north or S for south, as 33N.

Options:
  -h, --help            print this help and exit
  -o, --output FILE     write to a file, which is replaced only when the output is complete

Exit status: 0; 2 for an invalid argument.
)";

constexpr std::string_view Forward =
    R"(Latitude and longitude to easting and northing (x and y). If the section has a geoid,
the undulation is subtracted from an ellipsoidal height.
Usage: latigo forward [OPTIONS] FILE [POINTS...]

Options of this command:
  --wgs84               the input is WGS-84; the datum shift is applied first
  --outside-grid fail|unshifted
                        a point outside the datum grid, or in rows that cannot be read, fails (default), or is
                        converted without a shift, with a warning
  --geoid-on-datum      undulations refer to the section's own ellipsoid; without this option, but with --wgs84,
                        to the WGS-84 ellipsoid
  --no-height           the third field is not a height and is copied
)";

constexpr std::string_view Inverse =
    R"(Easting and northing (x and y) to latitude and longitude. If the section has a geoid, the
undulation is added to a height.
Usage: latigo inverse [OPTIONS] FILE [POINTS...]

Options of this command:
  --wgs84               the output is WGS-84, after the datum shift
  --outside-grid fail|unshifted
                        a point outside the datum grid, or in rows that cannot be read, fails (default), or is
                        converted without a shift, with a warning
  --geoid-on-datum      undulations refer to the section's own ellipsoid; without this option, but with --wgs84,
                        to the WGS-84 ellipsoid
  --no-height           the third field is not a height and is copied
)";

constexpr std::string_view Convert =
    R"(Coordinates of one system to those of another: x and y, or latitude and longitude on the
datum of their system. Between different datums they go through WGS-84, for which both sections need a datum shift; a
shift of zero (DeltaX=0) states that the datum is WGS-84, as the WGS-84 ellipsoid does.
Usage: latigo convert [OPTIONS] FILE [POINTS...]

Options of this command:
  --to FILE             configuration file of the second system; default: that of the first
  --to-section NAME     section of the second system; default Geodesy, or the only one
  --from-geographic     the input is latitude and longitude
  --to-geographic       the output is latitude and longitude
  --same-datum          both systems have the same datum, though one has no datum shift: positions stay
  --heights geoid|ellipsoidal
                        heights with grid coordinates are above the geoids of both sections, or above their ellipsoids;
                        with latitude and longitude they are ellipsoidal. Without this option and --no-height, a
                        number in the third field is an error
  --no-height           the third field is copied
  --outside-grid fail|unshifted
                        a point outside a datum grid, or in rows that cannot be read, fails (default), or is
                        converted without a shift, with a warning
  --geoid-on-datum      undulations refer to each section's own ellipsoid; without this option, to the WGS-84
                        ellipsoid if the points or their heights go through WGS-84
)";

constexpr std::string_view Scale = R"(Latitude and longitude to the point scale factor.
Usage: latigo scale [OPTIONS] FILE [POINTS...]

Options of this command:
  --wgs84               the input is WGS-84; the datum shift is applied first
  --outside-grid fail|unshifted
                        a point outside the datum grid, or in rows that cannot be read, fails (default), or is
                        converted without a shift, with a warning
  --grid                read x and y of the projection, not of a local grid; not with --wgs84
)";

constexpr std::string_view Factors =
    R"(Latitude and longitude to the factors of the grid, local grid included: convergence in
degrees, the bearing of grid north clockwise from true north (positive where grid north lies east of true north); the
scale factors h along the meridian and k along the parallel; the scale factor of areas; the maximum angular distortion
in degrees. A height above the ellipsoid, from -100 to 10 000 km, adds the elevation factor and the combined factor.
Usage: latigo factors [OPTIONS] FILE [POINTS...]

Options of this command:
  --grid                read x and y of the grid; a height is a grid height
  --wgs84               positions are WGS-84; the datum shift is applied first. With --grid, only undulations refer to
                        the WGS-84 ellipsoid
  --outside-grid fail|unshifted
                        a point outside the datum grid, or in rows that cannot be read, fails (default), or is
                        converted without a shift, with a warning
  --geoid-on-datum      undulations refer to the section's own ellipsoid; without this option, but with --wgs84,
                        to the WGS-84 ellipsoid
  --no-height           the third field is not a height and is copied
)";

constexpr std::string_view Undulation = R"(Latitude and longitude to the geoid undulation.
Usage: latigo undulation [OPTIONS] FILE [POINTS...]

Options of this command:
  --wgs84               the input is WGS-84; the datum shift is applied first
  --outside-grid fail|unshifted
                        a point outside the datum grid, or in rows that cannot be read, fails (default), or is
                        converted without a shift, with a warning
  --geoid-on-datum      undulations refer to the section's own ellipsoid; without this option, but with --wgs84,
                        to the WGS-84 ellipsoid
)";

constexpr std::string_view Ecef =
    R"(Latitude, longitude and height (default 0) to earth-centred X, Y, Z in metres, on the
section's own datum and ellipsoid. With --wgs84, a datum grid that does not change heights is always a warning: also a
height of 0 is above the WGS-84 ellipsoid.
Usage: latigo ecef [OPTIONS] FILE [POINTS...]

Options of this command:
  --inverse             X, Y, Z to latitude, longitude and height
  --wgs84               positions are WGS-84; the datum shift stands between them and X, Y, Z
  --outside-grid fail|unshifted
                        a point outside the datum grid, or in rows that cannot be read, fails (default), or is
                        converted without a shift, with a warning
)";

constexpr std::string_view Distance =
    R"(Two positions per line, latitude and longitude each, to the distance in grid units with
the unit's name, and the azimuth at the first position in degrees, clockwise from north. The longitude difference is
at most 180 degrees.
Usage: latigo distance [OPTIONS] FILE [POINTS...]

The line is the geodesic, by Gauss's mid-latitude formulas. Up to latitudes of 80 degrees their error is at most 2 mm
and 0.011 arc seconds at 50 km, 1.6 cm and 0.041" at 100 km, 7.9 m and 1.1" at 500 km; nearer to a pole it is larger.
Where it can exceed 2 cm, a warning says so.

Options of this command:
  --rhumb               along the rhumb line, of any length
  --arc-to-chord        add the arc-to-chord corrections t - T at both ends, arc seconds: the bearing in the grid of
                        the straight chord less that of the projected geodesic
  --wgs84               positions are WGS-84; the datum shift is applied first
  --outside-grid fail|unshifted
                        a point outside the datum grid, or in rows that cannot be read, fails (default), or is
                        converted without a shift, with a warning
)";

constexpr std::string_view Fit =
    R"(Fits a local grid to control points by least squares: a similarity transformation (adjustment type 1) of the
section's grid. With --datum it fits the seven parameters from WGS-84 to the section's datum instead. Prints the section
made, with all keys, on standard output, and the report with residuals on standard error.
Usage: latigo fit [OPTIONS] FILE [PAIRS]

PAIRS is a file, or standard input without it or for -. A line has x and y of the section's grid, X and Y of the local
grid, and further text, of which the first word is the point's name. With --datum a line has the position on WGS-84,
that on the section's datum, and further text. Blank lines and lines that begin with # are skipped.

Options:
  -h, --help            print this help and exit
  -s, --section NAME    section of the file; default: Geodesy, or the only section
  --strict              every warning is a failure, and no section is printed
  --datum geographic|cartesian
                        fit the seven parameters; a position is latitude, longitude and ellipsoidal height, or X, Y, Z
  --fix-scale[=NUMBER]  the scale is 1, or the number
  --reverse none|x|y|both
                        axes of the local grid that are reversed; default: found from the points
  --sigma NUMBER        standard deviation of a coordinate of weight 1, for Baarda's test; default: estimated
  --weights             the column after the coordinates has the point's weight; a point of weight 0 is a check point
  --deviations          the column after the coordinates has their standard deviation
  --name NAME           name of the section made; default: that of the section with _local or _datum
  --columns LIST        columns of the values in their order and then the name, by number from 1 or by name
  --separator auto|comma|semicolon|tab|blank
                        field separator
  --header auto|yes|no  whether the first line has the names of the columns
  --decimal-comma       numbers have a decimal comma
  --dms-columns         an angle has 2 to 4 columns: degrees, minutes, seconds, hemisphere
  -o, --output FILE     write to a file, which is replaced only when the output is complete

A blunder is reported for a standardised residual that one observation in 1000 exceeds by chance. With --datum
geographic the standard errors of heights and positions are estimated apart. latigo(1) has the formulas' names,
docs/local-grid.md an example.

Exit status: 0; 2 for an invalid line, file, section or argument, and for points that do not determine the parameters.
)";

constexpr std::string_view Map = R"(A picture of the section over an area, as SVG: round-trip error, point scale factor,
convergence; with grid files the undulation and the datum shift. Lines of equal easting and northing are drawn over it.
The scale factor of a projection that is not conformal is the largest of all directions, a, or the smallest, b: the one
that is farther from 1. Points and area are on the datum of the section. Points that do not convert to the grid and
back get a warning. Those outside the area are left out with a warning, and names without room are counted.
Usage: latigo map [OPTIONS] FILE > map.svg

Options:
  -h, --help            print this help and exit
  -s, --section NAME    section of the file; default Geodesy, or the only one
  --strict              every warning is a failure
  -o, --output FILE     write to a file, which is replaced only when the output is complete
  --area S,W,N,E        the area, in degrees, sides of at least 0.0002; across 180 degrees of longitude write 170 and
                        190. Default: around the points; else the area of the section's comment "; Area:"; else that
                        of its grid file, up to 90 degrees wide; else one around the projection's origin
  --points FILE         draw the points of a file, latitude, longitude and name in each line, or - for standard input
  --grid                the points are x and y of the grid
  --lonlat              longitude before latitude
  --columns LIST        columns of the two coordinates and the name, by number from 1 or by name
  --separator auto|comma|semicolon|tab|blank
                        field separator
  --header auto|yes|no  whether the first line has the names of the columns
  --decimal-comma       numbers have a decimal comma
  --dms-columns         an angle has 2 to 4 columns: degrees, minutes, seconds, hemisphere

Exit status: 0; 1 if a point is invalid; 2 for an invalid file, section, area or argument.
)";

// Appended to the text of each command that reads points.
constexpr std::string_view Points = R"(
Options of all commands that read points:
  -h, --help            print this help and exit
  -s, --section NAME    section of the file; default Geodesy, or the only one
  --strict              every warning is a failure, of the point or of the file
  --precision DIGITS    number of decimals, 0 to 15
  -o, --output FILE     write to a file, which is replaced only when the output is complete
  --jobs THREADS        number of threads, 1 to 256; the order of the lines is kept
  --dms                 write angles as degrees, minutes and seconds; convergence with a sign
  --separator auto|comma|semicolon|tab|blank
                        field separator; auto is blanks or commas, and with the options below whichever makes the
                        first line a point. With comma 391390,5817855 is a point
  --lonlat              longitude before latitude, in input and output

Options for files with columns; each of them leaves the other columns as they are:
  --columns LIST        columns of the values in their order, as 2,3 or 2,3,4 with a height, or by the names of the
                        header line (in double quotes if they have commas); default the first ones
  --header auto|yes|no  whether the first line has the names of the columns; auto if the columns have words there
  --decimal-comma       numbers have a decimal comma, in input and output
  --dms-columns         an angle has 2 to 4 columns: degrees, minutes, seconds, hemisphere
  --append              write new columns after the last; default in place of the columns if they are as many

Points are read from files, or from standard input without files or for -, one per line: two coordinates, optionally a
height, and further text, which is copied. Angles are decimal degrees or degrees, minutes and seconds (52.5, 52:30:00N,
52-30-00N, 52°30'00"N, and in columns N 52 30 00). Heights are metres; heights with grid coordinates are vertical units
if the section has the key VertUnit.
Blank lines and lines that begin with # are copied.

Invalid lines and failed points print * for each value, and a message. Far from the projection's origin, a round-trip
error above one metre is a warning; latigo(1) has the limits. So is a height above an ellipsoid if the datum
grid does not change heights.

Exit status: 0; 1 if a point failed; 2 for an invalid file, section or argument, and for output that cannot be written.
)";

struct Help {
  std::string_view command;
  std::string_view text;
  bool readsPoints;
};

// clang-format off
constexpr Help Texts[] = {
    {"info", Info, false},
    {"check", Check, false},
    {"list", List, false},
    {"template", Template, false},
    {"forward", Forward, true},
    {"inverse", Inverse, true},
    {"convert", Convert, true},
    {"scale", Scale, true},
    {"factors", Factors, true},
    {"undulation", Undulation, true},
    {"ecef", Ecef, true},
    {"distance", Distance, true},
    {"fit", Fit, false},
    {"map", Map, false},
};
// clang-format on

}  // namespace

std::string HelpOf(std::string_view command) {
  for (const Help& help : Texts) {
    if (help.command == command) {
      return std::string(help.text).append(help.readsPoints ? Points : "");
    }
  }
  return std::string(Program);
}

}  // namespace latigo::cli
