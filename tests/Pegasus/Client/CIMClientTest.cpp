#include "RecordingCIMClientBackend.h"

#include <Pegasus/Client/CIMClient.h>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

PEGASUS_USING_PEGASUS;
using namespace pegasus_testing;

namespace {

using Lines = std::vector<std::string>;

const CIMNamespaceName ns("root/ksv");
const CIMObjectPath disk("KSV_DiskDrive.DeviceID=\"d1\"");

// One call through the client, showing its answer, what the connection must receive and the
// answer that must come back.
struct Call {
    std::function<std::string(CIMClient&)> call;
    std::string received;
    std::string answer;
};

// Each operation with its defaults; arguments given explicitly are the CIM server suite's.
const std::vector<Call>& calls() {
    static const CIMInstance instance(CIMName("KSV_Disk"));
    static const std::vector<Call> all = {
        {[](CIMClient& c) { return show(c.getClass(ns, "KSV_A")); },
         "getClass root/ksv KSV_A 1 1 0 NULL", "Answer_Class"},
        {[](CIMClient& c) { return show(c.enumerateClassNames(ns)); },
         "enumerateClassNames root/ksv - 0", "[Answer_Class]"},
        {[](CIMClient& c) { return show(c.enumerateClasses(ns)); },
         "enumerateClasses root/ksv - 0 1 1 0", "[Answer_Class]"},
        {[](CIMClient& c) { return show(c.getInstance(ns, disk)); },
         "getInstance root/ksv KSV_DiskDrive.DeviceID=\"d1\" 1 0 0 NULL", "Answer_Instance"},
        {[](CIMClient& c) { return show(c.enumerateInstances(ns, "KSV_A")); },
         "enumerateInstances root/ksv KSV_A 1 1 0 0 NULL", "[Answer_Instance]"},
        {[](CIMClient& c) { return show(c.enumerateInstanceNames(ns, "KSV_A")); },
         "enumerateInstanceNames root/ksv KSV_A", "[Answer_Path.Id=1]"},
        {[](CIMClient& c) { return c.modifyInstance(ns, instance), std::string(); },
         "modifyInstance root/ksv KSV_Disk 1 NULL", ""},
        {[](CIMClient& c) { return show(c.createInstance(ns, instance)); },
         "createInstance root/ksv KSV_Disk", "Answer_Path.Id=1"},
        {[](CIMClient& c) { return c.deleteInstance(ns, disk), std::string(); },
         "deleteInstance root/ksv KSV_DiskDrive.DeviceID=\"d1\"", ""},
        {[](CIMClient& c) { return show(c.getProperty(ns, disk, "Speed")); },
         "getProperty root/ksv KSV_DiskDrive.DeviceID=\"d1\" Speed", "7"},
        {[](CIMClient& c) { return c.setProperty(ns, disk, "Speed"), std::string(); },
         "setProperty root/ksv KSV_DiskDrive.DeviceID=\"d1\" Speed null", ""},
        {[](CIMClient& c) { return show(c.associators(ns, disk)); },
         "associators root/ksv KSV_DiskDrive.DeviceID=\"d1\" - - - - 0 0 NULL",
         "[Answer_Instance]"},
        {[](CIMClient& c) { return show(c.associatorNames(ns, disk)); },
         "associatorNames root/ksv KSV_DiskDrive.DeviceID=\"d1\" - - - -", "[Answer_Path.Id=1]"},
        {[](CIMClient& c) { return show(c.references(ns, disk)); },
         "references root/ksv KSV_DiskDrive.DeviceID=\"d1\" - - 0 0 NULL", "[Answer_Instance]"},
        {[](CIMClient& c) { return show(c.referenceNames(ns, disk)); },
         "referenceNames root/ksv KSV_DiskDrive.DeviceID=\"d1\" - -", "[Answer_Path.Id=1]"},
        {[](CIMClient& c) {
             Array<CIMParamValue> out;
             Array<CIMParamValue> in(1, CIMParamValue("On", CIMValue(true)));
             const std::string result = show(c.invokeMethod(ns, disk, "Locate", in, out));
             return result + " " + show(out);
         },
         "invokeMethod root/ksv KSV_DiskDrive.DeviceID=\"d1\" Locate [On=TRUE]", "7 [Out=answer]"},

    };
    return all;
}

class CIMClientTest : public ::testing::Test {
protected:
    void SetUp() override { registerLocalServer(); }

    void TearDown() override {
        CIMClientConnector::setLocal(nullptr);
        CIMClientConnector::setRemote(nullptr);
    }

    void registerLocalServer() {
        CIMClientConnector::setLocal([this] {
            ++localConnections;
            return std::make_unique<RecordingCIMClientBackend>(log);
        });
    }

