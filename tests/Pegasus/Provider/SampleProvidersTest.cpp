#include "SampleProviders.h"

#include "MockCIMOMHandleBackend.h"
#include "MockCIMClientBackend.h"

#include <Pegasus/Client/CIMClient.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

PEGASUS_USING_PEGASUS;

using ::testing::_;
using ::testing::DoAll;
using ::testing::NiceMock;
using ::testing::Ref;
using ::testing::Return;
using ::testing::SetArgReferee;

namespace {

// Records what a provider hands the handler, in order.
template <class Handler, class Item>
class Recording : public Handler {
public:
    void processing() override { events.push_back("processing"); }
    void complete() override { events.push_back("complete"); }
    void deliver(const Item& item) override {
        events.push_back("deliver");
        items.append(item);
    }
    void deliver(const Array<Item>& many) override {
        for (Uint32 i = 0; i < many.size(); i++) {
            deliver(many[i]);
        }
    }

    std::vector<std::string> events;
    Array<Item> items;
};

using RecordingInstanceHandler = Recording<InstanceResponseHandler, CIMInstance>;
using RecordingPathHandler = Recording<ObjectPathResponseHandler, CIMObjectPath>;
using RecordingObjectHandler = Recording<ObjectResponseHandler, CIMObject>;

String keyOf(const CIMObjectPath& path, const char* key) {
    const Array<CIMKeyBinding>& keys = path.getKeyBindings();
    for (Uint32 i = 0; i < keys.size(); i++) {
        if (keys[i].getName().equal(CIMName(key))) {
            return keys[i].getValue();
        }
    }
    return "<missing>";
}

String stringProperty(const CIMInstance& instance, const char* name) {
    String value;
    instance.getProperty(instance.findProperty(CIMName(name))).getValue().get(value);
    return value;
}

CIMObjectPath diskPath(const char* deviceID) {
    return CIMObjectPath(String("//array1/root/sample:Sample_Disk.DeviceID=\"") + deviceID +
                         "\",SystemName=\"array1\"");
}

const CIMObjectPath systemPath("//array1/root/sample:Sample_System.Name=\"array1\"");
const std::vector<std::string> oneDelivery = {"processing", "deliver", "complete"};
const std::vector<std::string> twoDeliveries = {"processing", "deliver", "deliver", "complete"};

class SampleProviders : public ::testing::Test {
protected:
    void SetUp() override {
        context.insert(IdentityContainer("alice"));
        Array<CIMParamValue> cacheAnswer;
        cacheAnswer.append(CIMParamValue("SystemName", CIMValue(String("array1"))));
        EXPECT_CALL(*cimom, invokeMethod(_, CIMNamespaceName("root/PG_Internal"), _,
                                         CIMName("GetSystemName"), _, _))
            .WillOnce(DoAll(SetArgReferee<5>(cacheAnswer), Return(CIMValue(Uint32(0)))));
        Array<String> deviceIDs;
        deviceIDs.append("d1");
        deviceIDs.append("d2");
        disks.reset(new SampleDiskProvider("alice", deviceIDs));
        disks->initialize(handle);
        systemDisks.initialize(handle);
        CIMClientConnector::setLocal([] { return localServer(); });
    }

    void TearDown() override { CIMClientConnector::setLocal(nullptr); }

    // The local server knows the one system; each connection must be closed again.
    static std::unique_ptr<CIMClientBackend> localServer() {
        auto server = std::make_unique<NiceMock<MockCIMClientBackend>>();
        Array<CIMObjectPath> systems;
        systems.append(systemPath);
        ON_CALL(*server,
                enumerateInstanceNames(CIMNamespaceName("root/sample"), CIMName("Sample_System")))
            .WillByDefault(Return(systems));
        EXPECT_CALL(*server, disconnect());
        return server;
    }

