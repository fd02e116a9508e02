#ifndef Pegasus_Object_h
#define Pegasus_Object_h

#include <memory>

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/CIMPropertyList.h>

PEGASUS_NAMESPACE_BEGIN

class CIMConstObject;
class CIMObjectRep;
class CIMClass;
class CIMConstClass;
class CIMInstance;
class CIMConstInstance;
class CIMProperty;
class CIMConstProperty;
class CIMQualifier;
class CIMConstQualifier;

/**
    A class or an instance, seen through their common part: path,
    qualifiers and properties.

    A handle: a CIMObject made from a CIMClass or CIMInstance shares it.
    A default-constructed handle is uninitialized and every operation but
    isUninitialized(), isClass() and isInstance() throws
    UninitializedObjectException.
    Several threads may read one object at once; changing an object that
    other threads can reach needs a lock held by the caller.
*/
class PEGASUS_COMMON_LINKAGE CIMObject {
public:
    CIMObject();
    CIMObject(const CIMObject& x);
    CIMObject(const CIMClass& x);
    CIMObject(const CIMInstance& x);
    CIMObject& operator=(const CIMObject& x);
    ~CIMObject();

    const CIMName& getClassName() const;
    const CIMObjectPath& getPath() const;
    /**
        @exception UninitializedObjectException if the path has no class name.
        @exception TypeMismatchException if the path names another class.
    */
    void setPath(const CIMObjectPath& path);

    /** @exception AlreadyExistsException if the name is taken (any case). */
    CIMObject& addQualifier(const CIMQualifier& qualifier);
    Uint32 findQualifier(const CIMName& name) const;
    CIMQualifier getQualifier(Uint32 index);
    CIMConstQualifier getQualifier(Uint32 index) const;
    void removeQualifier(Uint32 index);
    Uint32 getQualifierCount() const;

    /** @exception AlreadyExistsException if the name is taken (any case). */
    CIMObject& addProperty(const CIMProperty& x);
    /** Case-insensitive; PEG_NOT_FOUND when absent. */
    Uint32 findProperty(const CIMName& name) const;
    /** @exception IndexOutOfBoundsException for a bad index. */
    CIMProperty getProperty(Uint32 index);
    CIMConstProperty getProperty(Uint32 index) const;
    void removeProperty(Uint32 index);
    Uint32 getPropertyCount() const;

    CIMObject clone() const;
    Boolean identical(const CIMConstObject& x) const;
    Boolean isUninitialized() const;
    /** The CIM-XML CLASS or INSTANCE element. */
    String toString() const;
    Boolean isClass() const;
    Boolean isInstance() const;

    /**
        Drops the qualifiers (of the object and its properties) unless asked
        to keep them, the class origins unless asked to keep them, and the
        properties the list does not name.
    */
    void instanceFilter(Boolean includeQualifiers, Boolean includeClassOrigin,
                        const CIMPropertyList& propertyList);

private:
    explicit CIMObject(std::shared_ptr<CIMObjectRep> rep);

    std::shared_ptr<CIMObjectRep> _rep;

    friend class CIMConstObject;
    friend class CIMClass;
    friend class CIMConstClass;
    friend class CIMInstance;
    friend class CIMConstInstance;
};

/** Read-only view of a class or an instance. */
class PEGASUS_COMMON_LINKAGE CIMConstObject {
public:
    CIMConstObject();
    CIMConstObject(const CIMConstObject& x);
    CIMConstObject(const CIMObject& x);
    CIMConstObject(const CIMClass& x);
    CIMConstObject(const CIMInstance& x);
    CIMConstObject(const CIMConstClass& x);
    CIMConstObject(const CIMConstInstance& x);
    CIMConstObject& operator=(const CIMConstObject& x);
    ~CIMConstObject();

    const CIMName& getClassName() const;
    const CIMObjectPath& getPath() const;
    Uint32 findQualifier(const CIMName& name) const;
    CIMConstQualifier getQualifier(Uint32 index) const;
    Uint32 getQualifierCount() const;
    Uint32 findProperty(const CIMName& name) const;
    CIMConstProperty getProperty(Uint32 index) const;
    Uint32 getPropertyCount() const;
    CIMObject clone() const;
    Boolean identical(const CIMConstObject& x) const;
    Boolean isUninitialized() const;
    String toString() const;
    Boolean isClass() const;
    Boolean isInstance() const;

private:
    std::shared_ptr<CIMObjectRep> _rep;

    friend class CIMObject;
    friend class CIMClass;
    friend class CIMConstClass;
    friend class CIMInstance;
    friend class CIMConstInstance;
};

PEGASUS_NAMESPACE_END

#endif
