// What every association provider does before it looks for results: the user gate, the
// validation of role, result role and result class (each association with its own lists and
// deliberate differences), the getInstance key count, and the log lines around each request.
#include "AssociationTestSupport.h"

namespace ksv::test {
namespace {

enum Operation { ASSOCIATORS, ASSOCIATOR_NAMES, REFERENCES, REFERENCE_NAMES };

const char SYSTEM_DISK[] = "KSV_SystemDiskProvider";
const char SYSTEM_EXTENT[] = "KSV_SystemExtentProvider";
const char REALIZES[] = "KSV_DiskPackageRealizesProvider";
const char SOFTWARE[] = "KSV_DiskSoftwareProvider";
const char PRESENT[] = "KSV_DiskPresentProvider";
const char CONTAINER[] = "KSV_MagazineContainerProvider";
const char PRIMORDIAL[] = "KSV_AssociatedPrimordialDisksProvider";
const char VOLUME[] = "KSV_VolumeBasedOnDiskExtentProvider";
const char* const PROVIDERS[] = {SYSTEM_DISK, SYSTEM_EXTENT, REALIZES,   SOFTWARE,
                                 PRESENT,     CONTAINER,     PRIMORDIAL, VOLUME};

class AssociationShapeTest : public ::testing::Test {
protected:
    // An object of the model by the name of its class's role; "logical" is a path of a generic
    // class that no association has as an end.
    CIMObjectPath object(const std::string& kind) const {
        const std::map<std::string, CIMObjectPath> objects = {
            {"system", paths.system()},
            {"disk", paths.disk(D0)},
            {"extent", paths.extent(D0)},
            {"package", paths.package(D0)},
            {"identity", paths.identity("4.0")},
            {"magazine", paths.magazine("cage0:0")},
            {"pool", paths.pool("QUANOR:primordial")},
            {"volume", paths.volume(VOL0)}};
        const auto found = objects.find(kind);
        return found != objects.end()
                   ? found->second
                   : pathOf("CIM_LogicalDevice", {{"DeviceID", D0}, {"Tag", D0}});
    }

