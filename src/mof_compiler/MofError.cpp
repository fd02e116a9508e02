#include "mof_compiler/MofError.h"

namespace ksv::mof {

std::string SourceLocation::toString() const {
    return file + ":" + std::to_string(line) + ":" + std::to_string(column);
}

MofError::MofError(SourceLocation location, const std::string& message)
    : std::runtime_error(location.toString() + ": error: " + message),
      _location(std::move(location)), _message(message) {}

} // namespace ksv::mof
