// The reader: formats, what is stored of a file, limits and queries.
#include "osm/Reader.hpp"

#include <gmock/gmock.h>

#include <boost/algorithm/string/replace.hpp>
#include <charconv>
#include <map>
#include <random>
#include <set>

#include "osm/ReadError.hpp"
#include "support/IdHash.hpp"
#include "support/TextHash.hpp"
#include "support/ustring.hpp"
#include "tests/fixture/PbfFile.hpp"
#include "tests/fixture/TemporaryFile.hpp"
#include "tests/fixture/packed.hpp"

using namespace std::string_literals;
using boost::algorithm::replace_all_copy;
using OpenStreetMap::Id;
using OpenStreetMap::Reader;
using OpenStreetMap::ReadError;
using support::to_ustring;
using support::ustring_to_utf8;
using testing::ElementsAre;

namespace {

constexpr Id lowestId = std::numeric_limits<Id>::min();
constexpr Id highestId = std::numeric_limits<Id>::max();

// As many digits as tell a number from its neighbours.
std::string number(double value) {
  char digits[32];
  return {digits, std::to_chars(digits, digits + sizeof digits, value).ptr};
}

// Everything that the reader holds, in its order: limits and lines that differ when one bit does.
std::string contents(Reader const& reader) {
  auto const [south, north] = reader.getLatitudeLimits();
  auto const [west, east] = reader.getLongitudeLimits();
  std::string all = number(south) + " " + number(north) + " " + number(west) + " " + number(east);
  auto const add = [&](std::string const& kind, auto const& element) {
    all += "\n" + kind + std::to_string(element.id);
    for (auto const& [k, v] : element.tags) all += " " + ustring_to_utf8(k + u"=" + v);
  };
  for (auto const& node : reader.nodes) {
    add("n", node);
    all += " @" + number(node.first) + "," + number(node.second);
  }
  for (auto const& way : reader.ways) {
    add("w", way);
    for (Id const id : way.nodeReferences) all += " " + std::to_string(id);
  }
  for (auto const& relation : reader.relations) {
    add("r", relation);
    for (auto const& [type, id, role] : relation.members) {
      auto const& kind = OpenStreetMap::elementNameByType.at(type);
      all += ustring_to_utf8(u" " + kind + u":" + *role + u":") + std::to_string(id);
    }
  }
  return all;
}

std::string const nothing = "nan nan nan nan";

// What the reader holds after it has read a file, whose name is as odd as names get. Of a file that
// it refuses there is nothing left; the result is empty then.
std::string read(std::string_view bytes, Reader& reader) {
  TemporaryFile const file(bytes, " and\n%s-é-道-😀.txt");
  try {
    reader.setFile(to_ustring(file.path()));
    reader.populate(reader.nodes);
  } catch (ReadError const&) {
    EXPECT_EQ(contents(reader), nothing);
    return "";
  }
  return contents(reader);
}

std::string read(std::string_view bytes) {
  Reader reader;
  return read(bytes, reader);
}

std::string encoded(std::string const& text, char const* encoding) {
  std::u16string const units = to_ustring(text);
  return support::codecvt_ustring_to_string(encoding, 1).do_convert(units.data(), units.size());
}

// Some data in every way to write it, together with `more` nodes.
std::map<std::string, std::string> allFormats(int more = 0) {
  std::string xml =
      R"(<osm version='0.6'><remark> runtime notice </remark><note>runtime error</note>
<node id='-9223372036854775808' lat='48.123346701' lon='11.065463425'><tag k='ü😀' v=''/></node>
<node id='-1' lat='-89.999999996' lon="179.999999993" version='1'>
  <tag k='x' v="a&amp;b &lt;'&quot;>&#10;&#x9;"/><tag k='x' v='second'/></node>
<node id='0' lat='north' visible='false' version='9'><tag k='deleted' v='yes'/></node>
<node id='0'><tag k='nowhere' v='yes'/></node>
<node id='0' lat='3e-9' lon='-.000000005'><x><tag k='inside' v='yes'/></x></node>
<node id='9223372036854775807' lat='7.0000000030' lon='-7.000000005'><tag k='x' v='é'/></node>
<node id='-1' lat='3' lon='3' version='2'><tag k='x' v='of a second node'/></node>
<way id='9223372036854775807'><nd ref='-9223372036854775808'/><nd ref='-1'/><nd ref='-1'/>
  <nd ref='9223372036854775806'/><tag k='highway' v=''/><tag k='name' v='é'/></way>
<way id='-9223372036854775808' action='delete'><nd ref='0'/><tag k='highway' v='road'/></way>
<way id='-9223372036854775808' action='modify'/><way id='9223372036854775807'><nd ref='0'/></way>
<relation id='1' visible='false' version='2'><member type='node' ref='-1' role='stop'/></relation>
<relation id='1' version='2'><member type='node' ref='-1' role='stop'/><member type='way' ref='0' role=''/>
  <member type='relation' ref='9223372036854775807' role='Straße'/><tag k='type' v='x'/></relation>
<relation id='1' version='1'><tag k='type' v='y'/></relation>)";
  PbfBlock block{.granularity = 7, .latitudeOffset = 3, .longitudeOffset = -5};
  // In an order in which no difference between ids overflows.
  block.nodes = {
      {lowestId, 6'874'763'814, 1'580'780'490, {{"ü😀", ""}}},
      {-1, -12'857'142'857, 25'714'285'714, {{"x", "a&b <'\">\n\t"}, {"x", "second"}}, true, 1},
      {0, highestId / 7, 1, {{"deleted", "yes"}}, false, 9},
      {0, 0, 0},
      {highestId, 1'000'000'000, -1'000'000'000, {{"x", "é"}}},
      {-1, 3, 3, {{"x", "of a second node"}}, true, 2}};
  block.ways = {{highestId, {lowestId, -1, -1, highestId - 1}, {{"highway", ""}, {"name", "é"}}},
                {lowestId, {0}, {{"highway", "road"}}, false},
                {lowestId},
                {highestId, {0}}};
  block.relations = {
      {1, {{0, -1, "stop"}}, {}, false, 2},
      {1, {{0, -1, "stop"}, {1, 0, ""}, {2, highestId, "Straße"}}, {{"type", "x"}}, true, 2},
      {1, {}, {{"type", "y"}}, true, 1}};
  for (std::mt19937 random(1); more > 0; --more) {
    auto const any = [&] { return static_cast<Id>(random()); };
    Id const id = any() % 1'000'000, lat = any(), lon = any();
    block.nodes.push_back({id, lat, lon, {{"x", "é"}}});
    xml += "<node id='" + std::to_string(id) + "' lat='" + std::to_string(7 * lat + 3) +
           "e-9' lon='" + std::to_string(7 * lon - 5) + "e-9'><tag k='x' v='é'/></node>";
  }
  xml += "</osm>";
  std::string const first = xml.substr(0, xml.size() / 3);  // ends inside some tag
  std::string const second = xml.substr(first.size());
  std::map<std::string, std::string> files{
      {"XML", xml},
      {"XML in UTF-8 with BOM", "\uFEFF<?xml version='1.0' encoding='UTF-8'?>" + xml},
      {"XML in UTF-16LE", encoded("\uFEFF" + xml, "UTF-16LE")},
      {"XML in UTF-16BE",
       encoded("\uFEFF<?xml version='1.0' encoding='UTF-16'?>" + xml, "UTF-16BE")},
      {"gzip", gzip(first) + gzip(second)},
      {"bzip2", bzip2(first) + bzip2(second)}};
  for (bool const dense : {true, false}) {
    block.dense = dense;
    for (int const field : {1, 3, 6, 7}) {
      files["PBF " + std::to_string(field) + (dense ? " dense" : " plain")] =
          pbfFile({}, {block}, static_cast<PbfPacking>(field));
    }
  }
  return files;
}

