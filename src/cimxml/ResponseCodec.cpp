#include <cimxml/Errors.h>
#include <cimxml/Response.h>
#include <cimxml/Values.h>
#include <cimxml/detail/Envelope.h>
#include <cimxml/detail/Fail.h>
#include <cimxml/detail/PropertyTags.h>
#include <cimxml/detail/Reader.h>
#include <cimxml/detail/ReferenceElements.h>
#include <cimxml/detail/Writer.h>
#include <cimxml/detail/XmlText.h>

#include <Pegasus/Common/Exception.h>

#include <utility>

namespace ksv::cimxml {

using namespace Pegasus;
using detail::Children;
using detail::Element;

namespace {

bool returnsNothing(Operation operation) {
    return operation == Operation::ModifyInstance || operation == Operation::DeleteInstance ||
           operation == Operation::SetProperty || operation == Operation::CloseEnumeration;
}

// Instances with their paths, in VALUE.INSTANCEWITHPATH.
bool deliversInstancesWithPath(Operation operation) {
    return continuesEnumeration(operation) && !deliversPaths(operation) &&
           operation != Operation::PullInstances;
}

bool isAssociation(Operation operation) {
    return operation == Operation::Associators || operation == Operation::References;
}

bool isAssociationNames(Operation operation) {
    return operation == Operation::AssociatorNames || operation == Operation::ReferenceNames;
}

// The path an instance is delivered under; its class name when the provider set no path.
CIMObjectPath pathOf(const CIMConstInstance& instance) {
    CIMObjectPath path = instance.getPath();
    if (path.getClassName().isNull()) {
        path.setClassName(instance.getClassName());
    }
    return path;
}

// The same without copying the path in the usual case, where the provider set it.
void writeInstanceName(detail::Writer& writer, const CIMConstInstance& instance) {
    const CIMObjectPath& path = instance.getPath();
    path.getClassName().isNull() ? writer.instanceName(pathOf(instance))
                                 : writer.instanceName(path);
}

void appendTypeAttributes(std::string& out, const CIMValue& value) {
    out += " PARAMTYPE=\"";
    out += wireTypeName(value.getType());
    out += '"';
    if (value.getType() == CIMTYPE_OBJECT || value.getType() == CIMTYPE_INSTANCE) {
        out += value.getType() == CIMTYPE_INSTANCE ? " EmbeddedObject=\"instance\""
                                                   : " EmbeddedObject=\"object\"";
    }
}

} // namespace

CIMObjectPath completed(CIMObjectPath path, const PathDefaults& defaults) {
    if (path.getHost().size() == 0) {
        path.setHost(defaults.host);
    }
    if (path.getNameSpace().isNull()) {
        path.setNameSpace(defaults.nameSpace);
    }
    return path;
}

IMethodResponseWriter::IMethodResponseWriter(std::string& out, std::string messageId,
                                             Operation operation, PathDefaults defaults)
    : _out(out), _messageId(std::move(messageId)), _operation(operation),
      _defaults(std::move(defaults)), _references(std::make_unique<detail::ReferenceElements>()),
      _propertyTags(std::make_unique<detail::PropertyTags>()) {}

IMethodResponseWriter::~IMethodResponseWriter() = default;

void IMethodResponseWriter::_start() {
    if (_started) {
        return;
    }
    _started = true;
    detail::appendMessageHead(_out, _messageId);
    _out += "<SIMPLERSP><IMETHODRESPONSE NAME=\"";
    _out += operationName(_operation);
    _out += "\">";
    if (!returnsNothing(_operation)) {
        _out += "<IRETURNVALUE>";
    }
}

void IMethodResponseWriter::_require(bool fits, const char* what) const {
    if (!fits) {
        detail::throwCim(CIM_ERR_FAILED, std::string(what) + " does not belong in a " +
                                             operationName(_operation) + " response");
    }
}

void IMethodResponseWriter::writeClass(const CIMConstClass& cimClass) {
    const bool listed =
        _operation == Operation::GetClass || _operation == Operation::EnumerateClasses;
    _require(listed || isAssociation(_operation), "a class");
    _start();
    detail::Writer writer(_out);
    if (listed) {
        writer.cimClass(cimClass);
        return;
    }
    _out += "<VALUE.OBJECTWITHPATH>";
    writer.classPath(
        completed(CIMObjectPath(String(), CIMNamespaceName(), cimClass.getClassName()), _defaults));
    writer.cimClass(cimClass);
    _out += "</VALUE.OBJECTWITHPATH>";
}

void IMethodResponseWriter::writeClassName(const CIMName& className) {
    _require(_operation == Operation::EnumerateClassNames, "a class name");
    _start();
    detail::Writer(_out).className(className);
}

void IMethodResponseWriter::writeInstance(const CIMConstInstance& instance,
                                          const InstanceParts& parts) {
    _require(_operation == Operation::GetInstance || _operation == Operation::EnumerateInstances ||
                 isAssociation(_operation) || _operation == Operation::PullInstances ||
                 deliversInstancesWithPath(_operation),
             "an instance");
    _start();
    detail::Writer writer(_out, _references.get(), _propertyTags.get());
    const auto session = writer.session();
    if (_operation == Operation::GetInstance || _operation == Operation::PullInstances) {
        writer.instance(instance, parts);
    } else if (deliversInstancesWithPath(_operation)) {
        writer.raw("<VALUE.INSTANCEWITHPATH>");
        writer.instancePath(completed(pathOf(instance), _defaults));
        writer.instance(instance, parts);
        writer.raw("</VALUE.INSTANCEWITHPATH>");
    } else if (_operation == Operation::EnumerateInstances) {
        writer.raw("<VALUE.NAMEDINSTANCE>");
        writeInstanceName(writer, instance);
        writer.instance(instance, parts);
        writer.raw("</VALUE.NAMEDINSTANCE>");
    } else {
        writer.raw("<VALUE.OBJECTWITHPATH>");
        writer.instancePath(completed(pathOf(instance), _defaults));
        writer.instance(instance, parts);
        writer.raw("</VALUE.OBJECTWITHPATH>");
    }
}

void IMethodResponseWriter::writeObject(const CIMConstObject& object) {
    if (object.isClass()) {
        writeClass(CIMConstClass(object));
    } else {
        writeInstance(CIMConstInstance(object));
    }
}

void IMethodResponseWriter::writeObjectPath(const CIMObjectPath& path) {
    const bool named =
        _operation == Operation::EnumerateInstanceNames || _operation == Operation::CreateInstance;
    _require(named || isAssociationNames(_operation) || deliversPaths(_operation),
             "an object path");
    _start();
    detail::Writer writer(_out, _references.get());
    if (named) {
        writer.instanceName(path);
        return;
    }
    if (deliversPaths(_operation)) {
        withCompleted(path, _defaults,
                      [&writer](const CIMObjectPath& full) { writer.instancePath(full); });
        return;
    }
    const auto session = writer.session();
    writer.raw("<OBJECTPATH>");
    withCompleted(path, _defaults, [&writer](const CIMObjectPath& full) {
        full.getKeyBindings().size() == 0 ? writer.classPath(full) : writer.instancePath(full);
    });
    writer.raw("</OBJECTPATH>");
}

void IMethodResponseWriter::writeValue(const CIMValue& value) {
    _require(_operation == Operation::GetProperty || _operation == Operation::EnumerationCount,
             "a value");
    _start();
    detail::Writer(_out).value(value);
}

void IMethodResponseWriter::finish() {
    _require(!continuesEnumeration(_operation), "a response without EndOfSequence");
    _start();
    _finishTail();
}

void IMethodResponseWriter::finishPage(Boolean endOfSequence, const String& enumerationContext) {
    _require(continuesEnumeration(_operation), "EndOfSequence");
    _start();
    _out += "</IRETURNVALUE><PARAMVALUE NAME=\"EndOfSequence\" PARAMTYPE=\"boolean\"><VALUE>";
    _out += endOfSequence ? "TRUE" : "FALSE";
    _out += "</VALUE></PARAMVALUE><PARAMVALUE NAME=\"EnumerationContext\" PARAMTYPE=\"string\">";
    if (!endOfSequence) {
        detail::Writer(_out).value(CIMValue(enumerationContext));
    }
    _out += "</PARAMVALUE></IMETHODRESPONSE></SIMPLERSP>";
    detail::appendMessageTail(_out);
}

void IMethodResponseWriter::_finishTail() {
    if (!returnsNothing(_operation)) {
        _out += "</IRETURNVALUE>";
    }
    _out += "</IMETHODRESPONSE></SIMPLERSP>";
    detail::appendMessageTail(_out);
}

void appendMethodResponse(std::string& out, std::string_view messageId, const CIMName& methodName,
                          const CIMValue& returnValue, const Array<CIMParamValue>& outParameters) {
    detail::Writer writer(out);
    detail::appendMessageHead(out, messageId);
    out += "<SIMPLERSP><METHODRESPONSE";
    writer.attribute("NAME", methodName.getString());
    out += '>';
    if (!returnValue.isNull()) {
        out += "<RETURNVALUE";
        appendTypeAttributes(out, returnValue);
        out += '>';
        writer.value(returnValue);
        out += "</RETURNVALUE>";
    }
    for (Uint32 i = 0; i < outParameters.size(); i++) {
        writer.paramValue(outParameters[i]);
    }
    out += "</METHODRESPONSE></SIMPLERSP>";
    detail::appendMessageTail(out);
}

void appendErrorResponse(std::string& out, std::string_view messageId, std::string_view methodName,
                         bool intrinsic, CIMStatusCode code, const String& description) {
    detail::Writer writer(out);
    const char* tag = intrinsic ? "IMETHODRESPONSE" : "METHODRESPONSE";
    detail::appendMessageHead(out, messageId);
    out += "<SIMPLERSP><";
    out += tag;
    writer.attribute("NAME", methodName);
    out += "><ERROR CODE=\"";
    detail::appendInteger(out, unsigned(code));
    out += '"';
    if (description.size() != 0) {
        writer.attribute("DESCRIPTION", description);
    }
    out += "/></";
    out += tag;
    out += "></SIMPLERSP>";
    detail::appendMessageTail(out);
}

void OperationResponse::throwIfError() const {
    if (error) {
        throw CIMException(error->code, error->description);
    }
}

namespace {

class ResponseReader {
public:
    ResponseReader(OperationResponse& response, Operation operation)
        : _response(response), _operation(operation) {}

