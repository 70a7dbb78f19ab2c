// The exports of one build of the library, loaded from its file.
#pragma once

#include <dlfcn.h>
#include <latigo/latigo.h>

#include <stdexcept>
#include <string>

namespace same_digits {

class Library {
 public:
  // The two builds keep their symbols apart. A library stays loaded until the process ends.
  explicit Library(const std::string& path) : module_(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (module_ == nullptr) {
      throw std::runtime_error(dlerror());
    }
#define LATIGO_LOAD(name) Load(name, #name)
    LATIGO_LOAD(CreateGeodesy);
    LATIGO_LOAD(DestroyGeodesy);
    LATIGO_LOAD(GetGeodesyError);
    LATIGO_LOAD(GeoXY);
    LATIGO_LOAD(XYGeo);
    LATIGO_LOAD(Scale);
    LATIGO_LOAD(SetEllDiff);
    LATIGO_LOAD(SetEllModel);
    LATIGO_LOAD(EllConv);
    LATIGO_LOAD(InvEllConv);
    LATIGO_LOAD(WGS84Conv);
    LATIGO_LOAD(InvWGS84Conv);
    LATIGO_LOAD(GeoECEF);
    LATIGO_LOAD(ECEFGeo);
    LATIGO_LOAD(GCircLL);
    LATIGO_LOAD(RLineLL);
    LATIGO_LOAD(SetGeoid);
    LATIGO_LOAD(Undulation);
    LATIGO_LOAD(SetAdjustment);
#undef LATIGO_LOAD
  }

  decltype(&::CreateGeodesy) CreateGeodesy;
  decltype(&::DestroyGeodesy) DestroyGeodesy;
  decltype(&::GetGeodesyError) GetGeodesyError;
  decltype(&::GeoXY) GeoXY;
  decltype(&::XYGeo) XYGeo;
  decltype(&::Scale) Scale;
  decltype(&::SetEllDiff) SetEllDiff;
  decltype(&::SetEllModel) SetEllModel;
  decltype(&::EllConv) EllConv;
  decltype(&::InvEllConv) InvEllConv;
  decltype(&::WGS84Conv) WGS84Conv;
  decltype(&::InvWGS84Conv) InvWGS84Conv;
  decltype(&::GeoECEF) GeoECEF;
  decltype(&::ECEFGeo) ECEFGeo;
  decltype(&::GCircLL) GCircLL;
  decltype(&::RLineLL) RLineLL;
  decltype(&::SetGeoid) SetGeoid;
  decltype(&::Undulation) Undulation;
  decltype(&::SetAdjustment) SetAdjustment;

 private:
  template <typename Function>
  void Load(Function& function, const char* name) {
    function = reinterpret_cast<Function>(dlsym(module_, name));
    if (function == nullptr) {
      throw std::runtime_error(dlerror());
    }
  }

  void* module_;
};

}  // namespace same_digits
