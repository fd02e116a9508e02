#include <cimxml/Elements.h>

#include "TestSupport.h"

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMFlavor.h>

#include <gtest/gtest.h>

#include <string>

using namespace Pegasus;
using namespace ksv::cimxml;
using ksv::cimxml::testing::sameContent;
using ksv::cimxml::testing::throwsCim;

namespace {

std::string escaped(const String& text) {
    std::string out;
    appendEscaped(out, text);
    return out;
}

std::string valueXml(const CIMValue& value) {
    std::string out;
    appendValue(out, value);
    return out;
}

CIMObjectPath systemPath() {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("Name"), String("S1"), CIMKeyBinding::STRING));
    return CIMObjectPath("array7", CIMNamespaceName("root/ksv"), CIMName("KSV_System"), keys);
}

TEST(Encoding, InstanceTakesTheDsp0201Form) {
    CIMInstance disk(CIMName("KSV_DiskDrive"));
    disk.addProperty(CIMProperty(CIMName("DeviceID"), CIMValue(String("A&B <1>"))));
    disk.addProperty(CIMProperty(CIMName("Capacity"), CIMValue(Uint64(100))));
    Array<Uint16> status;
    status.append(2);
    status.append(3);
    disk.addProperty(CIMProperty(CIMName("OperationalStatus"), CIMValue(status)));
    disk.addProperty(
        CIMProperty(CIMName("Owner"), CIMValue(systemPath()), 0, CIMName("CIM_System")));
    disk.addProperty(CIMProperty(CIMName("Caption"), CIMValue(CIMTYPE_STRING, false), 0, CIMName(),
                                 CIMName("CIM_ManagedElement"), true));
    std::string xml;
    appendInstance(xml, disk);
    EXPECT_EQ(
        "<INSTANCE CLASSNAME=\"KSV_DiskDrive\">"
        "<PROPERTY NAME=\"DeviceID\" TYPE=\"string\"><VALUE>A&amp;B &lt;1&gt;</VALUE></PROPERTY>"
        "<PROPERTY NAME=\"Capacity\" TYPE=\"uint64\"><VALUE>100</VALUE></PROPERTY>"
        "<PROPERTY.ARRAY NAME=\"OperationalStatus\" TYPE=\"uint16\"><VALUE.ARRAY>"
        "<VALUE>2</VALUE><VALUE>3</VALUE></VALUE.ARRAY></PROPERTY.ARRAY>"
        "<PROPERTY.REFERENCE NAME=\"Owner\" REFERENCECLASS=\"CIM_System\"><VALUE.REFERENCE>"
        "<INSTANCEPATH><NAMESPACEPATH><HOST>array7</HOST><LOCALNAMESPACEPATH>"
        "<NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"ksv\"/></LOCALNAMESPACEPATH>"
        "</NAMESPACEPATH><INSTANCENAME CLASSNAME=\"KSV_System\"><KEYBINDING NAME=\"Name\">"
        "<KEYVALUE VALUETYPE=\"string\">S1</KEYVALUE></KEYBINDING></INSTANCENAME>"
        "</INSTANCEPATH></VALUE.REFERENCE></PROPERTY.REFERENCE>"
        "<PROPERTY NAME=\"Caption\" TYPE=\"string\" CLASSORIGIN=\"CIM_ManagedElement\" "
        "PROPAGATED=\"true\"></PROPERTY>"
        "</INSTANCE>",
        xml);
}

TEST(Encoding, QualifierFlavorsAreWrittenOnlyWhereTheyDifferFromTheDefaults) {
    std::string xml;
    appendQualifier(xml, CIMQualifier(CIMName("Key"), CIMValue(true),
                                      CIMFlavor::DISABLEOVERRIDE + CIMFlavor::TOSUBCLASS, true));
    appendQualifier(xml, CIMQualifier(CIMName("Description"), CIMValue(String("x")),
                                      CIMFlavor::DEFAULTS + CIMFlavor::TRANSLATABLE));
    EXPECT_EQ("<QUALIFIER NAME=\"Key\" TYPE=\"boolean\" PROPAGATED=\"true\" OVERRIDABLE=\"false\">"
              "<VALUE>TRUE</VALUE></QUALIFIER>"
              "<QUALIFIER NAME=\"Description\" TYPE=\"string\" TRANSLATABLE=\"true\">"
              "<VALUE>x</VALUE></QUALIFIER>",
              xml);
}

