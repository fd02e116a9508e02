// The internal cache provider: the array's identity, one datum per method, for the provider
// modules of the server.
#include <Pegasus/Provider/CIMMethodProvider.h>

#include "StorageVolume/KSV_InternalCacheService.h"

#include "SiblingProviderTestSupport.h"

#include <algorithm>

namespace ksv::test {
namespace {

class RecordingMethodHandler : public MethodResultResponseHandler, public ResponseRecord {
public:
    void processing() override { note("processing"); }
    void complete() override { note("complete"); }
    void deliverParamValue(const CIMParamValue& output) override {
        note("output");
        outputs.push_back(output);
    }
    void deliverParamValue(const Array<CIMParamValue>& more) override {
        for (Uint32 i = 0; i < more.size(); i++)
            deliverParamValue(more[i]);
    }
    void deliver(const CIMValue& value) override {
        note("return");
        returned = value;
    }

    std::vector<CIMParamValue> outputs;
    CIMValue returned;
};

class InternalCacheProviderTest : public ::testing::Test {
protected:
    explicit InternalCacheProviderTest(const std::string& model = "demo.json") : harness(model) {}

    RecordingMethodHandler invoke(const char* method) {
        RecordingMethodHandler handler;
        provider->invokeMethod(OperationContext(),
                               CIMObjectPath(String(), "root/PG_Internal", "KSV_InternalCache"),
                               method, Array<CIMParamValue>(), handler);
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
    ModuleProvider<CIMMethodProvider> provider{KSV_STORAGE_VOLUME_MODULE,
                                               "KSV_InternalCacheProvider", harness};
};

TEST_F(InternalCacheProviderTest, AnswersEachDatumThroughItsOneTypedOutput) {
    EXPECT_EQ(answer("GetSystemName"), "SystemName (string): KSV-D7");
    EXPECT_EQ(answer("GetSystemID"), "SystemID (uint32): 1400512");
    EXPECT_EQ(answer("IsQuadPortSystem"), "IsQuadPort (uint8): 0");
    EXPECT_EQ(answer("GetSystemType"), "SystemType (sint32): 8");
    EXPECT_EQ(answer("GetSystemHostName"), "SystemHostName (string): ksv-d7.example.net");
    EXPECT_EQ(answer("GetSystemAddress"), "SystemAddress (string): 198.51.100.25");
}

TEST_F(InternalCacheProviderTest, MethodNamesCompareWithoutRegardToCase) {
    EXPECT_EQ(answer("getsystemname"), "SystemName (string): KSV-D7");
}

TEST_F(InternalCacheProviderTest, RefusesMethodsAndClassesItDoesNotServe) {
    EXPECT_EQ(cimErrorOf([&] { invoke("GetSystemSerial"); }),
              "CIM_ERR_METHOD_NOT_FOUND: KSV_InternalCacheProvider has no method GetSystemSerial");
    RecordingMethodHandler handler;
    EXPECT_EQ(
        cimErrorOf([&] {
            provider->invokeMethod(OperationContext(),
                                   CIMObjectPath(String(), "root/ksv", "KSV_StorageSystem"),
                                   "GetSystemName", Array<CIMParamValue>(), handler);
        }),
        "CIM_ERR_NOT_SUPPORTED: KSV_InternalCacheProvider Invalid class nameKSV_StorageSystem");
    EXPECT_TRUE(handler.events().empty());
}

TEST_F(InternalCacheProviderTest, ReadsTheArrayOnceUnderTheSemaphore) {
    ksvsim::clearCalls();
    answer("GetSystemName");
    answer("GetSystemAddress");
    EXPECT_EQ(arrayCalls(), Strings({"cim_sem_wait()", "api_getSystemInfo()",
                                     "api_getSystemDualIP()", "cim_sem_post()"}));
}

TEST_F(InternalCacheProviderTest, AnArrayThatCannotBeReadFailsTheCallAndIsAskedAgainNextTime) {
    ksvsim::forceResult("cim_sem_wait", API_E_SEM_TIMEOUT, 1);
    EXPECT_EQ(cimErrorOf([&] { invoke("GetSystemName"); }),
              "CIM_ERR_FAILED: KSV_InternalCacheProvider cannot read the array's identity");
    ksvsim::forceResult("api_getSystemDualIP", API_E_INVALID, 1);
    EXPECT_EQ(cimErrorOf([&] { invoke("GetSystemName"); }),
              "CIM_ERR_FAILED: KSV_InternalCacheProvider cannot read the array's identity");
    EXPECT_EQ(ksvsim::semaphoreMisuseCount(), 0u);
    EXPECT_EQ(answer("GetSystemName"), "SystemName (string): KSV-D7");
}

class QuadPortInternalCacheTest : public InternalCacheProviderTest {
protected:
    QuadPortInternalCacheTest() : InternalCacheProviderTest("demo-quadport.json") {}
};

TEST_F(QuadPortInternalCacheTest, AnswersOneOnAFourPathSystem) {
    EXPECT_EQ(answer("IsQuadPortSystem"), "IsQuadPort (uint8): 1");
    EXPECT_EQ(answer("GetSystemName"), "SystemName (string): KSV-D7Q");
}

} // namespace
} // namespace ksv::test
