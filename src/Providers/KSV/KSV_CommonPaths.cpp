// Object-path matching, reference checks and filters, and the association builders.
#include "KSV_Common.h"

#include <Pegasus/Common/CIMProperty.h>

#include <initializer_list>
#include <optional>

PEGASUS_NAMESPACE_BEGIN

namespace {

const char KSV_NAMESPACE[] = "root/ksv";

// Whether the class-name part of the text, found as the path parser finds it (after a
// "//host/" and a "namespace:" whose ':' comes before the first '.', up to the next '.'), is a
// legal name. Most key values fail here, which spares them a parse that would throw.
bool mayBeObjectPath(const String& text) {
    Uint32 start = 0;
    if (text.size() >= 2 && text[0] == '/' && text[1] == '/') {
        start = text.find(2, Char16('/'));
        if (start == PEG_NOT_FOUND)
            return false;
    }
    const Uint32 colon = text.find(start, Char16(':'));
    const Uint32 firstDot = text.find(start, Char16('.'));
    if (colon != PEG_NOT_FOUND && (firstDot == PEG_NOT_FOUND || colon < firstDot))
        start = colon + 1;
    const Uint32 dot = text.find(start, Char16('.'));
    const Uint32 end = dot == PEG_NOT_FOUND ? text.size() : dot;
    return CIMName::legal(text.subString(start, end - start));
}

// A string or reference key that holds an object path is rewritten as that path without its
// host, so that the hosts inside references never decide a match.
void normaliseReferenceKey(CIMKeyBinding& key) {
    const bool mayHoldPath =
        key.getType() == CIMKeyBinding::STRING || key.getType() == CIMKeyBinding::REFERENCE;
    if (!mayHoldPath || !mayBeObjectPath(key.getValue()))
        return;
    try {
        const CIMObjectPath reference(key.getValue());
        const CIMObjectPath hostless(String(), reference.getNameSpace(), reference.getClassName(),
                                     reference.getKeyBindings());
        key.setValue(hostless.toString());
        key.setType(CIMKeyBinding::REFERENCE);
    } catch (const Exception&) {
        // Not a path: the value compares as it stands.
    }
}

CIMObjectPath comparablePath(const CIMObjectPath& path) {
    Array<CIMKeyBinding> keys = path.getKeyBindings();
    for (Uint32 i = 0; i < keys.size(); i++)
        normaliseReferenceKey(keys[i]);
    return CIMObjectPath(String(), path.getNameSpace(), path.getClassName(), keys);
}

CIMObjectPath withoutHostAndNamespace(const CIMObjectPath& path) {
    return CIMObjectPath(String(), CIMNamespaceName(), path.getClassName(), path.getKeyBindings());
}

// Object paths write an IPv6 host in brackets; the library reads the bare address.
String withoutBrackets(const String& host) {
    const Uint32 length = host.size();
    if (length > 2 && host[0] == '[' && host[length - 1] == ']')
        return host.subString(1, length - 2);
    return host;
}

bool isThisSystemsHost(const String& host, const String& hostName) {
    if (String::equalNoCase(host, hostName) || host == KSV_Common::getSystemIPAddr(1))
        return true;
    // An IPv6 address may be written in several ways; the library gives its one normal form.
    char normalized[API_IP_TEXT_SIZE] = "";
    const int family = validateConvertIP(withoutBrackets(host).getCString(), normalized);
    return family == 10 && String(normalized) == KSV_Common::getSystemIPAddr(2);
}

CIMObjectPath referenceValue(const CIMConstProperty& property) {
    CIMObjectPath reference;
    property.getValue().get(reference);
    return reference;
}

bool isNonNullReference(const CIMConstProperty& property) {
    return property.getType() == CIMTYPE_REFERENCE && !property.isArray() &&
           !property.getValue().isNull();
}

bool namesRole(const String& role, const CIMConstProperty& property) {
    return role.size() == 0 || String::equalNoCase(role, property.getName().getString());
}

// The references of the association that lead away from objectName, in property order.
Array<CIMObjectPath> farEnds(const CIMInstance& assocInstance, const CIMObjectPath& objectName,
                             const Array<CIMName>& targetClassNames, const String& role) {
    Array<CIMObjectPath> ends;
    for (Uint32 i = 0; i < assocInstance.getPropertyCount(); i++) {
        const CIMConstProperty property = assocInstance.getProperty(i);
        if (!isNonNullReference(property))
            continue;
        const CIMObjectPath reference = referenceValue(property);
        if (KSV_Common::matchObjectPath(objectName, reference))
            continue;
        if (targetClassNames.size() != 0 &&
            !KSV_Common::isPartOfArray(reference.getClassName(), targetClassNames))
            continue;
        if (namesRole(role, property))
            ends.append(reference);
    }
    return ends;
}

// The reference as an association holds it, with the given host: the path itself when it
// already has that host (every path's host was checked when it was set), else a copy made in
// spare. Most references are built with the system's host, so most need no copy.
const CIMObjectPath& withHost(const CIMObjectPath& path, const String& host,
                              std::optional<CIMObjectPath>& spare) {
    if (path.getHost() == host)
        return path;
    spare.emplace(path);
    spare->setHost(host);
    return *spare;
}

CIMKeyBinding referenceKey(const String& role, const CIMObjectPath& reference) {
    return CIMKeyBinding(role, reference.toString(), CIMKeyBinding::REFERENCE);
}

// One reference of an association: its role, the referenced object and the host it is given.
struct Reference {
    const String& role;
    const CIMObjectPath& path;
    const String& host;
};

// The association path: one key per reference, in the order given, each written out once.
CIMObjectPath assocPath(const String& host, const String& nameSpace, const CIMName& className,
                        std::initializer_list<Reference> references) {
    Array<CIMKeyBinding> keys;
    keys.reserveCapacity(Uint32(references.size()));
    for (const Reference& reference : references) {
        std::optional<CIMObjectPath> spare;
        keys.append(referenceKey(reference.role, withHost(reference.path, reference.host, spare)));
    }
    return CIMObjectPath(host, CIMNamespaceName(nameSpace), className, keys);
}

// The association instance from its ends, in the order `addEnds` adds them: each serves both
// as the property of its role and as the key that the path names it by.
template <typename AddEnds>
CIMInstance assocInstanceOfEnds(const CIMClass& assocClass, const String& host,
                                const String& nameSpace, const CIMName& className, Uint32 ends,
                                AddEnds&& addEnds) {
    CIMInstance instance = KSV_Common::buildInstanceSkeleton(assocClass);
    Array<CIMKeyBinding> keys;
    keys.reserveCapacity(ends);
    addEnds(instance, keys);
    instance.setPath(CIMObjectPath(host, CIMNamespaceName(nameSpace), className, keys));
    return instance;
}

// Each reference is given its host once, as the end it makes.
CIMInstance assocInstance(const CIMClass& assocClass, const String& host, const String& nameSpace,
                          const CIMName& className, std::initializer_list<Reference> references) {
    return assocInstanceOfEnds(assocClass, host, nameSpace, className, Uint32(references.size()),
                               [&references](CIMInstance& instance, Array<CIMKeyBinding>& keys) {
                                   for (const Reference& reference : references)
                                       KSV_Common::AssocEnd(reference.role, reference.path,
                                                            reference.host)
                                           .addTo(instance, keys);
                               });
}

} // namespace

