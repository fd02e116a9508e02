// What every association provider does before it looks for results: the user gate, the
// validation of role, result role and result class (each association with its own lists and
// deliberate differences), the getInstance key count, and the log lines around each request.
#include "AssociationTestSupport.h"

#include <functional>

namespace ksv::test {
namespace {

enum Operation { ASSOCIATORS, ASSOCIATOR_NAMES, REFERENCES, REFERENCE_NAMES };

const char* const PROVIDERS[] = {"KSV_SystemDiskProvider",
                                 "KSV_SystemExtentProvider",
                                 "KSV_DiskPackageRealizesProvider",
                                 "KSV_DiskSoftwareProvider",
                                 "KSV_DiskPresentProvider",
                                 "KSV_MagazineContainerProvider",
                                 "KSV_AssociatedPrimordialDisksProvider",
                                 "KSV_VolumeBasedOnDiskExtentProvider"};

class AssociationShapeTest : public ::testing::Test {
protected:
    // An object of the model by the name of its class's role; "logical" is a path of a generic
    // class that no association has as an end.
    CIMObjectPath object(const std::string& kind) const {
        if (kind == "system")
            return paths.system();
        if (kind == "disk")
            return paths.disk(D0);
        if (kind == "extent")
            return paths.extent(D0);
        if (kind == "package")
            return paths.package(D0);
        if (kind == "identity")
            return paths.identity("4.0");
        if (kind == "magazine")
            return paths.magazine("KSV_Magazine", "cage0:0");
        if (kind == "pool")
            return paths.pool("QUANOR:primordial");
        if (kind == "volume")
            return paths.volume(VOL0);
        return ModelPaths::path("CIM_LogicalDevice", {{"DeviceID", D0}, {"Tag", D0}});
    }

    // The handler's events: empty when the request was refused for its parameters.
    std::vector<std::string> run(RunningProvider& provider, Operation operation,
                                 const CIMObjectPath& objectName, const Query& query) {
        switch (operation) {
        case ASSOCIATORS:
            return provider.associators(objectName, query).events();
        case ASSOCIATOR_NAMES:
            return provider.associatorNames(objectName, query).events();
        case REFERENCES:
            return provider.references(objectName, query).events();
        default:
            return provider.referenceNames(objectName, query).events();
        }
    }

