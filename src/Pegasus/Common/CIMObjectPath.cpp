#include <Pegasus/Common/MessageLoader.h>
#include <Pegasus/Common/CIMObjectPath.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <numeric>
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

bool precedesByName(const CIMKeyBinding& a, const CIMKeyBinding& b) {
    return String::compareNoCase(a.getName().getString(), b.getName().getString()) < 0;
}

// Stable, and without memory of its own.
template <class Precedes>
void insertionSort(Uint32* items, Uint32 n, Precedes precedes) {
    for (Uint32 i = 1; i < n; i++) {
        const Uint32 item = items[i];
        Uint32 j = i;
        for (; j > 0 && precedes(item, items[j - 1]); j--)
            items[j] = items[j - 1];
        items[j] = item;
    }
}

// The order of the key names last sorted on a thread: a provider makes its paths with the same
// names in the same order, mostly the very same texts, which compare at once.
class KeyOrder {
public:
    const std::vector<Uint32>& of(const CIMKeyBinding* keys, Uint32 n) {
        if (!_sameNames(keys, n))
            _sort(keys, n);
        return _order;
    }

private:
    bool _sameNames(const CIMKeyBinding* keys, Uint32 n) const {
        if (n != _names.size())
            return false;
        for (Uint32 i = 0; i < n; i++) {
            if (!String::equal(keys[i].getName().getString(), _names[i].getString()))
                return false;
        }
        return true;
    }

    void _sort(const CIMKeyBinding* keys, Uint32 n) {
        _names.clear();
        for (Uint32 i = 0; i < n; i++)
            _names.append(keys[i].getName());
        _order.resize(n);
        std::iota(_order.begin(), _order.end(), 0);
        const auto precedes = [&](Uint32 a, Uint32 b) { return precedesByName(keys[a], keys[b]); };
        constexpr Uint32 kFewKeys = 16;
        if (n > kFewKeys)
            std::stable_sort(_order.begin(), _order.end(), precedes);
        else
            insertionSort(_order.data(), n, precedes);
    }

    Array<CIMName> _names;
    std::vector<Uint32> _order;
};

// Sorted by name without regard to case; keys of equal name keep their order.
// Only their places are sorted, so that each key is copied once; the few
// keys of a path are sorted by insertion.
Array<CIMKeyBinding> sortedByName(const Array<CIMKeyBinding>& keyBindings) {
    thread_local KeyOrder lastOrder;
    const CIMKeyBinding* keys = keyBindings.getData();
    const Uint32 n = keyBindings.size();
    const std::vector<Uint32>& order = lastOrder.of(keys, n);
    Array<CIMKeyBinding> sorted;
    sorted.reserveCapacity(n);
    for (Uint32 i = 0; i < n; i++)
        sorted.append(keys[order[i]]);
    return sorted;
}

bool isCanonicalPath(const String& text);

// Reference values are rewritten as parsed, which puts their own keys in
// order too; one that does not parse is refused. Text already in that form
// is kept as it is.
void canonicalizeReferences(Array<CIMKeyBinding>& keyBindings) {
    for (Uint32 i = 0; i < keyBindings.size(); i++) {
        const CIMKeyBinding& binding = keyBindings.getData()[i];
        if (binding.getType() == CIMKeyBinding::REFERENCE && !isCanonicalPath(binding.getValue()))
            keyBindings[i].setValue(CIMObjectPath(binding.getValue()).toString());
    }
}

//------------------------------------------------------------------------------
// Text form
//------------------------------------------------------------------------------

bool needsEscape(Char16 c) {
    return c == '\\' || c == '"';
}

Uint32 escapedLength(const String& value) {
    const Char16* units = value.getChar16Data();
    return value.size() + Uint32(std::count_if(units, units + value.size(), needsEscape));
}

void appendEscaped(String& text, const String& value) {
    const Char16* units = value.getChar16Data();
    const Char16* end = units + value.size();
    for (const Char16* run = units; run != end;) {
        const Char16* special = std::find_if(run, end, needsEscape);
        text.append(run, Uint32(special - run));
        if (special == end)
            break;
        text.append(Char16('\\'));
        text.append(*special);
        run = special + 1;
    }
}

