#include "cimserver/CimXmlService.h"

#include <cimxml/Errors.h>
#include <cimxml/Http.h>
#include <Pegasus/Common/InternalException.h>
#include <cimxml/Response.h>

#include <ksvapi.h>

#include "cimserver/ServerLog.h"
#include "mof_compiler/NamespaceStore.h"

#include <functional>
#include <stdexcept>

namespace ksv::server {

using Pegasus::CIMException;
using Pegasus::String;
using namespace cimxml;

namespace {

// Encoded response text on its way into the stream, passed on in pieces of about this size.
constexpr std::size_t kFlushBytes = 64 * 1024;

std::vector<HttpHeader> cimResponseHeaders() {
    return {{"Content-Type", http::kContentType},
            {http::kCimOperationHeader, http::kMethodResponse}};
}

// The response text of one request, handed to the stream in pieces. Once the client is gone,
// nothing more is encoded.
class ResponseOutput {
public:
    explicit ResponseOutput(ResponseStream& stream) : _stream(stream) {
        _stream.setHead({200, cimResponseHeaders()});
    }

    std::string& text() { return _text; }
    bool abandoned() const { return _abandoned; }

    void flushIfFull() {
        if (_text.size() >= kFlushBytes)
            flush();
    }
    // The stream takes the text's buffer; the next piece starts in one large enough for it,
    // so that the encoder does not grow it step by step.
    void flush() {
        if (!_abandoned && !_stream.write(_text))
            _abandoned = true;
        _text.clear();
        _text.reserve(2 * kFlushBytes);
    }
    void finish(std::vector<HttpHeader> trailers = {}) {
        flush();
        _stream.finish(std::move(trailers));
    }
    // True when nothing has reached the client yet, so that an error response can still
    // replace what was written.
    bool discardUnsent() {
        _text.clear();
        return _stream.discardUnsent();
    }

private:
    ResponseStream& _stream;
    std::string _text;
    bool _abandoned = false;
};

// Writes each result as it arrives; objects with the request's filter are shaped while written
// when the sink has a writer for that.
template <typename T>
class WritingSink : public Sink<T> {
public:
    using Write = std::function<void(const T&)>;
    using WriteShaped = std::function<void(const T&, const ObjectFilter&)>;

    WritingSink(ResponseOutput& output, Write write, WriteShaped writeShaped = nullptr)
        : _output(output), _write(std::move(write)), _writeShaped(std::move(writeShaped)) {}

    void put(const T& item) override {
        requireClient();
        _write(item);
        _output.flushIfFull();
    }
    void put(const T& item, const ObjectFilter& filter) override {
        if (!_writeShaped)
            return Sink<T>::put(item, filter);
        requireClient();
        _writeShaped(item, filter);
        _output.flushIfFull();
    }

private:
    // Once the client is gone, the provider is stopped at its next delivery.
    void requireClient() const {
        if (_output.abandoned())
            throw std::runtime_error("the response was abandoned");
    }

