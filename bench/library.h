// A build of the library, loaded by its path. Calls use pointers to the exported functions, which cost as much as calls
// through the linkage table, so two builds can be in one process.
#pragma once

#include <latigo/latigo.h>

#include <memory>
#include <string>
#include <vector>

namespace bench {

struct Library {
  // Throws std::runtime_error if the file or a function of it is missing.
  Library(std::string name, const std::string& path);

  std::string name;
  std::string path;
  decltype(&::CreateGeodesy) CreateGeodesy;
  decltype(&::CreateFileGeodesy) CreateFileGeodesy;
  decltype(&::DestroyGeodesy) DestroyGeodesy;
  decltype(&::GetGeodesyError) GetGeodesyError;
  decltype(&::GeoXY) GeoXY;
  decltype(&::XYGeo) XYGeo;
  decltype(&::Scale) Scale;
  decltype(&::SetEllDiff) SetEllDiff;
  decltype(&::SetEllModel) SetEllModel;
  decltype(&::WGS84Conv) WGS84Conv;
  decltype(&::InvWGS84Conv) InvWGS84Conv;
  decltype(&::GeoECEF) GeoECEF;
  decltype(&::ECEFGeo) ECEFGeo;
  decltype(&::GCircLL) GCircLL;
  decltype(&::RLineLL) RLineLL;
  decltype(&::SetGeoid) SetGeoid;
  decltype(&::Undulation) Undulation;

  // An object shared by its users; null if the library refuses the record.
  std::shared_ptr<GeodesyObject> Make(const GeodesyParams& params) const;
};

// The builds of one run: that of the work tree and, to compare builds, another one. Floors and peers are included only
// if there is no other build.
struct Run {
  std::vector<Library> libraries;

  bool WithOthers() const { return libraries.size() == 1; }
};

void AddProjectionRows(const Run& run);
void AddDatumRows(const Run& run);
void AddLineRows(const Run& run);
void AddGridRows(const Run& run);
void AddObjectRows(const Run& run);
void AddThreadRows(const Run& run);

}  // namespace bench
