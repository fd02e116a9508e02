#ifndef Pegasus_CIMEnumerationContext_h
#define Pegasus_CIMEnumerationContext_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Client/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

/**
    The enumeration context of a sequence of pull operations: filled in by an open operation
    of CIMClient and carried by the client through the pulls until the sequence ends or is
    closed. Opaque to the application, which only creates, clears and destroys it.
*/
class PEGASUS_CLIENT_LINKAGE CIMEnumerationContext {
public:
    CIMEnumerationContext();
    ~CIMEnumerationContext();

    void clear();

    /** Forgets the server's context name only, keeping the namespace (for error tests). */
    void clearEnumeration();

protected:
    CIMNamespaceName& getNameSpace();
    void setNameSpace(const CIMNamespaceName& n);
    String& getContextString();
    void setContextString(const String& s);

private:
    CIMEnumerationContext(const CIMEnumerationContext&) = delete;
    CIMEnumerationContext& operator=(const CIMEnumerationContext&) = delete;

    CIMNamespaceName _nameSpace;
    String _contextString;
    friend class CIMClient;
};

PEGASUS_NAMESPACE_END

#endif
