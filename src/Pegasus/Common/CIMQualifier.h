#ifndef Pegasus_Qualifier_h
#define Pegasus_Qualifier_h

#include <memory>

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMFlavor.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/CIMValue.h>

PEGASUS_NAMESPACE_BEGIN

class CIMValue;
class CIMConstQualifier;
class CIMQualifierRep;
template <class Member>
class CIMMemberList;

/**
    A qualifier attached to a class, instance, property, method or
    parameter: a name, a value and a flavor.

    A handle: copies share one qualifier, clone() makes an independent one.
    A default-constructed handle is uninitialized and every operation but
    isUninitialized() throws UninitializedObjectException.
*/
class PEGASUS_COMMON_LINKAGE CIMQualifier {
public:
    CIMQualifier();
    CIMQualifier(const CIMQualifier& x);
    /** @exception UninitializedObjectException if name is null. */
    CIMQualifier(const CIMName& name, const CIMValue& value,
                 const CIMFlavor& flavor = CIMFlavor(CIMFlavor::NONE), Boolean propagated = false);
    ~CIMQualifier();
    CIMQualifier& operator=(const CIMQualifier& x);

    const CIMName& getName() const;
    /**
        @exception UninitializedObjectException if name is null.
        @exception Exception if the qualifier already belongs to an element
            and the name changes.
    */
    void setName(const CIMName& name);
    CIMType getType() const;
    Boolean isArray() const;
    const CIMValue& getValue() const;
    /** Replaces the value; the type may change. */
    void setValue(const CIMValue& value);
    /** Replaces the flavor. */
    void setFlavor(const CIMFlavor& flavor);
    void unsetFlavor(const CIMFlavor& flavor);
    const CIMFlavor& getFlavor() const;
    Uint32 getPropagated() const;
    void setPropagated(Boolean propagated);
    Boolean isUninitialized() const;
    /** Same name, value, flavor and propagated flag. */
    Boolean identical(const CIMConstQualifier& x) const;
    CIMQualifier clone() const;

private:
    explicit CIMQualifier(std::shared_ptr<CIMQualifierRep> rep);

    std::shared_ptr<CIMQualifierRep> _rep;

    friend class CIMConstQualifier;
    template <class Member>
    friend class CIMMemberList;
};

/** Read-only view of a qualifier; shares the qualifier it was made from. */
class PEGASUS_COMMON_LINKAGE CIMConstQualifier {
public:
    CIMConstQualifier();
    CIMConstQualifier(const CIMConstQualifier& x);
    CIMConstQualifier(const CIMQualifier& x);
    CIMConstQualifier(const CIMName& name, const CIMValue& value,
                      const CIMFlavor& flavor = CIMFlavor(CIMFlavor::NONE),
                      Boolean propagated = false);
    ~CIMConstQualifier();
    CIMConstQualifier& operator=(const CIMConstQualifier& x);
    CIMConstQualifier& operator=(const CIMQualifier& x);

    const CIMName& getName() const;
    CIMType getType() const;
    Boolean isArray() const;
    const CIMValue& getValue() const;
    const CIMFlavor& getFlavor() const;
    Uint32 getPropagated() const;
    Boolean isUninitialized() const;
    Boolean identical(const CIMConstQualifier& x) const;
    CIMQualifier clone() const;

private:
    std::shared_ptr<CIMQualifierRep> _rep;

    friend class CIMQualifier;
};

PEGASUS_NAMESPACE_END

#endif
