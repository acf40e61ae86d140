// The extension, loaded at run time as a host would load it.
#include <dlfcn.h>
#include <gmock/gmock.h>

#include <atomic>
#include <boost/exception/get_error_info.hpp>
#include <boost/exception/info.hpp>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <thread>

#include "gateway/ElementObject.hpp"
#include "gateway/Exception.hpp"
#include "gateway/importOSMRoadNetworkImpl.hpp"
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

constexpr auto characters = &host::createCharacterArray;
constexpr auto strings = &host::createStringArray;
Array text(std::string const& utf8) {
  std::u16string const units = support::to_ustring(utf8);
  return characters({1, units.size()}, units);
}
Array doubles() {
  return host::createNumericArray({1, 1}, host::ClassCode::real64, host::Complexity::real);
}
template <class X>
Array objects(std::size_t count, host::InterfacePointer first = nullptr) {
  std::vector<host::InterfacePointer> elements(count);
  if (first != nullptr) elements[0] = std::move(first);
  return host::createObjectArray({count, 1}, X::metaClass().name, std::move(elements));
}

// What a call results in: its text, the identifier of its error, or the text of another error.
std::string outcome(std::function<std::string()> const& call) {
  try {
    return call();
  } catch (IMsgIDException const& error) {
    return error.GetID();
  } catch (std::exception const& error) {
    return error.what();
  }
}

std::ptrdiff_t entriesOf(char const* folder) {
  return std::distance(std::filesystem::directory_iterator(folder), {});
}

decltype(&importOSMRoadNetworkImpl) entry = nullptr;  // while the extension is loaded

/// What a host passes to the extension, and what comes back.
struct Workspace {
  std::string call(int outputs, Inputs inputs) {
    entry(outputs, &result, static_cast<int>(inputs.size()), inputs.data());
    return "done";
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

  Model model = Model::create();
  RoadNetwork network = RoadNetwork::create(model, {});
  Array modelArray = host::createElementArray(model);
  Array networkArray = host::createElementArray(network);
  Array result;
};

class Gateway : public testing::Test, protected Workspace {
 protected:
  Gateway() { load(); }
  ~Gateway() override { dlclose(library); }
  void load() {
    library = dlopen(EXTENSION, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) throw std::runtime_error(dlerror());
    entry = reinterpret_cast<decltype(entry)>(dlsym(library, "importOSMRoadNetworkImpl"));
  }

  void* library = nullptr;
  TemporaryFile const file{Town("a-b-c\n\nd").way("abc", "layer=1").way("bd").xml()};
  TemporaryFile const nothing{"<osm version='0.6'/>"};
  TemporaryFile const star{
      Town("a-b-c-d-e-f-g-h").way("ab").way("ac").way("ad").way("ae").way("af").way("ag").xml()};
};

}  // namespace

TEST_F(Gateway, ImportsAndReturnsTheLimits) {
  for (int const outputs : {1, 0}) {  // filled even if nobody asked for it
    Workspace own;
    EXPECT_THAT(own.import(file.path(), outputs), ElementsAre(47.998, 48.0, 11.0, 11.004));
    EXPECT_EQ(own.network->getRoads().size(), 3u);
    own.network->destroy();
    EXPECT_EQ(own.model->size(), 0u);
  }
  EXPECT_THAT(import(nothing.path()), ElementsAre());
  EXPECT_TRUE(network->getGeoReference());
}

TEST_F(Gateway, ChecksItsArgumentsInOrder) {
  std::map<char, Array> given;
  given['m'] = std::move(modelArray);
  given['n'] = std::move(networkArray);
  given['p'] = text(file.path());
  given['d'] = doubles();
  given['?'] = strings({1, 1}, {std::nullopt});
  given['2'] = strings({1, 2}, {u"a", u"b"});
  given['M'] = objects<Model>(0);
  given['N'] = objects<RoadNetwork>(0);
  given['o'] = objects<Model>(1, host::ElementObject<RoadNetwork>::create(network));
  given['0'] = objects<RoadNetwork>(1);
  // By error: the number of outputs and the inputs, '-' for a null one.
  std::pair<std::string, std::vector<std::string>> const cases[] = {
      {"host:arguments:TooManyOutputs", {"2", "2mnpp"}},
      {"host:arguments:TooManyInputs", {"1mnpp"}},
      {"host:arguments:NotEnoughInputs", {"1", "1mn"}},
      {"velora:veloralib:unsupportedDataType",
       {"1nnp", "1-np", "1mmp", "1mdp", "1mnm", "1mn-", "1mnd", "1mn?", "1mn2"}},
      {"operation on an empty model handle", {"1mNp", "1Mnp", "1onp", "1m0p"}}};
  result = doubles();
  HostArray const* const before = result.get();
  for (auto const& [error, calls] : cases) {
    for (std::string const& letters : calls) {
      Inputs inputs;
      for (char const letter : letters.substr(1)) inputs.push_back(given[letter].get());
      EXPECT_EQ(outcome([&] { return call(letters[0] - '0', inputs); }), error) << letters;
      EXPECT_EQ(result.get(), before);
      EXPECT_EQ(model->references(), 2u);    // the handle here and the array's
      EXPECT_EQ(network->references(), 4u);  // of two arrays here
    }
  }
}

