#ifndef Pegasus_Flavor_h
#define Pegasus_Flavor_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Common/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

/**
    A set of qualifier flavors (how a qualifier propagates and whether it can
    be overridden), kept as a bit set.
*/
class PEGASUS_COMMON_LINKAGE CIMFlavor {
public:
    /** The empty set, NONE. */
    CIMFlavor();
    CIMFlavor(const CIMFlavor& flavor);
    CIMFlavor& operator=(const CIMFlavor& flavor);

    void addFlavor(const CIMFlavor& flavor);
    void removeFlavor(const CIMFlavor& flavor);
    /** True when every flavor of the argument is in this set. */
    Boolean hasFlavor(const CIMFlavor& flavor) const;
    Boolean equal(const CIMFlavor& flavor) const;
    CIMFlavor operator+(const CIMFlavor& flavor) const;
    /** The flavor keywords present, upper case, separated by one blank. */
    String toString() const;

    static const CIMFlavor NONE;
    static const CIMFlavor OVERRIDABLE;
    static const CIMFlavor ENABLEOVERRIDE;
    static const CIMFlavor DISABLEOVERRIDE;
    static const CIMFlavor TOSUBCLASS;
    static const CIMFlavor RESTRICTED;
    static const CIMFlavor TOINSTANCE;
    static const CIMFlavor TRANSLATABLE;
    /** OVERRIDABLE and TOSUBCLASS. */
    static const CIMFlavor DEFAULTS;
    /** Same as TOSUBCLASS. */
    static const CIMFlavor TOSUBELEMENTS;

private:
    // constexpr, so the named sets are ready before any dynamic initializer
    // in another library copies them.
    constexpr CIMFlavor(const Uint32 flavor) : cimFlavor(flavor) {}
    Uint32 cimFlavor;
};

PEGASUS_NAMESPACE_END

#endif
