#include "mof_compiler/MofParser.h"

#include <algorithm>

#include "mof_compiler/MofLexer.h"
#include "mof_compiler/MofValues.h"

namespace ksv::mof {

namespace {

using namespace ast;

bool isDataTypeName(const std::string& name) {
    return cimTypeFromName(name).has_value();
}

std::string describe(const Token& token) {
    switch (token.kind) {
    case TokenKind::End:
        return "end of file";
    case TokenKind::String:
        return "string \"" + token.text + "\"";
    case TokenKind::Alias:
        return "alias $" + token.text;
    case TokenKind::Char:
        return "character literal";
    default:
        return "'" + token.text + "'";
    }
}

class Parser {
public:
    Parser(std::vector<Token> tokens, const std::string& fileName)
        : _tokens(std::move(tokens)), _file(fileName) {}

    std::vector<Production> parseFile() {
        std::vector<Production> productions;
        while (current().kind != TokenKind::End)
            productions.push_back(production());
        return productions;
    }

private:
    std::vector<Token> _tokens;
    const std::string& _file;
    std::size_t _index = 0;

    const Token& current() const { return _tokens[_index]; }
    const Token& lookAhead(std::size_t n) const {
        return _tokens[std::min(_index + n, _tokens.size() - 1)];
    }
    const Token& take() {
        const Token& token = _tokens[_index];
        if (token.kind != TokenKind::End)
            ++_index;
        return token;
    }

    SourceLocation locationOf(const Token& token) const {
        return SourceLocation{_file, token.line, token.column};
    }

    [[noreturn]] void expected(const std::string& what) const {
        throw MofError(locationOf(current()),
                       "expected " + what + ", found " + describe(current()));
    }

    void expectPunct(char c, const std::string& context) {
        if (!current().isPunct(c))
            expected(std::string("'") + c + "' " + context);
        take();
    }

    bool acceptPunct(char c) {
        if (!current().isPunct(c))
            return false;
        take();
        return true;
    }

    void expectKeyword(const char* keyword) {
        if (!current().isKeyword(keyword))
            expected(std::string("keyword '") + keyword + "'");
        take();
    }

    std::string identifier(const char* what) {
        if (current().kind != TokenKind::Identifier)
            expected(what);
        return take().text;
    }

    Production production() {
        if (current().kind == TokenKind::Pragma)
            return pragma();
        if (current().isKeyword("qualifier"))
            return qualifierDeclaration();
        std::vector<Qualifier> qualifiers = qualifierList();
        if (current().isKeyword("class"))
            return classDeclaration(std::move(qualifiers));
        if (current().isKeyword("instance")) {
            if (!qualifiers.empty())
                throw MofError(qualifiers.front().location,
                               "qualifiers on instances are not supported");
            return instanceDeclaration();
        }
        expected("'class', 'instance', 'qualifier' or '#pragma'");
    }

    Pragma pragma() {
        Pragma result;
        result.location = locationOf(take());
        result.name = identifier("a pragma name after '#pragma'");
        expectPunct('(', "after the pragma name");
        if (current().kind != TokenKind::String)
            expected("a string as the pragma's parameter");
        result.value = take().text;
        expectPunct(')', "after the pragma's parameter");
        return result;
    }

    // ---- qualifiers ---------------------------------------------------------

    std::vector<Qualifier> qualifierList() {
        std::vector<Qualifier> qualifiers;
        if (!acceptPunct('['))
            return qualifiers;
        do {
            qualifiers.push_back(qualifier());
        } while (acceptPunct(','));
        expectPunct(']', "to close the qualifier list");
        return qualifiers;
    }

    Qualifier qualifier() {
        Qualifier result;
        result.location = locationOf(current());
        result.name = identifier("a qualifier name");
        if (acceptPunct('(')) {
            result.value = initializer();
            expectPunct(')', "after the qualifier's value");
        } else if (current().isPunct('{')) {
            result.value = arrayInitializer();
        }
        if (acceptPunct(':')) {
            while (current().kind == TokenKind::Identifier)
                result.flavors.push_back(take().text);
            if (result.flavors.empty())
                expected("a flavor after ':'");
        }
        return result;
    }

    QualifierDeclaration qualifierDeclaration() {
        QualifierDeclaration result;
        result.location = locationOf(take());
        result.name = identifier("a qualifier name");
        expectPunct(':', "before the qualifier's type");
        result.type = dataType();
        arraySuffix(result.type);
        if (acceptPunct('='))
            result.defaultValue = initializer();
        expectPunct(',', "before 'Scope'");
        expectKeyword("scope");
        result.scopes = keywordList("a scope");
        if (acceptPunct(',')) {
            expectKeyword("flavor");
            result.flavors = keywordList("a flavor");
        }
        expectPunct(';', "after the qualifier declaration");
        return result;
    }

    std::vector<std::string> keywordList(const char* what) {
        std::vector<std::string> words;
        expectPunct('(', "to open the list");
        do {
            words.push_back(identifier(what));
        } while (acceptPunct(','));
        expectPunct(')', "to close the list");
        return words;
    }

    // ---- types --------------------------------------------------------------

    DataType dataType() {
        if (current().kind != TokenKind::Identifier || !isDataTypeName(current().text))
            expected("a data type");
        DataType type;
        type.name = take().text;
        return type;
    }

    // Parses an optional "[]" or "[n]"; true when one was there.
    bool arraySuffix(DataType& type) {
        if (!acceptPunct('['))
            return false;
        type.isArray = true;
        if (current().kind == TokenKind::Integer) {
            const Token& size = take();
            if (size.negative || size.magnitude == 0 || size.magnitude > UINT32_MAX)
                throw MofError(locationOf(size), "array size must be a positive integer");
            type.arraySize = static_cast<std::uint32_t>(size.magnitude);
        }
        expectPunct(']', "to close the array size");
        return true;
    }