TEST(Encoding, TextIsEscapedSoThatReadersKeepItExactly) {
    EXPECT_EQ("a&amp;b&lt;&quot;&apos;&gt;", escaped("a&b<\"'>"));
    EXPECT_EQ("tab&#9;cr&#13;&#10;", escaped("tab\tcr\r\n"));
    // Spaces at either end, or after a space, as references: as OpenPegasus writes them.
    EXPECT_EQ("&#32; &#32;", escaped("   "));
    EXPECT_EQ("&#32;a b &#32;b&#32;", escaped(" a b  b "));
    EXPECT_EQ("", escaped(""));
    const Char16 astral[] = {0xD83D, 0xDE00, 0xE9, 0};
    EXPECT_EQ("\xF0\x9F\x98\x80\xC3\xA9", escaped(String(astral)));
    const Char16 lone[] = {'x', 0xD800, 'y', 0};
    EXPECT_EQ("x\xEF\xBF\xBDy", escaped(String(lone)));
    std::string fromUtf8;
    appendEscaped(fromUtf8, std::string_view("ok\xFF<"));
    EXPECT_EQ("ok\xEF\xBF\xBD&lt;", fromUtf8);
}

// Long text is escaped a slice at a time; what straddles a slice's end must come out whole.
TEST(Encoding, LongTextIsEscapedAlikeWhereverItsSpecialCharactersFall) {
    const std::string plain(1021, 'a');
    const Char16 pair[] = {0xD83D, 0xDE00, 0};
    const struct {
        String tail;
        std::string written;
    } cases[] = {
        {"bc&d", "bc&amp;d"},
        {"bc  d", "bc &#32;d"},
        {"bcd ", "bcd&#32;"},
        {String("bc") + String(pair) + "d", "bc\xF0\x9F\x98\x80"
                                            "d"},
        {String("bcd") + String(pair), "bcd\xF0\x9F\x98\x80"},
        {String(std::string(3000, '<').c_str()),
         [] {
             std::string refs;
             for (int i = 0; i < 3000; i++)
                 refs += "&lt;";
             return refs;
         }()},
    };
    for (const auto& c : cases) {
        const std::string out = escaped(String(plain.c_str()) + c.tail);
        EXPECT_EQ(plain + c.written, out) << out.substr(plain.size());
    }
}

TEST(Decoding, TextEndsAreTrimmedUnlessSentAsReferencesAndLinesStillCount) {
    const struct {
        const char* sent;
        const char* read;
    } cases[] = {{"<VALUE> a  b\n\t</VALUE>", "a  b"},
                 {"<VALUE>&#32;a&#32;</VALUE>", " a "},
                 {"<VALUE>\n \n</VALUE>", ""},
                 {"<VALUE><![CDATA[ a ]]></VALUE>", " a "}};
    for (const auto& c : cases) {
        String read;
        decodeValue(c.sent, CIMTYPE_STRING).get(read);
        EXPECT_EQ(std::string(read.getCString()), c.read) << c.sent;
    }
    EXPECT_TRUE(throwsCim(
        [] {
            decodeInstance("<INSTANCE CLASSNAME=\"C\">\n<PROPERTY NAME=\"p\" TYPE=\"string\">"
                           "<VALUE>\n x \n</VALUE></PROPERTY>\n<PROPERTY NAME=\"q\" TYPE=\"bad\"/>"
                           "</INSTANCE>");
        },
        CIM_ERR_INVALID_PARAMETER, "(line 5)"));
}

CIMValue stringsWithEdges() {
    Array<String> texts;
    texts.append("  leading and trailing  ");
    texts.append(" \t\r\n ");
    texts.append("]]> & <![CDATA[");
    texts.append("");
    const Char16 astral[] = {'x', 0xD83D, 0xDE00, 0};
    texts.append(String(astral));
    return CIMValue(texts);
}

