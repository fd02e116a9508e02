// What the disk module's suites share: its providers created by name through the module entry,
// as the CIM server creates them.
#ifndef KSV_TESTS_DISKTESTSUPPORT_H
#define KSV_TESTS_DISKTESTSUPPORT_H

#include "ProviderTestSupport.h"

extern "C" Pegasus::CIMProvider* PegasusCreateProvider(const Pegasus::String& providerName);

namespace ksv::test {

class DiskProvider : public RunningProvider {
public:
    DiskProvider(ProviderHarness& harness, const std::string& name,
                 const char* servedClass = nullptr)
        : RunningProvider(harness, PegasusCreateProvider(name.c_str()), servedClass) {}
};

} // namespace ksv::test

#endif
