#include <Pegasus/Provider/CIMOMHandleBackend.h>

#include <mutex>

PEGASUS_NAMESPACE_BEGIN

namespace {

std::mutex defaultBackendMutex;
std::shared_ptr<CIMOMHandleBackend> defaultBackend;

[[noreturn]] void throwNotSupported(const char* operation) {
    throw CIMException(CIM_ERR_NOT_SUPPORTED, String("CIMOMHandle::") + operation +
                                                  " is not supported by this CIM server");
}

} // namespace

CIMOMHandleBackend::~CIMOMHandleBackend() = default;

void CIMOMHandleBackend::setDefault(std::shared_ptr<CIMOMHandleBackend> backend) {
    std::lock_guard<std::mutex> lock(defaultBackendMutex);
    defaultBackend.swap(backend);
    // The previous backend, now in 'backend', is released after the lock.
}

void CIMOMHandleBackend::resetDefault() {
    setDefault(nullptr);
}

std::shared_ptr<CIMOMHandleBackend> CIMOMHandleBackend::getDefault() {
    std::lock_guard<std::mutex> lock(defaultBackendMutex);
    return defaultBackend;
}

Array<CIMClass> CIMOMHandleBackend::enumerateClasses(const OperationContext&,
                                                     const CIMNamespaceName&, const CIMName&,
                                                     Boolean, Boolean, Boolean, Boolean) {
    throwNotSupported("enumerateClasses");
}

Array<CIMName> CIMOMHandleBackend::enumerateClassNames(const OperationContext&,
                                                       const CIMNamespaceName&, const CIMName&,
                                                       Boolean) {
    throwNotSupported("enumerateClassNames");
}

void CIMOMHandleBackend::createClass(const OperationContext&, const CIMNamespaceName&,
                                     const CIMClass&) {
    throwNotSupported("createClass");
}

void CIMOMHandleBackend::modifyClass(const OperationContext&, const CIMNamespaceName&,
                                     const CIMClass&) {
    throwNotSupported("modifyClass");
}

void CIMOMHandleBackend::deleteClass(const OperationContext&, const CIMNamespaceName&,
                                     const CIMName&) {
    throwNotSupported("deleteClass");
}

Array<CIMObject> CIMOMHandleBackend::execQuery(const OperationContext&, const CIMNamespaceName&,
                                               const String&, const String&) {
    throwNotSupported("execQuery");
}

void CIMOMHandleBackend::disallowProviderUnload() {}

void CIMOMHandleBackend::allowProviderUnload() {}

PEGASUS_NAMESPACE_END
