// What providers reach the server through: CIMOMHandle and an in-process CIMClient connection.
// Every operation must answer there as it answers a client over HTTP, with each argument reaching
// the provider in its place.
#include <gtest/gtest.h>

#include <Pegasus/Client/CIMXmlClientBackend.h>
#include <Pegasus/Provider/CIMOMHandle.h>

#include "TestServer.h"
#include "mof_compiler/NamespaceStore.h"

#include <functional>

namespace ksv::test {
namespace {

using namespace Pegasus;

// The answer as text, without the requesting user, who differs by path on purpose. Classes,
// instances and objects alike; as a template, so that no conversion to a value competes.
template <class Object, class = decltype(std::declval<Object>().findProperty(CIMName()))>
std::string shown(const Object& object) {
    CIMObject copy = CIMConstObject(object).clone();
    const Uint32 user = copy.findProperty("RequestedBy");
    if (user != PEG_NOT_FOUND)
        copy.removeProperty(user);
    return mof::utf8(copy.toString());
}
std::string shown(CIMObjectPath path) {
    path.setHost(String());
    path.setNameSpace(CIMNamespaceName());
    return mof::utf8(path.toString());
}
std::string shown(const CIMName& name) {
    return mof::utf8(name.getString());
}
// Without its type, which a property's value does not carry over HTTP.
std::string shown(const CIMValue& value) {
    return mof::utf8(value.toString());
}
std::string shown(const CIMParamValue& parameter) {
    const CIMValue& value = parameter.getValue();
    return mof::utf8(parameter.getParameterName()) + "=" + cimTypeToString(value.getType()) + " " +
           shown(value);
}
template <class T>
std::string shown(const Array<T>& items) {
    std::string text;
    for (Uint32 i = 0; i < items.size(); ++i)
        text += shown(items[i]) + "\n";
    return text;
}

const CIMNamespaceName& ns = kTestNamespace;
CIMPropertyList listOf(std::initializer_list<const char*> names) {
    Array<CIMName> array;
    for (const char* name : names)
        array.append(name);
    return CIMPropertyList(array);
}
const CIMPropertyList kWeightAndName = listOf({"Weight", "Name"});
const CIMPropertyList kOwner = listOf({"Owner"});
const CIMPropertyList kAll;

CIMInstance written(const char* color) {
    CIMInstance device("KSV_TestDevice");
    device.addProperty(CIMProperty("Id", CIMValue(String("dev-w"))));
    device.addProperty(CIMProperty("Color", CIMValue(String(color))));
    device.setPath(devicePath("dev-w"));
    return device;
}

Array<CIMParamValue> resetParameters() {
    Array<CIMParamValue> in;
    in.append(CIMParamValue("Delay", CIMValue(Uint32(21))));
    in.append(CIMParamValue("Mode", CIMValue(String("soft"))));
    in.append(CIMParamValue("Force", CIMValue(true)));
    return in;
}

// A CIMOMHandle behind CIMClient's names, so that each operation below is written once.
struct ThroughHandle {
    CIMOMHandle& handle;
    const OperationContext& context;
#define KSV_FORWARD(method)                                                                        \
    template <class... A>                                                                          \
    auto method(A&&... arguments) {                                                                \
        return handle.method(context, std::forward<A>(arguments)...);                              \
    }
    KSV_FORWARD(getClass)
    KSV_FORWARD(enumerateClasses)
    KSV_FORWARD(enumerateClassNames)
    KSV_FORWARD(getInstance)
    KSV_FORWARD(enumerateInstances)
    KSV_FORWARD(enumerateInstanceNames)
    KSV_FORWARD(associators)
    KSV_FORWARD(associatorNames)
    KSV_FORWARD(references)
    KSV_FORWARD(referenceNames)
    KSV_FORWARD(invokeMethod)
    KSV_FORWARD(createInstance)
    KSV_FORWARD(modifyInstance)
    KSV_FORWARD(setProperty)
    KSV_FORWARD(getProperty)
    KSV_FORWARD(deleteInstance)
#undef KSV_FORWARD
};

using Operation = std::pair<const char*, std::function<std::string()>>;

// Every operation, its arguments away from their defaults, on one access path; run in order, so
// that the writes at the end leave the devices as they were.
template <class Access>
std::vector<Operation> operationsOn(Access& a) {
    return {
        {"getClass",
         [&a] { return shown(a.getClass(ns, "KSV_TestDevice", true, false, true, kAll)); }},
        {"enumerateClasses",
         [&a] {
             return shown(a.enumerateClasses(ns, "KSV_TestElement", true, false, true, false));
         }},
        {"enumerateClassNames", [&a] { return shown(a.enumerateClassNames(ns, CIMName(), true)); }},
        {"getInstance",
         [&a] {
             return shown(a.getInstance(ns, gadgetPath("g-0"), false, true, false, kWeightAndName));
         }},
        {"enumerateInstances",
         [&a] {
             return shown(
                 a.enumerateInstances(ns, "KSV_TestElement", false, false, false, true, kAll));
         }},
        {"enumerateInstanceNames",
         [&a] { return shown(a.enumerateInstanceNames(ns, "KSV_TestGadget")); }},
        {"associators",
         [&a] {
             return shown(a.associators(ns, devicePath("dev-1"), "KSV_TestLink", "KSV_TestGadget",
                                        "Owner", "Member", true, false, kWeightAndName)) +
                    shown(a.associators(ns, devicePath("dev-1"), CIMName(), CIMName(), "", "Owner",
                                        false, false, kAll));
         }},
        // Each role once matching its end, once not.
        {"associatorNames",
         [&a] {
             return shown(a.associatorNames(ns, gadgetPath("g-0"), "KSV_TestLink", CIMName(),
                                            "Member", "Owner")) +
                    shown(a.associatorNames(ns, gadgetPath("g-0"), CIMName(), CIMName(), "Owner",
                                            "")) +
                    shown(a.associatorNames(ns, gadgetPath("g-0"), CIMName(), CIMName(), "",
                                            "Member"));
         }},
        {"references",
         [&a] {
             return shown(a.references(ns, devicePath("dev-1"), "KSV_TestLink", "Owner", false,
                                       true, kOwner)) +
                    shown(a.references(ns, devicePath("dev-1"), CIMName(), "Member", false, false,
                                       kAll));
         }},
        {"referenceNames",
         [&a] {
             return shown(a.referenceNames(ns, gadgetPath("g-1"), "KSV_TestLink", "Member")) +
                    shown(a.referenceNames(ns, gadgetPath("g-1"), CIMName(), "Owner"));
         }},
        {"invokeMethod",
         [&a] {
             Array<CIMParamValue> out;
             const std::string result =
                 shown(a.invokeMethod(ns, devicePath("dev-0"), "Reset", resetParameters(), out));
             return result + shown(out);
         }},
        {"createInstance", [&a] { return shown(a.createInstance(ns, written("red"))); }},
        {"modifyInstance",
         [&a] {
             a.modifyInstance(ns, written("green"), true, CIMPropertyList());
             a.modifyInstance(ns, written("red"), false, CIMPropertyList(Array<CIMName>()));
             return shown(a.getInstance(ns, devicePath("dev-w"), true, false, false, kAll));
         }},
        {"setProperty",
         [&a] {
             a.setProperty(ns, devicePath("dev-w"), "Size", CIMValue(Uint32(7)));
             return shown(a.getProperty(ns, devicePath("dev-w"), "Size"));
         }},
        {"deleteInstance",
         [&a] {
             a.deleteInstance(ns, devicePath("dev-w"));
             return shown(a.enumerateInstanceNames(ns, "KSV_TestDevice"));
         }},
    };
}

std::string failureText(const std::function<void()>& call) {
    try {
        call();
    } catch (const CIMException& failure) {
        return std::string(cimStatusCodeToString(failure.getCode())) + ": " +
               mof::utf8(failure.getMessage());
    }
    return "no exception";
}

// Each operation's name and answer.
std::vector<std::string> answers(const std::vector<Operation>& operations) {
    std::vector<std::string> all;
    for (const auto& [name, call] : operations) {
        std::string answer;
        try {
            answer = call();
        } catch (const Exception& error) {
            answer = "failed: " + mof::utf8(error.getMessage());
        }
        all.push_back(std::string(name) + ": " + answer);
    }
    return all;
}

TEST(InProcessAccess, EveryOperationAnswersAsOverHttp) {
    TestServer server;
    const OperationContext context;
    CIMOMHandle handle;
    ThroughHandle throughHandle{handle, context};
    CIMClient local;
    local.connectLocal();
    const auto http = server.client();
    const std::vector<std::string> overHttp = answers(operationsOn(*http));
    EXPECT_EQ(answers(operationsOn(local)), overHttp);
    EXPECT_EQ(answers(operationsOn(throughHandle)), overHttp);
    // The client's defaults are OpenPegasus's.
    CIMClient& c = *http;
    const std::function<std::string()> withDefaults[][2] = {
        {[&] { return shown(c.getClass(ns, "KSV_TestGadget")); },
         [&] { return shown(c.getClass(ns, "KSV_TestGadget", true, true, false, kAll)); }},
        {[&] { return shown(c.enumerateClasses(ns)); },
         [&] { return shown(c.enumerateClasses(ns, CIMName(), false, true, true, false)); }},
        {[&] { return shown(c.enumerateClassNames(ns)); },
         [&] { return shown(c.enumerateClassNames(ns, CIMName(), false)); }},
        {[&] { return shown(c.getInstance(ns, gadgetPath("g-1"))); },
         [&] { return shown(c.getInstance(ns, gadgetPath("g-1"), true, false, false, kAll)); }},
        {[&] { return shown(c.enumerateInstances(ns, "KSV_TestElement")); },
         [&] {
             return shown(
                 c.enumerateInstances(ns, "KSV_TestElement", true, true, false, false, kAll));
         }},
        {[&] { return shown(c.associators(ns, devicePath("dev-0"))); },
         [&] {
             return shown(c.associators(ns, devicePath("dev-0"), CIMName(), CIMName(), String(),
                                        String(), false, false, kAll));
         }},
        {[&] { return shown(c.references(ns, gadgetPath("g-0"))); },
         [&] {
             return shown(
                 c.references(ns, gadgetPath("g-0"), CIMName(), String(), false, false, kAll));
         }},
    };
    for (const auto& [implicit, spelledOut] : withDefaults)
        EXPECT_EQ(implicit(), spelledOut());
    // A server that serves instances leaves class changes and queries to the handle's defaults.
    const std::pair<const char*, std::function<void()>> unsupported[] = {
        {"createClass", [&] { handle.createClass(context, ns, CIMClass("KSV_New")); }},
        {"modifyClass", [&] { handle.modifyClass(context, ns, CIMClass("KSV_TestDevice")); }},
        {"deleteClass", [&] { handle.deleteClass(context, ns, "KSV_TestDevice"); }},
        {"execQuery",
         [&] { handle.execQuery(context, ns, "WQL", "SELECT * FROM KSV_TestDevice"); }},
    };
    for (const auto& [name, call] : unsupported) {
        EXPECT_EQ(failureText(call), std::string("CIM_ERR_NOT_SUPPORTED: CIMOMHandle::") + name +
                                         " is not supported by this CIM server");
    }
}

TEST(InProcessAccess, HandlesReachTheServerRunningWhenTheyWereMade) {
    const OperationContext context;
    CIMOMHandle early;
    TestServer server;
    CIMOMHandle bound;
    CIMOMHandle copy(bound);
    CIMOMHandle assigned(nullptr);
    assigned = bound;
    EXPECT_EQ(copy.enumerateInstanceNames(context, ns, "KSV_TestDevice").size(), 3u);
    EXPECT_EQ(assigned.enumerateInstanceNames(context, ns, "KSV_TestDevice").size(), 3u);
    CIMOMHandle detached(nullptr);
    for (CIMOMHandle* unbound : {&early, &detached}) {
        ThroughHandle throughHandle{*unbound, context};
        for (const auto& [name, call] : operationsOn(throughHandle)) {
            EXPECT_EQ(failureText(call), std::string("CIM_ERR_FAILED: CIMOMHandle::") + name +
                                             ": the handle is not attached to a CIM server");
        }
    }
}

using Lines = std::vector<std::string>;

// How CIMClient opens, keeps and closes the connection its factories make.
class ClientConnection : public ::testing::Test {
protected:
    void SetUp() override { recordLocalConnections(); }
    // Back to the connections a client of this process makes when no server runs in it.
    void TearDown() override {
        CIMClientConnector::setLocal(&CIMXmlClientConnector::connectLocal);
        CIMClientConnector::setRemote(&CIMXmlClientConnector::connectRemote);
    }

