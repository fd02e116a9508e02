// The locate LED through modifyInstance of LocationIndicator: what is refused before the array is
// touched, which LED calls are made, and what the next getInstance shows.
#include "InstanceProviderTestSupport.h"

#include "KSV_DiskDriveProvider.h"

namespace ksv::test {
namespace {

const char* const LIT_DISK = "5000CCA01A2B3C4F-id-7";  // cage-t1 magazine 0
const char* const DARK_DISK = "5001517A0B1C2D30-id-8"; // cage-t3 magazine 0

CIMObjectPath diskPath(const std::string& deviceID, const char* className = "KSV_DiskDrive") {
    return pathOf(className, {{"SystemCreationClassName", "KSV_StorageSystem"},
                              {"SystemName", "KSV-MAP"},
                              {"CreationClassName", className},
                              {"DeviceID", deviceID}});
}

CIMInstance modification(std::initializer_list<std::pair<const char*, CIMValue>> properties) {
    CIMInstance instance("KSV_DiskDrive");
    for (const auto& [name, value] : properties)
        instance.addProperty(CIMProperty(name, value));
    return instance;
}

CIMPropertyList listOf(std::initializer_list<const char*> names) {
    Array<CIMName> list;
    for (const char* name : names)
        list.append(name);
    return CIMPropertyList(list);
}

class DiskDriveLocateTest : public ArrayTest {
protected:
    DiskDriveLocateTest() : ArrayTest("disk-mappings.json") {}

    // The library calls the modification made after the user gate; the handler must stay unused.
    Strings modify(const CIMObjectPath& path, const CIMInstance& modified,
                   const CIMPropertyList& properties = CIMPropertyList(),
                   const std::string& user = "admin") {
        ksvsim::clearCalls();
        RecordingResponseHandler handler;
        provider->modifyInstance(ProviderHarness::context(user), path, modified, false, properties,
                                 handler);
        EXPECT_TRUE(handler.events().empty());
        Strings calls = arrayCalls();
        calls.erase(calls.begin());
        return calls;
    }
    Strings turn(const std::string& deviceID, Uint16 location) {
        return modify(diskPath(deviceID),
                      modification({{"LocationIndicator", CIMValue(location)}}));
    }
    // The error of a modification that must be refused before any array call.
    std::string refusal(const CIMObjectPath& path, const CIMInstance& modified,
                        const std::string& user = "admin") {
        const std::string error =
            cimErrorOf([&] { modify(path, modified, CIMPropertyList(), user); });
        EXPECT_EQ(arrayCalls().size(), 1u) << error << ": only the user gate may be asked";
        return error;
    }
    std::string location(const std::string& deviceID) {
        const Answer answer = get(provider, diskPath(deviceID));
        return answer.instances.empty() ? "none" : render(answer.instances[0], "LocationIndicator");
    }

