#include "gateway/messageText.hpp"

#include <algorithm>
#include <iterator>

namespace {

struct Message {
  std::string_view identifier;
  char const* text;
};

constexpr Message catalogue[] = {
    {"velora:veloralib:unsupportedDataType",
     "An argument has an unsupported type: a kb.zero.Model, a velora.roadnetwork.RoadNetwork and a "
     "file name are expected."},
    {"Vorlan:string:MissingNotSupported", "The text is a missing string; a value is needed."},
    {"Vorlan:string:MustBeStringScalarOrCharacterVector",
     "The text must be a string scalar or a character vector."},
    {"host:arguments:TooManyOutputs", "Too many output arguments."},
    {"host:arguments:TooManyInputs", "Too many input arguments."},
    {"host:arguments:NotEnoughInputs", "Not enough input arguments."},
};

}  // namespace

char const* messageText(std::string_view fullIdentifier) noexcept {
  auto const* const found =
      std::find_if(std::begin(catalogue), std::end(catalogue),
                   [&](Message const& message) { return message.identifier == fullIdentifier; });
  return found != std::end(catalogue) ? found->text : "An error without a text in the catalogue.";
}
