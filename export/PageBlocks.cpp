#include "export/PageBlocks.hpp"

#include <libdeflate.h>
#include <sodium.h>

#include <array>
#include <new>

#include "export/NumberText.hpp"

namespace {

constexpr int compressionLevel = 9;

}  // namespace

std::string base64(std::string_view bytes) {
  constexpr int variant = sodium_base64_VARIANT_ORIGINAL;
  std::string text(sodium_base64_encoded_len(bytes.size(), variant), '\0');
  sodium_bin2base64(text.data(), text.size(), reinterpret_cast<unsigned char const*>(bytes.data()),
                    bytes.size(), variant);
  text.pop_back();  // the end of a C string
  return text;
}

std::string policyHash(std::string_view source) {
  std::array<char, crypto_hash_sha256_BYTES> hash{};
  crypto_hash_sha256(reinterpret_cast<unsigned char*>(hash.data()),
                     reinterpret_cast<unsigned char const*>(source.data()), source.size());
  return "'sha256-" + base64({hash.data(), hash.size()}) + "'";
}

PageBlocks::PageBlocks(BufferedFile& file)
    : file_(file),
      compressor_(libdeflate_alloc_compressor(compressionLevel), libdeflate_free_compressor) {
  if (!compressor_) throw std::bad_alloc();
}

void PageBlocks::bytes(std::string_view id, std::string_view content) {
  block(id, "", content);
}

void PageBlocks::column(std::string_view id, PageIntegers const& column) {
  NumberText const bytesPerValue(column.bytesPerValue());
  NumberText const size(column.size());
  block(id,
        " data-size=\"" + std::string(size) + "\" data-bytes=\"" + std::string(bytesPerValue) + '"',
        column.bytes());
}

void PageBlocks::column(std::string_view id, PageDecimals const& column) {
  std::string const name(id);
  this->column(id, column.scaled());
  if (column.exceptionPlaces().size() == 0) return;
  this->column(name + ".exceptionPlaces", column.exceptionPlaces());
  this->column(name + ".exceptionBits", column.exceptionBits());
}

void PageBlocks::column(std::string_view id, PageTexts const& column) {
  this->column(id, column.numbers());
  bytes(std::string(id) + ".texts", column.texts());
}

void PageBlocks::column(std::string_view id, PageLists const& column) {
  this->column(std::string(id) + ".sizes", column.sizes);
  this->column(id, column.values);
}

void PageBlocks::block(std::string_view id, std::string_view attributes, std::string_view content) {
  std::string packed(libdeflate_gzip_compress_bound(compressor_.get(), content.size()), '\0');
  packed.resize(libdeflate_gzip_compress(compressor_.get(), content.data(), content.size(),
                                         packed.data(), packed.size()));
  file_.write("<script type=\"application/octet-stream\" id=\"");
  file_.write(id);
  file_.write("\"");
  file_.write(attributes);
  file_.write(">");
  file_.write(base64(packed));
  file_.write("</script>\n");
}
