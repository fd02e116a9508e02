#include <Pegasus/Common/MessageLoader.h>
#include <Pegasus/Common/InternalException.h>

#include <Pegasus/Common/ExceptionRep.h>

PEGASUS_NAMESPACE_BEGIN

namespace {

String load(const char* id, const char* text, const Formatter::Arg& arg0 = Formatter::DEFAULT_ARG,
            const Formatter::Arg& arg1 = Formatter::DEFAULT_ARG) {
    MessageLoaderParms parms(id, text, arg0, arg1);
    return MessageLoader::getMessage(parms);
}

String fileAndLine(const String& file, Uint32 line) {
    String text(file);
    text.appendPrintf("(%u): ", line);
    return text;
}

// "<code name>: <message>", or the code name alone for an empty message.
String describe(const String& codeText, const String& message) {
    String text(codeText);
    if (message.size() != 0) {
        text.append(": ");
        text.append(message);
    }
    return text;
}

} // namespace

const char NullPointer::MSG[] = "null pointer";
const char NullPointer::KEY[] = "Common.InternalException.NULL_POINTER";
const char UndeclaredQualifier::MSG[] = "undeclared qualifier: $0";
const char UndeclaredQualifier::KEY[] = "Common.InternalException.UNDECLARED_QUALIFIER";
const char BadQualifierScope::MSG[] = "qualifier invalid in this scope: $0 scope=$1";
const char BadQualifierScope::KEY[] = "Common.InternalException.BAD_QUALIFIER_SCOPE";
const char BadQualifierOverride::MSG[] = "qualifier not overridable: $0";
const char BadQualifierOverride::KEY[] = "Common.InternalException.BAD_QUALIFIER_OVERRIDE";
const char BadQualifierType::MSG[] = "CIMType of qualifier different than its declaration: $0";
const char BadQualifierType::KEY[] = "Common.InternalException.BAD_QUALIFIER_TYPE";
const char InstantiatedAbstractClass::MSG[] = "attempted to instantiate an abstract class $0";
const char InstantiatedAbstractClass::KEY[] =
    "Common.InternalException.INSTANTIATED_ABSTRACT_CLASS";
const char NoSuchProperty::MSG[] = "no such property: $0";
const char NoSuchProperty::KEY[] = "Common.InternalException.NO_SUCH_PROPERTY";
const char NotImplemented::MSG[] = "not implemented: $0";
const char NotImplemented::KEY[] = "Common.InternalException.NOT_IMPLEMENTED";
const char ParseError::MSG[] = "parse error: $0";
const char ParseError::KEY[] = "Common.InternalException.PARSE_ERROR";

AssertionFailureException::AssertionFailureException(const char* file, size_t line,
                                                     const String& message)
    : Exception(fileAndLine(String(file), Uint32(line)) + message) {}

AssertionFailureException::~AssertionFailureException() = default;

NullPointer::NullPointer() : Exception(load(KEY, MSG)) {}

NullPointer::~NullPointer() = default;

UndeclaredQualifier::UndeclaredQualifier(const String& qualifierName)
    : Exception(load(KEY, MSG, qualifierName)) {}

UndeclaredQualifier::~UndeclaredQualifier() = default;

BadQualifierScope::BadQualifierScope(const String& qualifierName, const String& scopeString)
    : Exception(load(KEY, MSG, qualifierName, scopeString)) {}

BadQualifierScope::~BadQualifierScope() = default;

BadQualifierOverride::BadQualifierOverride(const String& qualifierName)
    : Exception(load(KEY, MSG, qualifierName)) {}

BadQualifierOverride::~BadQualifierOverride() = default;

BadQualifierType::BadQualifierType(const String& qualifierName, const String& className)
    : Exception(
          load(KEY, MSG,
               className.size() == 0 ? qualifierName : qualifierName + "(\"" + className + "\")")),
      _qualifierName(qualifierName), _className(className) {}

BadQualifierType::~BadQualifierType() = default;

const String& BadQualifierType::getQualifierName() const {
    return _qualifierName;
}

const String& BadQualifierType::getClassName() const {
    return _className;
}

InstantiatedAbstractClass::InstantiatedAbstractClass(const String& className)
    : Exception(load(KEY, MSG, className)) {}

InstantiatedAbstractClass::~InstantiatedAbstractClass() = default;

NoSuchProperty::NoSuchProperty(const String& propertyName)
    : Exception(load(KEY, MSG, propertyName)) {}

NoSuchProperty::~NoSuchProperty() = default;

NotImplemented::NotImplemented(const String& method) : Exception(load(KEY, MSG, method)) {}

NotImplemented::~NotImplemented() = default;

ParseError::ParseError(const String& message) : Exception(load(KEY, MSG, message)) {}

ParseError::~ParseError() = default;

IncompatibleTypesException::IncompatibleTypesException() : Exception("incompatible types") {}

IncompatibleTypesException::~IncompatibleTypesException() = default;

void ThrowIndexOutOfBoundsException() {
    throw IndexOutOfBoundsException();
}

void ThrowUninitializedObjectException() {
    throw UninitializedObjectException();
}

//------------------------------------------------------------------------------
// TraceableCIMException
//------------------------------------------------------------------------------

TraceableCIMException::TraceableCIMException(CIMStatusCode code, const String& message,
                                             const String& file, Uint32 line)
    : CIMException(code, message) {
    _rep->file = file;
    _rep->line = line;
    _rep->cimMessage = cimStatusCodeToString(code);
}

TraceableCIMException::TraceableCIMException(CIMStatusCode code, const MessageLoaderParms& parms,
                                             const String& file, Uint32 line)
    : CIMException(code, parms) {
    _rep->file = file;
    _rep->line = line;
    _rep->cimMessage = cimStatusCodeToString(code);
}

// Keeps the code, message and origin, but not the attached error instances.
TraceableCIMException::TraceableCIMException(const CIMException& cimException)
    : CIMException(cimException) {
    _rep->errors.clear();
}

String TraceableCIMException::getDescription() const {
    const String codeText =
        _rep->cimMessage.size() != 0 ? _rep->cimMessage : String(cimStatusCodeToString(getCode()));
    return describe(codeText, getMessage());
}

String TraceableCIMException::getTraceDescription() const {
    return fileAndLine(_rep->file, _rep->line) +
           describe(cimStatusCodeToString(getCode()), getMessage());
}

String TraceableCIMException::getCIMMessage() const {
    return _rep->cimMessage;
}

void TraceableCIMException::setCIMMessage(const String& cimMessage) {
    _rep->cimMessage = cimMessage;
}

String TraceableCIMException::getFile() const {
    return _rep->file;
}

Uint32 TraceableCIMException::getLine() const {
    return _rep->line;
}

PEGASUS_NAMESPACE_END
