#include <cimxml/Errors.h>
#include <cimxml/Response.h>

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <string>

using namespace Pegasus;
using namespace ksv::cimxml;
using ksv::cimxml::testing::sameContent;
using ksv::cimxml::testing::sampleClass;
using ksv::cimxml::testing::sampleDisk;
using ksv::cimxml::testing::throwsCim;
using ksv::cimxml::testing::utf8;

namespace {

const PathDefaults arrayDefaults{"array7", CIMNamespaceName("root/ksv")};

// Sends what the writer produced after every write, as a server streaming chunks would.
class ChunkedResponse {
public:
    explicit ChunkedResponse(Operation operation)
        : _operation(operation), _writer(_buffer, "41", operation, arrayDefaults) {}

    IMethodResponseWriter& writer() {
        _flush();
        return _writer;
    }

    OperationResponse finish() {
        _writer.finish();
        _flush();
        return decodeResponse(_sent, _operation, operationName(_operation));
    }

private:
    void _flush() {
        _sent += _buffer;
        _buffer.clear();
    }

    Operation _operation;
    std::string _buffer;
    std::string _sent;
    IMethodResponseWriter _writer;
};

// The CIM server suite streams every operation's results to a client; these are the forms it
// skips.
TEST(ResponseWriter, StreamsObjectsAndNullValuesThatDecodeBack) {
    ChunkedResponse classes(Operation::EnumerateClasses);
    classes.writer().writeClass(sampleClass());
    classes.writer().writeObject(CIMObject(CIMClass(CIMName("KSV_Other"))));
    const OperationResponse classResponse = classes.finish();
    ASSERT_EQ(2u, classResponse.classes.size());
    EXPECT_TRUE(classResponse.classes[0].identical(sampleClass()));
    EXPECT_EQ(CIMName("KSV_Other"), classResponse.classes[1].getClassName());
    EXPECT_EQ("41", classResponse.messageId);

    ChunkedResponse single(Operation::GetInstance);
    single.writer().writeObject(CIMObject(sampleDisk(5)));
    EXPECT_TRUE(sameContent(sampleDisk(5), single.finish().instances[0]));

    ChunkedResponse nullProperty(Operation::GetProperty);
    nullProperty.writer().writeValue(CIMValue(CIMTYPE_UINT64, false));
    EXPECT_TRUE(nullProperty.finish().value.isNull());
}

// Association names repeat their reference keys from pair to pair, more of them than the encoder
// keeps; each must still decode to the path it was written for.
TEST(ResponseWriter, RepeatedReferenceKeysDecodeToTheirOwnPaths) {
    const auto reference = [](const char* role, const char* className, int id) {
        Array<CIMKeyBinding> keys;
        keys.append(CIMKeyBinding(CIMName("DeviceID"), String(std::to_string(id).c_str()),
                                  CIMKeyBinding::STRING));
        const CIMObjectPath path("array7", CIMNamespaceName("root/ksv"), CIMName(className), keys);
        return CIMKeyBinding(CIMName(role), path.toString(), CIMKeyBinding::REFERENCE);
    };
    Array<CIMObjectPath> written;
    ChunkedResponse names(Operation::EnumerateInstanceNames);
    for (int i = 0; i < 8000; i++) {
        Array<CIMKeyBinding> keys;
        keys.append(reference("Antecedent", "KSV_Extent", i * 7 % 4500));
        keys.append(reference("Dependent", "KSV_Volume", i / 40));
        written.append(CIMObjectPath(String(), CIMNamespaceName(), CIMName("KSV_Based"), keys));
        names.writer().writeObjectPath(written[written.size() - 1]);
    }
    EXPECT_EQ(written, names.finish().paths);
}

// A response writes a repeated reference once and copies it after, and a key binding that the
// last path bound alike: paths that differ in any part, if only in the case of a name or the type
// of a key, must each keep their own spelling.
TEST(ResponseWriter, RepeatedReferencesKeepTheSpellingOfEachPath) {
    const auto path = [](const char* host, const char* nameSpace, const char* className,
                         const char* keyName, const char* value, CIMKeyBinding::Type type) {
        Array<CIMKeyBinding> keys;
        keys.append(CIMKeyBinding(CIMName(keyName), String(value), type));
        return CIMObjectPath(host, CIMNamespaceName(nameSpace), CIMName(className), keys);
    };
    const CIMKeyBinding::Type text = CIMKeyBinding::STRING;
    const CIMObjectPath variants[] = {
        path("array7", "root/ksv", "KSV_Volume", "DeviceID", "7", text),
        path("array8", "root/ksv", "KSV_Volume", "DeviceID", "7", text),
        path("array7", "root/other", "KSV_Volume", "DeviceID", "7", text),
        path("array7", "root/ksv", "ksv_volume", "DeviceID", "7", text),
        path("array7", "root/ksv", "KSV_Volume", "DEVICEID", "7", text),
        path("array7", "root/ksv", "KSV_Volume", "DEVICEID", "7", CIMKeyBinding::NUMERIC),
        path("array7", "root/ksv", "KSV_Volume", "DeviceID", "7b", text),
        path("array7", "root/ksv", "KSV_Volume", "DeviceID", "7B", text),
    };
    std::string body;
    IMethodResponseWriter writer(body, "41", Operation::EnumerateInstances, arrayDefaults);
    for (int round = 0; round < 2; round++) {
        for (const CIMObjectPath& variant : variants) {
            CIMInstance pair(CIMName("KSV_Based"));
            pair.addProperty(CIMProperty(CIMName("Dependent"), CIMValue(variant)));
            pair.setPath(CIMObjectPath("KSV_Based"));
            writer.writeInstance(pair);
        }
    }
    for (const CIMObjectPath& variant : variants) {
        std::string element;
        appendObjectPath(element, variant);
        EXPECT_NE(std::string::npos, body.find(element)) << element;
    }
}

TEST(ResponseWriter, AssociationResultsCarryFullPaths) {
    ChunkedResponse associators(Operation::Associators);
    associators.writer().writeInstance(sampleDisk(1));
    associators.writer().writeClass(sampleClass());
    const OperationResponse objects = associators.finish();
    ASSERT_EQ(2u, objects.objects.size());
    CIMObjectPath expected = sampleDisk(1).getPath();
    expected.setHost("array7");
    expected.setNameSpace(CIMNamespaceName("root/ksv"));
    EXPECT_EQ(expected, objects.objects[0].getPath());
    EXPECT_TRUE(objects.objects[1].isClass());
    EXPECT_EQ(CIMObjectPath("//array7/root/ksv:KSV_Thing"), objects.objects[1].getPath());

    ChunkedResponse referenceNames(Operation::ReferenceNames);
    CIMObjectPath elsewhere = sampleDisk(2).getPath();
    elsewhere.setHost("other");
    elsewhere.setNameSpace(CIMNamespaceName("root/cimv2"));
    referenceNames.writer().writeObjectPath(elsewhere);
    referenceNames.writer().writeObjectPath(CIMObjectPath("KSV_Thing"));
    const OperationResponse paths = referenceNames.finish();
    ASSERT_EQ(2u, paths.paths.size());
    EXPECT_EQ(elsewhere, paths.paths[0]);
    EXPECT_EQ(CIMObjectPath("//array7/root/ksv:KSV_Thing"), paths.paths[1]);
}

// A response copies the start tag it wrote for a property sharing the same name text; the
// properties here share one, and each must still be written with its own type and origins.
TEST(ResponseWriter, PropertiesSharingANameKeepTheirOwnTypesAndOrigins) {
    const CIMName name("Status");
    const CIMName origin("CIM_Disk");
    Array<Uint16> codes;
    codes.append(2);
    const CIMProperty forms[] = {
        CIMProperty(name, CIMValue(Uint16(2))),
        CIMProperty(name, CIMValue(String("OK"))),
        CIMProperty(name, CIMValue(codes)),
        CIMProperty(name, CIMValue(codes), 1),
        CIMProperty(name, CIMValue(Uint16(2)), 0, CIMName(), origin),
        CIMProperty(name, CIMValue(Uint16(2)), 0, CIMName(), origin, true),
        CIMProperty(name, CIMValue(CIMObjectPath("KSV_Disk.DeviceID=\"D1\"")), 0,
                    CIMName("KSV_Disk")),
        CIMProperty(name, CIMValue(CIMObjectPath("KSV_Disk.DeviceID=\"D1\"")), 0,
                    CIMName("CIM_Disk")),
    };
    ChunkedResponse response(Operation::EnumerateInstances);
    Array<CIMInstance> written;
    for (int round = 0; round < 2; round++) {
        for (const CIMProperty& form : forms) {
            CIMInstance disk(CIMName("KSV_Disk"));
            disk.addProperty(form);
            disk.setPath(CIMObjectPath("KSV_Disk.DeviceID=\"D1\""));
            response.writer().writeInstance(disk);
            written.append(disk);
        }
    }
    const OperationResponse decoded = response.finish();
    ASSERT_EQ(written.size(), decoded.instances.size());
    for (Uint32 i = 0; i < written.size(); i++) {
        EXPECT_TRUE(sameContent(written[i], decoded.instances[i])) << i;
        EXPECT_EQ(written[i].getProperty(0).getArraySize(),
                  decoded.instances[i].getProperty(0).getArraySize())
            << i;
    }
}

// A response writes the properties that instances leave as their class has them once, and the
// start tags of those they set once; what an instance sets, also in place on an instance delivered
// again, or what the class changes later, is written as it is.
TEST(ResponseWriter, PropertiesLeftAsTheClassHasThemFollowTheInstanceAndTheClass) {
    CIMClass cimClass = sampleClass();
    const Uint32 mode = cimClass.findProperty(CIMName("Mode"));
    const CIMPropertyList onlyMode(Array<CIMName>(1, CIMName("Mode")));
    const InstanceParts everyProperty{false, true, nullptr};
    const InstanceParts modeAlone{false, false, &onlyMode};
    const Uint16 modes[] = {7, 7, 2, 3, 7, 9, 9, 9};
    ChunkedResponse response(Operation::EnumerateInstances);
    CIMInstance reused = cimClass.buildInstance(true, true, CIMPropertyList());
    reused.setPath(CIMObjectPath("KSV_Thing.DeviceID=\"T1\""));
    for (Uint16 i = 0; i < 8; i++) {
        if (i == 5)
            cimClass.getProperty(mode).setValue(CIMValue(Uint16(9)));
        CIMInstance fresh = cimClass.buildInstance(true, true, CIMPropertyList());
        fresh.setPath(reused.getPath());
        if (i == 2 || i == 3)
            reused.getProperty(mode).setValue(CIMValue(i));
        const bool filtered = i == 4 || i == 7;
        response.writer().writeInstance(i == 2 || i == 3 ? reused : fresh,
                                        filtered ? modeAlone : everyProperty);
    }
    // A declaration the instance has made its own may change in place between writes.
    const char* const origins[] = {"CIM_A", "CIM_B"};
    for (const char* origin : origins) {
        reused.getProperty(mode).setClassOrigin(CIMName(origin));
        response.writer().writeInstance(reused, everyProperty);
    }
    const OperationResponse decoded = response.finish();
    ASSERT_EQ(10u, decoded.instances.size());
    for (Uint32 i = 0; i < 2; i++) {
        const CIMInstance& thing = decoded.instances[8 + i];
        EXPECT_EQ(String(origins[i]), thing.getProperty(mode).getClassOrigin().getString()) << i;
    }
    for (Uint32 i = 0; i < 8; i++) {
        const CIMInstance& thing = decoded.instances[i];
        EXPECT_EQ(i == 4 || i == 7 ? 1u : cimClass.getPropertyCount(), thing.getPropertyCount());
        const Uint32 found = thing.findProperty(CIMName("Mode"));
        ASSERT_NE(PEG_NOT_FOUND, found);
        Uint16 value = 0;
        thing.getProperty(found).getValue().get(value);
        EXPECT_EQ(modes[i], value) << i;
    }
}

TEST(ResponseWriter, TakesTheDsp0201FormAndStartsOnlyWhenAskedTo) {
    std::string out;
    IMethodResponseWriter writer(out, "7", Operation::EnumerateInstanceNames);
    EXPECT_FALSE(writer.hasStarted());
    EXPECT_TRUE(throwsCim([&] { writer.writeClass(sampleClass()); }, CIM_ERR_FAILED,
                          "a class does not belong in a EnumerateInstanceNames response"));
    EXPECT_FALSE(writer.hasStarted());
    EXPECT_EQ("", out);
    writer.writeObjectPath(CIMObjectPath("KSV_Disk.DeviceID=\"D1\""));
    EXPECT_TRUE(writer.hasStarted());
    writer.finish();
    EXPECT_EQ(
        "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n"
        "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"7\" PROTOCOLVERSION=\"1.0\">"
        "<SIMPLERSP><IMETHODRESPONSE NAME=\"EnumerateInstanceNames\"><IRETURNVALUE>"
        "<INSTANCENAME CLASSNAME=\"KSV_Disk\"><KEYBINDING NAME=\"DeviceID\">"
        "<KEYVALUE VALUETYPE=\"string\">D1</KEYVALUE></KEYBINDING></INSTANCENAME>"
        "</IRETURNVALUE></IMETHODRESPONSE></SIMPLERSP></MESSAGE></CIM>\n",
        out);
}

// Out parameters of every kind and a null result; error responses reach clients in the CIM
// server's tests and the transport's.
TEST(MethodResponses, RoundTripThroughTheDecoder) {
    Array<CIMParamValue> out;
    out.append(CIMParamValue("Job", CIMValue(CIMObjectPath("KSV_Job.Id=3"))));
    out.append(CIMParamValue("Progress", CIMValue(Uint16(50))));
    out.append(CIMParamValue("Snapshot", CIMValue(sampleDisk(1))));
    std::string result;
    appendMethodResponse(result, "11", CIMName("Locate"), CIMValue(Uint32(4096)), out);
    EXPECT_NE(std::string::npos,
              result.find("<RETURNVALUE PARAMTYPE=\"uint32\"><VALUE>4096</VALUE></RETURNVALUE>"));
    const OperationResponse returned = decodeResponse(result, Operation::InvokeMethod, "locate");
    EXPECT_EQ(CIMValue(Uint32(4096)), returned.value);
    ASSERT_EQ(3u, returned.outParameters.size());
    EXPECT_EQ(CIMValue(CIMObjectPath("KSV_Job.Id=3")), returned.outParameters[0].getValue());
    EXPECT_EQ(CIMValue(Uint16(50)), returned.outParameters[1].getValue());
    CIMInstance snapshot;
    returned.outParameters[2].getValue().get(snapshot);
    EXPECT_TRUE(sameContent(sampleDisk(1), snapshot));

    std::string empty;
    appendMethodResponse(empty, "12", CIMName("Reset"), CIMValue(CIMTYPE_UINT32, false),
                         Array<CIMParamValue>());
    EXPECT_TRUE(decodeResponse(empty, Operation::InvokeMethod, "Reset").value.isNull());
}

std::string simpleResponse(const std::string& content) {
    return "<?xml version=\"1.0\"?>\n<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">\n"
           "  <MESSAGE ID=\"5\" PROTOCOLVERSION=\"1.0\">\n    <SIMPLERSP>\n" +
           content + "\n    </SIMPLERSP>\n  </MESSAGE>\n</CIM>\n";
}

TEST(ResponseDecoding, ReadsPrettyPrintedResponsesAndIgnoresErrorInstances) {
    const OperationResponse names = decodeResponse(
        simpleResponse(
            "<IMETHODRESPONSE NAME=\"AssociatorNames\">\n  <IRETURNVALUE>\n"
            "    <OBJECTPATH>\n      <INSTANCEPATH>\n        <NAMESPACEPATH>\n"
            "          <HOST>array7</HOST>\n          <LOCALNAMESPACEPATH>\n"
            "            <NAMESPACE NAME=\"root\"/>\n            <NAMESPACE NAME=\"ksv\"/>\n"
            "          </LOCALNAMESPACEPATH>\n        </NAMESPACEPATH>\n"
            "        <INSTANCENAME CLASSNAME=\"KSV_System\">\n"
            "          <KEYBINDING NAME=\"Name\"><KEYVALUE>S1</KEYVALUE></KEYBINDING>\n"
            "        </INSTANCENAME>\n      </INSTANCEPATH>\n    </OBJECTPATH>\n"
            "  </IRETURNVALUE>\n</IMETHODRESPONSE>"),
        Operation::AssociatorNames, "AssociatorNames");
    ASSERT_EQ(1u, names.paths.size());
    EXPECT_EQ(CIMObjectPath("//array7/root/ksv:KSV_System.Name=\"S1\""), names.paths[0]);

    const OperationResponse failed = decodeResponse(
        simpleResponse("<IMETHODRESPONSE NAME=\"DeleteInstance\"><ERROR CODE=\"7\">"
                       "<INSTANCE CLASSNAME=\"CIM_Error\"/></ERROR></IMETHODRESPONSE>"),
        Operation::DeleteInstance, "DeleteInstance");
    EXPECT_EQ(CIM_ERR_NOT_SUPPORTED, failed.error->code);
    EXPECT_EQ(0u, failed.error->description.size());
}

struct BadResponse {
    std::string content;
    Operation operation;
    const char* complaint;
};

TEST(ResponseDecoding, RefusesResponsesThatDoNotAnswerTheRequest) {
    const BadResponse cases[] = {
        {"<IMETHODRESPONSE NAME=\"GetClass\"><IRETURNVALUE/></IMETHODRESPONSE>",
         Operation::GetInstance, "answers \"GetClass\", not \"GetInstance\""},
        {"<IMETHODRESPONSE NAME=\"GetInstance\"/>", Operation::GetInstance,
         "IRETURNVALUE is missing"},
        {"<IMETHODRESPONSE NAME=\"GetInstance\"><IRETURNVALUE/></IMETHODRESPONSE>",
         Operation::GetInstance, "element INSTANCE is missing"},
        {"<IMETHODRESPONSE NAME=\"GetInstance\"><IRETURNVALUE><INSTANCE CLASSNAME=\"A\"/>"
         "<INSTANCE CLASSNAME=\"B\"/></IRETURNVALUE></IMETHODRESPONSE>",
         Operation::GetInstance, "unexpected element inside IRETURNVALUE"},
        {"<IMETHODRESPONSE NAME=\"EnumerateInstances\"><IRETURNVALUE><INSTANCE CLASSNAME=\"A\"/>"
         "</IRETURNVALUE></IMETHODRESPONSE>",
         Operation::EnumerateInstances, "unexpected element inside IRETURNVALUE"},
        {"<IMETHODRESPONSE NAME=\"Locate\"/>", Operation::InvokeMethod,
         "IMETHODRESPONSE(Locate) (line 5): expected METHODRESPONSE"},
        {"<METHODRESPONSE NAME=\"Locate\"><ERROR CODE=\"x\"/></METHODRESPONSE>",
         Operation::InvokeMethod, "value \"x\" is not a valid uint32"},
    };
    for (const BadResponse& c : cases) {
        const char* name =
            c.operation == Operation::InvokeMethod ? "Locate" : operationName(c.operation);
        try {
            decodeResponse(simpleResponse(c.content), c.operation, name);
            ADD_FAILURE() << "accepted " << c.content;
        } catch (const ProtocolError& e) {
            EXPECT_EQ(MessageFault::NotValid, e.fault());
            EXPECT_NE(std::string::npos, utf8(e.getMessage()).find(c.complaint))
                << utf8(e.getMessage());
        }
    }
}

} // namespace
