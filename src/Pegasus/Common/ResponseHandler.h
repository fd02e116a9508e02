#ifndef Pegasus_ResponseHandler_h
#define Pegasus_ResponseHandler_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/OperationContext.h>

PEGASUS_NAMESPACE_BEGIN

/// Receives the results of one operation from a provider: processing(), any number of
/// deliveries, then complete().
class PEGASUS_COMMON_LINKAGE ResponseHandler {
public:
    virtual ~ResponseHandler();

    /// Called once before the first delivery.
    virtual void processing() = 0;

    /// Called once after the last delivery.
    virtual void complete() = 0;

    /// Context (such as content languages) that goes with all results of this handler.
    void setContext(const OperationContext& context);

protected:
    ResponseHandler();
    ResponseHandler(const ResponseHandler& handler);
    ResponseHandler& operator=(const ResponseHandler& handler);

    OperationContext getContext() const;

private:
    OperationContext _context;
};

class PEGASUS_COMMON_LINKAGE InstanceResponseHandler : virtual public ResponseHandler {
public:
    virtual void deliver(const CIMInstance& instance) = 0;
    virtual void deliver(const Array<CIMInstance>& instances) = 0;
};

class PEGASUS_COMMON_LINKAGE ObjectPathResponseHandler : virtual public ResponseHandler {
public:
    virtual void deliver(const CIMObjectPath& objectPath) = 0;
    virtual void deliver(const Array<CIMObjectPath>& objectPaths) = 0;
};

class PEGASUS_COMMON_LINKAGE MethodResultResponseHandler : virtual public ResponseHandler {
public:
    virtual void deliverParamValue(const CIMParamValue& outParamValue) = 0;
    virtual void deliverParamValue(const Array<CIMParamValue>& outParamValues) = 0;

    /// The method's return value.
    virtual void deliver(const CIMValue& returnValue) = 0;
};

class PEGASUS_COMMON_LINKAGE ObjectResponseHandler : virtual public ResponseHandler {
public:
    virtual void deliver(const CIMObject& object) = 0;
    virtual void deliver(const Array<CIMObject>& objects) = 0;
};

/// Property values, as the server answers getProperty through a provider's instances.
class PEGASUS_COMMON_LINKAGE ValueResponseHandler : virtual public ResponseHandler {
public:
    virtual void deliver(const CIMValue& value) = 0;
    virtual void deliver(const Array<CIMValue>& values) = 0;
};

PEGASUS_NAMESPACE_END

#endif
