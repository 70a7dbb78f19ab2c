// The meanings of the library's codes.
#pragma once

#include <latigo/latigo_errors.h>

#include <cstdint>
#include <stdexcept>
#include <string>

namespace latigo::cli {

// An invalid file, section or argument: a message of one line, and exit status 2.
class UsageError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

// "code 6: the latitude is ..." The name of the exported function selects the meaning of a code.
inline std::string ErrorText(std::int32_t code, const char* function) {
  return "code " + std::to_string(code) + ": " + LatigoErrorText(code, function);
}

}  // namespace latigo::cli
