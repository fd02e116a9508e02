#include <cimxml/Errors.h>
#include <cimxml/Request.h>
#include <cimxml/detail/Envelope.h>
#include <cimxml/detail/Fail.h>
#include <cimxml/detail/Reader.h>
#include <cimxml/detail/Writer.h>

#include <Pegasus/Common/Exception.h>

#include <string>
#include <vector>

namespace ksv::cimxml {

using namespace Pegasus;
using detail::Children;
using detail::Element;

namespace {

enum class Param {
    ClassName,
    InstanceName,
    ObjectName,
    LocalOnly,
    DeepInheritance,
    IncludeQualifiers,
    IncludeClassOrigin,
    PropertyList,
    AssocClass,
    ResultClass,
    Role,
    ResultRole,
    NewInstance,
    ModifiedInstance,
    PropertyName,
    NewValue,
    FilterQueryLanguage,
    FilterQuery,
    OperationTimeout,
    ContinueOnError,
    MaxObjectCount,
    EnumerationContext
};

struct IntrinsicParam {
    Param param;
    const char* name;
    bool required;
};

const IntrinsicParam kClassName{Param::ClassName, "ClassName", true};
const IntrinsicParam kOptionalClassName{Param::ClassName, "ClassName", false};
const IntrinsicParam kInstanceName{Param::InstanceName, "InstanceName", true};
const IntrinsicParam kObjectName{Param::ObjectName, "ObjectName", true};
const IntrinsicParam kLocalOnly{Param::LocalOnly, "LocalOnly", false};
const IntrinsicParam kDeepInheritance{Param::DeepInheritance, "DeepInheritance", false};
const IntrinsicParam kIncludeQualifiers{Param::IncludeQualifiers, "IncludeQualifiers", false};
const IntrinsicParam kIncludeClassOrigin{Param::IncludeClassOrigin, "IncludeClassOrigin", false};
const IntrinsicParam kPropertyList{Param::PropertyList, "PropertyList", false};
const IntrinsicParam kAssocClass{Param::AssocClass, "AssocClass", false};
const IntrinsicParam kResultClass{Param::ResultClass, "ResultClass", false};
const IntrinsicParam kRole{Param::Role, "Role", false};
const IntrinsicParam kResultRole{Param::ResultRole, "ResultRole", false};
const IntrinsicParam kNewInstance{Param::NewInstance, "NewInstance", true};
const IntrinsicParam kModifiedInstance{Param::ModifiedInstance, "ModifiedInstance", true};
const IntrinsicParam kPropertyName{Param::PropertyName, "PropertyName", true};
const IntrinsicParam kNewValue{Param::NewValue, "NewValue", false};
const IntrinsicParam kFilterQueryLanguage{Param::FilterQueryLanguage, "FilterQueryLanguage", false};
const IntrinsicParam kFilterQuery{Param::FilterQuery, "FilterQuery", false};
const IntrinsicParam kOperationTimeout{Param::OperationTimeout, "OperationTimeout", false};
const IntrinsicParam kContinueOnError{Param::ContinueOnError, "ContinueOnError", false};
const IntrinsicParam kMaxObjectCount{Param::MaxObjectCount, "MaxObjectCount", false};
const IntrinsicParam kEnumerationContext{Param::EnumerationContext, "EnumerationContext", true};

// The parameters every opening operation ends with.
std::vector<IntrinsicParam> opening(std::vector<IntrinsicParam> params) {
    params.insert(params.end(), {kFilterQueryLanguage, kFilterQuery, kOperationTimeout,
                                 kContinueOnError, kMaxObjectCount});
    return params;
}

// The parameters of the operations that open enumerations, pull from them or end them.
const std::vector<IntrinsicParam>& enumerationParamsOf(Operation operation) {
    static const std::vector<IntrinsicParam> none;
    static const std::vector<IntrinsicParam> openInstances =
        opening({kClassName, kDeepInheritance, kIncludeClassOrigin, kPropertyList});
    static const std::vector<IntrinsicParam> openPaths = opening({kClassName});
    static const std::vector<IntrinsicParam> openReferences =
        opening({kInstanceName, kResultClass, kRole, kIncludeClassOrigin, kPropertyList});
    static const std::vector<IntrinsicParam> openReferencePaths =
        opening({kInstanceName, kResultClass, kRole});
    static const std::vector<IntrinsicParam> openAssociators =
        opening({kInstanceName, kAssocClass, kResultClass, kRole, kResultRole, kIncludeClassOrigin,
                 kPropertyList});
    static const std::vector<IntrinsicParam> openAssociatorPaths =
        opening({kInstanceName, kAssocClass, kResultClass, kRole, kResultRole});
    static const std::vector<IntrinsicParam> pull{kEnumerationContext, kMaxObjectCount};
    static const std::vector<IntrinsicParam> context{kEnumerationContext};
    switch (operation) {
    case Operation::OpenEnumerateInstances:
        return openInstances;
    case Operation::OpenEnumerateInstancePaths:
        return openPaths;
    case Operation::OpenReferenceInstances:
        return openReferences;
    case Operation::OpenReferenceInstancePaths:
        return openReferencePaths;
    case Operation::OpenAssociatorInstances:
        return openAssociators;
    case Operation::OpenAssociatorInstancePaths:
        return openAssociatorPaths;
    case Operation::PullInstancesWithPath:
    case Operation::PullInstancePaths:
    case Operation::PullInstances:
        return pull;
    case Operation::CloseEnumeration:
    case Operation::EnumerationCount:
        return context;
    default:
        return none;
    }
}

// The intrinsic parameters of each operation, in DSP0200's order.
const std::vector<IntrinsicParam>& paramsOf(Operation operation) {
    static const std::vector<IntrinsicParam> getClass{kClassName, kLocalOnly, kIncludeQualifiers,
                                                      kIncludeClassOrigin, kPropertyList};
    static const std::vector<IntrinsicParam> enumerateClasses{
        kOptionalClassName, kDeepInheritance, kLocalOnly, kIncludeQualifiers, kIncludeClassOrigin};
    static const std::vector<IntrinsicParam> enumerateClassNames{kOptionalClassName,
                                                                 kDeepInheritance};
    static const std::vector<IntrinsicParam> getInstance{
        kInstanceName, kLocalOnly, kIncludeQualifiers, kIncludeClassOrigin, kPropertyList};
    static const std::vector<IntrinsicParam> enumerateInstances{
        kClassName,         kLocalOnly,          kDeepInheritance,
        kIncludeQualifiers, kIncludeClassOrigin, kPropertyList};
    static const std::vector<IntrinsicParam> enumerateInstanceNames{kClassName};
    static const std::vector<IntrinsicParam> createInstance{kNewInstance};
    static const std::vector<IntrinsicParam> modifyInstance{kModifiedInstance, kIncludeQualifiers,
                                                            kPropertyList};
    static const std::vector<IntrinsicParam> instanceName{kInstanceName};
    static const std::vector<IntrinsicParam> getProperty{kInstanceName, kPropertyName};
    static const std::vector<IntrinsicParam> setProperty{kInstanceName, kPropertyName, kNewValue};
    static const std::vector<IntrinsicParam> associators{
        kObjectName, kAssocClass,        kResultClass,        kRole,
        kResultRole, kIncludeQualifiers, kIncludeClassOrigin, kPropertyList};
    static const std::vector<IntrinsicParam> associatorNames{kObjectName, kAssocClass, kResultClass,
                                                             kRole, kResultRole};
    static const std::vector<IntrinsicParam> references{
        kObjectName, kResultClass, kRole, kIncludeQualifiers, kIncludeClassOrigin, kPropertyList};
    static const std::vector<IntrinsicParam> referenceNames{kObjectName, kResultClass, kRole};
    switch (operation) {
    case Operation::GetClass:
        return getClass;
    case Operation::EnumerateClasses:
        return enumerateClasses;
    case Operation::EnumerateClassNames:
        return enumerateClassNames;
    case Operation::GetInstance:
        return getInstance;
    case Operation::EnumerateInstances:
        return enumerateInstances;
    case Operation::EnumerateInstanceNames:
        return enumerateInstanceNames;
    case Operation::CreateInstance:
        return createInstance;
    case Operation::ModifyInstance:
        return modifyInstance;
    case Operation::DeleteInstance:
        return instanceName;
    case Operation::GetProperty:
        return getProperty;
    case Operation::SetProperty:
        return setProperty;
    case Operation::Associators:
        return associators;
    case Operation::AssociatorNames:
        return associatorNames;
    case Operation::References:
        return references;
    case Operation::ReferenceNames:
        return referenceNames;
    default:
        break;
    }
    return enumerationParamsOf(operation);
}

// Accessors shared by encoding (const request) and decoding; nullptr for other parameters.
template <class Request>
auto booleanField(Request& request, Param param) -> decltype(&request.localOnly) {
    switch (param) {
    case Param::LocalOnly:
        return &request.localOnly;
    case Param::DeepInheritance:
        return &request.deepInheritance;
    case Param::IncludeQualifiers:
        return &request.includeQualifiers;
    case Param::IncludeClassOrigin:
        return &request.includeClassOrigin;
    case Param::ContinueOnError:
        return &request.continueOnError;
    default:
        return nullptr;
    }
}

template <class Request>
auto classNameField(Request& request, Param param) -> decltype(&request.className) {
    switch (param) {
    case Param::ClassName:
        return &request.className;
    case Param::AssocClass:
        return &request.assocClass;
    case Param::ResultClass:
        return &request.resultClass;
    default:
        return nullptr;
    }
}

template <class Request>
auto stringField(Request& request, Param param) -> decltype(&request.role) {
    switch (param) {
    case Param::Role:
        return &request.role;
    case Param::ResultRole:
        return &request.resultRole;
    case Param::FilterQueryLanguage:
        return &request.filterQueryLanguage;
    case Param::FilterQuery:
        return &request.filterQuery;
    case Param::EnumerationContext:
        return &request.enumerationContext;
    default:
        return nullptr;
    }
}

// ---- encoding ----

class RequestWriter {
public:
    RequestWriter(std::string& out, const OperationRequest& request)
        : _out(out), _writer(out), _request(request),
          _defaults(OperationRequest::make(request.operation, request.nameSpace)) {}

