// The provider module of the CIM server's tests (libKSVTestProviders.so): one element provider
// serving KSV_TestDevice (instances, changes and methods) and, read-only, KSV_TestGadget under the
// same base class; an association provider; one that fails on purpose and one that calls back
// into the server. What the tests cannot see through CIM they read through the ksvtest_* probes.
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

std::atomic<unsigned> counts[KSVTEST_PREMATURE_CALLS + 1];

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

// Counts operations; an operation before initialize has completed is a server fault. The
// server asks each provider for the interfaces of its operations, so a provider implements only
// those its tests call.
class Provider : public virtual CIMProvider {
public:
    void initialize(CIMOMHandle& cimom) override {
        _cimom = cimom;
        ++counts[KSVTEST_INITIALIZATIONS];
        // Slow on purpose: a server that lets calls in early would be caught here.
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        _initialized = true;
    }
    void terminate() override { delete this; }

protected:
    void enter() {
        ++counts[KSVTEST_OPERATIONS];
        if (!_initialized)
            ++counts[KSVTEST_PREMATURE_CALLS];
    }

    CIMOMHandle _cimom;

private:
    std::atomic<bool> _initialized{false};
};

// ---- KSV_TestDevice and KSV_TestGadget ------------------------------------------------------

class ElementProvider : public Provider, public CIMInstanceProvider, public CIMMethodProvider {
public:
    explicit ElementProvider(const CIMName& className) : _class(className) {
        populate(_class.equal(kDevice) ? 3 : 2, 0);
    }

    void getInstance(const OperationContext& context, const CIMObjectPath& path, const Boolean,
                     const Boolean, const CIMPropertyList&,
                     InstanceResponseHandler& handler) override {
        enter();
        const std::string id(keyOf(path, "Id").getCString());
        const auto elements = snapshot();
        const auto found = elements.find(id);
        if (found == elements.end())
            throw CIMObjectNotFoundException(_class.getString() + " " + id.c_str());
        handler.deliver(build(*found, path.getClassName(), context));
        handler.complete();
    }

    void enumerateInstances(const OperationContext& context, const CIMObjectPath& classReference,
                            const Boolean, const Boolean, const CIMPropertyList&,
                            InstanceResponseHandler& handler) override {
        enter();
        handler.processing();
        for (const auto& element : snapshot())
            handler.deliver(build(element, classReference.getClassName(), context));
        handler.complete();
    }

    void enumerateInstanceNames(const OperationContext&, const CIMObjectPath&,
                                ObjectPathResponseHandler& handler) override {
        enter();
        for (const auto& element : snapshot())
            handler.deliver(pathOf(_class, element.first.c_str()));
        handler.complete();
    }

    void modifyInstance(const OperationContext&, const CIMObjectPath& path,
                        const CIMInstance& modified, const Boolean,
                        const CIMPropertyList& propertyList, ResponseHandler& handler) override {
        enter();
        std::lock_guard<std::mutex> lock(_mutex);
        Element& element = existing(path);
        Uint32 color = modified.findProperty("Color");
        if (color != PEG_NOT_FOUND && propertyList.useThisProperty("Color"))
            modified.getProperty(color).getValue().get(element.color);
        // A number, so that a value the client sent untyped must have been typed by the server.
        Uint32 size = modified.findProperty("Size");
        if (size != PEG_NOT_FOUND && propertyList.useThisProperty("Size"))
            modified.getProperty(size).getValue().get(element.number);
        handler.complete();
    }

    void createInstance(const OperationContext&, const CIMObjectPath&, const CIMInstance& created,
                        ObjectPathResponseHandler& handler) override {
        enter();
        requireDevice();
        String id;
        created.getProperty(created.findProperty("Id")).getValue().get(id);
        std::lock_guard<std::mutex> lock(_mutex);
        _elements.emplace(std::string(id.getCString()), Element{});
        handler.deliver(pathOf(_class, id));
        handler.complete();
    }

    void deleteInstance(const OperationContext&, const CIMObjectPath& path,
                        ResponseHandler& handler) override {
        enter();
        std::lock_guard<std::mutex> lock(_mutex);
        existing(path);
        _elements.erase(std::string(keyOf(path, "Id").getCString()));
        handler.complete();
    }

    // Populate(Count, NameLength) replaces the devices; Reset(Delay, Mode, Force) answers Delay
    // doubled and echoes its parameters as received.
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
    struct Element {
        Uint32 number = 0;
        String color = "grey";
    };

