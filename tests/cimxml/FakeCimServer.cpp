#include "FakeCimServer.h"
#include "TestSupport.h"

#include <cimxml/Http.h>
#include <cimxml/Request.h>
#include <cimxml/Response.h>

using namespace Pegasus;

namespace ksv::cimxml::testing {

namespace {

void writeResults(IMethodResponseWriter& writer, const OperationRequest& request) {
    switch (request.operation) {
    case Operation::GetClass:
        writer.writeClass(sampleClass());
        break;
    case Operation::EnumerateClasses:
        writer.writeClass(sampleClass());
        writer.writeClass(CIMClass(CIMName("KSV_B")));
        break;
    case Operation::EnumerateClassNames:
        writer.writeClassName(CIMName("KSV_A"));
        writer.writeClassName(CIMName("KSV_B"));
        break;
    case Operation::GetInstance:
    case Operation::Associators:
    case Operation::References:
        writer.writeInstance(sampleDisk(1));
        break;
    case Operation::EnumerateInstances:
        for (int i = 1; i <= 3; i++) {
            writer.writeInstance(sampleDisk(i));
        }
        break;
    case Operation::EnumerateInstanceNames:
    case Operation::AssociatorNames:
    case Operation::ReferenceNames:
        for (int i = 1; i <= 3; i++) {
            writer.writeObjectPath(sampleDisk(i).getPath());
        }
        break;
    case Operation::CreateInstance:
        writer.writeObjectPath(sampleDisk(9).getPath());
        break;
    case Operation::GetProperty:
        writer.writeValue(CIMValue(Uint64(1920383410176ULL)));
        break;
    default:
        break;
    }
}

} // namespace

LoopbackResponder::Answer answerLikeACimServer(const LoopbackResponder::Request& received) {
    const OperationRequest request = decodeRequest(received.body);
    LoopbackResponder::Answer answer;
    answer.headers = {{"Content-Type", http::kContentType},
                      {http::kCimOperationHeader, http::kMethodResponse}};
    if (request.operation == Operation::InvokeMethod) {
        appendMethodResponse(answer.body, request.messageId, request.methodName,
                             CIMValue(Uint32(0)), request.inParameters);
        return answer;
    }
    IMethodResponseWriter writer(answer.body, request.messageId, request.operation,
                                 PathDefaults{"array7", request.nameSpace});
    writeResults(writer, request);
    writer.finish();
    return answer;
}

} // namespace ksv::cimxml::testing
