// The internal cache: its provider, which answers the array's identity one datum per method for
// the provider modules of the server, and its service, one per process, with its policy and its
// class store.
#include <Pegasus/Provider/CIMMethodProvider.h>

#include "StorageVolume/KSV_InternalCacheService.h"

#include "ProviderTestSupport.h"

namespace ksv::test {
namespace {

class RecordingMethodHandler : public RecordingResponse<MethodResultResponseHandler> {
public:
    void deliverParamValue(const CIMParamValue& output) override {
        _events.push_back("output");
        outputs.push_back(output);
    }
    void deliverParamValue(const Array<CIMParamValue>& more) override {
        for (Uint32 i = 0; i < more.size(); i++)
            deliverParamValue(more[i]);
    }
    void deliver(const CIMValue& value) override {
        _events.push_back("return");
        returned = value;
    }

    std::vector<CIMParamValue> outputs;
    CIMValue returned;
};

class InternalCacheProviderTest : public ::testing::Test {
protected:
    RecordingMethodHandler invoke(const char* method, const char* className = "KSV_InternalCache") {
        RecordingMethodHandler handler;
        provider.as<CIMMethodProvider>()->invokeMethod(
            OperationContext(), CIMObjectPath(String(), "root/PG_Internal", className), method,
            Array<CIMParamValue>(), handler);
        return handler;
    }

    // "Name (type): value" of the one output.
    std::string answer(const char* method) {
        const RecordingMethodHandler handler = invoke(method);
        EXPECT_EQ(handler.events(), Strings({"processing", "output", "return", "complete"}));
        EXPECT_EQ(text(handler.returned.toString()), "0");
        EXPECT_EQ(handler.returned.getType(), CIMTYPE_UINT32);
        const CIMValue value = handler.outputs.at(0).getValue();
        return text(handler.outputs.at(0).getParameterName()) + " (" +
               cimTypeToString(value.getType()) + "): " + text(value.toString());
    }

    ProviderHarness harness;
    RunningProvider provider{harness, volumeModuleProvider("KSV_InternalCacheProvider")};
};

TEST_F(InternalCacheProviderTest, AnswersEachDatumThroughItsOneTypedOutputReadOnce) {
    ksvsim::clearCalls();
    EXPECT_EQ(answer("GetSystemName"), "SystemName (string): KSV-D7");
    EXPECT_EQ(answer("getsystemid"), "SystemID (uint32): 1400512");
    EXPECT_EQ(answer("IsQuadPortSystem"), "IsQuadPort (uint8): 0");
    EXPECT_EQ(answer("GetSystemType"), "SystemType (sint32): 8");
    EXPECT_EQ(answer("GetSystemHostName"), "SystemHostName (string): ksv-d7.example.net");
    EXPECT_EQ(answer("GetSystemAddress"), "SystemAddress (string): 198.51.100.25");
    EXPECT_EQ(arrayCalls(), Strings({"cim_sem_wait()", "api_getSystemInfo()",
                                     "api_getSystemDualIP()", "cim_sem_post()"}));
}

TEST_F(InternalCacheProviderTest, RefusesMethodsAndClassesItDoesNotServe) {
    EXPECT_EQ(failureOf([&] { invoke("GetSystemSerial"); }),
              "CIM_ERR_METHOD_NOT_FOUND: KSV_InternalCacheProvider has no method GetSystemSerial");
    EXPECT_EQ(
        failureOf([&] { invoke("GetSystemName", "KSV_StorageSystem"); }),
        "CIM_ERR_NOT_SUPPORTED: KSV_InternalCacheProvider Invalid class nameKSV_StorageSystem");
}

TEST_F(InternalCacheProviderTest, AnArrayThatCannotBeReadFailsTheCallAndIsAskedAgainNextTime) {
    const std::string failed =
        "CIM_ERR_FAILED: KSV_InternalCacheProvider cannot read the array's identity";
    ksvsim::forceResult("cim_sem_wait", API_E_SEM_TIMEOUT, 1);
    EXPECT_EQ(failureOf([&] { invoke("GetSystemName"); }), failed);
    ksvsim::forceResult("api_getSystemDualIP", API_E_INVALID, 1);
    EXPECT_EQ(failureOf([&] { invoke("GetSystemName"); }), failed);
    EXPECT_EQ(ksvsim::semaphoreMisuseCount(), 0u);
    // Read afresh: from an array with four paths now.
    ASSERT_FALSE(ksvsim::loadModelFile(ProviderHarness::modelPath("demo-quadport.json")));
    EXPECT_EQ(answer("IsQuadPortSystem"), "IsQuadPort (uint8): 1");
    EXPECT_EQ(answer("GetSystemName"), "SystemName (string): KSV-D7Q");
}

TEST(InternalCacheService, OneServicePerProcessUntilDestroyed) {
    KSV_InternalCacheService* service = KSV_InternalCacheService::getInstance();
    EXPECT_EQ(KSV_InternalCacheService::getInstance(), service);
    KSV_Common::setPolicy(5);
    EXPECT_EQ(service->getPolicy(), 5u);
    KSV_InternalCacheService::destroy();
    EXPECT_EQ(KSV_Common::getPolicy(), 0u);
}

// Requests go through KSV_Common, which hands them to the service.
class ClassStore : public ::testing::Test {
protected:
    CIMClass served(const char* nameSpace, const char* className, bool includeQualifiers,
                    bool includeClassOrigin, const CIMPropertyList& propertyList,
                    bool localOnly = false) {
        return KSV_Common::getStoredCIMClass(cimom, OperationContext(), nameSpace, className,
                                             localOnly, includeQualifiers, includeClassOrigin,
                                             propertyList);
    }
    bool servedAsTheServerWould(const char* nameSpace, const char* className,
                                bool includeQualifiers, bool includeClassOrigin,
                                const CIMPropertyList& propertyList, bool localOnly = false) {
        return served(nameSpace, className, includeQualifiers, includeClassOrigin, propertyList,
                      localOnly)
            .identical(harness.shippedClasses().getClass(nameSpace, className, localOnly,
                                                         includeQualifiers, includeClassOrigin,
                                                         propertyList));
    }
    size_t fetches() { return harness.calls("getClass").size(); }