    std::shared_ptr<MockCIMOMHandleBackend> cimom = std::make_shared<MockCIMOMHandleBackend>();
    CIMOMHandle handle{cimom};
    OperationContext context;
    std::unique_ptr<SampleDiskProvider> disks;
    SampleSystemDiskProvider systemDisks;
};

TEST_F(SampleProviders, EnumerateInstancesDeliversEveryDiskOfTheCachedSystem) {
    RecordingInstanceHandler handler;
    disks->enumerateInstances(context, CIMObjectPath("Sample_Disk"), false, false,
                              CIMPropertyList(), handler);

    EXPECT_EQ(handler.events, twoDeliveries);
    ASSERT_EQ(handler.items.size(), 2u);
    EXPECT_EQ(stringProperty(handler.items[1], "DeviceID"), "d2");
    EXPECT_EQ(stringProperty(handler.items[1], "SystemName"), "array1");
    EXPECT_EQ(handler.items[0].getPath(), diskPath("d1"));
}

TEST_F(SampleProviders, GetInstanceFindsTheDiskByItsKey) {
    RecordingInstanceHandler handler;
    disks->getInstance(context, diskPath("d2"), false, false, CIMPropertyList(), handler);
    EXPECT_EQ(handler.events, oneDelivery);
    EXPECT_EQ(stringProperty(handler.items[0], "DeviceID"), "d2");

    try {
        disks->getInstance(context, diskPath("d9"), false, false, CIMPropertyList(), handler);
        FAIL() << "nothing thrown";
    } catch (const CIMException& e) {
        EXPECT_EQ(e.getCode(), CIM_ERR_NOT_FOUND);
        EXPECT_EQ(e.getMessage(), "SampleDiskProvider CIM Object not found.");
    }
}

TEST_F(SampleProviders, RefusedUserIsDeniedBeforeAnyDelivery) {
    OperationContext intruder;
    intruder.insert(IdentityContainer("mallory"));
    RecordingInstanceHandler handler;
    try {
        disks->enumerateInstances(intruder, CIMObjectPath("Sample_Disk"), false, false,
                                  CIMPropertyList(), handler);
        FAIL() << "nothing thrown";
    } catch (const CIMException& e) {
        EXPECT_EQ(e.getCode(), CIM_ERR_ACCESS_DENIED);
        EXPECT_NE(e.getMessage().find("Insufficient privilege for the user"), PEG_NOT_FOUND);
    }
    EXPECT_TRUE(handler.events.empty());
}

TEST_F(SampleProviders, DisksOfTheSystemComeThroughTheHandleWithTheRequestContext) {
    Array<CIMObjectPath> known;
    known.append(diskPath("d1"));
    known.append(diskPath("d2"));
    EXPECT_CALL(*cimom, enumerateInstanceNames(Ref(context), CIMNamespaceName("root/sample"),
                                               CIMName("Sample_Disk")))
        .WillOnce(Return(known));

    RecordingPathHandler handler;
    systemDisks.associatorNames(context, systemPath, CIMName(), CIMName(), String(), String(),
                                handler);
    EXPECT_EQ(handler.events, twoDeliveries);
    EXPECT_EQ(handler.items[1], diskPath("d2"));
}

TEST_F(SampleProviders, AssociatorsFetchEachFarEndInstance) {
    Array<CIMObjectPath> known;
    known.append(diskPath("d1"));
    EXPECT_CALL(*cimom, enumerateInstanceNames(_, _, _)).WillOnce(Return(known));
    CIMInstance d1(CIMName("Sample_Disk"));
    d1.setPath(diskPath("d1"));
    EXPECT_CALL(*cimom, getInstance(Ref(context), CIMNamespaceName("root/sample"), diskPath("d1"),
                                    false, true, false, _))
        .WillOnce(Return(d1));

    RecordingObjectHandler handler;
    systemDisks.associators(context, systemPath, CIMName(), CIMName(), String(), String(), true,
                            false, CIMPropertyList(), handler);
    EXPECT_EQ(handler.events, oneDelivery);
    EXPECT_EQ(handler.items[0].getPath(), diskPath("d1"));
}

TEST_F(SampleProviders, SystemOfADiskComesThroughALocalClientConnection) {
    RecordingPathHandler handler;
    systemDisks.associatorNames(context, diskPath("d1"), CIMName(), CIMName(), String(), String(),
                                handler);
    EXPECT_EQ(handler.events, oneDelivery);
    EXPECT_EQ(handler.items[0], systemPath);
}

TEST_F(SampleProviders, ReferenceNamesNameBothEnds) {
    RecordingPathHandler handler;
    systemDisks.referenceNames(context, diskPath("d2"), CIMName(), String(), handler);
    ASSERT_EQ(handler.events, oneDelivery);
    EXPECT_EQ(handler.items[0].getClassName(), CIMName("Sample_SystemDisk"));
    EXPECT_EQ(CIMObjectPath(keyOf(handler.items[0], "GroupComponent")), systemPath);
    EXPECT_EQ(CIMObjectPath(keyOf(handler.items[0], "PartComponent")), diskPath("d2"));
}

TEST_F(SampleProviders, NoLocalServerMeansTheAssociationCannotBeResolved) {
    CIMClientConnector::setLocal(nullptr);
    RecordingObjectHandler handler;
    EXPECT_THROW(systemDisks.references(context, diskPath("d1"), CIMName(), String(), false, false,
                                        CIMPropertyList(), handler),
                 CannotConnectException);
    EXPECT_TRUE(handler.events.empty());
}

} // namespace