    void write() {
        detail::appendMessageHead(_out, _request.messageId);
        _out += "<SIMPLEREQ>";
        isIntrinsic(_request.operation) ? _intrinsicCall() : _extrinsicCall();
        _out += "</SIMPLEREQ>";
        detail::appendMessageTail(_out);
    }

private:
    void _intrinsicCall() {
        _out += "<IMETHODCALL NAME=\"";
        _out += operationName(_request.operation);
        _out += "\">";
        _writer.localNamespacePath(_request.nameSpace);
        for (const IntrinsicParam& entry : paramsOf(_request.operation)) {
            _parameter(entry);
        }
        _out += "</IMETHODCALL>";
    }

    void _extrinsicCall() {
        _out += "<METHODCALL";
        _writer.attribute("NAME", _request.methodName.getString());
        _out += '>';
        CIMObjectPath target = _request.objectName;
        target.setHost(String());
        target.setNameSpace(_request.nameSpace);
        target.getKeyBindings().size() == 0 ? _writer.localClassPath(target)
                                            : _writer.localInstancePath(target);
        for (Uint32 i = 0; i < _request.inParameters.size(); i++) {
            _writer.paramValue(_request.inParameters[i]);
        }
        _out += "</METHODCALL>";
    }

    void _open(const IntrinsicParam& entry) {
        _out += "<IPARAMVALUE NAME=\"";
        _out += entry.name;
        _out += "\">";
    }

