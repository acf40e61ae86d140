// The extension, loaded at run time as a host would load it.
#include <dlfcn.h>
#include <gmock/gmock.h>

#include <atomic>
#include <boost/exception/get_error_info.hpp>
#include <boost/exception/info.hpp>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <optional>
#include <thread>

#include "gateway/ElementObject.hpp"
#include "gateway/Exception.hpp"
#include "gateway/HostArray.hpp"
#include "gateway/scalarText.hpp"
#include "model/roadnetwork/RoadNetwork.hpp"
#include "osm/ReadError.hpp"
#include "support/ustring.hpp"
#include "tests/fixture/TemporaryFile.hpp"
#include "tests/fixture/Town.hpp"

using namespace std::string_literals;
using foundation::core::except::Exception;
using foundation::core::except::IMsgIDException;
using kb::zero::Model;
using testing::ElementsAre;
using velora::roadnetwork::RoadNetwork;

namespace {

using Array = std::unique_ptr<HostArray>;
using Inputs = std::vector<HostArray const*>;

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

// The identifier of the error that a call ends with, the text of another error, or "".
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

std::string scalarText(Array const& array, int strict) {
  std::string result;
  auto const error = errorOf([&] { result = getScalarTextAsStdString(array.get(), strict); });
  return error.empty() ? result : error;
}

std::ptrdiff_t entries(char const* folder) {
  return std::distance(std::filesystem::directory_iterator(folder), {});
}

class Gateway : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(library, nullptr) << dlerror();
    model = Model::create();
    network = RoadNetwork::create(model, {});
    modelArray = host::createElementArray(model);
    networkArray = host::createElementArray(network);
  }
  void TearDown() override { dlclose(library); }
  void call(int outputs, Inputs inputs) {
    using Entry = void(int, Array[], int, HostArray const*[]);
    auto* const entry = reinterpret_cast<Entry*>(dlsym(library, "importOSMRoadNetworkImpl"));
    entry(outputs, &result, static_cast<int>(inputs.size()), inputs.data());
  }
  /// Imports the file and returns the limits.
  std::vector<double> import(std::string const& path, int outputs = 1) {
    Array const name = text(path);
    call(outputs, {modelArray.get(), networkArray.get(), name.get()});
    std::size_t const count = host::numberOfElements(*result);
    EXPECT_EQ(host::dimensions(*result), (host::Dimensions{count, 1}));
    double const* const first = host::doubleData(*result);
    return {first, first + count};
  }

  void* library = dlopen(EXTENSION, RTLD_NOW | RTLD_LOCAL);
  Model model;
  RoadNetwork network;
  Array modelArray, networkArray, result;
  TemporaryFile const file{Town("a-b-c\n\nd").way("abc", "layer=1").way("bd").xml()};
  TemporaryFile const nothing{"<osm version='0.6'/>"};
};

}  // namespace

TEST_F(Gateway, ImportsAndReturnsTheLimits) {
  EXPECT_THAT(import(file.path()), ElementsAre(47.998, 48.0, 11.0, 11.004));
  EXPECT_EQ(network->getRoads().size(), 3u);
  SetUp();
  result = nullptr;  // filled even if nobody asked for it
  EXPECT_THAT(import(file.path(), 0), ElementsAre(47.998, 48.0, 11.0, 11.004));
  SetUp();
  EXPECT_THAT(import(nothing.path()), ElementsAre());
  EXPECT_TRUE(network->getGeoReference());
}

