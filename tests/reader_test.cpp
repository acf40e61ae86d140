// The reader: formats, what is stored of a file, limits, queries and errors.
#include <bzlib.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <zlib.h>

#include <array>
#include <charconv>
#include <clocale>
#include <limits>
#include <locale>
#include <map>
#include <random>

#include "osm/ReadError.hpp"
#include "osm/Reader.hpp"
#include "support/ustring.hpp"
#include "tests/fixture/PbfFile.hpp"
#include "tests/fixture/TemporaryFile.hpp"

using namespace std::string_literals;
using OpenStreetMap::Id;
using OpenStreetMap::NodeTable;
using OpenStreetMap::Reader;
using OpenStreetMap::ReadError;
using support::to_ustring;
using support::ustring_to_utf8;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

constexpr Id lowestId = std::numeric_limits<Id>::min();
constexpr Id highestId = std::numeric_limits<Id>::max();

// As many digits as tell a number from its neighbours.
std::string number(double value) {
  char digits[32];
  return {digits, std::to_chars(digits, digits + sizeof digits, value).ptr};
}

std::string limits(Reader const& reader) {
  auto const [south, north] = reader.getLatitudeLimits();
  auto const [west, east] = reader.getLongitudeLimits();
  return number(south) + " " + number(north) + " " + number(west) + " " + number(east);
}

// Everything that the reader holds, as lines that differ when one bit does.
std::string contents(Reader const& reader) {
  std::map<std::pair<int, Id>, std::string> lines;
  auto const add = [&](int kind, auto const& element, std::string text) {
    std::map<std::string, std::string> tags;
    for (auto const& [k, v] : element.tags) tags[ustring_to_utf8(k)] = ustring_to_utf8(v);
    for (auto const& [k, v] : tags) text.append(" ").append(k).append("=").append(v);
    lines[{kind, element.id}] = "nwr"[kind] + std::to_string(element.id) + text + "\n";
  };
  for (auto const& node : reader.nodes) {
    add(0, node, " @" + number(node.first) + "," + number(node.second));
  }
  for (auto const& way : reader.ways) {
    std::string text;
    for (Id const id : way.nodeReferences) text += " " + std::to_string(id);
    add(1, way, text);
  }
  for (auto const& relation : reader.relations) {
    std::string text;
    for (auto const& [type, id, role] : relation.members) {
      text += " " + ustring_to_utf8(OpenStreetMap::elementNameByType.at(type)) + ":" +
              std::to_string(id) + ":" + ustring_to_utf8(*role);
    }
    add(2, relation, text);
  }
  std::string all = limits(reader) + "\n";
  for (auto const& [key, line] : lines) all += line;
  return all;
}

void readFile(Reader& reader, TemporaryFile const& file) {
  reader.setFile(to_ustring(file.path()));
  reader.populate(reader.nodes);
}

std::string read(std::string_view bytes) {
  Reader reader;
  readFile(reader, TemporaryFile(bytes));
  return contents(reader);
}

std::string osm(std::string const& body) {
  return "<osm version='0.6'>\n" + body + "</osm>";
}

// The message, "none" without an error. It is always one line of well-formed UTF-8.
std::string errorOf(std::u16string const& path) {
  Reader reader;
  try {
    reader.setFile(path);
    reader.populate(reader.ways);
  } catch (ReadError const& error) {
    std::string const message = error.what();
    EXPECT_EQ(message.find_first_of("\r\n\0"s), std::string::npos) << message;
    EXPECT_NO_THROW(to_ustring(message)) << message;
    return message;
  }
  return "none";
}

std::string utf16(std::string const& text, bool bigEndian) {
  std::string bytes;
  for (char16_t const unit : u"\uFEFF" + to_ustring(text)) {
    char const pair[] = {static_cast<char>(unit), static_cast<char>(unit >> 8)};
    bytes += {pair[bigEndian ? 1 : 0], pair[bigEndian ? 0 : 1]};
  }
  return bytes;
}

std::string latin1(std::string text) {
  if (auto const emoji = text.find("😀"); emoji != std::string::npos) {
    text.replace(emoji, 4, "&#x1F600;");
  }
  std::string bytes;
  for (char16_t const unit : to_ustring(text)) bytes += static_cast<char>(unit);
  return bytes;
}