TEST_F(Gateway, TakesTextOfEveryShape) {
  std::string const missing = "Vorlan:string:MissingNotSupported";
  std::string const notText = "Vorlan:string:MustBeStringScalarOrCharacterVector";
  std::string const illFormed = "text that can't be converted: ill-formed UTF-16";
  // The text or the error, lenient and strict.
  // clang-format off
  std::tuple<Array, std::string, std::string> const cases[] = {
      {characters({1, 0}, u""), "", ""},              {characters({0, 0}, u""), "", ""},
      {characters({0, 1}, u""), "", notText},         {characters({3, 0}, u""), "", notText},
      {characters({3, 1}, u"abc"), "abc", notText},   {doubles(), notText, notText},
      {characters({1, 3, 1}, u"abc"), "abc", notText},
      {characters({1, 4}, u"é中\U0001F6F6"), "é中\U0001F6F6", "é中\U0001F6F6"},
      {characters({1, 3}, u"a\0b"s), "a\0b"s, "a\0b"s},
      {characters({1, 1}, u"\xD800"), illFormed, illFormed},
      {strings({1, 1}, {u"abc"}), "abc", "abc"},      {strings({1, 1}, {u""}), "", ""},
      {strings({1, 1}, {{}}), missing, missing},      {strings({0, 0}, {}), notText, notText},
      {strings({1, 2}, {u"", u"b"}), notText, notText},
      {strings({1, 1, 1}, {u"a"}), notText, notText}, {nullptr, notText, notText}};
  // clang-format on
  for (auto const& [array, lenient, strict] : cases) {
    auto const* const input = array.get();
    EXPECT_EQ(outcome([&] { return getScalarTextAsStdString(input, 0); }), lenient);
    EXPECT_EQ(outcome([&] { return getScalarTextAsStdString(input, 1); }), strict);
  }
}

TEST(ScalarText, EchoesNonAsciiNamesWhenAskedTo) {
  // The flag is read once in a process: each case needs one that starts afresh.
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  auto const echo = [](char const* value) {
    if (value != nullptr) setenv("QX_CHAR_ENCODING_DIAG", value, 1);
    testing::internal::CaptureStdout();
    for (char const* const name : {"Straße", "Strasse", "Straße"}) {
      getScalarTextAsStdString(text(name).get(), 0);
      unsetenv("QX_CHAR_ENCODING_DIAG");
    }
    return testing::internal::GetCapturedStdout();
  };
  std::string const line = "getScalarTextAsStdString called with non-ASCII input: Straße\n";
  EXPECT_EXIT(std::exit(echo("") != line + line), testing::ExitedWithCode(0), "");
  EXPECT_EXIT(std::exit(echo("0") != line + line), testing::ExitedWithCode(0), "");
  EXPECT_EXIT(std::exit(!echo(nullptr).empty()), testing::ExitedWithCode(0), "");
}

TEST_F(Gateway, ThrowsErrorsThatTheHostCatchesByType) {
  using Thrown = Exception<velora::veloralib::unsupportedDataType, std::exception, void>;
  try {
    call(1, {nullptr, nullptr, nullptr});
    FAIL();
  } catch (Thrown const& error) {
    EXPECT_EQ(error.GetBaseMsgIDObj().key, "unsupportedDataType");
    EXPECT_THAT(error.what(), testing::HasSubstr("unsupported type"));
    EXPECT_EQ(support::ustring_to_utf8(error.GetUnicodeMessageTxt()), error.what());
    using Note = boost::error_info<struct NoteTag, int>;
    error << Note(1);
    std::unique_ptr<Thrown const> const copy(error.clone());
    EXPECT_THROW(copy->rethrow(), Thrown);
    *copy << Note(2);
    EXPECT_EQ(*boost::get_error_info<Note>(error), 2);  // one container for both
    // A host may call by slot: clone, rethrow, two destructors, what, two convert_str, ...
    auto const slots = *reinterpret_cast<void* const* const*>(&error);
    auto const what = reinterpret_cast<char const* (*)(Thrown const*)>(slots[4]);
    EXPECT_EQ(what(&error), error.what());
    auto const getId = reinterpret_cast<std::string (*)(Thrown const*)>(slots[8]);
    EXPECT_EQ(getId(copy.get()), "velora:veloralib:unsupportedDataType");
    EXPECT_EQ(copy->convert_str("\xC3\xA9\xFF"s), u"\u00e9\uFFFD");
  }
}

