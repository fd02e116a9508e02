// Shared by the KSV_Common suites.
#ifndef KSV_TESTS_COMMONTESTSUPPORT_H
#define KSV_TESTS_COMMONTESTSUPPORT_H

#include <KSV_Common.h>

#include "ProviderTestSupport.h"

namespace ksv::test {

inline CIMObjectPath path(const char* objectName) {
    return CIMObjectPath(objectName);
}

// Each test gets a fresh harness over the demo array.
class HarnessTest : public ::testing::Test {
protected:
    ProviderHarness harness;
    CIMOMHandle cimom = harness.cimom();
};

} // namespace ksv::test

#endif
