#pragma once

/// @file
/// The one way in which builders narrate their work: records at one severity, through the host's
/// logger.

#include <functional>
#include <string>
#include <string_view>

namespace tessel::build::json::controls::framework {

/// The severity of every record. Bit 3 of the logger's level word, which has this value, switches
/// all of them.
inline constexpr unsigned kDiagnosticSeverity = 8;

/// Writes one record. With the severity's bit clear, this costs one look at the level word.
/// Logging never fails its caller: whatever the log throws stays here, and the record is dropped.
void logDiagnostic(std::string_view text) noexcept;

/// The same for a text that is costly to make: it is produced once a record is open, and never
/// when none is. A record whose text could not be produced is dropped.
void logDiagnostic(const std::function<std::string()>& produceText) noexcept;

}  // namespace tessel::build::json::controls::framework