bool KSV_Common::matchObjectPath(const CIMObjectPath& path1, const CIMObjectPath& path2) {
    return PathMatcher(path1).matches(path2);
}

KSV_Common::PathMatcher::PathMatcher(const CIMObjectPath& path)
    : _comparable(comparablePath(path)) {}

bool KSV_Common::PathMatcher::matches(const CIMObjectPath& candidate) const {
    return _comparable.identical(comparablePath(candidate));
}

bool KSV_Common::verifyRefMethodParam(CIMObjectPath& ref, const CIMNamespaceName& nameSpace,
                                      const String& hostName) {
    if (ref.getNameSpace().isNull()) {
        ref.setNameSpace(nameSpace);
    } else if (!ref.getNameSpace().equal(nameSpace)) {
        log_message(2, "The ref param %s contains the wrong name space %s\n",
                    (const char*)ref.toString().getCString(),
                    (const char*)ref.getNameSpace().getString().getCString());
        return false;
    }
    const String& host = ref.getHost();
    if (host.size() == 0 || isThisSystemsHost(host, hostName))
        return true;
    log_message(2, "The ref host [%s] does not match for this host!\n",
                (const char*)host.getCString());
    return false;
}

bool KSV_Common::verifyRefMethodParam(CIMObjectPath& ref, const CIMNamespaceName& nameSpace,
                                      const String& hostName, const CIMName& className) {
    return verifyRefMethodParam(ref, nameSpace, hostName) && ref.getClassName().equal(className);
}

bool KSV_Common::verifyRefMethodParam(CIMObjectPath& ref, const CIMNamespaceName& nameSpace,
                                      const String& hostName, const Array<CIMName>& classNames) {
    return verifyRefMethodParam(ref, nameSpace, hostName) &&
           isPartOfArray(ref.getClassName(), classNames);
}

