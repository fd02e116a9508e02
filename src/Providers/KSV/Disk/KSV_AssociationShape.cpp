#include "KSV_AssociationShape.h"

#include <Pegasus/Common/CIMObject.h>

PEGASUS_NAMESPACE_BEGIN

namespace {

bool isNamed(const CIMName& className, const std::vector<const char*>& names) {
    for (const char* name : names) {
        if (className.equal(name))
            return true;
    }
    return false;
}

const KSV_RequestTexts& textsOf(const KSV_AssociationTexts& texts, cim_method_e operation) {
    switch (operation) {
    case KSVCIM_ASSOCIATORS:
        return texts.associators;
    case KSVCIM_ASSOCIATORNAMES:
        return texts.associatorNames;
    case KSVCIM_REFERENCES:
        return texts.references;
    default:
        return texts.referenceNames;
    }
}

} // namespace

bool KSV_EndTest::rejects(const CIMName& resultClass) const {
    switch (kind) {
    case REJECT:
        return isNamed(resultClass, classNames);
    case ACCEPT_ONLY:
        return !isNamed(resultClass, classNames);
    default:
        return false;
    }
}

bool KSV_AssociationRules::rejects(const KSV_AssociationEnds& ends,
                                   const KSV_AssociationRequest& request) const {
    const CIMName& objectClass = request.objectName.getClassName();
    const CIMName& resultClass = request.resultClass;
    if (request.role.size() != 0 && rejectsRole(ends, objectClass, request.role, false))
        return true;
    if (request.resultRole.size() != 0 && rejectsRole(ends, objectClass, request.resultRole, true))
        return true;
    if (request.operation == KSVCIM_REFERENCES || request.operation == KSVCIM_REFERENCENAMES) {
        return !resultClass.isNull() && !resultClass.equal(baseClassName) &&
               !resultClass.equal(ends.association);
    }
    return !resultClass.isNull() && rejectsAssociatorClass(ends, objectClass, resultClass);
}

// An object plays the role of its end; the result role is the other end's.
bool KSV_AssociationRules::rejectsRole(const KSV_AssociationEnds& ends, const CIMName& objectClass,
                                       const String& role, bool isResultRole) const {
    if (!String::equalNoCase(role, firstRole) && !String::equalNoCase(role, secondRole))
        return true;
    if (KSV_Common::isPartOfArray(objectClass, ends.first))
        return !String::equalNoCase(role, isResultRole ? secondRole : firstRole);
    if (KSV_Common::isPartOfArray(objectClass, ends.second))
        return !String::equalNoCase(role, isResultRole ? firstRole : secondRole);
    return false;
}

bool KSV_AssociationRules::rejectsAssociatorClass(const KSV_AssociationEnds& ends,
                                                  const CIMName& objectClass,
                                                  const CIMName& resultClass) const {
    if (!isNamed(resultClass, farClassNames) &&
        !KSV_Common::isPartOfArray(resultClass, ends.first) &&
        !KSV_Common::isPartOfArray(resultClass, ends.second))
        return true;
    if (rejectsOwnClass && resultClass.equal(objectClass))
        return true;
    if (KSV_Common::isPartOfArray(objectClass, ends.first))
        return fromFirstEnd.rejects(resultClass);
    if (KSV_Common::isPartOfArray(objectClass, ends.second))
        return fromSecondEnd.rejects(resultClass);
    return false;
}

const CIMName& KSV_AssociationShape::noClass() {
    static const CIMName none;
    return none;
}

void KSV_AssociationShape::enter(const KSV_AssociationTexts& texts, const OperationContext& context,
                                 const KSV_AssociationRequest& request) {
    const KSV_RequestTexts& lines = textsOf(texts, request.operation);
    log_message(4, "%s", lines.entry);
    const CString objectName = request.objectName.toString().getCString();
    const CString resultClass = request.resultClass.getString().getCString();
    if (request.operation == KSVCIM_ASSOCIATORS || request.operation == KSVCIM_ASSOCIATORNAMES) {
        log_message(4, lines.request, static_cast<const char*>(objectName),
                    static_cast<const char*>(request.associationClass.getString().getCString()),
                    static_cast<const char*>(resultClass));
    } else {
        log_message(4, lines.request, static_cast<const char*>(objectName),
                    static_cast<const char*>(resultClass));
    }
    KSV_Common::checkUserAccess(context, texts.providerName, __LINE__);
}

void KSV_AssociationShape::reject(const KSV_AssociationTexts& texts,
                                  const KSV_AssociationRequest& request) {
    const char* rejection = textsOf(texts, request.operation).rejection;
    const CString resultClass = request.resultClass.getString().getCString();
    switch (request.operation) {
    case KSVCIM_ASSOCIATORS:
        log_message(2, rejection, static_cast<const char*>(resultClass));
        break;
    case KSVCIM_ASSOCIATORNAMES:
        log_message(2, rejection,
                    static_cast<const char*>(request.associationClass.getString().getCString()),
                    static_cast<const char*>(resultClass));
        break;
    default:
        log_message(2, rejection, static_cast<const char*>(request.role.getCString()),
                    static_cast<const char*>(resultClass));
        break;
    }
}

void KSV_AssociationShape::leave(const KSV_AssociationTexts& texts,
                                 const KSV_AssociationRequest& request) {
    log_message(4, "%s", textsOf(texts, request.operation).exit);
}

void KSV_AssociationShape::traceClass(const char* format, const CIMName& className) {
    log_message(4, format, static_cast<const char*>(className.getString().getCString()));
}

