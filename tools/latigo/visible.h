// Text from files and arguments, made safe for a terminal.
#pragma once

#include <string>
#include <string_view>

namespace latigo::cli {

// The text with every byte that a terminal could interpret as a command written as \xNN: control characters, marks that
// change the direction of writing, line and paragraph separators, and invalid UTF-8.
std::string Visible(std::string_view text);

// Writes a message of the program to standard error, made safe.
void Message(std::string_view text);

}  // namespace latigo::cli