    // "ClassName REF" or a data type.
    DataType featureType() {
        if (current().kind == TokenKind::Identifier && lookAhead(1).isKeyword("ref")) {
            DataType type;
            type.referenceClass = take().text;
            take();
            return type;
        }
        return dataType();
    }

    // ---- classes ------------------------------------------------------------

    Class classDeclaration(std::vector<Qualifier> qualifiers) {
        Class result;
        result.location = locationOf(take());
        result.qualifiers = std::move(qualifiers);
        result.name = identifier("a class name");
        if (acceptPunct(':'))
            result.superClass = identifier("a superclass name after ':'");
        expectPunct('{', "to open the class body");
        while (!acceptPunct('}'))
            classFeature(result);
        expectPunct(';', "after the class body");
        return result;
    }

    void classFeature(Class& owner) {
        if (current().kind == TokenKind::End)
            expected("'}' to close class " + owner.name);
        std::vector<Qualifier> qualifiers = qualifierList();
        SourceLocation location = locationOf(current());
        DataType type = featureType();
        std::string name = identifier("a property or method name");
        if (current().isPunct('(') && type.referenceClass.empty()) {
            owner.methods.push_back(method(std::move(qualifiers), type.name, name, location));
            return;
        }
        Property property;
        property.qualifiers = std::move(qualifiers);
        property.type = type;
        property.name = name;
        property.location = location;
        arraySuffix(property.type);
        if (acceptPunct('='))
            property.defaultValue = initializer();
        expectPunct(';', "after property " + name);
        owner.properties.push_back(std::move(property));
    }

    Method method(std::vector<Qualifier> qualifiers, const std::string& returnType,
                  const std::string& name, const SourceLocation& location) {
        Method result;
        result.qualifiers = std::move(qualifiers);
        result.returnType = returnType;
        result.name = name;
        result.location = location;
        take();
        if (!acceptPunct(')')) {
            do {
                result.parameters.push_back(parameter());
            } while (acceptPunct(','));
            expectPunct(')', "to close the parameter list of " + name);
        }
        expectPunct(';', "after method " + name);
        return result;
    }

    Parameter parameter() {
        Parameter result;
        result.qualifiers = qualifierList();
        result.location = locationOf(current());
        result.type = featureType();
        result.name = identifier("a parameter name");
        arraySuffix(result.type);
        return result;
    }

    // ---- instances ----------------------------------------------------------

    Instance instanceDeclaration() {
        Instance result;
        result.location = locationOf(take());
        expectKeyword("of");
        result.className = identifier("a class name after 'instance of'");
        if (current().isKeyword("as")) {
            take();
            if (current().kind != TokenKind::Alias)
                expected("an alias ($name) after 'as'");
            result.alias = take().text;
        }
        expectPunct('{', "to open the instance body");
        while (!acceptPunct('}'))
            result.values.push_back(propertyValue());
        expectPunct(';', "after the instance body");
        return result;
    }

    PropertyValue propertyValue() {
        if (current().kind == TokenKind::End)
            expected("'}' to close the instance body");
        if (current().isPunct('['))
            throw MofError(locationOf(current()), "qualifiers on instances are not supported");
        PropertyValue result;
        result.location = locationOf(current());
        result.name = identifier("a property name");
        expectPunct('=', "after property name " + result.name);
        result.value = initializer();
        expectPunct(';', "after the value of " + result.name);
        return result;
    }

    // ---- values -------------------------------------------------------------

    Literal initializer() {
        if (current().isPunct('{'))
            return arrayInitializer();
        return constantValue();
    }

    Literal arrayInitializer() {
        Literal result;
        result.kind = Literal::Kind::Array;
        result.location = locationOf(take());
        if (acceptPunct('}'))
            return result;
        do {
            result.elements.push_back(constantValue());
        } while (acceptPunct(','));
        expectPunct('}', "to close the array value");
        return result;
    }

    Literal constantValue() {
        const Token& token = current();
        Literal result;
        result.location = locationOf(token);
        switch (token.kind) {
        case TokenKind::Integer:
            result.kind = Literal::Kind::Integer;
            result.negative = token.negative;
            result.magnitude = token.magnitude;
            result.text = take().text;
            return result;
        case TokenKind::Real:
            result.kind = Literal::Kind::Real;
            result.real = token.real;
            result.text = take().text;
            return result;
        case TokenKind::String:
            result.kind = Literal::Kind::String;
            while (current().kind == TokenKind::String)
                result.text += take().text;
            return result;
        case TokenKind::Char:
            result.kind = Literal::Kind::Char;
            result.charValue = take().charValue;
            return result;
        case TokenKind::Alias:
            result.kind = Literal::Kind::Alias;
            result.text = take().text;
            return result;
        default:
            return keywordValue(result);
        }
    }

    Literal keywordValue(Literal& result) {
        if (current().isKeyword("true") || current().isKeyword("false")) {
            result.kind = Literal::Kind::Boolean;
            result.boolean = current().isKeyword("true");
        } else if (current().isKeyword("null")) {
            result.kind = Literal::Kind::Null;
        } else {
            expected("a value");
        }
        take();
        return result;
    }
};

} // namespace

std::vector<ast::Production> parseMof(const std::string& text, const std::string& fileName) {
    return Parser(tokenize(text, fileName), fileName).parseFile();
}

} // namespace ksv::mof
