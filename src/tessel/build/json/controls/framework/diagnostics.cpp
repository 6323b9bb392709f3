#include "framework/diagnostics.hpp"

#include <atomic>
#include <boost/log/core/record.hpp>
#include <boost/log/sources/record_ostream.hpp>
#include <boost/log/sources/severity_feature.hpp>
#include <memory>
#include <mutex>
#include <utility>

namespace tessel::build::json::controls::framework {

namespace {

using diagnostics_detail::Logger;
using StreamProvider = boost::log::aux::stream_provider<char>;

// Boost.Log keeps a released compound for the next records of the thread.
struct CompoundRelease {
  void operator()(StreamProvider::stream_compound* compound) const noexcept {
    StreamProvider::release_compound(compound);
  }
};

constexpr std::uint32_t kEveryLevel = 0xFFFFFFFF;
const diagnostics_detail::LevelWord kLoggerNotAskedForYet{kEveryLevel};

/// Gets the logger. From the first call on, its level word is known.
Logger& knownLogger() {
  Logger& logger = tessel::shared::logging::getLogger();
  if (diagnostics_detail::levelWord.load(std::memory_order_relaxed) == &kLoggerNotAskedForYet) {
    diagnostics_detail::levelWord.store(&enabled_levels(logger), std::memory_order_release);
  }
  return logger;
}

boost::log::record openRecord(Logger& logger) {
  if (!foundation::log::core(logger)->get_logging_enabled()) return {};
  auto&& mutex = lock(logger);
  const std::lock_guard guard(mutex);
  boost::log::sources::aux::get_severity_level() = kDiagnosticSeverity;
  return foundation::log::core(logger)->open_record(attributes(logger));
}

// Produces the text only once a record is open.
template <typename ProduceText>
void writeRecord(const ProduceText& produceText) noexcept {
  try {
    Logger& logger = knownLogger();
    if (!mayRecordDiagnostics()) return;
    boost::log::record record = openRecord(logger);
    if (!record) return;
    const std::unique_ptr<StreamProvider::stream_compound, CompoundRelease> compound(
        StreamProvider::allocate_compound(record));
    const auto& text = produceText();
    compound->stream.write(text.data(), static_cast<std::streamsize>(text.size()));
    compound->stream.flush();
    // The stream catches what its buffer throws. A record with part of its text is dropped.
    if (compound->stream.good()) foundation::log::core(logger)->push_record(boost::move(record));
  } catch (...) {
    // A failure of the log does not fail the build: the record is dropped.
  }
}

}  // namespace

namespace diagnostics_detail {

std::atomic<const LevelWord*> levelWord{&kLoggerNotAskedForYet};

void write(std::string_view text) noexcept {
  writeRecord([text] { return text; });
}

void write(const TextSource& source) noexcept {
  writeRecord([&source] { return source.produce(source.producer); });
}

}  // namespace diagnostics_detail

}  // namespace tessel::build::json::controls::framework