bool isQuoted(CIMKeyBinding::Type type) {
    return type == CIMKeyBinding::STRING || type == CIMKeyBinding::REFERENCE;
}

bool isAsciiLetter(Uint16 c, char upperLetter) {
    return c == Uint16(upperLetter) || c == Uint16(upperLetter - 'A' + 'a');
}

// Pieces of a path's text are checked through one String per thread, whose
// buffer is reused, rather than through a new one each. A long piece is let
// go at the next one, so that the buffer kept stays small.
const String& scratchText(const Char16* units, Uint32 n) {
    constexpr Uint32 kLongPiece = 1024;
    thread_local String scratch;
    if (scratch.size() > kLongPiece)
        scratch.clear();
    scratch.assign(units, n);
    return scratch;
}

// Names made of ASCII go through the constructor for literals, which shares
// the text of the same name made lately on this thread.
template <class Name>
Name nameOf(const Char16* units, Uint32 n) {
    char ascii[64];
    if (n >= sizeof(ascii))
        return Name(String(units, n));
    for (Uint32 i = 0; i < n; i++) {
        if (Uint16(units[i]) == 0 || Uint16(units[i]) >= 0x80)
            return Name(String(units, n));
        ascii[i] = char(units[i]);
    }
    ascii[n] = '\0';
    return Name(ascii);
}

// Whether units spell the upper-case ASCII word, in any case if anyCase.
bool spellsWord(const Char16* units, Uint32 n, const char* word, bool anyCase) {
    if (n != std::strlen(word))
        return false;
    for (Uint32 i = 0; i < n; i++) {
        const Uint16 c = units[i];
        const bool same = anyCase ? isAsciiLetter(c, word[i]) : c == Uint16(word[i]);
        if (!same)
            return false;
    }
    return true;
}

// The integer parsers read bytes: units beyond ASCII become a byte no number
// holds.
std::string asciiText(const Char16* units, Uint32 n) {
    std::string text(n, '\0');
    for (Uint32 i = 0; i < n; i++)
        text[i] = Uint16(units[i]) < 0x80 ? char(units[i]) : char(0x80);
    return text;
}

// Whether name a sorts before name b, as String::compareNoCase orders names.
bool nameUnitsPrecede(const Char16* a, Uint32 na, const Char16* b, Uint32 nb) {
    const auto lower = [](Char16 c) {
        const Uint16 unit = c;
        return unit >= 'A' && unit <= 'Z' ? Uint16(unit + ('a' - 'A')) : unit;
    };
    return std::lexicographical_compare(a, a + na, b, b + nb,
                                        [&](Char16 x, Char16 y) { return lower(x) < lower(y); });
}

// Where a parsed path goes.
struct PathParts {
    String host;
    CIMNamespaceName nameSpace;
    CIMName className;
    Array<CIMKeyBinding> keyBindings;
};

// Reads the text form of an object path from its code units; every delimiter
// is ASCII. Without parts to fill it only checks the text, which builds
// nothing, and tells whether the text is canonical: what toString() gives
// for the path it names.
class ObjectPathParser {
public:
    // The text ends at its first null, as its C string does.
    ObjectPathParser(const Char16* units, Uint32 size, PathParts* parts)
        : _units(units), _size(Uint32(std::find(units, units + size, Char16(0)) - units)),
          _textSize(size), _parts(parts) {}

    // Throws MalformedObjectNameException if the text does not parse.
    bool parse() {
        const bool gotHost = _parseHost();
        const bool gotNamespace = _parseNamespace(gotHost);
        if (gotHost && !gotNamespace)
            _fail("Common.CIMObjectPath.MISSING_NAMESPACE",
                  "$0, reason:\"host specified, missing namespace\"");
        if (_parseClassName()) {
            _parseKeyBindings();
            _canonical = _canonical && _keyCount > 0 && _size == _textSize;
        }
        if (_parts && !_sorted)
            _parts->keyBindings = sortedByName(_parts->keyBindings);
        return _canonical && _sorted;
    }

    Uint32 keyCount() const { return _keyCount; }

private:
    [[noreturn]] void _fail(const char* id, const char* reason, Uint32 begin = 0,
                            Uint32 end = 0) const {
        throwMalformed(id, reason, String(_units, _textSize), String(_units + begin, end - begin));
    }

