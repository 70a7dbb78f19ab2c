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
        const Pj heights(proj_crs_get_sub_crs(context, object.get(), 1));
        const Pj system(heights ? proj_crs_get_coordinate_system(context, heights.get()) : nullptr);
        crs.verticalUnit = system ? AxisOf(database, system.get(), 0).unit : 0;
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
    constexpr std::array<int, 4> Zeros = {8801, 8802, 8806, 8807};
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

Method MethodOf(const Database& database, const PJ* operation) {
  PJ_CONTEXT* const context = database.Context();
  const char* name = nullptr;
  const char* authority = nullptr;
  const char* code = nullptr;
  Method method;
  proj_coordoperation_get_method_info(context, operation, &name, &authority, &code);
  method.name = Text(name);
  method.code = Text(authority) == "EPSG" ? std::atoi(Text(code).c_str()) : 0;
  const int count = proj_coordoperation_get_param_count(context, operation);
  for (int i = 0; i < count; ++i) {
    Parameter each{};
    const char* unit = nullptr;
    if (proj_coordoperation_get_param(context, operation, i, &name, &authority, &code, &each.value, nullptr,
                                      &each.factor, &unit, nullptr, nullptr, nullptr) != 0) {
      each.code = Text(authority) == "EPSG" ? std::atoi(Text(code).c_str()) : 0;
      each.name = Text(name);
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
    const double shown = value > 180 ? value - 360 : value;
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

std::string TextOrFile(const std::string& text) {
  if (text == "-") {
    return {std::istreambuf_iterator<char>(std::cin), {}};
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
  return content;
}

}  // namespace latigo::system
