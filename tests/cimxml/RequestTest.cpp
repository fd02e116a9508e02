// Requests as the server reads them: their XML, and the HTTP headers that must agree with it.
#include <cimxml/Errors.h>
#include <cimxml/Http.h>
#include <cimxml/Request.h>

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>

using namespace Pegasus;
using namespace ksv::cimxml;
using namespace ksv::cimxml::http;
using ksv::cimxml::testing::utf8;

namespace {

const CIMNamespaceName ksvNamespace("root/ksv");

std::string simpleRequest(const std::string& call, const std::string& id = "87") {
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
           "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">\n"
           " <MESSAGE ID=\"" +
           id + "\" PROTOCOLVERSION=\"1.0\">\n  <SIMPLEREQ>\n" + call +
           "  </SIMPLEREQ>\n </MESSAGE>\n</CIM>\n";
}

const char ksvPath[] = "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"ksv\"/>"
                       "</LOCALNAMESPACEPATH>";

CIMObjectPath diskName(const char* id) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("DeviceID"), String(id), CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding(CIMName("Slot"), String("12"), CIMKeyBinding::NUMERIC));
    return CIMObjectPath(String(), CIMNamespaceName(), CIMName("KSV_DiskDrive"), keys);
}

const Operation allOperations[] = {
    Operation::GetClass,        Operation::EnumerateClasses,   Operation::EnumerateClassNames,
    Operation::GetInstance,     Operation::EnumerateInstances, Operation::EnumerateInstanceNames,
    Operation::CreateInstance,  Operation::ModifyInstance,     Operation::DeleteInstance,
    Operation::GetProperty,     Operation::SetProperty,        Operation::Associators,
    Operation::AssociatorNames, Operation::References,         Operation::ReferenceNames,
    Operation::InvokeMethod,
};

TEST(RequestRoundTrip, DefaultsAreLeftOutAndRestoredAndOthersKept) {
    for (Operation operation : allOperations) {
        OperationRequest sent = OperationRequest::make(operation, ksvNamespace);
        sent.className = CIMName("KSV_DiskDrive");
        sent.objectName = diskName("D1");
        sent.instance = ksv::cimxml::testing::sampleDisk(1);
        sent.propertyName = CIMName("Capacity");
        sent.methodName = CIMName("Reset");
        const std::string xml = encodeRequest(sent);
        for (const char* optional :
             {"LocalOnly", "DeepInheritance", "IncludeQualifiers", "IncludeClassOrigin",
              "PropertyList", "AssocClass", "ResultClass", "Role", "NewValue"}) {
            EXPECT_EQ(std::string::npos, xml.find(std::string("\"") + optional + "\"")) << xml;
        }
        // A default the decoder failed to restore would be written out again.
        EXPECT_EQ(xml, encodeRequest(decodeRequest(xml))) << operationName(operation);
    }
    // Instance providers answer alike whatever LocalOnly says, so only here can it be seen kept.
    OperationRequest notLocal = OperationRequest::make(Operation::GetInstance, ksvNamespace);
    notLocal.objectName = diskName("D1");
    notLocal.localOnly = false;
    EXPECT_FALSE(decodeRequest(encodeRequest(notLocal)).localOnly);
}