// Cut anywhere, a file is refused, but for a PBF file between two blobs. Changed anywhere, it may
// be read or refused. The reader can be used again after each.
TEST(Reader, ReadsTheSameFromAllFormatsAndNothingOfACutFile) {
  Reader reader;
  for (auto const& [format, whole] : allFormats()) {
    EXPECT_EQ(
        read(whole, reader),
        "-89.999999996 48.123346701 -7.000000005 179.999999993\n"
        "n-9223372036854775808 ü😀= @48.123346701,11.065463425\n"
        "n-1 x=a&b <'\">\n\t @-89.999999996,179.999999993\n"
        "n0 @3e-09,-5e-09\n"
        "n9223372036854775807 x=é @7.000000003,-7.000000005\n"
        "w9223372036854775807 highway= name=é -9223372036854775808 -1 -1 9223372036854775806\n"
        "w-9223372036854775808\n"
        "r1 type=x node:stop:-1 way::0 relation:Straße:9223372036854775807")
        << format;
    if (format.starts_with("XML in ")) continue;  // no encoding ends in another way
    std::string cuts;
    for (std::size_t size = 0; size < whole.size(); ++size) {
      cuts += read(whole.substr(0, size), reader);
      std::string changed = whole;
      changed[size] = static_cast<char>(changed[size] ^ (1 << size % 8));
      read(changed, reader);
    }
    EXPECT_EQ(cuts, format.starts_with("PBF") ? nothing : "") << format;
  }
  EXPECT_THROW(reader.setFile(u"/no such file"), ReadError);
  EXPECT_THROW(reader.populate(reader.nodes), ReadError);
  EXPECT_EQ(contents(reader), nothing);
}