    bool _atEnd() const { return _position >= _size; }

    Uint32 _find(char c, Uint32 from) const {
        const Char16* end = _units + _size;
        return Uint32(std::find(_units + std::min(from, _size), end, Char16(c)) - _units);
    }

    const String& _scratch(Uint32 begin, Uint32 end) const {
        return scratchText(_units + begin, end - begin);
    }

    // "//host/": the '/' after the host is left for the namespace.
    bool _parseHost() {
        if (_size < 2 || _units[0] != '/' || _units[1] != '/')
            return false;
        const Uint32 slash = _find('/', 2);
        if (slash == _size)
            _fail("Common.CIMObjectPath.MISSING_SLASH_AFTER_HOST",
                  "$0, reason:\"missing slash after hostname\"");
        if (!isValidHostLocator(_scratch(2, slash)))
            _fail("Common.CIMObjectPath.INVALID_HOSTNAME", "$0, reason:\"invalid hostname\"");
        if (_parts)
            _parts->host = String(_units + 2, slash - 2);
        _position = slash;
        return true;
    }

    // "namespace:" counts only when its ':' comes before the first '.', so a
    // ':' inside a key value is not taken for it. Its leading '/' is dropped:
    // the one after a host, or one that toString() will not give back.
    bool _parseNamespace(bool afterHost) {
        const Uint32 colon = _find(':', _position);
        if (colon == _size || _find('.', _position) < colon)
            return false;
        if (!CIMNamespaceName::legal(_scratch(_position, colon)))
            _fail("Common.CIMObjectPath.INVALID_NAMESPACE",
                  "$0, reason:\"invalid namespace name\"");
        _canonical = _canonical && (_units[_position] == '/') == afterHost;
        if (_parts)
            _parts->nameSpace = nameOf<CIMNamespaceName>(_units + _position, colon - _position);
        _position = colon + 1;
        return true;
    }

    // The class name runs to the first '.', after which the keys follow.
    bool _parseClassName() {
        const Uint32 end = _find('.', _position);
        if (!CIMName::legal(_scratch(_position, end)))
            _fail("Common.CIMObjectPath.INVALID_CLASSNAME",
                  "$0, reason:\"class name $1 not a legal CIM name\"", _position, end);
        if (_parts)
            _parts->className = nameOf<CIMName>(_units + _position, end - _position);
        _position = end + 1;
        return end != _size;
    }

    // name=value pairs separated by ',', a trailing ',' being tolerated.
    void _parseKeyBindings() {
        while (!_atEnd()) {
            _parseKeyName();
            _parseKeyValue();
            _keyCount++;
            if (_atEnd())
                return;
            if (_units[_position++] != ',')
                _fail("Common.CIMObjectPath.INVALID_KEYVALUEPAIR_MISSCOMMA",
                      "$0, reason:\"invalid key-value pair, next key-value pair has to start "
                      "with comma\"");
            _canonical = _canonical && !_atEnd();
        }
    }

    void _parseKeyName() {
        const Uint32 equalSign = _find('=', _position);
        if (equalSign == _size)
            _fail("Common.CIMObjectPath.INVALID_KEYVALUEPAIR",
                  "$0, reason:\"invalid key-value pair, missing equal sign\"");
        if (!CIMName::legal(_scratch(_position, equalSign)))
            _fail("Common.CIMObjectPath.INVALID_KEYNAME",
                  "$0, reason:\"invalid key-value pair, invalid key name:$1\"", _position,
                  equalSign);
        const Char16* name = _units + _position;
        const Uint32 size = equalSign - _position;
        _sorted = _sorted && !nameUnitsPrecede(name, size, _lastName, _lastNameSize);
        if (_parts)
            _name = nameOf<CIMName>(name, size);
        _lastName = name;
        _lastNameSize = size;
        _position = equalSign + 1;
    }

    void _parseKeyValue() {
        const Uint16 first = _atEnd() ? 0 : Uint16(_units[_position]);
        if (first == '"')
            _parseQuotedValue();
        else if (isAsciiLetter(first, 'T') || isAsciiLetter(first, 'F'))
            _parseBooleanValue();
        else
            _parseNumericValue();
    }

