// The reader's errors: each says what is wrong and where.
#include <gmock/gmock.h>

#include "osm/ReadError.hpp"
#include "osm/Reader.hpp"
#include "support/printable.hpp"
#include "support/ustring.hpp"
#include "tests/fixture/PbfFile.hpp"
#include "tests/fixture/TemporaryFile.hpp"
#include "tests/fixture/packed.hpp"

using namespace std::string_literals;
using support::to_ustring;

namespace {

void expectError(std::u16string const& path, std::string const& message) {
  OpenStreetMap::Reader reader;
  try {
    reader.setFile(path);
    reader.populate(reader.ways);
    ADD_FAILURE() << "no error, but not: " << message;
  } catch (OpenStreetMap::ReadError const& error) {
    EXPECT_THAT(error.what(), testing::StartsWith(message));
    EXPECT_EQ(error.file(), support::ustring_to_utf8(path));
    EXPECT_THAT(error.place(),
                testing::MatchesRegex("(line .*, column [0-9]+|(blob .* at )?byte [0-9]+)?"));
    std::string const place = error.place().empty() ? "" : error.place() + ": ";
    EXPECT_EQ(error.what(), support::printable(error.file() + ": " + place + error.reason()));
  }
}

TEST(ReadError, SaysWhatIsWrongAndWhere) {
  std::string const map = "<osm>\n<node id='1' lat='1' lon='2'/></osm>";
  std::string const header = pbfFile({}, {});
  std::string const blob1 = "blob 1 at byte 0: ";
  std::string const blob2 = "blob 2 at byte " + std::to_string(header.size()) + ": ";
  std::string const large = "\x81\x80\x80\x10";  // 32 MiB and a byte
  // clang-format off
  std::pair<std::string, std::string> const cases[] = {
      {"", "the file is empty"},
      {"hello", "this is not an OSM file (neither"},
      {"\n {\"elements\": []}", "this is not an OSM file; it is JSON"},
      {gzip(gzip(map)), "this is not an OSM file; it is compressed more than once"},
      {gzip(map) + "junk", "byte "},
      {gzip(map) + "\0\0junk"s, "byte "},
      {bzip2(map) + "junk", "byte "},
      {"<html>\n</html>", "line 1, column 1: this is not an OSM file: its root element is <html>"},
      {"<!DOCTYPE osm [<!ENTITY a 'b'>]>\n<osm/>", "line 1, column 15: a DOCTYPE"},
      {map + map, "line 2, column 37: XML: "},
      {"<osm version='0.5'/>", "line 1, column 1: OSM version \"0.5\" is not supported"},
      {"<osm><tag k='a' v='b'/>", "line 1, column 6: <tag> outside an element"},
      {"<osm>\n<create>", "line 2, column 1: this is a change file"},
      {"<osm><remark>\n runtime error: Query\ntimed out</remark>",
       "line 3, column 10: the server cut this answer short: ? runtime error: Query?timed out"},
      {"<osm><bounds minlat='2' minlon='0' maxlat='1' maxlon='0'/>", "line 1, column 6: bounds"},
      {"<osm><node id='1' lat='1' lon='1' version='2'/><way id='1' version='3'/>\n"
       "<node id='1' visible='false' version='13'/>",
       "line 2, column 1: node 1 stands here in version 13, right after its version 2: this is a "
       "history file, or a careless merge"},
      {"<osm><node id='1' lat='1e400' lon='0'/>", "line 1, column 6: lat \"1e400\" is out of range"},
      {"<osm><node id='x' visible='false'/>", "line 1, column 6: id \"x\" is not a whole number"},
      {"<osm><node id='1' lat='0' lon='-181'/>", "line 1, column 6: lon \"-181\" is out of range"},
      {"<osm><node id='1' lat='1,5' lon='0'/>", "line 1, column 6: lat \"1,5\" is not a number"},
      {"<osm><node id='1' lat='1'/>", "line 1, column 6: <node> without lon"},
      {"<osm><way id='1'><nd ref='x'/>", "line 1, column 18: ref \"x\" is not"},
      {"<osm><relation id='1'><member type='x' ref='1'/>", "line 1, column 23: member type \"x\""},
      {pbfFile("\x08\1", {}), blob1 + "field 1 has the wrong wire type"},
      {pbfBlob("OSMHeader", "\x10\0\x1A\x08\x78\x9C\3\0\0\0\0\1"s) + "x",
       "blob 2 at byte 29: the file is cut short"},
      {pbfBlob("OSMHeader", "\x10\0\x1A\x09\x78\x9C\3\0\0\0\0\1x"s),
       blob1 + "the zlib stream is damaged"},
      {pbfBlob("OSMHeader", "\x10" + large + "\x1A\0"s), blob1 + "the blob claims 33554433 bytes of"},
      {"\0\0\0\x10\n\tOSMHeader\x18"s + large, blob1 + "the blob claims 33554433 bytes; the format"},
      {pbfFile("\"\5Foo\n\xFF", {}), blob1 + "the file requires the unknown feature \"Foo?\uFFFD"},
      {pbfFile("\"\x15HistoricalInformation", {}), blob1 + "this is a history file"},
      {"\0\1\0\1\n"s, blob1 + "the blob header claims 65537 bytes"},
      {pbfFile({}, {{}}).substr(header.size()), blob1 + "the file does not start with"},
      {header + header, blob2 + "a second OSMHeader"},
      {pbfFile({}, {{.nodes = {{1, 900'000'001, 0}}}}), blob2 + "latitude of 90000000100"},
      {pbfFile({}, {{.nodes = {{1, 0, 2'147'483'647}}}}), blob2 + "longitude of 214748364700"},
      {pbfFile({}, {{.nodes = {{1, 1LL << 60, 0}}}}), blob2 + "latitude is out of range"},
      {pbfFile({}, {{.granularity = 0}}), blob2 + "the granularity is not positive"},
      {pbfFile({}, {{.nodes = {{7}, {8, 0, 0, {}, false, 1}, {8, 0, 0, {}, true, 4}}}}),
       blob2 + "node 8 stands here in version 4, right after its version 1"},
      {pbfFile({}, {{.ways = {{.id = 1, .version = 1}, {.id = 1, .visible = false, .version = 2}}}}),
       blob2 + "way 1 stands here in version 2, right after its version 1"},
      {pbfFile({}, {{.relations = {{1, {{3, 1, ""}}}}}}), blob2 + "member type 3 is unknown"},
      {pbfFile({}, {{.ways = {{.id = 1, .nodes = {1}, .nodeFields = 2}}}}),
       blob2 + "packed field 8 stands more than once"}};
  // clang-format on
  for (auto const& [bytes, message] : cases) {
    TemporaryFile const file(bytes);
    expectError(to_ustring(file.path()), file.path() + ": " + message);
  }
}

TEST(ReadError, NamesThePathThatCanNameNoFile) {
  TemporaryFile const good("<osm/>");
  expectError(u"", ": can't open: ");
  expectError(to_ustring(good.path()) + u"\0x"s, good.path() + "?x: the file name contains a NUL");
  expectError(u"a\xD800", "a\uFFFD: the file name is not well-formed");
}

}  // namespace
