#ifndef Pegasus_CIMClass_h
#define Pegasus_CIMClass_h

#include <memory>

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMPropertyList.h>

PEGASUS_NAMESPACE_BEGIN

class CIMConstClass;
class CIMObjectRep;

/**
    A CIM class definition: name, superclass name, qualifiers, properties
    (with their default values) and methods.

    A handle: copies share one class, clone() makes an independent one.
    A default-constructed handle is uninitialized and every operation but
    isUninitialized() throws UninitializedObjectException.
    Several threads may read one object at once; changing an object that
    other threads can reach needs a lock held by the caller.
*/
class PEGASUS_COMMON_LINKAGE CIMClass {
public:
    CIMClass();
    CIMClass(const CIMClass& x);
    /** @exception DynamicCastFailedException if x is not a class. */
    explicit CIMClass(const CIMObject& x);
    /** @exception UninitializedObjectException if className is null. */
    CIMClass(const CIMName& className, const CIMName& superClassName = CIMName());
    CIMClass& operator=(const CIMClass& x);
    ~CIMClass();

    /** True when the class has the qualifier Association set to true. */
    Boolean isAssociation() const;
    /** True when the class has the qualifier Abstract set to true. */
    Boolean isAbstract() const;
    const CIMName& getClassName() const;
    const CIMObjectPath& getPath() const;
    void setPath(const CIMObjectPath& path);
    const CIMName& getSuperClassName() const;
    void setSuperClassName(const CIMName& superClassName);

    CIMClass& addQualifier(const CIMQualifier& qualifier);
    Uint32 findQualifier(const CIMName& name) const;
    CIMQualifier getQualifier(Uint32 index);
    CIMConstQualifier getQualifier(Uint32 index) const;
    void removeQualifier(Uint32 index);
    Uint32 getQualifierCount() const;

    /**
        @exception AlreadyExistsException if the name is taken (any case).
        @exception TypeMismatchException for a reference property without a
            reference class name.
    */
    CIMClass& addProperty(const CIMProperty& x);
    Uint32 findProperty(const CIMName& name) const;
    CIMProperty getProperty(Uint32 index);
    CIMConstProperty getProperty(Uint32 index) const;
    void removeProperty(Uint32 index);
    Uint32 getPropertyCount() const;

    /** @exception AlreadyExistsException if the name is taken (any case). */
    CIMClass& addMethod(const CIMMethod& x);
    Uint32 findMethod(const CIMName& name) const;
    CIMMethod getMethod(Uint32 index);
    CIMConstMethod getMethod(Uint32 index) const;
    void removeMethod(Uint32 index);
    Uint32 getMethodCount() const;

    /** Names of the properties qualified Key, in property order. */
    void getKeyNames(Array<CIMName>& keyNames) const;
    Boolean hasKeys() const;
    CIMClass clone() const;
    Boolean identical(const CIMConstClass& x) const;
    Boolean isUninitialized() const;

    /**
        A new instance of this class holding a copy of every property the
        list names (all of them for a null list, none for an empty one),
        with the class's default values and propagated flags. The class's
        qualifiers and the properties' qualifiers are copied only when
        includeQualifiers is true; class origins are kept only when
        includeClassOrigin is true.
    */
    CIMInstance buildInstance(Boolean includeQualifiers, Boolean includeClassOrigin,
                              const CIMPropertyList& propertyList) const;

private:
    explicit CIMClass(std::shared_ptr<CIMObjectRep> rep);

    std::shared_ptr<CIMObjectRep> _rep;

    friend class CIMConstClass;
    friend class CIMObject;
    friend class CIMConstObject;
};

/** Read-only view of a class. */
class PEGASUS_COMMON_LINKAGE CIMConstClass {
public:
    CIMConstClass();
    CIMConstClass(const CIMConstClass& x);
    CIMConstClass(const CIMClass& x);
    explicit CIMConstClass(const CIMObject& x);
    explicit CIMConstClass(const CIMConstObject& x);
    CIMConstClass(const CIMName& className, const CIMName& superClassName = CIMName());
    CIMConstClass& operator=(const CIMConstClass& x);
    CIMConstClass& operator=(const CIMClass& x);
    ~CIMConstClass();

    Boolean isAssociation() const;
    Boolean isAbstract() const;
    const CIMName& getClassName() const;
    const CIMObjectPath& getPath() const;
    const CIMName& getSuperClassName() const;
    Uint32 findQualifier(const CIMName& name) const;
    CIMConstQualifier getQualifier(Uint32 index) const;
    Uint32 getQualifierCount() const;
    Uint32 findProperty(const CIMName& name) const;
    CIMConstProperty getProperty(Uint32 index) const;
    Uint32 getPropertyCount() const;
    Uint32 findMethod(const CIMName& name) const;
    CIMConstMethod getMethod(Uint32 index) const;
    Uint32 getMethodCount() const;
    void getKeyNames(Array<CIMName>& keyNames) const;
    Boolean hasKeys() const;
    CIMClass clone() const;
    Boolean identical(const CIMConstClass& x) const;
    Boolean isUninitialized() const;

private:
    std::shared_ptr<CIMObjectRep> _rep;

    friend class CIMClass;
    friend class CIMObject;
    friend class CIMConstObject;
};

PEGASUS_NAMESPACE_END

#endif
