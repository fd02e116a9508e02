#include <Pegasus/Common/MessageLoader.h>
#include <Pegasus/Common/CIMObjectPath.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <Pegasus/Common/HostLocatorCheck.h>
#include <Pegasus/Common/IntegerText.h>

PEGASUS_NAMESPACE_BEGIN

namespace {

//------------------------------------------------------------------------------
// Errors
//------------------------------------------------------------------------------

// The text of every parse error starts with the whole object name.
[[noreturn]] void throwMalformed(const char* id, const char* reason, const String& objectName,
                                 const String& detail = String()) {
    MessageLoaderParms parms(id, reason, objectName, detail);
    throw MalformedObjectNameException(parms);
}

// An empty host stands for no host at all.
void checkHost(const String& host) {
    if (host.size() != 0 && !isValidHostLocator(host))
        throwMalformed("Common.CIMObjectPath.INVALID_HOSTNAME", "$0, reason:\"invalid hostname\"",
                       host);
}

//------------------------------------------------------------------------------
// Key bindings in canonical order
//------------------------------------------------------------------------------

// Sorted by name without regard to case; keys of equal name keep their order.
void sortByName(Array<CIMKeyBinding>& keyBindings) {
    std::vector<CIMKeyBinding> sorted(keyBindings.getData(),
                                      keyBindings.getData() + keyBindings.size());
    std::stable_sort(
        sorted.begin(), sorted.end(), [](const CIMKeyBinding& a, const CIMKeyBinding& b) {
            return String::compareNoCase(a.getName().getString(), b.getName().getString()) < 0;
        });
    Array<CIMKeyBinding> result(sorted.data(), Uint32(sorted.size()));
    keyBindings.swap(result);
}

// Reference values are rewritten as parsed, which puts their own keys in
// order too; one that does not parse is refused.
void canonicalizeReferences(Array<CIMKeyBinding>& keyBindings) {
    for (Uint32 i = 0; i < keyBindings.size(); i++) {
        CIMKeyBinding& binding = keyBindings[i];
        if (binding.getType() == CIMKeyBinding::REFERENCE)
            binding.setValue(CIMObjectPath(binding.getValue()).toString());
    }
}

//------------------------------------------------------------------------------
// Text form
//------------------------------------------------------------------------------

String escapeValue(const String& value) {
    String escaped;
    for (Uint32 i = 0; i < value.size(); i++) {
        const Char16 c = value[i];
        if (c == '\\' || c == '"')
            escaped.append(Char16('\\'));
        escaped.append(c);
    }
    return escaped;
}

bool isQuoted(CIMKeyBinding::Type type) {
    return type == CIMKeyBinding::STRING || type == CIMKeyBinding::REFERENCE;
}

String fromUtf8(const std::string& text) {
    return String(text.c_str(), Uint32(text.size()));
}

// Whether c is the given upper-case ASCII letter in either case.
bool isLetterInAnyCase(char c, char upperLetter) {
    return c == upperLetter || c == upperLetter - 'A' + 'a';
}

// Reads the text form of an object path, kept as UTF-8 like the names it
// holds; every delimiter is ASCII.
class ObjectPathParser {
public:
    explicit ObjectPathParser(const String& objectName)
        : _objectName(objectName), _text(static_cast<const char*>(objectName.getCString())) {}

    void parse(String& host, CIMNamespaceName& nameSpace, CIMName& className,
               Array<CIMKeyBinding>& keyBindings) {
        const bool gotHost = _parseHost(host);
        const bool gotNamespace = _parseNamespace(nameSpace);
        if (gotHost && !gotNamespace)
            _fail("Common.CIMObjectPath.MISSING_NAMESPACE",
                  "$0, reason:\"host specified, missing namespace\"");
        const bool hasKeys = _parseClassName(className);
        if (hasKeys) {
            _parseKeyBindings(keyBindings);
            sortByName(keyBindings);
        }
    }

private:
    [[noreturn]] void _fail(const char* id, const char* reason,
                            const std::string& detail = std::string()) {
        throwMalformed(id, reason, _objectName, fromUtf8(detail));
    }