TEST_F(Gateway, ChecksItsArgumentsInOrder) {
  constexpr char const* tooManyOutputs = "host:arguments:TooManyOutputs";
  constexpr char const* notEnough = "host:arguments:NotEnoughInputs";
  constexpr char const* wrongType = "velora:veloralib:unsupportedDataType";
  constexpr char const* empty = "operation on an empty model handle";
  Array const path = text(file.path()), number = doubles();
  Array const none = strings({1, 1}, {std::nullopt}), two = strings({1, 2}, {u"a", u"b"});
  Array const noModel = emptyObjects<Model>(), noNetwork = emptyObjects<RoadNetwork>();
  std::vector<host::InterfacePointer> other(1), null(1);
  other[0] = host::ElementObject<RoadNetwork>::create(network);
  Array const otherObject =
      host::createObjectArray({1, 1}, Model::metaClass().name, std::move(other));
  Array const nullObject =
      host::createObjectArray({1, 1}, RoadNetwork::metaClass().name, std::move(null));
  auto const *m = modelArray.get(), *n = networkArray.get(), *p = path.get();
  struct Case {
    int outputs;
    Inputs inputs;
    std::string error;
  };
  // clang-format off
  Case const cases[] = {
      {2, {}, tooManyOutputs},               {1, {m, n, p, p}, "host:arguments:TooManyInputs"},
      {1, {}, notEnough},                    {1, {m, n}, notEnough},
      {1, {n, n, p}, wrongType},             {1, {nullptr, n, p}, wrongType},
      {1, {m, m, p}, wrongType},             {1, {m, number.get(), p}, wrongType},
      {1, {m, n, m}, wrongType},             {1, {m, n, nullptr}, wrongType},
      {1, {m, n, number.get()}, wrongType},  {1, {m, n, none.get()}, wrongType},
      {1, {m, n, two.get()}, wrongType},     {2, {m, n, p}, tooManyOutputs},
      {1, {m, noNetwork.get(), p}, empty},   {1, {noModel.get(), n, p}, empty},
      {1, {otherObject.get(), n, p}, empty}, {1, {m, nullObject.get(), p}, empty}};
  // clang-format on
  result = doubles();
  HostArray const* const before = result.get();
  for (Case const& c : cases) {
    EXPECT_EQ(errorOf([&] { call(c.outputs, c.inputs); }), c.error);
    EXPECT_EQ(result.get(), before);
    EXPECT_EQ(model->references(), 2u);    // the handle here and the array's
    EXPECT_EQ(network->references(), 4u);  // of two arrays here
  }
}

TEST_F(Gateway, TakesTextOfEveryShape) {
  std::string const missing = "Vorlan:string:MissingNotSupported";
  std::string const notText = "Vorlan:string:MustBeStringScalarOrCharacterVector";
  std::string const illFormed = "text that can't be converted: ill-formed UTF-16";
  struct Case {
    Array array;
    std::string lenient, strict;  // the text or the error
  };
  // clang-format off
  Case const cases[] = {
      {characters({1, 3}, u"abc"), "abc", "abc"},  {characters({0, 0}, u""), "", ""},
      {characters({1, 0}, u""), "", ""},           {characters({0, 1}, u""), "", notText},
      {characters({3, 1}, u"abc"), "abc", notText},
      {characters({2, 3}, u"abcdef"), "abcdef", notText},
      {characters({1, 3, 1}, u"abc"), "abc", notText},
      {characters({1, 4}, u"é中\U0001F6F6"), "é中\U0001F6F6", "é中\U0001F6F6"},
      {characters({1, 3}, u"a\0b"s), "a\0b"s, "a\0b"s},
      {characters({1, 1}, u"\xD800"), illFormed, illFormed},
      {strings({1, 1}, {u"abc"}), "abc", "abc"},   {strings({1, 1}, {u""}), "", ""},
      {strings({1, 1}, {{}}), missing, missing},   {strings({1, 2}, {u"", u"b"}), notText, notText},
      {strings({0, 0}, {}), notText, notText},     {strings({1, 1, 1}, {u"a"}), notText, notText},
      {doubles(), notText, notText},               {emptyObjects<Model>(), notText, notText},
      {nullptr, notText, notText}};
  // clang-format on
  for (Case const& c : cases) {
    SCOPED_TRACE(&c - cases);
    EXPECT_EQ(scalarText(c.array, 0), c.lenient);
    EXPECT_EQ(scalarText(c.array, 1), c.strict);
  }
}