    void _close() { _out += "</IPARAMVALUE>"; }

    bool _holdsDefault(const IntrinsicParam& entry) const {
        if (const Boolean* flag = booleanField(_request, entry.param)) {
            return *flag == *booleanField(_defaults, entry.param);
        }
        if (const CIMName* name = classNameField(_request, entry.param)) {
            return name->isNull();
        }
        if (const String* text = stringField(_request, entry.param)) {
            // A missing context would be a malformed request rather than an unknown context.
            return text->size() == 0 && entry.param != Param::EnumerationContext;
        }
        switch (entry.param) {
        case Param::PropertyList:
            return _request.propertyList.isNull();
        case Param::NewValue:
            return _request.newValue.isNull();
        case Param::OperationTimeout:
            return !_request.operationTimeout;
        default:
            return false;
        }
    }

    void _parameter(const IntrinsicParam& entry) {
        if (_holdsDefault(entry)) {
            return;
        }
        _open(entry);
        _content(entry.param);
        _close();
    }

    void _content(Param param) {
        if (const Boolean* flag = booleanField(_request, param)) {
            _out += *flag ? "<VALUE>TRUE</VALUE>" : "<VALUE>FALSE</VALUE>";
        } else if (const CIMName* name = classNameField(_request, param)) {
            _writer.className(*name);
        } else if (const String* role = stringField(_request, param)) {
            _writer.value(CIMValue(*role));
        } else {
            _objectContent(param);
        }
    }