    std::shared_ptr<CallLog> log = std::make_shared<CallLog>();
    int localConnections = 0;
};

TEST_F(CIMClientTest, EveryOperationIsForwardedWithItsDefaultsAndAnswers) {
    CIMClient client;
    client.connectLocal();
    for (const Call& c : calls()) {
        log->clear();
        EXPECT_EQ(c.answer, c.call(client)) << c.received;
        EXPECT_EQ(Lines{c.received}, log->lines());
    }
}

TEST_F(CIMClientTest, UnconnectedClientRefusesEveryOperation) {
    CIMClient client;
    for (const Call& c : calls())
        EXPECT_THROW(c.call(client), NotConnectedException) << c.received;
    EXPECT_NO_THROW(client.disconnect());
    EXPECT_EQ(0, localConnections);
}

TEST_F(CIMClientTest, WithoutFactoriesConnectingFailsClearly) {
    // The CIM-XML transport is registered by default; take both factories away.
    CIMClientConnector::setLocal(nullptr);
    CIMClientConnector::setRemote(nullptr);
    CIMClient client;
    try {
        client.connectLocal();
        FAIL() << "nothing thrown";
    } catch (const CannotConnectException& e) {
        EXPECT_EQ(e.getMessage(),
                  "CIMClient::connectLocal: no local connection factory is registered");
    }
    try {
        client.connect("array1", 5988, "alice", "secret");
        FAIL() << "nothing thrown";
    } catch (const CannotConnectException& e) {
        EXPECT_EQ(e.getMessage(),
                  "CIMClient::connect to array1:5988: no remote connection factory is registered");
    }
    EXPECT_THROW(client.enumerateInstanceNames(ns, "KSV_A"), NotConnectedException);
}

TEST_F(CIMClientTest, FactoryFailureLeavesTheClientUnconnected) {
    CIMClient client;
    CIMClientConnector::setLocal([] { return std::unique_ptr<CIMClientBackend>(); });
    try {
        client.connectLocal();
        FAIL() << "nothing thrown";
    } catch (const CannotConnectException& e) {
        EXPECT_EQ(e.getMessage(),
                  "CIMClient::connectLocal: the connection factory returned no connection");
    }
    CIMClientConnector::setLocal(
        []() -> std::unique_ptr<CIMClientBackend> { throw CannotConnectException("refused"); });
    EXPECT_THROW(client.connectLocal(), CannotConnectException);
    EXPECT_THROW(client.enumerateClassNames(ns), NotConnectedException);

    registerLocalServer();
    client.connectLocal();
    EXPECT_EQ(1, localConnections);
}

TEST_F(CIMClientTest, ConnectionLifecycle) {
    {
        CIMClient client;
        EXPECT_EQ(20000u, client.getTimeout());
        client.connectLocal();
        // A second connect is refused and keeps the first connection.
        EXPECT_THROW(client.connectLocal(), AlreadyConnectedException);
        EXPECT_THROW(client.connect("array1", 5988, "alice", "secret"), AlreadyConnectedException);
        client.setTimeout(45000);
        client.disconnect();
        EXPECT_THROW(client.getInstance(ns, disk), NotConnectedException);
        client.disconnect();
        // The timeout set while unconnected reaches the next connection.
        client.setTimeout(3000);
        client.connectLocal();
        EXPECT_EQ(3000u, client.getTimeout());
    }
    // Destroying the client closed its connection.
    EXPECT_EQ(2, localConnections);
    EXPECT_EQ((Lines{"setTimeout 20000", "setTimeout 45000", "disconnect", "setTimeout 3000",
                     "disconnect"}),
              log->lines());
}

TEST_F(CIMClientTest, FailingCloseStillDisconnects) {
    struct FailingClose : RecordingCIMClientBackend {
        using RecordingCIMClientBackend::RecordingCIMClientBackend;
        void disconnect() override {
            RecordingCIMClientBackend::disconnect();
            throw CIMException(CIM_ERR_FAILED, "");
        }
    };
    CIMClientConnector::setLocal([this] { return std::make_unique<FailingClose>(log); });
    CIMClient client;
    client.connectLocal();
    EXPECT_THROW(client.disconnect(), CIMException);
    EXPECT_THROW(client.enumerateClassNames(ns), NotConnectedException);
    EXPECT_EQ((Lines{"setTimeout 20000", "disconnect"}), log->lines());
}

TEST_F(CIMClientTest, FactoryMayReplaceItselfWhileConnecting) {
    CIMClientConnector::setLocal([this] {
        CIMClientConnector::setLocal(nullptr);
        return std::make_unique<RecordingCIMClientBackend>(log);
    });
    CIMClient first;
    first.connectLocal();
    CIMClient second;
    EXPECT_THROW(second.connectLocal(), CannotConnectException);
}

TEST_F(CIMClientTest, ConnectPassesServerAndCredentialsAndMakesAnEmptyHostWithAPortLocal) {
    CIMClientConnector::setRemote(
        [this](const String& host, Uint32 port, const String& user, const String& password) {
            log->record("connect", host, port, user, password);
            return std::make_unique<RecordingCIMClientBackend>(log);
        });
    const std::pair<const char*, Uint32> servers[] = {{"array1", 5989}, {"", 5988}, {"", 0}};
    for (const auto& server : servers) {
        CIMClient client;
        client.connect(server.first, server.second, "alice", "secret");
    }
    EXPECT_EQ(0, localConnections);
    EXPECT_EQ((Lines{"connect array1 5989 alice secret", "setTimeout 20000", "disconnect",
                     "connect localhost 5988 alice secret", "setTimeout 20000", "disconnect",
                     "connect - 0 alice secret", "setTimeout 20000", "disconnect"}),
              log->lines());
}

} // namespace
