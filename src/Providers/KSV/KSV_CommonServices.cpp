// Provider services: the user gate, the response-handler helpers and the caching policy.
#include "KSV_Common.h"

#include <Pegasus/Common/MessageLoader.h>
#include <Pegasus/Common/InternalException.h>

#include "StorageVolume/KSV_InternalCacheService.h"

PEGASUS_NAMESPACE_BEGIN

String KSV_Common::getUserName(const OperationContext& context) {
    // The server always names the caller; a context without an identity fails here.
    IdentityContainer identity(context.get(IdentityContainer::NAME));
    return identity.getUserName();
}

void KSV_Common::checkUserAccess(const OperationContext& context, const String& sourceName,
                                 Uint32 line) {
    if (api_ksvOpenForCimserver(getUserName(context).getCString()) != 0) {
        throw TraceableCIMException(CIM_ERR_ACCESS_DENIED, "Insufficient privilege for the user",
                                    sourceName, line);
    }
}

namespace {

ResponseHandler* handlerFor(cim_handler_u handler, cim_method_e method) {
    switch (method) {
    case KSVCIM_ASSOCIATORS:
    case KSVCIM_REFERENCES:
        return handler.objectHandler;
    case KSVCIM_ASSOCIATORNAMES:
    case KSVCIM_REFERENCENAMES:
    case KSVCIM_ENUMERATEINSTANCENAMES:
        return handler.objectPathHandler;
    case KSVCIM_GETINSTANCE:
    case KSVCIM_ENUMERATEINSTANCES:
        return handler.instanceHandler;
    }
    return nullptr;
}

} // namespace

void KSV_Common::handleProcessing(cim_handler_u handler, cim_method_e method) {
    if (ResponseHandler* target = handlerFor(handler, method))
        target->processing();
}

void KSV_Common::handleComplete(cim_handler_u handler, cim_method_e method) {
    if (ResponseHandler* target = handlerFor(handler, method))
        target->complete();
}

void KSV_Common::handleDeliver(cim_handler_u handler, cim_method_e method,
                               const CIMInstance& instance) {
    switch (method) {
    case KSVCIM_ASSOCIATORS:
    case KSVCIM_REFERENCES:
        handler.objectHandler->deliver(CIMObject(instance));
        break;
    case KSVCIM_ASSOCIATORNAMES:
    case KSVCIM_REFERENCENAMES:
    case KSVCIM_ENUMERATEINSTANCENAMES:
        handler.objectPathHandler->deliver(instance.getPath());
        break;
    case KSVCIM_GETINSTANCE:
    case KSVCIM_ENUMERATEINSTANCES:
        handler.instanceHandler->deliver(instance);
        break;
    }
}

Uint32 KSV_Common::getPolicy() {
    return KSV_InternalCacheService::getInstance()->getPolicy();
}

void KSV_Common::setPolicy(Uint32 policy) {
    KSV_InternalCacheService::getInstance()->setPolicy(policy);
}

PEGASUS_NAMESPACE_END
