// The extension, loaded at run time as a host would load it.
#include <dlfcn.h>
#include <gmock/gmock.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "gateway/ElementObject.hpp"
#include "gateway/Exception.hpp"
#include "gateway/HostArray.hpp"
#include "gateway/scalarText.hpp"
#include "model/roadnetwork/RoadNetwork.hpp"
#include "osm/ReadError.hpp"
#include "support/ustring.hpp"
#include "tests/fixture/TemporaryFile.hpp"
#include "tests/fixture/Town.hpp"

using foundation::core::except::Exception;
using foundation::core::except::IMsgIDException;
using kb::zero::Model;
using testing::ElementsAre;
using velora::roadnetwork::RoadNetwork;

namespace {

using Array = std::unique_ptr<HostArray>;
using Entry = void(int, Array[], int, HostArray const*[]);

constexpr char const* wrongType = "velora:veloralib:unsupportedDataType";
constexpr char const* missing = "Vorlan:string:MissingNotSupported";
constexpr char const* notText = "Vorlan:string:MustBeStringScalarOrCharacterVector";

class Extension {
 public:
  Extension() : library_(dlopen(EXTENSION, RTLD_NOW | RTLD_LOCAL)) {
    if (library_ == nullptr) throw std::runtime_error(dlerror());
    entry_ = reinterpret_cast<Entry*>(dlsym(library_, "importOSMRoadNetworkImpl"));
  }
  Extension(Extension const&) = delete;
  Extension& operator=(Extension const&) = delete;
  ~Extension() { dlclose(library_); }

  void call(int outputs, Array& result, std::vector<HostArray const*> inputs) const {
    entry_(outputs, &result, static_cast<int>(inputs.size()), inputs.data());
  }

