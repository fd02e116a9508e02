#ifndef Pegasus_InternalException_h
#define Pegasus_InternalException_h

#include <new>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/PegasusAssert.h>

PEGASUS_NAMESPACE_BEGIN

// Message "<file>(<line>): <message>".
class PEGASUS_COMMON_LINKAGE AssertionFailureException : public Exception {
public:
    AssertionFailureException(const char* file, size_t line, const String& message);
    virtual ~AssertionFailureException();
};

class PEGASUS_COMMON_LINKAGE NullPointer : public Exception {
public:
    static const char MSG[];
    static const char KEY[];
    NullPointer();
    virtual ~NullPointer();
};

class PEGASUS_COMMON_LINKAGE UndeclaredQualifier : public Exception {
public:
    static const char MSG[];
    static const char KEY[];
    UndeclaredQualifier(const String& qualifierName);
    virtual ~UndeclaredQualifier();
};

class PEGASUS_COMMON_LINKAGE BadQualifierScope : public Exception {
public:
    static const char MSG[];
    static const char KEY[];
    BadQualifierScope(const String& qualifierName, const String& scopeString);
    virtual ~BadQualifierScope();
};

class PEGASUS_COMMON_LINKAGE BadQualifierOverride : public Exception {
public:
    static const char MSG[];
    static const char KEY[];
    BadQualifierOverride(const String& qualifierName);
    virtual ~BadQualifierOverride();
};

class PEGASUS_COMMON_LINKAGE BadQualifierType : public Exception {
public:
    static const char MSG[];
    static const char KEY[];
    BadQualifierType(const String& qualifierName, const String& className = String());
    virtual ~BadQualifierType();
    const String _qualifierName;
    const String _className;
    const String& getQualifierName() const;
    const String& getClassName() const;
};

class PEGASUS_COMMON_LINKAGE InstantiatedAbstractClass : public Exception {
public:
    static const char MSG[];
    static const char KEY[];
    InstantiatedAbstractClass(const String& className);
    virtual ~InstantiatedAbstractClass();
};

class PEGASUS_COMMON_LINKAGE NoSuchProperty : public Exception {
public:
    static const char MSG[];
    static const char KEY[];
    NoSuchProperty(const String& propertyName);
    virtual ~NoSuchProperty();
};

class PEGASUS_COMMON_LINKAGE NotImplemented : public Exception {
public:
    static const char MSG[];
    static const char KEY[];
    NotImplemented(const String& method);
    virtual ~NotImplemented();
};

class PEGASUS_COMMON_LINKAGE ParseError : public Exception {
public:
    static const char MSG[];
    static const char KEY[];
    ParseError(const String& message);
    virtual ~ParseError();
};

class PEGASUS_COMMON_LINKAGE IncompatibleTypesException : public Exception {
public:
    IncompatibleTypesException();
    virtual ~IncompatibleTypesException();
};

PEGASUS_COMMON_LINKAGE extern void ThrowIndexOutOfBoundsException();

// A CIMException that remembers the source file and line that raised it.
// getDescription() gives "<code name>: <message>", getTraceDescription()
// puts "<file>(<line>): " in front of that.
class PEGASUS_COMMON_LINKAGE TraceableCIMException : public CIMException {
public:
    TraceableCIMException(CIMStatusCode code, const String& message, const String& file,
                          Uint32 line);
    TraceableCIMException(CIMStatusCode code, const MessageLoaderParms& parms, const String& file,
                          Uint32 line);
    TraceableCIMException(const CIMException& cimException);

    String getDescription() const;
    String getTraceDescription() const;
    String getCIMMessage() const;
    void setCIMMessage(const String& cimMessage);
    String getFile() const;
    Uint32 getLine() const;
};

#define PEGASUS_CIM_EXCEPTION(CODE, EXTRA_MESSAGE)                                                 \
    TraceableCIMException(CODE, EXTRA_MESSAGE, String(__FILE__), __LINE__)

#define PEGASUS_CIM_EXCEPTION_L(CODE, MSG_PARMS)                                                   \
    TraceableCIMException(CODE, MSG_PARMS, String(__FILE__), __LINE__)

#define PEGASUS_CHECK_CAPACITY_OVERFLOW(capacity)                                                  \
    do {                                                                                           \
        if (capacity > 0x3FFFFFFF)                                                                 \
            throw PEGASUS_STD(bad_alloc)();                                                        \
    } while (0)

PEGASUS_COMMON_LINKAGE extern void ThrowUninitializedObjectException();

inline void CheckRep(void* rep) {
    if (!rep)
        ThrowUninitializedObjectException();
}

PEGASUS_NAMESPACE_END

#endif /* Pegasus_InternalException_h */