TEST(ValueRoundTrip, EveryTypeAsScalarArrayEmptyArrayAndNull) {
    const Sint64 sint64s[] = {-9223372036854775807LL - 1, 9223372036854775807LL};
    const Real32 real32s[] = {0.1f, -3.4e38f};
    const Char16 chars[] = {Char16('<'), Char16(' ')};
    const CIMDateTime dates[] = {CIMDateTime("20240131120000.123456-300"),
                                 CIMDateTime("00000010000000.000000:000")};
    const Boolean flags[] = {true, false};
    const CIMValue values[] = {
        CIMValue(true),
        CIMValue(Uint8(255)),
        CIMValue(Sint8(-128)),
        CIMValue(Uint16(65535)),
        CIMValue(Sint16(-32768)),
        CIMValue(Uint32(4294967295U)),
        CIMValue(Sint32(-2147483647 - 1)),
        CIMValue(Uint64(18446744073709551615ULL)),
        CIMValue(Array<Sint64>(sint64s, 2)),
        CIMValue(Real32(1.17549435e-38f)),
        CIMValue(Array<Real32>(real32s, 2)),
        CIMValue(Real64(2.2250738585072014e-308)),
        CIMValue(Char16(0x263A)),
        CIMValue(Array<Char16>(chars, 2)),
        CIMValue(String("plain")),
        stringsWithEdges(),
        CIMValue(Array<CIMDateTime>(dates, 2)),
        CIMValue(CIMDateTime("20240131120000.******+000")),
        CIMValue(Array<Boolean>(flags, 2)),
        CIMValue(Array<Uint32>()),
    };
    for (const CIMValue& value : values) {
        const std::string xml = valueXml(value);
        EXPECT_EQ(value, decodeValue(xml, value.getType())) << xml;
    }
    for (const CIMType type : {CIMTYPE_UINT8, CIMTYPE_STRING, CIMTYPE_REFERENCE}) {
        EXPECT_EQ("", valueXml(CIMValue(type, false)));
        EXPECT_EQ("", valueXml(CIMValue(type, true)));
    }
}

TEST(ValueRoundTrip, ReferencesTakeTheFullestPathFormTheirPartsAllow) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("Flag"), String("TRUE"), CIMKeyBinding::BOOLEAN));
    keys.append(CIMKeyBinding(CIMName("Id"), String("-42"), CIMKeyBinding::NUMERIC));
    keys.append(
        CIMKeyBinding(CIMName("Name"), String("a \"quoted\" & <odd> name"), CIMKeyBinding::STRING));
    keys.append(
        CIMKeyBinding(CIMName("System"), systemPath().toString(), CIMKeyBinding::REFERENCE));
    const CIMName diskClass("KSV_Disk");
    const CIMNamespaceName nameSpace("root/ksv");
    struct Form {
        CIMObjectPath path;
        const char* element;
    };
    const Form forms[] = {
        {CIMObjectPath(String(), CIMNamespaceName(), diskClass), "<CLASSNAME"},
        {CIMObjectPath(String(), CIMNamespaceName(), diskClass, keys), "<INSTANCENAME"},
        {CIMObjectPath(String(), nameSpace, diskClass), "<LOCALCLASSPATH>"},
        {CIMObjectPath(String(), nameSpace, diskClass, keys), "<LOCALINSTANCEPATH>"},
        {CIMObjectPath("host.example:5988", nameSpace, diskClass), "<CLASSPATH>"},
        {CIMObjectPath("10.0.0.1", nameSpace, diskClass, keys), "<INSTANCEPATH>"},
    };
    Array<CIMObjectPath> all;
    for (const Form& form : forms) {
        const std::string xml = valueXml(CIMValue(form.path));
        EXPECT_EQ(0u, xml.find(std::string("<VALUE.REFERENCE>") + form.element)) << xml;
        EXPECT_EQ(CIMValue(form.path), decodeValue(xml, CIMTYPE_REFERENCE)) << xml;
        EXPECT_EQ(form.path, decodeObjectPath(xml));
        all.append(form.path);
    }
    const std::string refArray = valueXml(CIMValue(all));
    EXPECT_EQ(0u, refArray.find("<VALUE.REFARRAY><VALUE.REFERENCE>"));
    EXPECT_EQ(CIMValue(all), decodeValue(refArray, CIMTYPE_STRING));
}