std::string gzip(std::string bytes) {
  std::string packed(bytes.size() + 1000, '\0');
  z_stream stream{};
  deflateInit2(&stream, 6, Z_DEFLATED, MAX_WBITS + 16, 8, Z_DEFAULT_STRATEGY);
  stream.next_in = reinterpret_cast<Bytef*>(bytes.data());
  stream.avail_in = static_cast<uInt>(bytes.size());
  stream.next_out = reinterpret_cast<Bytef*>(packed.data());
  stream.avail_out = static_cast<uInt>(packed.size());
  deflate(&stream, Z_FINISH);
  packed.resize(stream.total_out);
  deflateEnd(&stream);
  return packed;
}

std::string bzip2(std::string bytes) {
  auto size = static_cast<unsigned>(2 * bytes.size() + 1000);
  std::string packed(size, '\0');
  BZ2_bzBuffToBuffCompress(packed.data(), &size, bytes.data(), static_cast<unsigned>(bytes.size()),
                           1, 0, 0);
  packed.resize(size);
  return packed;
}

// Every way to write some data that is given as XML, without its declaration, and as a block.
std::map<std::string, std::string> allFormats(std::string const& xml, PbfBlock block) {
  std::string const first = xml.substr(0, xml.size() / 3);  // ends inside some tag
  std::string const second = xml.substr(first.size());
  std::map<std::string, std::string> files{
      {"UTF-8", xml},
      {"UTF-8 with BOM", "\uFEFF<?xml version='1.0' encoding='UTF-8'?>" + xml},
      {"UTF-16LE", utf16(xml, false)},
      {"UTF-16BE", utf16("<?xml version='1.0' encoding='UTF-16'?>" + xml, true)},
      {"Latin-1", latin1("<?xml version='1.0' encoding='ISO-8859-1'?>" + xml)},
      {"gzip", gzip(xml)},
      {"gzip, two members", gzip(first) + gzip(second)},
      {"bzip2", bzip2(xml)},
      {"bzip2, two streams", bzip2(first) + bzip2(second)},
  };
  for (bool const dense : {true, false}) {
    block.dense = dense;
    for (auto const packing :
         {PbfPacking::raw, PbfPacking::zlib, PbfPacking::lz4, PbfPacking::zstd}) {
      files["PBF " + std::to_string(static_cast<int>(packing)) + (dense ? " dense" : " plain")] =
          pbfFile({}, {block}, packing);
    }
  }
  return files;
}

// The same data as XML, as a block and as the reader should hold it.

std::string const sampleXml = R"(<osm version='0.6'>
<node id='-9223372036854775808' lat='48.123346701' lon='11.065463425'>
  <tag k='name' v='Zürich 😀'/><tag k='note' v=''/></node>
<node id='-1' lat='-89.999999996' lon="179.999999993">
  <tag k='x' v="a&amp;b &lt;'&quot;>&#10;&#x9;"/><tag k='x' v='second'/></node>
<node id='5' lat='1' lon='1' visible='false'><tag k='deleted' v='yes'/></node>
<node id='0' lat='3e-9' lon='-.000000005'/>
<node id='9223372036854775807' lat='7.0000000030' lon='-7.000000005'><tag k='größe' v='é'/></node>
<node id='-1' lat='3' lon='3'><tag k='x' v='of a second node'/></node>
<way id='9223372036854775807'>
  <nd ref='-9223372036854775808'/><nd ref='-1'/><nd ref='-1'/><nd ref='9223372036854775806'/>
  <tag k='highway' v=''/><tag k='name' v='é'/></way>
<way id='7' visible='false'><nd ref='0'/><tag k='highway' v='road'/></way>
<way id='-9223372036854775808'/>
<way id='9223372036854775807'><nd ref='0'/><tag k='highway' v='road'/></way>
<relation id='1'><member type='node' ref='-1' role='stop'/><member type='way' ref='0' role=''/>
  <member type='relation' ref='9223372036854775807' role='Straße'/><tag k='type' v='x'/></relation>
<relation id='2' visible='false'><member type='node' ref='-1' role='stop'/></relation>
<relation id='1'><tag k='type' v='y'/></relation>
</osm>)";

