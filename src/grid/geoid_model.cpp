#include "grid/geoid_model.h"

#include <cstring>

namespace latigo {

errcode GeoidModel::LoadGeoid(const char* path) {
  GeoidFile.reset();
  if (path == nullptr) {
    return errcode();
  }
  try {
    auto grid = std::make_unique<InterpFile>(path, false);
    if (grid->Depth() != 1) {
      ReportUnread(HeaderOutOfRange, GridFacility);
    }
    GeoidFile = std::move(grid);
  } catch (errcode&) {
    return errcode(GeoidNotLoaded, Fatal);
  }
  return errcode();
}

void GeoidModel::SetGeoid(const char* path, double orthoHCorr) {
  OrthoHCorr = orthoHCorr;
  LoadGeoid(path);  // an unread failure is thrown
}

void GeoidModel::GetGeoid(char* buffer, std::int32_t size, double* orthoHCorr) const {
  if (!GeoidFile) {
    buffer[0] = '\0';
  } else if (size > 0) {
    std::strncpy(buffer, GeoidFile->Path().c_str(), static_cast<std::size_t>(size));
  }
  if (orthoHCorr != nullptr) {
    *orthoHCorr = OrthoHCorr;
  }
}

errcode GeoidModel::Undulation(double latitude, double longitude, double& undulation) {
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

}  // namespace latigo
