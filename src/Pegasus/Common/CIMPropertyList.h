#ifndef Pegasus_CIMPropertyList_h
#define Pegasus_CIMPropertyList_h

#include <memory>

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

class CIMPropertyListRep;

/**
    The property list of a CIM operation. A null list asks for every
    property; a non-null list asks only for the names in it, so an empty
    list asks for none. A value: copies are independent.
*/
class PEGASUS_COMMON_LINKAGE CIMPropertyList {
public:
    /** A null list. */
    CIMPropertyList();
    CIMPropertyList(const CIMPropertyList& x);
    /** @exception UninitializedObjectException if a name is null. */
    CIMPropertyList(const Array<CIMName>& propertyNames);
    ~CIMPropertyList();

    /**
        Replaces the names; the list becomes non-null.
        @exception UninitializedObjectException if a name is null.
    */
    void set(const Array<CIMName>& propertyNames);
    CIMPropertyList& operator=(const CIMPropertyList& x);
    /** Makes the list null. */
    void clear();
    Boolean isNull() const;
    /** Number of names; 0 for a null list. */
    Uint32 size() const;
    /** @exception IndexOutOfBoundsException for a bad index. */
    const CIMName& operator[](Uint32 index) const;
    Array<CIMName> getPropertyNameArray() const;
    /** Hash tag of the name appended at index by append(). */
    Uint32 getCIMNameTag(Uint32 index) const;
    /**
        Makes the list non-null and, unless the array is empty, replaces the
        names with those given, repeats (any case) dropped, appending their
        tags.
        @exception InvalidNameException if a name is not a legal CIM name.
    */
    void append(Array<String>& propertyListArray);
    void appendCIMNameTag(Uint32 nameTag);
    /** True when the name is in the list (any case); false for a null list. */
    Boolean contains(const CIMName& name) const;
    /** True when the list is null or contains the name. */
    Boolean useThisProperty(const CIMName& name) const;
    /** "NULL", "EMPTY", or the names separated by ", ". */
    String toString() const;

private:
    std::unique_ptr<CIMPropertyListRep> _rep;
};

PEGASUS_NAMESPACE_END

#endif
