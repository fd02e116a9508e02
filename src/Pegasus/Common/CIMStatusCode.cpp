#include <Pegasus/Common/CIMStatusCode.h>

PEGASUS_NAMESPACE_BEGIN

const char* cimStatusCodeToString(CIMStatusCode code) {
    // Codes 18 and 19 are unassigned.
    static const char* const names[] = {"CIM_ERR_SUCCESS",
                                        "CIM_ERR_FAILED",
                                        "CIM_ERR_ACCESS_DENIED",
                                        "CIM_ERR_INVALID_NAMESPACE",
                                        "CIM_ERR_INVALID_PARAMETER",
                                        "CIM_ERR_INVALID_CLASS",
                                        "CIM_ERR_NOT_FOUND",
                                        "CIM_ERR_NOT_SUPPORTED",
                                        "CIM_ERR_CLASS_HAS_CHILDREN",
                                        "CIM_ERR_CLASS_HAS_INSTANCES",
                                        "CIM_ERR_INVALID_SUPERCLASS",
                                        "CIM_ERR_ALREADY_EXISTS",
                                        "CIM_ERR_NO_SUCH_PROPERTY",
                                        "CIM_ERR_TYPE_MISMATCH",
                                        "CIM_ERR_QUERY_LANGUAGE_NOT_SUPPORTED",
                                        "CIM_ERR_INVALID_QUERY",
                                        "CIM_ERR_METHOD_NOT_AVAILABLE",
                                        "CIM_ERR_METHOD_NOT_FOUND",
                                        "empty",
                                        "empty",
                                        "CIM_ERR_NAMESPACE_NOT_EMPTY",
                                        "CIM_ERR_INVALID_ENUMERATION_CONTEXT",
                                        "CIM_ERR_INVALID_OPERATION_TIMEOUT",
                                        "CIM_ERR_PULL_HAS_BEEN_ABANDONED",
                                        "CIM_ERR_PULL_CANNOT_BE_ABANDONED",
                                        "CIM_ERR_FILTERED_ENUMERATION_NOT_SUPPORTED",
                                        "CIM_ERR_CONTINUATION_ON_ERROR_NOT_SUPPORTED",
                                        "CIM_ERR_SERVER_LIMITS_EXCEEDED",
                                        "CIM_ERR_SERVER_IS_SHUTTING_DOWN"};
    if (Uint32(code) < sizeof(names) / sizeof(names[0]))
        return names[code];
    return "Unrecognized CIM status code";
}

PEGASUS_NAMESPACE_END