    static CIMValue parameter(const Array<CIMParamValue>& in, const char* name) {
        for (Uint32 i = 0; i < in.size(); ++i) {
            if (String::equalNoCase(in[i].getParameterName(), name))
                return in[i].getValue();
        }
        throw CIMInvalidParameterException(String("missing parameter ") + name);
    }

    void requireDevice() const {
        if (!_class.equal(kDevice))
            throw CIMNotSupportedException("gadgets cannot be changed");
    }

    // The caller holds the lock.
    Element& existing(const CIMObjectPath& path) {
        requireDevice();
        auto found = _elements.find(std::string(keyOf(path, "Id").getCString()));
        if (found == _elements.end())
            throw CIMObjectNotFoundException("KSV_TestDevice " + keyOf(path, "Id"));
        return found->second;
    }

    void populate(Uint32 count, Uint32 nameLength) {
        std::lock_guard<std::mutex> lock(_mutex);
        _elements.clear();
        _nameLength = nameLength;
        const std::string prefix = _class.equal(kDevice) ? "dev-" : "g-";
        for (Uint32 i = 0; i < count; ++i)
            _elements.emplace(prefix + std::to_string(i), Element{i, "grey"});
    }

    std::map<std::string, Element> snapshot() {
        std::lock_guard<std::mutex> lock(_mutex);
        return _elements;
    }

    CIMInstance build(const std::pair<const std::string, Element>& element, const CIMName& servedAs,
                      const OperationContext& context) const {
        const String id(element.first.c_str());
        String user;
        if (context.contains(IdentityContainer::NAME))
            user = IdentityContainer(context.get(IdentityContainer::NAME)).getUserName();
        CIMInstance instance(_class);
        instance.addProperty(CIMProperty("Id", CIMValue(id)));
        instance.addProperty(CIMProperty(
            "Name", CIMValue(_nameLength > 0 ? String(std::string(_nameLength, 'n').c_str())
                                             : "element " + id)));
        instance.addProperty(CIMProperty("ServedAs", CIMValue(servedAs.getString())));
        instance.addProperty(CIMProperty("RequestedBy", CIMValue(user)));
        if (_class.equal(kDevice)) {
            instance.addProperty(CIMProperty("Size", CIMValue(element.second.number)));
            instance.addProperty(CIMProperty("Color", CIMValue(element.second.color)));
        } else {
            // A qualifier and a class origin, for IncludeQualifiers and IncludeClassOrigin.
            instance.addQualifier(CIMQualifier("Description", CIMValue(String("a gadget"))));
            instance.addProperty(CIMProperty(
                "Weight", CIMValue(Sint64(100 + element.second.number)), 0, CIMName(), kGadget));
        }
        instance.setPath(pathOf(_class, id));
        return instance;
    }

    const CIMName _class;
    std::mutex _mutex;
    std::map<std::string, Element> _elements;
    Uint32 _nameLength = 0;
};

// ---- KSV_TestLink: device i holds gadget i modulo 2 -------------------------------------------

class LinkProvider : public Provider, public CIMAssociationProvider {
public:
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
        for (const CIMInstance& link : links(context, objectName, role))
            handler.deliver(CIMObject(link));
        handler.complete();
    }

    void referenceNames(const OperationContext& context, const CIMObjectPath& objectName,
                        const CIMName&, const String& role,
                        ObjectPathResponseHandler& handler) override {
        enter();
        for (const CIMInstance& link : links(context, objectName, role))
            handler.deliver(link.getPath());
        handler.complete();
    }

