// The host's values and what the extension asks of them: the interface that a host implements, or
// adapts its own arrays to.
//
// An array has a class, dimensions and elements in column order: the first index runs fastest.
// Every failure is an exception (see Exception.hpp); std::bad_alloc where memory runs out.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// An array. Made by the functions below, destroyed by the deleter of its std::unique_ptr.
class HostArray;

template <>
struct std::default_delete<HostArray> {
  /// The host's destroy operation.
  void operator()(HostArray* array) const noexcept;
};

namespace host {

using Dimensions = std::vector<std::size_t>;

enum class ClassCode {
  object = 1,
  string = 2,
  character = 4,  ///< UTF-16 code units
  real64 = 6,     ///< doubles
};
enum class Complexity { real = 0 };

/// A class name kept once in the process: two equal names have equal tokens. Null for no name.
class ClassName {
 public:
  ClassName() noexcept = default;
  explicit operator bool() const noexcept { return name_ != nullptr; }
  std::string const& text() const noexcept { return *name_; }  ///< not for a null token
  friend bool operator==(ClassName, ClassName) noexcept = default;

 private:
  friend ClassName internClassName(std::string name);
  std::string const* name_ = nullptr;
};

/// The token of a name. Safe to call from several threads.
ClassName internClassName(std::string name);

/// A counted interface to an object of the host's. A host derives from it, or uses
/// ElementObject.hpp for the elements of a model.
class ObjectInterface {
 public:
  ObjectInterface() = default;
  ObjectInterface(ObjectInterface const&) = delete;
  ObjectInterface& operator=(ObjectInterface const&) = delete;

  virtual void acquire() noexcept = 0;
  virtual void release() noexcept = 0;
  /// The implementation object of the class `name`, or null when this is of another class. The
  /// result is a pointer to exactly that class, such as kb::zero::Model::Impl*.
  virtual void* implementation(ClassName name) noexcept = 0;

 protected:
  virtual ~ObjectInterface() = default;
};

struct ReleaseInterface {
  void operator()(ObjectInterface* object) const noexcept { object->release(); }
};
/// An interface pointer that is released at the end of its scope.
using InterfacePointer = std::unique_ptr<ObjectInterface, ReleaseInterface>;

/// @name Making arrays
/// Each throws std::invalid_argument when the number of elements is not the product of the
/// dimensions, there are fewer than two dimensions, or their product is not a std::size_t.
/// @{
/// Doubles whose values are not set: the only numeric arrays there are.
std::unique_ptr<HostArray> createNumericArray(Dimensions dimensions, ClassCode code,
                                              Complexity complexity);
std::unique_ptr<HostArray> createCharacterArray(Dimensions dimensions, std::u16string characters);
/// An element without a value is a missing string.
std::unique_ptr<HostArray> createStringArray(Dimensions dimensions,
                                             std::vector<std::optional<std::u16string>> elements);
std::unique_ptr<HostArray> createObjectArray(Dimensions dimensions, std::string className,
                                             std::vector<InterfacePointer> elements);
/// @}

/// @name Asking arrays
/// @{
ClassCode classCode(HostArray const& array) noexcept;
/// Whether the array's class is exactly `name`: "double", "char", "string" or an object's class. A
/// null array is of no class.
bool isClass(HostArray const* array, char const* name) noexcept;
Dimensions const& dimensions(HostArray const& array) noexcept;
/// The product of the dimensions.
std::size_t numberOfElements(HostArray const& array) noexcept;
/// The doubles of a numeric array; std::bad_cast for another.
double* doubleData(HostArray& array);
double const* doubleData(HostArray const& array);
/// The code units of a character array, in column order; std::bad_cast for another.
std::u16string_view characterData(HostArray const& array);
/// Element `index` of an object array, acquired; std::bad_cast for another kind of array,
/// std::out_of_range for an element that it lacks.
InterfacePointer getObjectElement(HostArray const& array, std::size_t index);
/// The implementation object of that class behind an interface, or null.
void* queryImplementation(InterfacePointer const& object, ClassName name) noexcept;
/// @}

/// @name Wrong numbers of arguments
/// @{
[[noreturn]] void tooManyOutputs();
[[noreturn]] void tooManyInputs();
[[noreturn]] void notEnoughInputs();
/// @}

}  // namespace host

namespace Keldane::String {

/// One text of a string array.
struct Text {
  char16_t const* codeUnits;
  std::size_t length;
};

/// What a string array holds: a null element is a missing string.
struct StringArray {
  host::Dimensions dimensions;
  std::vector<Text const*> elements;
};

/// Whether the array is a string array.
bool isString(HostArray const* array) noexcept;
/// Its strings; std::bad_cast for another kind of array. The texts live as long as the array.
StringArray getString(HostArray const& array);
/// Whether these are the dimensions of a scalar: 1-by-1.
bool isScalar(host::Dimensions const& dimensions) noexcept;
/// Whether these are the dimensions of ordinary text: a row, or 0-by-0.
bool isRowOrEmpty(host::Dimensions const& dimensions) noexcept;
/// Whether the array is a string scalar that is not missing, or character text: with a
/// `characterTolerance` of 0 a row or 0-by-0, otherwise a character array of any shape.
bool isNonMissingScalarText(HostArray const* array, int characterTolerance) noexcept;

}  // namespace Keldane::String
