#pragma once

namespace tessel_tool {

enum class ExitStatus {
  kSuccess = 0,
  kInputFailed = 1,  ///< some input or element failed; the rest was done
  kUnusable = 2,     ///< wrong usage, or the bundle could not be loaded
};

}  // namespace tessel_tool