    ProviderHarness harness;
    CIMOMHandle cimom = harness.cimom();
};

TEST_F(ClassStore, ServesEveryRequestAsTheServerWouldFromOneFetchPerClass) {
    const std::pair<const char*, const char*> classes[] = {
        {"root/ksv", "KSV_DiskDrive"},
        {"root/ksv", "KSV_SystemDisk"},
        {"root/PG_Internal", "KSV_InternalCache"}};
    const CIMPropertyList lists[] = {CIMPropertyList(), listOf({}),
                                     listOf({"DeviceID", "PartComponent", "InstanceID"}),
                                     listOf({"deviceid", "NoSuchProperty"})};
    for (const auto& [nameSpace, className] : classes) {
        for (bool qualifiers : {true, false}) {
            for (bool origins : {true, false}) {
                for (const CIMPropertyList& list : lists) {
                    EXPECT_TRUE(
                        servedAsTheServerWould(nameSpace, className, qualifiers, origins, list))
                        << className << (qualifiers ? " q" : "") << (origins ? " o" : "") << " "
                        << list.toString().getCString();
                }
            }
        }
    }
    // Many property lists of one class are all served.
    const CIMClass full = served("root/ksv", "KSV_DiskDrive", true, true, CIMPropertyList());
    for (Uint32 i = 0; i < 24; i++) {
        EXPECT_TRUE(servedAsTheServerWould(
            "root/ksv", "KSV_DiskDrive", true, false,
            listOf({full.getProperty(i).getName().getString().getCString()})))
            << i;
    }
    EXPECT_EQ(fetches(), 3u);
}

TEST_F(ClassStore, NamespacesAreKeptApartAndFailuresAndLocalOnlyRequestsAreNotStored) {
    for (int attempt = 0; attempt < 2; attempt++) {
        EXPECT_EQ(failureOf([&] {
                      served("root/ksv", "KSV_InternalCache", true, true, CIMPropertyList());
                  }).rfind("CIM_ERR_NOT_FOUND", 0),
                  0u);
    }
    EXPECT_EQ(fetches(), 2u);
    EXPECT_EQ(served("root/PG_Internal", "KSV_InternalCache", true, true, CIMPropertyList())
                  .getMethodCount(),
              6u);
    harness.clearCalls();
    for (int attempt = 0; attempt < 2; attempt++) {
        EXPECT_TRUE(servedAsTheServerWould("root/ksv", "KSV_DiskDrive", true, true,
                                           CIMPropertyList(), true));
    }
    EXPECT_EQ(fetches(), 2u);
}

} // namespace
} // namespace ksv::test
