#include "CIMFlavor.h"

PEGASUS_NAMESPACE_BEGIN

namespace {

struct FlavorKeyword {
    const CIMFlavor* flavor;
    const char* keyword;
};

} // namespace

const CIMFlavor CIMFlavor::NONE = 0;
const CIMFlavor CIMFlavor::OVERRIDABLE = 1;
const CIMFlavor CIMFlavor::ENABLEOVERRIDE = 1;
const CIMFlavor CIMFlavor::TOSUBCLASS = 2;
const CIMFlavor CIMFlavor::TOINSTANCE = 4;
const CIMFlavor CIMFlavor::TRANSLATABLE = 8;
const CIMFlavor CIMFlavor::DISABLEOVERRIDE = 16;
const CIMFlavor CIMFlavor::RESTRICTED = 32;
const CIMFlavor CIMFlavor::DEFAULTS = 1 | 2;
const CIMFlavor CIMFlavor::TOSUBELEMENTS = 2;

CIMFlavor::CIMFlavor() : cimFlavor(0) {}

CIMFlavor::CIMFlavor(const CIMFlavor& flavor) = default;

CIMFlavor& CIMFlavor::operator=(const CIMFlavor& flavor) = default;

void CIMFlavor::addFlavor(const CIMFlavor& flavor) {
    cimFlavor |= flavor.cimFlavor;
}

void CIMFlavor::removeFlavor(const CIMFlavor& flavor) {
    cimFlavor &= ~flavor.cimFlavor;
}

Boolean CIMFlavor::hasFlavor(const CIMFlavor& flavor) const {
    return (cimFlavor & flavor.cimFlavor) == flavor.cimFlavor;
}

Boolean CIMFlavor::equal(const CIMFlavor& flavor) const {
    return cimFlavor == flavor.cimFlavor;
}

CIMFlavor CIMFlavor::operator+(const CIMFlavor& flavor) const {
    return CIMFlavor(cimFlavor | flavor.cimFlavor);
}

String CIMFlavor::toString() const {
    const FlavorKeyword keywords[] = {
        {&OVERRIDABLE, "OVERRIDABLE"},         {&TOSUBCLASS, "TOSUBCLASS"},
        {&TOINSTANCE, "TOINSTANCE"},           {&TRANSLATABLE, "TRANSLATABLE"},
        {&DISABLEOVERRIDE, "DISABLEOVERRIDE"}, {&RESTRICTED, "RESTRICTED"},
    };
    String text;
    for (const FlavorKeyword& entry : keywords) {
        if (!hasFlavor(*entry.flavor))
            continue;
        if (text.size() != 0)
            text.append(Char16(' '));
        text.append(String(entry.keyword));
    }
    return text;
}

PEGASUS_NAMESPACE_END
