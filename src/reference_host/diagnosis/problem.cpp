#include "reference_host/diagnosis/problem.hpp"

namespace reference_host::diagnosis {

const char* codeName(Code code) noexcept {
  switch (code) {
    case Code::kSyntax:
      return "syntax";
    case Code::kWrongType:
      return "wrong-type";
    case Code::kMissingMember:
      return "missing-member";
    case Code::kCannotTell:
      return "cannot-tell";
    case Code::kBuildFailed:
      return "build-failed";
    case Code::kUnknownClass:
      return "unknown-class";
    case Code::kUnknownType:
      return "unknown-type";
    case Code::kUnknownMember:
      return "unknown-member";
    case Code::kIgnoredMember:
      return "ignored-member";
    case Code::kDuplicateMember:
      return "duplicate-member";
    case Code::kDuplicateId:
      return "duplicate-id";
    case Code::kUnlikelyValue:
      break;
  }
  return "unlikely-value";
}

bool isError(Code code) noexcept {
  return code <= Code::kBuildFailed;
}

}  // namespace reference_host::diagnosis
