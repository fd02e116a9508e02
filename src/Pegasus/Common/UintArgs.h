#ifndef Pegasus_UintArgs_h
#define Pegasus_UintArgs_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

/**
    An unsigned integer argument that may be NULL, as the pull operations' OperationTimeout and
    EnumerationCount's result are. Constructed NULL unless given a value.
*/
template <typename T>
class UintArg {
public:
    UintArg() = default;
    UintArg(T x) : _value(x), _null(false) {}

    /** The value; 0 when NULL. */
    const T& getValue() const { return _value; }
    void setValue(T x) {
        _value = x;
        _null = false;
    }
    Boolean isNull() const { return _null; }
    void setNullValue() {
        _value = 0;
        _null = true;
    }
    Boolean equal(const UintArg& x) const {
        return _null == x._null && (_null || _value == x._value);
    }

private:
    T _value = 0;
    Boolean _null = true;
};

using Uint32Arg = UintArg<Uint32>;
using Uint64Arg = UintArg<Uint64>;

PEGASUS_NAMESPACE_END

#endif
