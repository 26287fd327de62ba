#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace brevlin {

/// What somebody typed as what a phase is for: a line break or any run of them becomes a space, white space
/// at both ends goes, and no more than `longest` characters (code points) stay. UTF-8; what is not becomes
/// the replacement character.
std::string typedIntention(std::string_view text, std::size_t longest);

/// The words of an intention that begin with '#', without it, in their order, each once; letter case as it
/// stands. A word is of letters and digits, with '-', '_', '.', '/' and '+' between them. A '#' that follows
/// a letter or a digit begins none, unless that is an ideograph, for Chinese has no spaces.
std::vector<std::string> labels(std::string_view intention);

} // namespace brevlin
