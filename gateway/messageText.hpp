// The message catalogue.
#pragma once

#include <string_view>

/// The English text of the error with this full identifier, such as
/// "velora:veloralib:unsupportedDataType"; a text that says so when the catalogue has none. The
/// result is a constant that ends in NUL.
char const* messageText(std::string_view fullIdentifier) noexcept;
