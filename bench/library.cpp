#include "library.h"

#include <dlfcn.h>

#include <stdexcept>

namespace bench {

namespace {

template <typename Function>
void Find(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(dlsym(library, name));
  if (function == nullptr) {
    throw std::runtime_error(dlerror());
  }
}

}  // namespace

Library::Library(std::string libraryName, const std::string& libraryPath)
    : name(std::move(libraryName)), path(libraryPath) {
  void* const library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    throw std::runtime_error(dlerror());
  }
  Find(library, "CreateGeodesy", CreateGeodesy);
  Find(library, "CreateFileGeodesy", CreateFileGeodesy);
  Find(library, "DestroyGeodesy", DestroyGeodesy);
  Find(library, "GetGeodesyError", GetGeodesyError);
  Find(library, "GeoXY", GeoXY);
  Find(library, "XYGeo", XYGeo);
  Find(library, "Scale", Scale);
  Find(library, "SetEllDiff", SetEllDiff);
  Find(library, "SetEllModel", SetEllModel);
  Find(library, "WGS84Conv", WGS84Conv);
  Find(library, "InvWGS84Conv", InvWGS84Conv);
  Find(library, "GeoECEF", GeoECEF);
  Find(library, "ECEFGeo", ECEFGeo);
  Find(library, "GCircLL", GCircLL);
  Find(library, "RLineLL", RLineLL);
  Find(library, "SetGeoid", SetGeoid);
  Find(library, "Undulation", Undulation);
}

std::shared_ptr<GeodesyObject> Library::Make(const GeodesyParams& params) const {
  const GeodesyHandle handle = CreateGeodesy(&params);
  if (handle == nullptr) {
    return nullptr;
  }
  return {handle, DestroyGeodesy};
}

}  // namespace bench
