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

} // namespace ksv::cimxml
