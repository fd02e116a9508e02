#ifndef Pegasus_Name_h
#define Pegasus_Name_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/Exception.h>

PEGASUS_NAMESPACE_BEGIN

// The name of a class, property, method, qualifier or key. A name is null
// until set; names compare without regard to (ASCII) case.
class PEGASUS_COMMON_LINKAGE CIMName {
public:
    CIMName();
    // Throws InvalidNameException unless CIMName::legal(name).
    CIMName(const String& name);
    CIMName(const char* name);
    CIMName(const CIMName& name) = default;
    CIMName(CIMName&& name) noexcept = default;

    CIMName& operator=(const CIMName& name);
    CIMName& operator=(CIMName&& name) noexcept = default;
    CIMName& operator=(const String& name);

    const String& getString() const;
    Boolean isNull() const;
    void clear();
    Boolean equal(const CIMName& name) const;

    // A legal name starts with a letter, '_' or a non-ASCII character and
    // goes on with those or digits.
    static Boolean legal(const String& name);

#ifdef PEGASUS_USE_EXPERIMENTAL_INTERFACES
    Boolean equal(const char* name) const;
    CIMName& operator=(const char* name);
#endif

private:
    String cimName;
};

PEGASUS_COMMON_LINKAGE Boolean operator==(const CIMName& name1, const CIMName& name2);
PEGASUS_COMMON_LINKAGE Boolean operator!=(const CIMName& name1, const CIMName& name2);

// A namespace name: legal CIM names joined by '/'. One leading '/' is
// accepted and dropped. Null until set; compares without regard to case.
class PEGASUS_COMMON_LINKAGE CIMNamespaceName {
public:
    CIMNamespaceName();
    // Throws InvalidNamespaceNameException unless the name is legal.
    CIMNamespaceName(const String& name);
    CIMNamespaceName(const char* name);
    CIMNamespaceName(const CIMNamespaceName& name) = default;
    CIMNamespaceName(CIMNamespaceName&& name) noexcept = default;

    CIMNamespaceName& operator=(const CIMNamespaceName& name);
    CIMNamespaceName& operator=(CIMNamespaceName&& name) noexcept = default;
    CIMNamespaceName& operator=(const String& name);

    const String& getString() const;
    Boolean isNull() const;
    void clear();
    Boolean equal(const CIMNamespaceName& name) const;
    static Boolean legal(const String& name);

#ifdef PEGASUS_USE_EXPERIMENTAL_INTERFACES
    Boolean equal(const char* name) const;
    CIMNamespaceName& operator=(const char* name);
#endif

private:
    String cimNamespaceName;
};

PEGASUS_COMMON_LINKAGE Boolean operator==(const CIMNamespaceName& name1,
                                          const CIMNamespaceName& name2);
PEGASUS_COMMON_LINKAGE Boolean operator!=(const CIMNamespaceName& name1,
                                          const CIMNamespaceName& name2);

PEGASUS_NAMESPACE_END

#endif /* Pegasus_Name_h */
