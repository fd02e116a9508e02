#ifndef Pegasus_Scope_h
#define Pegasus_Scope_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Common/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

/**
    The set of schema elements a qualifier declaration may be applied to,
    kept as a bit set.
*/
class PEGASUS_COMMON_LINKAGE CIMScope {
public:
    /** The empty set, NONE. */
    CIMScope();
    CIMScope(const CIMScope& scope);
    CIMScope& operator=(const CIMScope& scope);

    /** True when every scope of the argument is in this set. */
    Boolean hasScope(const CIMScope& scope) const;
    void addScope(const CIMScope& scope);
    Boolean equal(const CIMScope& scope) const;
    CIMScope operator+(const CIMScope& scope) const;
    /** The scope keywords present, upper case, separated by one blank. */
    String toString() const;

    static const CIMScope NONE;
    static const CIMScope CLASS;
    static const CIMScope ASSOCIATION;
    static const CIMScope INDICATION;
    static const CIMScope PROPERTY;
    static const CIMScope REFERENCE;
    static const CIMScope METHOD;
    static const CIMScope PARAMETER;
    /** Every scope above. */
    static const CIMScope ANY;

private:
    // constexpr, so the named sets are ready before any dynamic initializer
    // in another library copies them.
    constexpr CIMScope(const Uint32 scope) : cimScope(scope) {}
    Uint32 cimScope;
};

PEGASUS_NAMESPACE_END

#endif
