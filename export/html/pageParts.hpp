// What every page has, as text in the library.
#pragma once

#include <string_view>

/// The files of this folder: page.html, page.css, and all modules in one script.
std::string_view pageTemplate();
std::string_view pageStyle();
std::string_view pageScript();

/// The library that draws the map, and its licences.
std::string_view mapLibraryScript();
std::string_view mapLibraryStyle();
std::string_view mapLibraryLicences();