    void read(const Element& methodResponse) {
        Children children(methodResponse);
        if (const Element* error = children.takeIf("ERROR")) {
            _response.error = _error(*error);
        } else if (isIntrinsic(_operation)) {
            if (const Element* returned = children.takeIf("IRETURNVALUE")) {
                _intrinsicResult(*returned);
            } else if (!returnsNothing(_operation) && !continuesEnumeration(_operation)) {
                detail::failAt(methodResponse, "IRETURNVALUE is missing");
            }
            if (continuesEnumeration(_operation)) {
                _pageEnd(methodResponse, children);
            }
        } else {
            _extrinsicResult(children);
        }
        children.finish();
    }

private:
    ResponseError _error(const Element& element) const {
        ResponseError error;
        Uint32 code = 0;
        detail::locatedAt(element, [&] {
            parseScalar(detail::requiredAttribute(element, "CODE"), CIMTYPE_UINT32).get(code);
        });
        error.code = CIMStatusCode(code);
        if (const char* description = detail::attributeOf(element, "DESCRIPTION")) {
            error.description = detail::lossyString(description);
        }
        // CIM_Error instances may follow; the object model's exceptions have no place for them.
        Children instances(element);
        while (instances.takeIf("INSTANCE")) {
        }
        instances.finish();
        return error;
    }

