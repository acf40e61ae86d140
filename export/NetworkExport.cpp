#include "export/NetworkExport.hpp"

namespace {

std::variant<OutputFile, OutputFolder> makeOutput(Format const& format, std::string const& name,
                                                  bool overwrite) {
  using Output = std::variant<OutputFile, OutputFolder>;
  auto const* const files = std::get_if<Format::Files>(&format.output);
  if (files == nullptr) return Output(std::in_place_type<OutputFile>, name, overwrite);
  if (files->require != nullptr) files->require(name);
  return Output(std::in_place_type<OutputFolder>, name, overwrite, files->names, files->result);
}

}  // namespace

NetworkExport::NetworkExport(Format const& format, std::string const& name, bool overwrite)
    : format_(format), output_(makeOutput(format, name, overwrite)) {}

void NetworkExport::write(RoadNetworkImporter const& importer) {
  if (auto* const file = std::get_if<OutputFile>(&output_)) {
    std::get<Format::Stream>(format_.output).write(importer, file->file());
    file->complete();
  } else {
    std::get<Format::Files>(format_.output).write(importer, std::get<OutputFolder>(output_));
  }
}

void NetworkExport::commit() {
  std::visit([](auto& output) { output.commit(); }, output_);
}
