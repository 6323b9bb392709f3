#pragma once

/// @file
/// The one way in which builders narrate their work: records at one severity, through the host's
/// logger.

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "tessel/shared/logging.hpp"

namespace tessel::build::json::controls::framework {

/// The severity of every record. Bit 3 of the logger's level word, which has this value, switches
/// all of them.
inline constexpr unsigned kDiagnosticSeverity = 8;

namespace diagnostics_detail {

using Logger = foundation::log::basic_diagnostic_logger<char>;

/// An atomic or a plain integer, as the host has it.
using LevelWord = std::remove_reference_t<decltype(enabled_levels(std::declval<Logger&>()))>;

template <typename Integer>
std::uint32_t levelsIn(const std::atomic<Integer>& word) noexcept {
  return word.load(std::memory_order_relaxed);
}
inline std::uint32_t levelsIn(const volatile std::uint32_t& word) noexcept {
  return word;
}

/// The logger's level word once the logger has been asked for; before that one with all bits set,
/// so that the first call goes and asks. To ask anew for each record, behind a call that keeps what
/// the asking may throw, would take 1.6 % more instructions of a build with diagnostics off and 4.5
/// % more of a round of questions.
extern std::atomic<const LevelWord*> levelWord;

/// A text that is made once a record is open: a plain reference to what makes it.
struct TextSource {
  const void* producer;
  std::string (*produce)(const void* producer);
};

void write(std::string_view text) noexcept;
void write(const TextSource& source) noexcept;

}  // namespace diagnostics_detail

/// One look at the level word: false while the severity's bit is clear.
inline bool mayRecordDiagnostics() noexcept {
  return (diagnostics_detail::levelsIn(
              *diagnostics_detail::levelWord.load(std::memory_order_acquire)) &
          kDiagnosticSeverity) != 0;
}

/// Writes one record. With the severity's bit clear, this costs one look at the level word.
/// Logging never fails its caller: whatever the log throws stays here, and the record is dropped.
inline void logDiagnostic(std::string_view text) noexcept {
  if (mayRecordDiagnostics()) diagnostics_detail::write(text);
}

/// The same for a text that is costly to make: it is produced once a record is open, and never
/// when none is. A record whose text could not be produced is dropped.
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
