#include "cimserver/ProviderLibrary.h"

#include <dlfcn.h>

#include <filesystem>

namespace ksv::server {

namespace {

std::string findLibrary(const std::string& location, const std::vector<std::string>& directories) {
    const std::string fileName = "lib" + location + ".so";
    std::error_code ignored;
    for (const std::string& directory : directories) {
        std::filesystem::path candidate = std::filesystem::path(directory) / fileName;
        if (std::filesystem::exists(candidate, ignored))
            return candidate.string();
    }
    std::string searched;
    for (const std::string& directory : directories)
        searched += (searched.empty() ? "" : ":") + directory;
    throw ModuleLoadError(fileName + " not found in " + (searched.empty() ? "(none)" : searched));
}

std::string lastLoaderError() {
    const char* text = dlerror();
    return text != nullptr ? text : "unknown dynamic loader error";
}

} // namespace

ProviderLibrary::ProviderLibrary(const std::string& location,
                                 const std::vector<std::string>& directories)
    : _path(findLibrary(location, directories)) {
    // Symbols stay local so that modules cannot capture each other's definitions.
    _handle = dlopen(_path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (_handle == nullptr)
        throw ModuleLoadError(lastLoaderError());
    auto create = reinterpret_cast<CreateProvider>(dlsym(_handle, "PegasusCreateProvider"));
    _create = create;
    if (create == nullptr) {
        std::string error = _path + " has no PegasusCreateProvider: " + lastLoaderError();
        dlclose(_handle);
        throw ModuleLoadError(error);
    }
}

ProviderLibrary::ProviderLibrary(std::string name, Factory create)
    : _path(std::move(name)), _create(std::move(create)) {}

ProviderLibrary::~ProviderLibrary() {
    if (_handle != nullptr)
        dlclose(_handle);
}

Pegasus::CIMProvider* ProviderLibrary::createProvider(const Pegasus::String& providerName) const {
    return _create(providerName);
}

} // namespace ksv::server