void KSV_AssociationShape::enter(const char* entryLine, const KSV_AssociationTexts& texts,
                                 const OperationContext& context) {
    log_message(4, "%s", entryLine);
    KSV_Common::checkUserAccess(context, texts.providerName, __LINE__);
}

void KSV_AssociationShape::requireTwoKeys(const KSV_AssociationTexts& texts,
                                          const CIMObjectPath& path) {
    const Uint32 keyCount = path.getKeyBindings().size();
    if (keyCount == 2)
        return;
    log_message(2, texts.invalidKeyCount, static_cast<int>(keyCount));
    throw CIMInvalidParameterException(String(texts.providerName) + " Expect two keys.");
}

String KSV_AssociationShape::referencedKey(const CIMObjectPath& path, const String& role,
                                           const String& keyName) {
    const String reference = KSV_Common::getStringProperty(path, role);
    if (reference.size() == 0)
        return String();
    return KSV_Common::getStringProperty(CIMObjectPath(reference), keyName);
}

void KSV_AssociationShape::deliverRequested(const KSV_AssociationTexts& texts,
                                            const Array<CIMInstance>& candidates,
                                            const CIMObjectPath& instanceName,
                                            InstanceResponseHandler& handler) {
    const KSV_Common::PathMatcher requested(instanceName);
    for (Uint32 i = 0; i < candidates.size(); i++) {
        if (requested.matches(candidates[i].getPath())) {
            handler.processing();
            handler.deliver(candidates[i]);
            handler.complete();
            log_message(4, "%s", texts.getInstance.exit);
            return;
        }
    }
    throw CIMObjectNotFoundException(String(texts.providerName) + " CIM Object not found.");
}

void KSV_AssociationShape::deliverObjects(ObjectResponseHandler& handler,
                                          const Array<CIMInstance>& results) {
    handler.processing();
    for (Uint32 i = 0; i < results.size(); i++)
        handler.deliver(CIMObject(results[i]));
    handler.complete();
}

Array<CIMObjectPath> KSV_AssociationShape::pathsOf(const Array<CIMInstance>& instances) {
    Array<CIMObjectPath> paths;
    paths.reserveCapacity(instances.size());
    for (Uint32 i = 0; i < instances.size(); i++)
        paths.append(instances[i].getPath());
    return paths;
}

Array<CIMName> KSV_AssociationShape::classList(const CIMName& className) {
    Array<CIMName> classNames;
    classNames.append(className);
    return classNames;
}

KSV_Association::KSV_Association(const KSV_AssociationTexts& texts,
                                 const KSV_AssociationRules& rules, const CIMName& associationClass,
                                 const Array<CIMName>& firstEnd, const Array<CIMName>& secondEnd,
                                 CIMOMHandle& cimom, const String& hostAddr)
    : _texts(texts), _rules(rules), _ends{associationClass, firstEnd, secondEnd}, _cimom(cimom),
      _hostAddr(hostAddr) {}

bool KSV_Association::isFirstEnd(const CIMObjectPath& path) const {
    return KSV_Common::isPartOfArray(path.getClassName(), _ends.first);
}

CIMInstance KSV_Association::build(const CIMObjectPath& first, const CIMObjectPath& second,
                                   bool includeQualifiers, bool includeClassOrigin,
                                   const CIMPropertyList& propertyList) const {
    const CIMClass assocClass = KSV_DiskProviderSupport::storedClass(
        _cimom, _ends.association, includeQualifiers, includeClassOrigin, propertyList);
    return KSV_Common::buildAssocInstance(_ends.association, _rules.firstRole, _rules.secondRole,
                                          first, second, assocClass, _hostAddr,
                                          KSV_AssociationShape::NAMESPACE);
}

CIMObjectPath KSV_Association::buildName(const CIMObjectPath& first,
                                         const CIMObjectPath& second) const {
    return KSV_Common::buildAssocPath(_ends.association, _rules.firstRole, _rules.secondRole, first,
                                      second, _hostAddr, KSV_AssociationShape::NAMESPACE);
}

Array<CIMInstance> KSV_Association::associationsOf(const CIMObjectPath& end, bool endIsFirst,
                                                   const Array<CIMObjectPath>& others,
                                                   bool includeQualifiers, bool includeClassOrigin,
                                                   const CIMPropertyList& propertyList) const {
    Array<CIMInstance> associations;
    for (Uint32 i = 0; i < others.size(); i++) {
        associations.append(build(endIsFirst ? end : others[i], endIsFirst ? others[i] : end,
                                  includeQualifiers, includeClassOrigin, propertyList));
    }
    return associations;
}

Array<CIMObjectPath> KSV_Association::associationNamesOf(const CIMObjectPath& end, bool endIsFirst,
                                                         const Array<CIMObjectPath>& others) const {
    Array<CIMObjectPath> names;
    for (Uint32 i = 0; i < others.size(); i++)
        names.append(buildName(endIsFirst ? end : others[i], endIsFirst ? others[i] : end));
    return names;
}

KSV_SystemDevices::KSV_SystemDevices(const KSV_WalkTexts& walks, CIMOMHandle& cimom,
                                     const CIMName& systemClass, const CIMObjectPath& systemPath,
                                     const Array<CIMName>& deviceClasses)
    : _walks(walks), _cimom(cimom), _systemClass(systemClass), _systemPath(systemPath),
      _deviceClasses(deviceClasses) {}

PEGASUS_NAMESPACE_END