    void _objectContent(Param param) {
        switch (param) {
        case Param::InstanceName:
            _writer.instanceName(_request.objectName);
            break;
        case Param::ObjectName:
            _request.objectName.getKeyBindings().size() == 0
                ? _writer.className(_request.objectName.getClassName())
                : _writer.instanceName(_request.objectName);
            break;
        case Param::PropertyList:
            _writer.value(CIMValue(_propertyNames()));
            break;
        case Param::NewInstance:
            _writer.instance(_request.instance);
            break;
        case Param::ModifiedInstance:
            _out += "<VALUE.NAMEDINSTANCE>";
            _writer.instanceName(_request.instance.getPath());
            _writer.instance(_request.instance);
            _out += "</VALUE.NAMEDINSTANCE>";
            break;
        case Param::PropertyName:
            _writer.value(CIMValue(_request.propertyName.getString()));
            break;
        case Param::OperationTimeout:
            _writer.value(CIMValue(*_request.operationTimeout));
            break;
        case Param::MaxObjectCount:
            _writer.value(CIMValue(_request.maxObjectCount));
            break;
        default:
            _writer.value(_request.newValue);
            break;
        }
    }

    Array<String> _propertyNames() const {
        Array<String> names;
        for (Uint32 i = 0; i < _request.propertyList.size(); i++) {
            names.append(_request.propertyList[i].getString());
        }
        return names;
    }

    std::string& _out;
    detail::Writer _writer;
    const OperationRequest& _request;
    const OperationRequest _defaults;
};

// ---- decoding ----

class CallReader {
public:
    explicit CallReader(OperationRequest& request) : _request(request) {}

    void intrinsic(const Element& call) {
        Children children(call);
        _namespace(children.take("LOCALNAMESPACEPATH"));
        std::vector<bool> seen(paramsOf(_request.operation).size(), false);
        while (!children.atEnd()) {
            _parameter(children.take("IPARAMVALUE"), seen);
        }
        _requireAll(call, seen);
    }

    void extrinsic(const Element& call) {
        Children children(call);
        const Element& target = children.takeAny("LOCALINSTANCEPATH or LOCALCLASSPATH");
        if (detail::nameOf(target) != "LOCALINSTANCEPATH" &&
            detail::nameOf(target) != "LOCALCLASSPATH") {
            detail::failAt(target, "expected LOCALINSTANCEPATH or LOCALCLASSPATH");
        }
        CIMObjectPath path = _reader.anyPath(target);
        _request.nameSpace = path.getNameSpace();
        path.setNameSpace(CIMNamespaceName());
        _request.objectName = path;
        while (!children.atEnd()) {
            _request.inParameters.append(_reader.paramValue(children.take("PARAMVALUE")));
        }
    }

private:
    void _namespace(const Element& element) {
        try {
            _request.nameSpace = _reader.localNamespacePath(element);
        } catch (const CIMException& e) {
            throw CIMException(CIM_ERR_INVALID_NAMESPACE, e.getMessage());
        }
    }

