// From an EPSG method and its parameters to the keys of a section.
#pragma once

#include <string>
#include <string_view>

#include "crs.h"
#include "section.h"

namespace latigo::system {

// The projection, its unit and its axes. Throws Refused with the reason if none of the kinds expresses the method.
Section Express(const Crs& crs);

// Whether some kind expresses the method of that name, as the database's list of systems has it.
bool IsExpressible(const std::string& methodName);

// Whether two names of methods or parameters differ in capitals, blanks and signs alone.
bool SameName(std::string_view one, std::string_view other);

// The code of a method by its name; 0 if no kind expresses it.
int CodeOfMethod(const std::string& name);

// How far from the method the section is by intention; empty where it is the method.
std::string ApproximationOf(int method);

// Metres per unit as the library knows the unit by name, and as it is; the same for most units.
double NamedUnit(double unit);
double ExactUnit(double unit);

// The reciprocal flattening that stands for a sphere, whose own is infinite: f and e^2 vanish beside 1.
constexpr double SphereInverseFlattening = 1e30;

}  // namespace latigo::system
