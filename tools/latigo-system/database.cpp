#include "database.h"

#include <utility>

namespace latigo::system {

Database::Database() : context_(proj_context_create()), complaint_(std::make_unique<std::string>()) {
  proj_context_set_enable_network(Context(), 0);
  proj_log_func(Context(), complaint_.get(), [](void* last, int level, const char* message) {
    if (level == PJ_LOG_ERROR) {
      *static_cast<std::string*>(last) = Text(message);
    }
  });
  proj_log_level(Context(), PJ_LOG_ERROR);
  if (proj_context_get_database_metadata(Context(), "PROJ.VERSION") == nullptr) {
    throw Refused("PROJ finds no database: " + Complaint("proj.db is missing"));
  }
}

std::string Database::Version(std::string_view authority) const {
  const std::string version =
      Text(proj_context_get_database_metadata(Context(), (std::string(authority) + ".VERSION").c_str()));
  return version.empty() ? "" : std::string(authority) + " " + version;
}

std::string Database::Complaint(std::string_view otherwise) const {
  std::string last = std::exchange(*complaint_, "");
  constexpr std::string_view Function = "proj_create: ";
  if (last.starts_with(Function)) {
    last.erase(0, Function.size());
  }
  return last.empty() ? std::string(otherwise) : last;
}

}  // namespace latigo::system