    bool _atEnd() const { return _position >= _text.size(); }

    // "//host/": the '/' after the host is left for the namespace.
    bool _parseHost(String& host) {
        if (_text.compare(0, 2, "//") != 0)
            return false;
        const size_t slash = _text.find('/', 2);
        if (slash == std::string::npos)
            _fail("Common.CIMObjectPath.MISSING_SLASH_AFTER_HOST",
                  "$0, reason:\"missing slash after hostname\"");
        host = fromUtf8(_text.substr(2, slash - 2));
        if (!isValidHostLocator(host))
            _fail("Common.CIMObjectPath.INVALID_HOSTNAME", "$0, reason:\"invalid hostname\"");
        _position = slash;
        return true;
    }

    // "namespace:" counts only when its ':' comes before the first '.', so a
    // ':' inside a key value is not taken for it.
    bool _parseNamespace(CIMNamespaceName& nameSpace) {
        const size_t colon = _text.find(':', _position);
        if (colon == std::string::npos)
            return false;
        const size_t dot = _text.find('.', _position);
        if (dot != std::string::npos && dot < colon)
            return false;
        const String name = fromUtf8(_text.substr(_position, colon - _position));
        if (!CIMNamespaceName::legal(name))
            _fail("Common.CIMObjectPath.INVALID_NAMESPACE",
                  "$0, reason:\"invalid namespace name\"");
        nameSpace = name;
        _position = colon + 1;
        return true;
    }

    // The class name runs to the first '.', after which the keys follow.
    bool _parseClassName(CIMName& className) {
        const size_t dot = _text.find('.', _position);
        const size_t end = dot == std::string::npos ? _text.size() : dot;
        const std::string name = _text.substr(_position, end - _position);
        if (!CIMName::legal(fromUtf8(name)))
            _fail("Common.CIMObjectPath.INVALID_CLASSNAME",
                  "$0, reason:\"class name $1 not a legal CIM name\"", name);
        className = fromUtf8(name);
        _position = end + 1;
        return dot != std::string::npos;
    }

    // name=value pairs separated by ',', a trailing ',' being tolerated.
    void _parseKeyBindings(Array<CIMKeyBinding>& keyBindings) {
        while (!_atEnd()) {
            const CIMName name = _parseKeyName();
            keyBindings.append(_parseKeyValue(name));
            if (_atEnd())
                break;
            if (_text[_position++] != ',')
                _fail("Common.CIMObjectPath.INVALID_KEYVALUEPAIR_MISSCOMMA",
                      "$0, reason:\"invalid key-value pair, next key-value pair has to start "
                      "with comma\"");
        }
    }

    CIMName _parseKeyName() {
        const size_t equalSign = _text.find('=', _position);
        if (equalSign == std::string::npos)
            _fail("Common.CIMObjectPath.INVALID_KEYVALUEPAIR",
                  "$0, reason:\"invalid key-value pair, missing equal sign\"");
        const std::string name = _text.substr(_position, equalSign - _position);
        if (!CIMName::legal(fromUtf8(name)))
            _fail("Common.CIMObjectPath.INVALID_KEYNAME",
                  "$0, reason:\"invalid key-value pair, invalid key name:$1\"", name);
        _position = equalSign + 1;
        return CIMName(fromUtf8(name));
    }

    CIMKeyBinding _parseKeyValue(const CIMName& name) {
        const char first = _atEnd() ? '\0' : _text[_position];
        if (first == '"')
            return _parseQuotedValue(name);
        if (isLetterInAnyCase(first, 'T') || isLetterInAnyCase(first, 'F'))
            return _parseBooleanValue(name);
        return _parseNumericValue(name);
    }