    // Made in its place, which spares copying a whole binding into the array.
    void _keep(const String& value, CIMKeyBinding::Type type) {
        if (!_parts)
            return;
        Array<CIMKeyBinding>& keys = _parts->keyBindings;
        keys.append(CIMKeyBinding());
        CIMKeyBinding& key = keys[keys.size() - 1];
        key.setName(_name);
        key.setValue(value);
        key.setType(type);
    }

    // A quoted value is a reference if it parses as a path with keys, a
    // string otherwise: the text form does not tell them apart. Escapes are
    // undone only when there are any.
    void _parseQuotedValue() {
        const Uint32 begin = ++_position;
        bool escaped = false;
        bool hasEqualSign = false;
        for (; !_atEnd() && _units[_position] != '"'; _position++) {
            if (_units[_position] == '\\') {
                _position++;
                if (_atEnd() || (_units[_position] != '\\' && _units[_position] != '"'))
                    _fail("Common.CIMObjectPath.INVALID_KEYVALUE",
                          "$0, reason:\"invalid key-value pair, malformed value\"");
                escaped = true;
            }
            hasEqualSign = hasEqualSign || _units[_position] == '=';
        }
        if (_atEnd())
            _fail("Common.CIMObjectPath.INVALID_KEYVALUEPAIR_MISSINGQUOTE",
                  "$0, reason:\"invalid key-value pair, missing quote in key value\"");
        const Uint32 end = _position++;
        if (!hasEqualSign && !_parts)
            return;
        const String value = escaped ? _unescaped(begin, end) : String(_units + begin, end - begin);
        if (!hasEqualSign)
            return _keep(value, CIMKeyBinding::STRING);
        const NestedPath nested = checkNested(value);
        if (!nested.isReference)
            return _keep(value, CIMKeyBinding::STRING);
        _canonical = _canonical && nested.canonical;
        _keep(nested.canonical ? value : CIMObjectPath(value).toString(), CIMKeyBinding::REFERENCE);
    }

    struct NestedPath {
        bool isReference;
        bool canonical;
    };

    static NestedPath checkNested(const String& text) {
        try {
            ObjectPathParser parser(text.getChar16Data(), text.size(), nullptr);
            const bool canonical = parser.parse();
            return {parser.keyCount() > 0, canonical};
        } catch (const Exception&) {
            return {false, false};
        }
    }

    String _unescaped(Uint32 begin, Uint32 end) const {
        String value;
        value.reserveCapacity(end - begin);
        for (Uint32 i = begin; i < end; i++) {
            if (_units[i] == '\\')
                i++;
            value.append(_units[i]);
        }
        return value;
    }

    Uint32 _unquotedEnd() const { return _find(',', _position); }

    // TRUE or FALSE in any case, kept in upper case.
    void _parseBooleanValue() {
        const Uint32 begin = _position;
        _position = _unquotedEnd();
        const Uint32 n = _position - begin;
        const bool isTrue = spellsWord(_units + begin, n, "TRUE", true);
        if (!isTrue && !spellsWord(_units + begin, n, "FALSE", true))
            _fail("Common.CIMObjectPath.INVALID_BOOLVALUE",
                  "$0, reason:\"invalid key-value pair, value should be TRUE or FALSE\"");
        const char* word = isTrue ? "TRUE" : "FALSE";
        _canonical = _canonical && spellsWord(_units + begin, n, word, false);
        _keep(String(word), CIMKeyBinding::BOOLEAN);
    }

    // Decimal or hexadecimal integers; only a '-' may precede them.
    void _parseNumericValue() {
        const Uint32 begin = _position;
        _position = _unquotedEnd();
        const std::string text = asciiText(_units + begin, _position - begin);
        if (!text.empty() && text[0] == '-') {
            Sint64 number;
            if (!parseSignedInteger(text.c_str(), number))
                _fail("Common.CIMObjectPath.INVALID_NEGATIVNUMBER_VALUE",
                      "$0, reason:\"invalid key-value pair, invalid negative number value $1\"",
                      begin, _position);
        } else {
            Uint64 number;
            if (!parseUnsignedInteger(text.c_str(), number))
                _fail("Common.CIMObjectPath.INVALID_NEGATIVNUMBER_VALUE",
                      "$0, reason:\"invalid key-value pair, invalid number value $1\"", begin,
                      _position);
        }
        _keep(String(_units + begin, _position - begin), CIMKeyBinding::NUMERIC);
    }