    // EndOfSequence and EnumerationContext, in either order; the context may be NULL at the end.
    void _pageEnd(const Element& methodResponse, Children& children) {
        bool ended = false;
        while (const Element* element = children.takeIf("PARAMVALUE")) {
            const CIMParamValue parameter = _reader.paramValue(*element);
            const String& name = parameter.getParameterName();
            const CIMValue value = parameter.getValue();
            if (String::equalNoCase(name, "EndOfSequence")) {
                ended = true;
                _response.endOfSequence = _flag(*element, value);
            } else if (String::equalNoCase(name, "EnumerationContext") && !value.isNull()) {
                _response.enumerationContext = value.toString();
            }
        }
        if (!ended) {
            detail::failAt(methodResponse, "EndOfSequence is missing");
        }
    }

    static Boolean _flag(const Element& element, const CIMValue& value) {
        if (value.getType() == CIMTYPE_BOOLEAN && !value.isNull() && !value.isArray()) {
            Boolean flag = false;
            value.get(flag);
            return flag;
        }
        const String text = value.isNull() ? String() : value.toString();
        if (!String::equalNoCase(text, "TRUE") && !String::equalNoCase(text, "FALSE")) {
            detail::failAt(element, "EndOfSequence is not a boolean");
        }
        return String::equalNoCase(text, "TRUE");
    }

    template <class Read>
    void _each(Children& children, const char* tag, Read read) {
        while (const Element* element = children.takeIf(tag)) {
            read(*element);
        }
    }

