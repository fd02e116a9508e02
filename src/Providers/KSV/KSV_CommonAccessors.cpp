// Property and parameter accessors: typed readers and writers, instance skeletons and the
// class store.
#include "KSV_Common.h"

#include <Pegasus/Common/CIMProperty.h>

#include "StorageVolume/KSV_InternalCacheService.h"

PEGASUS_NAMESPACE_BEGIN

namespace {

// The property's index; PEG_NOT_FOUND also for an uninitialized instance or a name that no
// property can have.
Uint32 findProperty(const CIMInstance& instance, const String& propertyName) {
    if (instance.isUninitialized() || !CIMName::legal(propertyName))
        return PEG_NOT_FOUND;
    return instance.findProperty(CIMName(propertyName));
}

template <typename T>
int readProperty(const CIMInstance& instance, const String& propertyName, T& value) {
    const Uint32 index = findProperty(instance, propertyName);
    if (index == PEG_NOT_FOUND)
        return KSV_NOT_FOUND;
    const CIMValue found = instance.getProperty(index).getValue();
    if (found.isNull())
        return KSV_NULL_VALUE;
    found.get(value);
    return KSV_FOUND;
}

// The first non-null value of a parameter of that name. A null occurrence before it makes
// the status KSV_NULL_VALUE; without a non-null one the status is KSV_NOT_FOUND.
template <typename T>
int readParameter(const Array<CIMParamValue>& params, const String& paramName, T& value) {
    int status = KSV_FOUND;
    for (Uint32 i = 0; i < params.size(); i++) {
        if (!String::equalNoCase(params[i].getParameterName(), paramName))
            continue;
        const CIMValue found = params[i].getValue();
        if (!found.isNull()) {
            found.get(value);
            return status;
        }
        status = KSV_NULL_VALUE;
    }
    return KSV_NOT_FOUND;
}

void traceGetProperty(const char* tag, const String& propertyName) {
    log_message(4, "-->KSV_Common::getProperty(%s), propertyName = %s\n", tag,
                (const char*)propertyName.getCString());
}

void traceGetParameter(const char* tag, const String& paramName) {
    log_message(4, "-->KSV_Common::getParameter(%s), paramName = %s\n", tag,
                (const char*)paramName.getCString());
}

template <typename T>
String text(const T& value) {
    return CIMValue(value).toString();
}

template <typename T>
void replaceValue(CIMInstance& instance, const CIMName& name, const T& value) {
    const Uint32 index = instance.findProperty(name);
    if (index != PEG_NOT_FOUND)
        instance.getProperty(index).setValue(CIMValue(value));
}

// Properties of other types than string come back in their CIM text form.
String stringOf(const CIMValue& value) {
    if (value.isNull())
        return String();
    if (value.getType() != CIMTYPE_STRING || value.isArray())
        return value.toString();
    String text;
    value.get(text);
    return text;
}

bool isValidPropertyRequest(const CIMInstance& instance, const String& propertyName) {
    if (propertyName.size() != 0 && !instance.isUninitialized())
        return true;
    log_message(3, "\tInvalid property name.\n");
    return false;
}

} // namespace

int KSV_Common::getProperty(const CIMInstance& instance, const String& propertyName, Uint8& value) {
    traceGetProperty("uint8", propertyName);
    const int status = readProperty(instance, propertyName, value);
    log_message(4, "<--KSV_Common::getProperty(uint8), value = %d\n", value);
    return status;
}

int KSV_Common::getProperty(const CIMInstance& instance, const String& propertyName,
                            Uint16& value) {
    traceGetProperty("uint16", propertyName);
    const int status = readProperty(instance, propertyName, value);
    log_message(4, "<--KSV_Common::getProperty(uint16), value = %d\n", value);
    return status;
}

int KSV_Common::getProperty(const CIMInstance& instance, const String& propertyName,
                            Uint32& value) {
    traceGetProperty("uint32", propertyName);
    const int status = readProperty(instance, propertyName, value);
    log_message(4, "<--KSV_Common::getProperty(uint32), value = %d\n", value);
    return status;
}

