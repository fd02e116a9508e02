#ifndef Pegasus_CIMInstanceProvider_h
#define Pegasus_CIMInstanceProvider_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Provider/CIMProvider.h>
#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Provider/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

/// Serves the intrinsic instance operations of the classes it is registered for.
class PEGASUS_PROVIDER_LINKAGE CIMInstanceProvider : public virtual CIMProvider {
public:
    CIMInstanceProvider();
    virtual ~CIMInstanceProvider();

    virtual void getInstance(const OperationContext& context,
                             const CIMObjectPath& instanceReference,
                             const Boolean includeQualifiers, const Boolean includeClassOrigin,
                             const CIMPropertyList& propertyList,
                             InstanceResponseHandler& handler) = 0;

    virtual void
    enumerateInstances(const OperationContext& context, const CIMObjectPath& classReference,
                       const Boolean includeQualifiers, const Boolean includeClassOrigin,
                       const CIMPropertyList& propertyList, InstanceResponseHandler& handler) = 0;

    virtual void enumerateInstanceNames(const OperationContext& context,
                                        const CIMObjectPath& classReference,
                                        ObjectPathResponseHandler& handler) = 0;

    virtual void modifyInstance(const OperationContext& context,
                                const CIMObjectPath& instanceReference,
                                const CIMInstance& instanceObject, const Boolean includeQualifiers,
                                const CIMPropertyList& propertyList, ResponseHandler& handler) = 0;

    virtual void createInstance(const OperationContext& context,
                                const CIMObjectPath& instanceReference,
                                const CIMInstance& instanceObject,
                                ObjectPathResponseHandler& handler) = 0;

    virtual void deleteInstance(const OperationContext& context,
                                const CIMObjectPath& instanceReference,
                                ResponseHandler& handler) = 0;
};

PEGASUS_NAMESPACE_END

#endif
