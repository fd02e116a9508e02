// The provider module of the CIM server's tests (libKSVTestProviders.so): an instance and
// method provider, a second instance provider under the same base class, an association
// provider, one that fails on purpose and one that calls back into the server. What the tests
// cannot see through CIM they read through the ksvtest_* probes.
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/OperationContext.h>
#include <Pegasus/Client/CIMClient.h>
#include <Pegasus/Provider/CIMAssociationProvider.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>
#include <Pegasus/Provider/CIMMethodProvider.h>

#include <atomic>
#include <chrono>
#include <map>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "Probes.h"

PEGASUS_USING_PEGASUS;

namespace {

const CIMNamespaceName kNamespace("root/ksv");
const CIMName kDevice("KSV_TestDevice");
const CIMName kGadget("KSV_TestGadget");
const unsigned kGadgets = 2;

std::atomic<unsigned> operations{0};
std::atomic<unsigned> initializations{0};
std::atomic<unsigned> prematureCalls{0};
std::atomic<unsigned> delivered{0};

String userOf(const OperationContext& context) {
    if (!context.contains(IdentityContainer::NAME))
        return String();
    return IdentityContainer(context.get(IdentityContainer::NAME)).getUserName();
}

String keyOf(const CIMObjectPath& path, const char* keyName) {
    const Array<CIMKeyBinding>& keys = path.getKeyBindings();
    for (Uint32 i = 0; i < keys.size(); ++i) {
        if (keys[i].getName().equal(keyName))
            return keys[i].getValue();
    }
    throw CIMInvalidParameterException(String("missing key ") + keyName);
}

CIMObjectPath pathOf(const CIMName& className, const String& id) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding("Id", id, CIMKeyBinding::STRING));
    return CIMObjectPath(String(), kNamespace, className, keys);
}

CIMInstance element(const CIMName& className, const String& id, const CIMName& servedAs,
                    const OperationContext& context) {
    CIMInstance instance(className);
    instance.addProperty(CIMProperty("Id", CIMValue(id)));
    instance.addProperty(CIMProperty("Name", CIMValue(String("element ") + id)));
    instance.addProperty(CIMProperty("ServedAs", CIMValue(servedAs.getString())));
    instance.addProperty(CIMProperty("RequestedBy", CIMValue(userOf(context))));
    instance.setPath(pathOf(className, id));
    return instance;
}

// Counts operations; an operation before initialize has completed is a server fault.
class Provider : public virtual CIMProvider {
public:
    void initialize(CIMOMHandle& cimom) override {
        _cimom = cimom;
        ++initializations;
        // Slow on purpose: a server that lets calls in early would be caught here.
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        _initialized = true;
    }
    void terminate() override { delete this; }

protected:
    void enter() {
        ++operations;
        if (!_initialized)
            ++prematureCalls;
    }

    CIMOMHandle _cimom;

private:
    std::atomic<bool> _initialized{false};
};

// Instance operations that a provider does not serve.
class ReadOnlyInstances : public CIMInstanceProvider {
public:
    void modifyInstance(const OperationContext&, const CIMObjectPath&, const CIMInstance&,
                        const Boolean, const CIMPropertyList&, ResponseHandler&) override {
        throw CIMNotSupportedException("modifyInstance");
    }
    void createInstance(const OperationContext&, const CIMObjectPath&, const CIMInstance&,
                        ObjectPathResponseHandler&) override {
        throw CIMNotSupportedException("createInstance");
    }
    void deleteInstance(const OperationContext&, const CIMObjectPath&, ResponseHandler&) override {
        throw CIMNotSupportedException("deleteInstance");
    }
};

// ---- KSV_TestDevice
// ------------------------------------------------------------------------------

struct Device {
    Uint32 size = 0;
    String color = "grey";
};

class DeviceProvider : public Provider, public CIMInstanceProvider, public CIMMethodProvider {
public:
    DeviceProvider() { populate(3, 0); }

    void getInstance(const OperationContext& context, const CIMObjectPath& path, const Boolean,
                     const Boolean, const CIMPropertyList&,
                     InstanceResponseHandler& handler) override {
        enter();
        const String id = keyOf(path, "Id");
        std::lock_guard<std::mutex> lock(_mutex);
        auto found = _devices.find(std::string(id.getCString()));
        if (found == _devices.end())
            throw CIMObjectNotFoundException("KSV_TestDevice " + id);
        handler.processing();
        handler.deliver(build(found->first, found->second, path.getClassName(), context));
        handler.complete();
    }

