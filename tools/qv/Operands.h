#pragma once

#include <string>
#include <vector>

/// Words that the command-line parser must not interpret. On its own it ends a command at "--" once an operand was
/// given, and reads the operand "[a,b]" as two.
namespace qv::tool {

/// Returns the words of a command line without the program's name and the first "--", the last word first, as the
/// parser takes them. Words after that "--" and words in brackets are marked: they are operands or values.
std::vector<std::string> MarkOperands(int argc, char** argv);

/// Returns a word of the parser without its mark.
std::string Unmarked(const std::string& word);

}  // namespace qv::tool
