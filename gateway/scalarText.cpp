#include "gateway/scalarText.hpp"

#include <algorithm>
#include <cstdlib>
#include <iostream>

#include "gateway/Exception.hpp"
#include "support/ustring.hpp"

using foundation::core::except::raise;
using Vorlan::string::MissingNotSupported;
using Vorlan::string::MustBeStringScalarOrCharacterVector;

std::u16string_view getScalarText(HostArray const* text, int strict) {
  if (text == nullptr) raise<MustBeStringScalarOrCharacterVector>();
  if (host::classCode(*text) == host::ClassCode::character) {
    if (strict == 0 || Keldane::String::isRowOrEmpty(host::dimensions(*text))) {
      return host::characterData(*text);
    }
  } else if (Keldane::String::isString(text)) {
    Keldane::String::StringArray const strings = Keldane::String::getString(*text);
    if (!Keldane::String::isScalar(strings.dimensions))
      raise<MustBeStringScalarOrCharacterVector>();
    Keldane::String::Text const* const element = strings.elements.front();
    if (element == nullptr) raise<MissingNotSupported>();
    return {element->codeUnits, element->length};
  }
  raise<MustBeStringScalarOrCharacterVector>();
}

std::string getScalarTextAsStdString(HostArray const* text, int strict) {
  std::u16string_view const view = getScalarText(text, strict);
  static bool const diagnose = std::getenv("QX_CHAR_ENCODING_DIAG") != nullptr;
  if (diagnose &&
      std::any_of(view.begin(), view.end(), [](char16_t unit) { return unit > 0x7F; })) {
    std::cout << "getScalarTextAsStdString called with non-ASCII input: "
              << support::ustring_to_utf8(view.data(), view.size()) << std::endl;
  }
  support::codecvt_ustring_to_string const converter("UTF-8", 1);
  if (view.data() == nullptr || view.empty()) return {};
  return converter.do_convert(view.data(), view.size());
}
