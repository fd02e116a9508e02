#include <cimxml/Operation.h>

namespace ksv::cimxml {

namespace {

struct NamedOperation {
    Operation operation;
    const char* name;
};

const NamedOperation namedOperations[] = {
    {Operation::GetClass, "GetClass"},
    {Operation::EnumerateClasses, "EnumerateClasses"},
    {Operation::EnumerateClassNames, "EnumerateClassNames"},
    {Operation::GetInstance, "GetInstance"},
    {Operation::EnumerateInstances, "EnumerateInstances"},
    {Operation::EnumerateInstanceNames, "EnumerateInstanceNames"},
    {Operation::CreateInstance, "CreateInstance"},
    {Operation::ModifyInstance, "ModifyInstance"},
    {Operation::DeleteInstance, "DeleteInstance"},
    {Operation::GetProperty, "GetProperty"},
    {Operation::SetProperty, "SetProperty"},
    {Operation::Associators, "Associators"},
    {Operation::AssociatorNames, "AssociatorNames"},
    {Operation::References, "References"},
    {Operation::ReferenceNames, "ReferenceNames"},
    {Operation::OpenEnumerateInstances, "OpenEnumerateInstances"},
    {Operation::OpenEnumerateInstancePaths, "OpenEnumerateInstancePaths"},
    {Operation::OpenReferenceInstances, "OpenReferenceInstances"},
    {Operation::OpenReferenceInstancePaths, "OpenReferenceInstancePaths"},
    {Operation::OpenAssociatorInstances, "OpenAssociatorInstances"},
    {Operation::OpenAssociatorInstancePaths, "OpenAssociatorInstancePaths"},
    {Operation::PullInstancesWithPath, "PullInstancesWithPath"},
    {Operation::PullInstancePaths, "PullInstancePaths"},
    {Operation::PullInstances, "PullInstances"},
    {Operation::CloseEnumeration, "CloseEnumeration"},
    {Operation::EnumerationCount, "EnumerationCount"},
    {Operation::InvokeMethod, "InvokeMethod"},
};

} // namespace

const char* operationName(Operation operation) {
    for (const NamedOperation& entry : namedOperations) {
        if (entry.operation == operation) {
            return entry.name;
        }
    }
    return "InvokeMethod";
}

std::optional<Operation> intrinsicOperationNamed(std::string_view name) {
    for (const NamedOperation& entry : namedOperations) {
        if (entry.operation != Operation::InvokeMethod && name == entry.name) {
            return entry.operation;
        }
    }
    return std::nullopt;
}

bool opensEnumeration(Operation operation) {
    switch (operation) {
    case Operation::OpenEnumerateInstances:
    case Operation::OpenEnumerateInstancePaths:
    case Operation::OpenReferenceInstances:
    case Operation::OpenReferenceInstancePaths:
    case Operation::OpenAssociatorInstances:
    case Operation::OpenAssociatorInstancePaths:
        return true;
    default:
        return false;
    }
}

bool continuesEnumeration(Operation operation) {
    return opensEnumeration(operation) || operation == Operation::PullInstancesWithPath ||
           operation == Operation::PullInstancePaths || operation == Operation::PullInstances;
}

bool deliversPaths(Operation operation) {
    return operation == Operation::OpenEnumerateInstancePaths ||
           operation == Operation::OpenReferenceInstancePaths ||
           operation == Operation::OpenAssociatorInstancePaths ||
           operation == Operation::PullInstancePaths;
}

} // namespace ksv::cimxml
