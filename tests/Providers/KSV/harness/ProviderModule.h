// A provider module loaded the way the CIM server loads it: dlopen and PegasusCreateProvider.
#ifndef KSV_TESTS_PROVIDERMODULE_H
#define KSV_TESTS_PROVIDERMODULE_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Provider/CIMProvider.h>

#include <string>

namespace ksv::test {

class ProviderModule {
public:
    // Throws std::runtime_error with the loader's message when the module or its entry point
    // cannot be found.
    explicit ProviderModule(const std::string& path);
    ~ProviderModule();
    ProviderModule(const ProviderModule&) = delete;
    ProviderModule& operator=(const ProviderModule&) = delete;

    Pegasus::CIMProvider* createProvider(const Pegasus::String& providerName) const;

private:
    using CreateProvider = Pegasus::CIMProvider* (*)(const Pegasus::String&);

    void* _handle;
    CreateProvider _createProvider;
};

} // namespace ksv::test

#endif