bool KSV_Common::_isInstanceValidReference(const CIMObjectPath& objectName,
                                           const CIMInstance& assocInstance, const String& role) {
    if (role.size() != 0) {
        const Uint32 index =
            CIMName::legal(role) ? assocInstance.findProperty(CIMName(role)) : PEG_NOT_FOUND;
        if (index == PEG_NOT_FOUND ||
            assocInstance.getProperty(index).getType() != CIMTYPE_REFERENCE)
            throw CIMException(CIM_ERR_INVALID_PARAMETER, String());
    }
    for (Uint32 i = 0; i < assocInstance.getPropertyCount(); i++) {
        const CIMConstProperty property = assocInstance.getProperty(i);
        if (!isNonNullReference(property) || !namesRole(role, property))
            continue;
        if (matchObjectPath(objectName, withoutHostAndNamespace(referenceValue(property))))
            return true;
    }
    return false;
}

Array<CIMInstance> KSV_Common::filterReferenceNames(const Array<CIMInstance>& assocInstances,
                                                    const CIMObjectPath& objectName,
                                                    const CIMName& resultClass,
                                                    const String& role) {
    const CIMObjectPath target = withoutHostAndNamespace(objectName);
    Array<CIMInstance> passed;
    for (Uint32 i = 0; i < assocInstances.size(); i++) {
        const CIMInstance& instance = assocInstances[i];
        const bool ofResultClass =
            resultClass.isNull() || instance.getClassName().equal(resultClass);
        if (ofResultClass && _isInstanceValidReference(target, instance, role))
            passed.append(instance);
    }
    return passed;
}

Array<CIMObjectPath> KSV_Common::filterAssocInstanceToTargetPaths(
    const CIMInstance& assocInstance, const CIMObjectPath& objectName,
    const Array<CIMName>& targetClassNames, const String& role) {
    return farEnds(assocInstance, objectName, targetClassNames, role);
}

Array<CIMInstance> KSV_Common::filterAssocInstanceToTargetInstances(
    const CIMInstance& assocInstance, const CIMObjectPath& objectName,
    const Array<CIMInstance>& candidates, const Array<CIMName>& targetClassNames,
    const String& role) {
    const Array<CIMObjectPath> ends = farEnds(assocInstance, objectName, targetClassNames, role);
    Array<CIMInstance> targets;
    for (Uint32 i = 0; i < ends.size(); i++) {
        for (Uint32 j = 0; j < candidates.size(); j++) {
            if (matchObjectPath(candidates[j].getPath(), ends[i]))
                targets.append(candidates[j]);
        }
    }
    return targets;
}

bool KSV_Common::isPoolPath(const CIMObjectPath& path, const String& poolID) {
    const Array<CIMKeyBinding>& keys = path.getKeyBindings();
    for (Uint32 i = 0; i < keys.size(); i++) {
        if (String::equalNoCase(keys[i].getValue(), poolID))
            return true;
    }
    return false;
}

CIMObjectPath KSV_Common::buildDepAssocPath(const String& host, const CIMName& className,
                                            const CIMObjectPath& antecedent,
                                            const CIMObjectPath& dependent) {
    Array<CIMKeyBinding> keys;
    keys.append(referenceKey("Antecedent", antecedent));
    keys.append(referenceKey("Dependent", dependent));
    return CIMObjectPath(host, KSV_NAMESPACE, className, keys);
}

CIMInstance KSV_Common::buildDepAssocInstance(const String& host, const CIMName& className,
                                              const CIMObjectPath& antecedent,
                                              const CIMObjectPath& dependent,
                                              const CIMClass& assocClass) {
    CIMInstance instance = buildInstanceSkeleton(assocClass);
    setPropertyValue(instance, "Antecedent", antecedent);
    setPropertyValue(instance, "Dependent", dependent);
    instance.setPath(buildDepAssocPath(host, className, antecedent, dependent));
    return instance;
}

CIMObjectPath KSV_Common::buildAssocPath(const CIMName& assocClassName, const String& role1,
                                         const String& role2, const CIMObjectPath& ref1,
                                         const CIMObjectPath& ref2, const String& host,
                                         const String& nameSpace) {
    return buildAssocPath(assocClassName, role1, role2, ref1, ref2, host, host, host, nameSpace);
}

