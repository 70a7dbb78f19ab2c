#include "crs.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <numbers>
#include <utility>

#include "methods.h"
#include "section.h"

namespace latigo::system {

namespace {

constexpr double DegreesPerRadian = 180 / std::numbers::pi;
constexpr double ArcSecondsPerRadian = 648000 / std::numbers::pi;

Axis AxisOf(const Database& database, const PJ* system, int index) {
  const char* name = nullptr;
  const char* direction = nullptr;
  const char* unit = nullptr;
  Axis axis;
  if (proj_cs_get_axis_info(database.Context(), system, index, &name, nullptr, &direction, &axis.unit, &unit, nullptr,
                            nullptr) == 0) {
    throw Refused("an axis cannot be read");
  }
  axis.name = Text(name);
  axis.unitName = Text(unit);
  const std::string towards = Text(direction);
  axis.direction = towards;
  axis.reversed = towards == "west" || towards == "south";
  axis.first = towards == "east" || towards == "west";
  return axis;
}

// Two axes of a polar grid both run north, or both south, along meridians that the interface does not give; their names
// and the order of the usual letters tell which is the easting.
void OrderPolarAxes(Axes& axes) {
  if (axes[0].first != axes[1].first) {
    return;
  }
  const auto has = [](const Axis& axis, std::string_view word) { return axis.name.find(word) != std::string::npos; };
  if (axes[0].direction != axes[1].direction) {
    throw Refused("its axes run " + axes[0].direction + " and " + axes[1].direction);
  }
  const bool swapped = has(axes[0], "orthing") || has(axes[1], "asting");
  axes[0].first = !swapped;
  axes[1].first = swapped;
  axes[0].reversed = axes[1].reversed = false;
}

Axes AxesOf(const Database& database, const PJ* crs, double* third) {
  const Pj system(proj_crs_get_coordinate_system(database.Context(), crs));
  const int count = system ? proj_cs_get_axis_count(database.Context(), system.get()) : 0;
  if (count < 2) {
    throw Refused("it has no two axes");
  }
  Axes axes = {AxisOf(database, system.get(), 0), AxisOf(database, system.get(), 1)};
  for (const Axis& axis : axes) {
    constexpr std::array<std::string_view, 5> Directions = {"north", "south", "east", "west", "unspecified"};
    if (std::find(Directions.begin(), Directions.end(), axis.direction) == Directions.end()) {
      throw Refused("an axis runs " + axis.direction + ", and not to the north, south, east or west");
    }
  }
  OrderPolarAxes(axes);
  if (axes[0].unit != axes[1].unit) {
    throw Refused("its axes have different units");
  }
  if (third != nullptr && count > 2) {
    *third = AxisOf(database, system.get(), 2).unit;
  }
  return axes;
}

// Half the side of the area that is assumed about the origin of a definition without one, degrees.
constexpr double AssumedReach = 2;

Area AssumedArea(const Crs& crs) {
  double latitude = 0;
  double longitude = 0;
  bool hasLatitude = false;
  for (const Parameter& each : crs.method.parameters) {
    switch (each.code) {
      case 8801:
      case 8811:
      case 8821:
      case 8832:
        latitude = each.Degrees();
        hasLatitude = true;
        break;
      case 8802:
      case 8812:
      case 8822:
      case 8833:
        longitude = each.Degrees() + crs.primeMeridian;
        break;
      case 8823:
        latitude = hasLatitude && std::abs(latitude) < 89 ? latitude : each.Degrees();
        break;
      default:
        break;
    }
  }
  const double side = std::abs(latitude) > 90 - AssumedReach ? 0 : AssumedReach;
  return {std::max(latitude - AssumedReach, -90.0), longitude - (side > 0 ? side : 180),
          std::min(latitude + AssumedReach, 90.0), longitude + (side > 0 ? side : 180), ""};
}

// What PROJ is given for a text. A PROJ string becomes a system; and one of a conic with one parallel names it twice,
// since PROJ takes a second one on the equator for it where the parallel is not the latitude of origin.
std::string Definition(const std::string& text) {
  const auto has = [&](const char* word) { return text.find(word) != std::string::npos; };
  std::string definition = text;
  if (has("+proj=lcc") && !has("+lat_2=")) {
    if (const std::size_t at = text.find("+lat_1="); at != std::string::npos) {
      const std::size_t value = at + 7;
      definition += " +lat_2=" + text.substr(value, text.find_first_of(" \t\r\n", value) - value);
    }
  }
  return (has("+proj=") || has("+init=")) && !has("+type=crs") ? definition + " +type=crs" : definition;
}

// The projected part of what the user gave; what a compound or bound system adds is kept.
Pj ProjectedPart(const Database& database, Pj object, Crs& crs) {
  PJ_CONTEXT* const context = database.Context();
  for (;;) {
    switch (proj_get_type(object.get())) {
      case PJ_TYPE_PROJECTED_CRS:
        return object;
      case PJ_TYPE_BOUND_CRS:
        crs.boundShift.reset(proj_crs_get_coordoperation(context, object.get()));
        object.reset(proj_get_source_crs(context, object.get()));
        break;
      case PJ_TYPE_COMPOUND_CRS: {
        Pj heights(proj_crs_get_sub_crs(context, object.get(), 1));
        if (heights && proj_get_type(heights.get()) == PJ_TYPE_BOUND_CRS) {
          heights.reset(proj_get_source_crs(context, heights.get()));
        }
        if (const Pj system(heights ? proj_crs_get_coordinate_system(context, heights.get()) : nullptr); system) {
          crs.verticalUnit = AxisOf(database, system.get(), 0).unit;
          const std::string name = Text(proj_get_name(heights.get()));
          crs.heights = name == "unknown" ? "heights without a name" : name;
          crs.depths = AxisOf(database, system.get(), 0).direction == "down";
        }
        object.reset(proj_crs_get_sub_crs(context, object.get(), 0));
        break;
      }
      case PJ_TYPE_GEOGRAPHIC_2D_CRS:
      case PJ_TYPE_GEOGRAPHIC_3D_CRS:
      case PJ_TYPE_GEOCENTRIC_CRS:
        throw Refused("it is a geodetic system; a section describes a projected one");
      default:
        throw Refused("it is no projected system");
    }
  }
}

// Whether a code has that base and conversion: a definition may name a code and be another system. True if the code is
// not known.
bool IsSystemOf(const Database& database, const std::string& id, const PJ* geodetic, const PJ* conversion) {
  PJ_CONTEXT* const context = database.Context();
  Pj object(proj_create(context, id.c_str()));
  if (!object) {
    return true;
  }
  Crs unused;
  const Pj named = ProjectedPart(database, std::move(object), unused);
  const Pj base(proj_crs_get_geodetic_crs(context, named.get()));
  const Pj own(proj_crs_get_coordoperation(context, named.get()));
  return base && own &&
         proj_is_equivalent_to(geodetic, base.get(), PJ_COMP_EQUIVALENT_EXCEPT_AXIS_ORDER_GEOGCRS) != 0 &&
         proj_is_equivalent_to(conversion, own.get(), PJ_COMP_EQUIVALENT) != 0;
}

}  // namespace

// Some names of areas list fifty provinces; the full stop goes.
static std::string Shortened(std::string name) {
  if (name.ends_with('.')) {
    name.pop_back();
  }
  constexpr std::size_t Longest = 160;
  if (name.size() > Longest) {
    const std::size_t end = name.find_last_of(" ,;", Longest);
    name.resize(end != std::string::npos ? end : Longest);
    name += " ...";
  }
  return name;
}

Area AreaOf(const Database& database, const PJ* object) {
  Area area{};
  const char* name = nullptr;
  const bool known = proj_get_area_of_use(database.Context(), object, &area.west, &area.south, &area.east, &area.north,
                                          &name) != 0 &&
                     area.south >= -90;  // -1000 stands for a limit that is not known
  if (!known) {
    return {0, 0, 0, 0, ""};
  }
  area.name = name != nullptr && *name != '\0' ? Shortened(name) : "unnamed";
  if (area.east < area.west) {
    area.east += 360;
  }
  return area;
}

double Parameter::Degrees() const {
  // In whole parts where the unit has them: 52 grads are 46.8 degrees, whatever the digits of the factor.
  return unit == "degree" ? value : Clean(unit == "grad" ? value * 0.9 : Si() * DegreesPerRadian);
}

double Parameter::ArcSeconds() const {
  return unit == "arc-second" ? value : Clean(Si() * ArcSecondsPerRadian);
}

std::string Method::Label() const {
  return code != 0 ? "EPSG:" + std::to_string(code) + " " + name : name;
}

bool Method::Has(int wanted) const {
  return std::any_of(parameters.begin(), parameters.end(), [&](const Parameter& each) { return each.code == wanted; });
}

double Method::Value(int wanted) const {
  return Has(wanted) ? Find(wanted).value : 0;
}

const Parameter& Method::Find(int wanted) const {
  const auto found =
      std::find_if(parameters.begin(), parameters.end(), [&](const Parameter& each) { return each.code == wanted; });
  if (found == parameters.end()) {
    // WKT leaves out what is 0, or 1 of a scale factor.
    static const Parameter Zero{0, "", 0, 1, "degree"};
    static const Parameter One{0, "", 1, 1, ""};
    constexpr std::array<int, 11> Zeros = {8801, 8802, 8806, 8807, 8816, 8817, 8821, 8822, 8826, 8827, 8833};
    if (std::find(Zeros.begin(), Zeros.end(), wanted) != Zeros.end()) {
      return Zero;
    }
    if (wanted == 8805 || wanted == 8815) {
      return One;
    }
    throw Refused("its method " + Label() + " has no parameter EPSG:" + std::to_string(wanted));
  }
  return *found;
}

namespace {

// WKT2 need not have codes. The names of the EPSG data set, and those that it had before.
struct Coded {
  int code;
  const char* name;
};
constexpr Coded Names[] = {
    {8801, "Latitude of natural origin"},
    {8802, "Longitude of natural origin"},
    {8805, "Scale factor at natural origin"},
    {8806, "False easting"},
    {8807, "False northing"},
    {8811, "Latitude of projection centre"},
    {8812, "Longitude of projection centre"},
    {8813, "Azimuth of initial line"},
    {8813, "Azimuth at projection centre"},
    {8814, "Angle from Rectified to Skew Grid"},
    {8815, "Scale factor on initial line"},
    {8815, "Scale factor at projection centre"},
    {8816, "Easting at projection centre"},
    {8817, "Northing at projection centre"},
    {8821, "Latitude of false origin"},
    {8822, "Longitude of false origin"},
    {8823, "Latitude of 1st standard parallel"},
    {8824, "Latitude of 2nd standard parallel"},
    {8826, "Easting at false origin"},
    {8827, "Northing at false origin"},
    {8832, "Latitude of standard parallel"},
    {8833, "Longitude of origin"},
    {1038, "Ellipsoid scaling factor"},
    {8605, "X-axis translation"},
    {8606, "Y-axis translation"},
    {8607, "Z-axis translation"},
    {8608, "X-axis rotation"},
    {8609, "Y-axis rotation"},
    {8610, "Z-axis rotation"},
    {8611, "Scale difference"},
    {8617, "Ordinate 1 of evaluation point"},
    {8618, "Ordinate 2 of evaluation point"},
    {8667, "Ordinate 3 of evaluation point"},
    {9603, "Geocentric translations (geog2D domain)"},
    {9606, "Position Vector transformation (geog2D domain)"},
    {9607, "Coordinate Frame rotation (geog2D domain)"},
};

// By the identifier, or else by the name; 0 for neither.
int CodeOf(const char* authority, const char* code, const std::string& name) {
  if (authority != nullptr && *authority != '\0') {
    return Text(authority) == "EPSG" ? std::atoi(Text(code).c_str()) : 0;
  }
  const auto* const found =
      std::find_if(std::begin(Names), std::end(Names), [&](const Coded& each) { return SameName(each.name, name); });
  return found != std::end(Names) ? found->code : CodeOfMethod(name);
}

}  // namespace

Method MethodOf(const Database& database, const PJ* operation) {
  PJ_CONTEXT* const context = database.Context();
  const char* name = nullptr;
  const char* authority = nullptr;
  const char* code = nullptr;
  Method method;
  proj_coordoperation_get_method_info(context, operation, &name, &authority, &code);
  method.name = Text(name);
  method.code = CodeOf(authority, code, method.name);
  const int count = proj_coordoperation_get_param_count(context, operation);
  for (int i = 0; i < count; ++i) {
    Parameter each{};
    const char* unit = nullptr;
    if (proj_coordoperation_get_param(context, operation, i, &name, &authority, &code, &each.value, nullptr,
                                      &each.factor, &unit, nullptr, nullptr, nullptr) != 0) {
      each.name = Text(name);
      each.code = CodeOf(authority, code, each.name);
      each.unit = Text(unit);
      method.parameters.push_back(each);
    }
  }
  return method;
}

double GreenwichLongitude(const Database& database, const PJ* crs) {
  PJ_CONTEXT* const context = database.Context();
  const Pj meridian(proj_get_prime_meridian(context, crs));
  double longitude = 0;
  double factor = 0;
  const char* unit = nullptr;
  proj_prime_meridian_get_parameters(context, meridian.get(), &longitude, &factor, &unit);
  return Parameter{0, "", longitude, factor, Text(unit)}.Degrees();
}

bool Area::Holds(double latitude, double longitude) const {
  const auto within = [&](double each) { return west <= each && each <= east; };
  return south <= latitude && latitude <= north && (within(longitude) || within(longitude + 360));
}

std::string Area::Limits() const {
  const auto angle = [](double value, char positive, char negative) {
    const double shown = value > 180 ? value - 360 : value < -180 ? value + 360 : value;
    char text[32];
    std::snprintf(text, sizeof text, "%.2f %c", std::fabs(shown), shown < 0 ? negative : positive);
    return std::string(text);
  };
  return angle(south, 'N', 'S') + " to " + angle(north, 'N', 'S') + ", " + angle(west, 'E', 'W') + " to " +
         angle(east, 'E', 'W');
}

Crs ReadCrs(const Database& database, const std::string& text) {
  PJ_CONTEXT* const context = database.Context();
  Pj object(proj_create(context, Definition(text).c_str()));
  if (!object) {
    throw Refused(database.Complaint("it is not known"));
  }

  Crs crs;
  crs.name = Text(proj_get_name(object.get()));
  crs.area = AreaOf(database, object.get());
  if (const std::string authority = Text(proj_get_id_auth_name(object.get(), 0)); !authority.empty()) {
    crs.id = authority + ":" + Text(proj_get_id_code(object.get(), 0));
    crs.source = database.Version(authority);
  }
  crs.deprecated = proj_is_deprecated(object.get()) != 0;
  crs.projected = ProjectedPart(database, std::move(object), crs);
  crs.geodetic.reset(proj_crs_get_geodetic_crs(context, crs.projected.get()));
  const Pj conversion(proj_crs_get_coordoperation(context, crs.projected.get()));
  const Pj ellipsoid(proj_get_ellipsoid(context, crs.projected.get()));
  const Pj meridian(proj_get_prime_meridian(context, crs.projected.get()));
  if (!crs.geodetic || !conversion || !ellipsoid || !meridian) {
    throw Refused(database.Complaint("its definition is not complete"));
  }
  if (!crs.id.empty() && !IsSystemOf(database, crs.id, crs.geodetic.get(), conversion.get())) {
    crs.otherId = std::exchange(crs.id, "");
    crs.source.clear();
  }
  if (const std::string body = Text(proj_get_celestial_body_name(context, crs.geodetic.get()));
      !body.empty() && body != "Earth") {
    throw Refused("it belongs to " + body);
  }

  crs.method = MethodOf(database, conversion.get());
  if (text.find("+axis=") != std::string::npos && crs.method.code == 9808 &&
      (crs.method.Value(8806) != 0 || crs.method.Value(8807) != 0)) {
    throw Refused("a PROJ string with +axis and a false origin can be read in two ways; WKT says which is meant");
  }
  proj_ellipsoid_get_parameters(context, ellipsoid.get(), &crs.semiMajorAxis, nullptr, nullptr, &crs.inverseFlattening);
  crs.ellipsoid = Text(proj_get_name(ellipsoid.get()));
  crs.primeMeridian = GreenwichLongitude(database, crs.geodetic.get());
  crs.primeMeridianName = Text(proj_get_name(meridian.get()));
  crs.mapAxes = AxesOf(database, crs.projected.get(), &crs.verticalUnit);
  crs.groundAxes = AxesOf(database, crs.geodetic.get(), nullptr);
  if (crs.area.name.empty()) {
    crs.area = AreaOf(database, crs.projected.get());
  }
  if (crs.area.name.empty()) {
    crs.area = AssumedArea(crs);
  }
  return crs;
}

namespace {

// Without the mark of UTF-8 and blanks, which editors leave at the ends of a file.
std::string Trimmed(std::string text) {
  constexpr std::string_view Mark = "\xEF\xBB\xBF", Blanks = " \t\r\n";
  text.erase(0, text.starts_with(Mark) ? Mark.size() : 0);
  text.erase(text.find_last_not_of(Blanks) + 1);
  return text.erase(0, text.find_first_not_of(Blanks));
}

}  // namespace

std::string TextOrFile(const std::string& text) {
  if (text == "-") {
    return Trimmed({std::istreambuf_iterator<char>(std::cin), {}});
  }
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(text, ignored)) {
    return text;
  }
  std::ifstream file(text, std::ios::binary);
  std::string content{std::istreambuf_iterator<char>(file), {}};
  if (!file) {
    throw Refused("the file cannot be read");
  }
  return Trimmed(std::move(content));
}

}  // namespace latigo::system
