#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMValue.h>

#include "CommonTestSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <utility>

PEGASUS_USING_PEGASUS;

namespace {

// One sample per CIM type: the C++ type, the CIM type it maps to, and two
// distinct values of it.
template <class T>
struct Sample;

#define KSV_SAMPLE(CPP, CIM, FIRST, SECOND)                                                        \
    template <>                                                                                    \
    struct Sample<CPP> {                                                                           \
        static constexpr CIMType type = CIM;                                                       \
        static CPP first() { return FIRST; }                                                       \
        static CPP second() { return SECOND; }                                                     \
    }

KSV_SAMPLE(Boolean, CIMTYPE_BOOLEAN, true, false);
KSV_SAMPLE(Uint8, CIMTYPE_UINT8, 200, 1);
KSV_SAMPLE(Sint8, CIMTYPE_SINT8, -100, 5);
KSV_SAMPLE(Uint16, CIMTYPE_UINT16, 65535, 2);
KSV_SAMPLE(Sint16, CIMTYPE_SINT16, -30000, 3);
KSV_SAMPLE(Uint32, CIMTYPE_UINT32, 4000000000u, 4);
KSV_SAMPLE(Sint32, CIMTYPE_SINT32, -2000000000, 5);
KSV_SAMPLE(Uint64, CIMTYPE_UINT64, 18446744073709551615ULL, 6);
KSV_SAMPLE(Sint64, CIMTYPE_SINT64, -9000000000000000000LL, 7);
KSV_SAMPLE(Real32, CIMTYPE_REAL32, 1.5f, -2.25f);
KSV_SAMPLE(Real64, CIMTYPE_REAL64, 0.1, 1e300);
KSV_SAMPLE(Char16, CIMTYPE_CHAR16, Char16(0x263A), Char16('x'));
KSV_SAMPLE(String, CIMTYPE_STRING, String("disk 0"), String(""));
KSV_SAMPLE(CIMDateTime, CIMTYPE_DATETIME, CIMDateTime(String("20261121103000.000000+000")),
           CIMDateTime(String("19991231235959.999999-300")));
KSV_SAMPLE(CIMObjectPath, CIMTYPE_REFERENCE,
           CIMObjectPath(String("//h/root/ksv:KSV_DiskDrive.DeviceID=\"X\"")),
           CIMObjectPath(String("KSV_DiskDrive.DeviceID=\"Y\"")));
KSV_SAMPLE(CIMInstance, CIMTYPE_INSTANCE, diskWithDeviceId("X"), diskWithDeviceId("Y"));
KSV_SAMPLE(CIMObject, CIMTYPE_OBJECT, CIMObject(diskWithDeviceId("X")), CIMObject(CIMClass("C")));

#undef KSV_SAMPLE

// Compared as values, so that instances and objects compare member by member; the equality
// itself is checked below on two distinct samples.
template <class T>
bool same(const T& x, const T& y) {
    return CIMValue(x) == CIMValue(y);
}

template <class T>
class ScalarValue : public ::testing::Test {};

using AllTypes =
    ::testing::Types<Boolean, Uint8, Sint8, Uint16, Sint16, Uint32, Sint32, Uint64, Sint64, Real32,
                     Real64, Char16, String, CIMDateTime, CIMObjectPath, CIMInstance, CIMObject>;
TYPED_TEST_SUITE(ScalarValue, AllTypes);

// Scalar, array and null of each type: type, shape, contents, equality, and what get refuses.
TYPED_TEST(ScalarValue, KeepsTypeShapeAndContents) {
    using S = Sample<TypeParam>;
    CIMValue value(S::first());
    EXPECT_EQ(value.getType(), S::type);
    EXPECT_FALSE(value.isArray() || value.isNull());
    TypeParam out = S::second();
    value.get(out);
    EXPECT_TRUE(same(out, S::first()));
    value.set(S::second());
    value.get(out);
    EXPECT_TRUE(same(out, S::second()));
    EXPECT_TRUE(CIMValue(S::first()) == CIMValue(S::first()));
    EXPECT_TRUE(CIMValue(S::first()) != CIMValue(S::second()));

    Array<TypeParam> elements(1, S::first());
    elements.append(S::second());
    const CIMValue array(elements);
    EXPECT_EQ(array.getType(), S::type);
    EXPECT_TRUE(array.isArray());
    EXPECT_EQ(array.getArraySize(), 2u);
    Array<TypeParam> outs;
    array.get(outs);
    EXPECT_TRUE(same(outs, elements));

    // A null leaves the output untouched.
    const CIMValue null(S::type, false);
    EXPECT_TRUE(null.isNull());
    EXPECT_EQ(null.getType(), S::type);
    null.get(out);
    EXPECT_TRUE(same(out, S::second()));
    EXPECT_EQ(null.toString(), String());
    EXPECT_FALSE(CIMValue(S::first()).equal(null));
    EXPECT_TRUE(CIMValue(S::type, false).equal(null));

    EXPECT_THROW(CIMValue(S::first()).get(outs), TypeMismatchException);
    EXPECT_THROW(array.get(out), TypeMismatchException);
    // Every type has a neighbour of another type to be confused with.
    CIMValue other = S::type == CIMTYPE_STRING ? CIMValue(Uint8(1)) : CIMValue(String("1"));
    EXPECT_THROW(other.get(out), TypeMismatchException);
    EXPECT_TRUE(same(out, S::second()));
}

TEST(CIMValueNulls, DefaultAndClearedValuesAreNullScalarBooleans) {
    CIMValue value(Uint32(9));
    value.setNullValue(CIMTYPE_STRING, true, 3);
    EXPECT_TRUE(value.isNull() && value.isArray());
    EXPECT_EQ(value.getType(), CIMTYPE_STRING);
    EXPECT_EQ(value.getArraySize(), 3u);
    value.clear();
    for (const CIMValue& null : {value, CIMValue()}) {
        EXPECT_TRUE(null.isNull());
        EXPECT_FALSE(null.isArray());
        EXPECT_EQ(null.getType(), CIMTYPE_BOOLEAN);
    }
    EXPECT_EQ(CIMValue(CIMTYPE_UINT16, false, 4).getArraySize(), 0u);
    EXPECT_THROW(CIMValue(CIMType(42), false), TypeMismatchException);
    EXPECT_THROW(value.setNullValue(CIMType(-1), false), TypeMismatchException);
}

TEST(CIMValueEquality, TypeWidthLengthAndEveryElementCount) {
    CIMValue empty{Array<Uint16>()};
    EXPECT_FALSE(empty.isNull());
    EXPECT_FALSE(empty.equal(CIMValue(CIMTYPE_UINT16, true)));
    EXPECT_TRUE(empty.typeCompatible(CIMValue(CIMTYPE_UINT16, true)));
    EXPECT_FALSE(CIMValue(Uint16(7)) == CIMValue(Uint32(7)));
    EXPECT_FALSE(CIMValue(Uint8(7)) == CIMValue(Sint8(7)));
    EXPECT_FALSE(CIMValue(Uint16(7)).typeCompatible(CIMValue(Uint32(7))));
    CIMValue nan(std::numeric_limits<Real64>::quiet_NaN());
    EXPECT_FALSE(nan == nan);

    Array<Uint16> a(2, 1);
    Array<Uint16> b(a);
    b[1] = 3;
    EXPECT_TRUE(CIMValue(a) == CIMValue(Array<Uint16>(a)));
    EXPECT_FALSE(CIMValue(a) == CIMValue(b));
    EXPECT_FALSE(CIMValue(a) == CIMValue(Array<Uint16>(1, 1)));
    // Copies are independent.
    const CIMValue original{a};
    CIMValue copy(original);
    copy.set(Uint16(1));
    EXPECT_EQ(copy.getType(), CIMTYPE_UINT16);
    EXPECT_EQ(original, CIMValue(a));
}

// Each way a value holds what it has (bits, text, a shared payload, a null array's size) copied,
// assigned and moved over each other way: the target reads as the source, and a value moved from
// is a null Boolean.
TEST(CIMValueHolding, CopiesAndMovesCrossEveryWayOfHolding) {
    const CIMValue kinds[] = {CIMValue(Uint32(7)), CIMValue(String("disk 0")),
                              CIMValue(Array<Uint16>(2, Uint16(3))),
                              CIMValue(CIMTYPE_STRING, true, 4), CIMValue(Real64(0.5))};
    for (const CIMValue& source : kinds) {
        for (const CIMValue& target : kinds) {
            CIMValue assigned = target;
            assigned = source;
            CIMValue moving = source;
            CIMValue moved = target;
            moved = std::move(moving);
            for (const CIMValue& result : {assigned, moved, CIMValue(std::move(assigned))}) {
                EXPECT_EQ(result, source);
                EXPECT_EQ(result.getArraySize(), source.getArraySize());
            }
            EXPECT_TRUE(moving.isNull() && !moving.isArray());
            EXPECT_EQ(moving.getType(), CIMTYPE_BOOLEAN);
        }
        CIMValue self = source;
        const CIMValue& alias = self;
        self = alias;
        EXPECT_EQ(self.toString(), source.toString());
    }
}

TEST(CIMValueText, EmbeddedInstancePrintsItsXmlElement) {
    // Blanks a reader would collapse are written as references.
    const std::string xml = utf8(CIMValue(diskWithDeviceId(" X&Y  <Z>")).toString());
    EXPECT_EQ(xml, "<INSTANCE CLASSNAME=\"KSV_DiskDrive\" >\n"
                   "<PROPERTY NAME=\"DeviceID\"  TYPE=\"string\">\n"
                   "<VALUE>&#32;X&amp;Y &#32;&lt;Z&gt;</VALUE>\n"
                   "</PROPERTY>\n"
                   "</INSTANCE>\n");
}

TEST(CIMValueEmbedded, SetAndGetCloneSoNoCallerReachesTheStoredInstance) {
    CIMInstance disk = diskWithDeviceId("X");
    CIMValue value(disk);
    Array<CIMInstance> disks(1, disk);
    CIMValue array(disks);
    disk.getProperty(0).setValue(CIMValue(String("changed after set")));
    CIMInstance out;
    value.get(out);
    EXPECT_EQ(deviceIdOf(out), "X");
    out.getProperty(0).setValue(CIMValue(String("changed after get")));
    value.get(out);
    EXPECT_EQ(deviceIdOf(out), "X");
    array.get(disks);
    EXPECT_EQ(deviceIdOf(disks[0]), "X");
}

} // namespace
