// Carries out CIM operations: class operations from the repository, instance, association and
// method operations through the providers registered for the classes involved. Used alike by
// the CIM-XML front end and by providers calling back into the server, on the caller's thread.
#ifndef KSV_CIMSERVER_OPERATIONDISPATCHER_H
#define KSV_CIMSERVER_OPERATIONDISPATCHER_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/OperationContext.h>

#include <cimxml/Request.h>

#include "cimserver/Caller.h"
#include "cimserver/ClassCache.h"
#include "cimserver/ProviderTable.h"
#include "cimserver/ResultShaping.h"
#include "cimserver/Sink.h"
#include "mof_compiler/ClassRepository.h"

#include <vector>

namespace ksv::server {

// Every operation throws Pegasus::CIMException with the status DSP0200 gives its failure.
// Results of enumerations go to the sink as the providers deliver them. Safe to call from any
// number of threads, also from inside a provider's operation.
class OperationDispatcher {
public:
    using Request = cimxml::OperationRequest;

    OperationDispatcher(const mof::ClassRepository& repository, const ProviderTable& providers,
                        Pegasus::String hostName);

    const Pegasus::String& hostName() const { return _hostName; }

    Pegasus::CIMClass getClass(const Caller& caller, const Request& request) const;
    void enumerateClassNames(const Caller& caller, const Request& request,
                             Sink<Pegasus::CIMName>& sink) const;
    void enumerateClasses(const Caller& caller, const Request& request,
                          Sink<Pegasus::CIMClass>& sink) const;

    Pegasus::CIMInstance getInstance(const Caller& caller, const Request& request) const;
    void enumerateInstances(const Caller& caller, const Request& request,
                            Sink<Pegasus::CIMInstance>& sink) const;
    void enumerateInstanceNames(const Caller& caller, const Request& request,
                                Sink<Pegasus::CIMObjectPath>& sink) const;
    Pegasus::CIMObjectPath createInstance(const Caller& caller, const Request& request) const;
    void modifyInstance(const Caller& caller, const Request& request) const;
    void deleteInstance(const Caller& caller, const Request& request) const;
    Pegasus::CIMValue getProperty(const Caller& caller, const Request& request) const;
    void setProperty(const Caller& caller, const Request& request) const;

    void associators(const Caller& caller, const Request& request,
                     Sink<Pegasus::CIMObject>& sink) const;
    void associatorNames(const Caller& caller, const Request& request,
                         Sink<Pegasus::CIMObjectPath>& sink) const;
    void references(const Caller& caller, const Request& request,
                    Sink<Pegasus::CIMObject>& sink) const;
    void referenceNames(const Caller& caller, const Request& request,
                        Sink<Pegasus::CIMObjectPath>& sink) const;

    Pegasus::CIMValue invokeMethod(const Caller& caller, const Request& request,
                                   Pegasus::Array<Pegasus::CIMParamValue>& outParameters) const;

private:
    void requireNamespace(const Pegasus::CIMNamespaceName& nameSpace) const;
    Pegasus::CIMConstClass requireClass(const Pegasus::CIMNamespaceName& nameSpace,
                                        const Pegasus::CIMName& className,
                                        Pegasus::CIMStatusCode codeIfUnknown) const;
    HostedProvider& requireInstanceProvider(const Pegasus::CIMNamespaceName& nameSpace,
                                            const Pegasus::CIMName& className,
                                            const char* operation) const;
    Pegasus::CIMObjectPath providerPath(const Pegasus::CIMNamespaceName& nameSpace,
                                        const Pegasus::CIMObjectPath& path) const;
    std::vector<Pegasus::CIMName> classAndSubclasses(const Pegasus::CIMNamespaceName& nameSpace,
                                                     const Pegasus::CIMName& className) const;

    Pegasus::CIMInstance fetchInstance(const Caller& caller, const Request& request,
                                       const ObjectFilter& filter) const;
    void enumerateInstancesOf(const Caller& caller, const Request& request,
                              const Pegasus::CIMName& className, const ObjectFilter& filter,
                              Sink<Pegasus::CIMInstance>& sink) const;
    void enumerateInstanceNamesOf(const Caller& caller, const Request& request,
                                  const Pegasus::CIMName& className,
                                  Sink<Pegasus::CIMObjectPath>& sink) const;

    // The association classes with providers that the request admits: `filterClass` and its
    // subclasses, or without it every association class that refers to the object's class.
    std::vector<ProviderRoute> associationRoutes(const Request& request,
                                                 const Pegasus::CIMName& filterClass) const;
    bool refersTo(const Pegasus::CIMNamespaceName& nameSpace,
                  const Pegasus::CIMName& associationClass,
                  const Pegasus::CIMName& objectClass) const;
    void checkAssociationRequest(const Request& request) const;
    // For a request naming a class rather than an instance, answered from the repository: the
    // classes at the far end of the admitted associations, or the association classes.
    std::vector<Pegasus::CIMName> classAssociates(const Request& request,
                                                  const Pegasus::CIMName& associationFilter,
                                                  const Pegasus::CIMName& resultFilter,
                                                  bool farEnds) const;
    Pegasus::CIMObject classObject(const Request& request, const Pegasus::CIMName& className) const;
    Pegasus::CIMObjectPath classPath(const Request& request,
                                     const Pegasus::CIMName& className) const;

    const mof::ClassRepository& _repository;
    const ProviderTable& _providers;
    const Pegasus::String _hostName;
    ClassCache _classes;
};

// The context a provider receives for a call made on behalf of `caller`.
Pegasus::OperationContext contextFor(const Caller& caller);

} // namespace ksv::server

#endif
