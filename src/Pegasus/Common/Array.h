#ifndef Pegasus_Array_h
#define Pegasus_Array_h

#include <type_traits>
#include <utility>
#include <vector>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Char16.h>
#include <Pegasus/Common/String.h>

PEGASUS_NAMESPACE_BEGIN

PEGASUS_COMMON_LINKAGE void ThrowIndexOutOfBoundsException();

namespace ArrayStorage {

// std::vector<bool> packs bits and cannot hand out a Boolean*, so Booleans
// are kept in one-byte cells of the same layout.
struct BooleanCell {
    Boolean value;
};

template <class T>
using Slot = typename std::conditional<std::is_same<T, Boolean>::value, BooleanCell, T>::type;

} // namespace ArrayStorage

// A sequence of values. Copies are independent; every index is checked and a
// bad one raises IndexOutOfBoundsException.
template <class PEGASUS_ARRAY_T>
class Array {
public:
    Array() = default;
    Array(const Array<PEGASUS_ARRAY_T>& x) = default;
    Array(Array<PEGASUS_ARRAY_T>&& x) noexcept = default;
    Array(Uint32 size) : _slots(size, _slotOf(PEGASUS_ARRAY_T())) {}
    Array(Uint32 size, const PEGASUS_ARRAY_T& x) : _slots(size, _slotOf(x)) {}
    Array(const PEGASUS_ARRAY_T* items, Uint32 size) { append(items, size); }
    ~Array() = default;

    Array<PEGASUS_ARRAY_T>& operator=(const Array<PEGASUS_ARRAY_T>& x) = default;
    Array<PEGASUS_ARRAY_T>& operator=(Array<PEGASUS_ARRAY_T>&& x) noexcept = default;

    void clear() { _slots.clear(); }
    void reserveCapacity(Uint32 capacity) { _slots.reserve(capacity); }
    void grow(Uint32 size, const PEGASUS_ARRAY_T& x) {
        _slots.insert(_slots.end(), size, _slotOf(x));
    }
    void swap(Array<PEGASUS_ARRAY_T>& x) { _slots.swap(x._slots); }

    Uint32 size() const { return Uint32(_slots.size()); }
    Uint32 getCapacity() const { return Uint32(_slots.capacity()); }
    const PEGASUS_ARRAY_T* getData() const { return _items(); }

    PEGASUS_ARRAY_T& operator[](Uint32 index) {
        _checkIndex(index);
        return _items()[index];
    }
    const PEGASUS_ARRAY_T& operator[](Uint32 index) const {
        _checkIndex(index);
        return _items()[index];
    }

    // Arrays are mostly built by appending a few items: the first append makes room for
    // several, sparing the reallocations of growing one by one.
    void append(const PEGASUS_ARRAY_T& x) {
        _reserveFirst();
        _slots.push_back(_slotOf(x));
    }
    void append(PEGASUS_ARRAY_T&& x) {
        _reserveFirst();
        _slots.push_back(_slotOf(std::move(x)));
    }
    void append(const PEGASUS_ARRAY_T* x, Uint32 size) { insert(this->size(), x, size); }
    void appendArray(const Array<PEGASUS_ARRAY_T>& x) {
        _slots.insert(_slots.end(), x._slots.begin(), x._slots.end());
    }
    void prepend(const PEGASUS_ARRAY_T& x) { insert(0, x); }
    void prepend(const PEGASUS_ARRAY_T* x, Uint32 size) { insert(0, x, size); }

    void insert(Uint32 index, const PEGASUS_ARRAY_T& x) {
        _checkPosition(index);
        _slots.insert(_slots.begin() + index, _slotOf(x));
    }
    void insert(Uint32 index, const PEGASUS_ARRAY_T* x, Uint32 size) {
        _checkPosition(index);
        std::vector<Slot> added;
        added.reserve(size);
        for (Uint32 i = 0; i < size; i++)
            added.push_back(_slotOf(x[i]));
        _slots.insert(_slots.begin() + index, added.begin(), added.end());
    }

    void remove(Uint32 index) { remove(index, 1); }
    void remove(Uint32 index, Uint32 size) {
        if (size == 0)
            return;
        if (index >= this->size() || size > this->size() - index)
            ThrowIndexOutOfBoundsException();
        _slots.erase(_slots.begin() + index, _slots.begin() + index + size);
    }

private:
    static constexpr size_t kFirstCapacity = 8;

    using Slot = ArrayStorage::Slot<PEGASUS_ARRAY_T>;

    // Items are kept as they are, so that they are copied or moved straight into place; only a
    // Boolean is wrapped.
    template <class Item>
    static decltype(auto) _slotOf(Item&& x) {
        if constexpr (std::is_same<Slot, PEGASUS_ARRAY_T>::value)
            return std::forward<Item>(x);
        else
            return Slot{x};
    }

    void _reserveFirst() {
        if (_slots.capacity() == 0)
            _slots.reserve(kFirstCapacity);
    }

    PEGASUS_ARRAY_T* _items() const {
        return reinterpret_cast<PEGASUS_ARRAY_T*>(const_cast<Slot*>(_slots.data()));
    }
    void _checkIndex(Uint32 index) const {
        if (index >= size())
            ThrowIndexOutOfBoundsException();
    }
    void _checkPosition(Uint32 index) const {
        if (index > size())
            ThrowIndexOutOfBoundsException();
    }

    std::vector<Slot> _slots;
};

PEGASUS_NAMESPACE_END

#endif /* Pegasus_Array_h */
