// A host in one page: loads the extension at run time, as a numeric environment would, imports a
// file into a network of its own, and shows what each kind of failure looks like.
//
//   example_host EXTENSION.so FILE.osm
#include <dlfcn.h>

#include <functional>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "gateway/ElementObject.hpp"
#include "gateway/Exception.hpp"
#include "gateway/HostArray.hpp"
#include "model/roadnetwork/RoadNetwork.hpp"
#include "osm/ReadError.hpp"
#include "support/ustring.hpp"

using Import = void(int, std::unique_ptr<HostArray>[], int, HostArray const*[]);

namespace {

std::unique_ptr<HostArray> text(std::string const& utf8) {
  std::u16string const units = support::to_ustring(utf8);
  return host::createCharacterArray({1, units.size()}, units);
}

// Runs a call and says how it ended.
void attempt(char const* what, std::function<void()> const& call) {
  std::cout << what << ": ";
  try {
    call();
    std::cout << "done\n";
  } catch (foundation::core::except::IMsgIDException const& error) {  // wrong arguments
    std::cout << error.GetID() << ": " << error.what() << '\n';
  } catch (OpenStreetMap::ReadError const& error) {  // the file
    std::cout << "the file can't be read: " << error.what() << '\n';
  } catch (std::exception const& error) {  // anything else, such as out of memory
    std::cout << error.what() << '\n';
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: example_host EXTENSION.so FILE.osm\n";
    return 2;
  }
  void* const library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    std::cerr << dlerror() << '\n';
    return 1;
  }
  auto* const import = reinterpret_cast<Import*>(dlsym(library, "importOSMRoadNetworkImpl"));
  if (import == nullptr) {
    std::cerr << dlerror() << '\n';
    return 1;
  }

  auto const model = kb::zero::Model::create();
  auto const network = velora::roadnetwork::RoadNetwork::create(model, boost::uuids::uuid{});
  auto const modelArray = host::createElementArray(model);
  auto const networkArray = host::createElementArray(network);
  auto const fileName = text(argv[2]);
  auto const noFile = text("no such file.osm");
  auto const number =
      host::createNumericArray({1, 1}, host::ClassCode::real64, host::Complexity::real);
  auto const missing = host::createStringArray({1, 1}, {std::nullopt});

  std::unique_ptr<HostArray> result;
  auto const callWith = [&](std::vector<HostArray const*> inputs, int outputs = 1) {
    return [&result, import, inputs, outputs]() mutable {
      import(outputs, &result, static_cast<int>(inputs.size()), inputs.data());
    };
  };
  HostArray const* const m = modelArray.get();
  HostArray const* const n = networkArray.get();
  attempt("two outputs", callWith({m, n, fileName.get()}, 2));
  attempt("two inputs", callWith({m, n}));
  attempt("four inputs", callWith({m, n, fileName.get(), m}));
  attempt("model and network swapped", callWith({n, m, fileName.get()}));
  attempt("a number as file name", callWith({m, n, number.get()}));
  attempt("a missing string as file name", callWith({m, n, missing.get()}));
  attempt("no such file", callWith({m, n, noFile.get()}));
  attempt("import", callWith({m, n, fileName.get()}));

  if (result) {
    std::cout << "limits:";
    double const* const limits = host::doubleData(*result);
    for (std::size_t i = 0; i < host::numberOfElements(*result); ++i) std::cout << ' ' << limits[i];
    std::cout << "\nthe network holds " << network->getNodes().size() << " Nodes and "
              << network->getRoads().size() << " Roads\n";
  }
  // Errors that the extension threw are gone by now, so it can be unloaded; the model stays.
  dlclose(library);
  return result ? 0 : 1;
}
