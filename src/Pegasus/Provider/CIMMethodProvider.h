#ifndef Pegasus_CIMMethodProvider_h
#define Pegasus_CIMMethodProvider_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Provider/CIMProvider.h>
#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Provider/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

/// Serves the extrinsic methods of the classes it is registered for.
class PEGASUS_PROVIDER_LINKAGE CIMMethodProvider : public virtual CIMProvider {
public:
    CIMMethodProvider();
    virtual ~CIMMethodProvider();

    virtual void invokeMethod(const OperationContext& context, const CIMObjectPath& objectReference,
                              const CIMName& methodName, const Array<CIMParamValue>& inParameters,
                              MethodResultResponseHandler& handler) = 0;
};

PEGASUS_NAMESPACE_END

#endif
