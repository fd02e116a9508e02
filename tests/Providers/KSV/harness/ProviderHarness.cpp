#include "ProviderHarness.h"

#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Client/CIMClientBackend.h>
#include <Pegasus/Provider/CIMOMHandleBackend.h>

#include "DriveCage/KSV_MagazineProvider.h"
#include "StorageVolume/KSV_InternalCacheService.h"
#include "StorageVolume/KSV_StoragePoolProvider.h"
#include "StorageVolume/KSV_StorageVolumeProvider.h"
#include "mof_compiler/MofCompiler.h"

#include <cstdlib>
#include <set>
#include <stdexcept>

namespace ksv::test {

using namespace Pegasus;

namespace {

const CIMNamespaceName KSV_NAMESPACE("root/ksv");

void setOrAdd(CIMInstance& instance, const char* name, const CIMValue& value) {
    const Uint32 index = instance.findProperty(name);
    if (index == PEG_NOT_FOUND)
        instance.addProperty(CIMProperty(name, value));
    else
        instance.getProperty(index).setValue(value);
}

// An instance of the path's class with its key properties and the given properties set.
CIMInstance instanceAt(const CIMObjectPath& path,
                       std::initializer_list<std::pair<const char*, CIMValue>> properties = {}) {
    const CIMClass cimClass = ProviderHarness::shippedClasses().getClass(
        KSV_NAMESPACE, path.getClassName(), false, true, true);
    CIMInstance instance = cimClass.buildInstance(false, false, CIMPropertyList());
    const Array<CIMKeyBinding>& keys = path.getKeyBindings();
    for (Uint32 i = 0; i < keys.size(); i++)
        setOrAdd(instance, keys[i].getName().getString().getCString(),
                 CIMValue(keys[i].getValue()));
    for (const auto& property : properties)
        setOrAdd(instance, property.first, property.second);
    instance.setPath(path);
    return instance;
}

api_SystemInfo_t systemInfo() {
    api_SystemInfo_t info;
    if (api_getSystemInfo(&info) != 0)
        throw std::runtime_error("the simulated array has no system identity");
    return info;
}

} // namespace

CIMObjectPath pathOf(const std::string& className,
                     const std::vector<std::pair<std::string, std::string>>& keys,
                     const std::string& host) {
    Array<CIMKeyBinding> bindings;
    for (const auto& [name, value] : keys)
        bindings.append(CIMKeyBinding(name.c_str(), value.c_str(), CIMKeyBinding::STRING));
    return CIMObjectPath(host.c_str(), KSV_NAMESPACE, className.c_str(), bindings);
}

ProviderHarness::ProviderHarness(const std::string& model) : InProcessServer(shippedClasses()) {
    ksvsim::reset();
    ksvsim::setLogSink("none");
    ksvsim::setLogCapture(true);
    if (const auto error = ksvsim::loadModelFile(modelPath(model)))
        throw std::runtime_error(error->describe());
    KSV_InternalCacheService::destroy();
    CIMOMHandleBackend::setDefault(serverHandle());
    CIMClientConnector::setLocal(localConnector());
    fillStore();
    clearCalls();
    ksvsim::clearCalls();
    ksvsim::clearCapturedLog();
}

ProviderHarness::~ProviderHarness() {
    CIMClientConnector::setLocal(CIMClientConnector::LocalFactory());
    CIMOMHandleBackend::resetDefault();
    KSV_InternalCacheService::destroy();
    ksvsim::reset();
}

CIMOMHandle ProviderHarness::cimom() {
    return CIMOMHandle(serverHandle());
}

OperationContext ProviderHarness::context(const std::string& userName) {
    OperationContext context;
    context.insert(IdentityContainer(userName.c_str()));
    return context;
}

std::string ProviderHarness::systemName() const {
    return systemInfo().name;
}

std::string ProviderHarness::hostName() const {
    return systemInfo().hostName;
}

std::string ProviderHarness::modelPath(const std::string& model) {
    return std::string(KSV_SOURCE_DIR) + "/examples/arrays/" + model;
}

const ksv::mof::ClassRepository& ProviderHarness::shippedClasses() {
    static const ksv::mof::ClassRepository classes = [] {
        ksv::mof::MofCompiler compiler;
        compiler.compileFile(std::string(KSV_SOURCE_DIR) + "/mof/standalone.mof");
        return compiler.repository();
    }();
    return classes;
}

void ProviderHarness::fillStore() {
    const api_SystemInfo_t info = systemInfo();
    const std::string name(info.name);
    const String host(info.hostName);

    putInstance(KSV_NAMESPACE,
                instanceAt(pathOf("KSV_StorageSystem",
                                  {{"CreationClassName", "KSV_StorageSystem"}, {"Name", name}}),
                           {{"ElementName", CIMValue(String(info.name))}}));
    putInstance(KSV_NAMESPACE,
                instanceAt(pathOf("KSV_SystemPackage",
                                  {{"CreationClassName", "KSV_SystemPackage"}, {"Tag", name}})));
    putInstance(KSV_NAMESPACE,
                instanceAt(pathOf("KSV_StorageSystemView", {{"InstanceID", "QUANOR:" + name}})));
    putInstance(KSV_NAMESPACE,
                instanceAt(KSV_StoragePoolProvider::buildInstanceName("QUANOR:primordial", host),
                           {{"ElementName", CIMValue(String("primordial"))},
                            {"Primordial", CIMValue(true)}}));

    api_VVList_t volumes = {0, nullptr};
    api_getVVs(nullptr, &volumes);
    for (Uint32 i = 0; i < volumes.count; i++) {
        const api_VV_t& volume = volumes.vvs[i];
        putInstance(KSV_NAMESPACE, instanceAt(KSV_StorageVolumeProvider::createObjectPath(
                                                  volume.wwn, info.name, host),
                                              {{"ElementName", CIMValue(String(volume.name))}}));
    }
    free(volumes.vvs);

    api_DiskList_t disks = {0, nullptr};
    api_getSystemDisks(API_ALL_DISKS, &disks);
    std::set<std::string> magazines;
    for (Uint32 i = 0; i < disks.count; i++) {
        const api_Disk_t& disk = disks.disks[i];
        if (!magazines.insert(disk.parentDeviceID).second)
            continue;
        putInstance(KSV_NAMESPACE, instanceAt(KSV_MagazineProvider::buildObjectPath(
                                       KSV_MagazineProvider::_getCIMName(disk.cageType), host,
                                       disk.parentDeviceID)));
    }
    free(disks.disks);
}

} // namespace ksv::test
