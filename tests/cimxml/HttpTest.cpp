#include <cimxml/Errors.h>
#include <cimxml/Http.h>

#include "TestSupport.h"

#include <gtest/gtest.h>

using namespace Pegasus;
using namespace ksv::cimxml;
using namespace ksv::cimxml::http;
using ksv::cimxml::testing::utf8;

namespace {

OperationRequest locateOnDisk() {
    OperationRequest request =
        OperationRequest::make(Operation::InvokeMethod, CIMNamespaceName("root/ksv"));
    request.methodName = CIMName("Locate");
    request.objectName = CIMObjectPath("KSV_DiskDrive.DeviceID=\"50 00\",Slot=3");
    return request;
}

MessageFault faultOf(const std::function<void()>& check) {
    try {
        check();
    } catch (const ProtocolError& e) {
        return e.fault();
    }
    ADD_FAILURE() << "nothing thrown";
    return MessageFault::NotValid;
}

TEST(UriEscaping, KeepsPathCharactersAndRoundTripsEverythingElse) {
    EXPECT_EQ("root/ksv:KSV_A.Id=%22a%20b%22,N=1", uriEscape("root/ksv:KSV_A.Id=\"a b\",N=1"));
    EXPECT_EQ("%C3%A9%25%0A", uriEscape("\xC3\xA9%\n"));
    std::string everyByte;
    for (int c = 0; c < 256; c++) {
        everyByte += char(c);
    }
    EXPECT_EQ(everyByte, uriUnescape(uriEscape(everyByte)));
    EXPECT_EQ("a b", uriUnescape("a%20b"));
    EXPECT_FALSE(uriUnescape("%2"));
    EXPECT_FALSE(uriUnescape("%zz"));
    EXPECT_FALSE(uriUnescape("abc%"));
}

// The client transport tests check the headers a request carries.
TEST(RequestHeaders, ServerChecksRefuseWhatDoesNotMatchTheBody) {
    EXPECT_NO_THROW(checkCimOperationHeader(std::string_view(" methodcall")));
    EXPECT_EQ(MessageFault::UnsupportedOperation,
              faultOf([] { checkCimOperationHeader(std::nullopt); }));
    EXPECT_EQ(MessageFault::UnsupportedOperation,
              faultOf([] { checkCimOperationHeader(std::string_view("MethodResponse")); }));

    const OperationRequest extrinsic = locateOnDisk();
    EXPECT_NO_THROW(checkHeadersMatch(extrinsic, std::string_view("LOCATE"),
                                      std::string_view(cimObjectHeaderValue(extrinsic))));
    // Key order, case of names and an extra host do not matter; values do.
    EXPECT_NO_THROW(checkHeadersMatch(
        extrinsic, std::string_view("Locate"),
        std::string_view("//h/ROOT/ksv:ksv_diskdrive.Slot=3,DeviceID=%2250%2000%22")));
    EXPECT_EQ(MessageFault::HeaderMismatch, faultOf([&] {
                  checkHeadersMatch(extrinsic, std::string_view("Locate"),
                                    std::string_view("root/ksv:KSV_DiskDrive.DeviceID=%22X%22"));
              }));
    EXPECT_EQ(MessageFault::HeaderMismatch, faultOf([&] {
                  checkHeadersMatch(extrinsic, std::string_view("Reset"),
                                    std::string_view(cimObjectHeaderValue(extrinsic)));
              }));
    EXPECT_EQ(MessageFault::HeaderMismatch,
              faultOf([&] { checkHeadersMatch(extrinsic, std::nullopt, std::nullopt); }));

    const OperationRequest intrinsic =
        OperationRequest::make(Operation::GetClass, CIMNamespaceName("root/ksv"));
    EXPECT_NO_THROW(
        checkHeadersMatch(intrinsic, std::string_view("GetClass"), std::string_view("root%2FKSV")));
    EXPECT_EQ(MessageFault::HeaderMismatch, faultOf([&] {
                  checkHeadersMatch(intrinsic, std::string_view("GetClass"),
                                    std::string_view("root/cimv2"));
              }));
    EXPECT_EQ(MessageFault::HeaderMismatch, faultOf([&] {
                  checkHeadersMatch(intrinsic, std::string_view("GetClass"),
                                    std::string_view("root/%zz"));
              }));
}

} // namespace