CIMObjectPath KSV_Common::buildAssocPath(const CIMName& assocClassName, const String& role1,
                                         const String& role2, const CIMObjectPath& ref1,
                                         const CIMObjectPath& ref2, const String& ref1Host,
                                         const String& ref2Host, const String& assocHost,
                                         const String& nameSpace) {
    return assocPath(assocHost, nameSpace, assocClassName,
                     {{role1, ref1, ref1Host}, {role2, ref2, ref2Host}});
}

CIMObjectPath KSV_Common::buildAssocPath(const CIMName& assocClassName, const String& role1,
                                         const String& role2, const String& role3,
                                         const CIMObjectPath& ref1, const CIMObjectPath& ref2,
                                         const CIMObjectPath& ref3, const String& host,
                                         const String& nameSpace) {
    return assocPath(host, nameSpace, assocClassName,
                     {{role1, ref1, host}, {role2, ref2, host}, {role3, ref3, host}});
}

CIMInstance KSV_Common::buildAssocInstance(const CIMName& assocClassName, const String& role1,
                                           const String& role2, const CIMObjectPath& ref1,
                                           const CIMObjectPath& ref2, const CIMClass& assocClass,
                                           const String& host, const String& nameSpace) {
    return buildAssocInstance(assocClassName, role1, role2, ref1, ref2, assocClass, host, host,
                              host, nameSpace);
}

CIMInstance KSV_Common::buildAssocInstance(const CIMName& assocClassName, const String& role1,
                                           const String& role2, const CIMObjectPath& ref1,
                                           const CIMObjectPath& ref2, const CIMClass& assocClass,
                                           const String& ref1Host, const String& ref2Host,
                                           const String& assocHost, const String& nameSpace) {
    return assocInstance(assocClass, assocHost, nameSpace, assocClassName,
                         {{role1, ref1, ref1Host}, {role2, ref2, ref2Host}});
}

CIMInstance KSV_Common::buildAssocInstance(const CIMName& assocClassName, const String& role1,
                                           const String& role2, const String& role3,
                                           const CIMObjectPath& ref1, const CIMObjectPath& ref2,
                                           const CIMObjectPath& ref3, const CIMClass& assocClass,
                                           const String& host, const String& nameSpace) {
    return assocInstance(assocClass, host, nameSpace, assocClassName,
                         {{role1, ref1, host}, {role2, ref2, host}, {role3, ref3, host}});
}

// The role's name is checked after the host, as when the property is set from the path.
KSV_Common::AssocEnd::AssocEnd(const String& role, const CIMObjectPath& path, const String& host) {
    std::optional<CIMObjectPath> spare;
    const CIMObjectPath& hosted = withHost(path, host, spare);
    _role = CIMName(role);
    _value = CIMValue(hosted);
    _key = referenceKey(role, hosted);
}

void KSV_Common::AssocEnd::addTo(CIMInstance& instance, Array<CIMKeyBinding>& keys) const {
    const Uint32 index = instance.findProperty(_role);
    if (index != PEG_NOT_FOUND)
        instance.getProperty(index).setValue(_value);
    keys.append(_key);
}

CIMInstance KSV_Common::buildAssocInstance(const CIMName& assocClassName, const AssocEnd& end1,
                                           const AssocEnd& end2, const CIMClass& assocClass,
                                           const String& host, const String& nameSpace) {
    return assocInstanceOfEnds(assocClass, host, nameSpace, assocClassName, 2,
                               [&](CIMInstance& instance, Array<CIMKeyBinding>& keys) {
                                   end1.addTo(instance, keys);
                                   end2.addTo(instance, keys);
                               });
}

bool KSV_Common::isPartOfArray(const String& value, const Array<String>& values) {
    for (Uint32 i = 0; i < values.size(); i++) {
        if (String::equal(value, values[i]))
            return true;
    }
    return false;
}

bool KSV_Common::isPartOfArray(const CIMObjectPath& path, const Array<CIMObjectPath>& paths) {
    for (Uint32 i = 0; i < paths.size(); i++) {
        if (matchObjectPath(path, paths[i]))
            return true;
    }
    return false;
}

bool KSV_Common::isPartOfArray(const CIMObjectPath& path, const Array<CIMInstance>& instances) {
    for (Uint32 i = 0; i < instances.size(); i++) {
        if (matchObjectPath(path, instances[i].getPath()))
            return true;
    }
    return false;
}

bool KSV_Common::isPartOfArray(const CIMName& name, const Array<CIMName>& names) {
    for (Uint32 i = 0; i < names.size(); i++) {
        if (name.equal(names[i]))
            return true;
    }
    return false;
}

PEGASUS_NAMESPACE_END