TEST(RequestDecoding, ReadsIntrinsicCallsAsDsp0200DescribesThem) {
    const OperationRequest enumerate = decodeRequest(simpleRequest(
        "<IMETHODCALL NAME=\"EnumerateInstances\">" + std::string(ksvPath) +
        "<IPARAMVALUE NAME=\"ClassName\"><CLASSNAME NAME=\"KSV_DiskDrive\"/></IPARAMVALUE>"
        "<IPARAMVALUE NAME=\"PropertyList\"/>"
        "</IMETHODCALL>"));
    EXPECT_EQ(Operation::EnumerateInstances, enumerate.operation);
    EXPECT_EQ("87", enumerate.messageId);
    EXPECT_EQ(ksvNamespace, enumerate.nameSpace);
    EXPECT_EQ(CIMName("KSV_DiskDrive"), enumerate.className);
    EXPECT_TRUE(enumerate.deepInheritance);
    EXPECT_TRUE(enumerate.localOnly);
    EXPECT_FALSE(enumerate.includeQualifiers);
    EXPECT_FALSE(enumerate.includeClassOrigin);
    EXPECT_TRUE(enumerate.propertyList.isNull());

    const OperationRequest get = decodeRequest(simpleRequest(
        "<IMETHODCALL NAME=\"GetInstance\">" + std::string(ksvPath) +
        "<IPARAMVALUE NAME=\"InstanceName\"><INSTANCENAME CLASSNAME=\"KSV_DiskDrive\">"
        "<KEYBINDING NAME=\"DeviceID\"><KEYVALUE VALUETYPE=\"string\">D1</KEYVALUE></KEYBINDING>"
        "</INSTANCENAME></IPARAMVALUE>"
        "<IPARAMVALUE NAME=\"localonly\"><VALUE>false</VALUE></IPARAMVALUE>"
        "<IPARAMVALUE NAME=\"PropertyList\"><VALUE.ARRAY><VALUE>Capacity</VALUE></VALUE.ARRAY>"
        "</IPARAMVALUE></IMETHODCALL>"));
    EXPECT_EQ(CIMObjectPath("KSV_DiskDrive.DeviceID=\"D1\""), get.objectName);
    EXPECT_FALSE(get.localOnly);
    EXPECT_EQ(String("Capacity"), get.propertyList.toString());

    const OperationRequest references = decodeRequest(simpleRequest(
        "<IMETHODCALL NAME=\"ReferenceNames\">" + std::string(ksvPath) +
        "<IPARAMVALUE NAME=\"ObjectName\"><CLASSNAME NAME=\"KSV_DiskDrive\"/></IPARAMVALUE>"
        "<IPARAMVALUE NAME=\"Role\"><VALUE>Antecedent</VALUE></IPARAMVALUE></IMETHODCALL>"));
    EXPECT_EQ(CIMObjectPath("KSV_DiskDrive"), references.objectName);
    EXPECT_EQ(String("Antecedent"), references.role);
    EXPECT_TRUE(references.resultClass.isNull());
}

TEST(RequestDecoding, ReadsExtrinsicParametersTypedAndUntyped) {
    const OperationRequest call = decodeRequest(simpleRequest(
        "<METHODCALL NAME=\"Locate\"><LOCALINSTANCEPATH>" + std::string(ksvPath) +
        "<INSTANCENAME CLASSNAME=\"KSV_DiskDrive\"><KEYBINDING NAME=\"DeviceID\">"
        "<KEYVALUE>D1</KEYVALUE></KEYBINDING></INSTANCENAME></LOCALINSTANCEPATH>"
        "<PARAMVALUE NAME=\"Seconds\" PARAMTYPE=\"uint16\"><VALUE>30</VALUE></PARAMVALUE>"
        "<PARAMVALUE NAME=\"Level\"><VALUE TYPE=\"sint8\">-3</VALUE></PARAMVALUE>"
        "<PARAMVALUE NAME=\"Pattern\"><VALUE.ARRAY><VALUE>1</VALUE><VALUE>0</VALUE></VALUE.ARRAY>"
        "</PARAMVALUE>"
        "<PARAMVALUE NAME=\"Peer\"><VALUE.REFERENCE><CLASSNAME NAME=\"KSV_X\"/></VALUE.REFERENCE>"
        "</PARAMVALUE>"
        "<PARAMVALUE NAME=\"Settings\" EmbeddedObject=\"instance\"><VALUE>"
        "&lt;INSTANCE CLASSNAME=&quot;KSV_S&quot;/&gt;</VALUE></PARAMVALUE>"
        "<PARAMVALUE NAME=\"Nothing\" PARAMTYPE=\"uint32\"/>"
        "</METHODCALL>"));
    EXPECT_EQ(Operation::InvokeMethod, call.operation);
    EXPECT_EQ(ksvNamespace, call.nameSpace);
    EXPECT_EQ(CIMName("Locate"), call.methodName);
    EXPECT_EQ(CIMObjectPath("KSV_DiskDrive.DeviceID=\"D1\""), call.objectName);
    ASSERT_EQ(6u, call.inParameters.size());
    EXPECT_EQ(CIMValue(Uint16(30)), call.inParameters[0].getValue());
    EXPECT_EQ(CIMValue(Sint8(-3)), call.inParameters[1].getValue());
    EXPECT_TRUE(call.inParameters[1].isTyped());
    EXPECT_FALSE(call.inParameters[2].isTyped());
    EXPECT_EQ(CIMTYPE_STRING, call.inParameters[2].getValue().getType());
    EXPECT_TRUE(call.inParameters[2].getValue().isArray());
    EXPECT_EQ(CIMValue(CIMObjectPath("KSV_X")), call.inParameters[3].getValue());
    EXPECT_EQ(CIMTYPE_INSTANCE, call.inParameters[4].getValue().getType());
    EXPECT_EQ(CIMValue(CIMTYPE_UINT32, false), call.inParameters[5].getValue());

    const OperationRequest onClass = decodeRequest(
        simpleRequest("<METHODCALL NAME=\"Rescan\"><LOCALCLASSPATH>" + std::string(ksvPath) +
                      "<CLASSNAME NAME=\"KSV_DiskDrive\"/></LOCALCLASSPATH></METHODCALL>"));
    EXPECT_EQ(CIMObjectPath("KSV_DiskDrive"), onClass.objectName);
}

