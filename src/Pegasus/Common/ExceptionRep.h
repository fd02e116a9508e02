#ifndef Pegasus_ExceptionRep_h
#define Pegasus_ExceptionRep_h

#include <memory>
#include <vector>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Common/CIMStatusCode.h>

PEGASUS_NAMESPACE_BEGIN

class CIMInstance;

// What every exception carries; the CIM fields stay at their defaults for
// exceptions that are not CIMExceptions.
struct ExceptionRep {
    String message;
    CIMStatusCode code = CIM_ERR_SUCCESS;
    String file;
    Uint32 line = 0;
    String cimMessage;
    // Stored instances are never changed, so copies of an exception share them.
    std::vector<std::shared_ptr<const CIMInstance>> errors;
};

PEGASUS_NAMESPACE_END

#endif /* Pegasus_ExceptionRep_h */
