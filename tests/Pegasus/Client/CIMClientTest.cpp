#include "MockCIMClientBackend.h"

#include <Pegasus/Client/CIMClient.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

PEGASUS_USING_PEGASUS;

using ::testing::_;
using ::testing::DoAll;
using ::testing::Property;
using ::testing::Ref;
using ::testing::Return;
using ::testing::SetArgReferee;
using ::testing::StrictMock;
using ::testing::Throw;

namespace {

const auto nullPropertyList = Property(&CIMPropertyList::isNull, true);

struct Arguments {
    Arguments() {
        Array<CIMName> names;
        names.append(CIMName("DeviceID"));
        propertyList.set(names);
        inParameters.append(CIMParamValue("Selector", CIMValue(Sint32(-10))));
    }

    const CIMNamespaceName nameSpace{"root/ksv"};
    const CIMName className{"KSV_DiskDrive"};
    const CIMName assocClass{"KSV_SystemDisk"};
    const CIMName resultClass{"KSV_StorageSystem"};
    const CIMName propertyName{"OperationalStatus"};
    const CIMName methodName{"Locate"};
    const String role{"PartComponent"};
    const String resultRole{"GroupComponent"};
    const CIMObjectPath path{"//array1/root/ksv:KSV_DiskDrive.DeviceID=\"2000-id-1\""};
    const CIMInstance instance{CIMName("KSV_DiskDrive")};
    const CIMValue value{Uint16(2)};
    CIMPropertyList propertyList;
    Array<CIMParamValue> inParameters;
};

struct NamedOperation {
    std::string name;
    std::function<void(CIMClient&, Arguments&)> call;
};

std::vector<NamedOperation> allOperations() {
    return {
        {"getClass", [](CIMClient& c, Arguments& a) { c.getClass(a.nameSpace, a.className); }},
        {"enumerateClassNames",
         [](CIMClient& c, Arguments& a) { c.enumerateClassNames(a.nameSpace); }},
        {"enumerateClasses", [](CIMClient& c, Arguments& a) { c.enumerateClasses(a.nameSpace); }},
        {"getInstance", [](CIMClient& c, Arguments& a) { c.getInstance(a.nameSpace, a.path); }},
        {"enumerateInstances",
         [](CIMClient& c, Arguments& a) { c.enumerateInstances(a.nameSpace, a.className); }},
        {"enumerateInstanceNames",
         [](CIMClient& c, Arguments& a) { c.enumerateInstanceNames(a.nameSpace, a.className); }},
        {"modifyInstance",
         [](CIMClient& c, Arguments& a) { c.modifyInstance(a.nameSpace, a.instance); }},
        {"createInstance",
         [](CIMClient& c, Arguments& a) { c.createInstance(a.nameSpace, a.instance); }},
        {"deleteInstance",
         [](CIMClient& c, Arguments& a) { c.deleteInstance(a.nameSpace, a.path); }},
        {"getProperty",
         [](CIMClient& c, Arguments& a) { c.getProperty(a.nameSpace, a.path, a.propertyName); }},
        {"setProperty",
         [](CIMClient& c, Arguments& a) { c.setProperty(a.nameSpace, a.path, a.propertyName); }},
        {"associators", [](CIMClient& c, Arguments& a) { c.associators(a.nameSpace, a.path); }},
        {"associatorNames",
         [](CIMClient& c, Arguments& a) { c.associatorNames(a.nameSpace, a.path); }},
        {"references", [](CIMClient& c, Arguments& a) { c.references(a.nameSpace, a.path); }},
        {"referenceNames",
         [](CIMClient& c, Arguments& a) { c.referenceNames(a.nameSpace, a.path); }},
        {"invokeMethod",
         [](CIMClient& c, Arguments& a) {
             Array<CIMParamValue> out;
             c.invokeMethod(a.nameSpace, a.path, a.methodName, a.inParameters, out);
         }},
    };
}

// Every connection a factory opens must be closed exactly once.
std::unique_ptr<StrictMock<MockCIMClientBackend>> newConnection(Uint32 expectedTimeout) {
    auto connection = std::make_unique<StrictMock<MockCIMClientBackend>>();
    EXPECT_CALL(*connection, setTimeout(expectedTimeout));
    EXPECT_CALL(*connection, disconnect());
    return connection;
}

class CIMClientTest : public ::testing::Test {
protected:
    void SetUp() override { registerLocalServer(); }