// Embedded instances travel without their path.
CIMInstance withoutPath(const CIMInstance& instance) {
    CIMInstance copy(instance.getClassName());
    for (Uint32 i = 0; i < instance.getPropertyCount(); i++) {
        copy.addProperty(instance.getProperty(i).clone());
    }
    return copy;
}

CIMInstance nested(int depth) {
    CIMInstance instance(CIMName("KSV_Layer"));
    instance.addProperty(CIMProperty(CIMName("Depth"), CIMValue(Uint32(depth))));
    if (depth > 0) {
        instance.addProperty(CIMProperty(CIMName("Inner"), CIMValue(nested(depth - 1))));
    }
    return instance;
}

TEST(ObjectRoundTrip, EmbeddedObjectsTravelAsEscapedMarkedText) {
    CIMInstance holder(CIMName("KSV_Holder"));
    holder.addProperty(CIMProperty(CIMName("Layers"), CIMValue(nested(3))));
    Array<CIMObject> objects;
    objects.append(CIMObject(ksv::cimxml::testing::sampleClass()));
    objects.append(CIMObject(withoutPath(ksv::cimxml::testing::sampleDisk(1))));
    holder.addProperty(CIMProperty(CIMName("Mixed"), CIMValue(objects)));
    std::string xml;
    appendInstance(xml, holder);
    EXPECT_NE(std::string::npos,
              xml.find("<PROPERTY NAME=\"Layers\" TYPE=\"string\" EmbeddedObject=\"instance\">"
                       "<VALUE>&lt;INSTANCE CLASSNAME=&quot;KSV_Layer&quot;&gt;"));
    EXPECT_NE(
        std::string::npos,
        xml.find("<PROPERTY.ARRAY NAME=\"Mixed\" TYPE=\"string\" EmbeddedObject=\"object\">"));

    // identical() compares the embedded layers value by value, all the way down.
    EXPECT_TRUE(sameContent(holder, decodeInstance(xml)));
}

TEST(Decoding, AcceptsTheFormsOtherWritersUse) {
    const CIMInstance instance = decodeInstance(
        "<INSTANCE CLASSNAME=\"KSV_Disk\">\n"
        "  <PROPERTY NAME=\"Name\" TYPE=\"string\"><VALUE><![CDATA[<raw> & ]]>text</VALUE>"
        "</PROPERTY>\n"
        "  <PROPERTY NAME=\"Inner\" TYPE=\"string\" EMBEDDEDOBJECT=\"instance\">\n"
        "    <VALUE><![CDATA[<INSTANCE CLASSNAME=\"KSV_In\"/>]]></VALUE>\n"
        "  </PROPERTY>\n"
        "  <PROPERTY NAME=\"Missing\" TYPE=\"uint8\"/>\n"
        "  <PROPERTY NAME=\"Size\" TYPE=\"uint8\">\n"
        "    <QUALIFIER NAME=\"Units\" TYPE=\"string\"><VALUE>Bytes</VALUE></QUALIFIER>\n"
        "    <VALUE> 12 </VALUE>\n"
        "  </PROPERTY>\n"
        "</INSTANCE>\n");
    ASSERT_EQ(4u, instance.getPropertyCount());
    EXPECT_EQ(CIMValue(String("<raw> & text")), instance.getProperty(0).getValue());
    EXPECT_EQ(CIMTYPE_INSTANCE, instance.getProperty(1).getType());
    EXPECT_EQ(CIMValue(CIMTYPE_UINT8, false), instance.getProperty(2).getValue());
    EXPECT_EQ(CIMValue(Uint8(12)), instance.getProperty(3).getValue());
    EXPECT_TRUE(instance.getProperty(3).getQualifier(0).getFlavor().equal(CIMFlavor::DEFAULTS));

    const CIMObjectPath path = decodeObjectPath(
        "<INSTANCENAME CLASSNAME=\"KSV_Disk\"><KEYBINDING NAME=\"Slot\">"
        "<KEYVALUE VALUETYPE=\"numeric\" TYPE=\"uint8\"> 7 </KEYVALUE></KEYBINDING>"
        "<KEYBINDING NAME=\"Tag\"><KEYVALUE>a b</KEYVALUE></KEYBINDING></INSTANCENAME>");
    ASSERT_EQ(2u, path.getKeyBindings().size());
    EXPECT_EQ(String("7"), path.getKeyBindings()[0].getValue());
    EXPECT_EQ(CIMKeyBinding::NUMERIC, path.getKeyBindings()[0].getType());
    EXPECT_EQ(CIMKeyBinding::STRING, path.getKeyBindings()[1].getType());
}

