// The geoid model of a coordinate system: an optional grid of undulations, and a constant that is always added.
#pragma once

#include <cstdint>
#include <memory>

#include "errors/errcode.h"
#include "grid/interp_file.h"

namespace latigo {

// A lookup may read the grid file, so only one thread at a time may use an object.
class GeoidModel {
 public:
  // Replaces the grid; null removes it. Code 9 if the file cannot be loaded: then there is no grid.
  errcode LoadGeoid(const char* path);
  // Sets the constant and replaces the grid; throws errcode. The constant is set even if the file cannot be loaded.
  void SetGeoid(const char* path, double orthoHCorr);
  void SetOrthoHCorr(double value) { OrthoHCorr = value; }

  void CloseFile() { GeoidFile.reset(); }

  // Copies the path of the grid as strncpy does, or an empty text; orthoHCorr may be null.
  void GetGeoid(char* buffer, std::int32_t size, double* orthoHCorr) const;

  // The undulation at a position, radians, in the unit of the grid's values, with the constant. Codes: 8 outside the
  // grid, 13 its rows cannot be read; the undulation is then the constant alone.
  errcode Undulation(double latitude, double longitude, double& undulation);

 private:
  std::unique_ptr<InterpFile> GeoidFile;  // null without a grid
  double OrthoHCorr = 0;                  // added to every undulation, in the unit of the grid's values
};

}  // namespace latigo
