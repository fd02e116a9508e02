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

} // namespace ksv::cimxml

#endif