    // A quoted value is a reference if it parses as a path with keys, a
    // string otherwise: the text form does not tell them apart.
    CIMKeyBinding _parseQuotedValue(const CIMName& name) {
        std::string value;
        for (_position++; !_atEnd() && _text[_position] != '"'; _position++) {
            if (_text[_position] == '\\') {
                _position++;
                if (_atEnd() || (_text[_position] != '\\' && _text[_position] != '"'))
                    _fail("Common.CIMObjectPath.INVALID_KEYVALUE",
                          "$0, reason:\"invalid key-value pair, malformed value\"");
            }
            value += _text[_position];
        }
        if (_atEnd())
            _fail("Common.CIMObjectPath.INVALID_KEYVALUEPAIR_MISSINGQUOTE",
                  "$0, reason:\"invalid key-value pair, missing quote in key value\"");
        _position++;
        const String text = fromUtf8(value);
        CIMObjectPath reference;
        if (value.find('=') != std::string::npos && _parsesWithKeys(text, reference))
            return CIMKeyBinding(name, reference.toString(), CIMKeyBinding::REFERENCE);
        return CIMKeyBinding(name, text, CIMKeyBinding::STRING);
    }

    static bool _parsesWithKeys(const String& text, CIMObjectPath& path) {
        try {
            path.set(text);
            return path.getKeyBindings().size() > 0;
        } catch (const Exception&) {
            return false;
        }
    }

    std::string _unquotedValue() {
        const size_t comma = _text.find(',', _position);
        const size_t end = comma == std::string::npos ? _text.size() : comma;
        std::string value = _text.substr(_position, end - _position);
        _position = end;
        return value;
    }

    // TRUE or FALSE in any case, kept in upper case.
    CIMKeyBinding _parseBooleanValue(const CIMName& name) {
        std::string value = _unquotedValue();
        for (char& c : value) {
            if (c >= 'a' && c <= 'z')
                c = char(c - 'a' + 'A');
        }
        if (value != "TRUE" && value != "FALSE")
            _fail("Common.CIMObjectPath.INVALID_BOOLVALUE",
                  "$0, reason:\"invalid key-value pair, value should be TRUE or FALSE\"");
        return CIMKeyBinding(name, fromUtf8(value), CIMKeyBinding::BOOLEAN);
    }

    // Decimal or hexadecimal integers; only a '-' may precede them.
    CIMKeyBinding _parseNumericValue(const CIMName& name) {
        const std::string value = _unquotedValue();
        if (!value.empty() && value[0] == '-') {
            Sint64 number;
            if (!parseSignedInteger(value.c_str(), number))
                _fail("Common.CIMObjectPath.INVALID_NEGATIVNUMBER_VALUE",
                      "$0, reason:\"invalid key-value pair, invalid negative number value $1\"",
                      value);
        } else {
            Uint64 number;
            if (!parseUnsignedInteger(value.c_str(), number))
                _fail("Common.CIMObjectPath.INVALID_NEGATIVNUMBER_VALUE",
                      "$0, reason:\"invalid key-value pair, invalid number value $1\"", value);
        }
        return CIMKeyBinding(name, fromUtf8(value), CIMKeyBinding::NUMERIC);
    }

    const String& _objectName;
    const std::string _text;
    size_t _position = 0;
};

//------------------------------------------------------------------------------
// Comparison helpers
//------------------------------------------------------------------------------

bool sameNumber(const String& a, const String& b) {
    const CString textA = a.getCString();
    const CString textB = b.getCString();
    Uint64 unsignedA, unsignedB;
    if (parseUnsignedInteger(textA, unsignedA) && parseUnsignedInteger(textB, unsignedB))
        return unsignedA == unsignedB;
    Sint64 signedA, signedB;
    if (parseSignedInteger(textA, signedA) && parseSignedInteger(textB, signedB))
        return signedA == signedB;
    return String::equal(a, b);
}

bool sameReference(const String& a, const String& b) {
    try {
        return CIMObjectPath(a) == CIMObjectPath(b);
    } catch (const Exception&) {
        return String::equal(a, b);
    }
}

// The form identical paths share: names and host in lower case, numbers in
// decimal, booleans in lower case, references in their own canonical form.
String canonicalNumber(const String& value) {
    const CString text = value.getCString();
    char buffer[32];
    Uint64 unsignedValue;
    Sint64 signedValue;
    if (parseUnsignedInteger(text, unsignedValue))
        std::snprintf(buffer, sizeof(buffer), "%llu", unsignedValue);
    else if (parseSignedInteger(text, signedValue))
        std::snprintf(buffer, sizeof(buffer), "%lld", signedValue);
    else
        return value;
    return String(buffer);
}

String lowerCase(const String& text) {
    String lowered(text);
    lowered.toLower();
    return lowered;
}

} // namespace