PbfBlock sampleBlock() {
  PbfBlock block{.granularity = 7, .latitudeOffset = 3, .longitudeOffset = -5};
  // In an order in which no difference between ids overflows.
  block.nodes = {{lowestId, 6'874'763'814, 1'580'780'490, {{"name", "Zürich 😀"}, {"note", ""}}},
                 {-1, -12'857'142'857, 25'714'285'714, {{"x", "a&b <'\">\n\t"}, {"x", "second"}}},
                 {5, 1, 1, {{"deleted", "yes"}}, false},
                 {0, 0, 0},
                 {highestId, 1'000'000'000, -1'000'000'000, {{"größe", "é"}}},
                 {-1, 3, 3, {{"x", "of a second node"}}}};
  block.ways = {{highestId, {lowestId, -1, -1, highestId - 1}, {{"highway", ""}, {"name", "é"}}},
                {7, {0}, {{"highway", "road"}}, false},
                {lowestId},
                {highestId, {0}, {{"highway", "road"}}}};
  block.relations = {{1, {{0, -1, "stop"}, {1, 0, ""}, {2, highestId, "Straße"}}, {{"type", "x"}}},
                     {2, {{0, -1, "stop"}}, {}, false},
                     {1, {}, {{"type", "y"}}}};
  return block;
}

std::string const sampleContents =
    "-89.999999996 48.123346701 -7.000000005 179.999999993\n"
    "n-9223372036854775808 @48.123346701,11.065463425 name=Zürich 😀 note=\n"
    "n-1 @-89.999999996,179.999999993 x=a&b <'\">\n\t\n"
    "n0 @3e-09,-5e-09\n"
    "n9223372036854775807 @7.000000003,-7.000000005 größe=é\n"
    "w-9223372036854775808\n"
    "w9223372036854775807 -9223372036854775808 -1 -1 9223372036854775806 highway= name=é\n"
    "r1 node:-1:stop way:0: relation:9223372036854775807:Straße type=x\n";

TEST(Reader, ReadsTheSameFromAllFormats) {
  for (auto const& [format, bytes] : allFormats(sampleXml, sampleBlock())) {
    SCOPED_TRACE(format);
    EXPECT_EQ(read(bytes), sampleContents);
  }
}

