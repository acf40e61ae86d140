// The identifiers of errors.
#pragma once

#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace foundation::core::except {

/// What kind of error it is, as a component and a key, and what its message speaks of.
struct MessageId {
  std::vector<std::variant<long, std::string, std::u16string>> arguments;
  std::string component;  ///< such as "velora:veloralib"
  std::string key;        ///< such as "unsupportedDataType"

  MessageId(std::string componentName, std::string keyName)
      : component(std::move(componentName)), key(std::move(keyName)) {}
};

/// Component, colon, key: "velora:veloralib:unsupportedDataType".
inline std::string fullIdentifier(MessageId const& id) {
  return id.component + ':' + id.key;
}

}  // namespace foundation::core::except

// Each identifier is a type, so that each error can be caught by type.

namespace velora::veloralib {
/// An argument is of the wrong class, or is not text where text is wanted.
struct unsupportedDataType : foundation::core::except::MessageId {
  unsupportedDataType() : MessageId("velora:veloralib", "unsupportedDataType") {}
};
}  // namespace velora::veloralib

namespace Vorlan::string {
/// A string scalar holds the missing value.
struct MissingNotSupported : foundation::core::except::MessageId {
  MissingNotSupported() : MessageId("Vorlan:string", "MissingNotSupported") {}
};
/// A text argument is neither a string scalar nor acceptable characters.
struct MustBeStringScalarOrCharacterVector : foundation::core::except::MessageId {
  MustBeStringScalarOrCharacterVector()
      : MessageId("Vorlan:string", "MustBeStringScalarOrCharacterVector") {}
};
}  // namespace Vorlan::string

namespace host::arguments {
/// The caller asked for more results, or gave more or fewer arguments, than there are.
struct TooManyOutputs : foundation::core::except::MessageId {
  TooManyOutputs() : MessageId("host:arguments", "TooManyOutputs") {}
};
struct TooManyInputs : foundation::core::except::MessageId {
  TooManyInputs() : MessageId("host:arguments", "TooManyInputs") {}
};
struct NotEnoughInputs : foundation::core::except::MessageId {
  NotEnoughInputs() : MessageId("host:arguments", "NotEnoughInputs") {}
};
}  // namespace host::arguments
