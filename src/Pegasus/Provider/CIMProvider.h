#ifndef Pegasus_CIMProvider_h
#define Pegasus_CIMProvider_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/OperationContext.h>
#include <Pegasus/Provider/CIMOMHandle.h>
#include <Pegasus/Provider/ProviderException.h>
#include <Pegasus/Common/ResponseHandler.h>
#include <Pegasus/Provider/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

/// Lifecycle shared by every provider kind: initialize() once with a handle to the server,
/// any number of operations, then terminate().
class PEGASUS_PROVIDER_LINKAGE CIMProvider {
public:
    CIMProvider();
    virtual ~CIMProvider();

    virtual void initialize(CIMOMHandle& cimom) = 0;

    virtual void terminate() = 0;
};

PEGASUS_NAMESPACE_END

#endif
