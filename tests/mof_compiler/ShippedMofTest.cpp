// The MOF shipped under mof/: it compiles, every property the providers set
// resolves with the type they write, the associations reach the KSV classes,
// and the registration names classes that exist.

#include <map>
#include <set>

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/CIMProperty.h>

#include "MofTestSupport.h"

namespace ksv::mof::test {
namespace {

using namespace Pegasus;

const char* const ksv = "root/ksv";
const char* const interop = "root/PG_InterOp";

class ShippedMof : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        MofCompiler compiler;
        compiler.compileFile(shippedMof("standalone.mof"));
        warnings = compiler.warnings();
        repository = compiler.repository();
    }

    static CIMClass classIn(const char* nameSpace, const char* className) {
        return repository.getClass(nameSpace, className, false, true, true);
    }

    static std::string text(const CIMConstInstance& instance, const char* property) {
        return utf8(instance.getProperty(instance.findProperty(property)).getValue().toString());
    }

    static inline ClassRepository repository;
    static inline std::vector<std::string> warnings;
};

TEST_F(ShippedMof, CompilesWithoutWarnings) {
    EXPECT_EQ(warnings, std::vector<std::string>{});
}

TEST(ShippedMofFiles, EachNamespaceFileCompilesOverTheSchemaItNeeds) {
    struct Case {
        const char* nameSpace;
        std::vector<const char*> files;
    };
    const Case cases[] = {
        {"root/ksv", {"dmtf/CIM_Schema.mof", "root_ksv.mof"}},
        {"root/PG_Internal", {"dmtf/CIM_Qualifiers.mof", "root_PG_Internal.mof"}},
        {"root/PG_InterOp",
         {"dmtf/CIM_Schema.mof", "registration/PG_ProviderRegistration.mof",
          "root_PG_InterOp.mof"}},
    };
    for (const Case& c : cases) {
        MofCompiler compiler(MofCompilerOptions{c.nameSpace, {}});
        for (const char* file : c.files)
            EXPECT_NO_THROW(compiler.compileFile(shippedMof(file))) << file;
        EXPECT_EQ(compiler.repository().enumerateNameSpaces().size(), 1u) << c.nameSpace;
    }
}