    void _parameter(const Element& element, std::vector<bool>& seen) {
        const std::string_view name = detail::requiredAttribute(element, "NAME");
        const std::vector<IntrinsicParam>& entries = paramsOf(_request.operation);
        for (size_t i = 0; i < entries.size(); i++) {
            if (!String::equalNoCase(detail::lossyString(name), entries[i].name)) {
                continue;
            }
            if (seen[i]) {
                detail::failAt(element, "the parameter is given twice");
            }
            seen[i] = true;
            Children children(element);
            _content(element, children, entries[i]);
            children.finish();
            return;
        }
        detail::failAt(element, std::string(operationName(_request.operation)) +
                                    " has no parameter " + detail::quoted(name));
    }

    void _requireAll(const Element& call, const std::vector<bool>& seen) const {
        const std::vector<IntrinsicParam>& entries = paramsOf(_request.operation);
        for (size_t i = 0; i < entries.size(); i++) {
            if (entries[i].required && !seen[i]) {
                detail::failAt(call, std::string("parameter ") + entries[i].name + " is missing");
            }
        }
    }

    // An IPARAMVALUE without content is NULL: the parameter keeps its default.
    void _content(const Element& element, Children& children, const IntrinsicParam& entry) {
        if (children.atEnd() && entry.param != Param::NewValue) {
            if (entry.required) {
                detail::failAt(element, "the parameter must not be NULL");
            }
            return;
        }
        if (Boolean* flag = booleanField(_request, entry.param)) {
            _reader.value(children.take("VALUE"), CIMTYPE_BOOLEAN).get(*flag);
        } else if (CIMName* name = classNameField(_request, entry.param)) {
            *name = _reader.className(children.take("CLASSNAME"));
        } else if (String* role = stringField(_request, entry.param)) {
            *role = _reader.text(children.take("VALUE"));
        } else {
            _objectContent(element, children, entry.param);
        }
    }

    void _objectContent(const Element& element, Children& children, Param param) {
        switch (param) {
        case Param::InstanceName:
            _request.objectName = _reader.instanceName(children.take("INSTANCENAME"));
            break;
        case Param::ObjectName:
            _request.objectName = _objectName(children.takeAny("CLASSNAME or INSTANCENAME"));
            break;
        case Param::PropertyList:
            _request.propertyList = _propertyList(children.take("VALUE.ARRAY"));
            break;
        case Param::NewInstance:
            _request.instance = _reader.instance(children.take("INSTANCE"));
            break;
        case Param::ModifiedInstance:
            _request.instance = _reader.namedInstance(children.take("VALUE.NAMEDINSTANCE"));
            break;
        case Param::PropertyName:
            _request.propertyName = _propertyName(children.take("VALUE"));
            break;
        case Param::OperationTimeout:
            _request.operationTimeout = _uint32(children.take("VALUE"));
            break;
        case Param::MaxObjectCount:
            _request.maxObjectCount = _uint32(children.take("VALUE"));
            break;
        default: {
            bool typed = false;
            _request.newValue = _reader.typedValue(element, children, std::nullopt, typed);
            _request.newValueTyped = typed;
            break;
        }
        }
    }

    CIMObjectPath _objectName(const Element& element) const {
        if (detail::nameOf(element) != "CLASSNAME" && detail::nameOf(element) != "INSTANCENAME") {
            detail::failAt(element, "expected CLASSNAME or INSTANCENAME");
        }
        return _reader.anyPath(element);
    }

    CIMPropertyList _propertyList(const Element& element) const {
        Array<String> texts;
        _reader.value(element, CIMTYPE_STRING).get(texts);
        Array<CIMName> names;
        for (Uint32 i = 0; i < texts.size(); i++) {
            if (!CIMName::legal(texts[i])) {
                detail::failAt(element, "property " + detail::quoted(detail::utf8Of(texts[i])) +
                                            " is not a legal CIM name");
            }
            names.append(CIMName(texts[i]));
        }
        return CIMPropertyList(names);
    }

