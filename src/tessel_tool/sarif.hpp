#pragma once

/// @file
/// Problems as SARIF 2.1.0 (Static Analysis Results Interchange Format), piece by piece: a log with
/// one run. Begin, results, notifications of what could not be checked, end.

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "check_answer.hpp"
#include "exit_status.hpp"

namespace tessel_tool {

/// The log up to its first result.
std::string sarifBegin();

/// Appends a document's problems, each with a comma and a line feed before it.
void appendAsSarif(std::string& out, const CheckAnswer& answer);

/// The rest of the log.
/// @param unreadable inputs that could not be checked, and why.
std::string sarifEnd(const std::vector<std::pair<std::string, std::string>>& unreadable,
                     ExitStatus status);

/// The path of a file as a URI reference (RFC 3986): bytes that have no place in one are escaped.
std::string uriOf(std::string_view path);

}  // namespace tessel_tool