//------------------------------------------------------------------------------
// CIMKeyBinding
//------------------------------------------------------------------------------

CIMKeyBinding::CIMKeyBinding() : _type(STRING) {}

CIMKeyBinding::CIMKeyBinding(const CIMKeyBinding& x) = default;

CIMKeyBinding::CIMKeyBinding(const CIMName& name, const String& value, Type type)
    : _name(name), _value(value), _type(type) {}

CIMKeyBinding::~CIMKeyBinding() = default;

CIMKeyBinding& CIMKeyBinding::operator=(const CIMKeyBinding& x) = default;

const CIMName& CIMKeyBinding::getName() const {
    return _name;
}

void CIMKeyBinding::setName(const CIMName& name) {
    _name = name;
}

const String& CIMKeyBinding::getValue() const {
    return _value;
}

void CIMKeyBinding::setValue(const String& value) {
    _value = value;
}

CIMKeyBinding::Type CIMKeyBinding::getType() const {
    return _type;
}

void CIMKeyBinding::setType(Type type) {
    _type = type;
}

Boolean operator==(const CIMKeyBinding& x, const CIMKeyBinding& y) {
    if (!x.getName().equal(y.getName()) || x.getType() != y.getType())
        return false;
    switch (x.getType()) {
    case CIMKeyBinding::REFERENCE:
        return sameReference(x.getValue(), y.getValue());
    case CIMKeyBinding::BOOLEAN:
        return String::equalNoCase(x.getValue(), y.getValue());
    case CIMKeyBinding::NUMERIC:
        return sameNumber(x.getValue(), y.getValue());
    case CIMKeyBinding::STRING:
        break;
    }
    return String::equal(x.getValue(), y.getValue());
}

//------------------------------------------------------------------------------
// CIMObjectPath
//------------------------------------------------------------------------------

CIMObjectPath::CIMObjectPath() = default;

CIMObjectPath::CIMObjectPath(const CIMObjectPath& x) = default;

CIMObjectPath::CIMObjectPath(const String& objectName) {
    set(objectName);
}

CIMObjectPath::CIMObjectPath(const String& host, const CIMNamespaceName& nameSpace,
                             const CIMName& className, const Array<CIMKeyBinding>& keyBindings) {
    set(host, nameSpace, className, keyBindings);
}

CIMObjectPath::~CIMObjectPath() = default;

CIMObjectPath& CIMObjectPath::operator=(const CIMObjectPath& x) = default;

void CIMObjectPath::clear() {
    *this = CIMObjectPath();
}

void CIMObjectPath::set(const String& host, const CIMNamespaceName& nameSpace,
                        const CIMName& className, const Array<CIMKeyBinding>& keyBindings) {
    checkHost(host);
    Array<CIMKeyBinding> sorted(keyBindings);
    canonicalizeReferences(sorted);
    sortByName(sorted);
    _host = host;
    _nameSpace = nameSpace;
    _className = className;
    _keyBindings.swap(sorted);
}

// On a parse error the path is left cleared.
void CIMObjectPath::set(const String& objectName) {
    clear();
    CIMObjectPath parsed;
    ObjectPathParser(objectName)
        .parse(parsed._host, parsed._nameSpace, parsed._className, parsed._keyBindings);
    *this = parsed;
}

CIMObjectPath& CIMObjectPath::operator=(const String& objectName) {
    set(objectName);
    return *this;
}

const String& CIMObjectPath::getHost() const {
    return _host;
}