int KSV_Common::getProperty(const CIMInstance& instance, const String& propertyName,
                            Uint64& value) {
    traceGetProperty("uint64", propertyName);
    const int status = readProperty(instance, propertyName, value);
    log_message(4, "<--KSV_Common::getProperty(uint64), value = %llu\n", value);
    return status;
}

int KSV_Common::getProperty(const CIMInstance& instance, const String& propertyName,
                            Boolean& value) {
    traceGetProperty("Boolean", propertyName);
    const int status = readProperty(instance, propertyName, value);
    log_message(4, "<--KSV_Common::getProperty(Boolean), value = %d\n", value);
    return status;
}

int KSV_Common::getProperty(const CIMInstance& instance, const String& propertyName,
                            CIMDateTime& value) {
    traceGetProperty("CIMDateTime", propertyName);
    const int status = readProperty(instance, propertyName, value);
    log_message(4, "<--KSV_Common::getProperty(CIMDateTime), value = %s\n",
                (const char*)value.toString().getCString());
    return status;
}

int KSV_Common::getProperty(const CIMInstance& instance, const String& propertyName,
                            Array<String>& value) {
    traceGetProperty("Array<String>", propertyName);
    const int status = readProperty(instance, propertyName, value);
    log_message(4, "<--KSV_Common::getProperty(Array<String>), value = %s\n",
                (const char*)text(value).getCString());
    return status;
}

// References trace with the string-array texts.
int KSV_Common::getProperty(const CIMInstance& instance, const String& propertyName,
                            CIMObjectPath& value) {
    traceGetProperty("Array<String>", propertyName);
    const int status = readProperty(instance, propertyName, value);
    log_message(4, "<--KSV_Common::getProperty(Array<String>), value = %s\n",
                (const char*)value.toString().getCString());
    return status;
}

int KSV_Common::getProperty(const CIMInstance& instance, const String& propertyName,
                            Array<Sint32>& value) {
    traceGetProperty("Array<Sint32>", propertyName);
    const int status = readProperty(instance, propertyName, value);
    log_message(4, "<--KSV_Common::getProperty(Array<Sint32>)\n");
    return status;
}

int KSV_Common::getProperty(const CIMInstance& instance, const String& propertyName,
                            Array<Uint16>& value) {
    traceGetProperty("Array<Uint16>", propertyName);
    const int status = readProperty(instance, propertyName, value);
    log_message(4, "<--KSV_Common::getProperty(Array<Uint16>)\n");
    return status;
}

int KSV_Common::getParameter(const Array<CIMParamValue>& params, const String& paramName,
                             Uint8& value) {
    traceGetParameter("Uint8", paramName);
    const int status = readParameter(params, paramName, value);
    log_message(4, "<--KSV_Common::getParameter(Uint8), paramValue = %d\n", value);
    return status;
}

int KSV_Common::getParameter(const Array<CIMParamValue>& params, const String& paramName,
                             Uint16& value) {
    traceGetParameter("Uint16", paramName);
    const int status = readParameter(params, paramName, value);
    log_message(4, "<--KSV_Common::getParameter(Uint16), paramValue = %d\n", value);
    return status;
}

int KSV_Common::getParameter(const Array<CIMParamValue>& params, const String& paramName,
                             Uint32& value) {
    traceGetParameter("Uint32", paramName);
    const int status = readParameter(params, paramName, value);
    log_message(4, "<--KSV_Common::getParameter(Uint32), paramValue = %d\n", value);
    return status;
}

int KSV_Common::getParameter(const Array<CIMParamValue>& params, const String& paramName,
                             Uint64& value) {
    traceGetParameter("Uint64", paramName);
    const int status = readParameter(params, paramName, value);
    log_message(4, "<--KSV_Common::getParameter(Uint64), paramValue = %llu\n", value);
    return status;
}

