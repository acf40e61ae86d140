// Text arguments.
#pragma once

#include <string>
#include <string_view>

#include "gateway/HostArray.hpp"

/// The characters of a text argument: a string scalar, or a character array, which must be a row or
/// 0-by-0 unless `strict` is 0. The view points into the array. Throws
/// MustBeStringScalarOrCharacterVector for anything else, null included, and MissingNotSupported
/// for a missing string (both Exception.hpp).
std::u16string_view getScalarText(HostArray const* text, int strict);

/// The same as UTF-8. Throws std::range_error for ill-formed UTF-16. When the environment variable
/// QX_CHAR_ENCODING_DIAG was set as this was first called, non-ASCII text is also echoed to
/// standard output.
std::string getScalarTextAsStdString(HostArray const* text, int strict);
