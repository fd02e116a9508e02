#include <Pegasus/Provider/ProviderException.h>

PEGASUS_NAMESPACE_BEGIN

CIMOperationFailedException::CIMOperationFailedException(const String& message)
    : CIMException(CIM_ERR_FAILED, message) {}

CIMOperationFailedException::CIMOperationFailedException(const CIMStatusCode code,
                                                         const String& message)
    : CIMException(code, message) {}

CIMAccessDeniedException::CIMAccessDeniedException(const String& message)
    : CIMOperationFailedException(CIM_ERR_ACCESS_DENIED, message) {}

CIMInvalidParameterException::CIMInvalidParameterException(const String& message)
    : CIMOperationFailedException(CIM_ERR_INVALID_PARAMETER, message) {}

CIMObjectNotFoundException::CIMObjectNotFoundException(const String& message)
    : CIMOperationFailedException(CIM_ERR_NOT_FOUND, message) {}

CIMNotSupportedException::CIMNotSupportedException(const String& message)
    : CIMOperationFailedException(CIM_ERR_NOT_SUPPORTED, message) {}

CIMObjectAlreadyExistsException::CIMObjectAlreadyExistsException(const String& message)
    : CIMOperationFailedException(CIM_ERR_ALREADY_EXISTS, message) {}

CIMPropertyNotFoundException::CIMPropertyNotFoundException(const String& message)
    : CIMOperationFailedException(CIM_ERR_NO_SUCH_PROPERTY, message) {}

CIMMethodNotFoundException::CIMMethodNotFoundException(const String& message)
    : CIMOperationFailedException(CIM_ERR_METHOD_NOT_FOUND, message) {}

PEGASUS_NAMESPACE_END
