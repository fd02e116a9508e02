// A provider module's shared library and its entry point PegasusCreateProvider, or a module
// built into the server.
#ifndef KSV_CIMSERVER_PROVIDERLIBRARY_H
#define KSV_CIMSERVER_PROVIDERLIBRARY_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Provider/CIMProvider.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace ksv::server {

class ModuleLoadError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class ProviderLibrary {
public:
    using Factory = std::function<Pegasus::CIMProvider*(const Pegasus::String& providerName)>;

    // A built-in module: `create` makes its providers; `name` stands for the path in messages.
    ProviderLibrary(std::string name, Factory create);
    // Opens lib<location>.so from the first of `directories` that holds it.
    ProviderLibrary(const std::string& location, const std::vector<std::string>& directories);
    ~ProviderLibrary();
    ProviderLibrary(const ProviderLibrary&) = delete;
    ProviderLibrary& operator=(const ProviderLibrary&) = delete;

    const std::string& path() const { return _path; }

    // A new provider object, or null when the module serves no provider of that name.
    Pegasus::CIMProvider* createProvider(const Pegasus::String& providerName) const;

private:
    using CreateProvider = Pegasus::CIMProvider* (*)(const Pegasus::String&);

    std::string _path;
    void* _handle = nullptr;
    Factory _create;
};

} // namespace ksv::server

#endif
