#include "SampleProvider.h"

#include "RecordingCIMOMHandleBackend.h"
#include "../Client/RecordingCIMClientBackend.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

PEGASUS_USING_PEGASUS;
using namespace pegasus_testing;

namespace {

using Lines = std::vector<std::string>;

// Records what a provider hands the handler, in order.
template <class Handler, class Item>
class Recording : public Handler {
public:
    void processing() override { events += "processing "; }
    void complete() override { events += "complete"; }
    void deliver(const Item& item) override {
        events += "deliver ";
        items.append(item);
    }
    void deliver(const Array<Item>& many) override {
        for (Uint32 i = 0; i < many.size(); i++)
            deliver(many[i]);
    }

    std::string events;
    Array<Item> items;
};

using InstanceHandler = Recording<InstanceResponseHandler, CIMInstance>;
using PathHandler = Recording<ObjectPathResponseHandler, CIMObjectPath>;

CIMObjectPath diskPath(const char* deviceID) {
    return CIMObjectPath(String("//array1/root/sample:Sample_Disk.DeviceID=\"") + deviceID +
                         "\",SystemName=\"array1\"");
}

const CIMObjectPath systemPath("//array1/root/sample:Sample_System.Name=\"array1\"");

std::string text(const CIMValue& value) {
    return show(value);
}

class SampleProvider : public ::testing::Test {
protected:
    void SetUp() override {
        context.insert(IdentityContainer("alice"));
        cimom->answers.outParameters =
            Array<CIMParamValue>(1, CIMParamValue("SystemName", CIMValue(String("array1"))));
        cimom->answers.paths = Array<CIMObjectPath>(1, diskPath("d1"));
        cimom->answers.paths.append(diskPath("d2"));
        Array<String> deviceIDs(1, "d1");
        deviceIDs.append("d2");
        disks.reset(new SampleDiskProvider("alice", deviceIDs));
        disks->initialize(handle);
        EXPECT_EQ("invokeMethod - root/PG_Internal "
                  "//localhost/root/PG_Internal:Sample_InternalCache.InstanceID="
                  "\"localhost-InternalCache\" GetSystemName []",
                  cimom->log.last());
        cimom->log.clear();
        // The local server knows the one system.
        CIMClientConnector::setLocal([this] {
            Answers server;
            server.paths = Array<CIMObjectPath>(1, systemPath);
            return std::make_unique<RecordingCIMClientBackend>(localServer, server);
        });
    }

    void TearDown() override { CIMClientConnector::setLocal(nullptr); }

    std::shared_ptr<RecordingCIMOMHandleBackend> cimom =
        std::make_shared<RecordingCIMOMHandleBackend>();
    std::shared_ptr<CallLog> localServer = std::make_shared<CallLog>();
    CIMOMHandle handle{cimom};
    OperationContext context;
    std::unique_ptr<SampleDiskProvider> disks;
};

TEST_F(SampleProvider, InstancesOfTheCachedSystemAreEnumeratedAndFoundByKey) {
    InstanceHandler all;
    disks->enumerateInstances(context, CIMObjectPath("Sample_Disk"), false, false,
                              CIMPropertyList(), all);
    EXPECT_EQ("processing deliver deliver complete", all.events);
    ASSERT_EQ(2u, all.items.size());
    EXPECT_EQ("d2",
              text(all.items[1].getProperty(all.items[1].findProperty("DeviceID")).getValue()));
    EXPECT_EQ("array1",
              text(all.items[1].getProperty(all.items[1].findProperty("SystemName")).getValue()));
    EXPECT_EQ(diskPath("d1"), all.items[0].getPath());

    PathHandler names;
    disks->enumerateInstanceNames(context, CIMObjectPath("Sample_Disk"), names);
    EXPECT_EQ("processing deliver deliver complete", names.events);
    EXPECT_EQ(diskPath("d2"), names.items[1]);

    InstanceHandler one;
    disks->getInstance(context, diskPath("d2"), false, false, CIMPropertyList(), one);
    EXPECT_EQ("processing deliver complete", one.events);
    EXPECT_EQ(diskPath("d2"), one.items[0].getPath());
    try {
        disks->getInstance(context, diskPath("d9"), false, false, CIMPropertyList(), one);
        FAIL() << "nothing thrown";
    } catch (const CIMException& e) {
        EXPECT_EQ(CIM_ERR_NOT_FOUND, e.getCode());
        EXPECT_EQ("SampleDiskProvider CIM Object not found.", e.getMessage());
    }
    EXPECT_TRUE(cimom->log.lines().empty());
}

TEST_F(SampleProvider, FarEndsComeThroughTheHandleOrALocalClientConnection) {
    PathHandler disksOfSystem;
    disks->associatorNames(context, systemPath, CIMName(), CIMName(), String(), String(),
                           disksOfSystem);
    EXPECT_EQ("processing deliver deliver complete", disksOfSystem.events);
    EXPECT_EQ(diskPath("d2"), disksOfSystem.items[1]);
    EXPECT_EQ(Lines{"enumerateInstanceNames alice root/sample Sample_Disk"}, cimom->log.lines());

    PathHandler systemOfDisk;
    disks->associatorNames(context, diskPath("d2"), CIMName(), CIMName(), String(), String(),
                           systemOfDisk);
    EXPECT_EQ("processing deliver complete", systemOfDisk.events);
    EXPECT_EQ(systemPath, systemOfDisk.items[0]);
    EXPECT_EQ((Lines{"setTimeout 20000", "enumerateInstanceNames root/sample Sample_System",
                     "disconnect"}),
              localServer->lines());

    CIMClientConnector::setLocal(nullptr);
    PathHandler none;
    EXPECT_THROW(disks->associatorNames(context, diskPath("d1"), CIMName(), CIMName(), String(),
                                        String(), none),
                 CannotConnectException);
    EXPECT_EQ("", none.events);
}

} // namespace
