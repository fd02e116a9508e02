// The provider of the interop namespace that this server carries in place of OpenPegasus's own:
// the object manager, a CIM_Namespace for each namespace served, the registered profiles and
// their references as the MOF gives them, and the conformance of the Array profile's storage
// system, which the storage-system provider names.
#ifndef KSV_CIMSERVER_INTEROPPROVIDER_H
#define KSV_CIMSERVER_INTEROPPROVIDER_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Provider/CIMAssociationProvider.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>
#include <Pegasus/Provider/CIMOMHandle.h>

#include "mof_compiler/ClassRepository.h"

#include <vector>

namespace ksv::server {

// The location under which the registration names this built-in module, and its provider.
inline constexpr char kInteropModuleLocation[] = "KSV_CIMServerInterop";
inline constexpr char kInteropProviderName[] = "KSV_InteropProvider";

class InteropProvider : public Pegasus::CIMInstanceProvider,
                        public Pegasus::CIMAssociationProvider {
public:
    InteropProvider(const mof::ClassRepository& repository, Pegasus::String hostName);

    void initialize(Pegasus::CIMOMHandle& cimom) override;
    void terminate() override;

    void getInstance(const Pegasus::OperationContext& context,
                     const Pegasus::CIMObjectPath& instanceReference,
                     const Pegasus::Boolean includeQualifiers,
                     const Pegasus::Boolean includeClassOrigin,
                     const Pegasus::CIMPropertyList& propertyList,
                     Pegasus::InstanceResponseHandler& handler) override;
    void enumerateInstances(const Pegasus::OperationContext& context,
                            const Pegasus::CIMObjectPath& classReference,
                            const Pegasus::Boolean includeQualifiers,
                            const Pegasus::Boolean includeClassOrigin,
                            const Pegasus::CIMPropertyList& propertyList,
                            Pegasus::InstanceResponseHandler& handler) override;
    void enumerateInstanceNames(const Pegasus::OperationContext& context,
                                const Pegasus::CIMObjectPath& classReference,
                                Pegasus::ObjectPathResponseHandler& handler) override;
    void modifyInstance(const Pegasus::OperationContext& context,
                        const Pegasus::CIMObjectPath& instanceReference,
                        const Pegasus::CIMInstance& instanceObject,
                        const Pegasus::Boolean includeQualifiers,
                        const Pegasus::CIMPropertyList& propertyList,
                        Pegasus::ResponseHandler& handler) override;
    void createInstance(const Pegasus::OperationContext& context,
                        const Pegasus::CIMObjectPath& instanceReference,
                        const Pegasus::CIMInstance& instanceObject,
                        Pegasus::ObjectPathResponseHandler& handler) override;
    void deleteInstance(const Pegasus::OperationContext& context,
                        const Pegasus::CIMObjectPath& instanceReference,
                        Pegasus::ResponseHandler& handler) override;

    void associators(const Pegasus::OperationContext& context,
                     const Pegasus::CIMObjectPath& objectName,
                     const Pegasus::CIMName& associationClass, const Pegasus::CIMName& resultClass,
                     const Pegasus::String& role, const Pegasus::String& resultRole,
                     const Pegasus::Boolean includeQualifiers,
                     const Pegasus::Boolean includeClassOrigin,
                     const Pegasus::CIMPropertyList& propertyList,
                     Pegasus::ObjectResponseHandler& handler) override;
    void associatorNames(const Pegasus::OperationContext& context,
                         const Pegasus::CIMObjectPath& objectName,
                         const Pegasus::CIMName& associationClass,
                         const Pegasus::CIMName& resultClass, const Pegasus::String& role,
                         const Pegasus::String& resultRole,
                         Pegasus::ObjectPathResponseHandler& handler) override;
    void references(const Pegasus::OperationContext& context,
                    const Pegasus::CIMObjectPath& objectName, const Pegasus::CIMName& resultClass,
                    const Pegasus::String& role, const Pegasus::Boolean includeQualifiers,
                    const Pegasus::Boolean includeClassOrigin,
                    const Pegasus::CIMPropertyList& propertyList,
                    Pegasus::ObjectResponseHandler& handler) override;
    void referenceNames(const Pegasus::OperationContext& context,
                        const Pegasus::CIMObjectPath& objectName,
                        const Pegasus::CIMName& resultClass, const Pegasus::String& role,
                        Pegasus::ObjectPathResponseHandler& handler) override;

private:
    // One end of an association instance, seen from the object a request names.
    struct FarEnd {
        Pegasus::CIMInstance association;
        Pegasus::CIMObjectPath path;
    };

    // Every instance of exactly that class in the namespace, each with its path.
    std::vector<Pegasus::CIMInstance> instancesOf(const Pegasus::OperationContext& context,
                                                  const Pegasus::CIMNamespaceName& nameSpace,
                                                  const Pegasus::CIMName& className) const;
    Pegasus::CIMInstance objectManager(const Pegasus::CIMNamespaceName& nameSpace) const;
    std::vector<Pegasus::CIMInstance> namespaces(const Pegasus::CIMNamespaceName& nameSpace) const;
    std::vector<Pegasus::CIMInstance> conformance(const Pegasus::OperationContext& context,
                                                  const Pegasus::CIMNamespaceName& nameSpace) const;
    std::vector<FarEnd> farEnds(const Pegasus::OperationContext& context,
                                const Pegasus::CIMObjectPath& objectName,
                                const Pegasus::CIMName& associationClass,
                                const Pegasus::CIMName& resultClass, const Pegasus::String& role,
                                const Pegasus::String& resultRole) const;
    Pegasus::CIMObject farObject(const Pegasus::OperationContext& context,
                                 const Pegasus::CIMObjectPath& path,
                                 const Pegasus::CIMPropertyList& propertyList) const;

    const mof::ClassRepository& _repository;
    const Pegasus::String _hostName;
    // Its calls are not const in the OpenPegasus interface, though they change nothing here.
    mutable Pegasus::CIMOMHandle _cimom;
};

} // namespace ksv::server

#endif