    ProviderHarness harness{TEST_MODEL};
    ModelPaths paths{harness};
};

struct Validation {
    const char* provider;
    Operation operation;
    const char* object;
    const char* role;
    const char* resultRole;
    const char* resultClass;
    bool served;
};

const Validation VALIDATIONS[] = {
    // The system's disks: a result class that names the object's own end is refused.
    {"KSV_SystemDiskProvider", ASSOCIATORS, "system", "", "", "CIM_ComputerSystem", false},
    {"KSV_SystemDiskProvider", ASSOCIATORS, "system", "", "", "CIM_DiskDrive", true},
    {"KSV_SystemDiskProvider", ASSOCIATORS, "disk", "", "", "CIM_System", true},
    {"KSV_SystemDiskProvider", ASSOCIATORS, "disk", "", "", "CIM_DiskDrive", false},
    {"KSV_SystemDiskProvider", ASSOCIATORS, "disk", "", "", "KSV_DiskDrive", false},
    {"KSV_SystemDiskProvider", ASSOCIATORS, "system", "", "", "CIM_StorageExtent", false},
    {"KSV_SystemDiskProvider", ASSOCIATORS, "logical", "", "", "CIM_LogicalDevice", false},
    {"KSV_SystemDiskProvider", ASSOCIATOR_NAMES, "system", "Antecedent", "", nullptr, false},
    {"KSV_SystemDiskProvider", ASSOCIATOR_NAMES, "system", "gROUPcOMPONENT", "", nullptr, true},
    {"KSV_SystemDiskProvider", ASSOCIATOR_NAMES, "disk", "GroupComponent", "", nullptr, false},
    {"KSV_SystemDiskProvider", ASSOCIATOR_NAMES, "system", "", "PartComponent", nullptr, true},
    {"KSV_SystemDiskProvider", ASSOCIATOR_NAMES, "system", "", "GroupComponent", nullptr, false},
    {"KSV_SystemDiskProvider", REFERENCES, "disk", "", "", "CIM_SystemDevice", true},
    {"KSV_SystemDiskProvider", REFERENCE_NAMES, "disk", "", "", "KSV_SystemDisk", true},
    {"KSV_SystemDiskProvider", REFERENCES, "disk", "", "", "CIM_Component", false},
    // The role is checked before a missing result class lets references through.
    {"KSV_SystemDiskProvider", REFERENCES, "system", "PartComponent", "", nullptr, false},
    {"KSV_SystemDiskProvider", REFERENCE_NAMES, "logical", "Dependent", "", nullptr, false},
    // The system's extents accept only result classes that name the far end.
    {"KSV_SystemExtentProvider", ASSOCIATORS, "system", "", "", "CIM_StorageExtent", true},
    {"KSV_SystemExtentProvider", ASSOCIATORS, "system", "", "", "CIM_LogicalDevice", true},
    {"KSV_SystemExtentProvider", ASSOCIATORS, "system", "", "", "KSV_StorageSystem", false},
    {"KSV_SystemExtentProvider", ASSOCIATORS, "extent", "", "", "CIM_System", false},
    {"KSV_SystemExtentProvider", ASSOCIATORS, "extent", "", "", "CIM_ComputerSystem", true},
    {"KSV_SystemExtentProvider", ASSOCIATORS, "extent", "", "", "CIM_LogicalDevice", false},
    {"KSV_SystemExtentProvider", ASSOCIATORS, "logical", "", "", "CIM_LogicalDevice", true},
    {"KSV_SystemExtentProvider", ASSOCIATORS, "logical", "", "", "CIM_System", false},
    {"KSV_SystemExtentProvider", REFERENCES, "extent", "", "", "KSV_SystemExtent", true},
    {"KSV_SystemExtentProvider", REFERENCES, "extent", "", "", "KSV_SystemDisk", false},
    // Disk and package: no test by end.
    {"KSV_DiskPackageRealizesProvider", ASSOCIATORS, "disk", "", "", "CIM_DiskDrive", true},
    {"KSV_DiskPackageRealizesProvider", ASSOCIATORS, "package", "", "", "KSV_DiskDrivePackage",
     true},
    {"KSV_DiskPackageRealizesProvider", ASSOCIATORS, "disk", "", "", "CIM_StorageVolume", false},
    {"KSV_DiskPackageRealizesProvider", ASSOCIATOR_NAMES, "disk", "Antecedent", "", nullptr, false},
    {"KSV_DiskPackageRealizesProvider", ASSOCIATOR_NAMES, "disk", "dependent", "", nullptr, true},
    {"KSV_DiskPackageRealizesProvider", ASSOCIATOR_NAMES, "disk", "", "Dependent", nullptr, false},
    {"KSV_DiskPackageRealizesProvider", REFERENCES, "package", "", "", "CIM_Realizes", true},
    {"KSV_DiskPackageRealizesProvider", REFERENCES, "package", "", "", "CIM_Dependency", false},
    // Disk and firmware.
    {"KSV_DiskSoftwareProvider", ASSOCIATORS, "identity", "", "", "CIM_SoftwareIdentity", true},
    {"KSV_DiskSoftwareProvider", ASSOCIATORS, "disk", "", "", "CIM_StorageExtent", false},
    {"KSV_DiskSoftwareProvider", ASSOCIATOR_NAMES, "identity", "Antecedent", "Dependent", nullptr,
     true},
    {"KSV_DiskSoftwareProvider", REFERENCES, "disk", "", "", "CIM_ElementSoftwareIdentity", true},
    // Disk and extent: alone of the disk's own objects, the own end is refused.
    {"KSV_DiskPresentProvider", ASSOCIATORS, "disk", "", "", "CIM_StorageExtent", true},
    {"KSV_DiskPresentProvider", ASSOCIATORS, "disk", "", "", "CIM_DiskDrive", false},
    {"KSV_DiskPresentProvider", ASSOCIATORS, "extent", "", "", "CIM_StorageExtent", false},
    {"KSV_DiskPresentProvider", ASSOCIATORS, "extent", "", "", "KSV_DiskStorageExtent", false},
    {"KSV_DiskPresentProvider", ASSOCIATORS, "extent", "", "", "KSV_DiskDrive", true},
    {"KSV_DiskPresentProvider", REFERENCES, "extent", "", "", "CIM_MediaPresent", true},
    // Magazine and package.
    {"KSV_MagazineContainerProvider", ASSOCIATORS, "package", "", "", "KSV_DiskDrivePackage", true},
    {"KSV_MagazineContainerProvider", ASSOCIATORS, "magazine", "", "", "CIM_PhysicalPackage", true},
    {"KSV_MagazineContainerProvider", ASSOCIATOR_NAMES, "package", "GroupComponent", "", nullptr,
     false},
    {"KSV_MagazineContainerProvider", REFERENCES, "magazine", "", "", "CIM_Container", true},
    // The primordial pool: neither end is of the other's generic class.
    {"KSV_AssociatedPrimordialDisksProvider", ASSOCIATORS, "pool", "", "", "CIM_StoragePool",
     false},
    {"KSV_AssociatedPrimordialDisksProvider", ASSOCIATORS, "extent", "", "", "CIM_StoragePool",
     true},
    {"KSV_AssociatedPrimordialDisksProvider", ASSOCIATORS, "pool", "", "", "CIM_StorageExtent",
     true},
    {"KSV_AssociatedPrimordialDisksProvider", ASSOCIATORS, "extent", "", "", "CIM_StorageExtent",
     false},
    {"KSV_AssociatedPrimordialDisksProvider", ASSOCIATOR_NAMES, "pool", "PartComponent", "",
     nullptr, false},
    {"KSV_AssociatedPrimordialDisksProvider", REFERENCES, "pool", "", "",
     "CIM_AssociatedComponentExtent", true},
    // Volumes are storage extents too: only "CIM_StorageVolume" cannot name a volume's far end.
    {"KSV_VolumeBasedOnDiskExtentProvider", ASSOCIATORS, "volume", "", "", "CIM_StorageExtent",
     true},
    {"KSV_VolumeBasedOnDiskExtentProvider", ASSOCIATORS, "volume", "", "", "CIM_StorageVolume",
     false},
    {"KSV_VolumeBasedOnDiskExtentProvider", ASSOCIATORS, "extent", "", "", "CIM_StorageVolume",
     true},
    {"KSV_VolumeBasedOnDiskExtentProvider", ASSOCIATORS, "extent", "", "", "KSV_DiskStorageExtent",
     false},
    {"KSV_VolumeBasedOnDiskExtentProvider", ASSOCIATOR_NAMES, "extent", "", "Antecedent", nullptr,
     false},
    {"KSV_VolumeBasedOnDiskExtentProvider", REFERENCE_NAMES, "volume", "", "", "CIM_BasedOn",
     true}};

TEST_F(AssociationShapeTest, EachAssociationServesOrRefusesByItsOwnRules) {
    for (const Validation& row : VALIDATIONS) {
        SCOPED_TRACE(std::string(row.provider) + " " + row.object + " role=" + row.role +
                     " resultRole=" + row.resultRole +
                     " resultClass=" + (row.resultClass ? row.resultClass : "(null)"));
        RunningProvider provider(harness, row.provider);
        harness.clearLog();
        Query query;
        query.resultClass = row.resultClass;
        query.role = row.role;
        query.resultRole = row.resultRole;
        const std::vector<std::string> events =
            run(provider, row.operation, object(row.object), query);
        if (row.served) {
            EXPECT_EQ(events.empty() ? "" : events.front(), "processing");
            EXPECT_EQ(events.empty() ? "" : events.back(), "complete");
            EXPECT_TRUE(harness.logTexts(2).empty());
        } else {
            // Refused: no response at all, one level-2 line.
            EXPECT_TRUE(events.empty());
            EXPECT_EQ(harness.logTexts(2).size(), 1u);
        }
    }
}

TEST_F(AssociationShapeTest, AnyAssociationClassIsServed) {
    RunningProvider provider(harness, "KSV_SystemDiskProvider");
    EXPECT_EQ(provider.associatorNames(paths.disk(D0), {}, "CIM_Unrelated").delivered.size(), 1u);
}

struct RejectionLine {
    const char* provider;
    Operation operation;
    const char* role;
    const char* resultClass;
    const char* line;
};

TEST_F(AssociationShapeTest, RefusalsAreLoggedInEachProvidersOwnWords) {
    const RejectionLine lines[] = {
        {"KSV_SystemDiskProvider", ASSOCIATORS, "", "CIM_ComputerSystem",
         "KSV_SystemDiskProvider::associators: invalid params: resultClass = CIM_ComputerSystem "
         "\n"},
        {"KSV_SystemDiskProvider", ASSOCIATOR_NAMES, "", "CIM_ComputerSystem",
         "KSV_SystemDiskProvider::associatorNames: invalid params: associationClass=, "
         "resultClass=CIM_ComputerSystem\n"},
        {"KSV_DiskPackageRealizesProvider", ASSOCIATOR_NAMES, "", "CIM_StorageVolume",
         "KSV_DiskPackageRealizesProvider::associatorNames: invalid params: associationClass = "
         ", resultClass = CIM_StorageVolume\n"},
        {"KSV_SystemExtentProvider", REFERENCES, "Antecedent", nullptr,
         "KSV_SystemExtentProvider::references: invalid params: role = Antecedent, resultClass "
         "=  \n"},
        {"KSV_VolumeBasedOnDiskExtentProvider", REFERENCE_NAMES, "GroupComponent", nullptr,
         "KSV_VolumeBasedOnDiskExtentProvider::referenceNames: invalid params: role = "
         "GroupComponent, resultClass =  \n"}};
    for (const RejectionLine& expected : lines) {
        SCOPED_TRACE(expected.line);
        RunningProvider provider(harness, expected.provider);
        harness.clearLog();
        Query query;
        query.role = expected.role;
        query.resultClass = expected.resultClass;
        run(provider, expected.operation, paths.system(), query);
        EXPECT_EQ(harness.logTexts(2), std::vector<std::string>{expected.line});
    }
}

// Whether the lines occur in the log in this order, other lines between them.
bool logged(const std::vector<std::string>& log, const std::vector<std::string>& lines) {
    auto next = log.begin();
    for (const std::string& line : lines) {
        next = std::find(next, log.end(), line);
        if (next == log.end())
            return false;
        ++next;
    }
    return true;
}

TEST_F(AssociationShapeTest, RequestsAreTracedInEachProvidersOwnWords) {
    const std::string disk = text(paths.disk(D0).toString());
    const std::string package = text(paths.package(D0).toString());
    const std::string extent = text(paths.extent(D0).toString());
    struct Trace {
        const char* provider;
        std::function<void(RunningProvider&)> request;
        std::vector<std::string> lines;
    };
    const Trace traces[] = {
        {"KSV_SystemDiskProvider",
         [&](RunningProvider& p) { p.associators(paths.disk(D0)); },
         {"-->KSV_SystemDiskProvider::associators\n",
          "KSV_SystemDiskProvider::associators: objectName = " + disk +
              "; associationClass = ; resultClass =  \n",
          "-->KSV_SystemDiskProvider::_getRelatedInstances: className = KSV_DiskDrive \n",
          "<--KSV_SystemDiskProvider::_getRelatedInstances\n",
          "<--KSV_SystemDiskProvider::associators\n"}},
        {"KSV_SystemDiskProvider",
         [&](RunningProvider& p) { p.enumerateInstanceNames(); },
         {"--> KSV_SystemDiskProvider::enumerateInstanceNames() \n",
          "-->KSV_SystemDiskProvider::_getInstances\n",
          "-->KSV_SystemDiskProvider::_getInstances\n",
          "<--KSV_SystemDiskProvider::_getInstances\n",
          "<--KSV_SystemDiskProvider::_getInstances\n",
          "<-- KSV_SystemDiskProvider::enumerateInstanceNames() \n"}},
        {"KSV_DiskPackageRealizesProvider",
         [&](RunningProvider& p) { p.associatorNames(paths.package(D0)); },
         {"-->KSV_DiskPackageRealizesProvider::associatorNames\n",
          "KSV_DiskPackageRealizesProvider::associatorNames: objectName = " + package +
              "; associationClass = ; resultClass =  \n",
          "-->KSV_DiskPackageRealizesProvider::_getRelatedInstanceName: className = "
          "KSV_DiskDrivePackage \n",
          "-->KSV_DiskPackageRealizesProvider::_getRelatedInstance: className = "
          "KSV_DiskDrivePackage \n",
          "<--KSV_DiskPackageRealizesProvider::_getRelatedInstance\n",
          "<--KSV_DiskPackageRealizesProvider::_getRelatedInstanceName\n",
          "<--KSV_DiskPackageRealizesProvider::associatorNames\n"}},
        {"KSV_DiskPackageRealizesProvider",
         [&](RunningProvider& p) { p.enumerateInstances(); },
         {"-->KSV_DiskPackageRealizesProvider::enumerateInstances()\n",
          "<-- KSV_DiskPackageRealizesProvider::enumerateInstances() \n"}},
        {"KSV_DiskPackageRealizesProvider",
         [&](RunningProvider& p) { p.enumerateInstanceNames(); },
         {"--> KSV_DiskPackageRealizesProvider::enumerateInstanceNames() \n",
          "-->KSV_DiskPackageRealizesProvider::_getInstanceNames\n",
          "<--KSV_DiskPackageRealizesProvider::_getInstanceNames\n",
          "<-- KSV_DiskPackageRealizesProvider::enumerateInstanceNames() \n"}},
        {"KSV_DiskSoftwareProvider",
         [&](RunningProvider& p) { p.associatorNames(paths.disk(D0)); },
         {"-->KSV_DiskSoftwareProvider::associatorNames\n",
          "KSV_FCALCardInDriveCageProvider::associatorNames: objectName = " + disk +
              "; associationClass = ; resultClass =  \n",
          "<--KSV_DiskSoftwareProvider::associatorNames\n"}},
        {"KSV_DiskSoftwareProvider",
         [&](RunningProvider& p) { p.referenceNames(paths.disk(D0)); },
         {"-->KSV_DiskSoftwareProvider::referenceNames\n",
          "KSV_DiskSoftwareProvider::references: objectName = " + disk + "; resultClass = ",
          "<--KSV_DiskSoftwareProvider::referenceNames\n"}},
        {"KSV_MagazineContainerProvider",
         [&](RunningProvider& p) { p.associators(paths.package(D0)); },
         {"KSV_MagazineContainerProvider::associators: objectName = " + package +
          "; associationClass=; resultClass= \n"}},
        {"KSV_VolumeBasedOnDiskExtentProvider",
         [&](RunningProvider& p) { p.associatorNames(paths.extent(D0)); },
         {"KSV_VolumeBasedOnDiskExtentProvider::associatorNames: objectName = " + extent +
              "; associationClass = ; resultClass= \n",
          "-->KSV_VolumeBasedOnDiskExtentProvider::_getRelatedInstanceNames: className = "
          "KSV_DiskStorageExtent \n",
          "<--KSV_VolumeBasedOnDiskExtentProvider::_getRelatedInstanceNames\n"}},
        {"KSV_AssociatedPrimordialDisksProvider",
         [&](RunningProvider& p) { p.references(paths.extent(D0)); },
         {"-->KSV_AssociatedPrimordialDisksProvider::references\n",
          "KSV_AssociatedPrimordialDisksProvider::references: objectName = " + extent +
              "; resultClass =  \n",
          "<--KSV_AssociatedPrimordialDisksProvider::references\n"}}};
    for (const Trace& trace : traces) {
        SCOPED_TRACE(trace.lines.front());
        RunningProvider provider(harness, trace.provider);
        harness.clearLog();
        trace.request(provider);
        EXPECT_TRUE(logged(harness.logTexts(4), trace.lines));
    }
}

TEST_F(AssociationShapeTest, GetInstanceIsTracedAndAnsweredWithTwoNewlines) {
    RunningProvider provider(harness, "KSV_SystemDiskProvider");
    const CIMObjectPath association = provider.enumerateInstanceNames().delivered.front();
    harness.clearLog();
    provider.getInstance(association);
    EXPECT_TRUE(logged(harness.logTexts(4), {"-->KSV_SystemDiskProvider::getInstance() \n",
                                             "<-- KSV_SystemDiskProvider::getInstance()\n\n"}));
}

TEST_F(AssociationShapeTest, RefusedUserIsDeniedBeforeTheArrayIsRead) {
    Query auditor;
    auditor.user = "auditor";
    for (const char* name : PROVIDERS) {
        SCOPED_TRACE(name);
        RunningProvider provider(harness, name);
        const std::vector<std::function<void()>> requests = {
            [&] { provider.associators(paths.disk(D0), auditor); },
            [&] { provider.associatorNames(paths.disk(D0), auditor); },
            [&] { provider.references(paths.disk(D0), auditor); },
            [&] { provider.referenceNames(paths.disk(D0), auditor); },
            [&] { provider.getInstance(paths.disk(D0), auditor); },
            [&] { provider.enumerateInstances(auditor); },
            [&] { provider.enumerateInstanceNames(auditor); }};
        for (const auto& request : requests) {
            harness.clearArrayCalls();
            harness.server().clearCalls();
            EXPECT_EQ(failureOf(request),
                      std::make_pair(CIM_ERR_ACCESS_DENIED,
                                     std::string("Insufficient privilege for the user")));
            EXPECT_EQ(harness.arrayCalls(), std::vector<std::string>{"api_ksvOpenForCimserver"});
            EXPECT_TRUE(harness.server().calls().empty());
        }
    }
}

TEST_F(AssociationShapeTest, GetInstanceWantsExactlyTwoKeys) {
    Array<CIMKeyBinding> keys;
    for (const char* role : {"Antecedent", "Dependent", "PartComponent"})
        keys.append(CIMKeyBinding(role, paths.disk(D0).toString(), CIMKeyBinding::REFERENCE));
    const CIMObjectPath threeKeys(String(), CIMNamespaceName("root/ksv"), "KSV_SystemDisk", keys);
    for (const std::string name : PROVIDERS) {
        SCOPED_TRACE(name);
        RunningProvider provider(harness, name);
        harness.clearLog();
        EXPECT_EQ(failureOf([&] { provider.getInstance(threeKeys); }),
                  std::make_pair(CIM_ERR_INVALID_PARAMETER, name + " Expect two keys."));
        // The firmware association names its key count with another provider's name.
        const std::string logName =
            name == "KSV_DiskSoftwareProvider" ? "KSV_FCALCardInDriveCageProvider" : name;
        EXPECT_EQ(
            harness.logTexts(2),
            std::vector<std::string>{logName + "::getInstance(): Invalid number of keys (3)\n"});
    }
}

} // namespace
} // namespace ksv::test
