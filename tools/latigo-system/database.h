// PROJ and its database: owners of its objects, and its messages as exceptions.
#pragma once

#include <proj.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace latigo::system {

// What cannot be done, in one line for people. Exit status 2.
class Refused : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

template <typename Object, auto Function>
struct Destroyer {
  void operator()(Object* object) const { Function(object); }
};

using Pj = std::unique_ptr<PJ, Destroyer<PJ, proj_destroy>>;
using PjList = std::unique_ptr<PJ_OBJ_LIST, Destroyer<PJ_OBJ_LIST, proj_list_destroy>>;

// A text of PROJ, which may be null.
inline std::string Text(const char* text) {
  return text != nullptr ? text : "";
}

// One context of PROJ, without network, and the database it reads. One object serves one thread.
class Database {
 public:
  Database();

  PJ_CONTEXT* Context() const { return context_.get(); }

  // "EPSG v10.076" for the data of an authority; empty if the database does not say.
  std::string Version(std::string_view authority) const;

  // What PROJ said last, or `otherwise`; and forgets it.
  std::string Complaint(std::string_view otherwise) const;

 private:
  std::unique_ptr<PJ_CONTEXT, Destroyer<PJ_CONTEXT, proj_context_destroy>> context_;
  std::unique_ptr<std::string> complaint_;  // PROJ keeps its address
};

}  // namespace latigo::system
