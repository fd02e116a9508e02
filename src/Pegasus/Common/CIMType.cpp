#include <Pegasus/Common/CIMType.h>

#include <Pegasus/Common/Exception.h>

PEGASUS_NAMESPACE_BEGIN

const char* cimTypeToString(const CIMType type) {
    static const char* const names[] = {"boolean", "uint8",   "sint8",  "uint16",   "sint16",
                                        "uint32",  "sint32",  "uint64", "sint64",   "real32",
                                        "real64",  "char16",  "string", "datetime", "reference",
                                        "object",  "instance"};
    if (Uint32(type) >= sizeof(names) / sizeof(names[0]))
        throw TypeMismatchException();
    return names[type];
}

PEGASUS_NAMESPACE_END
