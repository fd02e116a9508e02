#ifndef Pegasus_Type_h
#define Pegasus_Type_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

// The CIM data types; the comment names the C++ type that carries each.
// A fixed underlying type keeps an unknown type code a valid value, which the checks then refuse.
enum CIMType : Uint32 {
    CIMTYPE_BOOLEAN,   // Boolean
    CIMTYPE_UINT8,     // Uint8
    CIMTYPE_SINT8,     // Sint8
    CIMTYPE_UINT16,    // Uint16
    CIMTYPE_SINT16,    // Sint16
    CIMTYPE_UINT32,    // Uint32
    CIMTYPE_SINT32,    // Sint32
    CIMTYPE_UINT64,    // Uint64
    CIMTYPE_SINT64,    // Sint64
    CIMTYPE_REAL32,    // Real32
    CIMTYPE_REAL64,    // Real64
    CIMTYPE_CHAR16,    // Char16
    CIMTYPE_STRING,    // String
    CIMTYPE_DATETIME,  // CIMDateTime
    CIMTYPE_REFERENCE, // CIMObjectPath
    CIMTYPE_OBJECT,    // CIMObject
    CIMTYPE_INSTANCE   // CIMInstance
};

// The MOF keyword of a type ("boolean", "uint8", ..., "reference").
PEGASUS_COMMON_LINKAGE const char* cimTypeToString(const CIMType type);

PEGASUS_NAMESPACE_END

#endif /* Pegasus_Type_h */
