#include "RecordingCIMOMHandleBackend.h"

#include <Pegasus/Provider/CIMOMHandle.h>

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>
#include <vector>

PEGASUS_USING_PEGASUS;
using namespace pegasus_testing;

namespace {

// Arguments of distinct values, so that a swapped or dropped one shows in the record.
struct A {
    A() {
        context.insert(IdentityContainer("alice"));
        list.set(Array<CIMName>(1, CIMName("DeviceID")));
        in.append(CIMParamValue("Selector", CIMValue(Sint32(-10))));
    }

    OperationContext context;
    const CIMNamespaceName ns{"root/ksv"};
    const CIMName cls{"KSV_DiskDrive"};
    const CIMObjectPath path{"KSV_DiskDrive.DeviceID=\"d1\""};
    const CIMInstance instance{CIMName("KSV_Disk")};
    const CIMClass cimClass{CIMName("KSV_Class")};
    CIMPropertyList list;
    Array<CIMParamValue> in;
};

using H = CIMOMHandle;

// One operation: the call through the handle, which shows its answer, the call the backend
// must see and the answer that must come back.
struct Operation {
    std::string name;
    std::function<std::string(H&, const A&)> call;
    std::string received;
    std::string answer;
};

const std::vector<Operation>& operations() {
    static const std::vector<Operation> all = {
        {"getClass",
         [](H& h, const A& a) {
             return show(h.getClass(a.context, a.ns, a.cls, true, false, true, a.list));
         },
         "alice root/ksv KSV_DiskDrive 1 0 1 DeviceID", "Answer_Class"},
        {"enumerateClasses",
         [](H& h, const A& a) {
             return show(h.enumerateClasses(a.context, a.ns, a.cls, false, true, false, true));
         },
         "alice root/ksv KSV_DiskDrive 0 1 0 1", "[Answer_Class]"},
        {"enumerateClassNames",
         [](H& h, const A& a) { return show(h.enumerateClassNames(a.context, a.ns, a.cls, true)); },
         "alice root/ksv KSV_DiskDrive 1", "[Answer_Class]"},
        {"createClass",
         [](H& h, const A& a) { return h.createClass(a.context, a.ns, a.cimClass), std::string(); },
         "alice root/ksv KSV_Class", ""},
        {"modifyClass",
         [](H& h, const A& a) { return h.modifyClass(a.context, a.ns, a.cimClass), std::string(); },
         "alice root/ksv KSV_Class", ""},
        {"deleteClass",
         [](H& h, const A& a) { return h.deleteClass(a.context, a.ns, a.cls), std::string(); },
         "alice root/ksv KSV_DiskDrive", ""},
        {"getInstance",
         [](H& h, const A& a) {
             return show(h.getInstance(a.context, a.ns, a.path, false, true, false, a.list));
         },
         "alice root/ksv KSV_DiskDrive.DeviceID=\"d1\" 0 1 0 DeviceID", "Answer_Instance"},
        {"enumerateInstances",
         [](H& h, const A& a) {
             return show(
                 h.enumerateInstances(a.context, a.ns, a.cls, true, false, false, true, a.list));
         },
         "alice root/ksv KSV_DiskDrive 1 0 0 1 DeviceID", "[Answer_Instance]"},
        {"enumerateInstanceNames",
         [](H& h, const A& a) { return show(h.enumerateInstanceNames(a.context, a.ns, a.cls)); },
         "alice root/ksv KSV_DiskDrive", "[Answer_Path.Id=1]"},
        {"createInstance",
         [](H& h, const A& a) { return show(h.createInstance(a.context, a.ns, a.instance)); },
         "alice root/ksv KSV_Disk", "Answer_Path.Id=1"},
        {"modifyInstance",
         [](H& h, const A& a) {
             return h.modifyInstance(a.context, a.ns, a.instance, true, a.list), std::string();
         },
         "alice root/ksv KSV_Disk 1 DeviceID", ""},
        {"deleteInstance",
         [](H& h, const A& a) { return h.deleteInstance(a.context, a.ns, a.path), std::string(); },
         "alice root/ksv KSV_DiskDrive.DeviceID=\"d1\"", ""},
        {"execQuery",
         [](H& h, const A& a) {
             return show(h.execQuery(a.context, a.ns, "WQL", "SELECT * FROM KSV_DiskDrive"));
         },
         "alice root/ksv WQL SELECT * FROM KSV_DiskDrive", "[Answer_Instance]"},
        {"associators",
         [](H& h, const A& a) {
             return show(h.associators(a.context, a.ns, a.path, "KSV_SystemDisk", "KSV_System",
                                       "PartComponent", "GroupComponent", false, true, a.list));
         },
         "alice root/ksv KSV_DiskDrive.DeviceID=\"d1\" KSV_SystemDisk KSV_System PartComponent "
         "GroupComponent 0 1 DeviceID",
         "[Answer_Instance]"},
        {"associatorNames",
         [](H& h, const A& a) {
             return show(h.associatorNames(a.context, a.ns, a.path, "KSV_SystemDisk", "KSV_System",
                                           "PartComponent", "GroupComponent"));
         },
         "alice root/ksv KSV_DiskDrive.DeviceID=\"d1\" KSV_SystemDisk KSV_System PartComponent "
         "GroupComponent",
         "[Answer_Path.Id=1]"},
        {"references",
         [](H& h, const A& a) {
             return show(h.references(a.context, a.ns, a.path, "KSV_SystemDisk", "PartComponent",
                                      true, false, a.list));
         },
         "alice root/ksv KSV_DiskDrive.DeviceID=\"d1\" KSV_SystemDisk PartComponent 1 0 DeviceID",
         "[Answer_Instance]"},
        {"referenceNames",
         [](H& h, const A& a) {
             return show(h.referenceNames(a.context, a.ns, a.path, "KSV_SystemDisk", "Dependent"));
         },
         "alice root/ksv KSV_DiskDrive.DeviceID=\"d1\" KSV_SystemDisk Dependent",
         "[Answer_Path.Id=1]"},
        {"getProperty",
         [](H& h, const A& a) {
             return show(h.getProperty(a.context, a.ns, a.path, "OperationalStatus"));
         },
         "alice root/ksv KSV_DiskDrive.DeviceID=\"d1\" OperationalStatus", "7"},
        {"setProperty",
         [](H& h, const A& a) {
             return h.setProperty(a.context, a.ns, a.path, "OperationalStatus",
                                  CIMValue(Uint16(2))),
                    std::string();
         },
         "alice root/ksv KSV_DiskDrive.DeviceID=\"d1\" OperationalStatus 2", ""},
        {"invokeMethod",
         [](H& h, const A& a) {
             Array<CIMParamValue> out;
             const CIMValue result = h.invokeMethod(a.context, a.ns, a.path, "Locate", a.in, out);
             return show(result) + " " + show(out);
         },
         "alice root/ksv KSV_DiskDrive.DeviceID=\"d1\" Locate [Selector=-10]", "7 [Out=answer]"},
    };
    return all;
}

const std::set<std::string> withDefault = {"enumerateClasses", "enumerateClassNames", "createClass",
                                           "modifyClass",      "deleteClass",         "execQuery"};

std::string failureOf(const Operation& operation, CIMOMHandle& handle, const A& a) {
    try {
        operation.call(handle, a);
    } catch (const CIMException& e) {
        return std::string(cimStatusCodeToString(e.getCode())) + ": " +
               std::string(e.getMessage().getCString());
    }
    return "no exception";
}

TEST(CIMOMHandle, EveryOperationForwardsItsArgumentsAndTheBackendsAnswer) {
    const A a;
    for (const Operation& operation : operations()) {
        auto backend = std::make_shared<RecordingCIMOMHandleBackend>();
        CIMOMHandle handle(backend);
        EXPECT_EQ(operation.answer, operation.call(handle, a)) << operation.name;
        EXPECT_EQ(std::vector<std::string>{operation.name + " " + operation.received},
                  backend->log.lines());
    }
}

TEST(CIMOMHandle, EveryOperationFailsNamingItselfWithoutBackend) {
    const A a;
    CIMOMHandle detached(nullptr);
    for (const Operation& operation : operations()) {
        EXPECT_EQ("CIM_ERR_FAILED: CIMOMHandle::" + operation.name +
                      ": the handle is not attached to a CIM server",
                  failureOf(operation, detached, a));
    }
    EXPECT_NO_THROW(detached.disallowProviderUnload());
    EXPECT_NO_THROW(detached.allowProviderUnload());
}

TEST(CIMOMHandleBackendDefaults, ClassOperationsAndQueriesAreNotSupported) {
    const A a;
    auto backend = std::make_shared<RecordingCIMOMHandleBackend>(false);
    CIMOMHandle handle(backend);
    for (const Operation& operation : operations()) {
        if (withDefault.count(operation.name)) {
            EXPECT_EQ("CIM_ERR_NOT_SUPPORTED: CIMOMHandle::" + operation.name +
                          " is not supported by this CIM server",
                      failureOf(operation, handle, a));
        }
    }
    EXPECT_NO_THROW(handle.disallowProviderUnload());
    EXPECT_NO_THROW(handle.allowProviderUnload());
    EXPECT_TRUE(backend->log.lines().empty());
}

TEST(CIMOMHandle, CopiesShareTheBackendAndUnloadPinningIsForwarded) {
    const A a;
    auto backend = std::make_shared<RecordingCIMOMHandleBackend>();
    CIMOMHandle handle(backend);
    CIMOMHandle copy(handle);
    CIMOMHandle assigned(nullptr);
    assigned = handle;
    handle.disallowProviderUnload();
    copy.enumerateInstanceNames(a.context, a.ns, a.cls);
    assigned.allowProviderUnload();
    EXPECT_EQ((std::vector<std::string>{"disallowProviderUnload",
                                        "enumerateInstanceNames alice root/ksv KSV_DiskDrive",
                                        "allowProviderUnload"}),
              backend->log.lines());
}

TEST(CIMOMHandle, DefaultBackendIsBoundWhenTheHandleIsConstructed) {
    const A a;
    auto backend = std::make_shared<RecordingCIMOMHandleBackend>();
    CIMOMHandleBackend::setDefault(backend);
    EXPECT_EQ(CIMOMHandleBackend::getDefault(), backend);
    CIMOMHandle bound;
    CIMOMHandleBackend::resetDefault();
    CIMOMHandle unbound;

    bound.enumerateInstanceNames(a.context, a.ns, a.cls);
    EXPECT_EQ("enumerateInstanceNames alice root/ksv KSV_DiskDrive", backend->log.last());
    EXPECT_EQ(CIMOMHandleBackend::getDefault(), nullptr);
    EXPECT_THROW(unbound.enumerateInstanceNames(a.context, a.ns, a.cls), CIMException);
}

} // namespace
