// The pull operations: the Open operations start an enumeration over the corresponding
// one-shot operation of the dispatcher, and each response is one page of it.
#ifndef KSV_CIMSERVER_PULLOPERATIONS_H
#define KSV_CIMSERVER_PULLOPERATIONS_H

#include <cimxml/Request.h>
#include <cimxml/Response.h>

#include "cimserver/EnumerationContexts.h"
#include "cimserver/OperationDispatcher.h"

#include <functional>

namespace ksv::server {

class PullOperations {
public:
    PullOperations(const OperationDispatcher& dispatcher, EnumerationContexts& contexts)
        : _dispatcher(dispatcher), _contexts(contexts) {}

    // The Open and Pull operations, CloseEnumeration and EnumerationCount.
    static bool handles(cimxml::Operation operation);

    // Writes the whole response; `written` is called after each result, to pass the text on.
    // Throws CIMException for the error response.
    void answer(const Caller& caller, const cimxml::OperationRequest& request,
                cimxml::IMethodResponseWriter& writer, const std::function<void()>& written) const;

private:
    std::string open(const Caller& caller, const cimxml::OperationRequest& request) const;
    EnumerationContexts::Producer producerFor(const Caller& caller,
                                              const cimxml::OperationRequest& request) const;

    const OperationDispatcher& _dispatcher;
    EnumerationContexts& _contexts;
};

} // namespace ksv::server

#endif