int KSV_Common::getParameter(const Array<CIMParamValue>& params, const String& paramName,
                             Boolean& value) {
    traceGetParameter("Boolean", paramName);
    const int status = readParameter(params, paramName, value);
    log_message(4, "<--KSV_Common::getParameter(Boolean), paramValue = %d\n", value);
    return status;
}

int KSV_Common::getParameter(const Array<CIMParamValue>& params, const String& paramName,
                             CIMDateTime& value) {
    traceGetParameter("CIMDateTime", paramName);
    const int status = readParameter(params, paramName, value);
    log_message(4, "<--KSV_Common::getParameter(CIMDateTime), paramValue = %s\n",
                (const char*)value.toString().getCString());
    return status;
}

int KSV_Common::getParameter(const Array<CIMParamValue>& params, const String& paramName,
                             CIMObjectPath& value) {
    traceGetParameter("CIMObjectPath", paramName);
    const int status = readParameter(params, paramName, value);
    log_message(4, "<--KSV_Common::getParameter(CIMObjectPath), paramValue = %s\n",
                (const char*)value.toString().getCString());
    return status;
}

int KSV_Common::getParameter(const Array<CIMParamValue>& params, const String& paramName,
                             String& value) {
    traceGetParameter("String", paramName);
    const int status = readParameter(params, paramName, value);
    log_message(4, "<--KSV_Common::getParameter(String), paramValue = %s\n",
                (const char*)value.getCString());
    return status;
}

int KSV_Common::getParameter(const Array<CIMParamValue>& params, const String& paramName,
                             Array<Uint16>& value) {
    traceGetParameter("Array<Uint16>", paramName);
    const int status = readParameter(params, paramName, value);
    log_message(4, "<--KSV_Common::getParameter(Array<Uint16>)\n");
    return status;
}

int KSV_Common::getParameter(const Array<CIMParamValue>& params, const String& paramName,
                             Array<String>& value) {
    traceGetParameter("Array<String>", paramName);
    const int status = readParameter(params, paramName, value);
    log_message(4, "<--KSV_Common::getParameter(Array<String>)");
    return status;
}

String KSV_Common::getStringProperty(const CIMInstance& instance, const String& propertyName) {
    log_message(4, "-->KSV_Common::getStringProperty(), propertyName = %s\n",
                (const char*)propertyName.getCString());
    if (!isValidPropertyRequest(instance, propertyName))
        return String();
    String value;
    const Uint32 index = findProperty(instance, propertyName);
    if (index != PEG_NOT_FOUND)
        value = stringOf(instance.getProperty(index).getValue());
    log_message(4, "<--KSV_Common::getStringProperty(), value = %s\n",
                (const char*)value.getCString());
    return value;
}

String KSV_Common::getStringProperty(const CIMObjectPath& path, const String& keyName) {
    log_message(4, "-->KSV_Common::getStringProperty(), propertyName = %s\n",
                (const char*)keyName.getCString());
    String value;
    const Array<CIMKeyBinding>& keys = path.getKeyBindings();
    for (Uint32 i = 0; i < keys.size(); i++) {
        if (String::equalNoCase(keys[i].getName().getString(), keyName)) {
            value = keys[i].getValue();
            break;
        }
    }
    log_message(4, "<--KSV_Common::getStringProperty(), value = %s\n",
                (const char*)value.getCString());
    return value;
}

CIMValue KSV_Common::getPropertyValue(const CIMInstance& instance, const String& propertyName) {
    log_message(4, "-->KSV_Common::getStringProperty(), propertyName = %s\n",
                (const char*)propertyName.getCString());
    if (!isValidPropertyRequest(instance, propertyName))
        return CIMValue();
    CIMValue value;
    const Uint32 index = findProperty(instance, propertyName);
    if (index != PEG_NOT_FOUND)
        value = instance.getProperty(index).getValue();
    log_message(4, "<--KSV_Common::getStringProperty()\n");
    return value;
}

void KSV_Common::setPropertyValue(CIMInstance& instance, CIMName name, const String& value) {
    replaceValue(instance, name, value);
}

