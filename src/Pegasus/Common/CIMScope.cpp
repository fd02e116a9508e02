#include "CIMScope.h"

PEGASUS_NAMESPACE_BEGIN

namespace {

struct ScopeKeyword {
    const CIMScope* scope;
    const char* keyword;
};

} // namespace

const CIMScope CIMScope::NONE = 0;
const CIMScope CIMScope::CLASS = 1;
const CIMScope CIMScope::ASSOCIATION = 2;
const CIMScope CIMScope::INDICATION = 4;
const CIMScope CIMScope::PROPERTY = 8;
const CIMScope CIMScope::REFERENCE = 16;
const CIMScope CIMScope::METHOD = 32;
const CIMScope CIMScope::PARAMETER = 64;
const CIMScope CIMScope::ANY = 127;

CIMScope::CIMScope() : cimScope(0) {}

CIMScope::CIMScope(const CIMScope& scope) = default;

CIMScope& CIMScope::operator=(const CIMScope& scope) = default;

Boolean CIMScope::hasScope(const CIMScope& scope) const {
    return (cimScope & scope.cimScope) == scope.cimScope;
}

void CIMScope::addScope(const CIMScope& scope) {
    cimScope |= scope.cimScope;
}

Boolean CIMScope::equal(const CIMScope& scope) const {
    return cimScope == scope.cimScope;
}

CIMScope CIMScope::operator+(const CIMScope& scope) const {
    return CIMScope(cimScope | scope.cimScope);
}

String CIMScope::toString() const {
    const ScopeKeyword keywords[] = {
        {&CLASS, "CLASS"},         {&ASSOCIATION, "ASSOCIATION"}, {&INDICATION, "INDICATION"},
        {&PROPERTY, "PROPERTY"},   {&REFERENCE, "REFERENCE"},     {&METHOD, "METHOD"},
        {&PARAMETER, "PARAMETER"},
    };
    String text;
    for (const ScopeKeyword& entry : keywords) {
        if (!hasScope(*entry.scope))
            continue;
        if (text.size() != 0)
            text.append(Char16(' '));
        text.append(String(entry.keyword));
    }
    return text;
}

PEGASUS_NAMESPACE_END
