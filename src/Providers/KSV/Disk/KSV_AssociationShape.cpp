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

bool KSV_AssociationRules::rejects(const KSV_AssociationEnds& ends, const CIMName& objectClass,
                                   const String& role, const String& resultRole,
                                   const CIMName& resultClass, const String& operationName) const {
    if (role.size() != 0 && rejectsRole(ends, objectClass, role, false))
        return true;
    if (resultRole.size() != 0 && rejectsRole(ends, objectClass, resultRole, true))
        return true;
    if (String::equal(operationName, "references") ||
        String::equal(operationName, "referenceNames")) {
        return !resultClass.isNull() && !resultClass.equal(baseClassName) &&
               !resultClass.equal(ends.association);
    }
    if (!String::equal(operationName, "associators") &&
        !String::equal(operationName, "associatorNames"))
        return false;
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
    for (Uint32 i = 0; i < candidates.size(); i++) {
        if (KSV_Common::matchObjectPath(instanceName, candidates[i].getPath())) {
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

bool KSV_AssociationShape::hasDeviceID(const api_Disk_t& disk, const String& deviceID) {
    return String::equal(deviceID, disk.deviceID);
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

CIMClass KSV_AssociationShape::storedClass(CIMOMHandle& cimom, const CIMName& className,
                                           bool includeQualifiers, bool includeClassOrigin,
                                           const CIMPropertyList& propertyList) {
    return KSV_Common::getStoredCIMClass(cimom, OperationContext(), CIMNamespaceName(NAMESPACE),
                                         className, false, includeQualifiers, includeClassOrigin,
                                         propertyList);
}

PEGASUS_NAMESPACE_END
