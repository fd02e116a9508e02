// Replays every case recorded from OpenPegasus 2.14.4 in the shared vectors files (object
// paths, date-times and names; values, properties, instances, property lists and instances
// built from a class) and compares our answers column by column.

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/CIMValue.h>

#include "CommonTestSupport.h"

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <map>
#include <string>
#include <tuple>
#include <vector>

PEGASUS_USING_PEGASUS;

namespace {

using Columns = std::vector<std::string>;

std::string flag(bool value) {
    return value ? "1" : "0";
}

// Fields write a tab or a line end inside them as \t or \n.
std::string unescaped(std::string field) {
    for (const auto& [escape, character] : {std::pair{"\\t", "\t"}, std::pair{"\\n", "\n"}}) {
        for (size_t at = field.find(escape); at != std::string::npos; at = field.find(escape, at))
            field.replace(at, 2, character);
    }
    return field;
}

Columns splitTabs(const std::string& line) {
    Columns fields;
    size_t start = 0;
    for (size_t tab; (tab = line.find('\t', start)) != std::string::npos; start = tab + 1)
        fields.push_back(unescaped(line.substr(start, tab - start)));
    fields.push_back(unescaped(line.substr(start)));
    return fields;
}

// The answer columns of one operation: "ok" plus details, or "error" and
// the exception's message.
Columns outcome(const std::function<Columns()>& operation) {
    try {
        Columns answer{"ok"};
        for (const std::string& detail : operation())
            answer.push_back(detail);
        return answer;
    } catch (const Exception& e) {
        return {"error", utf8(e.getMessage())};
    }
}

Columns describeValue(const CIMValue& value) {
    return {"type=" + std::string(cimTypeToString(value.getType())),
            "array=" + flag(value.isArray()), "null=" + flag(value.isNull()),
            "toString=" + utf8(value.toString())};
}

std::map<std::string, CIMValue> sampleValues() {
    const String profiles[] = {"SNIA:Pool Component", "SNIA:DiskDrive"};
    const Uint16 ports[] = {2, 3, 4, 9};
    return {
        {"uint8 200", CIMValue(Uint8(200))},
        {"sint16 -5", CIMValue(Sint16(-5))},
        {"uint64 max", CIMValue(Uint64(18446744073709551615ULL))},
        {"boolean true", CIMValue(true)},
        {"real32 1.5", CIMValue(Real32(1.5))},
        {"real64 0.1", CIMValue(Real64(0.1))},
        {"char16 A", CIMValue(Char16('A'))},
        {"string a\"b", CIMValue(String("a\"b"))},
        {"datetime", CIMValue(CIMDateTime(String("20261121103000.000000+000")))},
        {"null uint16", CIMValue(CIMTYPE_UINT16, false)},
        {"null string array", CIMValue(CIMTYPE_STRING, true)},
        {"string array", CIMValue(Array<String>(profiles, 2))},
        {"uint16 array", CIMValue(Array<Uint16>(ports, 4))},
        {"empty uint16 array", CIMValue(Array<Uint16>())},
        {"reference", CIMValue(CIMObjectPath(String("//h/root/ksv:KSV_DiskDrive.DeviceID=\"X\"")))},
    };
}

// CIM_Base (key DeviceID, Caption) and its subclass KSV_Thing as the
// repository hands it out: inherited properties first, marked propagated.
CIMClass thingClass() {
    CIMClass thing(CIMName("KSV_Thing"), CIMName("CIM_Base"));
    CIMProperty deviceId(CIMName("DeviceID"), CIMValue(String("")), 0, CIMName(),
                         CIMName("CIM_Base"), true);
    deviceId.addQualifier(CIMQualifier(CIMName("Key"), CIMValue(true)));
    thing.addProperty(deviceId);
    thing.addProperty(CIMProperty(CIMName("Caption"), CIMValue(String("base caption")), 0,
                                  CIMName(), CIMName("CIM_Base"), true));
    CIMProperty position(CIMName("Position"), CIMValue(Uint32(7)), 0, CIMName(),
                         CIMName("KSV_Thing"), false);
    position.addQualifier(CIMQualifier(CIMName("Description"), CIMValue(String("slot"))));
    thing.addProperty(position);
    thing.addProperty(CIMProperty(CIMName("Ports"), CIMValue(CIMTYPE_STRING, true)));
    return thing;
}

std::string describeProperty(const CIMConstProperty& property) {
    return utf8(property.getName().getString()) + "{val=" + utf8(property.getValue().toString()) +
           ",null=" + flag(property.getValue().isNull()) +
           ",quals=" + std::to_string(property.getQualifierCount()) +
           ",origin=" + utf8(property.getClassOrigin().getString()) +
           ",propagated=" + flag(property.getPropagated()) + "}";
}

Columns describeInstance(const CIMInstance& instance) {
    std::string properties;
    for (Uint32 i = 0; i < instance.getPropertyCount(); i++) {
        if (i != 0)
            properties += ";";
        properties += describeProperty(instance.getProperty(i));
    }
    return {"class=" + utf8(instance.getClassName().getString()),
            "instQuals=" + std::to_string(instance.getQualifierCount()), "props=" + properties,
            "pathClass=" + utf8(instance.getPath().getClassName().getString())};
}

CIMPropertyList listOf(std::initializer_list<const char*> names) {
    Array<CIMName> array;
    for (const char* name : names)
        array.append(CIMName(name));
    return CIMPropertyList(array);
}

class VectorReplay {
public:
    VectorReplay() : _values(sampleValues()), _original(diskWithDeviceId("A")) {}