    Uint32 _uint32(const Element& element) const {
        Uint32 number = 0;
        _reader.value(element, CIMTYPE_UINT32).get(number);
        return number;
    }

    CIMName _propertyName(const Element& element) const {
        const String text = _reader.text(element);
        if (!CIMName::legal(text)) {
            detail::failAt(element, "property " + detail::quoted(detail::utf8Of(text)) +
                                        " is not a legal CIM name");
        }
        return CIMName(text);
    }

    OperationRequest& _request;
    detail::Reader _reader;
};

struct Call {
    const Element* element = nullptr;
    std::string methodName;
    bool intrinsic = true;
};

Call findCall(const detail::Envelope& envelope) {
    const Element& content = *envelope.content;
    if (detail::nameOf(content) == "MULTIREQ") {
        throw ProtocolError(MessageFault::MultipleRequestsUnsupported,
                            "multiple requests in one message are not supported");
    }
    return detail::asInvalidMessage([&] {
        if (detail::nameOf(content) != "SIMPLEREQ") {
            detail::failAt(content, "expected SIMPLEREQ");
        }
        Children children(content);
        // Correlators only tag a request for the client's own bookkeeping.
        while (children.takeIf("CORRELATOR")) {
        }
        Call call;
        call.element = &children.takeAny("IMETHODCALL or METHODCALL");
        children.finish();
        call.intrinsic = detail::nameOf(*call.element) == "IMETHODCALL";
        if (!call.intrinsic && detail::nameOf(*call.element) != "METHODCALL") {
            detail::failAt(*call.element, "expected IMETHODCALL or METHODCALL");
        }
        call.methodName = std::string(detail::requiredAttribute(*call.element, "NAME"));
        return call;
    });
}

OperationRequest readCall(const Call& call, const std::string& messageId) {
    OperationRequest request;
    if (call.intrinsic) {
        const std::optional<Operation> operation = intrinsicOperationNamed(call.methodName);
        if (!operation) {
            detail::throwCim(CIM_ERR_NOT_SUPPORTED, "intrinsic method " +
                                                        detail::quoted(call.methodName) +
                                                        " is not supported");
        }
        request = OperationRequest::make(*operation, CIMNamespaceName());
        request.messageId = messageId;
        CallReader(request).intrinsic(*call.element);
    } else {
        request = OperationRequest::make(Operation::InvokeMethod, CIMNamespaceName());
        request.messageId = messageId;
        request.methodName = detail::Reader().name(*call.element, "NAME");
        CallReader(request).extrinsic(*call.element);
    }
    return request;
}

} // namespace

OperationRequest OperationRequest::make(Operation operation, const CIMNamespaceName& nameSpace) {
    OperationRequest request;
    request.operation = operation;
    request.nameSpace = nameSpace;
    switch (operation) {
    case Operation::GetClass:
    case Operation::EnumerateClasses:
    case Operation::ModifyInstance:
        request.includeQualifiers = true;
        break;
    case Operation::EnumerateInstances:
    case Operation::OpenEnumerateInstances:
        request.deepInheritance = true;
        break;
    default:
        break;
    }
    return request;
}

void appendRequest(std::string& out, const OperationRequest& request) {
    RequestWriter(out, request).write();
}

std::string encodeRequest(const OperationRequest& request) {
    std::string out;
    appendRequest(out, request);
    return out;
}

OperationRequest decodeRequest(std::string_view body) {
    const detail::Document document(body);
    const detail::Envelope envelope = detail::openEnvelope(document.root());
    const Call call = findCall(envelope);
    try {
        return readCall(call, envelope.messageId);
    } catch (const CIMException& e) {
        throw OperationError(e, envelope.messageId, call.methodName, call.intrinsic);
    }
}

} // namespace ksv::cimxml
