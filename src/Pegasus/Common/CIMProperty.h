#ifndef Pegasus_Property_h
#define Pegasus_Property_h

#include <memory>

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/CIMQualifier.h>

PEGASUS_NAMESPACE_BEGIN

class CIMValue;
class CIMConstProperty;
class CIMPropertyRep;
class CIMQualifier;
class CIMConstQualifier;
template <class Member>
class CIMMemberList;

/**
    A property of a class or instance: name, value, qualifiers, the class
    that defined it (class origin) and whether it was inherited (propagated).

    The value's type and array flag are fixed at construction; setValue()
    accepts only values of the same type and array flag (null or not).
    A handle: copies share one property, so a property taken from an
    instance changes the instance when set; clone() makes an independent
    one. A default-constructed handle is uninitialized.
*/
class PEGASUS_COMMON_LINKAGE CIMProperty {
public:
    CIMProperty();
    CIMProperty(const CIMProperty& x);
    /**
        @exception TypeMismatchException if arraySize is given for a value
            that is no array of that size, if the value is an array of
            references, or if referenceClassName is given for a value that is
            no reference.
        @exception UninitializedObjectException if name is null.
    */
    CIMProperty(const CIMName& name, const CIMValue& value, Uint32 arraySize = 0,
                const CIMName& referenceClassName = CIMName(),
                const CIMName& classOrigin = CIMName(), Boolean propagated = false);
    ~CIMProperty();
    CIMProperty& operator=(const CIMProperty& x);

    const CIMName& getName() const;
    /**
        @exception UninitializedObjectException if name is null.
        @exception Exception if the property already belongs to a class or
            instance and the name changes.
    */
    void setName(const CIMName& name);
    const CIMValue& getValue() const;
    CIMType getType() const;
    Boolean isArray() const;
    /** @exception TypeMismatchException if the type or array flag differs. */
    void setValue(const CIMValue& value);
    /** The same, taking over a value built for the property. */
    void setValue(CIMValue&& value);
    Uint32 getArraySize() const;
    const CIMName& getReferenceClassName() const;
    const CIMName& getClassOrigin() const;
    void setClassOrigin(const CIMName& classOrigin);
    Boolean getPropagated() const;
    void setPropagated(Boolean propagated);

    /** @exception AlreadyExistsException if the name is taken (any case). */
    CIMProperty& addQualifier(const CIMQualifier& x);
    /** Case-insensitive; PEG_NOT_FOUND when absent. */
    Uint32 findQualifier(const CIMName& name) const;
    /** @exception IndexOutOfBoundsException for a bad index. */
    CIMQualifier getQualifier(Uint32 index);
    CIMConstQualifier getQualifier(Uint32 index) const;
    void removeQualifier(Uint32 index);
    Uint32 getQualifierCount() const;

    /** Same name, value, reference class, qualifiers, origin and propagation. */
    Boolean identical(const CIMConstProperty& x) const;
    CIMProperty clone() const;
    Boolean isUninitialized() const;

private:
    explicit CIMProperty(std::shared_ptr<CIMPropertyRep> rep);

    std::shared_ptr<CIMPropertyRep> _rep;

    friend class CIMConstProperty;
    template <class Member>
    friend class CIMMemberList;
    friend class CIMPropertyReader;
};

/** Read-only view of a property; shares the property it was made from. */
class PEGASUS_COMMON_LINKAGE CIMConstProperty {
public:
    CIMConstProperty();
    CIMConstProperty(const CIMConstProperty& x);
    CIMConstProperty(const CIMProperty& x);
    CIMConstProperty(const CIMName& name, const CIMValue& value, Uint32 arraySize = 0,
                     const CIMName& referenceClassName = CIMName(),
                     const CIMName& classOrigin = CIMName(), Boolean propagated = false);
    ~CIMConstProperty();
    CIMConstProperty& operator=(const CIMConstProperty& x);
    CIMConstProperty& operator=(const CIMProperty& x);

    const CIMName& getName() const;
    const CIMValue& getValue() const;
    CIMType getType() const;
    Boolean isArray() const;
    Uint32 getArraySize() const;
    const CIMName& getReferenceClassName() const;
    const CIMName& getClassOrigin() const;
    Boolean getPropagated() const;
    Uint32 findQualifier(const CIMName& name) const;
    CIMConstQualifier getQualifier(Uint32 index) const;
    Uint32 getQualifierCount() const;
    Boolean identical(const CIMConstProperty& x) const;
    CIMProperty clone() const;
    Boolean isUninitialized() const;

private:
    std::shared_ptr<CIMPropertyRep> _rep;

    friend class CIMProperty;
};

PEGASUS_NAMESPACE_END

#endif
