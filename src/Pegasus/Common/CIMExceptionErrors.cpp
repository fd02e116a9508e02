#include <Pegasus/Common/MessageLoader.h>
#include <Pegasus/Common/Exception.h>

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/ExceptionRep.h>
#include <Pegasus/Common/InternalException.h>

PEGASUS_NAMESPACE_BEGIN

// Error instances are copied in, so later changes by the caller do not show.
CIMException::CIMException(CIMStatusCode code, const String& message, const CIMInstance& instance)
    : CIMException(code, message) {
    addError(instance);
}

CIMException::CIMException(CIMStatusCode code, const String& message,
                           const Array<CIMInstance>& instances)
    : CIMException(code, message) {
    for (Uint32 i = 0; i < instances.size(); i++)
        addError(instances[i]);
}

CIMException::CIMException(CIMStatusCode code, const MessageLoaderParms& msgParms,
                           const CIMInstance& instance)
    : CIMException(code, msgParms) {
    addError(instance);
}

CIMException::CIMException(CIMStatusCode code, const MessageLoaderParms& msgParms,
                           const Array<CIMInstance>& instances)
    : CIMException(code, msgParms) {
    for (Uint32 i = 0; i < instances.size(); i++)
        addError(instances[i]);
}

CIMConstInstance CIMException::getError(Uint32 index) const {
    if (index >= _rep->errors.size())
        throw IndexOutOfBoundsException();
    return CIMConstInstance(*_rep->errors[index]);
}

void CIMException::addError(const CIMInstance& instance) {
    _rep->errors.push_back(std::make_shared<const CIMInstance>(instance.clone()));
}

PEGASUS_NAMESPACE_END