    void recordLocalConnections() {
        CIMClientConnector::setLocal([this] {
            ++localConnections;
            return std::make_unique<RecordingConnection>(record, mutex);
        });
    }

    TestServer server;
    Lines record;
    std::mutex mutex;
    int localConnections = 0;
};

TEST_F(ClientConnection, UnconnectedOrWithoutAConnectionFromAFactoryClientsFailClearly) {
    CIMClient client;
    for (const auto& [name, call] : operationsOn(client))
        EXPECT_THROW(call(), NotConnectedException) << name;
    EXPECT_NO_THROW(client.disconnect());
    EXPECT_EQ(localConnections, 0);
    CIMClientConnector::setLocal(nullptr);
    CIMClientConnector::setRemote(nullptr);
    EXPECT_EQ(cimErrorOf([&] { client.connectLocal(); }),
              "client error: CIMClient::connectLocal: no local connection factory is registered");
    EXPECT_EQ(cimErrorOf([&] { client.connect("array1", 5988, "alice", "secret"); }),
              "client error: CIMClient::connect to array1:5988: no remote connection factory is "
              "registered");
    CIMClientConnector::setLocal([] { return std::unique_ptr<CIMClientBackend>(); });
    EXPECT_EQ(
        cimErrorOf([&] { client.connectLocal(); }),
        "client error: CIMClient::connectLocal: the connection factory returned no connection");
    CIMClientConnector::setLocal(
        []() -> std::unique_ptr<CIMClientBackend> { throw CannotConnectException("refused"); });
    EXPECT_EQ(cimErrorOf([&] { client.connectLocal(); }), "client error: refused");
    EXPECT_THROW(client.enumerateClassNames(ns), NotConnectedException);

    recordLocalConnections();
    client.connectLocal();
    EXPECT_EQ(client.enumerateInstanceNames(ns, "KSV_TestGadget").size(), 2u);
}

TEST_F(ClientConnection, OneConnectionAtATimeWithTheTimeoutLastSet) {
    {
        CIMClient client;
        EXPECT_EQ(client.getTimeout(), 20000u);
        client.connectLocal();
        // A second connect is refused and keeps the first connection.
        EXPECT_THROW(client.connectLocal(), AlreadyConnectedException);
        EXPECT_THROW(client.connect("array1", 5988, "alice", "secret"), AlreadyConnectedException);
        EXPECT_EQ(client.enumerateInstanceNames(ns, "KSV_TestGadget").size(), 2u);
        client.setTimeout(45000);
        client.disconnect();
        EXPECT_THROW(client.getInstance(ns, devicePath("dev-0")), NotConnectedException);
        client.disconnect();
        // The timeout set while unconnected reaches the next connection.
        client.setTimeout(3000);
        client.connectLocal();
        EXPECT_EQ(client.getTimeout(), 3000u);
    }
    // Destroying the client closed its connection.
    EXPECT_EQ(localConnections, 2);
    EXPECT_EQ(record, (Lines{"setTimeout 20000", "setTimeout 45000", "disconnect",
                             "setTimeout 3000", "disconnect"}));
}

TEST_F(ClientConnection, AFailingCloseStillDisconnects) {
    struct FailingClose : RecordingConnection {
        using RecordingConnection::RecordingConnection;
        void disconnect() override {
            RecordingConnection::disconnect();
            throw CIMException(CIM_ERR_FAILED, "");
        }
    };
    CIMClientConnector::setLocal([this] { return std::make_unique<FailingClose>(record, mutex); });
    CIMClient client;
    client.connectLocal();
    EXPECT_THROW(client.disconnect(), CIMException);
    EXPECT_THROW(client.enumerateClassNames(ns), NotConnectedException);
    EXPECT_EQ(record, (Lines{"setTimeout 20000", "disconnect"}));
}

TEST_F(ClientConnection, AFactoryMayReplaceItselfWhileConnecting) {
    CIMClientConnector::setLocal([this] {
        CIMClientConnector::setLocal(nullptr);
        return std::make_unique<RecordingConnection>(record, mutex);
    });
    CIMClient first;
    first.connectLocal();
    CIMClient second;
    EXPECT_THROW(second.connectLocal(), CannotConnectException);
}

TEST_F(ClientConnection, ConnectPassesServerAndCredentialsAndAnEmptyHostWithAPortIsLocal) {
    CIMClientConnector::setRemote(
        [this](const String& host, Uint32 port, const String& user, const String& password) {
            std::lock_guard<std::mutex> lock(mutex);
            record.push_back("connect " + mof::utf8(host) + " " + std::to_string(port) + " " +
                             mof::utf8(user) + " " + mof::utf8(password));
            return std::make_unique<RecordingConnection>(record, mutex);
        });
    const std::pair<const char*, Uint32> servers[] = {{"array1", 5989}, {"", 5988}, {"", 0}};
    for (const auto& [host, port] : servers) {
        CIMClient client;
        client.connect(host, port, "alice", "secret");
    }
    EXPECT_EQ(localConnections, 0);
    EXPECT_EQ(record,
              (Lines{"connect array1 5989 alice secret", "setTimeout 20000", "disconnect",
                     "connect localhost 5988 alice secret", "setTimeout 20000", "disconnect",
                     "connect  0 alice secret", "setTimeout 20000", "disconnect"}));
}

} // namespace
} // namespace ksv::test
