#include "export/loadGdal.hpp"

#include <dlfcn.h>

#include <filesystem>

// Never unloaded: libraries that GDAL brings do not all bear it.
void* loadGdalFunction(char const* name) {
  void* const library = ::dlopen("libosm2roadnet_gdal.so", RTLD_NOW | RTLD_LOCAL);
  void* const function = library != nullptr ? ::dlsym(library, name) : nullptr;
  if (function == nullptr) {
    throw std::runtime_error(std::string("GDAL can't be loaded: ") + ::dlerror());
  }
  return function;
}

// GDAL takes names that begin in certain ways for something else than a file: "GPKG:", "/vsimem/".
std::string gdalPath(OutputFolder const& folder, std::string_view file) {
  return "/." + std::filesystem::absolute(folder.path(file)).string();
}