void KSV_Common::setPropertyValue(CIMInstance& instance, CIMName name, const char* value) {
    replaceValue(instance, name, String(value));
}

void KSV_Common::setPropertyValue(CIMInstance& instance, CIMName name, const Boolean& value) {
    replaceValue(instance, name, value);
}

void KSV_Common::setPropertyValue(CIMInstance& instance, CIMName name, const Uint8& value) {
    replaceValue(instance, name, value);
}

void KSV_Common::setPropertyValue(CIMInstance& instance, CIMName name, const Uint16& value) {
    replaceValue(instance, name, value);
}

void KSV_Common::setPropertyValue(CIMInstance& instance, CIMName name, const Uint32& value) {
    replaceValue(instance, name, value);
}

void KSV_Common::setPropertyValue(CIMInstance& instance, CIMName name, const Uint64& value) {
    replaceValue(instance, name, value);
}

void KSV_Common::setPropertyValue(CIMInstance& instance, CIMName name, const Sint16& value) {
    replaceValue(instance, name, value);
}

void KSV_Common::setPropertyValue(CIMInstance& instance, CIMName name, const Array<String>& value) {
    replaceValue(instance, name, value);
}

void KSV_Common::setPropertyValue(CIMInstance& instance, CIMName name, const Array<Uint16>& value) {
    replaceValue(instance, name, value);
}

void KSV_Common::setPropertyValue(CIMInstance& instance, CIMName name, const Array<Sint32>& value) {
    replaceValue(instance, name, value);
}

void KSV_Common::setPropertyValue(CIMInstance& instance, CIMName name, const Array<Uint64>& value) {
    replaceValue(instance, name, value);
}

void KSV_Common::setPropertyValue(CIMInstance& instance, CIMName name,
                                  const Array<Boolean>& value) {
    replaceValue(instance, name, value);
}

void KSV_Common::setPropertyValue(CIMInstance& instance, CIMName name,
                                  const Array<CIMDateTime>& value) {
    replaceValue(instance, name, value);
}

void KSV_Common::setPropertyValue(CIMInstance& instance, CIMName name, const CIMObjectPath& value) {
    replaceValue(instance, name, value);
}

void KSV_Common::setPropertyValue(CIMInstance& instance, CIMName name, const CIMDateTime& value) {
    replaceValue(instance, name, value);
}

void KSV_Common::setPropertyValue(CIMInstance& instance, CIMName name,
                                  const CIMInstance& embedded) {
    const Uint32 index = instance.findProperty(name);
    if (index != PEG_NOT_FOUND)
        instance.removeProperty(index);
    instance.addProperty(CIMProperty(name, CIMValue(embedded)));
}

void KSV_Common::setPropertyValueToNull(CIMInstance& instance, CIMName name, CIMType type) {
    const Uint32 index = instance.findProperty(name);
    if (index == PEG_NOT_FOUND)
        return;
    CIMValue nullValue;
    nullValue.setNullValue(type, false);
    instance.getProperty(index).setValue(nullValue);
}

CIMInstance KSV_Common::buildInstanceSkeleton(const CIMClass& cimClass) {
    log_message(4, "-->KSV_Common::_buildInstanceSkeleton()\n");
    CIMInstance skeleton = cimClass.buildInstance(true, true, CIMPropertyList());
    log_message(4, "<--KSV_Common::_buildInstanceSkeleton()\n");
    return skeleton;
}

CIMClass KSV_Common::getStoredCIMClass(CIMOMHandle& cimom, const OperationContext& context,
                                       const CIMNamespaceName& nameSpace, const CIMName& className,
                                       bool localOnly, bool includeQualifiers,
                                       bool includeClassOrigin,
                                       const CIMPropertyList& propertyList) {
    return KSV_InternalCacheService::getInstance()->getStoredCIMClass(
        cimom, context, nameSpace, className, localOnly, includeQualifiers, includeClassOrigin,
        propertyList);
}

PEGASUS_NAMESPACE_END
