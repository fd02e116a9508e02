#ifndef Pegasus_CIMAssociationProvider_h
#define Pegasus_CIMAssociationProvider_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Provider/CIMProvider.h>
#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Provider/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

/// Serves the association traversals of the association classes it is registered for.
class PEGASUS_PROVIDER_LINKAGE CIMAssociationProvider : public virtual CIMProvider {
public:
    CIMAssociationProvider();
    virtual ~CIMAssociationProvider();

    virtual void associators(const OperationContext& context, const CIMObjectPath& objectName,
                             const CIMName& associationClass, const CIMName& resultClass,
                             const String& role, const String& resultRole,
                             const Boolean includeQualifiers, const Boolean includeClassOrigin,
                             const CIMPropertyList& propertyList,
                             ObjectResponseHandler& handler) = 0;

    virtual void associatorNames(const OperationContext& context, const CIMObjectPath& objectName,
                                 const CIMName& associationClass, const CIMName& resultClass,
                                 const String& role, const String& resultRole,
                                 ObjectPathResponseHandler& handler) = 0;

    virtual void references(const OperationContext& context, const CIMObjectPath& objectName,
                            const CIMName& resultClass, const String& role,
                            const Boolean includeQualifiers, const Boolean includeClassOrigin,
                            const CIMPropertyList& propertyList,
                            ObjectResponseHandler& handler) = 0;

    virtual void referenceNames(const OperationContext& context, const CIMObjectPath& objectName,
                                const CIMName& resultClass, const String& role,
                                ObjectPathResponseHandler& handler) = 0;
};

PEGASUS_NAMESPACE_END

#endif
