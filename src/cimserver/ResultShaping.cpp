#include "cimserver/ResultShaping.h"

#include <Pegasus/Common/CIMProperty.h>

namespace ksv::server {

using Pegasus::Array;
using Pegasus::CIMConstObject;
using Pegasus::CIMConstProperty;
using Pegasus::CIMName;
using Pegasus::CIMPropertyList;
using Pegasus::Uint32;

namespace {

bool propertyNeedsFilter(const CIMConstProperty& property, const ObjectFilter& filter) {
    if (!filter.propertyList.useThisProperty(property.getName()))
        return true;
    if (!filter.includeQualifiers && property.getQualifierCount() > 0)
        return true;
    return !filter.includeClassOrigin && !property.getClassOrigin().isNull();
}

bool needsFilter(const CIMConstObject& object, const ObjectFilter& filter) {
    if (!filter.includeQualifiers && object.getQualifierCount() > 0)
        return true;
    for (Uint32 i = 0; i < object.getPropertyCount(); ++i) {
        if (propertyNeedsFilter(object.getProperty(i), filter))
            return true;
    }
    return false;
}

} // namespace

CIMPropertyList propertiesOfClass(const Pegasus::CIMConstClass& requestedClass,
                                  const CIMPropertyList& requested) {
    Array<CIMName> names;
    for (Uint32 i = 0; i < requestedClass.getPropertyCount(); ++i) {
        const CIMName& name = requestedClass.getProperty(i).getName();
        if (requested.useThisProperty(name))
            names.append(name);
    }
    return CIMPropertyList(names);
}

Pegasus::CIMObject filtered(const Pegasus::CIMObject& object, const ObjectFilter& filter) {
    if (!needsFilter(object, filter))
        return object;
    Pegasus::CIMObject copy = object.clone();
    copy.instanceFilter(filter.includeQualifiers, filter.includeClassOrigin, filter.propertyList);
    return copy;
}

Pegasus::CIMInstance filtered(const Pegasus::CIMInstance& instance, const ObjectFilter& filter) {
    return Pegasus::CIMInstance(filtered(Pegasus::CIMObject(instance), filter));
}

Pegasus::CIMObject shaped(const Pegasus::CIMObject& object, const ObjectFilter& filter,
                          const Pegasus::String& host, const Pegasus::CIMNamespaceName& nameSpace) {
    const Pegasus::CIMObjectPath& path = object.getPath();
    if (cimxml::isComplete(path))
        return filtered(object, filter);
    Pegasus::CIMObject copy = object.clone();
    copy.instanceFilter(filter.includeQualifiers, filter.includeClassOrigin, filter.propertyList);
    copy.setPath(cimxml::completed(path, {host, nameSpace}));
    return copy;
}

} // namespace ksv::server