    Columns answer(const std::string& kind, const std::string& label) {
        if (kind == "value")
            return describeValue(_values.at(label));
        if (kind == "buildInstance")
            return buildInstance(label);
        const auto bare = _bareCases.find(kind + "/" + label);
        if (bare != _bareCases.end())
            return outcome([&] { return bare->second(), Columns{}; });
        return _cases.at(kind + "/" + label)();
    }

private:
    Columns buildInstance(const std::string& label) {
        static const std::map<std::string, std::tuple<bool, bool, CIMPropertyList>> builds = {
            {"q=1 o=1 null list", {true, true, CIMPropertyList()}},
            {"q=0 o=0 null list", {false, false, CIMPropertyList()}},
            {"q=1 o=0 empty list", {true, false, listOf({})}},
            {"q=0 o=1 list[position,NoSuch]", {false, true, listOf({"position", "NoSuch"})}},
        };
        const auto& [qualifiers, classOrigins, list] = builds.at(label);
        return describeInstance(thingClass().buildInstance(qualifiers, classOrigins, list));
    }

    // The two copy cases run in order on one original, as they were recorded.
    Columns modifiedThroughCopy() {
        CIMInstance copy;
        copy = _original;
        copy.getProperty(0).setValue(CIMValue(String("Z")));
        return {deviceIdOf(_original)};
    }

    Columns modifiedThroughClone() {
        CIMInstance clone = _original.clone();
        clone.getProperty(0).setValue(CIMValue(String("Q")));
        return {deviceIdOf(_original)};
    }

    static std::string foundAt(Uint32 index) {
        return index == PEG_NOT_FOUND ? "PEG_NOT_FOUND" : std::to_string(index);
    }

    template <class T>
    static T readAs(const CIMValue& value) {
        T out{};
        value.get(out);
        return out;
    }

    static CIMProperty slot() { return CIMProperty(CIMName("Slot"), CIMValue(Uint16(1))); }

    static Columns describeList(const CIMPropertyList& list) {
        return {"isNull=" + flag(list.isNull()), "size=" + std::to_string(list.size())};
    }