    void _intrinsicResult(const Element& returned) {
        Children children(returned);
        switch (_operation) {
        case Operation::GetClass:
            _response.classes.append(_reader.cimClass(children.take("CLASS")));
            break;
        case Operation::EnumerateClasses:
            _each(children, "CLASS",
                  [&](const Element& e) { _response.classes.append(_reader.cimClass(e)); });
            break;
        case Operation::EnumerateClassNames:
            _each(children, "CLASSNAME",
                  [&](const Element& e) { _response.classNames.append(_reader.className(e)); });
            break;
        case Operation::GetInstance:
            _response.instances.append(_reader.instance(children.take("INSTANCE")));
            break;
        case Operation::EnumerateInstances:
            _each(children, "VALUE.NAMEDINSTANCE",
                  [&](const Element& e) { _response.instances.append(_reader.namedInstance(e)); });
            break;
        case Operation::EnumerateInstanceNames:
            _each(children, "INSTANCENAME",
                  [&](const Element& e) { _response.paths.append(_reader.instanceName(e)); });
            break;
        case Operation::CreateInstance:
            _response.paths.append(_reader.instanceName(children.take("INSTANCENAME")));
            break;
        case Operation::GetProperty:
            if (!children.atEnd()) {
                _response.value = _reader.value(children.takeAny("a value"), CIMTYPE_STRING);
            }
            break;
        case Operation::Associators:
        case Operation::References:
            _each(children, "VALUE.OBJECTWITHPATH",
                  [&](const Element& e) { _response.objects.append(_reader.objectWithPath(e)); });
            break;
        case Operation::AssociatorNames:
        case Operation::ReferenceNames:
            _each(children, "OBJECTPATH",
                  [&](const Element& e) { _response.paths.append(_reader.objectPath(e)); });
            break;
        case Operation::PullInstances:
            _each(children, "INSTANCE",
                  [&](const Element& e) { _response.instances.append(_reader.instance(e)); });
            break;
        case Operation::EnumerationCount:
            _count(children);
            break;
        default:
            _enumerationResult(children);
            break;
        }
        children.finish();
    }

    void _enumerationResult(Children& children) {
        if (deliversPaths(_operation)) {
            _each(children, "INSTANCEPATH",
                  [&](const Element& e) { _response.paths.append(_reader.anyPath(e)); });
        } else if (deliversInstancesWithPath(_operation)) {
            _each(children, "VALUE.INSTANCEWITHPATH", [&](const Element& e) {
                _response.instances.append(_reader.instanceWithPath(e));
            });
        }
    }

    // A count, or NULL as no VALUE or an empty one.
    void _count(Children& children) {
        const Element* element = children.takeIf("VALUE");
        if (element == nullptr || _reader.text(*element).size() == 0) {
            return;
        }
        Uint64 count = 0;
        _reader.value(*element, CIMTYPE_UINT64).get(count);
        _response.count = count;
    }

    void _extrinsicResult(Children& children) {
        if (const Element* returned = children.takeIf("RETURNVALUE")) {
            _response.value = _reader.returnValue(*returned);
        }
        _each(children, "PARAMVALUE",
              [&](const Element& e) { _response.outParameters.append(_reader.paramValue(e)); });
    }

    OperationResponse& _response;
    Operation _operation;
    detail::Reader _reader;
};

const Element& methodResponseOf(const detail::Envelope& envelope, Operation operation,
                                std::string_view expectedMethodName) {
    const Element& content = *envelope.content;
    if (detail::nameOf(content) != "SIMPLERSP") {
        detail::failAt(content, "expected SIMPLERSP");
    }
    Children children(content);
    const char* tag = isIntrinsic(operation) ? "IMETHODRESPONSE" : "METHODRESPONSE";
    const Element& methodResponse = children.take(tag);
    children.finish();
    const std::string_view name = detail::requiredAttribute(methodResponse, "NAME");
    if (!String::equalNoCase(detail::lossyString(name), detail::lossyString(expectedMethodName))) {
        detail::failAt(methodResponse, "answers " + detail::quoted(name) + ", not " +
                                           detail::quoted(expectedMethodName));
    }
    return methodResponse;
}

} // namespace

OperationResponse decodeResponse(std::string_view body, Operation operation,
                                 std::string_view expectedMethodName) {
    const detail::Document document(body);
    const detail::Envelope envelope = detail::openEnvelope(document.root());
    OperationResponse response;
    response.messageId = envelope.messageId;
    detail::asInvalidMessage([&] {
        const Element& methodResponse = methodResponseOf(envelope, operation, expectedMethodName);
        response.methodName = detail::requiredAttribute(methodResponse, "NAME");
        ResponseReader(response, operation).read(methodResponse);
    });
    return response;
}

} // namespace ksv::cimxml
