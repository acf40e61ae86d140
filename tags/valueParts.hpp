// What values of tags are made of.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The parts of a value between its ";", at least one, without the spaces around each; UTF-8.
std::vector<std::string> valueParts(std::u16string_view value);

/// The decimal number, digits and perhaps a point, that the text begins with, and what follows
/// without the spaces before it. 0 and the whole text where there is none.
std::pair<double, std::string_view> leadingNumber(std::string_view text);