    void enumerateInstances(const OperationContext& context, const CIMObjectPath& classReference,
                            const Boolean, const Boolean, const CIMPropertyList&,
                            InstanceResponseHandler& handler) override {
        enter();
        handler.processing();
        for (const auto& [id, device] : snapshot()) {
            handler.deliver(build(id, device, classReference.getClassName(), context));
            ++delivered;
        }
        handler.complete();
    }

    void enumerateInstanceNames(const OperationContext&, const CIMObjectPath&,
                                ObjectPathResponseHandler& handler) override {
        enter();
        handler.processing();
        for (const auto& entry : snapshot())
            handler.deliver(pathOf(kDevice, entry.first.c_str()));
        handler.complete();
    }

    void modifyInstance(const OperationContext&, const CIMObjectPath& path,
                        const CIMInstance& modified, const Boolean,
                        const CIMPropertyList& propertyList, ResponseHandler& handler) override {
        enter();
        Uint32 color = modified.findProperty("Color");
        std::lock_guard<std::mutex> lock(_mutex);
        auto found = _devices.find(std::string(keyOf(path, "Id").getCString()));
        if (found == _devices.end())
            throw CIMObjectNotFoundException("KSV_TestDevice " + keyOf(path, "Id"));
        if (color != PEG_NOT_FOUND && propertyList.useThisProperty("Color"))
            modified.getProperty(color).getValue().get(found->second.color);
        handler.complete();
    }

    void createInstance(const OperationContext&, const CIMObjectPath&, const CIMInstance& created,
                        ObjectPathResponseHandler& handler) override {
        enter();
        String id;
        created.getProperty(created.findProperty("Id")).getValue().get(id);
        std::lock_guard<std::mutex> lock(_mutex);
        if (!_devices.emplace(std::string(id.getCString()), Device{}).second)
            throw CIMObjectAlreadyExistsException("KSV_TestDevice " + id);
        handler.deliver(pathOf(kDevice, id));
        handler.complete();
    }

    void deleteInstance(const OperationContext&, const CIMObjectPath& path,
                        ResponseHandler& handler) override {
        enter();
        std::lock_guard<std::mutex> lock(_mutex);
        if (_devices.erase(std::string(keyOf(path, "Id").getCString())) == 0)
            throw CIMObjectNotFoundException("KSV_TestDevice " + keyOf(path, "Id"));
        handler.complete();
    }

    void invokeMethod(const OperationContext&, const CIMObjectPath&, const CIMName& methodName,
                      const Array<CIMParamValue>& in,
                      MethodResultResponseHandler& handler) override {
        enter();
        if (methodName.equal("Populate")) {
            Uint32 count = 0;
            Uint32 nameLength = 0;
            parameter(in, "Count").get(count);
            parameter(in, "NameLength").get(nameLength);
            populate(count, nameLength);
            handler.deliver(CIMValue(count));
        } else {
            Uint32 delay = 0;
            String mode;
            Boolean force = false;
            parameter(in, "Delay").get(delay);
            parameter(in, "Mode").get(mode);
            parameter(in, "Force").get(force);
            String result = mode + ":" + String(std::to_string(delay).c_str()) +
                            (force ? ":forced" : ":gentle");
            handler.deliverParamValue(CIMParamValue("Result", CIMValue(result)));
            handler.deliver(CIMValue(Uint32(delay * 2)));
        }
        handler.complete();
    }

private:
    static CIMValue parameter(const Array<CIMParamValue>& in, const char* name) {
        for (Uint32 i = 0; i < in.size(); ++i) {
            if (String::equalNoCase(in[i].getParameterName(), name))
                return in[i].getValue();
        }
        throw CIMInvalidParameterException(String("missing parameter ") + name);
    }

    void populate(Uint32 count, Uint32 nameLength) {
        std::lock_guard<std::mutex> lock(_mutex);
        _devices.clear();
        _nameLength = nameLength;
        for (Uint32 i = 0; i < count; ++i)
            _devices.emplace("dev-" + std::to_string(i), Device{i, "grey"});
    }

    std::map<std::string, Device> snapshot() {
        std::lock_guard<std::mutex> lock(_mutex);
        return _devices;
    }

