#ifndef Pegasus_Value_h
#define Pegasus_Value_h

#include <memory>
#include <utility>

#include <Pegasus/Common/String.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

class CIMValueRep;
class CIMObject;
class CIMInstance;

/**
    A value of any CIM type, scalar or array, possibly null.

    A null value still has a type and an array flag. get() throws
    TypeMismatchException when the output's type differs from the value's
    type or array flag, and leaves the output untouched when the value is
    null. Embedded objects and instances are cloned on the way in and on the
    way out, so no caller can reach the copy a value holds. Copies of a value
    are independent values; they share storage until one of them is set.
*/
class PEGASUS_COMMON_LINKAGE CIMValue {
public:
    /** A null, scalar Boolean value. */
    CIMValue();
    /** A null value of the given type; arraySize is ignored for scalars. */
    CIMValue(CIMType type, Boolean isArray, Uint32 arraySize = 0);

    CIMValue(Boolean x);
    CIMValue(Uint8 x);
    CIMValue(Sint8 x);
    CIMValue(Uint16 x);
    CIMValue(Sint16 x);
    CIMValue(Uint32 x);
    CIMValue(Sint32 x);
    CIMValue(Uint64 x);
    CIMValue(Sint64 x);
    CIMValue(Real32 x);
    CIMValue(Real64 x);
    CIMValue(const Char16& x);
    CIMValue(const String& x);
    CIMValue(const CIMDateTime& x);
    CIMValue(const CIMObjectPath& x);
    /** @exception UninitializedObjectException if x is uninitialized. */
    CIMValue(const CIMObject& x);
    /** @exception UninitializedObjectException if x is uninitialized. */
    CIMValue(const CIMInstance& x);
    CIMValue(const Array<Boolean>& x);
    CIMValue(const Array<Uint8>& x);
    CIMValue(const Array<Sint8>& x);
    CIMValue(const Array<Uint16>& x);
    CIMValue(const Array<Sint16>& x);
    CIMValue(const Array<Uint32>& x);
    CIMValue(const Array<Sint32>& x);
    CIMValue(const Array<Uint64>& x);
    CIMValue(const Array<Sint64>& x);
    CIMValue(const Array<Real32>& x);
    CIMValue(const Array<Real64>& x);
    CIMValue(const Array<Char16>& x);
    CIMValue(const Array<String>& x);
    CIMValue(const Array<CIMDateTime>& x);
    CIMValue(const Array<CIMObjectPath>& x);
    /** @exception UninitializedObjectException if an element is uninitialized. */
    CIMValue(const Array<CIMObject>& x);
    /** @exception UninitializedObjectException if an element is uninitialized. */
    CIMValue(const Array<CIMInstance>& x);

    CIMValue(const CIMValue& x) { _copy(x); }
    /** Leaves x a null, scalar Boolean value. */
    CIMValue(CIMValue&& x) noexcept { _take(x); }
    ~CIMValue() { _release(); }
    CIMValue& operator=(const CIMValue& x) {
        if (this != &x) {
            _release();
            _copy(x);
        }
        return *this;
    }
    /** Leaves x a null, scalar Boolean value. */
    CIMValue& operator=(CIMValue&& x) noexcept {
        if (this != &x) {
            _release();
            _take(x);
        }
        return *this;
    }
    void assign(const CIMValue& x);

    /** Back to a null, scalar Boolean value. */
    void clear();

    // Inline: every property set and every value encoded asks these.
    /** True when both values have the same type and array flag. */
    Boolean typeCompatible(const CIMValue& x) const {
        return _type == x._type && _isArray == x._isArray;
    }
    Boolean isArray() const { return _isArray; }
    Boolean isNull() const { return _isNull; }
    /** Number of elements of an array value; 0 for a scalar. */
    Uint32 getArraySize() const;
    CIMType getType() const { return _type; }

    void setNullValue(CIMType type, Boolean isArray, Uint32 arraySize = 0);

    void set(Boolean x);
    void set(Uint8 x);
    void set(Sint8 x);
    void set(Uint16 x);
    void set(Sint16 x);
    void set(Uint32 x);
    void set(Sint32 x);
    void set(Uint64 x);
    void set(Sint64 x);
    void set(Real32 x);
    void set(Real64 x);
    void set(const Char16& x);
    void set(const String& x);
    void set(const CIMDateTime& x);
    void set(const CIMObjectPath& x);
    void set(const CIMObject& x);
    void set(const CIMInstance& x);
    void set(const Array<Boolean>& x);
    void set(const Array<Uint8>& x);
    void set(const Array<Sint8>& x);
    void set(const Array<Uint16>& x);
    void set(const Array<Sint16>& x);
    void set(const Array<Uint32>& x);
    void set(const Array<Sint32>& x);
    void set(const Array<Uint64>& x);
    void set(const Array<Sint64>& x);
    void set(const Array<Real32>& x);
    void set(const Array<Real64>& x);
    void set(const Array<Char16>& x);
    void set(const Array<String>& x);
    void set(const Array<CIMDateTime>& x);
    void set(const Array<CIMObjectPath>& x);
    void set(const Array<CIMObject>& x);
    void set(const Array<CIMInstance>& x);