// Larger than any buffer on the way, with all the digits that usual files have.
TEST(Reader, ReadsTheSameFromAllFormatsOfALargeMap) {
  std::mt19937_64 random(1);
  PbfBlock block;
  std::string xml = "<osm version='0.6'>";
  for (int i = 0; i < 6000; ++i) {
    Id const id = static_cast<Id>(random() % 1'000'000) - 500'000;
    auto const degrees = static_cast<std::int64_t>(random() % 90);
    auto const digits = static_cast<std::int64_t>(random() % 9'000'000 + 1'000'000);
    std::string const value = std::to_string(random());
    block.nodes.push_back({id, degrees * 10'000'000 + digits, -digits, {{"é", value}}});
    xml += "<node id='" + std::to_string(id) + "' lat='" + std::to_string(degrees) + "." +
           std::to_string(digits) + "' lon='-0." + std::to_string(digits) + "'><tag k='é' v='" +
           value + "'/></node>";
  }
  std::string const expected = read(xml + "</osm>");
  EXPECT_GT(expected.size(), 200'000u);
  for (auto const& [format, bytes] : allFormats(xml + "</osm>", block)) {
    EXPECT_TRUE(read(bytes) == expected) << format;
  }
}

TEST(Reader, ReadsEachBlockOfAPbfFileForItself) {
  PbfBlock fine;
  fine.dense = false;
  fine.granularity = 1;
  fine.latitudeOffset = -1'000'000'001;
  fine.longitudeOffset = 1'000'000'000;
  fine.nodes = {{8, -1, -2, {{"ref", "é"}}}};
  PbfBlock plain;
  plain.nodes = {{7, 5, 6, {{"name", "é"}}}};
  EXPECT_EQ(read(pbfFile({.box = {{-1, 2'000'000'000, 3'000'000'000, -4}}},
                         {fine, PbfBlock{}, plain}, PbfPacking::zlib)),
            "-4e-09 3 -1e-09 2\nn7 @5e-07,6e-07 name=é\nn8 @-1.000000002,0.999999998 ref=é\n");
}

TEST(Reader, StoresTheFirstAndOnlyWhatIsThere) {
  char const* const cases[][2] = {
      {"<node id='1' lat='1' lon='2'/><node id='1' lat='3' lon='4'/>", "n1 @1,2\n"},
      {"<node id='1' lat='1' lon='2'><tag k='a' v='1'/><tag k='a' v='2'/></node>", "n1 @1,2 a=1\n"},
      {"<way id='1'><tag k='a' v='1'/></way><way id='1'><nd ref='1'/></way>", "w1 a=1\n"},
      {"<node id='1' lat='1' lon='2' visible='false'/><node id='1' lat='3' lon='4' visible='true'/>"
       "<way id='1' visible='false'><nd ref='1'/></way><way id='2'><nd ref='2'/></way>",
       "n1 @3,4\nw2 2\n"},
      {"<node id='1' lat='1' lon='2' action='delete'/><way id='1' action='delete'/>"
       "<relation id='1' action='delete'/><way id='2' action='modify'/>",
       "w2\n"},
      {"<node id='1'><tag k='a' v='1'/></node><node id='2' lat='1' lon='2'/>", "n2 @1,2\n"},
      {"<relation id='1'/><way id='1'/><node id='1' lat='1' lon='2'/>", "n1 @1,2\nw1\nr1\n"},
      {"<node id='1' lat='.5' lon='5.'/><node id='2' lat='-4.81e1' lon='-180'/>",
       "n1 @0.5,5\nn2 @-48.1,-180\n"},
      {"<node id='1' lat='1' lon='2'><x><tag k='a' v='1'/></x></node>", "n1 @1,2\n"},
      {"<remark> runtime notice </remark><note>runtime error</note><way id='1'/>", "w1\n"}};
  for (auto const& [body, expected] : cases) {
    std::string const all = read(osm(body));
    EXPECT_EQ(all.substr(all.find('\n') + 1), expected) << body;
  }
}

TEST(Reader, KnowsTheLimits) {
  std::string const node = "<node id='1' lat='50' lon='60'/><node id='2' lat='-51' lon='61'/>";
  std::string const box = "<bounds minlat='1' minlon='2' maxlat='3' maxlon='4'/>";
  std::string const crossing = "<bounds minlat='1' minlon='179' maxlat='3' maxlon='-179'/>";
  std::vector<std::array<std::string, 2>> const cases{
      {box + node, "1 3 2 4"},
      {node + box, "1 3 2 4"},
      {"<bound box='-1,-2,3,4' origin='x'/>" + node, "-1 3 -2 4"},
      {box + "<bounds minlat='2' minlon='-2' maxlat='5' maxlon='3'/>", "1 5 -2 4"},
      {crossing + node, "1 3 179 -179"},
      {node, "-51 50 60 61"},
      {node + "<node id='2' lat='80' lon='80'/><node id='3' lat='80' lon='80' action='delete'/>",
       "-51 50 60 61"},
      {"<way id='1'>" + box + "<nd ref='1' lat='5' lon='6'/></way>", "nan nan nan nan"},
      {"", "nan nan nan nan"}};
  for (auto const& [body, expected] : cases) {
    std::string const all = read(osm(body));
    EXPECT_EQ(all.substr(0, all.find('\n')), expected) << body;
  }
}

TEST(Reader, ReplacesIllFormedUtf8) {
  std::u16string const bad = u"\uFFFD";
  std::vector<std::pair<std::string, std::u16string>> const cases{
      {"\xFF", bad},
      {"\xC0\xAF", bad + bad},
      {"\xE0\x80\xAF", bad + bad + bad},
      {"\xED\xA0\xBD\xED\xB8\x80", bad + bad + bad + bad + bad + bad},
      {"\xF4\x90\x80\x80", bad + bad + bad + bad},
      {"\xF0\x9F\x98x", bad + u"x"},
      {"\xE6\x9D", bad},
      {"\x80\xC2\x41", bad + bad + u"A"},
      {"\xE1\x80\xE2\xF0\x91\x92\xF1\xBF\x41", bad + bad + bad + bad + u"A"},
      {"a\0b"s, u"a\0b"s},
      {"\xEF\xBF\xBF\xED\x9F\xBF\xF4\x8F\xBF\xBF", u"\uFFFF\uD7FF\U0010FFFF"}};
  PbfBlock block;
  for (auto const& [bytes, expected] : cases) {
    block.ways.push_back({static_cast<Id>(block.ways.size()), {}, {{"name", bytes}}});
  }
  block.ways.push_back({-1, {}, {{"\xFE", "first"}, {"\xFF", "second"}}});  // one key in the end
  Reader reader;
  readFile(reader, TemporaryFile(pbfFile({}, {block})));
  for (std::size_t i = 0; i < cases.size(); ++i) {
    EXPECT_EQ(reader.ways.at(static_cast<Id>(i)).tags.at(u"name"), cases[i].second) << i;
  }
  EXPECT_EQ(reader.ways.at(-1).tags.size(), 1u);
  EXPECT_EQ(reader.ways.at(-1).tags.at(bad), u"first");
}

TEST(Reader, AnswersQueries) {
  Reader reader;
  readFile(reader, TemporaryFile(osm(
                       "<way id='5'><tag k='highway' v='road'/></way><way id='-3'><tag k='highway' "
                       "v=''/></way><way id='2'><tag k='Highway' v='road'/></way>"
                       "<way id='1'><tag k='highway' v='x'/></way>")));
  auto const idsWith = [&](char16_t const* key) {
    std::vector<Id> ids;
    for (auto const* way : Reader::getElementsWithTag(key, reader.ways)) ids.push_back(way->id);
    return ids;
  };
  EXPECT_THAT(idsWith(u"highway"), ElementsAre(-3, 1, 5));
  EXPECT_THAT(idsWith(u"Highway"), ElementsAre(2));
  EXPECT_THAT(idsWith(u"high"), ElementsAre());
  auto const* const five = reader.ways.find(5);
  auto const* const minusThree = reader.ways.find(-3);
  ASSERT_TRUE(five != nullptr && minusThree != nullptr);
  EXPECT_THAT(Reader::getElements(reader.ways, {5, -3, 5}), ElementsAre(five, minusThree, five));
  EXPECT_THAT(Reader::getElements(reader.nodes, {}), ElementsAre());
  for (std::vector<Id> const& ids : {std::vector<Id>{5, 4}, {-5}, {0}}) {
    try {
      Reader::getElements(reader.ways, ids);
      ADD_FAILURE() << "an id that isn't there was found";
    } catch (std::out_of_range const& error) {
      EXPECT_STREQ(error.what(), "_Map_base::at");
    }
  }
}

TEST(Reader, ReadsItsFileOnce) {
  for (char const* const body : {"<node id='1' lat='1' lon='2'/><way id='3'><nd ref='1'/></way>",
                                 "<way id='3'><nd ref='1'/></way>", ""}) {
    Reader reader;
    readFile(reader, TemporaryFile(osm(body)));  // and gone
    std::string const before = contents(reader);
    auto const* const node = reader.nodes.find(1);
    auto const* const way = reader.ways.find(3);
    reader.populate(reader.nodes);
    reader.populate(reader.ways);
    reader.populate(reader.relations);
    EXPECT_EQ(reader.nodes.find(1), node);
    EXPECT_EQ(reader.ways.find(3), way);
    EXPECT_EQ(contents(reader), before);
  }
}

// A hash that keeps the low bits of an id would take minutes here.
TEST(ElementTable, HoldsIdsInStepsOfAnySize) {
  for (int const shift : {0, 20, 32, 46}) {
    constexpr std::uint64_t count = 200'000;
    NodeTable table;
    std::vector<OpenStreetMap::Node const*> stored;
    for (std::uint64_t i = 0; i < count; ++i) {
      stored.push_back(table.insert({static_cast<Id>(i << shift), {}, 1.0, 2.0}));
    }
    EXPECT_EQ(table.insert({0, {}, 3.0, 4.0}), nullptr);
    std::uint64_t found = 0;
    for (std::uint64_t i = 0; i < count; ++i) {
      auto const id = static_cast<Id>(i << shift);
      found += table.find(id) == stored[i] && stored[i]->id == id ? 1 : 0;
    }
    EXPECT_EQ(found, count) << shift;
    EXPECT_EQ(table.find(3 + (Id{1} << 18)), nullptr);
    EXPECT_EQ(table.size(), count);
  }
}

TEST(Reader, SaysWhatIsWrongAndWhere) {
  std::string const node = "<node id='1' lat='1' lon='2'/>";
  std::string const header = pbfFile({}, {});
  std::string const secondBlob = "blob 2 at byte " + std::to_string(header.size()) + ": ";
  PbfBlock range;
  range.nodes = {{1, 900'000'001, 0}};
  PbfBlock twice;
  twice.ways = {{.id = 1, .nodes = {1, 2}, .nodesTwice = true}};
  PbfBlock member;
  member.relations = {{1, {{3, 1, ""}}, {}}};
  std::string manyDigits = "1";  // of two bytes each, so that no cut fits all
  for (int i = 0; i < 60; ++i) manyDigits += "٤";
  std::vector<std::array<std::string, 2>> const cases{
      {"", "the file is empty"},
      {"hello", "this is not an OSM file"},
      {"{\"elements\": []}", "this is not an OSM file; it is JSON"},
      {"PK\x03\x04\x0A\tOSM", "this is not an OSM file; it is a ZIP"},
      {gzip(gzip(osm(""))), "this is not an OSM file; it is compressed more than once"},
      {"<html>\n</html>", "line 1, column 1: this is not an OSM file: its root element is <html>"},
      {"\n <osmChange version='0.6'/>", "line 2, column 2: this is a change file"},
      {osm("<create>" + node + "</create>"), "line 2, column 1: this is a change file"},
      {"<osm version='0.5'/>", "line 1, column 1: OSM version \"0.5\""},
      {"<!DOCTYPE osm [<!ENTITY a 'b'>]>\n<osm/>", "line 1, column 15: a DOCTYPE"},
      {"<!DOCTYPE osm [<!ATTLIST node visible CDATA 'false'>]><osm/>", "line 1, column 15: a DOC"},
      {"<!DOCTYPE osm SYSTEM 'x.dtd'><osm/>", "line 1, column 29: a DOCTYPE"},
      {osm("<bounds minlat='2' minlon='0' maxlat='1' maxlon='0'/>"), "line 2, column 1: bounds"},
      {osm("<node id='1' lat='90.5' lon='0'/>"), "line 2, column 1: lat \"90.5\" is out of range"},
      {osm(node + "<node id='1' lat='0' lon='-181'/>"), "line 2, column 31: lon \"-181\" is out"},
      {osm("<node id='1' lat='nan' lon='0'/>"), "line 2, column 1: lat \"nan\""},
      {osm("<node id='1' lat='inf' lon='0'/>"), "line 2, column 1: lat \"inf\""},
      {osm("<node id='1' lat='1,5' lon='0'/>"), "line 2, column 1: lat \"1,5\" is not a number"},
      {osm("<node id='1' lat='1'/>"), "line 2, column 1: <node> without lon"},
      {osm("<node lat='1' lon='1'/>"), "line 2, column 1: <node> without id"},
      {osm("<way id='9223372036854775808'/>"), "line 2, column 1: id \"9223372036854775808\" is"},
      {osm("<way id='1'>\n<nd ref='x\n'/></way>"), "line 3, column 1: ref \"x \" is not"},
      {osm("<way id='" + manyDigits + "'/>"), "line 2, column 1: id \"1٤٤"},
      {osm("<relation id='1'><member type='x' ref='1'/></relation>"),
       "line 2, column 18: member type \"x\""},
      {osm("<remark> runtime error: Query\ntimed out </remark>"),
       "line 3, column 11: the server cut this answer short:  runtime error: Query?timed out"},
      {osm(node) + osm(node), "line 2, column 37: XML: "},
      {gzip(osm(node)) + "junk", "byte "},
      {bzip2(osm(node)) + "junk", "byte "},
      {pbfFile({.features = {"DenseNodes", "Foo\nBar"}}, {}),
       "blob 1 at byte 0: the file requires the unknown feature \"Foo?Bar\""},
      {pbfFile({.features = {"Foo\xFF"}}, {}), "blob 1 at byte 0: the file requires the unknown"},
      {pbfFile({.features = {"HistoricalInformation"}}, {}), "blob 1 at byte 0: this is a history"},
      {pbfFile({}, {}, PbfPacking::lzma), "blob 1 at byte 0: lzma"},
      {pbfFile({}, {}, PbfPacking::bzip2), "blob 1 at byte 0: bzip2"},
      {"\0\1\0\1\n"s, "blob 1 at byte 0: the blob header claims 65537 bytes"},
      {pbfFile({}, {PbfBlock{}, range}).erase(0, header.size()), "blob 1 at byte 0: the file does"},
      {header + header, secondBlob},
      {pbfFile({}, {range}), secondBlob},
      {pbfFile({}, {member}), secondBlob},
      {pbfFile({}, {twice}), secondBlob + "packed field 8 stands more than once"},
  };
  for (auto const& [bytes, message] : cases) {
    TemporaryFile const file(bytes);
    EXPECT_THAT(errorOf(to_ustring(file.path())), StartsWith(file.path() + ": " + message));
  }
}

TEST(Reader, SaysWhatIsWrongWithAPath) {
  TemporaryFile const good(osm(""));
  TemporaryFile const lookalike(osm(""), "\uFFFD");
  TemporaryFile const fifo("", "\n.osm");
  std::filesystem::remove(fifo.path());
  ASSERT_EQ(::mkfifo(fifo.path().c_str(), 0600), 0);
  std::u16string const name = to_ustring(good.path());
  std::vector<std::pair<std::u16string, std::string>> const cases{
      {name.substr(0, name.rfind(u'/')), ": is a directory"},
      {name + u"x", "x: can't open: No such file"},
      {name + u"/x", "/x: can't open: Not a directory"},
      {u"", ": can't open: "},
      {to_ustring(fifo.path()), "?.osm: is not a regular file"},
      {u"/dev/zero", "/dev/zero: is not a regular file"},
      {name + u"\0x"s, "?x: the file name contains a NUL"},
      {to_ustring(lookalike.path().substr(0, lookalike.path().size() - 3)) + u"\xD800",
       "\uFFFD: the file name is not well-formed"}};
  for (auto const& [path, reason] : cases) EXPECT_THAT(errorOf(path), HasSubstr(reason));
  Reader reader;
  EXPECT_THROW(reader.populate(reader.nodes), ReadError);
}

TEST(Reader, OpensFilesWithAnyName) {
  for (char const* const ending : {" and more.osm", "\nb.osm", "-é-道-😀.osm", "%s%n", ".osm.pbf"}) {
    TemporaryFile const file(pbfFile({}, {sampleBlock()}), ending);
    Reader reader;
    readFile(reader, file);
    EXPECT_EQ(contents(reader), sampleContents) << ending;
  }
}

TEST(Reader, IsEmptyAndUsableAfterAFailure) {
  std::string const& xml = sampleXml;
  std::string const pbf = pbfFile({}, {sampleBlock(), sampleBlock()});
  TemporaryFile const good(xml);
  Reader reader;
  for (std::string const& whole : {xml, gzip(xml), bzip2(xml), pbf}) {
    TemporaryFile const broken(std::string_view(whole).substr(0, whole.size() - 5));
    readFile(reader, good);
    ASSERT_EQ(contents(reader), sampleContents);
    EXPECT_THROW(readFile(reader, broken), ReadError);
    EXPECT_EQ(contents(reader), "nan nan nan nan\n");
    EXPECT_THROW(reader.populate(reader.nodes), ReadError);
    EXPECT_THROW(reader.setFile(u"/no such file"), ReadError);
    EXPECT_EQ(contents(reader), "nan nan nan nan\n");
  }
  readFile(reader, good);
  EXPECT_EQ(contents(reader), sampleContents);
}

// Cut anywhere, a file is refused, but for a PBF file between two blobs. Changed anywhere, it may
// be read or refused, nothing else.
TEST(Reader, SurvivesEveryCutAndChange) {
  auto const files = allFormats(sampleXml, sampleBlock());
  for (char const* const format : {"UTF-8", "gzip", "bzip2", "PBF 1 dense", "PBF 3 plain"}) {
    SCOPED_TRACE(format);
    std::string const& whole = files.at(format);
    std::vector<std::size_t> accepted;
    Reader reader;
    for (std::size_t size = 0; size < whole.size(); ++size) {
      try {
        readFile(reader, TemporaryFile(std::string_view(whole).substr(0, size)));
        accepted.push_back(size);
      } catch (ReadError const&) {
      }
      std::string changed = whole;
      changed[size] = static_cast<char>(changed[size] ^ (1 << size % 8));
      try {
        readFile(reader, TemporaryFile(changed));
      } catch (ReadError const&) {
      }
    }
    if (format[0] == 'P') {
      EXPECT_THAT(accepted,
                  ElementsAre(pbfFile({}, {}, static_cast<PbfPacking>(format[4] - '0')).size()));
    } else {
      EXPECT_THAT(accepted, ElementsAre());
    }
  }
}

struct DecimalComma : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
};

TEST(Reader, ReadsTheSameInEveryLocale) {
  std::locale const before = std::locale::global(std::locale(std::locale(), new DecimalComma));
  bool const german = std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr;
  std::string const all = read(sampleXml);
  std::setlocale(LC_ALL, "C");
  std::locale::global(before);
  EXPECT_EQ(all, sampleContents);
  if (!german) GTEST_SKIP() << "de_DE.UTF-8 is not installed: only the C++ locale was tried";
}

}  // namespace
