#include "tools/qv/Operands.h"

#include <algorithm>

namespace qv::tool {
namespace {

constexpr char kMark = '\0';  // no argument of a program contains it

}  // namespace

std::vector<std::string> MarkOperands(int argc, char** argv) {
    std::vector<std::string> words;
    bool operands = false;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (!operands && word == "--")
            operands = true;
        else
            words.push_back(operands || (word.starts_with('[') && word.ends_with(']')) ? kMark + word : word);
    }
    std::ranges::reverse(words);
    return words;
}

std::string Unmarked(const std::string& word) {
    return word.starts_with(kMark) ? word.substr(1) : word;
}

}  // namespace qv::tool
