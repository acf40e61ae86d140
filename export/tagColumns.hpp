// What the columns of exported tags are called.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// A name for each key, no two the same: the key itself, UTF-8, with "_" for each control
/// character. One that is taken has "osm_" before it: by a column that the exchange formats have in
/// common, by one of `own` (those that the format has besides), or by a key before it. Upper and
/// lower case of ASCII letters are the same, as they are in SQL.
std::vector<std::string> tagColumns(std::vector<std::string> const& keys,
                                    std::span<std::string_view const> own = {});
