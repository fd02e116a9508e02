// System identity: the array's name, host and kind as the internal cache provider answers
// them, and the paths of the system's own instances.
#include "KSV_Common.h"

#include <Pegasus/Client/CIMClient.h>

PEGASUS_NAMESPACE_BEGIN

namespace {

const char INTERNAL_NAMESPACE[] = "root/PG_Internal";
const char KSV_NAMESPACE[] = "root/ksv";

// The internal cache answers through the first output parameter; anything else (no output,
// another name, a null value) counts as no answer.
CIMValue expectedOutput(const Array<CIMParamValue>& outParameters, const char* outputName) {
    if (outParameters.size() == 0)
        return CIMValue();
    const CIMParamValue& first = outParameters[0];
    if (!String::equalNoCase(first.getParameterName(), outputName))
        return CIMValue();
    return first.getValue();
}

// Asks the internal cache through a local client; with a server handle, a failed attempt is
// made once more through the server.
CIMValue askInternalCache(const char* methodName, const char* outputName, CIMOMHandle* fallback) {
    const CIMObjectPath path = KSV_Common::buildInternalCacheObjectPath("localhost", "localhost");
    const Array<CIMParamValue> inParameters;
    Array<CIMParamValue> outParameters;
    try {
        KSV_Common::invokeMethod(INTERNAL_NAMESPACE, path, methodName, inParameters, outParameters);
    } catch (...) {
        if (!fallback)
            throw;
        outParameters.clear();
        fallback->invokeMethod(OperationContext(), INTERNAL_NAMESPACE, path, methodName,
                               inParameters, outParameters);
    }
    return expectedOutput(outParameters, outputName);
}

template <typename T>
T valueOr(const CIMValue& answer, T result) {
    if (!answer.isNull())
        answer.get(result);
    return result;
}

// What differs between the lookups of the system's singleton instances: the class and the
// log lines. A null text is not written; without secondFailure texts the attempt through the
// server is not guarded.
struct SingletonLookup {
    const char* className;
    const char* entryTrace;
    const char* exitTrace;
    const char* firstFailure;
    const char* firstUnknownFailure;
    const char* secondFailure;
    const char* secondUnknownFailure;
    const char* notFound;
};

const SingletonLookup SYSTEM_LOOKUP = {
    "KSV_StorageSystem",
    "-->KSV_Common::getSystemObjectPath()\n",
    "<--KSV_Common::getSystemObjectPath()\n",
    "KSV_Common::getSystemObjectPath: %s. Trying via cimom.\n",
    "KSV_Common::getSystemObjectPath: Unknown exception! Trying via cimom\n",
    nullptr,
    nullptr,
    "cannot get at system object path\n"};

const SingletonLookup PACKAGE_LOOKUP = {
    "KSV_SystemPackage",
    nullptr,
    nullptr,
    "KSV_Common::getSystemPkgObjectPath: %s. Trying via cimom.\n",
    "KSV_Common::getSystemPkgObjectPath: Unknown exception! Trying via cimom\n",
    "KSV_Common::getSystemPkgObjectPath: %s.\n",
    "KSV_Common::getSystemPkgObjectPath: Unknown exception in cimom!\n",
    "cannot get at system pkg object path\n"};

const SingletonLookup VIEW_LOOKUP = {
    "KSV_StorageSystemView",
    "-->KSV_Common::getSystemViewObjectPath()\n",
    "<--KSV_Common::getSystemViewObjectPath()\n",
    "KSV_Common::getSystemViewObjectPath: %s. Trying via cimom.\n",
    "KSV_Common::getSystemViewObjectPath: Unknown exception! Trying via cimom\n",
    "KSV_Common::getSystemViewObjectPath: %s.\n",
    "KSV_Common::getSystemViewObjectPath: Unknown exception in cimom!\n",
    "cannot get at system view object path\n"};

void trace(const char* text) {
    if (text)
        log_message(4, "%s", text);
}

Array<CIMObjectPath> namesThroughServer(CIMOMHandle& cimom, const SingletonLookup& lookup) {
    if (!lookup.secondFailure)
        return cimom.enumerateInstanceNames(OperationContext(), KSV_NAMESPACE, lookup.className);
    try {
        return cimom.enumerateInstanceNames(OperationContext(), KSV_NAMESPACE, lookup.className);
    } catch (const Exception& e) {
        log_message(2, lookup.secondFailure, (const char*)e.getMessage().getCString());
    } catch (...) {
        log_message(2, "%s", lookup.secondUnknownFailure);
    }
    return Array<CIMObjectPath>();
}

Array<CIMObjectPath> singletonNames(CIMOMHandle& cimom, const SingletonLookup& lookup) {
    try {
        return KSV_Common::enumerateInstanceNames(KSV_NAMESPACE, lookup.className);
    } catch (const Exception& e) {
        log_message(2, lookup.firstFailure, (const char*)e.getMessage().getCString());
    } catch (...) {
        log_message(2, "%s", lookup.firstUnknownFailure);
    }
    return namesThroughServer(cimom, lookup);
}

CIMObjectPath singletonPath(CIMOMHandle& cimom, const SingletonLookup& lookup) {
    trace(lookup.entryTrace);
    const Array<CIMObjectPath> names = singletonNames(cimom, lookup);
    if (names.size() == 0) {
        log_message(2, "%s", lookup.notFound);
        return CIMObjectPath();
    }
    CIMObjectPath path = names[0];
    path.setHost(KSV_Common::getSystemHostName(cimom));
    path.setNameSpace(KSV_NAMESPACE);
    trace(lookup.exitTrace);
    return path;
}

} // namespace

