// The exported functions. Each uses one of five wrappers, which handle null handles, failures and success; no exception
// leaves them. include/latigo/latigo.h documents them, exports.list lists them.
#include <latigo/latigo.h>

#include <cstring>

#include "datum/ellipsoid_table.h"
#include "errors/last_error.h"
#include "frame/config_reader.h"
#include "frame/geodesy.h"
#include "frame/local_names.h"

using latigo::errcode;
using latigo::Geodesy;

namespace {

#define LATIGO_ERROR(name, NAME, number, functions, text) \
  static_assert(LATIGO_ERROR_##NAME == (number), "latigo.h has the numbers of the list");
#include "errors.def"
#undef LATIGO_ERROR

Geodesy* ObjectOf(GeodesyHandle handle) {
  return reinterpret_cast<Geodesy*>(handle);
}
GeodesyHandle HandleOf(Geodesy* object) {
  return reinterpret_cast<GeodesyHandle>(object);
}

// Sets LastError; returns 1 for the code 0 and 0 for any other.
std::int32_t Leave(std::int32_t code) {
  latigo::SetLastError(code);
  return code == 0 ? 1 : 0;
}

// For operations that cannot fail.
template <typename Operation>
std::int32_t Plain(GeodesyHandle handle, Operation operation) {
  if (handle == nullptr) {
    return Leave(latigo::NullHandle);
  }
  operation(*ObjectOf(handle));
  return Leave(0);
}

// For operations that return an errcode: it is read, so it is neither logged nor thrown.
template <typename Operation>
std::int32_t Read(GeodesyHandle handle, Operation operation) {
  if (handle == nullptr) {
    return Leave(latigo::NullHandle);
  }
  return Leave(operation(*ObjectOf(handle)).code());
}

// For operations whose failures are logged: the errcode that they return is destroyed unread, so its facility logs and
// throws it.
template <typename Operation>
std::int32_t Guarded(GeodesyHandle handle, Operation operation) {
  if (handle == nullptr) {
    return Leave(latigo::NullHandle);
  }
  try {
    operation(*ObjectOf(handle));
    return Leave(0);
  } catch (errcode& failure) {
    return Leave(failure.code());
  } catch (...) {
    return Leave(latigo::OtherException);
  }
}

// For lines, which cannot fail: converts metres to grid units.
template <typename Operation>
double Distance(GeodesyHandle handle, Operation operation) {
  if (Plain(handle, [](const Geodesy&) {}) == 0) {
    return 0.0;
  }
  const latigo::Projection& projection = ObjectOf(handle)->GetProjection();
  return operation(projection) / projection.Unit;
}

}  // namespace

extern "C" {

GeodesyHandle CreateFileGeodesy(const char* fileName, const char* section) {
  return HandleOf(latigo::CreateFromFile(fileName, section));
}

GeodesyHandle CreateGeodesy(const GeodesyParams* params) {
  try {
    auto* object = new Geodesy(*params);
    Leave(0);
    return HandleOf(object);
  } catch (errcode& failure) {
    Leave(failure.code());
  } catch (...) {
    Leave(latigo::OtherException);
  }
  return nullptr;
}

int32_t DestroyGeodesy(GeodesyHandle handle) {
  return Plain(handle, [](Geodesy& object) { delete &object; });
}

int32_t GetGeodesyParams(GeodesyHandle handle, GeodesyParams* params, char* ellipsoidName, char* projectionCode) {
  return Plain(handle, [=](const Geodesy& object) {
    object.GetParams(*params);
    if (ellipsoidName != nullptr) {
      const char* name = latigo::EllipsoidName(object.GetProjection().a(), object.GetProjection().f());
      std::strcpy(ellipsoidName, name != nullptr ? name : "");
    }
    if (projectionCode != nullptr) {
      std::strcpy(projectionCode, object.GetProjection().Code());
    }
  });
}

int32_t GetGeodesyError(void) {
  return latigo::LastError();
}

int32_t GetGeodesyVersion(void) {
  return LATIGO_VERSION;
}

int32_t GeoXY(GeodesyHandle handle, double* x, double* y, double latitude, double longitude) {
  return Guarded(handle, [=](const Geodesy& object) { return object.GeoXY(*x, *y, latitude, longitude); });
}

int32_t XYGeo(GeodesyHandle handle, double x, double y, double* latitude, double* longitude) {
  return Guarded(handle, [=](const Geodesy& object) { return object.XYGeo(x, y, *latitude, *longitude); });
}

double Scale(GeodesyHandle handle, double x, double y) {
  double k = 0;
  return Read(handle, [&](const Geodesy& object) { return object.Scale(x, y, k); }) != 0 ? k : 1.0;
}

int32_t SetEllDiff(GeodesyHandle handle, const EllDiff* diff) {
  return Plain(handle, [=](Geodesy& object) { object.Datum().SetEllDiff(*diff); });
}

int32_t GetEllDiff(GeodesyHandle handle, EllDiff* diff) {
  return Plain(handle, [=](const Geodesy& object) { object.Datum().GetEllDiff(*diff); });
}

int32_t SetEllModel(GeodesyHandle handle, const char* fileName) {
  return Guarded(handle, [=](Geodesy& object) { object.Datum().SetEllModel(fileName); });
}

int32_t GetEllModel(GeodesyHandle handle, char* buffer, int32_t size) {
  return Plain(handle, [=](const Geodesy& object) { object.Datum().GetEllModel(buffer, size); });
}

int32_t EllConv(GeodesyHandle handle, double* latitude, double* longitude, double* height, double a, double f) {
  return Plain(handle, [=](const Geodesy& object) { object.Datum().EllConv(*latitude, *longitude, height, a, f); });
}

int32_t InvEllConv(GeodesyHandle handle, double* latitude, double* longitude, double* height, double a, double f) {
  return Plain(handle, [=](const Geodesy& object) { object.Datum().InvEllConv(*latitude, *longitude, height, a, f); });
}

int32_t WGS84Conv(GeodesyHandle handle, double* latitude, double* longitude, double* height) {
  return Guarded(handle, [=](Geodesy& object) { object.Datum().WGS84Conv(*latitude, *longitude, height); });
}

int32_t InvWGS84Conv(GeodesyHandle handle, double* latitude, double* longitude, double* height) {
  return Guarded(handle, [=](Geodesy& object) { object.Datum().InvWGS84Conv(*latitude, *longitude, height); });
}

int32_t GeoECEF(GeodesyHandle handle, double* x, double* y, double* z, double latitude, double longitude,
                double height) {
  return Plain(handle, [=](const Geodesy& object) {
    const auto position = object.GetProjection().GeoECEF({latitude, longitude, height});
    *x = position.X;
    *y = position.Y;
    *z = position.Z;
  });
}

int32_t ECEFGeo(GeodesyHandle handle, double x, double y, double z, double* latitude, double* longitude,
                double* height) {
  return Plain(handle, [=](const Geodesy& object) {
    const auto position = object.GetProjection().ECEFGeo({x, y, z});
    *latitude = position.phi;
    *longitude = position.lambda;
    *height = position.h;
  });
}

double GCircLL(GeodesyHandle handle, double latitude1, double longitude1, double latitude2, double longitude2,
               double* azimuth) {
  return Distance(handle, [=](const latigo::Ellipsoid& ellipsoid) {
    return ellipsoid.GCircLL(latitude1, longitude1, latitude2, longitude2, azimuth);
  });
}

double RLineLL(GeodesyHandle handle, double latitude1, double longitude1, double latitude2, double longitude2,
               double* azimuth) {
  return Distance(handle, [=](const latigo::Ellipsoid& ellipsoid) {
    return ellipsoid.RLineLL(latitude1, longitude1, latitude2, longitude2, azimuth);
  });
}

int32_t SetGeoid(GeodesyHandle handle, const char* fileName, double orthoHCorr) {
  return Guarded(handle, [=](Geodesy& object) { object.Geoid().SetGeoid(fileName, orthoHCorr); });
}

int32_t GetGeoid(GeodesyHandle handle, char* buffer, int32_t size, double* orthoHCorr) {
  return Plain(handle, [=](const Geodesy& object) { object.Geoid().GetGeoid(buffer, size, orthoHCorr); });
}

int32_t Undulation(GeodesyHandle handle, double latitude, double longitude, double* undulation) {
  return Read(handle, [=](Geodesy& object) { return object.Geoid().Undulation(latitude, longitude, *undulation); });
}

int32_t HConvert(GeodesyHandle handle, double* value, uint8_t direction) {
  return Plain(handle, [=](const Geodesy& object) { object.HConvert(*value, direction != 0); });
}

int32_t VConvert(GeodesyHandle handle, double* value, uint8_t direction) {
  return Plain(handle, [=](const Geodesy& object) { object.VConvert(*value, direction != 0); });
}

int32_t SetAdjustment(GeodesyHandle handle, const Adjustment* adjustment) {
  return Read(handle, [=](Geodesy& object) { return object.SetAdjust(*adjustment); });
}

int32_t GetAdjustment(GeodesyHandle handle, Adjustment* adjustment) {
  return Plain(handle, [=](const Geodesy& object) { object.GetAdjust(*adjustment); });
}

int32_t GetLocalName(GeodesyHandle handle, int32_t request, const char* language, char* buffer, int32_t size) {
  if (handle == nullptr) {
    return Leave(latigo::NullHandle);
  }
  return Leave(latigo::GetLocalName(*ObjectOf(handle), request, language, buffer, size));
}

}  // extern "C"
