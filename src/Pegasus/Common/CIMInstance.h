#ifndef Pegasus_Instance_h
#define Pegasus_Instance_h

#include <memory>

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMPropertyList.h>

PEGASUS_NAMESPACE_BEGIN

class CIMConstInstance;
class CIMObjectRep;

/**
    An instance of a CIM class: its path, qualifiers and properties, kept in
    the order they were added.

    A handle: copies share one instance, clone() makes an independent one.
    A default-constructed handle is uninitialized and every operation but
    isUninitialized() throws UninitializedObjectException.
    Several threads may read one object at once; changing an object that
    other threads can reach needs a lock held by the caller.
*/
class PEGASUS_COMMON_LINKAGE CIMInstance {
public:
    CIMInstance();
    CIMInstance(const CIMInstance& x);
    /** @exception DynamicCastFailedException if x is not an instance. */
    explicit CIMInstance(const CIMObject& x);
    /** @exception UninitializedObjectException if className is null. */
    CIMInstance(const CIMName& className);
    CIMInstance& operator=(const CIMInstance& x);
    ~CIMInstance();

    const CIMName& getClassName() const;
    const CIMObjectPath& getPath() const;
    /**
        @exception UninitializedObjectException if the path has no class name.
        @exception TypeMismatchException if the path names another class.
    */
    void setPath(const CIMObjectPath& path);

    /** @exception AlreadyExistsException if the name is taken (any case). */
    CIMInstance& addQualifier(const CIMQualifier& qualifier);
    Uint32 findQualifier(const CIMName& name) const;
    CIMQualifier getQualifier(Uint32 index);
    CIMConstQualifier getQualifier(Uint32 index) const;
    void removeQualifier(Uint32 index);
    Uint32 getQualifierCount() const;

    /** @exception AlreadyExistsException if the name is taken (any case). */
    CIMInstance& addProperty(const CIMProperty& x);
    /** Case-insensitive; PEG_NOT_FOUND when absent. */
    Uint32 findProperty(const CIMName& name) const;
    /** @exception IndexOutOfBoundsException for a bad index. */
    CIMProperty getProperty(Uint32 index);
    CIMConstProperty getProperty(Uint32 index) const;
    void removeProperty(Uint32 index);
    Uint32 getPropertyCount() const;

    /**
        The path made of this instance's class name and the values of the
        class's key properties (no host, no namespace).
        @exception NoSuchProperty if the instance lacks a key property.
    */
    CIMObjectPath buildPath(const CIMConstClass& cimClass) const;
    CIMInstance clone() const;
    Boolean identical(const CIMConstInstance& x) const;
    Boolean isUninitialized() const;

    /** See CIMObject::instanceFilter. */
    void instanceFilter(Boolean includeQualifiers, Boolean includeClassOrigin,
                        const CIMPropertyList& propertyList);

private:
    explicit CIMInstance(std::shared_ptr<CIMObjectRep> rep);

    std::shared_ptr<CIMObjectRep> _rep;

    friend class CIMConstInstance;
    friend class CIMObject;
    friend class CIMConstObject;
    friend class CIMClass;
};

/** Read-only view of an instance. */
class PEGASUS_COMMON_LINKAGE CIMConstInstance {
public:
    CIMConstInstance();
    CIMConstInstance(const CIMConstInstance& x);
    CIMConstInstance(const CIMInstance& x);
    explicit CIMConstInstance(const CIMObject& x);
    explicit CIMConstInstance(const CIMConstObject& x);
    CIMConstInstance(const CIMName& className);
    CIMConstInstance& operator=(const CIMConstInstance& x);
    CIMConstInstance& operator=(const CIMInstance& x);
    ~CIMConstInstance();

    const CIMName& getClassName() const;
    const CIMObjectPath& getPath() const;
    Uint32 findQualifier(const CIMName& name) const;
    CIMConstQualifier getQualifier(Uint32 index) const;
    Uint32 getQualifierCount() const;
    Uint32 findProperty(const CIMName& name) const;
    CIMConstProperty getProperty(Uint32 index) const;
    Uint32 getPropertyCount() const;
    CIMObjectPath buildPath(const CIMConstClass& cimClass) const;
    CIMInstance clone() const;
    Boolean identical(const CIMConstInstance& x) const;
    Boolean isUninitialized() const;

private:
    std::shared_ptr<CIMObjectRep> _rep;

    friend class CIMInstance;
    friend class CIMObject;
    friend class CIMConstObject;
    friend class CIMPropertyReader;
};

PEGASUS_NAMESPACE_END

#endif