struct Malformed {
    std::string xml;
    const char* complaint;
    CIMStatusCode code = CIM_ERR_INVALID_PARAMETER;
};

// Names, keys and values are bounded in length; refusals quote them only in part.
std::string withClassAndKey(std::size_t nameBytes, std::size_t keyBytes) {
    return "<INSTANCENAME CLASSNAME=\"" + std::string(nameBytes, 'C') +
           "\"><KEYBINDING NAME=\"K\"><KEYVALUE>" + std::string(keyBytes, 'k') +
           "</KEYVALUE></KEYBINDING></INSTANCENAME>";
}
std::string withValue(std::size_t bytes) {
    return "<INSTANCE CLASSNAME=\"X\"><PROPERTY NAME=\"A\" TYPE=\"string\"><VALUE>" +
           std::string(bytes, 'v') + "</VALUE></PROPERTY></INSTANCE>";
}

TEST(Decoding, RefusesMalformedElementsNamingThePlace) {
    const Malformed cases[] = {
        {"<INSTANCE CLASSNAME=\"X\"><PROPERTY NAME=\"A\" TYPE=\"uint8\"><VALUE>300</VALUE>"
         "</PROPERTY></INSTANCE>",
         "INSTANCE/PROPERTY(A)/VALUE (line 1): value \"300\" is out of range for uint8"},
        {"<INSTANCE CLASSNAME=\"X\"><FOO/></INSTANCE>",
         "INSTANCE/FOO (line 1): expected PROPERTY, PROPERTY.ARRAY or PROPERTY.REFERENCE"},
        {"<INSTANCE CLASSNAME=\"X\"><PROPERTY NAME=\"A\" TYPE=\"int\"/></INSTANCE>",
         "TYPE \"int\" names no CIM type"},
        {"<INSTANCE CLASSNAME=\"1abc\"/>", "CLASSNAME \"1abc\" is not a legal CIM name"},
        {"<INSTANCE/>", "INSTANCE (line 1): attribute CLASSNAME is missing"},
        {"<INSTANCE CLASSNAME=\"X\"><PROPERTY NAME=\"A\" TYPE=\"string\"/>"
         "<PROPERTY NAME=\"a\" TYPE=\"string\"/></INSTANCE>",
         "INSTANCE/PROPERTY(a) (line 1): "},
        {"<INSTANCE CLASSNAME=\"X\"><PROPERTY NAME=\"A\" TYPE=\"string\"><VALUE><B/></VALUE>"
         "</PROPERTY></INSTANCE>",
         "VALUE/B (line 1): unexpected element inside VALUE"},
        {"<INSTANCE CLASSNAME=\"X\"><PROPERTY NAME=\"A\" TYPE=\"string\"><VALUE>\xC3</VALUE>"
         "</PROPERTY></INSTANCE>",
         "PROPERTY(A)/VALUE (line 1): value is not valid UTF-8"},
        {"<INSTANCE CLASSNAME=\"X\"><PROPERTY.ARRAY NAME=\"A\" TYPE=\"string\"><VALUE.ARRAY>"
         "<VALUE.NULL/></VALUE.ARRAY></PROPERTY.ARRAY></INSTANCE>",
         "null array elements cannot be represented"},
        {"<INSTANCE CLASSNAME=\"X\"><PROPERTY NAME=\"A\" TYPE=\"string\" EmbeddedObject=\"thing\">"
         "</PROPERTY></INSTANCE>",
         "EmbeddedObject \"thing\" is not object or instance"},
        {"<INSTANCE CLASSNAME=\"X\"><PROPERTY NAME=\"A\" TYPE=\"string\" EmbeddedObject=\"object\">"
         "<VALUE>&lt;INSTANCE</VALUE></PROPERTY></INSTANCE>",
         "PROPERTY(A)/VALUE (line 1): embedded object: not well-formed XML"},
        {"<INSTANCENAME CLASSNAME=\"X\"><KEYBINDING NAME=\"K\"><KEYVALUE VALUETYPE=\"numeric\">"
         "abc</KEYVALUE></KEYBINDING></INSTANCENAME>",
         "numeric key value \"abc\" is not a number"},
        {"<INSTANCENAME CLASSNAME=\"X\"><KEYBINDING NAME=\"K\"><KEYVALUE VALUETYPE=\"string\" "
         "TYPE=\"uint8\">1</KEYVALUE></KEYBINDING></INSTANCENAME>",
         "TYPE uint8 contradicts VALUETYPE string"},
        {"<INSTANCENAME CLASSNAME=\"X\"><KEYVALUE>1</KEYVALUE></INSTANCENAME>",
         "keys without KEYBINDING names are not supported"},
        {"<INSTANCE CLASSNAME=\"X\">", "not well-formed XML"},
        {"<INSTANCE CLASSNAME=\"X\"/><INSTANCE CLASSNAME=\"Y\"/>", "exactly one document element"},
        {"text<INSTANCE CLASSNAME=\"X\"/>", "text outside the document element"},
        {withClassAndKey(257, 1), "CLASSNAME \"CCCC", CIM_ERR_SERVER_LIMITS_EXCEEDED},
        {withClassAndKey(1, 1025), "key value \"kkkk", CIM_ERR_SERVER_LIMITS_EXCEEDED},
        {withValue(65537), "value \"vvvv", CIM_ERR_SERVER_LIMITS_EXCEEDED},
    };
    for (const Malformed& c : cases) {
        const bool isPath = c.xml.rfind("<INSTANCENAME", 0) == 0;
        EXPECT_TRUE(
            throwsCim([&] { isPath ? void(decodeObjectPath(c.xml)) : void(decodeObject(c.xml)); },
                      c.code, c.complaint))
            << c.xml.substr(0, 300);
    }
    EXPECT_NO_THROW(decodeObjectPath(withClassAndKey(256, 1024)));
    EXPECT_NO_THROW(decodeObject(withValue(65536)));
    EXPECT_TRUE(throwsCim([] { decodeClass("<INSTANCE CLASSNAME=\"X\"/>"); },
                          CIM_ERR_INVALID_PARAMETER, "INSTANCE (line 1): expected CLASS"));
}