    const Char16* const _units;
    const Uint32 _size;
    const Uint32 _textSize;
    PathParts* const _parts;
    Uint32 _position = 0;
    Uint32 _keyCount = 0;
    bool _canonical = true;
    bool _sorted = true;
    const Char16* _lastName = nullptr;
    Uint32 _lastNameSize = 0;
    // The name of the key being read, when the keys are kept.
    CIMName _name;
};

bool isCanonicalPath(const String& text) {
    return ObjectPathParser(text.getChar16Data(), text.size(), nullptr).parse();
}
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

CIMKeyBinding::CIMKeyBinding(CIMKeyBinding&& x) noexcept = default;

CIMKeyBinding::CIMKeyBinding(const CIMName& name, const String& value, Type type)
    : _name(name), _value(value), _type(type) {}

CIMKeyBinding::~CIMKeyBinding() = default;

CIMKeyBinding& CIMKeyBinding::operator=(const CIMKeyBinding& x) = default;

CIMKeyBinding& CIMKeyBinding::operator=(CIMKeyBinding&& x) noexcept = default;

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

CIMObjectPath::CIMObjectPath(CIMObjectPath&& x) noexcept = default;

CIMObjectPath::CIMObjectPath(const String& objectName) {
    set(objectName);
}

CIMObjectPath::CIMObjectPath(const String& host, const CIMNamespaceName& nameSpace,
                             const CIMName& className, const Array<CIMKeyBinding>& keyBindings) {
    set(host, nameSpace, className, keyBindings);
}

CIMObjectPath::~CIMObjectPath() = default;

CIMObjectPath& CIMObjectPath::operator=(const CIMObjectPath& x) = default;

CIMObjectPath& CIMObjectPath::operator=(CIMObjectPath&& x) noexcept = default;

void CIMObjectPath::clear() {
    *this = CIMObjectPath();
}

void CIMObjectPath::set(const String& host, const CIMNamespaceName& nameSpace,
                        const CIMName& className, const Array<CIMKeyBinding>& keyBindings) {
    checkHost(host);
    Array<CIMKeyBinding> sorted = sortedByName(keyBindings);
    canonicalizeReferences(sorted);
    _host = host;
    _nameSpace = nameSpace;
    _className = className;
    _keyBindings.swap(sorted);
}

// On a parse error the path is left cleared.
void CIMObjectPath::set(const String& objectName) {
    clear();
    PathParts parsed;
    ObjectPathParser(objectName.getChar16Data(), objectName.size(), &parsed).parse();
    _host = std::move(parsed.host);
    _nameSpace = parsed.nameSpace;
    _className = parsed.className;
    _keyBindings.swap(parsed.keyBindings);
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
    Array<CIMKeyBinding> sorted = sortedByName(keyBindings);
    canonicalizeReferences(sorted);
    _keyBindings.swap(sorted);
}

// A namespace is written whenever there is a host, even an empty one. The
// length is known before anything is written, so the text is allocated once.
String CIMObjectPath::toString() const {
    const bool withHost = _host.size() != 0;
    const bool withNamespace = !_nameSpace.isNull() || withHost;
    Uint32 length = _className.getString().size();
    if (withHost)
        length += _host.size() + 3;
    if (withNamespace)
        length += _nameSpace.getString().size() + 1;
    for (Uint32 i = 0; i < _keyBindings.size(); i++) {
        const CIMKeyBinding& binding = _keyBindings[i];
        length += binding.getName().getString().size() + 2 + escapedLength(binding.getValue()) +
                  (isQuoted(binding.getType()) ? 2 : 0);
    }
    String text;
    text.reserveCapacity(length);
    if (withHost) {
        text.append("//");
        text.append(_host);
        text.append(Char16('/'));
    }
    if (withNamespace) {
        text.append(_nameSpace.getString());
        text.append(Char16(':'));
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
        appendEscaped(text, binding.getValue());
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
