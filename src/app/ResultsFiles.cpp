#include "app/ResultsFiles.h"

#include "base/FileError.h"
#include "report/ResultsCsv.h"
#include "report/ResultsReport.h"

#include <filesystem>

namespace vardo {
namespace {

void MakeFolder(const std::filesystem::path& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) throw FileError(PathInWords(folder) + " could not be made (" + error.message() + "); choose another place.");
}

}  // namespace

ResultsFiles::ResultsFiles(const ResultsOptions& options, const Program& program, const RunSetup& setup,
                           std::span<const Finding> findings, std::ostream& output)
    : options_(options), program_(program), setup_(setup), findings_(findings), output_(output), series_(program) {
  FileSystem& files = MachineFileSystem();
  if (options.json == kToStandardOutput)
    json_.emplace(output, program, setup);
  else if (!options.json.empty())
    json_.emplace(jsonFile_.emplace(files, options.json), program, setup);
  if (!options.html.empty()) htmlFile_.emplace(files, options.html);
  if (options.csv.empty()) return;
  MakeFolder(options.csv);
  summaryFile_.emplace(files, options.csv / "summary.csv");
  WriteReplicationsHead(replicationsFile_.emplace(files, options.csv / "replications.csv"));
}

void ResultsFiles::Add(const ReplicationRecord& record) {
  if (json_) json_->Add(record);
  if (htmlFile_) series_.Add(record);
  if (replicationsFile_) WriteReplicationCsv(program_, record, *replicationsFile_);
}

void ResultsFiles::Finish(const RunResults& results, double seconds) {
  if (json_) json_->Finish(results);
  if (summaryFile_) WriteSummaryCsv(program_, results.summary, *summaryFile_);
  if (htmlFile_) WriteHtml({program_, setup_, results, series_, findings_}, *htmlFile_);
  for (auto* file : {&jsonFile_, &summaryFile_, &replicationsFile_, &htmlFile_})
    if (*file) (*file)->Finish();
  if (!options_.isQuiet && options_.json != kToStandardOutput)
    PrintResults(program_, setup_, results, {options_.all, seconds}, output_);
}

}  // namespace vardo
