#include "catalogue.h"

#include <algorithm>
#include <atomic>
#include <cctype>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <thread>

#include "describe.h"
#include "methods.h"

namespace latigo::system {

namespace {

// ---- Search ----

using Infos = std::unique_ptr<PROJ_CRS_INFO*, Destroyer<PROJ_CRS_INFO*, proj_crs_info_list_destroy>>;
using Parameters = std::unique_ptr<PROJ_CRS_LIST_PARAMETERS,
                                   Destroyer<PROJ_CRS_LIST_PARAMETERS, proj_get_crs_list_parameters_destroy>>;

std::string Lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

bool Fits(const PROJ_CRS_INFO& info, const SearchOptions& options) {
  if (options.position) {
    Area area{info.south_lat_degree, info.west_lon_degree, info.north_lat_degree, info.east_lon_degree, ""};
    area.east += area.east < area.west ? 360 : 0;
    if (info.bbox_valid == 0 || !area.Holds((*options.position)[0], (*options.position)[1])) {
      return false;
    }
  }
  const std::string text =
      Lower(Text(info.auth_name) + ":" + Text(info.code) + " " + Text(info.name) + " " + Text(info.area_name));
  return std::all_of(options.words.begin(), options.words.end(),
                     [&](const std::string& word) { return text.find(Lower(word)) != std::string::npos; });
}

// ---- Pack ----

struct Entry {
  std::string code;
  std::string section;  // empty for a system that is refused
  std::string refusal;
  std::string report;
};

using Codes = std::unique_ptr<char*, Destroyer<char*, proj_string_list_destroy>>;

std::vector<Entry> ProjectedSystems(const Database& database, const std::string& authority) {
  std::vector<Entry> entries;
  const Codes codes(proj_get_codes_from_database(database.Context(), authority.c_str(), PJ_TYPE_PROJECTED_CRS, 0));
  for (char** code = codes.get(); code != nullptr && *code != nullptr; ++code) {
    entries.push_back({*code, "", "", ""});
  }
  if (entries.empty()) {
    throw Refused("the database has no projected systems of " + authority);
  }
  // Numbers by their size.
  std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
    return a.code.size() != b.code.size() ? a.code.size() < b.code.size() : a.code < b.code;
  });
  return entries;
}

// The operation to WGS 84 is taken if it is the only one and needs no file.
Choice OnlyOne(const std::vector<Operation>& operations) {
  Choice choice;
  choice.none = operations.size() != 1 || operations.front().form != Operation::Form::Parameters;
  return choice;
}

// The report: code, method, "section" and forward and inverse in metres, points that fail, that PROJ does not convert,
// and that need longitudes beyond 180 degrees; or "refused" and the reason.
void Make(const Database& database, const PackOptions& options, Entry& entry) {
  const std::string id = options.authority + ":" + entry.code;
  std::string method = "-";
  try {
    const Crs crs = ReadCrs(database, id);
    method = crs.method.Label();
    const std::vector<Operation> operations = OperationsToWgs84(database, crs);
    const Described made = Describe(database, crs, operations, OnlyOne(operations), options.points);
    entry.section = made.section.Write(id);
    const Difference& difference = made.projection;
    char numbers[96];
    std::snprintf(numbers, sizeof numbers, "%.1e\t%.1e\t%d\t%d\t%d", difference.forward, difference.inverse,
                  difference.failures, difference.unknown, difference.turned);
    entry.report = id + "\t" + method + "\tsection\t" + numbers;
  } catch (const std::exception& refused) {
    entry.refusal = "; " + id + ": " + OneLine(refused.what());
    entry.report = id + "\t" + method + "\trefused\t" + OneLine(refused.what());
  }
}

}  // namespace

std::size_t Search(const Database& database, const SearchOptions& options) {
  const Parameters parameters(proj_get_crs_list_parameters_create());
  const PJ_TYPE projected = PJ_TYPE_PROJECTED_CRS;
  parameters->types = &projected;
  parameters->typesCount = 1;
  int count = 0;
  const Infos infos(proj_get_crs_info_list_from_database(database.Context(), nullptr, parameters.get(), &count));
  std::size_t found = 0;
  for (int i = 0; i < count; ++i) {
    const PROJ_CRS_INFO& info = *infos.get()[i];
    const std::string body = Text(info.celestial_body_name);
    if ((body.empty() || body == "Earth") && Fits(info, options)) {
      ++found;
      const std::string method = Text(info.projection_method_name);
      std::cout << info.auth_name << ':' << info.code << '\t' << Text(info.name) << '\t' << Text(info.area_name)
                << (IsExpressible(method) ? "" : "\tnot expressible: " + (method.empty() ? "its method" : method))
                << '\n';
    }
  }
  return found;
}

void Pack(const Database& database, const PackOptions& options) {
  std::vector<Entry> entries = ProjectedSystems(database, options.authority);
  std::atomic<std::size_t> next = 0;
  std::vector<std::thread> threads(options.jobs > 0 ? static_cast<unsigned>(options.jobs)
                                                    : std::max(1U, std::thread::hardware_concurrency()));
  for (std::thread& thread : threads) {
    thread = std::thread([&] {
      const Database own;
      for (std::size_t i = next++; i < entries.size(); i = next++) {
        Make(own, options, entries[i]);
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }

  std::size_t refused = 0;
  for (const Entry& entry : entries) {
    std::cout << entry.section << (entry.section.empty() ? "" : "\n");
    refused += entry.section.empty() ? 1 : 0;
  }
  std::cout << "; Not expressed: " << refused << '\n';
  for (const Entry& entry : entries) {
    std::cout << entry.refusal << (entry.refusal.empty() ? "" : "\n");
  }
  std::cerr << "latigo-system: " << entries.size() - refused << " of " << entries.size() << " systems\n";
  if (!options.report.empty()) {
    std::ofstream report(options.report);
    for (const Entry& entry : entries) {
      report << entry.report << '\n';
    }
    if (!report.flush()) {
      throw Refused(options.report + ": cannot be written");
    }
  }
}

}  // namespace latigo::system
