#include <Pegasus/Provider/ProviderException.h>

#include <gtest/gtest.h>

#include <functional>

PEGASUS_USING_PEGASUS;

namespace {

struct ExceptionCase {
    const char* className;
    std::function<void(const String&)> raise;
    CIMStatusCode code;
};

void PrintTo(const ExceptionCase& c, std::ostream* os) {
    *os << c.className;
}

class ProviderException : public ::testing::TestWithParam<ExceptionCase> {};

TEST_P(ProviderException, CarriesItsStatusCodeAndTheMessage) {
    const ExceptionCase& c = GetParam();
    try {
        c.raise("KSV_DiskDriveProvider does not support createInstance.");
        FAIL() << "nothing thrown";
    } catch (const CIMOperationFailedException& e) {
        EXPECT_EQ(e.getCode(), c.code);
        EXPECT_EQ(e.getMessage(), "KSV_DiskDriveProvider does not support createInstance.");
    }
}

template <class E>
std::function<void(const String&)> raiser() {
    return [](const String& message) { throw E(message); };
}

INSTANTIATE_TEST_SUITE_P(
    AllKinds, ProviderException,
    ::testing::Values(
        ExceptionCase{"CIMOperationFailedException", raiser<CIMOperationFailedException>(),
                      CIM_ERR_FAILED},
        ExceptionCase{"CIMAccessDeniedException", raiser<CIMAccessDeniedException>(),
                      CIM_ERR_ACCESS_DENIED},
        ExceptionCase{"CIMInvalidParameterException", raiser<CIMInvalidParameterException>(),
                      CIM_ERR_INVALID_PARAMETER},
        ExceptionCase{"CIMObjectNotFoundException", raiser<CIMObjectNotFoundException>(),
                      CIM_ERR_NOT_FOUND},
        ExceptionCase{"CIMNotSupportedException", raiser<CIMNotSupportedException>(),
                      CIM_ERR_NOT_SUPPORTED},
        ExceptionCase{"CIMObjectAlreadyExistsException", raiser<CIMObjectAlreadyExistsException>(),
                      CIM_ERR_ALREADY_EXISTS},
        ExceptionCase{"CIMPropertyNotFoundException", raiser<CIMPropertyNotFoundException>(),
                      CIM_ERR_NO_SUCH_PROPERTY},
        ExceptionCase{"CIMMethodNotFoundException", raiser<CIMMethodNotFoundException>(),
                      CIM_ERR_METHOD_NOT_FOUND}),
    [](const ::testing::TestParamInfo<ExceptionCase>& info) {
        return std::string(info.param.className);
    });

} // namespace
