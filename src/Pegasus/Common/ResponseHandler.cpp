#include <Pegasus/Common/ResponseHandler.h>

PEGASUS_NAMESPACE_BEGIN

ResponseHandler::ResponseHandler() = default;

ResponseHandler::ResponseHandler(const ResponseHandler& handler) = default;

ResponseHandler& ResponseHandler::operator=(const ResponseHandler& handler) = default;

ResponseHandler::~ResponseHandler() = default;

void ResponseHandler::setContext(const OperationContext& context) {
    _context = context;
}

OperationContext ResponseHandler::getContext() const {
    return _context;
}

PEGASUS_NAMESPACE_END
