// What providers reach the server through: CIMOMHandle and an in-process CIMClient connection.
// Every operation must answer there as it answers a client over HTTP, with each argument reaching
// the provider in its place.
#include <gtest/gtest.h>

#include <Pegasus/Provider/CIMOMHandle.h>
#include <cimxml/Elements.h>

#include "TestServer.h"
#include "mof_compiler/NamespaceStore.h"

#include <functional>

namespace ksv::test {
namespace {

using namespace Pegasus;

// The answer as text, without the requesting user, who differs by path on purpose.
std::string shown(const CIMInstance& instance) {
    CIMInstance copy = instance.clone();
    const Uint32 user = copy.findProperty("RequestedBy");
    if (user != PEG_NOT_FOUND)
        copy.removeProperty(user);
    std::string xml;
    cimxml::appendInstance(xml, copy);
    return xml;
}
std::string shown(const CIMObject& object) {
    return object.isInstance() ? shown(CIMInstance(object)) : "class";
}
std::string shown(CIMObjectPath path) {
    path.setHost(String());
    path.setNameSpace(CIMNamespaceName());
    return mof::utf8(path.toString());
}
std::string shown(const CIMClass& cimClass) {
    std::string xml;
    cimxml::appendClass(xml, cimClass);
    return xml;
}
std::string shown(const CIMName& name) {
    return mof::utf8(name.getString());
}
std::string shown(const CIMValue& value) {
    std::string xml;
    cimxml::appendValue(xml, value);
    return xml;
}
std::string shown(const CIMParamValue& parameter) {
    std::string xml;
    cimxml::appendParamValue(xml, parameter);
    return xml;
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

// One operation, its arguments away from their defaults, through a client and through a handle;
// run in order, so that the writes at the end leave the devices as they were.
struct Operation {
    const char* name;
    std::function<std::string(CIMClient&)> client;
    std::function<std::string(CIMOMHandle&, const OperationContext&)> handle;
};

const std::vector<Operation>& operations() {
    using H = CIMOMHandle;
    using C = OperationContext;
    static const std::vector<Operation> all = {
        {"getClass",
         [](CIMClient& c) {
             return shown(c.getClass(ns, "KSV_TestDevice", true, false, true, CIMPropertyList()));
         },
         [](H& h, const C& x) {
             return shown(
                 h.getClass(x, ns, "KSV_TestDevice", true, false, true, CIMPropertyList()));
         }},
        {"enumerateClasses",
         [](CIMClient& c) { return shown(c.enumerateClasses(ns, "KSV_TestElement", true, false)); },
         [](H& h, const C& x) {
             return shown(h.enumerateClasses(x, ns, "KSV_TestElement", true, false, true, false));
         }},
        {"enumerateClassNames",
         [](CIMClient& c) { return shown(c.enumerateClassNames(ns, CIMName(), true)); },
         [](H& h, const C& x) { return shown(h.enumerateClassNames(x, ns, CIMName(), true)); }},
        {"getInstance",
         [](CIMClient& c) {
             return shown(c.getInstance(ns, gadgetPath("g-0"), false, true, false, kWeightAndName));
         },
         [](H& h, const C& x) {
             return shown(
                 h.getInstance(x, ns, gadgetPath("g-0"), false, true, false, kWeightAndName));
         }},
        {"enumerateInstances",
         [](CIMClient& c) {
             return shown(c.enumerateInstances(ns, "KSV_TestElement", false, false, false, true));
         },
         [](H& h, const C& x) {
             return shown(h.enumerateInstances(x, ns, "KSV_TestElement", false, false, false, true,
                                               CIMPropertyList()));
         }},
        {"enumerateInstanceNames",
         [](CIMClient& c) { return shown(c.enumerateInstanceNames(ns, "KSV_TestGadget")); },
         [](H& h, const C& x) { return shown(h.enumerateInstanceNames(x, ns, "KSV_TestGadget")); }},
        {"associators",
         [](CIMClient& c) {
             return shown(c.associators(ns, devicePath("dev-1"), "KSV_TestLink", "KSV_TestGadget",
                                        "Owner", "Member", true, false, kWeightAndName));
         },
         [](H& h, const C& x) {
             return shown(h.associators(x, ns, devicePath("dev-1"), "KSV_TestLink",
                                        "KSV_TestGadget", "Owner", "Member", true, false,
                                        kWeightAndName));
         }},
        // Each role once matching the object's end, once not.
        {"associatorNames",
         [](CIMClient& c) {
             return shown(c.associatorNames(ns, gadgetPath("g-0"), "KSV_TestLink", CIMName(),
                                            "Member")) +
                    shown(c.associatorNames(ns, gadgetPath("g-0"), CIMName(), CIMName(), "Owner"));
         },
         [](H& h, const C& x) {
             return shown(h.associatorNames(x, ns, gadgetPath("g-0"), "KSV_TestLink", CIMName(),
                                            "Member", String())) +
                    shown(h.associatorNames(x, ns, gadgetPath("g-0"), CIMName(), CIMName(), "Owner",
                                            String()));
         }},
        {"references",
         [](CIMClient& c) {
             return shown(c.references(ns, devicePath("dev-1"), "KSV_TestLink", "Owner", false,
                                       true, kOwner)) +
                    shown(c.references(ns, devicePath("dev-1"), CIMName(), "Member"));
         },
         [](H& h, const C& x) {
             return shown(h.references(x, ns, devicePath("dev-1"), "KSV_TestLink", "Owner", false,
                                       true, kOwner)) +
                    shown(h.references(x, ns, devicePath("dev-1"), CIMName(), "Member", false,
                                       false, CIMPropertyList()));
         }},
        {"referenceNames",
         [](CIMClient& c) {
             return shown(c.referenceNames(ns, gadgetPath("g-1"), "KSV_TestLink", "Member")) +
                    shown(c.referenceNames(ns, gadgetPath("g-1"), CIMName(), "Owner"));
         },
         [](H& h, const C& x) {
             return shown(h.referenceNames(x, ns, gadgetPath("g-1"), "KSV_TestLink", "Member")) +
                    shown(h.referenceNames(x, ns, gadgetPath("g-1"), CIMName(), "Owner"));
         }},
        {"invokeMethod",
         [](CIMClient& c) {
             Array<CIMParamValue> out;
             const std::string result =
                 shown(c.invokeMethod(ns, devicePath("dev-0"), "Reset", resetParameters(), out));
             return result + shown(out);
         },
         [](H& h, const C& x) {
             Array<CIMParamValue> out;
             const std::string result =
                 shown(h.invokeMethod(x, ns, devicePath("dev-0"), "Reset", resetParameters(), out));
             return result + shown(out);
         }},
        {"createInstance", [](CIMClient& c) { return shown(c.createInstance(ns, written("red"))); },
         [](H& h, const C& x) { return shown(h.createInstance(x, ns, written("red"))); }},
        {"modifyInstance",
         [](CIMClient& c) {
             c.modifyInstance(ns, written("green"), false, CIMPropertyList());
             c.modifyInstance(ns, written("red"), false, CIMPropertyList(Array<CIMName>()));
             return shown(c.getInstance(ns, devicePath("dev-w")));
         },
         [](H& h, const C& x) {
             h.modifyInstance(x, ns, written("green"), false, CIMPropertyList());
             h.modifyInstance(x, ns, written("red"), false, CIMPropertyList(Array<CIMName>()));
             return shown(
                 h.getInstance(x, ns, devicePath("dev-w"), true, false, false, CIMPropertyList()));
         }},
        {"setProperty",
         [](CIMClient& c) {
             c.setProperty(ns, devicePath("dev-w"), "Size", CIMValue(Uint32(7)));
             return shown(c.getProperty(ns, devicePath("dev-w"), "Size"));
         },
         [](H& h, const C& x) {
             h.setProperty(x, ns, devicePath("dev-w"), "Size", CIMValue(Uint32(7)));
             return shown(h.getProperty(x, ns, devicePath("dev-w"), "Size"));
         }},
        {"deleteInstance",
         [](CIMClient& c) {
             c.deleteInstance(ns, devicePath("dev-w"));
             return shown(c.enumerateInstanceNames(ns, "KSV_TestDevice"));
         },
         [](H& h, const C& x) {
             h.deleteInstance(x, ns, devicePath("dev-w"));
             return shown(h.enumerateInstanceNames(x, ns, "KSV_TestDevice"));
         }},
    };
    return all;
}

std::string failureText(const std::function<void()>& call) {
    const CIMException failure = failureOf(call);
    return std::string(cimStatusCodeToString(failure.getCode())) + ": " +
           mof::utf8(failure.getMessage());
}

// Each operation's name and answer, every operation run through one path.
std::vector<std::string> answers(const std::function<std::string(const Operation&)>& through) {
    std::vector<std::string> all;
    for (const Operation& operation : operations()) {
        std::string answer;
        try {
            answer = through(operation);
        } catch (const Exception& error) {
            answer = "failed: " + mof::utf8(error.getMessage());
        }
        all.push_back(std::string(operation.name) + ": " + answer);
    }
    return all;
}

TEST(InProcessAccess, EveryOperationAnswersAsOverHttp) {
    TestServer server;
    const OperationContext context;
    CIMOMHandle handle;
    CIMClient local;
    local.connectLocal();
    const auto http = server.client();
    const std::vector<std::string> overHttp =
        answers([&](const Operation& o) { return o.client(*http); });
    EXPECT_EQ(answers([&](const Operation& o) { return o.client(local); }), overHttp);
    EXPECT_EQ(answers([&](const Operation& o) { return o.handle(handle, context); }), overHttp);
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
        for (const Operation& operation : operations()) {
            EXPECT_EQ(failureText([&] { operation.handle(*unbound, context); }),
                      std::string("CIM_ERR_FAILED: CIMOMHandle::") + operation.name +
                          ": the handle is not attached to a CIM server");
        }
    }
}

} // namespace
} // namespace ksv::test