struct MessageCase {
    std::string body;
    MessageFault fault;
    const char* complaint;
};

TEST(RequestDecoding, UnusableMessagesAreProtocolErrorsWithTheirHttpAnswer) {
    std::string deep = "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">";
    for (int i = 0; i < 500; i++) {
        deep += "<MESSAGE>";
    }
    const std::string call =
        "<IMETHODCALL NAME=\"GetClass\">" + std::string(ksvPath) + "</IMETHODCALL>";
    const MessageCase cases[] = {
        {"<CIM><MESSAGE></CIM>", MessageFault::NotWellFormed, "not well-formed XML"},
        {deep, MessageFault::NotWellFormed, "nested deeper than 100"},
        {"<FOO/>", MessageFault::NotValid, "the document element is not CIM"},
        {"<CIM CIMVERSION=\"3.0\" DTDVERSION=\"2.0\"/>", MessageFault::UnsupportedCimVersion,
         "CIMVERSION \"3.0\" is not supported"},
        {"<CIM CIMVERSION=\"2.0\" DTDVERSION=\"1.1\"/>", MessageFault::UnsupportedDtdVersion,
         "DTDVERSION \"1.1\""},
        {"<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"1\" PROTOCOLVERSION=\"2.0\">"
         "<SIMPLEREQ/></MESSAGE></CIM>",
         MessageFault::UnsupportedProtocolVersion, "PROTOCOLVERSION"},
        {"<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"1\" PROTOCOLVERSION=\"1.0\">"
         "<MULTIREQ/></MESSAGE></CIM>",
         MessageFault::MultipleRequestsUnsupported, "multiple requests"},
        {"<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE PROTOCOLVERSION=\"1.0\">"
         "<SIMPLEREQ/></MESSAGE></CIM>",
         MessageFault::NotValid, "attribute ID is missing"},
        {simpleRequest("<IMETHODCALL>" + std::string(ksvPath) + "</IMETHODCALL>"),
         MessageFault::NotValid, "attribute NAME is missing"},
        {simpleRequest(call + call), MessageFault::NotValid, "unexpected element inside SIMPLEREQ"},
        {simpleRequest("<IMETHODRESPONSE NAME=\"GetClass\"/>"), MessageFault::NotValid,
         "expected IMETHODCALL or METHODCALL"},
    };
    for (const MessageCase& c : cases) {
        try {
            decodeRequest(c.body);
            ADD_FAILURE() << "accepted " << c.body;
        } catch (const ProtocolError& e) {
            EXPECT_EQ(c.fault, e.fault()) << c.body;
            EXPECT_NE(std::string::npos, utf8(e.getMessage()).find(c.complaint))
                << utf8(e.getMessage());
        }
    }
    // The server's refusals of bad input show the answers to the faults not checked here.
    EXPECT_STREQ("unsupported-protocol-version",
                 cimErrorHeaderValue(MessageFault::UnsupportedProtocolVersion));
    EXPECT_EQ(501u, httpStatusOf(MessageFault::MultipleRequestsUnsupported));
    EXPECT_EQ(CIM_ERR_NOT_SUPPORTED,
              ProtocolError(MessageFault::UnsupportedCimVersion, "x").getCode());
}