 private:
  void* library_;
  Entry* entry_;
};

Array characters(host::Dimensions size, std::u16string const& units) {
  return host::createCharacterArray(std::move(size), units);
}
Array text(std::string const& utf8) {
  std::u16string const units = support::to_ustring(utf8);
  return characters({1, units.size()}, units);
}
Array strings(host::Dimensions size, std::vector<std::optional<std::u16string>> elements) {
  return host::createStringArray(std::move(size), std::move(elements));
}
Array doubles() {
  return host::createNumericArray({1, 1}, host::ClassCode::real64, host::Complexity::real);
}
template <class X>
Array emptyObjects() {
  return host::createObjectArray({0, 0}, X::metaClass().name, {});
}

/// The identifier of the error that a call ends with, the start of another error's text, or "".
std::string errorOf(std::function<void()> const& call) {
  try {
    call();
    return "";
  } catch (IMsgIDException const& error) {
    return error.GetID();
  } catch (std::exception const& error) {
    return error.what();
  }
}

std::string scalarText(HostArray const* array, int strict) {
  std::string result;
  std::string const error = errorOf([&] { result = getScalarTextAsStdString(array, strict); });
  return error.empty() ? result : error;
}

std::size_t openFiles() {
  auto const files = std::filesystem::directory_iterator("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

class Gateway : public testing::Test {
 protected:
  /// Imports the file and returns the limits; the other arguments are as they should be.
  std::vector<double> import(std::string const& path) {
    Array const name = text(path);
    extension.call(1, result, {modelArray.get(), networkArray.get(), name.get()});
    double const* const first = host::doubleData(*result);
    EXPECT_EQ(host::dimensions(*result).size(), 2u);
    EXPECT_EQ(host::dimensions(*result)[1], 1u);
    return {first, first + host::dimensions(*result)[0]};
  }

  Extension extension;
  Model model = Model::create();
  RoadNetwork network = RoadNetwork::create(model, {});
  Array modelArray = host::createElementArray(model);
  Array networkArray = host::createElementArray(network);
  Array result;
  TemporaryFile file{Town("a-b-c\n\nd").way("abc", "layer=1").way("bd").xml()};
};

}  // namespace

TEST_F(Gateway, ImportsAndReturnsTheLimits) {
  EXPECT_THAT(import(file.path()), ElementsAre(47.998, 48.0, 11.0, 11.004));
  EXPECT_EQ(network->getRoads().size(), 3u);
  Array const name = text(file.path());
  result = nullptr;
  extension.call(0, result, {modelArray.get(), networkArray.get(), name.get()});
  EXPECT_EQ(host::numberOfElements(*result), 4u);  // slot 0 is filled even if nobody asked
}

TEST_F(Gateway, ReturnsNoLimitsForAFileWithoutAny) {
  TemporaryFile const nothing("<osm version='0.6'/>");
  EXPECT_THAT(import(nothing.path()), ElementsAre());
  EXPECT_EQ(host::dimensions(*result), (host::Dimensions{0, 1}));
  EXPECT_TRUE(network->getGeoReference());
}

TEST_F(Gateway, ChecksItsArgumentsInOrder) {
  Array const path = text(file.path());
  Array const number = doubles();
  Array const none = strings({1, 1}, {std::nullopt});
  Array const two = strings({1, 2}, {u"a", u"b"});
  Array const noModel = emptyObjects<Model>();
  Array const noNetwork = emptyObjects<RoadNetwork>();
  HostArray const* const m = modelArray.get();
  HostArray const* const n = networkArray.get();
  HostArray const* const p = path.get();
  struct Case {
    int outputs;
    std::vector<HostArray const*> inputs;
    std::string error;
  };
  std::vector<Case> const cases{{2, {}, "host:arguments:TooManyOutputs"},
                                {1, {}, "host:arguments:NotEnoughInputs"},
                                {1, {m, n}, "host:arguments:NotEnoughInputs"},
                                {1, {m, n, p, p}, "host:arguments:TooManyInputs"},
                                {1, {n, n, p}, wrongType},
                                {1, {nullptr, n, p}, wrongType},
                                {1, {m, m, p}, wrongType},
                                {1, {m, number.get(), p}, wrongType},
                                {1, {m, n, m}, wrongType},
                                {1, {m, n, nullptr}, wrongType},
                                {1, {m, n, number.get()}, wrongType},
                                {1, {m, n, none.get()}, wrongType},
                                {1, {m, n, two.get()}, wrongType},
                                {1, {m, noNetwork.get(), p}, "operation on an empty model handle"},
                                {1, {noModel.get(), n, p}, "operation on an empty model handle"}};
  result = doubles();
  HostArray const* const before = result.get();
  for (Case const& c : cases) {
    EXPECT_EQ(errorOf([&] { extension.call(c.outputs, result, c.inputs); }), c.error);
    EXPECT_EQ(result.get(), before);
    EXPECT_EQ(model->references(), 2u);  // the handle here and the array's
    EXPECT_EQ(network->references(), 3u);
  }
}

TEST_F(Gateway, TakesTextOfEveryShape) {
  struct Case {
    Array array;
    std::string lenient;  // the text, or the error, with strict 0
    std::string strict;
  };
  std::vector<Case> cases;
  auto const add = [&](Array array, std::string const& lenient, std::string const& strict) {
    cases.push_back({std::move(array), lenient, strict});
  };
  add(nullptr, notText, notText);
  add(characters({1, 3}, u"abc"), "abc", "abc");
  add(characters({0, 0}, u""), "", "");
  add(characters({1, 0}, u""), "", "");
  add(characters({0, 1}, u""), "", notText);
  add(characters({2, 3}, u"abcdef"), "abcdef", notText);
  add(characters({3, 1}, u"abc"), "abc", notText);
  add(characters({1, 3, 1}, u"abc"), "abc", notText);
  add(characters({1, 4}, u"\u00e9\u4e2d\U0001F6F6"), "\u00e9\u4e2d\U0001F6F6",
      "\u00e9\u4e2d\U0001F6F6");
  add(characters({1, 3}, std::u16string(u"a\0b", 3)), std::string("a\0b", 3),
      std::string("a\0b", 3));
  add(characters({1, 1}, u"\xD800"), "text that can't be converted: ill-formed UTF-16",
      "text that can't be converted: ill-formed UTF-16");
  add(strings({1, 1}, {u"abc"}), "abc", "abc");
  add(strings({1, 1}, {u""}), "", "");
  add(strings({1, 1}, {std::nullopt}), missing, missing);
  add(strings({1, 2}, {u"a", u"b"}), notText, notText);
  add(strings({0, 0}, {}), notText, notText);
  add(strings({1, 1, 1}, {u"a"}), notText, notText);
  add(doubles(), notText, notText);
  add(emptyObjects<Model>(), notText, notText);
  for (Case const& c : cases) {
    SCOPED_TRACE(&c - cases.data());
    EXPECT_EQ(scalarText(c.array.get(), 0), c.lenient);
    EXPECT_EQ(scalarText(c.array.get(), 1), c.strict);
  }
}

TEST_F(Gateway, NeverOpensAnotherFile) {
  std::string const path = file.path();
  std::u16string const units = support::to_ustring(path);
  for (std::u16string const& name :
       {units + std::u16string(u"\0.txt", 5), units + u"\xDC00", std::u16string()}) {
    Array const array = characters({1, name.size()}, name);
    EXPECT_NE(errorOf([&] {
                extension.call(1, result, {modelArray.get(), networkArray.get(), array.get()});
              }),
              "");
    EXPECT_EQ(network->getNodes().size(), 0u);
  }
}

TEST_F(Gateway, EchoesNonAsciiNamesWhenAskedTo) {
  // The flag is read once in a process: each case needs one that starts afresh.
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  for (auto const& [name, echo] : {std::pair{"Stra\u00dfe", true}, std::pair{"Strasse", false}}) {
    for (char const* const value : {"", "0"}) {
      EXPECT_EXIT(
          {
            setenv("QX_CHAR_ENCODING_DIAG", value, 1);
            testing::internal::CaptureStdout();
            Array const array = text(name);
            getScalarTextAsStdString(array.get(), 0);
            unsetenv("QX_CHAR_ENCODING_DIAG");
            getScalarTextAsStdString(array.get(), 0);
            std::string const line =
                "getScalarTextAsStdString called with non-ASCII input: " + std::string(name) + "\n";
            std::exit(testing::internal::GetCapturedStdout() == (echo ? line + line : "") ? 0 : 1);
          },
          testing::ExitedWithCode(0), "");
    }
  }
}

TEST_F(Gateway, ThrowsErrorsThatTheHostCatchesByType) {
  using Thrown = Exception<velora::veloralib::unsupportedDataType, std::exception, void>;
  Array const path = text(file.path());
  try {
    extension.call(1, result, {networkArray.get(), networkArray.get(), path.get()});
    FAIL();
  } catch (Thrown const& error) {
    EXPECT_EQ(error.GetBaseMsgIDObj().key, "unsupportedDataType");
    EXPECT_TRUE(error.GetBaseMsgIDObj().arguments.empty());
    EXPECT_THAT(error.what(), testing::HasSubstr("unsupported type"));
    EXPECT_EQ(support::ustring_to_utf8(error.GetUnicodeMessageTxt()), error.what());
    EXPECT_EQ(static_cast<std::exception const&>(error).what(),
              static_cast<IMsgIDException const&>(error).what());
    std::unique_ptr<Thrown const> const copy(error.clone());
    EXPECT_THROW(copy->rethrow(), Thrown);
    EXPECT_EQ(copy->GetID(), wrongType);
    EXPECT_EQ(copy->convert_str(std::string("\xC3\xA9\xFF")), u"\u00e9\uFFFD");
  }
  EXPECT_THROW(import("no such file"), OpenStreetMap::ReadError);
}

TEST_F(Gateway, LeavesNothingBehindWhateverHappens) {
  TemporaryFile const cut("<osm version='0.6'><node id='1' lat='1' lon='1'/>");
  std::size_t const files = openFiles();
  for (int round = 0; round < 3; ++round) {
    Extension const again;
    EXPECT_THROW(import(cut.path()), OpenStreetMap::ReadError);
    import(file.path());
    EXPECT_EQ(openFiles(), files);
    EXPECT_EQ(model->references(), 2u);
    EXPECT_EQ(network->references(), 3u);
  }
  std::size_t const live = kb::zero::ModelElementImpl::liveCount();
  network = RoadNetwork();
  networkArray.reset();
  EXPECT_EQ(kb::zero::ModelElementImpl::liveCount(), live);  // the model holds it all
  model = Model();
  modelArray.reset();
  EXPECT_EQ(kb::zero::ModelElementImpl::liveCount(), 0u);
}

// A second import adds its roads to what is there: Nodes are shared by id, roads keep their numbers
// from 1, so that two roads have each number.
TEST_F(Gateway, ImportsIntoANetworkThatIsNotEmpty) {
  import(file.path());
  auto const first = network->getRoads();
  import(file.path());
  EXPECT_EQ(network->getNodes().size(), 4u);
  EXPECT_EQ(network->getRoads().size(), 2 * first.size());
  EXPECT_EQ(network->getNodes()[2]->getOutgoingRoads().size(), 4u);
  for (auto const& road : first) EXPECT_EQ(road->getRoadSegments().size(), 2u);
  // The roads of before are unknown to an import that does not make roads with their numbers.
  TemporaryFile const nothing("<osm version='0.6'/>");
  EXPECT_EQ(errorOf([&] { import(nothing.path()); }), "_Map_base::at");
}

TEST(GatewayLibrary, LoadsImportsAndUnloadsAgainAndAgain) {
  TemporaryFile const file(Town("a-b").way("ab").xml());
  Array const path = text(file.path());
  for (int round = 0; round < 20; ++round) {
    Model const model = Model::create();
    RoadNetwork const network = RoadNetwork::create(model, {});
    Array const modelArray = host::createElementArray(model);
    Array const networkArray = host::createElementArray(network);
    Array result;
    {
      Extension const extension;
      extension.call(1, result, {modelArray.get(), networkArray.get(), path.get()});
    }
    EXPECT_EQ(dlopen(EXTENSION, RTLD_NOW | RTLD_NOLOAD), nullptr) << "still loaded";
    EXPECT_EQ(network->getRoads().size(), 1u);
    EXPECT_EQ(host::numberOfElements(*result), 4u);
    auto const threads = std::filesystem::directory_iterator("/proc/self/task");
    EXPECT_EQ(std::distance(begin(threads), end(threads)), 1);
  }
}

TEST(HostArrays, KnowTheirClassAndShape) {
  struct Case {
    Array array;
    char const* name;
    host::ClassCode code;
    std::size_t elements;
  };
  std::vector<Case> cases;
  cases.push_back({doubles(), "double", host::ClassCode::real64, 1});
  cases.push_back({characters({2, 2}, u"abcd"), "char", host::ClassCode::character, 4});
  cases.push_back({strings({2, 1}, {u"a", {}}), "string", host::ClassCode::string, 2});
  cases.push_back({emptyObjects<Model>(), "kb.zero.Model", host::ClassCode::object, 0});
  for (Case const& c : cases) {
    EXPECT_EQ(host::classCode(*c.array), c.code);
    EXPECT_EQ(host::numberOfElements(*c.array), c.elements);
    for (Case const& other : cases) {
      EXPECT_EQ(host::isClass(c.array.get(), other.name), c.name == other.name);
    }
    if (c.code != host::ClassCode::real64) {
      EXPECT_THROW(host::doubleData(*c.array), std::bad_cast);
    }
  }
  EXPECT_FALSE(host::isClass(nullptr, "double"));
  EXPECT_THROW(characters({2, 2}, u"abc"), std::invalid_argument);
  EXPECT_THROW(characters({3}, u"abc"), std::invalid_argument);
  EXPECT_THROW(host::createNumericArray({1, 1}, host::ClassCode::character, {}),
               std::invalid_argument);
}

TEST(HostArrays, HandOutInterfacesThatAreReleased) {
  Model const model = Model::create();
  {
    Array const array = host::createElementArray(model);
    EXPECT_EQ(model->references(), 2u);
    host::InterfacePointer const object = host::getObjectElement(*array, 0);
    auto const token = host::internClassName("kb.zero.Model");
    EXPECT_EQ(token, host::internClassName(std::string("kb.zero.") + "Model"));
    EXPECT_EQ(host::queryImplementation(object, token), model.get());
    EXPECT_EQ(host::queryImplementation(object, host::internClassName("kb.zero")), nullptr);
    EXPECT_EQ(host::queryImplementation(object, {}), nullptr);
    EXPECT_THROW(host::getObjectElement(*array, 1), std::out_of_range);
  }
  EXPECT_EQ(model->references(), 1u);
}
