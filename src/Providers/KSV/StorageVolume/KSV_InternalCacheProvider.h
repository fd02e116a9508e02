// Provider of the internal cache's methods, class KSV_InternalCache in root/PG_Internal: the
// array's identity for the provider modules of this CIM server.
#ifndef KSV_InternalCacheProvider_h
#define KSV_InternalCacheProvider_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Provider/CIMMethodProvider.h>

PEGASUS_NAMESPACE_BEGIN

// Each method answers one datum through its one output parameter and returns 0. There is no
// user gate: the callers are the server's own modules, which ask before any request of theirs
// has been authorized.
class KSV_InternalCacheProvider : public CIMMethodProvider {
public:
    void initialize(CIMOMHandle& cimom) override;
    void terminate() override;

    void invokeMethod(const OperationContext& context, const CIMObjectPath& objectReference,
                      const CIMName& methodName, const Array<CIMParamValue>& inParameters,
                      MethodResultResponseHandler& handler) override;
};

PEGASUS_NAMESPACE_END

#endif
