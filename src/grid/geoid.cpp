// The geoid model of a Geodesy object: an optional grid of undulations, and a constant that applies with or without it,
// in the unit of the grid's values. And the conversion of lengths.
#include <cstring>

#include "frame/geodesy.h"

namespace latigo {

errcode Geodesy::LoadGeoid(const char* path) {
  GeoidFile.reset();
  if (path == nullptr) {
    return errcode();
  }
  try {
    auto grid = std::make_unique<InterpFile>(path, false);
    if (grid->Depth() != 1) {
      errcode(HeaderOutOfRange, Fatal, GridFacility);  // dies unread and is thrown
    }
    GeoidFile = std::move(grid);
  } catch (errcode&) {
    return errcode(GeoidNotLoaded, Fatal);
  }
  return errcode();
}

void Geodesy::SetGeoid(const char* path, double orthoHCorr) {
  OrthoHCorr = orthoHCorr;  // stands even if the file fails
  LoadGeoid(path);          // a failure dies unread and is thrown
}

const char* Geodesy::GeoidPath() const {
  return GeoidFile ? GeoidFile->Path().c_str() : nullptr;
}

void Geodesy::GetGeoid(char* buffer, std::int32_t size, double* orthoHCorr) const {
  if (const char* path = GeoidPath(); path == nullptr) {
    buffer[0] = '\0';
  } else if (size > 0) {
    std::strncpy(buffer, path, static_cast<std::size_t>(size));
  }
  if (orthoHCorr != nullptr) {
    *orthoHCorr = OrthoHCorr;
  }
}

errcode Geodesy::Undulation(double latitude, double longitude, double& undulation) {
  double value = 0;
  const std::int32_t code = GeoidFile ? GeoidFile->Lookup(latitude, longitude, nullptr, {&value, 1}).code() : 0;
  undulation = OrthoHCorr + value;
  switch (code) {
    case 0:
      return errcode();
    case OutsideGrid:
      return errcode(OutsideGeoid, Warning);
    default:
      return errcode(code, Fatal);
  }
}

namespace {
void Convert(double& value, double metresPerUnit, bool toMetres) {
  value = toMetres ? value * metresPerUnit : value / metresPerUnit;
}
}  // namespace

void Geodesy::HConvert(double& value, bool toMetres) const {
  Convert(value, Proj->Unit, toMetres);
}

void Geodesy::VConvert(double& value, bool toMetres) const {
  Convert(value, VertUnit, toMetres);
}

}  // namespace latigo
