// Replays what OpenPegasus 2.14.4 answered for object paths, date-times and
// names (recorded in the shared vectors file) against this implementation.
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

PEGASUS_USING_PEGASUS;

namespace {

const char* const VECTORS_FILE = KSV_SHARED_DIR "/pegasus-vectors/paths-datetimes-names.tsv";

std::string unescape(const std::string& field) {
    std::string text;
    for (size_t i = 0; i < field.size(); i++) {
        if (field[i] == '\\' && i + 1 < field.size() &&
            (field[i + 1] == 't' || field[i + 1] == 'n')) {
            text += field[i + 1] == 't' ? '\t' : '\n';
            i++;
        } else {
            text += field[i];
        }
    }
    return text;
}

std::vector<std::string> splitTabs(const std::string& line) {
    std::vector<std::string> fields;
    std::string field;
    std::istringstream in(line);
    while (std::getline(in, field, '\t'))
        fields.push_back(unescape(field));
    if (!line.empty() && line.back() == '\t')
        fields.push_back("");
    return fields;
}

std::string text(const String& s) {
    return std::string(static_cast<const char*>(s.getCString()));
}

const char* typeName(CIMKeyBinding::Type type) {
    switch (type) {
    case CIMKeyBinding::BOOLEAN:
        return "BOOLEAN";
    case CIMKeyBinding::STRING:
        return "STRING";
    case CIMKeyBinding::NUMERIC:
        return "NUMERIC";
    case CIMKeyBinding::REFERENCE:
        return "REFERENCE";
    }
    return "?";
}

// The columns the recorder wrote for a path that parsed.
std::vector<std::string> describePath(const CIMObjectPath& path) {
    std::string keys;
    const Array<CIMKeyBinding>& bindings = path.getKeyBindings();
    for (Uint32 i = 0; i < bindings.size(); i++) {
        if (i)
            keys += ";";
        keys += text(bindings[i].getName().getString()) + ":" + typeName(bindings[i].getType()) +
                "=" + text(bindings[i].getValue());
    }
    return {"ok",
            "host=" + text(path.getHost()),
            "ns=" + text(path.getNameSpace().getString()),
            "class=" + text(path.getClassName().getString()),
            "keys=" + keys,
            "toString=" + text(path.toString())};
}

std::vector<std::string> parseAnswer(const std::string& input) {
    try {
        return describePath(CIMObjectPath(String(input.c_str())));
    } catch (const Exception& e) {
        return {"error", text(e.getMessage())};
    }
}

std::vector<std::string> identicalAnswer(const std::string& a, const std::string& b) {
    try {
        const CIMObjectPath pathA{String(a.c_str())};
        const CIMObjectPath pathB{String(b.c_str())};
        return {pathA.identical(pathB) ? "true" : "false", pathA == pathB ? "true" : "false"};
    } catch (const Exception& e) {
        return {"error", text(e.getMessage())};
    }
}

std::vector<std::string> dateTimeAnswer(const std::string& input) {
    try {
        const CIMDateTime value{String(input.c_str())};
        return {"ok", text(value.toString()), value.isInterval() ? "interval=1" : "interval=0"};
    } catch (const Exception& e) {
        return {"error", text(e.getMessage())};
    }
}

std::vector<std::string> legalNameAnswer(const std::string& input) {
    return {CIMName::legal(String(input.c_str())) ? "true" : "false"};
}

std::vector<std::string> answerFor(const std::vector<std::string>& row) {
    const std::string& kind = row[0];
    if (kind == "parse")
        return parseAnswer(row.at(1));
    if (kind == "identical")
        return identicalAnswer(row.at(1), row.at(2));
    if (kind == "datetime")
        return dateTimeAnswer(row.at(1));
    if (kind == "legalname")
        return legalNameAnswer(row.at(1));
    ADD_FAILURE() << "unknown kind " << kind;
    return {};
}

std::vector<std::string> recordedAnswer(const std::vector<std::string>& row) {
    const size_t inputs = row[0] == "identical" ? 2 : 1;
    return std::vector<std::string>(row.begin() + 1 + inputs, row.end());
}

TEST(PathsDateTimesNamesVectors, EveryRecordedAnswerIsReproduced) {
    std::ifstream in(VECTORS_FILE);
    ASSERT_TRUE(in) << "cannot open " << VECTORS_FILE;
    std::string line;
    int rows = 0;
    while (std::getline(in, line)) {
        if (line.empty())
            continue;
        const std::vector<std::string> row = splitTabs(line);
        ASSERT_GE(row.size(), 3u) << line;
        EXPECT_EQ(recordedAnswer(row), answerFor(row)) << "row: " << line;
        rows++;
    }
    EXPECT_GT(rows, 70);
}

} // namespace