// Larger than any buffer on the way.
TEST(Reader, ReadsTheSameFromAllFormatsOfALargeMap) {
  auto const files = allFormats(9000);
  std::string const expected = read(files.at("XML"));
  for (auto const& [format, bytes] : files) EXPECT_TRUE(read(bytes) == expected) << format;
}

// And no node that is nowhere.
TEST(Reader, ReadsEachBlockOfAPbfFileForItself) {
  PbfBlock const fine{1,
                      -1'000'000'001,
                      1'000'000'000,
                      false,
                      {{8, -1, -2, {{"ref", "é"}}}, {1, 215'748'364'701, 213'748'364'700}}};
  PbfBlock const bare{.nodes = {{2, 2'147'483'647, 2'147'483'647}, {9}}},
      plain{.nodes = {{7, 5, 6, {{"name", "é"}}}}};
  std::string const box = "\x0A\x08\x08\x01\x10\x04\x18\x06\x20\x07";  // of -1, 2, 3, -4
  EXPECT_EQ(read(pbfFile(box, {fine, bare, plain}, PbfPacking::zlib)),
            "-4e-09 3e-09 -1e-09 2e-09\nn8 ref=é @-1.000000002,0.999999998\nn9 @0,0\nn7 name=é "
            "@5e-07,6e-07");
}

TEST(Reader, KnowsTheLimits) {
  std::string const box = "<bounds minlat='1' minlon='2' maxlat='3' maxlon='4'/>";
  std::string const node = "<node id='1' lat='50' lon='-18e1'/>";
  auto const bounds = [](int west, int east) {
    return "<bounds minlat='1' minlon='" + std::to_string(west) + "' maxlat='3' maxlon='" +
           std::to_string(east) + "'/>";
  };
  // clang-format off
  std::pair<std::string, std::string> const cases[] = {
      {node + box + "<node id='2' lat='-51' lon='1'/>", "1 3 2 4\nn1 @50,-180\nn2 @-51,1"},
      {node + "<node id='1' lat='80' lon='80'/><node id='2' lat='80' lon='80' visible='false'/>",
       "50 50 -180 -180\nn1 @50,-180"},
      {"<bound box='-1,-2,3,4'/><bounds minlat='2' minlon='-3' maxlat='5' maxlon='3'/>",
       "-1 5 -3 4"},
      {bounds(179, -179), "1 3 179 -179"},
      {bounds(-170, -160) + bounds(175, -175) + bounds(160, 165), "1 3 160 -160"},
      {bounds(160, 165) + bounds(170, -160) + bounds(-178, -170), "1 3 160 -160"},
      {bounds(170, -170) + bounds(-170, 165) + bounds(160, 170), "1 3 -180 180"},
      {"<node id='1' lat='1e-400' lon='-1e-400'/>", "0 0 -0 -0\nn1 @0,-0"},
      {"<way id='1'>" + box + "<nd ref='1' lat='5' lon='6'/></way>", nothing + "\nw1 1"}};
  // clang-format on
  for (auto const& [body, expected] : cases) EXPECT_EQ(read("<osm>" + body + "</osm>"), expected);
}

// Also of more than are searched one by one, and of each element for itself.
TEST(Reader, KeepsTheFirstOfTheTagsWithOneKey) {
  PbfTags tags;
  std::string kept;
  for (int const value : {0, 1, 2}) {
    for (int key = 0; key < 70 - value; ++key) {
      tags.emplace_back(std::to_string(key), std::to_string(value));
      if (value == 0) kept += " " + std::to_string(key) + "=0";
    }
  }
  EXPECT_EQ(read(pbfFile({}, {{.ways = {{1, {}, tags}, {2, {}, tags}}}})),
            nothing + "\nw1" + kept + "\nw2" + kept);
}