    InitializedProvider<KSV_DiskDriveProvider> provider{harness};
};

TEST_F(DiskDriveLocateTest, OnAndOffSwitchTheMagazineAndTheNextReadShowsIt) {
    EXPECT_EQ(turn(DARK_DISK, 2),
              (Strings{"api_deReferenceDiskDeviceID(5001517A0B1C2D30-id-8)", "cim_sem_wait()",
                       "api_getSystemDisks(5001517A0B1C2D30)", "cim_sem_post()", "cim_sem_wait()",
                       "api_locateMagazine(cage-t3:0:255)", "cim_sem_post()"}));
    EXPECT_EQ(location(DARK_DISK), "LocationIndicator=2");
    EXPECT_EQ(turn(LIT_DISK, 3).at(5), "api_locateMagazine(cage-t1:0:1)");
    EXPECT_EQ(location(LIT_DISK), "LocationIndicator=3");
}

TEST_F(DiskDriveLocateTest, AnLedAlreadyOffIsLeftAlone) {
    EXPECT_EQ(turn(DARK_DISK, 3),
              (Strings{"api_deReferenceDiskDeviceID(5001517A0B1C2D30-id-8)", "cim_sem_wait()",
                       "api_getSystemDisks(5001517A0B1C2D30)", "cim_sem_post()"}));
}

TEST_F(DiskDriveLocateTest, FailureIsOnlyLoggedAndTracesNameTheBatteryProvider) {
    ksvsim::forceResult("api_locateMagazine", API_E_NOT_FOUND, 1);
    harness.clearLog();
    EXPECT_NO_THROW(turn(DARK_DISK, 2));
    EXPECT_EQ(harness.logTexts(2),
              Strings{"KSV_DiskDriveProvider::ModifyInstance: problem "
                      "setting locate magazine led for cage cage-t3 magazine 0"});
    const Strings traces = harness.logTexts(4);
    EXPECT_EQ(traces.front(), "-->KSV_BatteryProvider::modifyInstance()\n");
    EXPECT_EQ(traces.back(), "<--KSV_DiskDriveProvider::modifyInstance()\n");
}

TEST_F(DiskDriveLocateTest, InvalidRequestsAreRefusedBeforeTheArrayIsRead) {
    const CIMInstance on = modification({{"LocationIndicator", CIMValue(Uint16(2))}});
    for (const CIMValue& value : {CIMValue(Uint16(4)), CIMValue(Uint16(0)),
                                  CIMValue(CIMTYPE_UINT16, false), CIMValue(Uint32(2))}) {
        EXPECT_EQ(refusal(diskPath(DARK_DISK), modification({{"LocationIndicator", value}})),
                  "CIM_ERR_INVALID_PARAMETER: Invalid parameter: LocationIndicator may only be "
                  "on set to on(2) or off(3).");
    }
    EXPECT_EQ(refusal(diskPath(DARK_DISK), modification({{"LocationIndicator", CIMValue(Uint16(2))},
                                                         {"ElementName", CIMValue(String("x"))}})),
              "CIM_ERR_INVALID_PARAMETER: Invalid parameter: ElementName");
    EXPECT_EQ(refusal(diskPath(DARK_DISK), on, "guest"),
              "CIM_ERR_ACCESS_DENIED: Insufficient privilege for the user");
    EXPECT_EQ(refusal(diskPath(DARK_DISK, "KSV_DiskStorageExtent"), on),
              "CIM_ERR_NOT_SUPPORTED: KSV_DiskDriveProvider Invalid class "
              "nameKSV_DiskStorageExtent");
    EXPECT_EQ(refusal(pathOf("KSV_DiskDrive", {{"CreationClassName", "KSV_DiskDrive"}}), on),
              "CIM_ERR_INVALID_PARAMETER: KSV_DiskDriveProvider DeviceID key not found.");
    EXPECT_EQ(location(DARK_DISK), "LocationIndicator=3");
}

TEST_F(DiskDriveLocateTest, PropertyListChoosesWhatIsExamined) {
    const CIMInstance withName = modification(
        {{"ElementName", CIMValue(String("x"))}, {"LocationIndicator", CIMValue(Uint16(2))}});
    EXPECT_TRUE(modify(diskPath(DARK_DISK), withName, listOf({})).empty());
    EXPECT_TRUE(modify(diskPath(DARK_DISK), withName, listOf({"Temperature"})).empty());
    EXPECT_TRUE(modify(diskPath(DARK_DISK), modification({})).empty());
    EXPECT_EQ(location(DARK_DISK), "LocationIndicator=3");
    modify(diskPath(DARK_DISK), withName, listOf({"Temperature", "LocationIndicator"}));
    EXPECT_EQ(location(DARK_DISK), "LocationIndicator=2");
}

TEST_F(DiskDriveLocateTest, AbsentOrUnknownDiskIsNotFoundAndNoLedIsTouched) {
    for (const char* deviceID : {"5000CCA000000005-id-12", "5000CCA0FFFFFFFF-id-99"}) {
        EXPECT_EQ(cimErrorOf([&] { turn(deviceID, 2); }),
                  std::string("CIM_ERR_NOT_FOUND: KSV_DiskDriveProvider CIM Object not found.") +
                      deviceID);
        for (const std::string& call : arrayCalls()) {
            EXPECT_EQ(call.find("api_locateMagazine"), std::string::npos);
            EXPECT_NE(call, "api_getSystemDisks(-10)") << "an unknown disk must not read all";
        }
    }
}

} // namespace
} // namespace ksv::test