    std::map<std::string, CIMValue> _values;
    CIMInstance _original;
    // Operations that answer only "ok" or their error.
    const std::map<std::string, std::function<void()>> _bareCases = {
        {"typedget/uint16 as uint32", [] { readAs<Uint32>(CIMValue(Uint16(5))); }},
        {"setValue/uint16 prop <- uint32", [] { slot().setValue(CIMValue(Uint32(1))); }},
        {"setValue/uint16 prop <- null uint16",
         [] { slot().setValue(CIMValue(CIMTYPE_UINT16, false)); }},
        {"addProperty/duplicate other case",
         [] {
             diskWithDeviceId("A").addProperty(
                 CIMProperty(CIMName("DEVICEID"), CIMValue(String("B"))));
         }},
    };
    const std::map<std::string, std::function<Columns()>> _cases = {
        {"typedget/null string",
         [] {
             return outcome([] {
                 return Columns{"value=[" + utf8(readAs<String>(CIMValue(CIMTYPE_STRING, false))) +
                                "]"};
             });
         }},
        {"findProperty/deviceid",
         [] { return Columns{foundAt(diskWithDeviceId("A").findProperty(CIMName("deviceid")))}; }},
        {"findProperty/Missing",
         [] { return Columns{foundAt(diskWithDeviceId("A").findProperty(CIMName("Missing")))}; }},
        {"copySemantics/modify copy, read original", [this] { return modifiedThroughCopy(); }},
        {"copySemantics/modify clone, read original", [this] { return modifiedThroughClone(); }},
        {"uninitialized/default CIMInstance",
         [] { return Columns{flag(CIMInstance().isUninitialized())}; }},
        {"propertyList/default", [] { return describeList(CIMPropertyList()); }},
        {"propertyList/empty array", [] { return describeList(listOf({})); }},
    };
};

const char* const keyTypes[] = {"BOOLEAN", "STRING", "NUMERIC", "REFERENCE"};

// The columns the recorder wrote for a path that parsed.
Columns describePath(const CIMObjectPath& path) {
    std::string keys;
    const Array<CIMKeyBinding>& bindings = path.getKeyBindings();
    for (Uint32 i = 0; i < bindings.size(); i++) {
        keys += std::string(i ? ";" : "") + utf8(bindings[i].getName().getString()) + ":" +
                keyTypes[bindings[i].getType()] + "=" + utf8(bindings[i].getValue());
    }
    return {"host=" + utf8(path.getHost()), "ns=" + utf8(path.getNameSpace().getString()),
            "class=" + utf8(path.getClassName().getString()), "keys=" + keys,
            "toString=" + utf8(path.toString())};
}

// What we answer for one row of paths-datetimes-names.tsv, after its input columns.
Columns answerFor(const Columns& row) {
    const String input(row.at(1).c_str());
    if (row[0] == "parse")
        return outcome([&] { return describePath(CIMObjectPath(input)); });
    if (row[0] == "datetime") {
        return outcome([&] {
            const CIMDateTime value(input);
            return Columns{utf8(value.toString()), "interval=" + flag(value.isInterval())};
        });
    }
    if (row[0] == "legalname")
        return {CIMName::legal(input) ? "true" : "false"};
    Columns answer = outcome([&] {
        const CIMObjectPath a(input);
        const CIMObjectPath b(String(row.at(2).c_str()));
        return Columns{a.identical(b) ? "true" : "false", a == b ? "true" : "false"};
    });
    if (answer[0] == "ok")
        answer.erase(answer.begin());
    return answer;
}

Columns recordedAnswer(const Columns& row) {
    return Columns(row.begin() + (row[0] == "identical" ? 3 : 2), row.end());
}

std::vector<Columns> recordedCases(const char* file) {
    std::ifstream in(std::string(KSV_SHARED_DIR "/pegasus-vectors/") + file);
    std::vector<Columns> cases;
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty())
            cases.push_back(splitTabs(line));
    }
    return cases;
}

TEST(PegasusVectors, EveryRecordedCaseGivesTheRecordedAnswer) {
    const std::vector<Columns> values = recordedCases("values-instances.tsv");
    const std::vector<Columns> paths = recordedCases("paths-datetimes-names.tsv");
    ASSERT_GE(values.size(), 30u) << "values-instances.tsv is missing or truncated";
    ASSERT_GT(paths.size(), 70u) << "paths-datetimes-names.tsv is missing or truncated";
    VectorReplay replay;
    for (const Columns& row : values) {
        ASSERT_GE(row.size(), 3u);
        Columns actual;
        ASSERT_NO_THROW(actual = replay.answer(row[0], row[1])) << "not replayed: " << row[1];
        EXPECT_EQ(Columns(row.begin() + 2, row.end()), actual) << row[0] << " / " << row[1];
    }
    for (const Columns& row : paths) {
        ASSERT_GE(row.size(), 3u);
        EXPECT_EQ(recordedAnswer(row), answerFor(row)) << row[0] << " " << row[1];
    }
}

} // namespace
