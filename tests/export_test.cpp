// What the exchange formats make of text that no file in XML can bring.
#include <gmock/gmock.h>

#include <fstream>
#include <iterator>

#include "export/NetworkExport.hpp"
#include "importer/RoadNetworkImporter.hpp"
#include "tests/fixture/Import.hpp"
#include "tests/fixture/PbfFile.hpp"
#include "tests/fixture/TemporaryFile.hpp"

using testing::HasSubstr;

TEST(Export, ReplacesCharactersThatTheFormatLacks) {
  using namespace std::string_literals;
  std::string const odd = "a\0b\u0001\uFFFE\uFFFF]]>\u0085"s;
  TemporaryFile const pbf(
      pbfFile(
          "",
          {{.nodes = {{.id = 1}, {.id = 2, .latitude = 1}},
            .ways = {{.id = 1, .nodes = {1, 2}, .tags = {{"highway", "road"}, {"name", odd}}}}}}),
      ".pbf");
  Import import;
  import.importer.run(pbf.path());
  for (auto const& [name, text] : {
           std::pair{"graphml", "<data key=\"name\">a\uFFFDb\uFFFD\uFFFD\uFFFD]]&gt;\u0085</data>"},
           std::pair{"geojson", "\"name\": \"a\uFFFDb\\u0001\uFFFE\uFFFF]]>\u0085\""},
           std::pair{"json", "\"name\": \"a\\u0000b\\u0001\uFFFE\uFFFF]]>\u0085\""},
       }) {
    TemporaryFile const file("");
    NetworkExport output(*findFormat(name), file.path(), true);
    output.write(import.importer);
    output.commit();
    std::ifstream stream(file.path());
    std::string const content(std::istreambuf_iterator<char>(stream), {});
    EXPECT_THAT(content, HasSubstr(text)) << name;
  }
}
