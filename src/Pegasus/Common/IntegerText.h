#ifndef Pegasus_IntegerText_h
#define Pegasus_IntegerText_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

// Integers as CIM writes them: decimal without leading zeros ("0" itself is
// fine) or hexadecimal "0x1F"/"0X1f". Both return false on any other text,
// including values that do not fit.

// No sign at all.
PEGASUS_COMMON_LINKAGE Boolean parseUnsignedInteger(const char* text, Uint64& value);

// An optional '+' or '-' in front of the unsigned form.
PEGASUS_COMMON_LINKAGE Boolean parseSignedInteger(const char* text, Sint64& value);

PEGASUS_NAMESPACE_END

#endif /* Pegasus_IntegerText_h */
