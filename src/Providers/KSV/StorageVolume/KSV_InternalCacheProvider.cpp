#include "KSV_InternalCacheProvider.h"

#include <Pegasus/Provider/ProviderException.h>

#include <ksvapi.h>

#include "KSV_InternalCacheService.h"

PEGASUS_NAMESPACE_BEGIN

static const String ClassName("KSV_InternalCacheProvider");

namespace {

struct IdentityMethod {
    const char* name;
    const char* outputName;
    CIMValue (*answer)(const KSV_InternalCacheService& identity);
};

const IdentityMethod METHODS[] = {
    {"GetSystemName", "SystemName",
     [](const KSV_InternalCacheService& identity) { return CIMValue(identity.getSystemName()); }},
    {"GetSystemID", "SystemID",
     [](const KSV_InternalCacheService& identity) { return CIMValue(identity.getSystemID()); }},
    {"IsQuadPortSystem", "IsQuadPort",
     [](const KSV_InternalCacheService& identity) {
         return CIMValue(identity.isQuadPortSystem());
     }},
    {"GetSystemType", "SystemType",
     [](const KSV_InternalCacheService& identity) {
         return CIMValue(Sint32(identity.getSystemType()));
     }},
    {"GetSystemHostName", "SystemHostName",
     [](const KSV_InternalCacheService& identity) {
         return CIMValue(identity.getSystemHostName());
     }},
    {"GetSystemAddress", "SystemAddress",
     [](const KSV_InternalCacheService& identity) {
         return CIMValue(identity.getSystemAddress());
     }},
};

const IdentityMethod& identityMethod(const CIMName& methodName) {
    for (const IdentityMethod& method : METHODS) {
        if (methodName.equal(method.name))
            return method;
    }
    throw CIMException(CIM_ERR_METHOD_NOT_FOUND,
                       ClassName + " has no method " + methodName.getString());
}

} // namespace

void KSV_InternalCacheProvider::initialize(CIMOMHandle&) {}

void KSV_InternalCacheProvider::terminate() {
    delete this;
}

void KSV_InternalCacheProvider::invokeMethod(const OperationContext&,
                                             const CIMObjectPath& objectReference,
                                             const CIMName& methodName, const Array<CIMParamValue>&,
                                             MethodResultResponseHandler& handler) {
    log_message(4, "--> KSV_InternalCacheProvider::invokeMethod %s\n",
                (const char*)methodName.getString().getCString());
    if (!objectReference.getClassName().equal("KSV_InternalCache")) {
        throw CIMNotSupportedException(ClassName + " Invalid class name" +
                                       objectReference.getClassName().getString());
    }
    const IdentityMethod& method = identityMethod(methodName);
    const CIMValue answer = method.answer(KSV_InternalCacheService::withSystemInfo(ClassName));
    handler.processing();
    handler.deliverParamValue(CIMParamValue(method.outputName, answer));
    handler.deliver(CIMValue(Uint32(0)));
    handler.complete();
    log_message(4, "<-- KSV_InternalCacheProvider::invokeMethod\n");
}

PEGASUS_NAMESPACE_END
