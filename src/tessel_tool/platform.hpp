#pragma once

/// @file
/// What differs between operating systems. The build chooses the file that defines it.

#include <cstdio>
#include <string_view>

namespace tessel_tool {

/// The key that ends an input which is typed.
extern const char* const kEndOfInputKey;

bool isTerminal(std::FILE* stream) noexcept;

/// Whether the stream is a terminal that a line can be erased on.
bool canEraseLine(std::FILE* stream) noexcept;

/// Makes a write to a pipe that nobody reads an error instead of the end of the process.
void reportBrokenPipesAsErrors() noexcept;

/// Has `handler` called, on any thread and between any two instructions, when somebody wants the
/// process to end. What the process was started to ignore stays ignored.
void setStopHandler(void (*handler)(int signal)) noexcept;

/// Ends the process as the signal does where nobody handles it. A handler may call it.
[[noreturn]] void endBySignal(int signal) noexcept;

/// Writes to standard error and past its buffer. A handler may call it.
void writeFromHandler(std::string_view text) noexcept;

/// Removes a file. A handler may call it.
void removeFromHandler(const char* path) noexcept;

}  // namespace tessel_tool
