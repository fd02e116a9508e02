// The array's identity through the internal cache and the paths of the system's instances.
#include "ProviderTestSupport.h"

namespace ksv::test {
namespace {

const char* const IDENTITY_METHODS[] = {"GetSystemName", "GetSystemID",       "IsQuadPortSystem",
                                        "GetSystemType", "GetSystemHostName", "GetSystemAddress"};

class Identity : public HarnessTest {
protected:
    void answerEverywhere(Route route, CacheAnswer answer) {
        for (const char* method : IDENTITY_METHODS)
            harness.setCacheAnswer(method, route, answer);
    }
    void fail(Route route) { harness.failOperation(route, "invokeMethod"); }

    size_t callsOn(Route route) {
        size_t count = 0;
        for (const ServerCall& call : harness.calls("invokeMethod"))
            count += call.route == route ? 1 : 0;
        return count;
    }
};

TEST_F(Identity, AnswersComeFromTheInternalCacheThroughTheLocalClient) {
    EXPECT_EQ(text(KSV_Common::getSystemName(cimom)), "KSV-D7");
    EXPECT_EQ(text(KSV_Common::getSystemName()), "KSV-D7");
    EXPECT_EQ(KSV_Common::getSystemID(), 1400512u);
    EXPECT_EQ(KSV_Common::isQuadPortSystem(cimom), 0);
    EXPECT_EQ(KSV_Common::getSystemType(), 8);
    EXPECT_EQ(text(KSV_Common::getSystemHostName(cimom)), "ksv-d7.example.net");
    EXPECT_EQ(text(KSV_Common::getSystemAddress(cimom)), "198.51.100.25");
    EXPECT_EQ(callsOn(Route::LocalClient), 7u);
}

TEST_F(Identity, OutputNamedInAnotherCaseIsAcceptedOnEitherRoute) {
    harness.setCacheAnswer("GetSystemName", Route::LocalClient,
                           {CacheAnswer::Kind::RenamedOutput, "systemname"});
    harness.setCacheAnswer("GetSystemID", Route::LocalClient,
                           {CacheAnswer::Kind::RenamedOutput, "SYSTEMID"});
    EXPECT_EQ(text(KSV_Common::getSystemName(cimom)), "KSV-D7");
    EXPECT_EQ(KSV_Common::getSystemID(), 1400512u);
    // An answer through the server handle is checked like any other.
    fail(Route::LocalClient);
    answerEverywhere(Route::ServerHandle, {CacheAnswer::Kind::RenamedOutput, "SYSTEMNAME"});
    EXPECT_EQ(text(KSV_Common::getSystemName(cimom)), "KSV-D7");
    EXPECT_EQ(text(KSV_Common::getSystemAddress(cimom)), "");
}

TEST_F(Identity, OutputUnderAnotherNameNullOrMissingLeavesTheResultEmpty) {
    const CacheAnswer unusable[] = {{CacheAnswer::Kind::RenamedOutput, "Name"},
                                    {CacheAnswer::Kind::NullOutput, ""},
                                    {CacheAnswer::Kind::NoOutput, ""}};
    for (const CacheAnswer& answer : unusable) {
        answerEverywhere(Route::LocalClient, answer);
        EXPECT_EQ(text(KSV_Common::getSystemName(cimom)), "");
        EXPECT_EQ(text(KSV_Common::getSystemHostName(cimom)), "");
        EXPECT_EQ(text(KSV_Common::getSystemAddress(cimom)), "");
        EXPECT_EQ(KSV_Common::getSystemID(), 0u);
        EXPECT_EQ(KSV_Common::getSystemType(), 0);
    }
    EXPECT_EQ(callsOn(Route::ServerHandle), 0u); // an empty answer is no failure
}

// Lookups given the server handle retry through it; the others, or a second failure, throw.
TEST_F(Identity, FailedLocalClientIsRetriedThroughTheServerHandleWhereOneIsGiven) {
    fail(Route::LocalClient);
    EXPECT_EQ(text(KSV_Common::getSystemName(cimom)), "KSV-D7");
    EXPECT_EQ(text(KSV_Common::getSystemAddress(cimom)), "198.51.100.25");
    EXPECT_EQ(KSV_Common::isQuadPortSystem(cimom), 0);
    EXPECT_THROW(KSV_Common::getSystemHostName(cimom), CIMException);
    EXPECT_THROW(KSV_Common::getSystemName(), CIMException);
    EXPECT_THROW(KSV_Common::getSystemID(), CIMException);
    EXPECT_THROW(KSV_Common::getSystemType(), CIMException);
    EXPECT_EQ(callsOn(Route::ServerHandle), 3u);
    harness.failOperation(Route::LocalClient, "invokeMethod",
                          {Failure::Kind::ForeignError, "connection lost"});
    EXPECT_EQ(text(KSV_Common::getSystemName(cimom)), "KSV-D7");
    fail(Route::ServerHandle);
    EXPECT_THROW(KSV_Common::getSystemName(cimom), CIMException);
    EXPECT_THROW(KSV_Common::isQuadPortSystem(cimom), CIMException);
}

TEST_F(Identity, LocalClientCallsAreTraced) {
    Array<CIMParamValue> out;
    KSV_Common::invokeMethod("root/PG_Internal",
                             KSV_Common::buildInternalCacheObjectPath("localhost", "localhost"),
                             "GetSystemType", Array<CIMParamValue>(), out);
    KSV_Common::enumerateInstanceNames("root/ksv", "KSV_StoragePool");
    EXPECT_EQ(logTexts(4), (std::vector<std::string>{
                               "-->KSV_Common::invokeMethod()\n",
                               "<--KSV_Common::invokeMethod()\n",
                               "-->KSV_Common::enumerateInstanceNames()\n",
                               "<--KSV_Common::enumerateInstanceNames()\n",
                           }));
}

using SystemPaths = HarnessTest;

TEST_F(SystemPaths, SystemPathCarriesTheSystemsHostAndNamespace) {
    const CIMObjectPath system = KSV_Common::getSystemObjectPath(cimom);
    EXPECT_EQ(text(system.toString()), "//ksv-d7.example.net/root/ksv:KSV_StorageSystem."
                                       "CreationClassName=\"KSV_StorageSystem\",Name=\"KSV-D7\"");
    const std::vector<std::string> traces = logTexts(4);
    EXPECT_EQ(traces.front(), "-->KSV_Common::getSystemObjectPath()\n");
    EXPECT_EQ(traces.back(), "<--KSV_Common::getSystemObjectPath()\n");
}

TEST_F(SystemPaths, FailedLocalClientIsLoggedAndRetriedThroughTheServerHandle) {
    harness.failOperation(Route::LocalClient, "enumerateInstanceNames",
                          {Failure::Kind::CimError, "no route"});
    EXPECT_EQ(text(KSV_Common::getSystemObjectPath(cimom).getClassName().getString()),
              "KSV_StorageSystem");
    harness.failOperation(Route::LocalClient, "enumerateInstanceNames",
                          {Failure::Kind::ForeignError, "no route"});
    EXPECT_EQ(text(KSV_Common::getSystemViewObjectPath(cimom).getClassName().getString()),
              "KSV_StorageSystemView");
    EXPECT_EQ(logTexts(2),
              (std::vector<std::string>{
                  "KSV_Common::getSystemObjectPath: no route. Trying via cimom.\n",
                  "KSV_Common::getSystemViewObjectPath: Unknown exception! Trying via cimom\n"}));
}

TEST_F(SystemPaths, WhenBothRoutesFailTheSystemPathThrowsAndTheOthersEndEmpty) {
    harness.failOperation(Route::LocalClient, "enumerateInstanceNames",
                          {Failure::Kind::CimError, "no route"});
    harness.failOperation(Route::ServerHandle, "enumerateInstanceNames",
                          {Failure::Kind::CimError, "down"});
    EXPECT_THROW(KSV_Common::getSystemObjectPath(cimom), CIMException);
    ksvsim::clearCapturedLog();
    EXPECT_EQ(text(KSV_Common::getSystemPkgObjectPath(cimom).toString()), "");
    harness.failOperation(Route::ServerHandle, "enumerateInstanceNames",
                          {Failure::Kind::ForeignError, "down"});
    EXPECT_EQ(text(KSV_Common::getSystemViewObjectPath(cimom).toString()), "");
    EXPECT_EQ(logTexts(2),
              (Strings{"KSV_Common::getSystemPkgObjectPath: no route. Trying via cimom.\n",
                       "KSV_Common::getSystemPkgObjectPath: down.\n",
                       "cannot get at system pkg object path\n",
                       "KSV_Common::getSystemViewObjectPath: no route. Trying via cimom.\n",
                       "KSV_Common::getSystemViewObjectPath: Unknown exception in cimom!\n",
                       "cannot get at system view object path\n"}));
}

TEST_F(SystemPaths, PackagePathIsFoundWithoutTracesOfItsOwn) {
    EXPECT_EQ(text(KSV_Common::getSystemPkgObjectPath(cimom).toString()),
              "//ksv-d7.example.net/root/ksv:KSV_SystemPackage."
              "CreationClassName=\"KSV_SystemPackage\",Tag=\"KSV-D7\"");
    for (const std::string& trace : logTexts(4))
        EXPECT_EQ(trace.find("getSystemPkgObjectPath"), std::string::npos) << trace;
}

TEST_F(SystemPaths, MissingSystemYieldsAnEmptyPathAndNoExitTrace) {
    harness.removeInstance("root/ksv",
                           path("KSV_StorageSystem.CreationClassName=\"KSV_StorageSystem\","
                                "Name=\"KSV-D7\""));
    EXPECT_EQ(text(KSV_Common::getSystemObjectPath(cimom).toString()), "");
    EXPECT_EQ(logTexts(2), std::vector<std::string>{"cannot get at system object path\n"});
    EXPECT_EQ(logTexts(4).back(), "<--KSV_Common::enumerateInstanceNames()\n");
}

} // namespace
} // namespace ksv::test
