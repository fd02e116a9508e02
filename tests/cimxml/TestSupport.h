#ifndef KSV_TESTS_CIMXML_TESTSUPPORT_H
#define KSV_TESTS_CIMXML_TESTSUPPORT_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/Exception.h>

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace ksv::cimxml::testing {

inline std::string utf8(const Pegasus::String& text) {
    return std::string(static_cast<const char*>(text.getCString()));
}

/// Runs `action` and checks that it throws a CIMException (or subclass E) with `code` whose
/// message contains `fragment` and, quoting what it refuses only in part, stays short.
template <class E = Pegasus::CIMException>
::testing::AssertionResult throwsCim(const std::function<void()>& action,
                                     Pegasus::CIMStatusCode code, const std::string& fragment) {
    try {
        action();
    } catch (const E& e) {
        const std::string message = utf8(e.getMessage());
        if (e.getCode() != code) {
            return ::testing::AssertionFailure()
                   << "code " << e.getCode() << " instead of " << code << ": " << message;
        }
        if (message.find(fragment) == std::string::npos || message.size() > 1000) {
            return ::testing::AssertionFailure()
                   << "message \"" << message << "\" lacks \"" << fragment << "\" or is too long";
        }
        return ::testing::AssertionSuccess();
    } catch (const Pegasus::Exception& e) {
        return ::testing::AssertionFailure() << "other exception: " << utf8(e.getMessage());
    }
    return ::testing::AssertionFailure() << "nothing thrown";
}

/// Same class name, qualifiers and properties (each identical(), in order); paths are not
/// compared.
::testing::AssertionResult sameContent(const Pegasus::CIMConstObject& expected,
                                       const Pegasus::CIMConstObject& actual);

/// A disk-like instance with a path, the kind the providers deliver.
Pegasus::CIMInstance sampleDisk(int index);

/// A class with qualifiers, every property form and a method with every parameter form.
Pegasus::CIMClass sampleClass();

} // namespace ksv::cimxml::testing

#endif