// Every property the instance providers write, with the type they write.
TEST_F(ShippedMof, ProviderPropertiesResolveWithTheirTypes) {
    struct Row {
        const char* className;
        const char* property;
        CIMType type;
        bool isArray;
    };
    const CIMType u16 = CIMTYPE_UINT16, u32 = CIMTYPE_UINT32, u64 = CIMTYPE_UINT64,
                  str = CIMTYPE_STRING, boolean = CIMTYPE_BOOLEAN;
    const char* const drive = "KSV_DiskDrive";
    const char* const extent = "KSV_DiskStorageExtent";
    const char* const package = "KSV_DiskDrivePackage";
    const char* const identity = "KSV_DiskSoftwareIdentity";
    const Row rows[] = {
        {drive, "SystemCreationClassName", str, false},
        {drive, "SystemName", str, false},
        {drive, "CreationClassName", str, false},
        {drive, "DeviceID", str, false},
        {drive, "Position", u16, false},
        {drive, "ID", u32, false},
        {drive, "CageType", u16, false},
        {drive, "Name", str, false},
        {drive, "ElementName", str, false},
        {drive, "MaxMediaSize", u64, false},
        {drive, "ChunkSize", u64, false},
        {drive, "DefaultBlockSize", u64, false},
        {drive, "MaxBlockSize", u64, false},
        {drive, "MinBlockSize", u64, false},
        {drive, "OperationalStatus", u16, true},
        {drive, "OtherOperationalStatus", u16, false},
        {drive, "Availability", u16, false},
        {drive, "Capabilities", u16, true},
        {drive, "HealthState", u16, false},
        {drive, "DeviceType", u16, false},
        {drive, "InterconnectType", u16, false},
        {drive, "DiskType", u16, false},
        {drive, "LocationIndicator", u16, false},
        {drive, "FormFactor", u16, false},
        {drive, "Encryption", u16, false},
        {drive, "Temperature", u16, false},
        {drive, "IsLDAllocateable", boolean, false},
        {drive, "StateOnLoopA", u16, false},
        {drive, "StateOnLoopB", u16, false},
        {drive, "AlpaOnLoopA", u16, false},
        {drive, "AlpaOnLoopB", u16, false},
        {drive, "ChunksNormalUsedOK", u32, false},
        {drive, "ChunksNormalUsedFail", u32, false},
        {drive, "ChunksNormalUnusedFree", u32, false},
        {drive, "ChunksNormalUnusedUninit", u32, false},
        {drive, "ChunksNormalUnusedFail", u32, false},
        {drive, "ChunksSpareUsedOK", u32, false},
        {drive, "ChunksSpareUsedFail", u32, false},
        {drive, "ChunksSpareUnusedFree", u32, false},
        {drive, "ChunksSpareUnusedUninit", u32, false},
        {drive, "ChunksSpareUnusedFail", u32, false},
        {drive, "CorrectableReadErrors", u64, false},
        {drive, "UncorrectableReadErrors", u64, false},
        {drive, "CorrectableWriteErrors", u64, false},
        {drive, "UncorrectableWriteErrors", u64, false},
        {drive, "SystemLED", u16, false},
        {drive, "WearLevelRemain", u32, false},
        {drive, "DiskSpeed", u32, false},
        {drive, "RPM", u32, false},
        {drive, "MediaType", u32, false},
        {drive, "IsESI", boolean, false},
        {drive, "ESIState", u16, false},
        {drive, "InitiatorPortA", str, true},
        {drive, "InitiatorPortB", str, true},
        {drive, "PrimaryPortPath", str, false},
        {package, "CreationClassName", str, false},
        {package, "Tag", str, false},
        {package, "Manufacturer", str, false},
        {package, "Model", str, false},
        {package, "SerialNumber", str, false},
        {identity, "InstanceID", str, false},
        {identity, "Manufacturer", str, false},
        {identity, "VersionString", str, false},
        {identity, "FirmwareStatus", u16, false},
        {extent, "SystemCreationClassName", str, false},
        {extent, "SystemName", str, false},
        {extent, "CreationClassName", str, false},
        {extent, "DeviceID", str, false},
        {extent, "Access", u16, false},
        {extent, "BlockSize", u64, false},
        {extent, "NumberOfBlocks", u64, false},
        {extent, "ConsumableBlocks", u64, false},
        {extent, "OperationalStatus", u16, true},
        {extent, "Primordial", boolean, false},
        {extent, "HealthState", u16, false},
        {extent, "ExtentDiscriminator", str, true},
        {extent, "ExtentStatus", u16, true},
        {"KSV_VolumeBasedOnDiskExtent", "StartingAddress", u64, false},
        {"KSV_VolumeBasedOnDiskExtent", "EndingAddress", u64, false},
    };
    for (const Row& row : rows) {
        CIMClass cimClass = classIn(ksv, row.className);
        Uint32 index = cimClass.findProperty(row.property);
        ASSERT_NE(index, PEG_NOT_FOUND) << row.className << "." << row.property;
        CIMConstProperty property = cimClass.getProperty(index);
        EXPECT_EQ(property.getType(), row.type) << row.className << "." << row.property;
        EXPECT_EQ(property.isArray(), row.isArray) << row.className << "." << row.property;
    }
}

