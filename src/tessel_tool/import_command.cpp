#include "tessel_tool/import_command.hpp"

#include <utility>

#include "reference_host/importer/importer.hpp"
#include "tessel_tool/console.hpp"
#include "tessel_tool/import_answer.hpp"
#include "tessel_tool/input.hpp"
#include "tessel_tool/ordered_work.hpp"

namespace tessel_tool {

namespace {

/// An answer as it goes to the two streams.
struct WrittenAnswer {
  std::string result;
  std::string path;
  std::string parseError;
  bool failed;
};

}  // namespace

ExitStatus runImport(BuilderServices& services, const ImportOptions& options) {
  using reference_host::importer::OnError;
  const auto& builders = services.builders();
  const OnError onError = options.failFast ? OnError::kStop : OnError::kContinue;
  DocumentSource source(options.files, options.ndjson ? DocumentSource::Unit::kLine
                                                      : DocumentSource::Unit::kWholeInput);
  ProgressLine progress(options.ndjson);
  std::size_t documents = 0;
  std::size_t failed = 0;

  runInOrder(
      options.jobs, [&] { return source.next(); },
      [&](const Document& document) {
        const ImportAnswer answer = importOne(builders, document, onError, options.log);
        WrittenAnswer written{{}, answer.path, answer.parseError, answer.failed()};
        if (options.json) {
          appendAsJson(written.result, answer, options.ndjson);
        } else {
          appendAsTree(written.result, answer);
        }
        return written;
      },
      [&](const WrittenAnswer& answer) {
        ++documents;
        if (answer.failed) ++failed;
        progress.erase();
        writeResult(answer.result);
        if (!answer.parseError.empty()) complain(answer.path, answer.parseError);
        progress.show(documents, failed);
        return !(answer.failed && options.failFast);
      });
  return failed == 0 ? ExitStatus::kSuccess : ExitStatus::kInputFailed;
}

}  // namespace tessel_tool
