// A build of the library, loaded by its path. Calls go through pointers to its exported functions, which cost what a
// call through the linkage table costs, and two builds can meet in one process.
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

  // An object that lives as long as its last user; null if the library refuses the record.
  std::shared_ptr<GeodesyObject> Make(const GeodesyParams& params) const;
};

// The builds of one run: the work tree's, and, in a comparison of builds, the other one. Floors and peers take part
// only if there is no other build.
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
