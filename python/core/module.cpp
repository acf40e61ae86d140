// The compiled module of the Python package.
#include <nanobind/nanobind.h>
#include <nanobind/stl/optional.h>
#include <nanobind/stl/string.h>
#include <nanobind/stl/vector.h>

#include <array>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "export/writeHtml.hpp"
#include "osm/ReadError.hpp"
#include "python/core/Gil.hpp"
#include "python/core/Import.hpp"
#include "python/core/chosenOptions.hpp"
#include "python/core/parts.hpp"

namespace nb = nanobind;

namespace {

// The bytes of an object, for as long as it lives.
class Buffer {
 public:
  explicit Buffer(nb::handle object) {
    if (PyObject_GetBuffer(object.ptr(), &view_, PyBUF_SIMPLE) != 0) throw nb::python_error();
  }
  Buffer(Buffer const&) = delete;
  Buffer& operator=(Buffer const&) = delete;
  ~Buffer() { PyBuffer_Release(&view_); }

  std::span<char const> bytes() const {
    return {static_cast<char const*>(view_.buf), static_cast<std::size_t>(view_.len)};
  }

 private:
  Py_buffer view_{};
};

std::string fileSystemBytes(nb::handle path) {
  PyObject* converted = nullptr;
  if (PyUnicode_FSConverter(path.ptr(), &converted) == 0) throw nb::python_error();
  auto const bytes = nb::steal<nb::bytes>(converted);
  return {bytes.c_str(), bytes.size()};
}

Import* readSource(nb::object const& source, std::string const& join, std::string const& oneway,
                   std::optional<std::vector<std::string>> tags, unsigned threads,
                   nb::object const& progress) {
  ImportOptions options = optionsOf(join, oneway, std::move(tags));
  auto const import = [&](Source const& from) {
    return new Import(from, std::move(options), threads, Watch(progress));
  };
  if (nb::isinstance<nb::str>(source)) return import(fileSystemBytes(source));
  if (nb::isinstance<nb::tuple>(source)) {
    return import(OpenFile{nb::cast<int>(source[0]), fileSystemBytes(source[1])});
  }
  Buffer const buffer(source);
  return import(buffer.bytes());
}

void raiseReadError(std::exception_ptr const& thrown, void* /*unused*/) {
  try {
    std::rethrow_exception(thrown);
  } catch (OpenStreetMap::ReadError const& error) {
    auto const file = nb::steal(PyUnicode_DecodeFSDefaultAndSize(
        error.file().data(), static_cast<Py_ssize_t>(error.file().size())));
    nb::object const type = nb::module_::import_("osm2roadnet.errors").attr("ReadError");
    nb::object const raised = type(file, error.place(), error.reason());
    PyErr_SetObject(type.ptr(), raised.ptr());
  }
}

}  // namespace

NB_MODULE(_core, module) {
  nb::set_leak_warnings(false);  // a network that a module holds until the end is no leak
  nb::register_exception_translator(raiseReadError);
  nb::module_::import_("atexit").attr("register")(nb::cpp_function([] { gil::processEnds(); }));

  module.attr("comfortable_roads") = comfortableRoads;
  nb::class_<Import>(module, "Import")
      .def_ro("nodes", &Import::nodes)
      .def_ro("roads", &Import::roads)
      .def_ro("texts", &Import::texts)
      .def_ro("lines", &Import::lines)
      .def_ro("ways", &Import::ways)
      .def_prop_ro("limits", &Import::limits)
      .def_prop_ro("reference", &Import::reference)
      .def_prop_ro("counts", &Import::counts)
      .def_prop_ro("restrictions", &Import::restrictions)
      .def("lengths", &Import::lengths)
      .def("report", &Import::report)
      .def(
          "write",
          [](Import& import, nb::str const& path, std::string const& format, bool overwrite) {
            import.write(fileSystemBytes(path), format, overwrite);
          },
          nb::arg("path"), nb::arg("format"), nb::arg("overwrite") = false);
  module.def("read", readSource, nb::arg("source"), nb::arg("join") = "compatible",
             nb::arg("oneway") = "implied", nb::arg("tags") = nb::none(), nb::arg("threads") = 0,
             nb::arg("progress") = nb::none(), nb::rv_policy::take_ownership);
  bindParts(module);
}