TEST_F(ShippedMof, ClassesDeriveFromTheirStandardBasesWithTheKeysPathsUse) {
    struct Row {
        const char* className;
        const char* superClass;
        const char* keys; // sorted, blank-separated
    };
    const char* const deviceKeys = "creationclassname deviceid systemcreationclassname systemname";
    const Row rows[] = {
        {"KSV_DiskDrive", "CIM_DiskDrive", deviceKeys},
        {"KSV_DiskStorageExtent", "CIM_StorageExtent", deviceKeys},
        {"KSV_DiskDrivePackage", "CIM_PhysicalPackage", "creationclassname tag"},
        {"KSV_DiskSoftwareIdentity", "CIM_SoftwareIdentity", "instanceid"},
        {"KSV_StorageSystem", "CIM_ComputerSystem", "creationclassname name"},
        {"KSV_SystemPackage", "CIM_PhysicalPackage", "creationclassname tag"},
        {"KSV_StorageSystemView", "CIM_View", "instanceid"},
        {"KSV_StoragePool", "CIM_StoragePool", "instanceid"},
        {"KSV_StorageVolume", "CIM_StorageVolume", deviceKeys},
        {"KSV_Magazine", "CIM_PhysicalPackage", "creationclassname tag"},
        {"KSV_DiskBay", "KSV_Magazine", "creationclassname tag"},
    };
    for (const Row& row : rows) {
        CIMClass cimClass = classIn(ksv, row.className);
        EXPECT_EQ(utf8(cimClass.getSuperClassName().getString()), row.superClass);
        Array<CIMName> keyNames;
        cimClass.getKeyNames(keyNames);
        std::set<std::string> keys;
        for (Uint32 i = 0; i < keyNames.size(); ++i)
            keys.insert(foldName(keyNames[i]));
        std::string joined;
        for (const std::string& key : keys)
            joined += (joined.empty() ? "" : " ") + key;
        EXPECT_EQ(joined, row.keys) << row.className;
    }
}

TEST_F(ShippedMof, AssociationRolesAreKeyedReferencesToTheKsvClasses) {
    struct Row {
        const char* association;
        const char* superClass;
        const char* role;
        const char* referenceClass;
    };
    const Row rows[] = {
        {"KSV_SystemDisk", "CIM_SystemDevice", "GroupComponent", "KSV_StorageSystem"},
        {"KSV_SystemDisk", "CIM_SystemDevice", "PartComponent", "KSV_DiskDrive"},
        {"KSV_SystemExtent", "CIM_SystemDevice", "GroupComponent", "KSV_StorageSystem"},
        {"KSV_SystemExtent", "CIM_SystemDevice", "PartComponent", "KSV_DiskStorageExtent"},
        {"KSV_DiskPackageRealizes", "CIM_Realizes", "Antecedent", "KSV_DiskDrivePackage"},
        {"KSV_DiskPackageRealizes", "CIM_Realizes", "Dependent", "KSV_DiskDrive"},
        {"KSV_AssociatedPrimordialDisks", "CIM_AssociatedComponentExtent", "GroupComponent",
         "KSV_StoragePool"},
        {"KSV_AssociatedPrimordialDisks", "CIM_AssociatedComponentExtent", "PartComponent",
         "KSV_DiskStorageExtent"},
        {"KSV_VolumeBasedOnDiskExtent", "CIM_BasedOn", "Antecedent", "KSV_DiskStorageExtent"},
        {"KSV_VolumeBasedOnDiskExtent", "CIM_BasedOn", "Dependent", "KSV_StorageVolume"},
        {"KSV_DiskSoftware", "CIM_ElementSoftwareIdentity", "Antecedent",
         "KSV_DiskSoftwareIdentity"},
        {"KSV_DiskSoftware", "CIM_ElementSoftwareIdentity", "Dependent", "KSV_DiskDrive"},
        {"KSV_DiskPresent", "CIM_MediaPresent", "Antecedent", "KSV_DiskDrive"},
        {"KSV_DiskPresent", "CIM_MediaPresent", "Dependent", "KSV_DiskStorageExtent"},
        {"KSV_MagazineContainer", "CIM_Container", "GroupComponent", "KSV_Magazine"},
        {"KSV_MagazineContainer", "CIM_Container", "PartComponent", "KSV_DiskDrivePackage"},
    };
    for (const Row& row : rows) {
        CIMClass association = classIn(ksv, row.association);
        EXPECT_TRUE(association.isAssociation()) << row.association;
        EXPECT_EQ(utf8(association.getSuperClassName().getString()), row.superClass);
        CIMConstProperty role = association.getProperty(association.findProperty(row.role));
        EXPECT_EQ(utf8(role.getReferenceClassName().getString()), row.referenceClass)
            << row.association << "." << row.role;
        EXPECT_EQ(qualifierText(role, "Key"), "TRUE") << row.association << "." << row.role;
    }
}

