#include "MockCIMOMHandleBackend.h"

#include <Pegasus/Provider/CIMOMHandle.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

PEGASUS_USING_PEGASUS;

using ::testing::_;
using ::testing::DoAll;
using ::testing::Ref;
using ::testing::Return;
using ::testing::SetArgReferee;
using ::testing::StrictMock;

namespace {

using Backend = StrictMock<FullMockCIMOMHandleBackend>;

// Arguments and answers of distinct values, so that a swapped or dropped one shows.
struct Arguments {
    Arguments() {
        context.insert(IdentityContainer("alice"));
        Array<CIMName> names;
        names.append(CIMName("DeviceID"));
        propertyList.set(names);
        inParameters.append(CIMParamValue("Selector", CIMValue(Sint32(-10))));
        outParameters.append(CIMParamValue("SystemName", CIMValue(String("array1"))));
        paths.append(path);
        objects.append(CIMObject(instance));
        instances.append(instance);
        classNames.append(className);
    }

    OperationContext context;
    const CIMNamespaceName nameSpace{"root/ksv"};
    const CIMName className{"KSV_DiskDrive"};
    const CIMName assocClass{"KSV_SystemDisk"};
    const CIMName resultClass{"KSV_StorageSystem"};
    const CIMName propertyName{"OperationalStatus"};
    const CIMName methodName{"Locate"};
    const String role{"PartComponent"};
    const String resultRole{"GroupComponent"};
    const String queryLanguage{"WQL"};
    const String query{"SELECT * FROM KSV_DiskDrive"};
    const CIMObjectPath path{"//array1/root/ksv:KSV_DiskDrive.DeviceID=\"2000-id-1\""};
    const CIMInstance instance{CIMName("KSV_DiskDrive")};
    const CIMClass cimClass{CIMName("KSV_DiskDrive")};
    const CIMValue value{Uint16(2)};
    CIMPropertyList propertyList;
    Array<CIMParamValue> inParameters;
    Array<CIMParamValue> outParameters;
    Array<CIMObjectPath> paths;
    Array<CIMObject> objects;
    Array<CIMInstance> instances;
    Array<CIMName> classNames;
};

// One operation: what the backend must receive and answer, and the call through the handle
// that checks the answer comes back.
struct Operation {
    std::string name;
    std::function<void(Backend&, Arguments&)> expect;
    std::function<void(CIMOMHandle&, Arguments&)> call;
};

void PrintTo(const Operation& operation, std::ostream* os) {
    *os << operation.name;
}

const std::vector<Operation> operations = {
    {"getClass",
     [](Backend& b, Arguments& a) {
         EXPECT_CALL(b, getClass(Ref(a.context), Ref(a.nameSpace), Ref(a.className), true, false,
                                 true, Ref(a.propertyList)))
             .WillOnce(Return(a.cimClass));
     },
     [](CIMOMHandle& h, Arguments& a) {
         EXPECT_TRUE(
             h.getClass(a.context, a.nameSpace, a.className, true, false, true, a.propertyList)
                 .identical(a.cimClass));
     }},
    {"enumerateClasses",
     [](Backend& b, Arguments& a) {
         EXPECT_CALL(b, enumerateClasses(Ref(a.context), Ref(a.nameSpace), Ref(a.className), false,
                                         true, false, true))
             .WillOnce(Return(Array<CIMClass>(&a.cimClass, 1)));
     },
     [](CIMOMHandle& h, Arguments& a) {
         EXPECT_EQ(h.enumerateClasses(a.context, a.nameSpace, a.className, false, true, false, true)
                       .size(),
                   1u);
     }},
    {"enumerateClassNames",
     [](Backend& b, Arguments& a) {
         EXPECT_CALL(b,
                     enumerateClassNames(Ref(a.context), Ref(a.nameSpace), Ref(a.className), true))
             .WillOnce(Return(a.classNames));
     },
     [](CIMOMHandle& h, Arguments& a) {
         EXPECT_EQ(h.enumerateClassNames(a.context, a.nameSpace, a.className, true)[0],
                   a.className);
     }},
    {"createClass",
     [](Backend& b, Arguments& a) {
         EXPECT_CALL(b, createClass(Ref(a.context), Ref(a.nameSpace), Ref(a.cimClass)));
     },
     [](CIMOMHandle& h, Arguments& a) { h.createClass(a.context, a.nameSpace, a.cimClass); }},
    {"modifyClass",
     [](Backend& b, Arguments& a) {
         EXPECT_CALL(b, modifyClass(Ref(a.context), Ref(a.nameSpace), Ref(a.cimClass)));
     },
     [](CIMOMHandle& h, Arguments& a) { h.modifyClass(a.context, a.nameSpace, a.cimClass); }},
    {"deleteClass",
     [](Backend& b, Arguments& a) {
         EXPECT_CALL(b, deleteClass(Ref(a.context), Ref(a.nameSpace), Ref(a.className)));
     },
     [](CIMOMHandle& h, Arguments& a) { h.deleteClass(a.context, a.nameSpace, a.className); }},
    {"getInstance",
     [](Backend& b, Arguments& a) {
         EXPECT_CALL(b, getInstance(Ref(a.context), Ref(a.nameSpace), Ref(a.path), false, true,
                                    false, Ref(a.propertyList)))
             .WillOnce(Return(a.instance));
     },
     [](CIMOMHandle& h, Arguments& a) {
         EXPECT_TRUE(
             h.getInstance(a.context, a.nameSpace, a.path, false, true, false, a.propertyList)
                 .identical(a.instance));
     }},
    {"enumerateInstances",
     [](Backend& b, Arguments& a) {
         EXPECT_CALL(b, enumerateInstances(Ref(a.context), Ref(a.nameSpace), Ref(a.className), true,
                                           false, false, true, Ref(a.propertyList)))
             .WillOnce(Return(a.instances));
     },
     [](CIMOMHandle& h, Arguments& a) {
         EXPECT_TRUE(h.enumerateInstances(a.context, a.nameSpace, a.className, true, false, false,
                                          true, a.propertyList)[0]
                         .identical(a.instance));
     }},
    {"enumerateInstanceNames",
     [](Backend& b, Arguments& a) {
         EXPECT_CALL(b, enumerateInstanceNames(Ref(a.context), Ref(a.nameSpace), Ref(a.className)))
             .WillOnce(Return(a.paths));
     },
     [](CIMOMHandle& h, Arguments& a) {
         EXPECT_EQ(h.enumerateInstanceNames(a.context, a.nameSpace, a.className)[0], a.path);
     }},
    {"createInstance",
     [](Backend& b, Arguments& a) {
         EXPECT_CALL(b, createInstance(Ref(a.context), Ref(a.nameSpace), Ref(a.instance)))
             .WillOnce(Return(a.path));
     },
     [](CIMOMHandle& h, Arguments& a) {
         EXPECT_EQ(h.createInstance(a.context, a.nameSpace, a.instance), a.path);
     }},
    {"modifyInstance",
     [](Backend& b, Arguments& a) {
         EXPECT_CALL(b, modifyInstance(Ref(a.context), Ref(a.nameSpace), Ref(a.instance), true,
                                       Ref(a.propertyList)));
     },
     [](CIMOMHandle& h, Arguments& a) {
         h.modifyInstance(a.context, a.nameSpace, a.instance, true, a.propertyList);
     }},
    {"deleteInstance",
     [](Backend& b, Arguments& a) {
         EXPECT_CALL(b, deleteInstance(Ref(a.context), Ref(a.nameSpace), Ref(a.path)));
     },
     [](CIMOMHandle& h, Arguments& a) { h.deleteInstance(a.context, a.nameSpace, a.path); }},
    {"execQuery",
     [](Backend& b, Arguments& a) {
         EXPECT_CALL(
             b, execQuery(Ref(a.context), Ref(a.nameSpace), Ref(a.queryLanguage), Ref(a.query)))
             .WillOnce(Return(a.objects));
     },
     [](CIMOMHandle& h, Arguments& a) {
         EXPECT_EQ(h.execQuery(a.context, a.nameSpace, a.queryLanguage, a.query).size(), 1u);
     }},
    {"associators",
     [](Backend& b, Arguments& a) {
         EXPECT_CALL(b, associators(Ref(a.context), Ref(a.nameSpace), Ref(a.path),
                                    Ref(a.assocClass), Ref(a.resultClass), Ref(a.role),
                                    Ref(a.resultRole), false, true, Ref(a.propertyList)))
             .WillOnce(Return(a.objects));
     },
     [](CIMOMHandle& h, Arguments& a) {
         EXPECT_EQ(h.associators(a.context, a.nameSpace, a.path, a.assocClass, a.resultClass,
                                 a.role, a.resultRole, false, true, a.propertyList)
                       .size(),
                   1u);
     }},
    {"associatorNames",
     [](Backend& b, Arguments& a) {
         EXPECT_CALL(b, associatorNames(Ref(a.context), Ref(a.nameSpace), Ref(a.path),
                                        Ref(a.assocClass), Ref(a.resultClass), Ref(a.role),
                                        Ref(a.resultRole)))
             .WillOnce(Return(a.paths));
     },
     [](CIMOMHandle& h, Arguments& a) {
         EXPECT_EQ(h.associatorNames(a.context, a.nameSpace, a.path, a.assocClass, a.resultClass,
                                     a.role, a.resultRole)[0],
                   a.path);
     }},
    {"references",
     [](Backend& b, Arguments& a) {
         EXPECT_CALL(b,
                     references(Ref(a.context), Ref(a.nameSpace), Ref(a.path), Ref(a.resultClass),
                                Ref(a.role), true, false, Ref(a.propertyList)))
             .WillOnce(Return(a.objects));
     },
     [](CIMOMHandle& h, Arguments& a) {
         EXPECT_EQ(h.references(a.context, a.nameSpace, a.path, a.resultClass, a.role, true, false,
                                a.propertyList)
                       .size(),
                   1u);
     }},
    {"referenceNames",
     [](Backend& b, Arguments& a) {
         EXPECT_CALL(b, referenceNames(Ref(a.context), Ref(a.nameSpace), Ref(a.path),
                                       Ref(a.resultClass), Ref(a.role)))
             .WillOnce(Return(a.paths));
     },
     [](CIMOMHandle& h, Arguments& a) {
         EXPECT_EQ(h.referenceNames(a.context, a.nameSpace, a.path, a.resultClass, a.role)[0],
                   a.path);
     }},
    {"getProperty",
     [](Backend& b, Arguments& a) {
         EXPECT_CALL(
             b, getProperty(Ref(a.context), Ref(a.nameSpace), Ref(a.path), Ref(a.propertyName)))
             .WillOnce(Return(a.value));
     },
     [](CIMOMHandle& h, Arguments& a) {
         EXPECT_EQ(h.getProperty(a.context, a.nameSpace, a.path, a.propertyName), a.value);
     }},
    {"setProperty",
     [](Backend& b, Arguments& a) {
         EXPECT_CALL(b, setProperty(Ref(a.context), Ref(a.nameSpace), Ref(a.path),
                                    Ref(a.propertyName), Ref(a.value)));
     },
     [](CIMOMHandle& h, Arguments& a) {
         h.setProperty(a.context, a.nameSpace, a.path, a.propertyName, a.value);
     }},
    {"invokeMethod",
     [](Backend& b, Arguments& a) {
         EXPECT_CALL(b, invokeMethod(Ref(a.context), Ref(a.nameSpace), Ref(a.path),
                                     Ref(a.methodName), Ref(a.inParameters), _))
             .WillOnce(DoAll(SetArgReferee<5>(a.outParameters), Return(a.value)));
     },
     [](CIMOMHandle& h, Arguments& a) {
         Array<CIMParamValue> out;
         EXPECT_EQ(
             h.invokeMethod(a.context, a.nameSpace, a.path, a.methodName, a.inParameters, out),
             a.value);
         ASSERT_EQ(out.size(), 1u);
         EXPECT_EQ(out[0].getParameterName(), "SystemName");
     }},
};

CIMException caughtFrom(const Operation& operation, CIMOMHandle& handle, Arguments& a) {
    try {
        operation.call(handle, a);
    } catch (const CIMException& e) {
        return e;
    }
    ADD_FAILURE() << operation.name << " did not throw";
    return CIMException();
}

String expectedText(const std::string& text) {
    return String(text.c_str());
}

class CIMOMHandleOperation : public ::testing::TestWithParam<Operation> {
protected:
    Arguments a;
};

TEST_P(CIMOMHandleOperation, ForwardsArgumentsAndAnswerOfTheBackend) {
    auto backend = std::make_shared<Backend>();
    GetParam().expect(*backend, a);
    CIMOMHandle handle(backend);
    GetParam().call(handle, a);
}

TEST_P(CIMOMHandleOperation, FailsNamingItselfWithoutBackend) {
    CIMOMHandle detached(nullptr);
    CIMException e = caughtFrom(GetParam(), detached, a);
    EXPECT_EQ(e.getCode(), CIM_ERR_FAILED);
    EXPECT_EQ(e.getMessage(), expectedText("CIMOMHandle::" + GetParam().name +
                                           ": the handle is not attached to a CIM server"));
}

INSTANTIATE_TEST_SUITE_P(All, CIMOMHandleOperation, ::testing::ValuesIn(operations),
                         [](const ::testing::TestParamInfo<Operation>& info) {
                             return info.param.name;
                         });

TEST(CIMOMHandleBackendDefaults, ClassOperationsAndQueriesAreNotSupported) {
    CIMOMHandle handle(std::make_shared<StrictMock<MockCIMOMHandleBackend>>());
    Arguments a;
    const std::vector<std::string> unsupported = {"enumerateClasses", "enumerateClassNames",
                                                  "createClass",      "modifyClass",
                                                  "deleteClass",      "execQuery"};
    for (const Operation& operation : operations) {
        if (std::count(unsupported.begin(), unsupported.end(), operation.name) == 1) {
            CIMException e = caughtFrom(operation, handle, a);
            EXPECT_EQ(e.getCode(), CIM_ERR_NOT_SUPPORTED);
            EXPECT_EQ(e.getMessage(), expectedText("CIMOMHandle::" + operation.name +
                                                   " is not supported by this CIM server"));
        }
    }
    EXPECT_NO_THROW(handle.disallowProviderUnload());
    EXPECT_NO_THROW(handle.allowProviderUnload());
}

TEST(CIMOMHandle, UnloadPinningIsForwardedAndHarmlessWithoutBackend) {
    auto backend = std::make_shared<Backend>();
    ::testing::InSequence order;
    EXPECT_CALL(*backend, disallowProviderUnload());
    EXPECT_CALL(*backend, allowProviderUnload());
    CIMOMHandle handle(backend);
    handle.disallowProviderUnload();
    handle.allowProviderUnload();

    CIMOMHandle detached(nullptr);
    EXPECT_NO_THROW(detached.disallowProviderUnload());
    EXPECT_NO_THROW(detached.allowProviderUnload());
}

TEST(CIMOMHandle, CopiesShareTheBackend) {
    auto backend = std::make_shared<Backend>();
    Arguments a;
    EXPECT_CALL(*backend, enumerateInstanceNames(_, _, _))
        .Times(3)
        .WillRepeatedly(Return(Array<CIMObjectPath>()));
    CIMOMHandle handle(backend);
    CIMOMHandle copy(handle);
    CIMOMHandle assigned(nullptr);
    assigned = handle;
    for (CIMOMHandle* h : {&handle, &copy, &assigned}) {
        h->enumerateInstanceNames(a.context, a.nameSpace, a.className);
    }
}

class CIMOMHandleDefaultBackend : public ::testing::Test {
protected:
    void TearDown() override { CIMOMHandleBackend::resetDefault(); }

    Arguments a;
};

TEST_F(CIMOMHandleDefaultBackend, IsBoundWhenTheHandleIsConstructed) {
    auto backend = std::make_shared<Backend>();
    CIMOMHandleBackend::setDefault(backend);
    EXPECT_EQ(CIMOMHandleBackend::getDefault(), backend);
    CIMOMHandle bound;
    CIMOMHandleBackend::resetDefault();
    CIMOMHandle unbound;

    EXPECT_CALL(*backend, enumerateInstanceNames(Ref(a.context), _, _))
        .WillOnce(Return(Array<CIMObjectPath>()));
    bound.enumerateInstanceNames(a.context, a.nameSpace, a.className);
    EXPECT_EQ(CIMOMHandleBackend::getDefault(), nullptr);
    EXPECT_THROW(unbound.enumerateInstanceNames(a.context, a.nameSpace, a.className), CIMException);
}

} // namespace