    ResponseOutput& _output;
    Write _write;
    WriteShaped _writeShaped;
};

CIMException asCimException(const std::exception& error) {
    return CIMException(Pegasus::CIM_ERR_FAILED, String(error.what()));
}

// Runs `body` and turns every failure into the CIMException the client is told. Denials are
// logged: they are how the array turns users away.
template <typename Body>
void runForClient(const Caller& caller, const std::string& operation, Body&& body,
                  const std::function<void(const CIMException&)>& fail) {
    try {
        body();
    } catch (const CIMException& error) {
        if (error.getCode() == Pegasus::CIM_ERR_ACCESS_DENIED)
            logAccessDenied(caller, operation);
        fail(error);
    } catch (const Pegasus::Exception& error) {
        fail(CIMException(Pegasus::CIM_ERR_FAILED, error.getMessage()));
    } catch (const std::exception& error) {
        fail(asCimException(error));
    }
}

// "CIM_ERR_<NAME>: message", as OpenPegasus describes an error, so that clients print the same
// text whichever server answers.
Pegasus::String describe(const CIMException& error) {
    return Pegasus::TraceableCIMException(error).getDescription();
}

void requireAdmission(const ResponseMemoryGate::Pass& pass) {
    if (!pass.admitted())
        throw CIMException(Pegasus::CIM_ERR_SERVER_LIMITS_EXCEEDED,
                           "the responses in flight hold all the memory allowed for them");
}

// A chunked response that fails after its head went out can only report in trailers.
std::vector<HttpHeader> failureTrailers(const CIMException& error) {
    return {{http::kCimStatusCodeTrailer, std::to_string(error.getCode())},
            {http::kCimStatusCodeDescriptionTrailer, http::uriEscape(mof::utf8(describe(error)))}};
}

void answerProtocolError(const ProtocolError& error, ResponseStream& response) {
    response.setHead({httpStatusOf(error.fault()),
                      {{http::kCimErrorHeader, cimErrorHeaderValue(error.fault())}}});
    std::string text = mof::utf8(error.getMessage()) + "\n";
    response.write(text);
    response.finish();
}

void answerInternalError(const std::string& what, ResponseStream& response) {
    log_message(KSV_LOG_ERROR, "CIM-XML request failed: %s", what.c_str());
    response.setHead({500, {}});
    response.finish();
}

void answerOperationError(const OperationError& error, ResponseStream& response) {
    ResponseOutput output(response);
    appendErrorResponse(output.text(), error.messageId(), error.methodName(), error.intrinsic(),
                        error.getCode(), describe(error));
    output.finish();
}

template <typename T, typename Run>
void streamResults(ResponseOutput& output, typename WritingSink<T>::Write write, Run&& run,
                   typename WritingSink<T>::WriteShaped writeShaped = nullptr) {
    WritingSink<T> sink(output, std::move(write), std::move(writeShaped));
    run(sink);
}

InstanceParts partsOf(const ObjectFilter& filter) {
    // A null list asks for every property, as no list does; the writer then checks no names.
    const Pegasus::CIMPropertyList* properties =
        filter.propertyList.isNull() ? nullptr : &filter.propertyList;
    return {filter.includeQualifiers, filter.includeClassOrigin, properties};
}

void runIntrinsic(const OperationDispatcher& dispatcher, const Caller& caller,
                  const OperationRequest& request, IMethodResponseWriter& writer,
                  ResponseOutput& output) {
    using namespace Pegasus;
    auto writeObject = [&writer](const CIMObject& object) { writer.writeObject(object); };
    auto writePath = [&writer](const CIMObjectPath& path) { writer.writeObjectPath(path); };
    switch (request.operation) {
    case Operation::GetClass:
        return writer.writeClass(dispatcher.getClass(caller, request));
    case Operation::EnumerateClasses:
        return streamResults<CIMClass>(
            output, [&writer](const CIMClass& cimClass) { writer.writeClass(cimClass); },
            [&](Sink<CIMClass>& sink) { dispatcher.enumerateClasses(caller, request, sink); });
    case Operation::EnumerateClassNames:
        return streamResults<CIMName>(
            output, [&writer](const CIMName& name) { writer.writeClassName(name); },
            [&](Sink<CIMName>& sink) { dispatcher.enumerateClassNames(caller, request, sink); });
    case Operation::GetInstance:
        return writer.writeInstance(dispatcher.getInstance(caller, request));
    case Operation::EnumerateInstances:
        return streamResults<CIMInstance>(
            output, [&writer](const CIMInstance& instance) { writer.writeInstance(instance); },
            [&](Sink<CIMInstance>& sink) { dispatcher.enumerateInstances(caller, request, sink); },
            [&writer](const CIMInstance& instance, const ObjectFilter& filter) {
                writer.writeInstance(instance, partsOf(filter));
            });
    case Operation::EnumerateInstanceNames:
        return streamResults<CIMObjectPath>(output, writePath, [&](Sink<CIMObjectPath>& sink) {
            dispatcher.enumerateInstanceNames(caller, request, sink);
        });
    case Operation::CreateInstance:
        return writer.writeObjectPath(dispatcher.createInstance(caller, request));
    case Operation::ModifyInstance:
        return dispatcher.modifyInstance(caller, request);
    case Operation::DeleteInstance:
        return dispatcher.deleteInstance(caller, request);
    case Operation::GetProperty:
        return writer.writeValue(dispatcher.getProperty(caller, request));
    case Operation::SetProperty:
        return dispatcher.setProperty(caller, request);
    case Operation::Associators:
        return streamResults<CIMObject>(output, writeObject, [&](Sink<CIMObject>& sink) {
            dispatcher.associators(caller, request, sink);
        });
    case Operation::AssociatorNames:
        return streamResults<CIMObjectPath>(output, writePath, [&](Sink<CIMObjectPath>& sink) {
            dispatcher.associatorNames(caller, request, sink);
        });
    case Operation::References:
        return streamResults<CIMObject>(output, writeObject, [&](Sink<CIMObject>& sink) {
            dispatcher.references(caller, request, sink);
        });
    case Operation::ReferenceNames:
        return streamResults<CIMObjectPath>(output, writePath, [&](Sink<CIMObjectPath>& sink) {
            dispatcher.referenceNames(caller, request, sink);
        });
    default:
        break;
    }
    throw CIMException(CIM_ERR_NOT_SUPPORTED, operationName(request.operation));
}

} // namespace

void CimXmlService::process(HttpRequest& request, ResponseStream& response) const {
    try {
        http::checkCimOperationHeader(request.cimOperation);
        OperationRequest operation = decodeRequest(request.body);
        http::checkHeadersMatch(operation, request.cimMethod, request.cimObject);
        request.body.clear();
        answer(request.caller, operation, response);
    } catch (const ProtocolError& error) {
        answerProtocolError(error, response);
    } catch (const OperationError& error) {
        answerOperationError(error, response);
    } catch (const std::exception& error) {
        answerInternalError(error.what(), response);
    } catch (const Pegasus::Exception& error) {
        answerInternalError(mof::utf8(error.getMessage()), response);
    }
}

void CimXmlService::answer(const Caller& caller, const OperationRequest& request,
                           ResponseStream& response) const {
    const ResponseMemoryGate::Pass pass(_responseMemory);
    if (isIntrinsic(request.operation))
        answerIntrinsic(caller, request, pass, response);
    else
        answerExtrinsic(caller, request, pass, response);
}

void CimXmlService::answerExtrinsic(const Caller& caller, const OperationRequest& request,
                                    const ResponseMemoryGate::Pass& pass,
                                    ResponseStream& response) const {
    ResponseOutput output(response);
    const std::string methodName = mof::utf8(request.methodName.getString());
    runForClient(
        caller, methodName,
        [&] {
            requireAdmission(pass);
            Pegasus::Array<Pegasus::CIMParamValue> outParameters;
            Pegasus::CIMValue returnValue =
                _dispatcher.invokeMethod(caller, request, outParameters);
            appendMethodResponse(output.text(), request.messageId, request.methodName, returnValue,
                                 outParameters);
        },
        [&](const CIMException& error) {
            output.text().clear();
            appendErrorResponse(output.text(), request.messageId, methodName, false,
                                error.getCode(), describe(error));
        });
    output.finish();
}

void CimXmlService::answerIntrinsic(const Caller& caller, const OperationRequest& request,
                                    const ResponseMemoryGate::Pass& pass,
                                    ResponseStream& response) const {
    ResponseOutput output(response);
    IMethodResponseWriter writer(output.text(), request.messageId, request.operation,
                                 {_dispatcher.hostName(), request.nameSpace});
    std::vector<HttpHeader> trailers;
    runForClient(
        caller, operationName(request.operation),
        [&] {
            requireAdmission(pass);
            if (PullOperations::handles(request.operation)) {
                _pulls.answer(caller, request, writer, [&output] {
                    if (output.abandoned())
                        throw std::runtime_error("the response was abandoned");
                    output.flushIfFull();
                });
                return;
            }
            runIntrinsic(_dispatcher, caller, request, writer, output);
            writer.finish();
        },
        [&](const CIMException& error) {
            if (writer.hasStarted() && !output.discardUnsent()) {
                trailers = failureTrailers(error);
                return;
            }
            output.text().clear();
            appendErrorResponse(output.text(), request.messageId, operationName(request.operation),
                                true, error.getCode(), describe(error));
        });
    output.finish(std::move(trailers));
}

} // namespace ksv::server