TEST_F(ShippedMof, OnlyTheLocateIndicatorOfADiskIsWritable) {
    CIMClass drive = classIn(ksv, "KSV_DiskDrive");
    std::vector<std::string> writable;
    for (Uint32 i = 0; i < drive.getPropertyCount(); ++i) {
        CIMConstProperty property = drive.getProperty(i);
        if (property.getClassOrigin() == CIMName("KSV_DiskDrive") &&
            qualifierText(property, "Write") == "TRUE")
            writable.push_back(utf8(property.getName().getString()));
    }
    EXPECT_EQ(writable, std::vector<std::string>{"LocationIndicator"});
}

TEST_F(ShippedMof, InternalCacheMethodsHaveOneOutputEach) {
    struct Row {
        const char* method;
        const char* output;
        CIMType type;
    };
    const Row rows[] = {
        {"GetSystemName", "SystemName", CIMTYPE_STRING},
        {"GetSystemID", "SystemID", CIMTYPE_UINT32},
        {"IsQuadPortSystem", "IsQuadPort", CIMTYPE_UINT8},
        {"GetSystemType", "SystemType", CIMTYPE_SINT32},
        {"GetSystemHostName", "SystemHostName", CIMTYPE_STRING},
        {"GetSystemAddress", "SystemAddress", CIMTYPE_STRING},
    };
    CIMClass cache = classIn("root/PG_Internal", "KSV_InternalCache");
    Array<CIMName> keys;
    cache.getKeyNames(keys);
    ASSERT_EQ(keys.size(), 1u);
    EXPECT_EQ(utf8(keys[0].getString()), "InstanceID");
    EXPECT_EQ(cache.getMethodCount(), 6u);
    for (const Row& row : rows) {
        CIMConstMethod method = cache.getMethod(cache.findMethod(row.method));
        EXPECT_EQ(method.getType(), CIMTYPE_UINT32) << row.method;
        ASSERT_EQ(method.getParameterCount(), 1u) << row.method;
        CIMConstParameter output = method.getParameter(0);
        EXPECT_EQ(utf8(output.getName().getString()), row.output);
        EXPECT_EQ(output.getType(), row.type) << row.method;
        EXPECT_EQ(qualifierText(output, "Out"), "TRUE") << row.method;
        EXPECT_EQ(qualifierText(output, "In"), "FALSE") << row.method;
    }
}

