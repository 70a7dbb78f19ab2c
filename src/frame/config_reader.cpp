#include "frame/config_reader.h"

#include <cstring>
#include <string_view>
#include <vector>

#include "errors/last_error.h"
#include "frame/config_keys.h"
#include "frame/install_dir.h"
#include "frame/profile.h"
#include "platform/cancellation.h"
#include "platform/profile_snapshot.h"

namespace latigo {

namespace {

constexpr const char* DefaultSection = "Geodesy";

std::vector<std::string_view> KeyNames() {
  std::vector<std::string_view> names;
  names.reserve(ConfigKeys().size());
  for (const ConfigKey& key : ConfigKeys()) {
    names.emplace_back(key.name);
  }
  return names;
}

// A profile file that reads all keys of one section with one access to the file.
class SectionProfile : public Profile {
 public:
  SectionProfile(const char* fileName, const char* section)
      : Profile(fileName), snapshot_(fileName, section, KeyNames()) {}

  std::int32_t GetString(char* buffer, std::int32_t size, const char* key, const char* section,
                         const char* defaultText) const override {
    const auto length = snapshot_.Copy(section, key, defaultText, buffer, static_cast<std::uint32_t>(size));
    return length ? static_cast<std::int32_t>(*length) : Profile::GetString(buffer, size, key, section, defaultText);
  }

 private:
  const ProfileSnapshot snapshot_;
};

// The parts of an object, read from one section of one file.
class SectionReader {
 public:
  SectionReader(const char* fileName, const char* section) : profile_(fileName, section), section_(section) {}

  double Number(const char* key) const { return profile_.GetDouble(key, section_, 0); }

  // Sets the doubles of a record that are in the table of keys.
  template <typename T>
  void ReadNumbers(Record record, T& target) const {
    for (const ConfigKey& key : ConfigKeys()) {
      if (key.record == record) {
        const double value = Convert(key.conversion, Number(key.name));
        std::memcpy(reinterpret_cast<char*>(&target) + key.offset, &value, sizeof value);
      }
    }
  }

  GeodesyParams ReadParams() const {
    GeodesyParams params{};
    ReadNumbers(Record::Params, params);
    char keyword[80];
    profile_.GetString(keyword, sizeof keyword, "Projection", section_, "");
    params.Kind = KindOfKeyword(keyword);
    if (params.Kind == 0) {
      throw errcode(UnknownKind, Fatal);
    }
    return params;
  }

  void ReadDatum(Geodesy& object) const {
    if (profile_.HasKey("DynDatum", section_)) {
      object.Datum().SetEllModel(GridPath("DynDatum").text);
      return;
    }
    EllDiff diff{};
    ReadNumbers(Record::Diff, diff);
    object.Datum().SetEllDiff(diff);
  }

  void ReadAdjustment(Geodesy& object) const {
    Adjustment adjustment{};
    adjustment.AdjustType = static_cast<std::uint32_t>(profile_.GetInt("AdjustType", section_, 0));
    if (profile_.GetBool("ReverseX", section_, false)) {
      adjustment.AdjustType |= LATIGO_REVERSE_X;
    }
    if (profile_.GetBool("ReverseY", section_, false)) {
      adjustment.AdjustType |= LATIGO_REVERSE_Y;
    }
    ReadNumbers(Record::Adjust, adjustment);
    object.SetAdjust(adjustment);
  }

  void ReadGeoid(Geodesy& object) const {
    object.Geoid().SetOrthoHCorr(Number("OrthoHCorr"));
    if (profile_.HasKey("Geoid", section_)) {
      object.Geoid().LoadGeoid(GridPath("Geoid").text);  // an unread failure is thrown
    }
  }

 private:
  struct PathText {
    char text[256];
  };

  // A path that is too long or leads out of the folder becomes empty, which names no file.
  PathText GridPath(const char* key) const {
    char value[256];
    profile_.GetString(value, sizeof value, key, section_, "");
    PathText path;
    GridFilePath(value, path.text);
    return path;
  }

  const SectionProfile profile_;
  const char* section_;
};

}  // namespace

Geodesy* CreateFromFile(const char* fileName, const char* section) noexcept {
  const CancellationDisabled guard;
  std::unique_ptr<Geodesy> object;
  try {
    section = section != nullptr ? section : DefaultSection;
    const SectionReader reader(fileName, section);
    object = std::make_unique<Geodesy>(reader.ReadParams());
    object->SetVertUnit(reader.Number("VertUnit"));
    reader.ReadDatum(*object);
    reader.ReadAdjustment(*object);
    reader.ReadGeoid(*object);
    SetLastError(0);
    return object.release();
  } catch (errcode& failure) {
    const std::int32_t code = failure.code();
    SetLastError(code);
    if (code != GeoidNotLoaded) {
      return nullptr;
    }
    object->Geoid().SetOrthoHCorr(0);
    return object.release();
  } catch (...) {
    SetLastError(OtherException);
    return nullptr;
  }
}

}  // namespace latigo