    // The handler's events: empty when the request was refused for its parameters. The
    // association class is only traced: any class is served.
    std::vector<std::string> run(RunningProvider& provider, Operation operation,
                                 const CIMObjectPath& objectName, const Query& query) {
        switch (operation) {
        case ASSOCIATORS:
            return provider.associators(objectName, query, "CIM_Unrelated").events();
        case ASSOCIATOR_NAMES:
            return provider.associatorNames(objectName, query, "CIM_Unrelated").events();
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
    {SYSTEM_DISK, ASSOCIATORS, "system", "", "", "CIM_ComputerSystem", false},
    {SYSTEM_DISK, ASSOCIATORS, "system", "", "", "CIM_DiskDrive", true},
    {SYSTEM_DISK, ASSOCIATORS, "disk", "", "", "CIM_System", true},
    {SYSTEM_DISK, ASSOCIATORS, "disk", "", "", "CIM_DiskDrive", false},
    {SYSTEM_DISK, ASSOCIATORS, "logical", "", "", "CIM_LogicalDevice", false},
    {SYSTEM_DISK, ASSOCIATOR_NAMES, "system", "Antecedent", "", nullptr, false},
    {SYSTEM_DISK, ASSOCIATOR_NAMES, "system", "gROUPcOMPONENT", "", nullptr, true},
    {SYSTEM_DISK, ASSOCIATOR_NAMES, "disk", "GroupComponent", "", nullptr, false},
    {SYSTEM_DISK, ASSOCIATOR_NAMES, "system", "", "PartComponent", nullptr, true},
    {SYSTEM_DISK, ASSOCIATOR_NAMES, "system", "", "GroupComponent", nullptr, false},
    {SYSTEM_DISK, REFERENCES, "disk", "", "", "CIM_SystemDevice", true},
    {SYSTEM_DISK, REFERENCES, "disk", "", "", "CIM_Component", false},
    // The role is checked before a missing result class lets references through.
    {SYSTEM_DISK, REFERENCES, "system", "PartComponent", "", nullptr, false},
    {SYSTEM_DISK, REFERENCE_NAMES, "logical", "Dependent", "", nullptr, false},
    // The system's extents accept only result classes that name the far end.
    {SYSTEM_EXTENT, ASSOCIATORS, "system", "", "", "CIM_StorageExtent", true},
    {SYSTEM_EXTENT, ASSOCIATORS, "system", "", "", "KSV_StorageSystem", false},
    {SYSTEM_EXTENT, ASSOCIATORS, "extent", "", "", "CIM_System", false},
    {SYSTEM_EXTENT, ASSOCIATORS, "extent", "", "", "CIM_ComputerSystem", true},
    {SYSTEM_EXTENT, ASSOCIATORS, "logical", "", "", "CIM_LogicalDevice", true},
    {SYSTEM_EXTENT, ASSOCIATORS, "logical", "", "", "CIM_System", false},
    {SYSTEM_EXTENT, REFERENCES, "extent", "", "", "KSV_SystemExtent", true},
    // Disk and package: no test by end.
    {REALIZES, ASSOCIATORS, "disk", "", "", "CIM_DiskDrive", true},
    {REALIZES, ASSOCIATORS, "disk", "", "", "CIM_StorageVolume", false},
    {REALIZES, ASSOCIATOR_NAMES, "disk", "Antecedent", "", nullptr, false},
    {REALIZES, ASSOCIATOR_NAMES, "disk", "dependent", "", nullptr, true},
    {REALIZES, ASSOCIATOR_NAMES, "disk", "", "Dependent", nullptr, false},
    {REALIZES, REFERENCES, "package", "", "", "CIM_Realizes", true},
    // Disk and firmware.
    {SOFTWARE, ASSOCIATORS, "identity", "", "", "CIM_SoftwareIdentity", true},
    {SOFTWARE, ASSOCIATORS, "disk", "", "", "CIM_StorageExtent", false},
    {SOFTWARE, ASSOCIATOR_NAMES, "identity", "Antecedent", "Dependent", nullptr, true},
    {SOFTWARE, REFERENCES, "disk", "", "", "CIM_ElementSoftwareIdentity", true},
    // Disk and extent: alone of the disk's own objects, the own end is refused.
    {PRESENT, ASSOCIATORS, "disk", "", "", "CIM_StorageExtent", true},
    {PRESENT, ASSOCIATORS, "disk", "", "", "CIM_DiskDrive", false},
    {PRESENT, ASSOCIATORS, "extent", "", "", "CIM_StorageExtent", false},
    {PRESENT, ASSOCIATORS, "extent", "", "", "KSV_DiskDrive", true},
    {PRESENT, REFERENCES, "extent", "", "", "CIM_MediaPresent", true},
    // Magazine and package.
    {CONTAINER, ASSOCIATORS, "package", "", "", "KSV_DiskDrivePackage", true},
    {CONTAINER, ASSOCIATOR_NAMES, "package", "GroupComponent", "", nullptr, false},
    {CONTAINER, REFERENCES, "magazine", "", "", "CIM_Container", true},
    // The primordial pool: neither end is of the other's generic class.
    {PRIMORDIAL, ASSOCIATORS, "pool", "", "", "CIM_StoragePool", false},
    {PRIMORDIAL, ASSOCIATORS, "extent", "", "", "CIM_StoragePool", true},
    {PRIMORDIAL, ASSOCIATORS, "pool", "", "", "CIM_StorageExtent", true},
    {PRIMORDIAL, ASSOCIATOR_NAMES, "pool", "PartComponent", "", nullptr, false},
    {PRIMORDIAL, REFERENCES, "pool", "", "", "CIM_AssociatedComponentExtent", true},
    // Volumes are storage extents too: only "CIM_StorageVolume" cannot name a volume's far end.
    {VOLUME, ASSOCIATORS, "volume", "", "", "CIM_StorageExtent", true},
    {VOLUME, ASSOCIATORS, "volume", "", "", "CIM_StorageVolume", false},
    {VOLUME, ASSOCIATORS, "extent", "", "", "CIM_StorageVolume", true},
    {VOLUME, ASSOCIATOR_NAMES, "extent", "", "Antecedent", nullptr, false},
    {VOLUME, REFERENCE_NAMES, "volume", "", "", "CIM_BasedOn", true}};

TEST_F(AssociationShapeTest, EachAssociationServesOrRefusesByItsOwnRules) {
    for (const Validation& row : VALIDATIONS) {
        SCOPED_TRACE(std::string(row.provider) + " " + row.object + " role=" + row.role +
                     " resultRole=" + row.resultRole +
                     " resultClass=" + (row.resultClass ? row.resultClass : "(null)"));
        DiskProvider provider(harness, row.provider);
        ksvsim::clearCapturedLog();
        const std::vector<std::string> events =
            run(provider, row.operation, object(row.object),
                Query{row.resultClass, row.role, row.resultRole, CIMPropertyList()});
        if (row.served) {
            EXPECT_EQ(events.empty() ? "" : events.front(), "processing");
            EXPECT_EQ(events.empty() ? "" : events.back(), "complete");
            EXPECT_TRUE(logTexts(2).empty());
        } else {
            // Refused: no response at all, one level-2 line.
            EXPECT_TRUE(events.empty());
            EXPECT_EQ(logTexts(2).size(), 1u);
        }
    }
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
        {SYSTEM_DISK, ASSOCIATORS, "", "CIM_ComputerSystem",
         "KSV_SystemDiskProvider::associators: invalid params: resultClass = CIM_ComputerSystem "
         "\n"},
        {SYSTEM_DISK, ASSOCIATOR_NAMES, "", "CIM_ComputerSystem",
         "KSV_SystemDiskProvider::associatorNames: invalid params: associationClass=CIM_Unrelated, "
         "resultClass=CIM_ComputerSystem\n"},
        {REALIZES, ASSOCIATOR_NAMES, "", "CIM_StorageVolume",
         "KSV_DiskPackageRealizesProvider::associatorNames: invalid params: associationClass = "
         "CIM_Unrelated, resultClass = CIM_StorageVolume\n"},
        {SYSTEM_EXTENT, REFERENCES, "Antecedent", nullptr,
         "KSV_SystemExtentProvider::references: invalid params: role = Antecedent, resultClass "
         "=  \n"},
        {VOLUME, REFERENCE_NAMES, "GroupComponent", nullptr,
         "KSV_VolumeBasedOnDiskExtentProvider::referenceNames: invalid params: role = "
         "GroupComponent, resultClass =  \n"}};
    for (const RejectionLine& expected : lines) {
        SCOPED_TRACE(expected.line);
        DiskProvider provider(harness, expected.provider);
        ksvsim::clearCapturedLog();
        run(provider, expected.operation, paths.system(),
            Query{expected.resultClass, expected.role, "", CIMPropertyList()});
        EXPECT_EQ(logTexts(2), std::vector<std::string>{expected.line});
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
        {SYSTEM_DISK,
         [&](RunningProvider& p) { p.associators(paths.disk(D0)); },
         {"-->KSV_SystemDiskProvider::associators\n",
          "KSV_SystemDiskProvider::associators: objectName = " + disk +
              "; associationClass = ; resultClass =  \n",
          "-->KSV_SystemDiskProvider::_getRelatedInstances: className = KSV_DiskDrive \n",
          "<--KSV_SystemDiskProvider::_getRelatedInstances\n",
          "<--KSV_SystemDiskProvider::associators\n"}},
        {SYSTEM_DISK,
         [&](RunningProvider& p) { p.enumerateInstanceNames(); },
         {"--> KSV_SystemDiskProvider::enumerateInstanceNames() \n",
          "-->KSV_SystemDiskProvider::_getInstances\n",
          "-->KSV_SystemDiskProvider::_getInstances\n",
          "<--KSV_SystemDiskProvider::_getInstances\n",
          "<--KSV_SystemDiskProvider::_getInstances\n",
          "<-- KSV_SystemDiskProvider::enumerateInstanceNames() \n"}},
        {REALIZES,
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
        {REALIZES,
         [&](RunningProvider& p) { p.enumerateInstances(); },
         {"-->KSV_DiskPackageRealizesProvider::enumerateInstances()\n",
          "<-- KSV_DiskPackageRealizesProvider::enumerateInstances() \n"}},
        {REALIZES,
         [&](RunningProvider& p) { p.enumerateInstanceNames(); },
         {"--> KSV_DiskPackageRealizesProvider::enumerateInstanceNames() \n",
          "-->KSV_DiskPackageRealizesProvider::_getInstanceNames\n",
          "<--KSV_DiskPackageRealizesProvider::_getInstanceNames\n",
          "<-- KSV_DiskPackageRealizesProvider::enumerateInstanceNames() \n"}},
        {SOFTWARE,
         [&](RunningProvider& p) { p.associatorNames(paths.disk(D0)); },
         {"-->KSV_DiskSoftwareProvider::associatorNames\n",
          "KSV_FCALCardInDriveCageProvider::associatorNames: objectName = " + disk +
              "; associationClass = ; resultClass =  \n",
          "<--KSV_DiskSoftwareProvider::associatorNames\n"}},
        {SOFTWARE,
         [&](RunningProvider& p) { p.referenceNames(paths.disk(D0)); },
         {"-->KSV_DiskSoftwareProvider::referenceNames\n",
          "KSV_DiskSoftwareProvider::references: objectName = " + disk + "; resultClass = ",
          "<--KSV_DiskSoftwareProvider::referenceNames\n"}},
        {CONTAINER,
         [&](RunningProvider& p) { p.associators(paths.package(D0)); },
         {"KSV_MagazineContainerProvider::associators: objectName = " + package +
          "; associationClass=; resultClass= \n"}},
        {VOLUME,
         [&](RunningProvider& p) { p.associatorNames(paths.extent(D0)); },
         {"KSV_VolumeBasedOnDiskExtentProvider::associatorNames: objectName = " + extent +
              "; associationClass = ; resultClass= \n",
          "-->KSV_VolumeBasedOnDiskExtentProvider::_getRelatedInstanceNames: className = "
          "KSV_DiskStorageExtent \n",
          "<--KSV_VolumeBasedOnDiskExtentProvider::_getRelatedInstanceNames\n"}},
        {SYSTEM_DISK,
         [&](RunningProvider& p) {
             p.getInstance(paths.association("KSV_SystemDisk", "GroupComponent", paths.system(),
                                             "PartComponent", paths.disk(D0)));
         },
         {"-->KSV_SystemDiskProvider::getInstance() \n",
          "<-- KSV_SystemDiskProvider::getInstance()\n\n"}},
        {PRIMORDIAL,
         [&](RunningProvider& p) { p.references(paths.extent(D0)); },
         {"-->KSV_AssociatedPrimordialDisksProvider::references\n",
          "KSV_AssociatedPrimordialDisksProvider::references: objectName = " + extent +
              "; resultClass =  \n",
          "<--KSV_AssociatedPrimordialDisksProvider::references\n"}}};
    for (const Trace& trace : traces) {
        SCOPED_TRACE(trace.lines.front());
        DiskProvider provider(harness, trace.provider);
        ksvsim::clearCapturedLog();
        trace.request(provider);
        EXPECT_TRUE(logged(logTexts(4), trace.lines));
    }
}

TEST_F(AssociationShapeTest, RefusedUserIsDeniedBeforeTheArrayIsRead) {
    Query auditor;
    auditor.user = "auditor";
    for (const char* name : PROVIDERS) {
        SCOPED_TRACE(name);
        DiskProvider provider(harness, name);
        const std::vector<std::function<void()>> requests = {
            [&] { provider.associators(paths.disk(D0), auditor); },
            [&] { provider.associatorNames(paths.disk(D0), auditor); },
            [&] { provider.references(paths.disk(D0), auditor); },
            [&] { provider.referenceNames(paths.disk(D0), auditor); },
            [&] { provider.getInstance(paths.disk(D0), auditor); },
            [&] { provider.enumerateInstances(auditor); },
            [&] { provider.enumerateInstanceNames(auditor); }};
        for (const auto& request : requests) {
            ksvsim::clearCalls();
            harness.clearCalls();
            EXPECT_EQ(failureOf(request),
                      "CIM_ERR_ACCESS_DENIED: Insufficient privilege for the user");
            EXPECT_EQ(arrayCalls(), Strings{"api_ksvOpenForCimserver(auditor)"});
            EXPECT_TRUE(harness.calls().empty());
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
        DiskProvider provider(harness, name);
        ksvsim::clearCapturedLog();
        EXPECT_EQ(failureOf([&] { provider.getInstance(threeKeys); }),
                  "CIM_ERR_INVALID_PARAMETER: " + name + " Expect two keys.");
        // The firmware association names its key count with another provider's name.
        const std::string logName =
            name == "KSV_DiskSoftwareProvider" ? "KSV_FCALCardInDriveCageProvider" : name;
        EXPECT_EQ(logTexts(2), std::vector<std::string>{
                                   logName + "::getInstance(): Invalid number of keys (3)\n"});
    }
}

} // namespace
} // namespace ksv::test
