// What the library's codes mean, for people.
#pragma once

#include <latigo/latigo_errors.h>

#include <cstdint>
#include <stdexcept>
#include <string>

namespace latigo::cli {

// A file, section or argument that is wrong: one line for people, and exit status 2.
class UsageError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

// "code 6: the latitude is ..." The name of an exported function tells apart the senses of a number.
inline std::string ErrorText(std::int32_t code, const char* function) {
  return "code " + std::to_string(code) + ": " + LatigoErrorText(code, function);
}

}  // namespace latigo::cli