struct OperationCase {
    std::string call;
    CIMStatusCode code;
    const char* complaint;
};

TEST(RequestDecoding, FaultyCallsCarryWhatTheErrorResponseNeeds) {
    const std::string ns = ksvPath;
    const std::string disk = "<INSTANCENAME CLASSNAME=\"KSV_Disk\"/>";
    const OperationCase cases[] = {
        {"<IMETHODCALL NAME=\"ExecQuery\">" + ns + "</IMETHODCALL>", CIM_ERR_NOT_SUPPORTED,
         "intrinsic method \"ExecQuery\" is not supported"},
        {"<IMETHODCALL NAME=\"GetClass\">" + ns + "</IMETHODCALL>", CIM_ERR_INVALID_PARAMETER,
         "parameter ClassName is missing"},
        {"<IMETHODCALL NAME=\"GetClass\">" + ns +
             "<IPARAMVALUE NAME=\"Foo\"><VALUE>1</VALUE></IPARAMVALUE></IMETHODCALL>",
         CIM_ERR_INVALID_PARAMETER, "GetClass has no parameter \"Foo\""},
        {"<IMETHODCALL NAME=\"GetInstance\">" + ns + "<IPARAMVALUE NAME=\"InstanceName\">" + disk +
             "</IPARAMVALUE><IPARAMVALUE NAME=\"InstanceName\">" + disk +
             "</IPARAMVALUE></IMETHODCALL>",
         CIM_ERR_INVALID_PARAMETER, "the parameter is given twice"},
        {"<IMETHODCALL NAME=\"GetInstance\">" + ns + "<IPARAMVALUE NAME=\"InstanceName\">" + disk +
             "</IPARAMVALUE><IPARAMVALUE NAME=\"LocalOnly\"><VALUE>maybe</VALUE></IPARAMVALUE>"
             "</IMETHODCALL>",
         CIM_ERR_INVALID_PARAMETER, "IPARAMVALUE(LocalOnly)/VALUE (line 5): value \"maybe\""},
        {"<IMETHODCALL NAME=\"DeleteInstance\">" + ns +
             "<IPARAMVALUE NAME=\"InstanceName\"/></IMETHODCALL>",
         CIM_ERR_INVALID_PARAMETER, "the parameter must not be NULL"},
        {"<IMETHODCALL NAME=\"DeleteInstance\">" + ns +
             "<IPARAMVALUE NAME=\"InstanceName\"><CLASSNAME NAME=\"X\"/></IPARAMVALUE>"
             "</IMETHODCALL>",
         CIM_ERR_INVALID_PARAMETER, "expected INSTANCENAME"},
        {"<IMETHODCALL NAME=\"GetClass\"><LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/>"
         "<NAMESPACE NAME=\"9x\"/></LOCALNAMESPACEPATH></IMETHODCALL>",
         CIM_ERR_INVALID_NAMESPACE, "LOCALNAMESPACEPATH"},
        {"<IMETHODCALL NAME=\"EnumerateClassNames\">" + ns +
             "<IPARAMVALUE NAME=\"ClassName\"><CLASSNAME NAME=\"KSV_X\"/><CLASSNAME "
             "NAME=\"KSV_Y\"/>"
             "</IPARAMVALUE></IMETHODCALL>",
         CIM_ERR_INVALID_PARAMETER, "unexpected element inside IPARAMVALUE"},
        {"<IMETHODCALL NAME=\"GetInstance\">" + ns + "<IPARAMVALUE NAME=\"InstanceName\">" + disk +
             "</IPARAMVALUE><IPARAMVALUE NAME=\"PropertyList\"><VALUE.ARRAY><VALUE>no name</VALUE>"
             "</VALUE.ARRAY></IPARAMVALUE></IMETHODCALL>",
         CIM_ERR_INVALID_PARAMETER, "property \"no name\" is not a legal CIM name"},
        {"<METHODCALL NAME=\"Locate\">" + ns + "</METHODCALL>", CIM_ERR_INVALID_PARAMETER,
         "expected LOCALINSTANCEPATH or LOCALCLASSPATH"},
        {"<METHODCALL NAME=\"Locate\"><LOCALCLASSPATH>" + ns +
             "<CLASSNAME NAME=\"X\"/></LOCALCLASSPATH><PARAMVALUE NAME=\"P\" PARAMTYPE=\"uint8\">"
             "<VALUE.REFERENCE><CLASSNAME NAME=\"Y\"/></VALUE.REFERENCE></PARAMVALUE></METHODCALL>",
         CIM_ERR_INVALID_PARAMETER, "does not hold a uint8"},
    };
    for (const OperationCase& c : cases) {
        try {
            decodeRequest(simpleRequest(c.call, "id-7"));
            ADD_FAILURE() << "accepted " << c.call;
        } catch (const OperationError& e) {
            EXPECT_EQ(c.code, e.getCode()) << utf8(e.getMessage());
            EXPECT_NE(std::string::npos, utf8(e.getMessage()).find(c.complaint))
                << utf8(e.getMessage());
            EXPECT_EQ("id-7", e.messageId());
            EXPECT_EQ(c.call.find("<IMETHODCALL") == 0, e.intrinsic());
            const size_t name = c.call.find("NAME=\"") + 6;
            EXPECT_EQ(c.call.substr(name, c.call.find('"', name) - name), e.methodName());
        }
    }
}