    void get(Boolean& x) const;
    void get(Uint8& x) const;
    void get(Sint8& x) const;
    void get(Uint16& x) const;
    void get(Sint16& x) const;
    void get(Uint32& x) const;
    void get(Sint32& x) const;
    void get(Uint64& x) const;
    void get(Sint64& x) const;
    void get(Real32& x) const;
    void get(Real64& x) const;
    void get(Char16& x) const;
    void get(String& x) const;
    void get(CIMDateTime& x) const;
    void get(CIMObjectPath& x) const;
    void get(CIMObject& x) const;
    void get(CIMInstance& x) const;
    void get(Array<Boolean>& x) const;
    void get(Array<Uint8>& x) const;
    void get(Array<Sint8>& x) const;
    void get(Array<Uint16>& x) const;
    void get(Array<Sint16>& x) const;
    void get(Array<Uint32>& x) const;
    void get(Array<Sint32>& x) const;
    void get(Array<Uint64>& x) const;
    void get(Array<Sint64>& x) const;
    void get(Array<Real32>& x) const;
    void get(Array<Real64>& x) const;
    void get(Array<Char16>& x) const;
    void get(Array<String>& x) const;
    void get(Array<CIMDateTime>& x) const;
    void get(Array<CIMObjectPath>& x) const;
    void get(Array<CIMObject>& x) const;
    void get(Array<CIMInstance>& x) const;

    /** Same type, array flag, nullness and contents. */
    Boolean equal(const CIMValue& x) const;

    /**
        Diagnostic text: empty for null; TRUE/FALSE for booleans; reals in
        exponent form with 16 fraction digits; array elements each followed
        by one blank; references as their path text; embedded objects as
        their CIM-XML element.
    */
    String toString() const;

private:
    template <class T>
    void _assign(const T& x);
    template <class T>
    void _read(T& x) const;
    void _setNull(CIMType type, Boolean isArray, Uint32 arraySize);
    // Nulls and the scalars of the types before CIMTYPE_STRING hold bits alone, the others a text
    // or a rep (heldInline() in the source reads the same order). Values are made, copied, moved
    // and ended by the hundred per instance, mostly holding bits: those need no call.
    bool _holdsShared() const noexcept { return !_isNull && (_isArray || _type >= CIMTYPE_STRING); }
    // Into a value that holds nothing to let go.
    void _copy(const CIMValue& x) noexcept {
        if (x._holdsShared())
            _shareHeld(x);
        else
            _scalar = x._scalar;
        _type = x._type;
        _isArray = x._isArray;
        _isNull = x._isNull;
    }
    // Into a value that holds nothing to let go; x is left a null, scalar Boolean value.
    void _take(CIMValue& x) noexcept {
        if (x._holdsShared())
            _takeHeld(x);
        else
            _scalar = x._scalar;
        _type = std::exchange(x._type, CIMTYPE_BOOLEAN);
        _isArray = std::exchange(x._isArray, false);
        _isNull = std::exchange(x._isNull, true);
        x._scalar = 0;
    }
    // Lets go of what the value holds; the caller says what it holds next.
    void _release() noexcept {
        if (_holdsShared())
            _releaseShared();
    }
    void _shareHeld(const CIMValue& x) noexcept;
    void _takeHeld(CIMValue& x) noexcept;
    void _releaseShared() noexcept;

    // Nulls and the common scalars (integers, reals, booleans, Char16, strings) are held
    // in the value itself, sparing an allocation each; the others in a rep that copies share.
    // The type, array flag and nullness say which of these the value holds.
    union {
        // A scalar's bits, zero-extended, or a null array's size.
        Uint64 _scalar = 0;
        String _text;
        CIMValueRep* _rep;
    };
    CIMType _type = CIMTYPE_BOOLEAN;
    Boolean _isArray = false;
    Boolean _isNull = true;
};

PEGASUS_COMMON_LINKAGE Boolean operator==(const CIMValue& x, const CIMValue& y);
PEGASUS_COMMON_LINKAGE Boolean operator!=(const CIMValue& x, const CIMValue& y);

PEGASUS_NAMESPACE_END

#endif