    CIMInstance build(const std::string& id, const Device& device, const CIMName& servedAs,
                      const OperationContext& context) const {
        CIMInstance instance = element(kDevice, id.c_str(), servedAs, context);
        instance.addProperty(CIMProperty("Size", CIMValue(device.size)));
        instance.addProperty(CIMProperty("Color", CIMValue(device.color)));
        if (_nameLength > 0)
            instance.getProperty(instance.findProperty("Name"))
                .setValue(CIMValue(String(std::string(_nameLength, 'n').c_str())));
        return instance;
    }

    std::mutex _mutex;
    std::map<std::string, Device> _devices;
    Uint32 _nameLength = 0;
};

// ---- KSV_TestGadget
// ------------------------------------------------------------------------------

class GadgetProvider : public Provider, public ReadOnlyInstances {
public:
    void getInstance(const OperationContext& context, const CIMObjectPath& path, const Boolean,
                     const Boolean, const CIMPropertyList&,
                     InstanceResponseHandler& handler) override {
        enter();
        const String id = keyOf(path, "Id");
        for (Uint32 i = 0; i < kGadgets; ++i) {
            if (id == gadgetId(i)) {
                handler.deliver(build(i, path.getClassName(), context));
                handler.complete();
                return;
            }
        }
        throw CIMObjectNotFoundException("KSV_TestGadget " + id);
    }

    void enumerateInstances(const OperationContext& context, const CIMObjectPath& classReference,
                            const Boolean, const Boolean, const CIMPropertyList&,
                            InstanceResponseHandler& handler) override {
        enter();
        for (Uint32 i = 0; i < kGadgets; ++i)
            handler.deliver(build(i, classReference.getClassName(), context));
        handler.complete();
    }

    void enumerateInstanceNames(const OperationContext&, const CIMObjectPath&,
                                ObjectPathResponseHandler& handler) override {
        enter();
        for (Uint32 i = 0; i < kGadgets; ++i)
            handler.deliver(pathOf(kGadget, gadgetId(i)));
        handler.complete();
    }

    static String gadgetId(Uint32 index) { return String(("g-" + std::to_string(index)).c_str()); }

private:
    static CIMInstance build(Uint32 index, const CIMName& servedAs,
                             const OperationContext& context) {
        CIMInstance instance = element(kGadget, gadgetId(index), servedAs, context);
        // A qualifier and a class origin, for the tests of IncludeQualifiers and
        // IncludeClassOrigin.
        instance.addQualifier(CIMQualifier("Description", CIMValue(String("a gadget"))));
        instance.addProperty(
            CIMProperty("Weight", CIMValue(Sint64(100 + index)), 0, CIMName(), kGadget));
        return instance;
    }
};

// ---- KSV_TestLink
// --------------------------------------------------------------------------------

class LinkProvider : public Provider, public ReadOnlyInstances, public CIMAssociationProvider {
public:
    void getInstance(const OperationContext&, const CIMObjectPath&, const Boolean, const Boolean,
                     const CIMPropertyList&, InstanceResponseHandler&) override {
        throw CIMNotSupportedException("KSV_TestLink.getInstance");
    }

    void enumerateInstances(const OperationContext& context, const CIMObjectPath&, const Boolean,
                            const Boolean, const CIMPropertyList&,
                            InstanceResponseHandler& handler) override {
        enter();
        handler.deliver(links(context));
        handler.complete();
    }

    void enumerateInstanceNames(const OperationContext&, const CIMObjectPath&,
                                ObjectPathResponseHandler&) override {
        throw CIMNotSupportedException("KSV_TestLink.enumerateInstanceNames");
    }

    void associators(const OperationContext& context, const CIMObjectPath& objectName,
                     const CIMName&, const CIMName&, const String& role, const String& resultRole,
                     const Boolean, const Boolean, const CIMPropertyList&,
                     ObjectResponseHandler& handler) override {
        enter();
        for (const CIMObjectPath& far : farEnds(context, objectName, role, resultRole))
            handler.deliver(CIMObject(_cimom.getInstance(context, kNamespace, far, false, false,
                                                         false, CIMPropertyList())));
        handler.complete();
    }

