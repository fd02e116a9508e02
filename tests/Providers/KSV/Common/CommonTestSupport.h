// Shared by the KSV_Common suites.
#ifndef KSV_TESTS_COMMONTESTSUPPORT_H
#define KSV_TESTS_COMMONTESTSUPPORT_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/String.h>

#include <KSV_Common.h>

#include "ProviderHarness.h"

#include <gtest/gtest.h>

#include <string>

namespace ksv::test {

inline std::string text(const Pegasus::String& value) {
    return std::string(value.getCString());
}

inline Pegasus::CIMObjectPath path(const char* objectName) {
    return Pegasus::CIMObjectPath(objectName);
}

// Each test gets a fresh harness over the demo array.
class HarnessTest : public ::testing::Test {
protected:
    ProviderHarness harness;
    Pegasus::CIMOMHandle cimom = harness.cimom();
};

} // namespace ksv::test

#endif