CIMObjectPath KSV_Common::buildInternalCacheObjectPath(const String& host,
                                                       const String& systemName) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding("InstanceID", systemName + "-InternalCache", CIMKeyBinding::STRING));
    return CIMObjectPath(host, INTERNAL_NAMESPACE, "KSV_InternalCache", keys);
}

CIMValue KSV_Common::invokeMethod(const CIMNamespaceName& nameSpace, const CIMObjectPath& path,
                                  const CIMName& methodName,
                                  const Array<CIMParamValue>& inParameters,
                                  Array<CIMParamValue>& outParameters) {
    log_message(4, "-->KSV_Common::invokeMethod()\n");
    CIMClient client;
    client.connectLocal();
    const CIMValue result =
        client.invokeMethod(nameSpace, path, methodName, inParameters, outParameters);
    client.disconnect();
    log_message(4, "<--KSV_Common::invokeMethod()\n");
    return result;
}

Array<CIMObjectPath> KSV_Common::enumerateInstanceNames(const CIMNamespaceName& nameSpace,
                                                        const CIMName& className) {
    log_message(4, "-->KSV_Common::enumerateInstanceNames()\n");
    CIMClient client;
    client.connectLocal();
    const Array<CIMObjectPath> names = client.enumerateInstanceNames(nameSpace, className);
    client.disconnect();
    log_message(4, "<--KSV_Common::enumerateInstanceNames()\n");
    return names;
}

String KSV_Common::getSystemName(CIMOMHandle& cimom) {
    return valueOr(askInternalCache("GetSystemName", "SystemName", &cimom), String());
}

String KSV_Common::getSystemName() {
    return valueOr(askInternalCache("GetSystemName", "SystemName", nullptr), String());
}

// The numeric answers are 0 when the internal cache gives no usable value.
Uint32 KSV_Common::getSystemID() {
    return valueOr(askInternalCache("GetSystemID", "SystemID", nullptr), Uint32(0));
}

Uint8 KSV_Common::isQuadPortSystem(CIMOMHandle& cimom) {
    return valueOr(askInternalCache("IsQuadPortSystem", "IsQuadPort", &cimom), Uint8(0));
}

int KSV_Common::getSystemType() {
    return valueOr(askInternalCache("GetSystemType", "SystemType", nullptr), Sint32(0));
}

String KSV_Common::getSystemHostName(CIMOMHandle&) {
    return valueOr(askInternalCache("GetSystemHostName", "SystemHostName", nullptr), String());
}

String KSV_Common::getSystemAddress(CIMOMHandle& cimom) {
    return valueOr(askInternalCache("GetSystemAddress", "SystemAddress", &cimom), String());
}

CIMObjectPath KSV_Common::getSystemObjectPath(CIMOMHandle& cimom) {
    return singletonPath(cimom, SYSTEM_LOOKUP);
}

CIMObjectPath KSV_Common::getSystemPkgObjectPath(CIMOMHandle& cimom) {
    return singletonPath(cimom, PACKAGE_LOOKUP);
}

CIMObjectPath KSV_Common::getSystemViewObjectPath(CIMOMHandle& cimom) {
    return singletonPath(cimom, VIEW_LOOKUP);
}

PEGASUS_NAMESPACE_END