    void registerLocalServer() {
        CIMClientConnector::setLocal([this] {
            ++localConnections;
            auto connection = newConnection(expectedTimeout);
            backend = connection.get();
            return connection;
        });
    }

    void TearDown() override {
        CIMClientConnector::setLocal(nullptr);
        CIMClientConnector::setRemote(nullptr);
    }

    StrictMock<MockCIMClientBackend>* backend = nullptr; // owned by the connected client
    int localConnections = 0;
    Uint32 expectedTimeout = 20000;
    Arguments a;
};

class CIMClientOperations : public CIMClientTest {
protected:
    void SetUp() override {
        CIMClientTest::SetUp();
        client.connectLocal();
    }

    CIMClient client;
};

TEST(CIMClientUnconnected, EveryOperationThrowsNotConnected) {
    CIMClient client;
    Arguments a;
    for (const NamedOperation& operation : allOperations()) {
        EXPECT_THROW(operation.call(client, a), NotConnectedException) << operation.name;
    }
    EXPECT_NO_THROW(client.disconnect());
}

TEST(CIMClientUnconnected, WithoutFactoriesConnectingFailsClearly) {
    // The CIM-XML transport is registered by default; take it away.
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
    Arguments a;
    EXPECT_THROW(client.enumerateInstanceNames(a.nameSpace, a.className), NotConnectedException);
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
    EXPECT_THROW(client.enumerateClassNames(a.nameSpace), NotConnectedException);

    registerLocalServer();
    client.connectLocal();
    EXPECT_EQ(localConnections, 1);
}

TEST_F(CIMClientTest, ConnectingTwiceIsRefusedAndKeepsTheFirstConnection) {
    CIMClient client;
    client.connectLocal();
    MockCIMClientBackend* first = backend;
    EXPECT_THROW(client.connectLocal(), AlreadyConnectedException);
    EXPECT_THROW(client.connect("array1", 5988, "alice", "secret"), AlreadyConnectedException);
    EXPECT_EQ(localConnections, 1);

    EXPECT_CALL(*first, enumerateInstanceNames(_, _)).WillOnce(Return(Array<CIMObjectPath>()));
    client.enumerateInstanceNames(a.nameSpace, a.className);
}

TEST_F(CIMClientTest, DisconnectClosesTheConnectionAndAllowsReconnecting) {
    CIMClient client;
    client.connectLocal();
    client.disconnect();
    EXPECT_THROW(client.getInstance(a.nameSpace, a.path), NotConnectedException);
    client.disconnect();

    client.connectLocal();
    EXPECT_EQ(localConnections, 2);
}

TEST_F(CIMClientTest, DestroyingAConnectedClientClosesTheConnection) {
    {
        CIMClient client;
        client.connectLocal();
    }
    // The connection's own expectation checks that it was closed.
    EXPECT_EQ(localConnections, 1);
}

TEST_F(CIMClientTest, FailingCloseStillDisconnects) {
    CIMClientConnector::setLocal([] {
        auto connection = std::make_unique<StrictMock<MockCIMClientBackend>>();
        EXPECT_CALL(*connection, setTimeout(_));
        EXPECT_CALL(*connection, disconnect()).WillOnce(Throw(CIMException(CIM_ERR_FAILED, "")));
        return connection;
    });
    CIMClient client;
    client.connectLocal();
    EXPECT_THROW(client.disconnect(), CIMException);
    EXPECT_THROW(client.enumerateClassNames(a.nameSpace), NotConnectedException);
}

TEST_F(CIMClientTest, TimeoutReachesTheConnectionWhenSetBeforeOrAfterConnecting) {
    CIMClient client;
    EXPECT_EQ(client.getTimeout(), 20000u);
    expectedTimeout = 3000;
    client.setTimeout(3000);
    client.connectLocal();

    EXPECT_CALL(*backend, setTimeout(45000));
    client.setTimeout(45000);
    EXPECT_EQ(client.getTimeout(), 45000u);
}

TEST_F(CIMClientTest, FactoryMayReplaceItselfWhileConnecting) {
    CIMClientConnector::setLocal([this] {
        CIMClientConnector::setLocal(nullptr);
        return newConnection(expectedTimeout);
    });
    CIMClient first;
    first.connectLocal();
    CIMClient second;
    EXPECT_THROW(second.connectLocal(), CannotConnectException);
}

class CIMClientRemote : public CIMClientTest {
protected:
    void expectRemote(const char* host, Uint32 port) {
        CIMClientConnector::setRemote(
            [=](const String& h, Uint32 p, const String& user, const String& password) {
                EXPECT_EQ(h, host);
                EXPECT_EQ(p, port);
                EXPECT_EQ(user, "alice");
                EXPECT_EQ(password, "secret");
                return newConnection(expectedTimeout);
            });
    }
};

TEST_F(CIMClientRemote, ConnectPassesTheServerAndCredentialsToTheFactory) {
    expectRemote("array1", 5989);
    CIMClient client;
    client.connect("array1", 5989, "alice", "secret");
    EXPECT_EQ(localConnections, 0);
}

TEST_F(CIMClientRemote, EmptyHostWithAPortMeansLocalhost) {
    expectRemote("localhost", 5988);
    CIMClient client;
    client.connect("", 5988, "alice", "secret");
}

TEST_F(CIMClientRemote, EmptyHostWithoutPortStaysEmpty) {
    expectRemote("", 0);
    CIMClient client;
    client.connect("", 0, "alice", "secret");
}

TEST_F(CIMClientOperations, DefaultArgumentsOfTheReadOperations) {
    EXPECT_CALL(*backend, getClass(a.nameSpace, a.className, true, true, false, nullPropertyList))
        .WillOnce(Return(CIMClass(a.className)));
    EXPECT_CALL(*backend, getInstance(a.nameSpace, a.path, true, false, false, nullPropertyList))
        .WillOnce(Return(a.instance));
    EXPECT_CALL(*backend, enumerateClasses(a.nameSpace, CIMName(), false, true, true, false))
        .WillOnce(Return(Array<CIMClass>()));
    EXPECT_CALL(*backend, enumerateClassNames(a.nameSpace, CIMName(), false))
        .WillOnce(Return(Array<CIMName>()));
    EXPECT_CALL(*backend, enumerateInstances(a.nameSpace, a.className, true, true, false, false,
                                             nullPropertyList))
        .WillOnce(Return(Array<CIMInstance>()));

    client.getClass(a.nameSpace, a.className);
    client.getInstance(a.nameSpace, a.path);
    client.enumerateClasses(a.nameSpace);
    client.enumerateClassNames(a.nameSpace);
    client.enumerateInstances(a.nameSpace, a.className);
}

TEST_F(CIMClientOperations, DefaultArgumentsOfTheAssociationAndChangeOperations) {
    const String empty;
    EXPECT_CALL(*backend, associators(a.nameSpace, a.path, CIMName(), CIMName(), empty, empty,
                                      false, false, nullPropertyList))
        .WillOnce(Return(Array<CIMObject>()));
    EXPECT_CALL(*backend, associatorNames(a.nameSpace, a.path, CIMName(), CIMName(), empty, empty))
        .WillOnce(Return(Array<CIMObjectPath>()));
    EXPECT_CALL(*backend,
                references(a.nameSpace, a.path, CIMName(), empty, false, false, nullPropertyList))
        .WillOnce(Return(Array<CIMObject>()));
    EXPECT_CALL(*backend, referenceNames(a.nameSpace, a.path, CIMName(), empty))
        .WillOnce(Return(Array<CIMObjectPath>()));
    EXPECT_CALL(*backend, modifyInstance(a.nameSpace, Ref(a.instance), true, nullPropertyList));
    EXPECT_CALL(*backend, setProperty(a.nameSpace, a.path, a.propertyName,
                                      Property(&CIMValue::isNull, true)));

    client.associators(a.nameSpace, a.path);
    client.associatorNames(a.nameSpace, a.path);
    client.references(a.nameSpace, a.path);
    client.referenceNames(a.nameSpace, a.path);
    client.modifyInstance(a.nameSpace, a.instance);
    client.setProperty(a.nameSpace, a.path, a.propertyName);
}

TEST_F(CIMClientOperations, ExplicitArgumentsAndResultsPassThrough) {
    Array<CIMObjectPath> paths;
    paths.append(a.path);
    EXPECT_CALL(*backend, enumerateInstanceNames(a.nameSpace, a.className)).WillOnce(Return(paths));
    EXPECT_CALL(*backend, getInstance(a.nameSpace, a.path, false, true, true, Ref(a.propertyList)))
        .WillOnce(Return(a.instance));
    EXPECT_CALL(*backend, associatorNames(a.nameSpace, a.path, a.assocClass, a.resultClass, a.role,
                                          a.resultRole))
        .WillOnce(Return(paths));
    EXPECT_CALL(*backend, createInstance(a.nameSpace, Ref(a.instance))).WillOnce(Return(a.path));
    EXPECT_CALL(*backend, deleteInstance(a.nameSpace, a.path));
    EXPECT_CALL(*backend, getProperty(a.nameSpace, a.path, a.propertyName))
        .WillOnce(Return(a.value));

    EXPECT_EQ(client.enumerateInstanceNames(a.nameSpace, a.className)[0], a.path);
    EXPECT_TRUE(client.getInstance(a.nameSpace, a.path, false, true, true, a.propertyList)
                    .identical(a.instance));
    EXPECT_EQ(
        client
            .associatorNames(a.nameSpace, a.path, a.assocClass, a.resultClass, a.role, a.resultRole)
            .size(),
        1u);
    EXPECT_EQ(client.createInstance(a.nameSpace, a.instance), a.path);
    client.deleteInstance(a.nameSpace, a.path);
    EXPECT_EQ(client.getProperty(a.nameSpace, a.path, a.propertyName), a.value);
}

TEST_F(CIMClientOperations, InvokeMethodReturnsValueAndOutputParameters) {
    Array<CIMParamValue> produced;
    produced.append(CIMParamValue("SystemName", CIMValue(String("array1"))));
    EXPECT_CALL(*backend, invokeMethod(a.nameSpace, a.path, a.methodName, Ref(a.inParameters), _))
        .WillOnce(DoAll(SetArgReferee<4>(produced), Return(CIMValue(Uint32(0)))));

    Array<CIMParamValue> out;
    EXPECT_EQ(client.invokeMethod(a.nameSpace, a.path, a.methodName, a.inParameters, out),
              CIMValue(Uint32(0)));
    ASSERT_EQ(out.size(), 1u);
    EXPECT_EQ(out[0].getParameterName(), "SystemName");
}

TEST_F(CIMClientOperations, ServerErrorsReachTheCaller) {
    EXPECT_CALL(*backend, getInstance(_, _, _, _, _, _))
        .WillOnce(Throw(CIMException(CIM_ERR_NOT_FOUND, "no such disk")));
    try {
        client.getInstance(a.nameSpace, a.path);
        FAIL() << "nothing thrown";
    } catch (const CIMException& e) {
        EXPECT_EQ(e.getCode(), CIM_ERR_NOT_FOUND);
        EXPECT_EQ(e.getMessage(), "no such disk");
    }
}

} // namespace
