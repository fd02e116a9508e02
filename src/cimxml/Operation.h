#ifndef KSV_CIMXML_OPERATION_H
#define KSV_CIMXML_OPERATION_H

#include <optional>
#include <string_view>

namespace ksv::cimxml {

/// The operations the codec encodes and decodes: the intrinsic methods of DSP0200 that CIMClient
/// offers, and extrinsic method invocation.
enum class Operation {
    GetClass,
    EnumerateClasses,
    EnumerateClassNames,
    GetInstance,
    EnumerateInstances,
    EnumerateInstanceNames,
    CreateInstance,
    ModifyInstance,
    DeleteInstance,
    GetProperty,
    SetProperty,
    Associators,
    AssociatorNames,
    References,
    ReferenceNames,
    OpenEnumerateInstances,
    OpenEnumerateInstancePaths,
    OpenReferenceInstances,
    OpenReferenceInstancePaths,
    OpenAssociatorInstances,
    OpenAssociatorInstancePaths,
    PullInstancesWithPath,
    PullInstancePaths,
    PullInstances,
    CloseEnumeration,
    EnumerationCount,
    InvokeMethod
};

/// The IMETHODCALL name of an intrinsic operation ("EnumerateInstances"); "InvokeMethod" for
/// the extrinsic one, whose wire name is the method's own.
const char* operationName(Operation operation);

/// The intrinsic operation called `name` (exact case, as DSP0200 names them); nothing for an
/// unknown or unsupported name.
std::optional<Operation> intrinsicOperationNamed(std::string_view name);

inline bool isIntrinsic(Operation operation) {
    return operation != Operation::InvokeMethod;
}

/// The operations that open an enumeration context (OpenEnumerateInstances and its kin).
bool opensEnumeration(Operation operation);

/// The operations whose response carries EndOfSequence and EnumerationContext: the opening
/// operations and the pulls.
bool continuesEnumeration(Operation operation);

/// The operations that deliver paths rather than instances (OpenEnumerateInstancePaths and its
/// kin, PullInstancePaths).
bool deliversPaths(Operation operation);

} // namespace ksv::cimxml

#endif
