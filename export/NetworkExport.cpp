#include "export/NetworkExport.hpp"

#include "report/ImportReport.hpp"

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

void NetworkExport::write(RoadNetworkImporter const& importer, ImportReport const* report) {
  if (auto* const file = std::get_if<OutputFile>(&output_)) {
    if (auto const* const reported = std::get_if<Format::ReportedStream>(&format_.output)) {
      ImportReport own;
      if (report == nullptr) own = reportOn(importer);
      reported->write(importer, report == nullptr ? own : *report, file->file());
    } else {
      std::get<Format::Stream>(format_.output).write(importer, file->file());
    }
    file->complete();
  } else {
    std::get<Format::Files>(format_.output).write(importer, std::get<OutputFolder>(output_));
  }
}

void NetworkExport::commit() {
  std::visit([](auto& output) { output.commit(); }, output_);
}
