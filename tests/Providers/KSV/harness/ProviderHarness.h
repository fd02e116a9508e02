// What a provider test needs around it: the simulated array loaded with a model, an in-process
// CIM server serving the shipped MOF and the instances of the sibling modules, both installed
// where providers look for them (the default CIMOMHandle backend and the local CIMClient
// connector), and the simulator's log captured. One harness at a time per process.
#ifndef KSV_TESTS_PROVIDERHARNESS_H
#define KSV_TESTS_PROVIDERHARNESS_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/OperationContext.h>
#include <Pegasus/Provider/CIMOMHandle.h>

#include <ksvapi.h>
#include <ksvapi_sim.h>

#include "InProcessServer.h"
#include "RecordingHandlers.h"

#include <memory>
#include <string>
#include <vector>

namespace ksv::test {

// A path in root/ksv on the host, with these string keys in this order.
Pegasus::CIMObjectPath pathOf(const std::string& className,
                              const std::vector<std::pair<std::string, std::string>>& keys,
                              const std::string& host = "");

class ProviderHarness : public InProcessServer {
public:
    // Loads examples/arrays/<model> and fills the server's store from it:
    //   KSV_StorageSystem       Name = the system name the internal cache answers
    //   KSV_SystemPackage       Tag = the system name
    //   KSV_StorageSystemView   InstanceID = "QUANOR:" + the system name
    //   KSV_StoragePool         the primordial pool, InstanceID "QUANOR:primordial"
    //   KSV_StorageVolume       one per volume, with its ElementName
    //   KSV_Magazine/KSV_DiskBay one per magazine that holds a disk
    // all in root/ksv, named as the sibling modules name them.
    explicit ProviderHarness(const std::string& model = "demo.json");
    ~ProviderHarness();

    // A handle bound to the server, as the CIM server passes one to initialize.
    Pegasus::CIMOMHandle cimom();
    // A request context on behalf of the user.
    static Pegasus::OperationContext context(const std::string& userName = "admin");

    // The array's identity as the model states it.
    std::string systemName() const;
    std::string hostName() const;

    static std::string modelPath(const std::string& model);
    // The shipped MOF (mof/standalone.mof), compiled once per process.
    static const ksv::mof::ClassRepository& shippedClasses();

private:
    void fillStore();
};

} // namespace ksv::test

#endif