TEST(UriEscaping, KeepsPathCharactersAndRoundTripsEverythingElse) {
    EXPECT_EQ("root/ksv:KSV_A.Id=%22a%20b%22,N=1", uriEscape("root/ksv:KSV_A.Id=\"a b\",N=1"));
    EXPECT_EQ("%C3%A9%25%0A", uriEscape("\xC3\xA9%\n"));
    std::string everyByte;
    for (int c = 0; c < 256; c++) {
        everyByte += char(c);
    }
    EXPECT_EQ(everyByte, uriUnescape(uriEscape(everyByte)));
    EXPECT_FALSE(uriUnescape("%2"));
    EXPECT_FALSE(uriUnescape("%zz"));
    EXPECT_FALSE(uriUnescape("abc%"));
}

// The client transport tests check the headers a request carries.
TEST(RequestHeaders, ServerChecksRefuseWhatDoesNotMatchTheBody) {
    using Header = std::optional<std::string_view>;
    const auto faultOf = [](const std::function<void()>& check) -> std::optional<MessageFault> {
        try {
            check();
        } catch (const ProtocolError& e) {
            return e.fault();
        }
        return std::nullopt;
    };
    EXPECT_FALSE(faultOf([] { checkCimOperationHeader(Header(" methodcall")); }));
    for (const Header wrong : {Header(), Header("MethodResponse")})
        EXPECT_EQ(MessageFault::UnsupportedOperation,
                  faultOf([&] { checkCimOperationHeader(wrong); }));

    OperationRequest locate = OperationRequest::make(Operation::InvokeMethod, ksvNamespace);
    locate.methodName = CIMName("Locate");
    locate.objectName = CIMObjectPath("KSV_DiskDrive.DeviceID=\"50 00\",Slot=3");
    const OperationRequest getClass = OperationRequest::make(Operation::GetClass, ksvNamespace);
    const std::string own = cimObjectHeaderValue(locate);
    const struct {
        const OperationRequest& request;
        Header method, object;
        bool matches;
    } cases[] = {
        {locate, "LOCATE", own, true},
        // Key order, case of names and an extra host do not matter; values do.
        {locate, "Locate", "//h/ROOT/ksv:ksv_diskdrive.Slot=3,DeviceID=%2250%2000%22", true},
        {locate, "Locate", "root/ksv:KSV_DiskDrive.DeviceID=%22X%22", false},
        {locate, "Reset", own, false},
        {locate, Header(), Header(), false},
        {getClass, "GetClass", "root%2FKSV", true},
        {getClass, "GetClass", "root/cimv2", false},
        {getClass, "GetClass", "root/%zz", false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.matches ? std::nullopt : std::optional(MessageFault::HeaderMismatch),
                  faultOf([&] { checkHeadersMatch(c.request, c.method, c.object); }))
            << c.method.value_or("-") << " " << c.object.value_or("-");
    }
}

} // namespace
