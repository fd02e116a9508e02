#include "ProviderModule.h"

#include <dlfcn.h>

#include <stdexcept>

namespace ksv::test {

ProviderModule::ProviderModule(const std::string& path)
    : _handle(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)), _createProvider(nullptr) {
    if (!_handle)
        throw std::runtime_error(dlerror());
    _createProvider = reinterpret_cast<CreateProvider>(dlsym(_handle, "PegasusCreateProvider"));
    if (!_createProvider) {
        const std::string error = dlerror();
        dlclose(_handle);
        throw std::runtime_error(error);
    }
}

ProviderModule::~ProviderModule() {
    dlclose(_handle);
}

Pegasus::CIMProvider* ProviderModule::createProvider(const Pegasus::String& providerName) const {
    return _createProvider(providerName);
}

} // namespace ksv::test