TEST(ScalarText, EchoesNonAsciiNamesWhenAskedTo) {
  // The flag is read once in a process: each case needs one that starts afresh.
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  auto const echo = [](char const* value, std::string const& name) {
    setenv("QX_CHAR_ENCODING_DIAG", value, 1);
    Array const array = text(name);
    testing::internal::CaptureStdout();
    getScalarTextAsStdString(array.get(), 0);
    unsetenv("QX_CHAR_ENCODING_DIAG");
    getScalarTextAsStdString(array.get(), 0);
    return testing::internal::GetCapturedStdout();
  };
  std::string const line = "getScalarTextAsStdString called with non-ASCII input: Straße\n";
  for (char const* const value : {"", "0"}) {
    EXPECT_EXIT(std::exit(echo(value, "Straße") != line + line), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(std::exit(!echo(value, "Strasse").empty()), testing::ExitedWithCode(0), "");
  }
}

TEST_F(Gateway, ThrowsErrorsThatTheHostCatchesByType) {
  using Thrown = Exception<velora::veloralib::unsupportedDataType, std::exception, void>;
  try {
    call(1, {nullptr, nullptr, nullptr});
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
    EXPECT_EQ(copy->GetID(), error.GetID());
    using Note = boost::error_info<struct NoteTag, int>;
    error << Note(1);
    std::unique_ptr<Thrown const> const sharing(error.clone());
    *sharing << Note(2);
    EXPECT_EQ(*boost::get_error_info<Note>(error), 2);  // one container for both
    // A host may call by slot: clone, rethrow, two destructors, what, two convert_str, ...
    auto const slots = *reinterpret_cast<void* const* const*>(&error);
    auto const what = reinterpret_cast<char const* (*)(Thrown const*)>(slots[4]);
    EXPECT_EQ(what(&error), error.what());
    auto const getId = reinterpret_cast<std::string (*)(Thrown const*)>(slots[8]);
    EXPECT_EQ(getId(&error), error.GetID());
    EXPECT_EQ(copy->convert_str("\xC3\xA9\xFF"s), u"\u00e9\uFFFD");
  }
}

TEST_F(Gateway, LeavesNothingBehindWhateverHappens) {
  TemporaryFile const cut("<osm version='0.6'><node id='1' lat='1' lon='1'/>");
  std::ptrdiff_t const files = entries("/proc/self/fd");
  for (int round = 0; round < 20; ++round) {
    EXPECT_THROW(import("no such file"), OpenStreetMap::ReadError);
    EXPECT_THROW(import(cut.path()), OpenStreetMap::ReadError);
    EXPECT_EQ(network->getNodes().size(), 0u);
    EXPECT_FALSE(network->getGeoReference());
    import(file.path());
    dlclose(library);
    EXPECT_EQ(dlopen(EXTENSION, RTLD_NOW | RTLD_NOLOAD), nullptr) << "still loaded";
    EXPECT_EQ(network->getRoads().size(), 3u);
    EXPECT_EQ(model->references(), 2u);
    EXPECT_EQ(network->references(), 3u);
    modelArray.reset();
    networkArray.reset();
    network = RoadNetwork();
    model = Model();
    EXPECT_EQ(kb::zero::ModelElementImpl::liveCount(), 0u);
    EXPECT_EQ(entries("/proc/self/fd"), files);
    EXPECT_EQ(entries("/proc/self/task"), 1);
    library = dlopen(EXTENSION, RTLD_NOW | RTLD_LOCAL);
    SetUp();
  }
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
  EXPECT_EQ(errorOf([&] { import(nothing.path()); }), "_Map_base::at");
}

// A new road that joins an old one whose number the import does not know.
TEST_F(Gateway, JoinsRoadsOfBeforeOnlyWithinItsTables) {
  Town star("a-b-c-d-e-f-g");
  star.way("ab").way("ac").way("ad").way("ae").way("af").way("ag");
  import(TemporaryFile(star.xml()).path());
  TemporaryFile const more(Town("a-b-c-d-e-f-g-h").way("gh").xml());
  EXPECT_EQ(errorOf([&] { import(more.path()); }), "_Map_base::at");
}

TEST_F(Gateway, ImportsIntoModelsInSeveralThreads) {
  auto const& property = velora::roadnetwork::RoadImpl::startNodeProperty();
  std::size_t const references = property.references();
  std::string comb = "<osm version='0.6'>";
  for (int i = 1; i <= 1000; ++i) {
    std::string const id = "id='" + std::to_string(i) + "'";
    comb += "<node " + id + " lat='1' lon='1'/><way " + id + "><nd ref='1'/><nd ref='" +
            std::to_string(i) + "'/><tag k='highway' v='road'/></way>";
  }
  TemporaryFile const busy(comb + "</osm>");
  Array const name = text(busy.path());
  using Entry = void(int, Array[], int, HostArray const*[]);
  auto* const entry = reinterpret_cast<Entry*>(dlsym(library, "importOSMRoadNetworkImpl"));
  std::atomic<int> roads = 0;
  auto const work = [&] {
    for (int i = 0; i < 50; ++i) {
      Model const own = Model::create();
      RoadNetwork const ownNetwork = RoadNetwork::create(own, {});
      Array const m = host::createElementArray(own), n = host::createElementArray(ownNetwork);
      HostArray const* inputs[] = {m.get(), n.get(), name.get()};
      Array limits;
      entry(1, &limits, 3, inputs);
      roads += static_cast<int>(ownNetwork->getRoads().size());
    }
  };
  import(busy.path());
  std::thread first(work), second(work);
  first.join();
  second.join();
  EXPECT_EQ(roads, 100 * static_cast<int>(network->getRoads().size()));
  EXPECT_EQ(property.references(), references);  // shared by all models
}

TEST_F(Gateway, DestroyingTheNetworkEmptiesTheModel) {
  import(file.path());
  network->destroy();
  EXPECT_EQ(model->size(), 0u);
}

TEST(HostArrays, KnowTheirClassAndShape) {
  std::string const names[] = {"double", "char", "string", "kb.zero.Model"};
  Array const arrays[] = {doubles(), characters({3, 2}, u"abcdef"), strings({2, 1}, {u"a", {}}),
                          emptyObjects<Model>()};
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(host::numberOfElements(*arrays[i]), (std::vector<std::size_t>{1, 6, 2, 0}[i]));
    for (auto const& name : names) {
      EXPECT_EQ(host::isClass(arrays[i].get(), name.c_str()), name == names[i]);
    }
  }
  EXPECT_FALSE(host::isClass(nullptr, "double"));
  EXPECT_THROW(host::doubleData(*arrays[1]), std::bad_cast);
  EXPECT_THROW(characters({2, 2}, u"abc"), std::invalid_argument);
  EXPECT_THROW(characters({3}, u"abc"), std::invalid_argument);
  EXPECT_THROW(characters({std::size_t{1} << 32, std::size_t{1} << 32}, u""),
               std::invalid_argument);
}

TEST(HostArrays, HandOutInterfacesThatAreReleased) {
  Model const model = Model::create();
  {
    Array const array = host::createElementArray(model);
    EXPECT_EQ(model->references(), 2u);
    host::InterfacePointer const object = host::getObjectElement(*array, 0);
    auto const token = host::internClassName("kb.zero.Model");
    EXPECT_EQ(token, host::internClassName("kb.zero."s + "Model"));
    EXPECT_EQ(host::queryImplementation(object, token), model.get());
    EXPECT_EQ(host::queryImplementation(object, host::internClassName("kb.zero")), nullptr);
    EXPECT_EQ(host::queryImplementation(object, {}), nullptr);
    EXPECT_THROW(host::getObjectElement(*array, 1), std::out_of_range);
  }
  EXPECT_EQ(model->references(), 1u);
}