void CIMObjectPath::setHost(const String& host) {
    checkHost(host);
    _host = host;
}

const CIMNamespaceName& CIMObjectPath::getNameSpace() const {
    return _nameSpace;
}

void CIMObjectPath::setNameSpace(const CIMNamespaceName& nameSpace) {
    _nameSpace = nameSpace;
}

const CIMName& CIMObjectPath::getClassName() const {
    return _className;
}

void CIMObjectPath::setClassName(const CIMName& className) {
    _className = className;
}

const Array<CIMKeyBinding>& CIMObjectPath::getKeyBindings() const {
    return _keyBindings;
}

void CIMObjectPath::setKeyBindings(const Array<CIMKeyBinding>& keyBindings) {
    Array<CIMKeyBinding> sorted(keyBindings);
    canonicalizeReferences(sorted);
    sortByName(sorted);
    _keyBindings.swap(sorted);
}

// A namespace is written whenever there is a host, even an empty one.
String CIMObjectPath::toString() const {
    String text;
    if (_host.size() != 0) {
        text.append("//");
        text.append(_host);
        text.append("/");
    }
    if (!_nameSpace.isNull() || _host.size() != 0) {
        text.append(_nameSpace.getString());
        text.append(":");
    }
    text.append(_className.getString());
    for (Uint32 i = 0; i < _keyBindings.size(); i++) {
        const CIMKeyBinding& binding = _keyBindings[i];
        text.append(Char16(i == 0 ? '.' : ','));
        text.append(binding.getName().getString());
        text.append(Char16('='));
        const bool quoted = isQuoted(binding.getType());
        if (quoted)
            text.append(Char16('"'));
        text.append(escapeValue(binding.getValue()));
        if (quoted)
            text.append(Char16('"'));
    }
    return text;
}

String CIMObjectPath::_toStringCanonical() const {
    CIMObjectPath canonical(*this);
    canonical._host.toLower();
    if (!_nameSpace.isNull())
        canonical._nameSpace = lowerCase(_nameSpace.getString());
    if (!_className.isNull())
        canonical._className = lowerCase(_className.getString());
    for (Uint32 i = 0; i < canonical._keyBindings.size(); i++) {
        CIMKeyBinding& binding = canonical._keyBindings[i];
        if (!binding.getName().isNull())
            binding.setName(lowerCase(binding.getName().getString()));
        switch (binding.getType()) {
        case CIMKeyBinding::REFERENCE:
            try {
                binding.setValue(CIMObjectPath(binding.getValue())._toStringCanonical());
            } catch (const Exception&) {
                // An unparsable reference is compared as it stands.
            }
            break;
        case CIMKeyBinding::BOOLEAN:
            binding.setValue(lowerCase(binding.getValue()));
            break;
        case CIMKeyBinding::NUMERIC:
            binding.setValue(canonicalNumber(binding.getValue()));
            break;
        case CIMKeyBinding::STRING:
            break;
        }
    }
    return canonical.toString();
}

Boolean CIMObjectPath::identical(const CIMObjectPath& x) const {
    if (!String::equalNoCase(_host, x._host) || !_nameSpace.equal(x._nameSpace) ||
        !_className.equal(x._className) || _keyBindings.size() != x._keyBindings.size())
        return false;
    for (Uint32 i = 0; i < _keyBindings.size(); i++) {
        if (!(_keyBindings[i] == x._keyBindings[i]))
            return false;
    }
    return true;
}

Uint32 CIMObjectPath::makeHashCode() const {
    const String canonical = _toStringCanonical();
    Uint32 hash = 0;
    for (Uint32 i = 0; i < canonical.size(); i++)
        hash = 5 * hash + canonical[i];
    return hash;
}

Boolean operator==(const CIMObjectPath& x, const CIMObjectPath& y) {
    return x.identical(y);
}

Boolean operator!=(const CIMObjectPath& x, const CIMObjectPath& y) {
    return !x.identical(y);
}

PEGASUS_NAMESPACE_END
