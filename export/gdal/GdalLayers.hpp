// Layers in files that one of GDAL's drivers writes.
#pragma once

#include <ogrsf_frmts.h>

#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

/// GDAL reports failures to a handler, some of them nowhere else: closing a file returns nothing.
/// The first one is kept and thrown by `check`.
class GdalErrors {
 public:
  GdalErrors();
  GdalErrors(GdalErrors const&) = delete;
  GdalErrors& operator=(GdalErrors const&) = delete;
  ~GdalErrors();

  void check() const {
    if (!first_.empty()) throw std::runtime_error(first_);
  }

 private:
  static void CPL_STDCALL add(CPLErr level, CPLErrorNum, char const* message);

  std::string first_;
};

/// Errors are std::runtime_error.
class GdalLayers {
 public:
  struct Field {
    char const* name;
    OGRFieldType type;
  };

  explicit GdalLayers(char const* driver);

  /// Of places on WGS 84, longitude before latitude. A file is made when it is first named.
  OGRLayer& addLayer(std::string const& path, char const* name, OGRwkbGeometryType type,
                     std::vector<Field> const& fields);
  /// Adds a copy of the feature, as a new one, when all layers are there.
  void append(OGRLayer& layer, OGRFeature& feature);
  /// Completes the files, with default styles in a GeoPackage, and looks whether all is in them.
  void finish();

 private:
  struct File {
    std::string path;
    GDALDatasetUniquePtr dataset;
  };

  void check(bool succeeded) const;
  GDALDataset& fileAt(std::string const& path);
  std::size_t countFeatures(std::string const& path) const;

  GdalErrors errors_;  // first: closing the files may still report to it
  std::size_t count_ = 0;
  GDALDriver* driver_ = nullptr;
  std::vector<File> files_;
};
