// A file that one of GDAL's drivers writes.
#pragma once

#include <ogrsf_frmts.h>

#include <cstddef>
#include <initializer_list>
#include <stdexcept>
#include <string>

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
class GdalFile {
 public:
  struct Field {
    char const* name;
    OGRFieldType type;
  };

  GdalFile(char const* driver, char const* path);

  /// Of places on WGS 84, longitude before latitude.
  OGRLayer& addLayer(char const* name, OGRwkbGeometryType type,
                     std::initializer_list<Field> fields);
  /// Adds a copy of the feature, as a new one.
  void append(OGRLayer& layer, OGRFeature& feature);
  /// To add what is no feature of a layer.
  GDALDataset& dataset() { return *file_; }
  /// Completes the file, and looks whether all is in it.
  void finish();

 private:
  void check(bool succeeded) const;
  std::size_t countFeatures() const;

  GdalErrors errors_;  // first: closing the file may still report to it
  std::string path_;
  std::size_t count_ = 0;
  GDALDriver* driver_ = nullptr;
  GDALDatasetUniquePtr file_;
};
