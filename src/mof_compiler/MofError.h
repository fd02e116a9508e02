#ifndef KSV_MOF_MOFERROR_H
#define KSV_MOF_MOFERROR_H

#include <stdexcept>
#include <string>

namespace ksv::mof {

// Where a piece of MOF text starts: file as given to the compiler, 1-based
// line and column.
struct SourceLocation {
    std::string file;
    unsigned line = 0;
    unsigned column = 0;

    // "file:line:column", the prefix of every diagnostic.
    std::string toString() const;
};

// A MOF text that cannot be compiled. what() reads
// "file:line:column: error: message".
class MofError : public std::runtime_error {
public:
    MofError(SourceLocation location, const std::string& message);

    const SourceLocation& location() const { return _location; }
    const std::string& message() const { return _message; }

private:
    SourceLocation _location;
    std::string _message;
};

} // namespace ksv::mof

#endif
