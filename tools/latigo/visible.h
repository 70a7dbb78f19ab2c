// Text from files and arguments on its way to a terminal.
#pragma once

#include <string>
#include <string_view>

namespace latigo::cli {

// The text with every byte that a terminal could take as a command written as \xNN: control characters, the marks that
// change the direction of writing, line and paragraph separators, and what is not UTF-8.
std::string Visible(std::string_view text);

// Writes a line of the program's own to standard error, made visible.
void Message(std::string_view text);

}  // namespace latigo::cli
