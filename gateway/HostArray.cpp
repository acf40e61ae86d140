#include "gateway/HostArray.hpp"

#include <functional>
#include <mutex>
#include <numeric>
#include <stdexcept>
#include <typeinfo>
#include <unordered_set>
#include <utility>
#include <variant>

#include "gateway/Exception.hpp"

namespace {

using Keldane::String::Text;

struct Doubles {
  std::unique_ptr<double[]> values;
};
struct Characters {
  std::u16string codeUnits;
};
struct Strings {
  std::vector<std::optional<std::u16string>> elements;
  std::vector<Text> texts;  // one an element; nothing for a missing one
};
struct Objects {
  std::string className;
  std::vector<host::InterfacePointer> elements;
};

}  // namespace

class HostArray {
 public:
  using Content = std::variant<Objects, Strings, Characters, Doubles>;

  HostArray(host::Dimensions dimensions, Content content)
      : dimensions_(std::move(dimensions)), content_(std::move(content)) {}

  host::Dimensions const& dimensions() const noexcept { return dimensions_; }

  template <class Kind>
  Kind const* contentAs() const noexcept {
    return std::get_if<Kind>(&content_);
  }
  /// Throws std::bad_cast.
  template <class Kind>
  Kind const& content() const {
    Kind const* const found = contentAs<Kind>();
    if (found == nullptr) throw std::bad_cast();
    return *found;
  }

 private:
  host::Dimensions dimensions_;
  Content content_;
};

void std::default_delete<HostArray>::operator()(HostArray* array) const noexcept {
  delete array;
}

namespace host {
namespace {

std::size_t product(Dimensions const& dimensions) noexcept {
  return std::accumulate(dimensions.begin(), dimensions.end(), std::size_t{1}, std::multiplies<>());
}

std::size_t checkedProduct(Dimensions const& dimensions) {
  if (dimensions.size() < 2) throw std::invalid_argument("an array has at least two dimensions");
  std::size_t count = 1;
  for (std::size_t const dimension : dimensions) {
    if (__builtin_mul_overflow(count, dimension, &count)) {
      throw std::invalid_argument("the dimensions are too large");
    }
  }
  return count;
}

std::unique_ptr<HostArray> create(Dimensions dimensions, HostArray::Content content,
                                  std::size_t elements) {
  if (elements != checkedProduct(dimensions)) {
    throw std::invalid_argument("the number of elements does not fit the dimensions");
  }
  return std::make_unique<HostArray>(std::move(dimensions), std::move(content));
}

}  // namespace

ClassName internClassName(std::string name) {
  static std::mutex mutex;
  static std::unordered_set<std::string> names;  // whose elements never move
  std::lock_guard const lock(mutex);
  ClassName token;
  token.name_ = &*names.insert(std::move(name)).first;
  return token;
}

std::unique_ptr<HostArray> createNumericArray(Dimensions dimensions, ClassCode code,
                                              Complexity complexity) {
  if (code != ClassCode::real64 || complexity != Complexity::real) {
    throw std::invalid_argument("only arrays of real doubles can be made");
  }
  std::size_t const count = checkedProduct(dimensions);
  Doubles content{std::make_unique_for_overwrite<double[]>(count)};
  return create(std::move(dimensions), std::move(content), count);
}

std::unique_ptr<HostArray> createCharacterArray(Dimensions dimensions, std::u16string characters) {
  std::size_t const count = characters.size();
  return create(std::move(dimensions), Characters{std::move(characters)}, count);
}

std::unique_ptr<HostArray> createStringArray(Dimensions dimensions,
                                             std::vector<std::optional<std::u16string>> elements) {
  std::size_t const count = elements.size();
  Strings content{std::move(elements), {}};
  for (auto const& element : content.elements) {
    content.texts.push_back(element ? Text{element->data(), element->size()} : Text{});
  }
  return create(std::move(dimensions), std::move(content), count);
}

std::unique_ptr<HostArray> createObjectArray(Dimensions dimensions, std::string className,
                                             std::vector<InterfacePointer> elements) {
  std::size_t const count = elements.size();
  return create(std::move(dimensions), Objects{std::move(className), std::move(elements)}, count);
}

ClassCode classCode(HostArray const& array) noexcept {
  if (array.contentAs<Doubles>() != nullptr) return ClassCode::real64;
  if (array.contentAs<Characters>() != nullptr) return ClassCode::character;
  if (array.contentAs<Strings>() != nullptr) return ClassCode::string;
  return ClassCode::object;
}

bool isClass(HostArray const* array, char const* name) noexcept {
  if (array == nullptr) return false;
  switch (classCode(*array)) {
    case ClassCode::real64:
      return std::string_view("double") == name;
    case ClassCode::character:
      return std::string_view("char") == name;
    case ClassCode::string:
      return std::string_view("string") == name;
    case ClassCode::object:
      return array->contentAs<Objects>()->className == name;
  }
  return false;
}

Dimensions const& dimensions(HostArray const& array) noexcept {
  return array.dimensions();
}

std::size_t numberOfElements(HostArray const& array) noexcept {
  return product(array.dimensions());
}

double* doubleData(HostArray& array) {
  return array.content<Doubles>().values.get();
}

double const* doubleData(HostArray const& array) {
  return array.content<Doubles>().values.get();
}

std::u16string_view characterData(HostArray const& array) {
  return array.content<Characters>().codeUnits;
}

InterfacePointer getObjectElement(HostArray const& array, std::size_t index) {
  ObjectInterface* const object = array.content<Objects>().elements.at(index).get();
  if (object != nullptr) object->acquire();
  return InterfacePointer(object);
}

void* queryImplementation(InterfacePointer const& object, ClassName name) noexcept {
  return object == nullptr ? nullptr : object->implementation(name);
}

void tooManyOutputs() {
  foundation::core::except::raise<arguments::TooManyOutputs>();
}
void tooManyInputs() {
  foundation::core::except::raise<arguments::TooManyInputs>();
}
void notEnoughInputs() {
  foundation::core::except::raise<arguments::NotEnoughInputs>();
}

}  // namespace host

namespace Keldane::String {

bool isScalar(host::Dimensions const& dimensions) noexcept {
  return dimensions.size() == 2 && dimensions[0] == 1 && dimensions[1] == 1;
}

bool isRowOrEmpty(host::Dimensions const& dimensions) noexcept {
  return dimensions.size() == 2 &&
         (dimensions[0] == 1 || (dimensions[0] == 0 && dimensions[1] == 0));
}

bool isString(HostArray const* array) noexcept {
  return array != nullptr && array->contentAs<Strings>() != nullptr;
}

StringArray getString(HostArray const& array) {
  auto const& strings = array.content<Strings>();
  StringArray result{array.dimensions(), {}};
  for (std::size_t i = 0; i < strings.elements.size(); ++i) {
    result.elements.push_back(strings.elements[i] ? &strings.texts[i] : nullptr);
  }
  return result;
}

bool isNonMissingScalarText(HostArray const* array, int characterTolerance) noexcept {
  if (array == nullptr) return false;
  if (array->contentAs<Characters>() != nullptr) {
    return characterTolerance != 0 || isRowOrEmpty(array->dimensions());
  }
  auto const* const strings = array->contentAs<Strings>();
  return strings != nullptr && isScalar(array->dimensions()) &&
         strings->elements.front().has_value();
}

}  // namespace Keldane::String