private:
    static const char* endOf(const CIMObjectPath& object) {
        return object.getClassName().equal(kDevice) ? "Owner" : "Member";
    }

    // The links that hold the object in the role its class plays. The devices come from their own
    // provider, through the server.
    std::vector<CIMInstance> links(const OperationContext& context, const CIMObjectPath& object,
                                   const String& role) {
        std::vector<CIMInstance> result;
        if (role.size() != 0 && !String::equalNoCase(role, endOf(object)))
            return result;
        Array<CIMObjectPath> devices = _cimom.enumerateInstanceNames(context, kNamespace, kDevice);
        for (Uint32 i = 0; i < devices.size(); ++i) {
            CIMObjectPath owner = pathOf(kDevice, keyOf(devices[i], "Id"));
            CIMObjectPath member = pathOf(kGadget, String(("g-" + std::to_string(i % 2)).c_str()));
            const CIMObjectPath& end = object.getClassName().equal(kDevice) ? owner : member;
            if (keyOf(end, "Id") != keyOf(object, "Id"))
                continue;
            CIMInstance link("KSV_TestLink");
            link.addProperty(CIMProperty("Owner", CIMValue(owner), 0, kDevice));
            link.addProperty(CIMProperty("Member", CIMValue(member), 0, kGadget));
            Array<CIMKeyBinding> keys;
            keys.append(CIMKeyBinding("Owner", CIMValue(owner)));
            keys.append(CIMKeyBinding("Member", CIMValue(member)));
            link.setPath(CIMObjectPath(String(), kNamespace, "KSV_TestLink", keys));
            result.push_back(link);
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
        for (const CIMInstance& link : links(context, objectName, role)) {
            CIMObjectPath far;
            link.getProperty(link.findProperty(farEnd)).getValue().get(far);
            result.push_back(far);
        }
        return result;
    }
};

// ---- KSV_TestFaulty: how it fails depends on the Id asked for ---------------------------------

class FaultyProvider : public ElementProvider {
public:
    FaultyProvider() : ElementProvider("KSV_TestFaulty") {}

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

    // Fails once the response has long started streaming: it delivers more than a response
    // may hold unsent (1 MB), so that the connection has sent some before the failure.
    void enumerateInstances(const OperationContext&, const CIMObjectPath&, const Boolean,
                            const Boolean, const CIMPropertyList&,
                            InstanceResponseHandler& handler) override {
        enter();
        const String padding(std::string(1000, 'p').c_str());
        for (unsigned i = 0; i < 2000; ++i) {
            const String id(("f-" + std::to_string(i)).c_str());
            CIMInstance instance("KSV_TestFaulty");
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

// ---- KSV_TestNested: calls back into the server from inside its operations ----------------------

class NestedProvider : public ElementProvider {
public:
    NestedProvider() : ElementProvider("KSV_TestNested") {}

    // As the array's providers read their system identity: a local client call from initialize.
    void initialize(CIMOMHandle& cimom) override {
        CIMClient client;
        client.connectLocal();
        _gadgetsAtStart = client.enumerateInstanceNames(kNamespace, kGadget).size();
        client.disconnect();
        ElementProvider::initialize(cimom);
    }

    void getInstance(const OperationContext&, const CIMObjectPath&, const Boolean, const Boolean,
                     const CIMPropertyList&, InstanceResponseHandler& handler) override {
        enter();
        handler.deliver(build());
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
        CIMInstance handleDevice =
            _cimom.getInstance(OperationContext(), kNamespace, pathOf(kDevice, "dev-0"), false,
                               false, false, CIMPropertyList());
        String handleUser;
        handleDevice.getProperty(handleDevice.findProperty("RequestedBy"))
            .getValue()
            .get(handleUser);

        CIMInstance instance("KSV_TestNested");
        instance.addProperty(CIMProperty("Id", CIMValue(String("nested"))));
        instance.addProperty(CIMProperty("ViaHandle", CIMValue(viaHandle)));
        instance.addProperty(CIMProperty("ViaClient", CIMValue(viaClient)));
        instance.addProperty(CIMProperty("NestedUser", CIMValue(nestedUser)));
        instance.addProperty(CIMProperty("HandleUser", CIMValue(handleUser)));
        instance.addProperty(CIMProperty("GadgetsAtStart", CIMValue(_gadgetsAtStart)));
        instance.setPath(pathOf("KSV_TestNested", "nested"));
        return instance;
    }

    Uint32 _gadgetsAtStart = 0;
};

} // namespace

extern "C" PEGASUS_EXPORT CIMProvider* PegasusCreateProvider(const String& providerName) {
    if (providerName == "KSV_TestDeviceProvider")
        return new ElementProvider(kDevice);
    if (providerName == "KSV_TestGadgetProvider")
        return new ElementProvider(kGadget);
    if (providerName == "KSV_TestLinkProvider")
        return new LinkProvider;
    if (providerName == "KSV_TestFaultyProvider")
        return new FaultyProvider;
    if (providerName == "KSV_TestNestedProvider")
        return new NestedProvider;
    return nullptr;
}

unsigned ksvtest_count(KsvTestProbe probe) {
    return counts[probe];
}
