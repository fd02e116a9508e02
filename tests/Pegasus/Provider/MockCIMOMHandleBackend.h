#ifndef KSV_TESTS_MOCK_CIMOMHANDLE_BACKEND_H
#define KSV_TESTS_MOCK_CIMOMHANDLE_BACKEND_H

#include <Pegasus/Provider/CIMOMHandleBackend.h>

#include <gmock/gmock.h>

// Mocks the operations every host must serve; the class operations keep their defaults.
class MockCIMOMHandleBackend : public Pegasus::CIMOMHandleBackend {
public:
    using OperationContext = Pegasus::OperationContext;
    using CIMNamespaceName = Pegasus::CIMNamespaceName;
    using CIMName = Pegasus::CIMName;
    using CIMObjectPath = Pegasus::CIMObjectPath;
    using CIMPropertyList = Pegasus::CIMPropertyList;
    using CIMInstance = Pegasus::CIMInstance;
    using CIMValue = Pegasus::CIMValue;
    using String = Pegasus::String;
    using Boolean = Pegasus::Boolean;
    using ParamValues = Pegasus::Array<Pegasus::CIMParamValue>;
    using Instances = Pegasus::Array<CIMInstance>;
    using Objects = Pegasus::Array<Pegasus::CIMObject>;
    using Paths = Pegasus::Array<CIMObjectPath>;

    MOCK_METHOD(Pegasus::CIMClass, getClass,
                (const OperationContext&, const CIMNamespaceName&, const CIMName&, Boolean, Boolean,
                 Boolean, const CIMPropertyList&),
                (override));
    MOCK_METHOD(CIMInstance, getInstance,
                (const OperationContext&, const CIMNamespaceName&, const CIMObjectPath&, Boolean,
                 Boolean, Boolean, const CIMPropertyList&),
                (override));
    MOCK_METHOD(Instances, enumerateInstances,
                (const OperationContext&, const CIMNamespaceName&, const CIMName&, Boolean, Boolean,
                 Boolean, Boolean, const CIMPropertyList&),
                (override));
    MOCK_METHOD(Paths, enumerateInstanceNames,
                (const OperationContext&, const CIMNamespaceName&, const CIMName&), (override));
    MOCK_METHOD(CIMValue, getProperty,
                (const OperationContext&, const CIMNamespaceName&, const CIMObjectPath&,
                 const CIMName&),
                (override));
    MOCK_METHOD(void, setProperty,
                (const OperationContext&, const CIMNamespaceName&, const CIMObjectPath&,
                 const CIMName&, const CIMValue&),
                (override));
    MOCK_METHOD(void, modifyInstance,
                (const OperationContext&, const CIMNamespaceName&, const CIMInstance&, Boolean,
                 const CIMPropertyList&),
                (override));
    MOCK_METHOD(CIMObjectPath, createInstance,
                (const OperationContext&, const CIMNamespaceName&, const CIMInstance&), (override));
    MOCK_METHOD(void, deleteInstance,
                (const OperationContext&, const CIMNamespaceName&, const CIMObjectPath&),
                (override));
    MOCK_METHOD(Objects, associators,
                (const OperationContext&, const CIMNamespaceName&, const CIMObjectPath&,
                 const CIMName&, const CIMName&, const String&, const String&, Boolean, Boolean,
                 const CIMPropertyList&),
                (override));
    MOCK_METHOD(Paths, associatorNames,
                (const OperationContext&, const CIMNamespaceName&, const CIMObjectPath&,
                 const CIMName&, const CIMName&, const String&, const String&),
                (override));
    MOCK_METHOD(Objects, references,
                (const OperationContext&, const CIMNamespaceName&, const CIMObjectPath&,
                 const CIMName&, const String&, Boolean, Boolean, const CIMPropertyList&),
                (override));
    MOCK_METHOD(Paths, referenceNames,
                (const OperationContext&, const CIMNamespaceName&, const CIMObjectPath&,
                 const CIMName&, const String&),
                (override));
    MOCK_METHOD(CIMValue, invokeMethod,
                (const OperationContext&, const CIMNamespaceName&, const CIMObjectPath&,
                 const CIMName&, const ParamValues&, ParamValues&),
                (override));
};

// Also mocks the operations that have a default in the backend.
class FullMockCIMOMHandleBackend : public MockCIMOMHandleBackend {
public:
    MOCK_METHOD(Pegasus::Array<Pegasus::CIMClass>, enumerateClasses,
                (const OperationContext&, const CIMNamespaceName&, const CIMName&, Boolean, Boolean,
                 Boolean, Boolean),
                (override));
    MOCK_METHOD(Pegasus::Array<CIMName>, enumerateClassNames,
                (const OperationContext&, const CIMNamespaceName&, const CIMName&, Boolean),
                (override));
    MOCK_METHOD(void, createClass,
                (const OperationContext&, const CIMNamespaceName&, const Pegasus::CIMClass&),
                (override));
    MOCK_METHOD(void, modifyClass,
                (const OperationContext&, const CIMNamespaceName&, const Pegasus::CIMClass&),
                (override));
    MOCK_METHOD(void, deleteClass,
                (const OperationContext&, const CIMNamespaceName&, const CIMName&), (override));
    MOCK_METHOD(Objects, execQuery,
                (const OperationContext&, const CIMNamespaceName&, const String&, const String&),
                (override));
    MOCK_METHOD(void, disallowProviderUnload, (), (override));
    MOCK_METHOD(void, allowProviderUnload, (), (override));
};

#endif
