#pragma once

/// @file
/// The builders' log records: all at one severity, through the host's logger.

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "tessel/shared/logging.hpp"

namespace tessel::build::json::controls::framework {

/// The severity of every record. The records are on while bit 3 of the logger's level word is set,
/// the bit with this value.
inline constexpr unsigned kDiagnosticSeverity = 8;

namespace diagnostics_detail {

using Logger = foundation::log::basic_diagnostic_logger<char>;

/// Atomic or a plain integer, as the host defines it.
using LevelWord = std::remove_reference_t<decltype(enabled_levels(std::declval<Logger&>()))>;

template <typename Integer>
std::uint32_t levelsIn(const std::atomic<Integer>& word) noexcept {
  return word.load(std::memory_order_relaxed);
}
inline std::uint32_t levelsIn(const volatile std::uint32_t& word) noexcept {
  return word;
}

/// The logger's level word once the logger is known. Before that, a word with all bits set, so that
/// the first record gets the logger. To get it for every record would take 1.6 % more instructions
/// of a build with diagnostics off, and 4.5 % more of a round of questions.
extern std::atomic<const LevelWord*> levelWord;

/// A reference to the callable that makes a text once a record is open.
struct TextSource {
  const void* producer;
  std::string (*produce)(const void* producer);
};

void write(std::string_view text) noexcept;
void write(const TextSource& source) noexcept;

}  // namespace diagnostics_detail

/// Reads the level word once: false while the severity's bit is clear.
inline bool mayRecordDiagnostics() noexcept {
  return (diagnostics_detail::levelsIn(
              *diagnostics_detail::levelWord.load(std::memory_order_acquire)) &
          kDiagnosticSeverity) != 0;
}

/// Writes one record. While the severity's bit is clear, it only reads the level word. Logging
/// never fails its caller: it catches whatever the log throws, and drops the record.
inline void logDiagnostic(std::string_view text) noexcept {
  if (mayRecordDiagnostics()) diagnostics_detail::write(text);
}

/// The same for a text that is costly to make. It is produced only once a record is open. If that
/// throws, the record is dropped.
/// @param produceText a callable without parameters that returns a `std::string`.
template <typename ProduceText,
          typename = std::enable_if_t<std::is_invocable_r_v<std::string, const ProduceText&>>>
void logDiagnostic(const ProduceText& produceText) noexcept {
  if (!mayRecordDiagnostics()) return;
  diagnostics_detail::write({std::addressof(produceText), [](const void* producer) {
                               return std::string((*static_cast<const ProduceText*>(producer))());
                             }});
}

}  // namespace tessel::build::json::controls::framework
