// The reader: formats, what is stored of a file, limits, queries and errors.
#include <gmock/gmock.h>

#include <array>
#include <charconv>
#include <clocale>
#include <locale>
#include <map>
#include <random>

#include "osm/ReadError.hpp"
#include "osm/Reader.hpp"
#include "support/ustring.hpp"
#include "tests/fixture/PbfFile.hpp"
#include "tests/fixture/TemporaryFile.hpp"
#include "tests/fixture/packed.hpp"

using namespace std::string_literals;
using OpenStreetMap::Id;
using OpenStreetMap::Reader;
using OpenStreetMap::ReadError;
using support::to_ustring;
using support::ustring_to_utf8;
using testing::ElementsAre;
using testing::StartsWith;

namespace {

constexpr Id lowestId = std::numeric_limits<Id>::min();
constexpr Id highestId = std::numeric_limits<Id>::max();

// As many digits as tell a number from its neighbours.
std::string number(double value) {
  char digits[32];
  return {digits, std::to_chars(digits, digits + sizeof digits, value).ptr};
}

// Everything that the reader holds, as lines that differ when one bit does.
std::string contents(Reader const& reader) {
  std::map<std::pair<char, Id>, std::string> lines;
  auto const add = [&](char kind, auto const& element, std::string text) {
    std::map<std::string, std::string> tags;
    for (auto const& [k, v] : element.tags) tags[ustring_to_utf8(k)] = ustring_to_utf8(v);
    for (auto const& [k, v] : tags) text.append(" ").append(k).append("=").append(v);
    lines[{kind, element.id}] = kind + std::to_string(element.id) + text + "\n";
  };
  for (auto const& node : reader.nodes) {
    add('n', node, " @" + number(node.first) + "," + number(node.second));
  }
  for (auto const& way : reader.ways) {
    std::string text;
    for (Id const id : way.nodeReferences) text += " " + std::to_string(id);
    add('w', way, text);
  }
  for (auto const& relation : reader.relations) {
    std::string text;
    for (auto const& [type, id, role] : relation.members) {
      text += " " + ustring_to_utf8(OpenStreetMap::elementNameByType.at(type)) + ":" +
              std::to_string(id) + ":" + ustring_to_utf8(*role);
    }
    add('r', relation, text);
  }
  auto const [south, north] = reader.getLatitudeLimits();
  auto const [west, east] = reader.getLongitudeLimits();
  std::string all =
      number(south) + " " + number(north) + " " + number(west) + " " + number(east) + "\n";
  for (auto const& [key, line] : lines) all += line;
  return all;
}

void readFile(Reader& reader, TemporaryFile const& file) {
  reader.setFile(to_ustring(file.path()));
  reader.populate(reader.nodes);
}

// The name is as odd as names get.
std::string read(std::string_view bytes) {
  Reader reader;
  readFile(reader, TemporaryFile(bytes, " and\n%s-é-道-😀.txt"));
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
  if (auto const at = text.find("😀"); at != text.npos) text.replace(at, 4, "&#x1F600;");
  std::string bytes;
  for (char16_t const unit : to_ustring(text)) bytes += static_cast<char>(unit);
  return bytes;
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
      auto const field = std::to_string(static_cast<int>(packing));
      files["PBF " + field + (dense ? " dense" : " plain")] = pbfFile({}, {block}, packing);
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
    "r1 node:-1:stop way:0: relation:9223372036854775807:Straße type=x\n"
    "w-9223372036854775808\n"
    "w9223372036854775807 -9223372036854775808 -1 -1 9223372036854775806 highway= name=é\n";

TEST(Reader, ReadsTheSameFromAllFormats) {
  for (auto const& [format, bytes] : allFormats(sampleXml, sampleBlock())) {
    EXPECT_EQ(read(bytes), sampleContents) << format;
  }
}

// Larger than any buffer on the way, with all the digits that positions have.
TEST(Reader, ReadsTheSameFromAllFormatsOfALargeMap) {
  std::mt19937_64 random(1);
  PbfBlock block;
  std::string xml = "<osm version='0.6'>";
  for (int i = 0; i < 6000; ++i) {
    Id const id = static_cast<Id>(random() % 1'000'000) - 500'000;
    auto const lat = static_cast<std::int64_t>(random() % 900'000'000);
    auto const lon = static_cast<std::int64_t>(random() % 1'800'000'000);
    std::string const value = std::to_string(random());
    block.nodes.push_back({id, lat, -lon, {{"é", value}}});
    xml += "<node id='" + std::to_string(id) + "' lat='" + std::to_string(lat) + "e-7' lon='-" +
           std::to_string(lon) + "e-7'><tag k='é' v='" + value + "'/></node>";
  }
  std::string const expected = read(xml + "</osm>");
  EXPECT_GT(expected.size(), 200'000u);
  for (auto const& [format, bytes] : allFormats(xml + "</osm>", block)) {
    EXPECT_TRUE(read(bytes) == expected) << format;
  }
}

TEST(Reader, ReadsEachBlockOfAPbfFileForItself) {
  PbfBlock fine{1, -1'000'000'001, 1'000'000'000, false};
  fine.nodes = {{8, -1, -2, {{"ref", "é"}}}};
  PbfBlock plain;
  plain.nodes = {{7, 5, 6, {{"name", "é"}}}};
  EXPECT_EQ(read(pbfFile({.box = {{-1, 2'000'000'000, 3'000'000'000, -4}}},
                         {fine, PbfBlock{}, plain}, PbfPacking::zlib)),
            "-4e-09 3 -1e-09 2\nn7 @5e-07,6e-07 name=é\nn8 @-1.000000002,0.999999998 ref=é\n");
}

TEST(Reader, StoresTheFirstAndOnlyWhatIsThere) {
  // clang-format off
  char const* const cases[][2] = {
      {"<node id='1' lat='1' lon='2'/><node id='1' lat='3' lon='4'/>", "n1 @1,2\n"},
      {"<node id='1' lat='1' lon='2'><tag k='a' v='1'/><tag k='a' v='2'/></node>", "n1 @1,2 a=1\n"},
      {"<way id='1'><tag k='a' v='1'/></way><way id='1'><nd ref='1'/></way>", "w1 a=1\n"},
      {"<node id='1' lat='1' lon='2' visible='false'/><node id='1' lat='3' lon='4'/>", "n1 @3,4\n"},
      {"<way id='1' visible='false'><nd ref='1'/></way><way id='2'><nd ref='2'/></way>", "w2 2\n"},
      {"<node id='1' lat='1' lon='2' action='delete'/><relation id='1' action='delete'/>", ""},
      {"<way id='1' action='delete'/><way id='2' action='modify'/>", "w2\n"},
      {"<node id='1'><tag k='a' v='1'/></node><node id='2' lat='1' lon='2'/>", "n2 @1,2\n"},
      {"<relation id='1'/><way id='1'/><node id='1' lat='1' lon='2'/>", "n1 @1,2\nr1\nw1\n"},
      {"<node id='1' lat='.5' lon='5.'/>", "n1 @0.5,5\n"},
      {"<node id='1' lat='-4.81e1' lon='-180'/>", "n1 @-48.1,-180\n"},
      {"<node id='1' lat='1' lon='2'><x><tag k='a' v='1'/></x></node>", "n1 @1,2\n"},
      {"<remark> runtime notice </remark><note>runtime error</note><way id='1'/>", "w1\n"}};
  // clang-format on
  for (auto const& [body, expected] : cases) {
    std::string const all = read(osm(body));
    EXPECT_EQ(all.substr(all.find('\n') + 1), expected) << body;
  }
}

TEST(Reader, KnowsTheLimits) {
  std::string const node = "<node id='1' lat='50' lon='60'/><node id='2' lat='-51' lon='61'/>";
  std::string const again = "<node id='2' lat='80' lon='80'/>";
  std::string const deleted = "<node id='3' lat='80' lon='80' action='delete'/>";
  std::string const box = "<bounds minlat='1' minlon='2' maxlat='3' maxlon='4'/>";
  // clang-format off
  std::array<std::string, 2> const cases[] = {
      {box + node, "1 3 2 4"},
      {node + box, "1 3 2 4"},
      {"<bound box='-1,-2,3,4' origin='x'/>" + node, "-1 3 -2 4"},
      {box + "<bounds minlat='2' minlon='-2' maxlat='5' maxlon='3'/>", "1 5 -2 4"},
      {"<bounds minlat='1' minlon='179' maxlat='3' maxlon='-179'/>" + node, "1 3 179 -179"},
      {node + again + deleted, "-51 50 60 61"},
      {"<way id='1'>" + box + "<nd ref='1' lat='5' lon='6'/></way>", "nan nan nan nan"}};
  // clang-format on
  for (auto const& [body, expected] : cases) {
    std::string const all = read(osm(body));
    EXPECT_EQ(all.substr(0, all.find('\n')), expected) << body;
  }
}

// X stands for U+FFFD.
TEST(Reader, ReplacesIllFormedUtf8) {
  // clang-format off
  std::pair<std::string, std::u16string> const cases[] = {
      {"\xFF", u"X"},                   {"\xE6\x9D", u"X"},
      {"\xC0\xAF", u"XX"},              {"\xE0\x80\xAF", u"XXX"},
      {"\xF4\x90\x80\x80", u"XXXX"},    {"\xED\xA0\xBD\xED\xB8\x80", u"XXXXXX"},
      {"\xF0\x9F\x98x", u"Xx"},         {"\x80\xC2\x41", u"XXA"},
      {"a\0b"s, u"a\0b"s},              {"\xE1\x80\xE2\xF0\x91\x92\xF1\xBF\x41", u"XXXXA"},
      {"\xEF\xBF\xBF\xED\x9F\xBF\xF4\x8F\xBF\xBF", u"\uFFFF\uD7FF\U0010FFFF"}};
  // clang-format on
  PbfBlock block;
  for (auto const& [bytes, expected] : cases) {
    block.ways = {{1, {}, {{"name", bytes}, {"\xFE", "first"}, {"\xFF", "second"}}}};
    Reader reader;
    readFile(reader, TemporaryFile(pbfFile({}, {block})));
    auto const& tags = reader.ways.at(1).tags;
    std::u16string name = tags.at(u"name");
    std::replace(name.begin(), name.end(), u'\uFFFD', u'X');
    EXPECT_EQ(name, expected);
    EXPECT_EQ(tags.size(), 2u);
    EXPECT_EQ(tags.at(u"\uFFFD"), u"first");
  }
}

TEST(Reader, AnswersQueries) {
  Reader reader;
  readFile(reader, TemporaryFile(osm("<way id='5'><tag k='highway' v='road'/></way>"
                                     "<way id='-3'><tag k='highway' v=''/></way>"
                                     "<way id='2'><tag k='Highway' v='road'/></way>")));
  std::string const before = contents(reader);
  auto const* const five = reader.ways.find(5);
  auto const* const minusThree = reader.ways.find(-3);
  EXPECT_THAT(Reader::getElementsWithTag(u"highway", reader.ways), ElementsAre(minusThree, five));
  EXPECT_THAT(Reader::getElementsWithTag(u"high", reader.ways), ElementsAre());
  EXPECT_THAT(Reader::getElements(reader.ways, {5, -3, 5}), ElementsAre(five, minusThree, five));
  try {
    Reader::getElements(reader.ways, {5, 4});
    ADD_FAILURE() << "an id that isn't there was found";
  } catch (std::out_of_range const& error) {
    EXPECT_STREQ(error.what(), "_Map_base::at");
  }
  reader.populate(reader.nodes);  // reads nothing again, though the table is empty
  reader.populate(reader.ways);
  EXPECT_EQ(reader.ways.find(5), five);
  EXPECT_EQ(contents(reader), before);
}

// A hash that keeps the low bits of an id would take minutes here.
TEST(ElementTable, HoldsIdsInStepsOfAnySize) {
  for (int const shift : {0, 20, 32, 46}) {
    OpenStreetMap::NodeTable table;
    std::vector<OpenStreetMap::Node const*> stored;
    for (std::uint64_t i = 0; i < 200'000; ++i) {
      stored.push_back(table.insert({static_cast<Id>(i << shift), {}, 1.0, 2.0}));
    }
    std::uint64_t found = 0;
    while (found < stored.size() && table.find(static_cast<Id>(found << shift)) == stored[found]) {
      ++found;
    }
    EXPECT_EQ(found, 200'000u) << shift;
    EXPECT_EQ(table.insert({0, {}, 3.0, 4.0}), nullptr);
    EXPECT_EQ(table.find(3 + (Id{1} << 18)), nullptr);
    EXPECT_EQ(table.size(), 200'000u);
  }
}

TEST(Reader, SaysWhatIsWrongAndWhere) {
  std::string const node = "<node id='1' lat='1' lon='2'/>";
  std::string const header = pbfFile({}, {});
  std::string const blob1 = "blob 1 at byte 0: ";
  std::string const blob2 = "blob 2 at byte " + std::to_string(header.size()) + ": ";
  PbfBlock range, twice, member;
  range.nodes = {{1, 900'000'001, 0}};
  twice.ways = {{.id = 1, .nodes = {1, 2}, .nodesTwice = true}};
  member.relations = {{1, {{3, 1, ""}}, {}}};
  std::string manyDigits = "1";  // of two bytes each, so that no cut fits all
  for (int i = 0; i < 60; ++i) manyDigits += "٤";
  // clang-format off
  std::array<std::string, 2> const cases[] = {
      {"", "the file is empty"},
      {"hello", "this is not an OSM file"},
      {"{\"elements\": []}", "this is not an OSM file; it is JSON"},
      {"PK\x03\x04\x0A\tOSM", "this is not an OSM file; it is a ZIP"},
      {gzip(gzip(osm(""))), "this is not an OSM file; it is compressed more than once"},
      {"<html>\n</html>", "line 1, column 1: this is not an OSM file: its root element is <html>"},
      {osm("<create>" + node + "</create>"), "line 2, column 1: this is a change file"},
      {"<!DOCTYPE osm [<!ENTITY a 'b'>]>\n<osm/>", "line 1, column 15: a DOCTYPE"},
      {"<!DOCTYPE osm [<!ATTLIST node visible CDATA 'false'>]><osm/>", "line 1, column 15: a DOC"},
      {osm("<bounds minlat='2' minlon='0' maxlat='1' maxlon='0'/>"), "line 2, column 1: bounds"},
      {osm("<node id='1' lat='90.5' lon='0'/>"), "line 2, column 1: lat \"90.5\" is out of range"},
      {osm(node + "<node id='1' lat='0' lon='-181'/>"), "line 2, column 31: lon \"-181\" is out"},
      {osm("<node id='1' lat='1,5' lon='0'/>"), "line 2, column 1: lat \"1,5\" is not a number"},
      {osm("<node id='1' lat='1'/>"), "line 2, column 1: <node> without lon"},
      {osm("<way id='1'>\n<nd ref='x\n'/></way>"), "line 3, column 1: ref \"x \" is not"},
      {osm("<way id='" + manyDigits + "'/>"), "line 2, column 1: id \"1٤٤"},
      {osm("<relation id='1'><member type='x' ref='1'/></relation>"), "line 2, column 18: member"},
      {osm("<remark>\n runtime error: Query\ntimed out</remark>"), "line 4, column 10: the server"},
      {osm(node) + osm(node), "line 2, column 37: XML: "},
      {gzip(osm(node)) + "junk", "byte "},
      {gzip(osm(node)) + "\0\0junk"s, "byte "},
      {bzip2(osm(node)) + "junk", "byte "},
      {pbfFile({.features = {"Foo\n\xFF"}}, {}), blob1 + "the file requires the unknown feature"},
      {pbfFile({.features = {"HistoricalInformation"}}, {}), blob1 + "this is a history file"},
      {"\0\1\0\1\n"s, blob1 + "the blob header claims 65537 bytes"},
      {pbfFile({}, {PbfBlock{}, range}).erase(0, header.size()), blob1 + "the file does"},
      {header + header, blob2},
      {pbfFile({}, {range}), blob2},
      {pbfFile({}, {member}), blob2},
      {pbfFile({}, {twice}), blob2 + "packed field 8 stands more than once"}};
  // clang-format on
  for (auto const& [bytes, message] : cases) {
    TemporaryFile const file(bytes);
    EXPECT_THAT(errorOf(to_ustring(file.path())), StartsWith(file.path() + ": " + message));
  }
}

TEST(Reader, RefusesPathsThatCanNameNoFile) {
  TemporaryFile const good(osm("")), lookalike(osm(""), "\uFFFD");
  EXPECT_THAT(errorOf(u""), StartsWith(": can't open: "));
  std::u16string path = to_ustring(good.path()) + u"\0x"s;
  EXPECT_THAT(errorOf(path), StartsWith(good.path() + "?x: the file name contains a NUL"));
  path = to_ustring(lookalike.path());
  path.back() = u'\xD800';
  EXPECT_THAT(errorOf(path), StartsWith(lookalike.path() + ": the file name is not well-formed"));
}

TEST(Reader, IsEmptyAndUsableAfterAFailure) {
  TemporaryFile const good(sampleXml);
  Reader reader;
  EXPECT_THROW(reader.populate(reader.nodes), ReadError);
  for (auto const& [format, bytes] : allFormats(sampleXml, sampleBlock())) {
    SCOPED_TRACE(format);
    readFile(reader, good);
    EXPECT_EQ(contents(reader), sampleContents);
    TemporaryFile const broken(std::string_view(bytes).substr(0, bytes.size() - 5));
    EXPECT_THROW(readFile(reader, broken), ReadError);
    EXPECT_EQ(contents(reader), "nan nan nan nan\n");
    EXPECT_THROW(reader.populate(reader.nodes), ReadError);
  }
  readFile(reader, good);
  EXPECT_THROW(reader.setFile(u"/no such file"), ReadError);
  EXPECT_EQ(contents(reader), "nan nan nan nan\n");
}

// Cut anywhere, a file is refused, but for a PBF file between two blobs. Changed anywhere, it may
// be read or refused, nothing else.
TEST(Reader, SurvivesEveryCutAndChange) {
  auto const files = allFormats(sampleXml, sampleBlock());
  Reader reader;
  auto const isRead = [&](std::string_view bytes) {
    try {
      readFile(reader, TemporaryFile(bytes));
      return true;
    } catch (ReadError const&) {
      return false;
    }
  };
  for (char const* const format : {"UTF-8", "gzip", "bzip2", "PBF 1 dense", "PBF 3 plain"}) {
    std::string const& whole = files.at(format);
    std::size_t const header =
        format[0] == 'P' ? pbfFile({}, {}, static_cast<PbfPacking>(format[4] - '0')).size() : 0;
    for (std::size_t size = 0; size < whole.size(); ++size) {
      EXPECT_EQ(isRead(whole.substr(0, size)), size > 0 && size == header) << format << size;
      std::string changed = whole;
      changed[size] = static_cast<char>(changed[size] ^ (1 << size % 8));
      isRead(changed);
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
  EXPECT_TRUE(german);
}

}  // namespace
