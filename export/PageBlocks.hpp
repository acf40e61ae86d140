// The parts of a page that are not for people's eyes.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "export/BufferedFile.hpp"
#include "export/PageColumns.hpp"

struct libdeflate_compressor;

/// Bytes as base64 (RFC 4648, with padding).
std::string base64(std::string_view bytes);
/// What a content security policy calls a script or style that it allows.
std::string policyHash(std::string_view source);

/// Writes blocks of data: script elements that no browser runs, each with an id of its own, whose
/// text is the base64 of gzip (RFC 1952).
class PageBlocks {
 public:
  explicit PageBlocks(BufferedFile& file);

  void bytes(std::string_view id, std::string_view content);
  /// With `data-bytes`, how many there are of each value.
  void column(std::string_view id, PageIntegers const& column);
  /// As two or three more columns, see there.
  void column(std::string_view id, PageDecimals const& column);
  void column(std::string_view id, PageTexts const& column);
  void column(std::string_view id, PageLists const& column);

 private:
  void block(std::string_view id, std::string_view attributes, std::string_view content);

  BufferedFile& file_;
  std::unique_ptr<libdeflate_compressor, void (*)(libdeflate_compressor*)> compressor_;
};