    void associatorNames(const OperationContext& context, const CIMObjectPath& objectName,
                         const CIMName&, const CIMName&, const String& role,
                         const String& resultRole, ObjectPathResponseHandler& handler) override {
        enter();
        for (const CIMObjectPath& far : farEnds(context, objectName, role, resultRole))
            handler.deliver(far);
        handler.complete();
    }

    void references(const OperationContext& context, const CIMObjectPath& objectName,
                    const CIMName&, const String& role, const Boolean, const Boolean,
                    const CIMPropertyList&, ObjectResponseHandler& handler) override {
        enter();
        for (const CIMInstance& link : linksOf(context, objectName, role))
            handler.deliver(CIMObject(link));
        handler.complete();
    }

    void referenceNames(const OperationContext& context, const CIMObjectPath& objectName,
                        const CIMName&, const String& role,
                        ObjectPathResponseHandler& handler) override {
        enter();
        for (const CIMInstance& link : linksOf(context, objectName, role))
            handler.deliver(link.getPath());
        handler.complete();
    }

private:
    static CIMInstance link(const CIMObjectPath& owner, const CIMObjectPath& member) {
        CIMInstance instance("KSV_TestLink");
        instance.addProperty(CIMProperty("Owner", CIMValue(owner), 0, kDevice));
        instance.addProperty(CIMProperty("Member", CIMValue(member), 0, kGadget));
        Array<CIMKeyBinding> keys;
        keys.append(CIMKeyBinding("Owner", CIMValue(owner)));
        keys.append(CIMKeyBinding("Member", CIMValue(member)));
        instance.setPath(CIMObjectPath(String(), kNamespace, "KSV_TestLink", keys));
        return instance;
    }

    // The devices come from their own provider, through the server.
    Array<CIMInstance> links(const OperationContext& context) {
        Array<CIMObjectPath> devices = _cimom.enumerateInstanceNames(context, kNamespace, kDevice);
        Array<CIMInstance> result;
        for (Uint32 i = 0; i < devices.size(); ++i) {
            CIMObjectPath owner = pathOf(kDevice, keyOf(devices[i], "Id"));
            result.append(link(owner, pathOf(kGadget, GadgetProvider::gadgetId(i % kGadgets))));
        }
        return result;
    }

    std::vector<CIMInstance> linksOf(const OperationContext& context,
                                     const CIMObjectPath& objectName, const String& role) {
        const bool isDevice = objectName.getClassName().equal(kDevice);
        const char* end = isDevice ? "Owner" : "Member";
        std::vector<CIMInstance> result;
        if (role.size() != 0 && !String::equalNoCase(role, end))
            return result;
        const String id = keyOf(objectName, "Id");
        Array<CIMInstance> all = links(context);
        for (Uint32 i = 0; i < all.size(); ++i) {
            CIMObjectPath reference;
            all[i].getProperty(all[i].findProperty(end)).getValue().get(reference);
            if (keyOf(reference, "Id") == id)
                result.push_back(all[i]);
        }
        return result;
    }

    std::vector<CIMObjectPath> farEnds(const OperationContext& context,
                                       const CIMObjectPath& objectName, const String& role,
                                       const String& resultRole) {
        const char* farEnd = objectName.getClassName().equal(kDevice) ? "Member" : "Owner";
        std::vector<CIMObjectPath> result;
        if (resultRole.size() != 0 && !String::equalNoCase(resultRole, farEnd))
            return result;
        for (const CIMInstance& found : linksOf(context, objectName, role)) {
            CIMObjectPath far;
            found.getProperty(found.findProperty(farEnd)).getValue().get(far);
            result.push_back(far);
        }
        return result;
    }
};

// ---- KSV_TestFaulty
// ------------------------------------------------------------------------------

class FaultyProvider : public Provider, public ReadOnlyInstances {
public:
    void getInstance(const OperationContext&, const CIMObjectPath& path, const Boolean,
                     const Boolean, const CIMPropertyList&, InstanceResponseHandler&) override {
        enter();
        const String id = keyOf(path, "Id");
        if (id == "denied")
            throw CIMAccessDeniedException("KSV_TestFaulty: Insufficient privilege for the user");
        if (id == "std")
            throw std::runtime_error("the faulty provider broke");
        if (id == "int")
            throw 42;
        throw CIMObjectNotFoundException("KSV_TestFaulty " + id);
    }