// ~ stands for U+FFFD.
TEST(Reader, ReplacesIllFormedUtf8) {
  std::string const name =
      "a\0b|\xFF|\xC0\xAF|\xE0\x80\xAF|\xF4\x90\x80\x80|\xED\xA0\xBD\xED\xB8\x80|\xF0\x9F\x98x|"
      "\x80\xC2\x41|\xE1\x80\xE2\xF0\x91\x92\xF1\xBF\x41|\uFFFF\uD7FF\U0010FFFF|\xE6\x9D"s;
  PbfBlock block;
  block.ways = {{1, {}, {{"\xFE", "first"}, {"\xFF", "second"}, {"name", name}}}};
  EXPECT_EQ(replace_all_copy(read(pbfFile({}, {block})), "\uFFFD", "~"),
            nothing + "\nw1 ~=first name=a\0b|~|~~|~~~|~~~~|~~~~~~|~x|~~A|~~~~A|\uFFFF\uD7FF"s +
                "\U0010FFFF|~");
}

TEST(Reader, AnswersQueries) {
  Reader reader;
  std::string const before = read(
      "<osm><way id='5'><tag k='highway' v='road'/></way><way id='-3'><tag k='highway' v=''/></way>"
      "<way id='2'><tag k='Highway' v='road'/></way></osm>",
      reader);
  auto const* const five = reader.ways.find(5);
  auto const* const minusThree = reader.ways.find(-3);
  EXPECT_THAT(Reader::getElementsWithTag(u"highway", reader.ways), ElementsAre(minusThree, five));
  EXPECT_THAT(Reader::getElements(reader.ways, {5, -3, 5}), ElementsAre(five, minusThree, five));
  EXPECT_THROW(Reader::getElements(reader.ways, {5, 4}), std::out_of_range);
  reader.populate(reader.nodes);  // reads nothing again, though the table is empty
  EXPECT_EQ(reader.ways.find(5), five);
  EXPECT_EQ(contents(reader), before);
}

// A hash that keeps the low bits of an id would take minutes here.
TEST(ElementTable, HoldsIdsInStepsOfAnySize) {
  for (int const shift : {0, 20, 32, 46}) {
    OpenStreetMap::NodeTable table;
    std::vector<Id> ids(200'000);
    for (std::size_t i = 0; i < ids.size(); ++i) ids[i] = static_cast<Id>(i << shift);
    for (Id const id : ids) table.insert({id, {}, static_cast<double>(id), 2.0});
    for (int pass = 0; pass < 2; ++pass) {  // the first may do without an index
      for (Id const id : ids) ASSERT_EQ(table.at(id).first, static_cast<double>(id));
      EXPECT_EQ(table.find(3 + (Id{1} << 18)), nullptr);
      EXPECT_EQ(table.insert({0, {}, 3.0, 4.0}), nullptr);
    }
  }
}

// Keys that collide under the hashes that everybody knows: the finaliser of MurmurHash3, undone
// here, and the standard library's.
TEST(ReaderHashes, SpreadKeysThatWereChosenToCollide) {
  std::set<std::size_t> places;
  std::size_t ids = 0;
  for (std::uint64_t i = 0; ids < 20'000; ++i) {
    std::uint64_t group = i << 40;
    for (std::uint64_t const factor : {0x9cb4b2f8129337db, 0x4f74430c22a54005UL}) {
      group = (group ^ group >> 33) * factor;
    }
    group ^= group >> 33;
    if (group >> 58 != 0) continue;  // an id has six bits more
    places.insert(support::IdHash()(group << 6) & 0xFFFF'FFFF);
    ++ids;
  }
  EXPECT_GT(places.size(), 19'900u);
  std::u16string const text = u"baaa\uA948\u2F51\uE5AE\u00EE",
                       other = u"caaa\uD6E0\uE86C\u9CEF\u6141";
  EXPECT_EQ(std::hash<std::u16string>()(text), std::hash<std::u16string>()(other));
  EXPECT_NE(support::TextHash()(text), support::TextHash()(other));
}

}  // namespace
