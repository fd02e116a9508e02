#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/Exception.h>

#include <gtest/gtest.h>

PEGASUS_USING_PEGASUS;

namespace {

template <class T>
std::vector<T> items(const Array<T>& a) {
    return std::vector<T>(a.getData(), a.getData() + a.size());
}

TEST(Array, EditsKeepOrderAndIndexesOutsideAreRefused) {
    Array<Uint32> a;
    a.append(2);
    a.prepend(0);
    a.insert(1, 1);
    const Uint32 more[] = {3, 4, 5};
    a.append(more, 3);
    a.remove(4);
    a.remove(0, 2);
    EXPECT_EQ((std::vector<Uint32>{2, 3, 5}), items(a));
    Array<Uint32> b(2, 9);
    b.appendArray(a);
    b.grow(2, 7);
    EXPECT_EQ((std::vector<Uint32>{9, 9, 2, 3, 5, 7, 7}), items(b));
    b.swap(a);
    EXPECT_EQ(3u, b.size());

    Array<String> s(2);
    const Array<String>& view = s;
    EXPECT_THROW(s[2], IndexOutOfBoundsException);
    EXPECT_THROW(view[5], IndexOutOfBoundsException);
    EXPECT_THROW(s.insert(3, String("x")), IndexOutOfBoundsException);
    EXPECT_THROW(s.remove(2), IndexOutOfBoundsException);
    EXPECT_THROW(s.remove(1, 2), IndexOutOfBoundsException);
    EXPECT_NO_THROW(s.remove(1, 0));
    s.insert(2, String("end"));
    EXPECT_EQ(3u, s.size());
}

TEST(Array, CopiesAreIndependentAndBooleansContiguous) {
    Array<CIMName> a(1, CIMName("A"));
    Array<CIMName> b(a);
    b[0] = CIMName("B");
    b.append(CIMName("C"));
    EXPECT_EQ(1u, a.size());
    EXPECT_EQ(CIMName("A"), a[0]);
    a = b;
    b.clear();
    EXPECT_EQ(2u, a.size());

    const Boolean flags[] = {true, false, true};
    Array<Boolean> c(flags, 3);
    c[1] = true;
    c.reserveCapacity(100);
    EXPECT_GE(c.getCapacity(), 100u);
    const Boolean* data = c.getData();
    EXPECT_TRUE(data[0] && data[1] && data[2]);
}

} // namespace