    // Fails once the response has long started streaming.
    void enumerateInstances(const OperationContext&, const CIMObjectPath&, const Boolean,
                            const Boolean, const CIMPropertyList&,
                            InstanceResponseHandler& handler) override {
        enter();
        const String padding(std::string(200, 'p').c_str());
        for (unsigned i = 0; i < 2000; ++i) {
            CIMInstance instance("KSV_TestFaulty");
            String id(("f-" + std::to_string(i)).c_str());
            instance.addProperty(CIMProperty("Id", CIMValue(id)));
            instance.addProperty(CIMProperty("Padding", CIMValue(padding)));
            instance.setPath(pathOf("KSV_TestFaulty", id));
            handler.deliver(instance);
        }
        throw CIMOperationFailedException("enumeration broke midway");
    }

    // Fails while what it delivered is still unsent.
    void enumerateInstanceNames(const OperationContext&, const CIMObjectPath&,
                                ObjectPathResponseHandler& handler) override {
        enter();
        handler.deliver(pathOf("KSV_TestFaulty", "f-0"));
        throw std::runtime_error("names broke early");
    }
};

// ---- KSV_TestNested
// ------------------------------------------------------------------------------

class NestedProvider : public Provider, public ReadOnlyInstances {
public:
    // As the array's providers read their system identity: a local client call from initialize.
    void initialize(CIMOMHandle& cimom) override {
        CIMClient client;
        client.connectLocal();
        _gadgetsAtStart = client.enumerateInstanceNames(kNamespace, kGadget).size();
        client.disconnect();
        Provider::initialize(cimom);
    }

    void getInstance(const OperationContext&, const CIMObjectPath&, const Boolean, const Boolean,
                     const CIMPropertyList&, InstanceResponseHandler& handler) override {
        enter();
        handler.deliver(build());
        handler.complete();
    }

    void enumerateInstances(const OperationContext&, const CIMObjectPath&, const Boolean,
                            const Boolean, const CIMPropertyList&,
                            InstanceResponseHandler& handler) override {
        enter();
        handler.deliver(build());
        handler.complete();
    }

    void enumerateInstanceNames(const OperationContext&, const CIMObjectPath&,
                                ObjectPathResponseHandler& handler) override {
        enter();
        handler.deliver(pathOf("KSV_TestNested", "nested"));
        handler.complete();
    }

private:
    CIMInstance build() {
        Uint32 viaHandle =
            _cimom.enumerateInstanceNames(OperationContext(), kNamespace, kDevice).size();
        CIMClient client;
        client.connectLocal();
        Uint32 viaClient = client.enumerateInstanceNames(kNamespace, kDevice).size();
        CIMInstance device = client.getInstance(kNamespace, pathOf(kDevice, "dev-0"));
        client.disconnect();
        String nestedUser;
        device.getProperty(device.findProperty("RequestedBy")).getValue().get(nestedUser);

        CIMInstance instance("KSV_TestNested");
        instance.addProperty(CIMProperty("Id", CIMValue(String("nested"))));
        instance.addProperty(CIMProperty("ViaHandle", CIMValue(viaHandle)));
        instance.addProperty(CIMProperty("ViaClient", CIMValue(viaClient)));
        instance.addProperty(CIMProperty("NestedUser", CIMValue(nestedUser)));
        instance.addProperty(CIMProperty("GadgetsAtStart", CIMValue(_gadgetsAtStart)));
        instance.setPath(pathOf("KSV_TestNested", "nested"));
        return instance;
    }

    Uint32 _gadgetsAtStart = 0;
};

} // namespace

extern "C" PEGASUS_EXPORT CIMProvider* PegasusCreateProvider(const String& providerName) {
    if (providerName == "KSV_TestDeviceProvider")
        return new DeviceProvider;
    if (providerName == "KSV_TestGadgetProvider")
        return new GadgetProvider;
    if (providerName == "KSV_TestLinkProvider")
        return new LinkProvider;
    if (providerName == "KSV_TestFaultyProvider")
        return new FaultyProvider;
    if (providerName == "KSV_TestNestedProvider")
        return new NestedProvider;
    return nullptr;
}

// ---- Probes
// --------------------------------------------------------------------------------------

unsigned ksvtest_operations() {
    return operations;
}

unsigned ksvtest_initializations() {
    return initializations;
}

unsigned ksvtest_premature_calls() {
    return prematureCalls;
}

unsigned ksvtest_delivered() {
    return delivered;
}
