#ifndef Pegasus_QualifierDecl_h
#define Pegasus_QualifierDecl_h

#include <memory>

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMFlavor.h>
#include <Pegasus/Common/CIMScope.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/CIMValue.h>

PEGASUS_NAMESPACE_BEGIN

class CIMConstQualifierDecl;
class CIMQualifierDeclRep;

/**
    The declaration of a qualifier: its name, type and default value, the
    scopes it applies to and its default flavor.

    The flavor is normalized on construction: TOSUBCLASS unless RESTRICTED,
    ENABLEOVERRIDE unless DISABLEOVERRIDE. A handle like CIMQualifier.
*/
class PEGASUS_COMMON_LINKAGE CIMQualifierDecl {
public:
    CIMQualifierDecl();
    CIMQualifierDecl(const CIMQualifierDecl& x);
    /** @exception UninitializedObjectException if name is null. */
    CIMQualifierDecl(const CIMName& name, const CIMValue& value, const CIMScope& scope,
                     const CIMFlavor& flavor = CIMFlavor(CIMFlavor::DEFAULTS),
                     Uint32 arraySize = 0);
    ~CIMQualifierDecl();
    CIMQualifierDecl& operator=(const CIMQualifierDecl& x);

    const CIMName& getName() const;
    void setName(const CIMName& name);
    CIMType getType() const;
    Boolean isArray() const;
    const CIMValue& getValue() const;
    void setValue(const CIMValue& value);
    const CIMScope& getScope() const;
    const CIMFlavor& getFlavor() const;
    Uint32 getArraySize() const;
    Boolean isUninitialized() const;
    Boolean identical(const CIMConstQualifierDecl& x) const;
    CIMQualifierDecl clone() const;

private:
    explicit CIMQualifierDecl(std::shared_ptr<CIMQualifierDeclRep> rep);

    std::shared_ptr<CIMQualifierDeclRep> _rep;

    friend class CIMConstQualifierDecl;
};

/** Read-only view of a qualifier declaration. */
class PEGASUS_COMMON_LINKAGE CIMConstQualifierDecl {
public:
    CIMConstQualifierDecl();
    CIMConstQualifierDecl(const CIMConstQualifierDecl& x);
    CIMConstQualifierDecl(const CIMQualifierDecl& x);
    CIMConstQualifierDecl(const CIMName& name, const CIMValue& value, const CIMScope& scope,
                          const CIMFlavor& flavor = CIMFlavor(CIMFlavor::DEFAULTS),
                          Uint32 arraySize = 0);
    ~CIMConstQualifierDecl();
    CIMConstQualifierDecl& operator=(const CIMConstQualifierDecl& x);
    CIMConstQualifierDecl& operator=(const CIMQualifierDecl& x);

    const CIMName& getName() const;
    CIMType getType() const;
    Boolean isArray() const;
    const CIMValue& getValue() const;
    const CIMScope& getScope() const;
    const CIMFlavor& getFlavor() const;
    Uint32 getArraySize() const;
    Boolean isUninitialized() const;
    Boolean identical(const CIMConstQualifierDecl& x) const;
    CIMQualifierDecl clone() const;

private:
    std::shared_ptr<CIMQualifierDeclRep> _rep;

    friend class CIMQualifierDecl;
};

PEGASUS_NAMESPACE_END

#endif
