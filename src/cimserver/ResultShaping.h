// What the server does to each object a provider delivers before passing it on: the property
// list, IncludeQualifiers and IncludeClassOrigin of the request, and host and namespace for
// paths that lack them. Providers may ignore these parameters; clients still get what they
// asked for.
#ifndef KSV_CIMSERVER_RESULTSHAPING_H
#define KSV_CIMSERVER_RESULTSHAPING_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <cimxml/Response.h>

namespace ksv::server {

struct ObjectFilter {
    bool includeQualifiers = false;
    bool includeClassOrigin = false;
    Pegasus::CIMPropertyList propertyList;
};

// DSP0200's EnumerateInstances with DeepInheritance false: only the properties of the requested
// class, and of those only the ones the request's list names.
Pegasus::CIMPropertyList propertiesOfClass(const Pegasus::CIMConstClass& requestedClass,
                                           const Pegasus::CIMPropertyList& requested);

// The object as the filter admits it. The provider's own object is never changed: a copy is
// made when something must go.
Pegasus::CIMObject filtered(const Pegasus::CIMObject& object, const ObjectFilter& filter);
Pegasus::CIMInstance filtered(const Pegasus::CIMInstance& instance, const ObjectFilter& filter);

// The object as the filter admits it, named by its path completed with the host and namespace.
Pegasus::CIMObject shaped(const Pegasus::CIMObject& object, const ObjectFilter& filter,
                          const Pegasus::String& host, const Pegasus::CIMNamespaceName& nameSpace);

} // namespace ksv::server

#endif