TEST_F(ShippedMof, RegistrationCoversTheTwelveDiskProviders) {
    const std::map<std::string, std::pair<std::string, std::string>> expected = {
        {"KSV_DiskDriveProvider", {"KSV_DiskDrive", "2 "}},
        {"KSV_DiskDrivePackageProvider", {"KSV_DiskDrivePackage", "2 "}},
        {"KSV_DiskSoftwareIdentityProvider", {"KSV_DiskSoftwareIdentity", "2 "}},
        {"KSV_DiskStorageExtentProvider", {"KSV_DiskStorageExtent", "2 "}},
        {"KSV_SystemDiskProvider", {"KSV_SystemDisk", "2 3 "}},
        {"KSV_SystemExtentProvider", {"KSV_SystemExtent", "2 3 "}},
        {"KSV_DiskPackageRealizesProvider", {"KSV_DiskPackageRealizes", "2 3 "}},
        {"KSV_AssociatedPrimordialDisksProvider", {"KSV_AssociatedPrimordialDisks", "2 3 "}},
        {"KSV_VolumeBasedOnDiskExtentProvider", {"KSV_VolumeBasedOnDiskExtent", "2 3 "}},
        {"KSV_DiskSoftwareProvider", {"KSV_DiskSoftware", "2 3 "}},
        {"KSV_DiskPresentProvider", {"KSV_DiskPresent", "2 3 "}},
        {"KSV_MagazineContainerProvider", {"KSV_MagazineContainer", "2 3 "}},
    };
    CIMInstance module = repository.getInstance(
        interop, CIMObjectPath("PG_ProviderModule.Name=\"KSV_DiskDriveProviderModule\""));
    EXPECT_EQ(text(module, "Location"), "KSV_DiskDriveProvider");
    EXPECT_EQ(text(module, "InterfaceType"), "C++Default");
    EXPECT_EQ(text(module, "InterfaceVersion"), "2.6.0");

    std::map<std::string, std::pair<std::string, std::string>> registered;
    Array<CIMInstance> capabilities =
        repository.enumerateInstances(interop, "PG_ProviderCapabilities");
    for (Uint32 i = 0; i < capabilities.size(); ++i) {
        if (text(capabilities[i], "ProviderModuleName") != "KSV_DiskDriveProviderModule")
            continue;
        EXPECT_EQ(text(capabilities[i], "Namespaces"), "root/ksv ");
        registered[text(capabilities[i], "ProviderName")] = {text(capabilities[i], "ClassName"),
                                                             text(capabilities[i], "ProviderType")};
    }
    EXPECT_EQ(registered, expected);
}

// Registered classes must exist where they are registered, and every
// capability must belong to a registered provider of a registered module.
TEST_F(ShippedMof, RegistrationNamesExistingClassesProvidersAndModules) {
    std::set<std::string> modules, providers;
    Array<CIMInstance> moduleInstances =
        repository.enumerateInstances(interop, "PG_ProviderModule");
    for (Uint32 i = 0; i < moduleInstances.size(); ++i)
        modules.insert(text(moduleInstances[i], "Name"));
    Array<CIMInstance> providerInstances = repository.enumerateInstances(interop, "PG_Provider");
    for (Uint32 i = 0; i < providerInstances.size(); ++i) {
        const CIMInstance& provider = providerInstances[i];
        EXPECT_EQ(modules.count(text(provider, "ProviderModuleName")), 1u);
        providers.insert(text(provider, "ProviderModuleName") + "/" + text(provider, "Name"));
    }
    EXPECT_EQ(modules.size(), 3u);
    EXPECT_EQ(providers.size(), 12u + 4u + 1u);
    Array<CIMInstance> capabilities =
        repository.enumerateInstances(interop, "PG_ProviderCapabilities");
    std::set<std::string> served;
    for (Uint32 i = 0; i < capabilities.size(); ++i) {
        const CIMInstance& capability = capabilities[i];
        std::string provider =
            text(capability, "ProviderModuleName") + "/" + text(capability, "ProviderName");
        EXPECT_EQ(providers.count(provider), 1u) << provider;
        served.insert(provider);
        Array<String> namespaces;
        capability.getProperty(capability.findProperty("Namespaces")).getValue().get(namespaces);
        ASSERT_EQ(namespaces.size(), 1u);
        std::string className = text(capability, "ClassName");
        CIMClass cimClass =
            repository.getClass(namespaces[0], className.c_str(), false, true, true);
        bool association = text(capability, "ProviderType").find('3') != std::string::npos;
        EXPECT_EQ(cimClass.isAssociation(), association) << className;
    }
    EXPECT_EQ(served, providers) << "every provider has a capability";
}

} // namespace
} // namespace ksv::mof::test
