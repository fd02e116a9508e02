// The MessageLoaderParms constructors of the exceptions are internal ones.
#define PEGASUS_INTERNALONLY
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/MessageLoader.h>
#include <Pegasus/Common/InternalException.h>
#include <Pegasus/Common/CIMInstance.h>

#include "CommonTestSupport.h"

#include <string>

#include <gtest/gtest.h>

PEGASUS_USING_PEGASUS;

namespace {

// The kinds whose texts no other case shows.
TEST(ExceptionMessages, EachKindWordsItsMessage) {
    EXPECT_EQ("index out of bounds", utf8(IndexOutOfBoundsException().getMessage()));
    EXPECT_EQ("uninitialized object", utf8(UninitializedObjectException().getMessage()));
    EXPECT_EQ("type mismatch: why", utf8(TypeMismatchException("why").getMessage()));
    EXPECT_EQ("Bind failed: port", utf8(BindFailedException("port").getMessage()));
    EXPECT_EQ("null pointer", utf8(NullPointer().getMessage()));
    EXPECT_EQ("qualifier invalid in this scope: Key scope=method",
              utf8(BadQualifierScope("Key", "method").getMessage()));
    EXPECT_EQ("CIMType of qualifier different than its declaration: Q(\"C\")",
              utf8(BadQualifierType("Q", "C").getMessage()));
    EXPECT_EQ("f.cpp(12): boom", utf8(AssertionFailureException("f.cpp", 12, "boom").getMessage()));
    // Arguments are taken literally, '$' and '\' included.
    EXPECT_EQ("already exists: $0 \\x", utf8(AlreadyExistsException("$0 \\x").getMessage()));
}

TEST(ExceptionMessages, MessageParmsFillNumberedArguments) {
    MessageLoaderParms parms("Some.Id", "$1 of $0 at $2, \\$3 is literal; $9 is empty",
                             String("disk"), Uint32(7), Sint64(-3));
    EXPECT_EQ("7 of disk at -3, $3 is literal;  is empty", utf8(MessageLoader::getMessage(parms)));
    MessageLoaderParms flags("Some.Id", "$0/$1", Boolean(true), Real64(1.5));
    EXPECT_EQ("true/1.500000", utf8(MessageLoader::getMessage(flags)));
    MessageLoaderParms reason("Id", "$0, reason:\"R\"", "X");
    EXPECT_EQ("malformed object name: X, reason:\"R\"",
              utf8(MalformedObjectNameException(reason).getMessage()));
}

TEST(CIMExceptionTracing, MacroRecordsFileAndLine) {
    // clang-format off
    const Uint32 line = __LINE__; TraceableCIMException e = PEGASUS_CIM_EXCEPTION(CIM_ERR_ACCESS_DENIED, "Insufficient privilege");
    // clang-format on
    EXPECT_EQ(CIM_ERR_ACCESS_DENIED, e.getCode());
    EXPECT_EQ("Insufficient privilege", utf8(e.getMessage()));
    EXPECT_EQ(__FILE__, utf8(e.getFile()));
    EXPECT_EQ(line, e.getLine());
    EXPECT_EQ("CIM_ERR_ACCESS_DENIED: Insufficient privilege", utf8(e.getDescription()));
    EXPECT_EQ(std::string(__FILE__) + "(" + std::to_string(line) +
                  "): CIM_ERR_ACCESS_DENIED: Insufficient privilege",
              utf8(e.getTraceDescription()));
    EXPECT_EQ("CIM_ERR_FAILED", utf8(PEGASUS_CIM_EXCEPTION(CIM_ERR_FAILED, "").getDescription()));
}

TEST(CIMExceptionTracing, ThrownAsCIMExceptionAndConvertedBack) {
    try {
        throw PEGASUS_CIM_EXCEPTION(CIM_ERR_NOT_SUPPORTED,
                                    "KSV_X does not support createInstance.");
    } catch (const CIMException& e) {
        const TraceableCIMException traced(e);
        EXPECT_EQ(CIM_ERR_NOT_SUPPORTED, traced.getCode());
        EXPECT_EQ("KSV_X does not support createInstance.", utf8(traced.getMessage()));
        EXPECT_GT(traced.getLine(), 0u);
        return;
    }
    ADD_FAILURE();
}

TEST(CIMExceptionErrors, ErrorInstancesAreCopiedIn) {
    CIMInstance error(CIMName("CIM_Error"));
    CIMException e(CIM_ERR_FAILED, "failed", error);
    e.addError(CIMInstance(CIMName("CIM_Error")));
    ASSERT_EQ(2u, e.getErrorCount());
    EXPECT_EQ(CIMName("CIM_Error"), e.getError(0).getClassName());
    EXPECT_THROW(e.getError(2), IndexOutOfBoundsException);
    const CIMException copy(e);
    EXPECT_EQ(2u, copy.getErrorCount());
    EXPECT_EQ(0u, TraceableCIMException(e).getErrorCount());
}

TEST(StatusAndTypeNames, CodesAndTypesHaveTheirNames) {
    EXPECT_STREQ("CIM_ERR_NOT_FOUND", cimStatusCodeToString(CIM_ERR_NOT_FOUND));
    EXPECT_STREQ("CIM_ERR_SERVER_IS_SHUTTING_DOWN",
                 cimStatusCodeToString(CIM_ERR_SERVER_IS_SHUTTING_DOWN));
    EXPECT_STREQ("Unrecognized CIM status code", cimStatusCodeToString(CIMStatusCode(99)));
    EXPECT_STREQ("instance", cimTypeToString(CIMTYPE_INSTANCE));
    EXPECT_THROW(cimTypeToString(CIMType(17)), TypeMismatchException);
}

} // namespace