TEST(Decoding, NestingAndMemberCountsAreBoundedSoNoInputExhaustsStackOrTime) {
    std::string deep;
    for (int i = 0; i < 100000; i++) {
        deep += "<VALUE.REFERENCE>";
    }
    EXPECT_TRUE(throwsCim([&] { decodeObjectPath(deep); }, CIM_ERR_INVALID_PARAMETER,
                          "elements nested deeper than 100"));

    std::string xml;
    appendInstance(xml, nested(8));
    EXPECT_EQ(8u, [&] {
        Uint32 depth = 0;
        decodeInstance(xml).getProperty(0).getValue().get(depth);
        return depth;
    }());
    xml.clear();
    appendInstance(xml, nested(9));
    EXPECT_TRUE(throwsCim([&] { decodeInstance(xml); }, CIM_ERR_INVALID_PARAMETER,
                          "embedded objects are nested more than 8 deep"));

    std::string wide = "<INSTANCE CLASSNAME=\"X\">";
    for (int i = 0; i < 2048; i++) {
        wide += "<PROPERTY NAME=\"P" + std::to_string(i) + "\" TYPE=\"uint8\"/>";
    }
    EXPECT_EQ(2048u, decodeInstance(wide + "</INSTANCE>").getPropertyCount());
    EXPECT_TRUE(throwsCim(
        [&] { decodeInstance(wide + "<PROPERTY NAME=\"Q\" TYPE=\"uint8\"/></INSTANCE>"); },
        CIM_ERR_SERVER_LIMITS_EXCEEDED, "more than 2048 PROPERTY elements"));
}

} // namespace
