// CIM operations over HTTP (DSP0200): checks a request's headers, decodes its CIM-XML body
// (DSP0201), carries the operation out and writes the response into the stream as the results
// arrive.
#ifndef KSV_CIMSERVER_CIMXMLSERVICE_H
#define KSV_CIMSERVER_CIMXMLSERVICE_H

#include "cimserver/HttpFrontEnd.h"
#include "cimserver/OperationDispatcher.h"
#include "cimserver/PullOperations.h"
#include "cimserver/ResponseMemoryGate.h"

namespace ksv::server {

class CimXmlService {
public:
    CimXmlService(const OperationDispatcher& dispatcher, EnumerationContexts& enumerations,
                  ResponseMemoryGate& responseMemory)
        : _dispatcher(dispatcher), _pulls(dispatcher, enumerations),
          _responseMemory(responseMemory) {}

    // Answers every failure itself; never throws.
    void process(HttpRequest& request, ResponseStream& response) const;

private:
    void answer(const Caller& caller, const cimxml::OperationRequest& request,
                ResponseStream& response) const;
    void answerIntrinsic(const Caller& caller, const cimxml::OperationRequest& request,
                         const ResponseMemoryGate::Pass& pass, ResponseStream& response) const;
    void answerExtrinsic(const Caller& caller, const cimxml::OperationRequest& request,
                         const ResponseMemoryGate::Pass& pass, ResponseStream& response) const;

    const OperationDispatcher& _dispatcher;
    const PullOperations _pulls;
    ResponseMemoryGate& _responseMemory;
};

} // namespace ksv::server

#endif