TEST_F(Gateway, LeavesNothingBehindWhateverHappens) {
  TemporaryFile const cut("<osm version='0.6'><node id='1' lat='1' lon='1'/>");
  std::ptrdiff_t const files = entriesOf("/proc/self/fd");
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
    static_cast<Workspace&>(*this) = {Model(), RoadNetwork(), nullptr, nullptr, nullptr};
    EXPECT_EQ(kb::zero::ModelElementImpl::liveCount(), 0u);
    EXPECT_EQ(entriesOf("/proc/self/fd"), files);
    EXPECT_EQ(entriesOf("/proc/self/task"), 1);
    load();
    static_cast<Workspace&>(*this) = Workspace();
  }
}

// A second import adds its roads to what is there: Nodes are shared by id, roads keep their numbers
// from 1, so that two roads have each number. Roads of before are unknown to an import that does
// not make roads with their numbers, and to one that would join one of them to its own.
TEST_F(Gateway, ImportsIntoANetworkThatIsNotEmpty) {
  import(file.path());
  auto const first = network->getRoads();
  import(file.path());
  EXPECT_EQ(network->getNodes().size(), 4u);
  EXPECT_EQ(network->getRoads().size(), 2 * first.size());
  EXPECT_EQ(network->getNodes()[2]->getOutgoingRoads().size(), 4u);
  for (auto const& road : first) EXPECT_EQ(road->getRoadSegments().size(), 2u);
  EXPECT_EQ(outcome([&] { return import(nothing.path()), ""; }), "_Map_base::at");
  Workspace other;
  other.import(star.path());
  TemporaryFile const more(Town("a-b-c-d-e-f-g-h").way("gh").xml());
  EXPECT_EQ(outcome([&] { return other.import(more.path()), ""; }), "_Map_base::at");
}

TEST_F(Gateway, ImportsIntoModelsInSeveralThreads) {
  auto const& property = velora::roadnetwork::RoadImpl::startNodeProperty();
  std::size_t const references = property.references();
  std::atomic<std::size_t> roads = 0;
  auto const work = [&] {
    for (int i = 0; i < 3000; ++i) {
      Workspace own;
      own.import(star.path());
      roads += own.network->getRoads().size();
    }
  };
  import(star.path());
  std::thread first(work), second(work);
  first.join();
  second.join();
  EXPECT_EQ(roads, 6000 * network->getRoads().size());
  EXPECT_EQ(property.references(), references);  // shared by all models
}

TEST_F(Gateway, ArraysKnowTheirClassAndShape) {
  struct Case {
    char const* name;
    Array array;
    std::size_t count;
  };
  Case const cases[] = {{"double", doubles(), 1},
                        {"char", characters({3, 2}, u"abcdef"), 6},
                        {"string", strings({2, 1}, {u"a", {}}), 2},
                        {"kb.zero.Model", objects<Model>(0), 0}};
  for (auto const& [name, array, count] : cases) {
    EXPECT_EQ(host::numberOfElements(*array), count);
    for (Case const& other : cases) {
      EXPECT_EQ(host::isClass(array.get(), other.name), name == other.name);
    }
  }
  EXPECT_THROW(host::doubleData(*cases[1].array), std::bad_cast);
  EXPECT_THROW(host::getObjectElement(*cases[3].array, 0), std::out_of_range);
  constexpr std::size_t half = std::size_t{1} << 32;
  for (host::Dimensions const& size : std::vector<host::Dimensions>{{2, 2}, {0}, {half, half}}) {
    EXPECT_THROW(characters(size, u""), std::invalid_argument);
  }
  host::InterfacePointer const object = host::getObjectElement(*modelArray, 0);
  EXPECT_EQ(host::queryImplementation(object, host::internClassName("kb.zero.Model")), model.get());
  EXPECT_EQ(host::queryImplementation(object, {}), nullptr);
}
